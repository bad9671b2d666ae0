#include "Diff.h"
#include "import/SourceField.h"
#include "support/Corpus.h"
#include "support/ToolRun.h"

#include <QtTest>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <memory>
#include <vector>

namespace
{

/// The variables of a layout that a test makes up.
class Variables
{
public:
    TVpSourceField &add(const QString &name, const QString &group = QString())
    {
        fields.push_back(std::make_unique<TVpSourceField>());
        TVpSourceField &field = *fields.back();
        field.fieldName = name;
        field.group = group;
        pointers.append(&field);
        return field;
    }

    TVpSourceField &addPlaced(const QString &name, int start, const QString &label, const QString &group = QString())
    {
        TVpSourceField &field = add(name, group);
        field.start = start;
        field.length = 2;
        field.label = label;
        return field;
    }

    const QList<TVpSourceField *> &list() const { return pointers; }

private:
    std::vector<std::unique_ptr<TVpSourceField>> fields;
    QList<TVpSourceField *> pointers;
};

LayoutDiff compare(const Variables &oldOnes, const Variables &newOnes)
{
    return compareLayouts(oldOnes.list(), newOnes.list(), allProperties());
}

QStringList names(const QVector<const Property *> &properties)
{
    QStringList result;
    for (const Property *property : properties)
        result.append(QString::fromLatin1(property->name));
    return result;
}

QStringList names(const QVector<const TVpSourceField *> &fields)
{
    QStringList result;
    for (const TVpSourceField *field : fields)
        result.append(field->fieldName);
    return result;
}

// "old>new", each as name@group.
QStringList names(const QVector<VariableChange> &changes)
{
    const auto described = [](const TVpSourceField &field) { return field.fieldName + "@" + field.group; };
    QStringList result;
    for (const VariableChange &change : changes)
        result.append(described(*change.oldField) + ">" + described(*change.newField));
    return result;
}

// "code|old|new", a dash for none.
QStringList described(const QVector<ValueLabelChange> &changes)
{
    const auto text = [](const std::optional<QStringRef> &label) { return label ? label->toString() : QString("-"); };
    QStringList result;
    for (const ValueLabelChange &change : changes)
        result.append(change.code + "|" + text(change.oldLabel) + "|" + text(change.newLabel));
    return result;
}

QString item(const QString &name, const QString &label, int start, int length, const QString &more = QString())
{
    return QStringLiteral("\n[Item]\nLabel=%1\nName=%2\nStart=%3\nLen=%4\nDataType=Numeric\n%5")
        .arg(label, name, QString::number(start), QString::number(length), more);
}

QString valueSet(const QStringList &values)
{
    return "\n[ValueSet]\nLabel=S\nName=S\nValue=" + values.join("\nValue=") + "\n";
}

QString record(const QString &name, const QString &items)
{
    return "\n[Record]\nLabel=R\nName=" + name + "\nRecordTypeValue='1'\nRecordLen=99\n" + items;
}

// A text dictionary, with a record type if \a typeLength is above 0.
QString dictionary(const QString &content, int typeLength = 1)
{
    return "[Dictionary]\nVersion=CSPro 7.7\nLabel=D\nName=D\nRecordTypeStart=1\nRecordTypeLen="
        + QString::number(typeLength) + "\n\n[Level]\nLabel=L\nName=L\n\n[IdItems]\n" + content;
}

// The dictionaries of the pages that tell of the command.
QString surveyBefore()
{
    return dictionary(record("PERSON",
                             item("P01_SEX", "Sex", 2, 1, valueSet({ "1;Male", "2;Female" }))
                                 + item("P02_AGE", "Age", 3, 2) + item("P03_SCHOOL", "Now at school", 5, 1)
                                 + item("P04_WORK", "Worked", 6, 1, valueSet({ "1;Yes", "2;No" }))));
}

QString surveyAfter()
{
    return dictionary(record(
        "PERSON",
        item("P01_GENDER", "Sex", 2, 1, valueSet({ "1;Male", "2;Female" })) + item("P02_AGE", "Age in years", 3, 3)
            + item("P04_WORK", "Worked", 6, 1, valueSet({ "1;Yes, for pay", "2;No", "3;Not known" }))
            + item("P05_LANGUAGE", "Main language", 7, 2)));
}

} // namespace

/// The comparison of two layouts, and `vanlayout diff`, run as a user runs it.
class VanlayoutDiffTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The comparison

    void eachPropertyIsCompared_data()
    {
        QTest::addColumn<QString>("name");
        const QStringList all = { "label",   "type",    "length",        "start",   "decimals",
                                  "minimum", "maximum", "notApplicable", "missing", "group" };
        QCOMPARE(names(allProperties()), all);
        for (const QString &name : all)
            QTest::newRow(qPrintable(name)) << name;
    }
    void eachPropertyIsCompared()
    {
        QFETCH(QString, name);
        const auto setProperty = [&](TVpSourceField &field, int value) {
            const QMap<QString, QString *> texts
                = { { "label", &field.label },          { "type", &field.FieldType },
                    { "minimum", &field.minimum },      { "maximum", &field.maximum },
                    { "missing", &field.missingValue }, { "notApplicable", &field.notApplicable },
                    { "group", &field.group } };
            const QMap<QString, int *> numbers
                = { { "length", &field.length }, { "start", &field.start }, { "decimals", &field.decimals } };
            if (texts.contains(name))
                *texts.value(name) = QString::number(value);
            else
                *numbers.value(name) = value;
        };
        Variables before, after;
        setProperty(before.add("A"), 1);
        setProperty(after.add("A"), 2);
        before.add("B");
        after.add("B");
        const LayoutDiff diff = compare(before, after);
        QVERIFY(!diff.isEmpty());
        QCOMPARE(names(diff.added) + names(diff.removed) + names(diff.renamed), QStringList());
        QCOMPARE(diff.changed.size(), 1);
        QCOMPARE(diff.changed.first().oldField, before.list().first());
        QCOMPARE(diff.changed.first().newField, after.list().first());
        QCOMPARE(names(diff.changed.first().properties), QStringList(name));
        QVERIFY(diff.changed.first().valueLabels.isEmpty());
        QVERIFY(compare(before, before).isEmpty());

        QVector<const Property *> others = allProperties();
        others.erase(std::remove_if(others.begin(), others.end(),
                                    [&](const Property *property) { return name == property->name; }),
                     others.end());
        QVERIFY(compareLayouts(before.list(), after.list(), others).isEmpty());
    }

    void changesStandInTheOrderOfThePropertiesAndVariables()
    {
        Variables before, after;
        for (Variables *variables : { &before, &after }) {
            for (const char *name : { "B", "A" })
                variables->add(name);
        }
        after.list().first()->maximum = "9";
        after.list().first()->label = "L";
        after.list().last()->length = 3;
        const LayoutDiff diff = compare(before, after);
        QCOMPARE(names(diff.changed), (QStringList{ "B@>B@", "A@>A@" }));
        QCOMPARE(names(diff.changed.at(0).properties), (QStringList{ "label", "maximum" }));
        QCOMPARE(names(diff.changed.at(1).properties), QStringList("length"));
    }

    void twoFormatsAreComparedInWhatBothTell_data()
    {
        QTest::addColumn<QString>("oldType");
        QTest::addColumn<QString>("newType");
        QTest::addColumn<QStringList>("compared");
        const QStringList all = names(allProperties());
        const QStringList forms = { "label", "type", "length", "start", "minimum", "maximum", "group" };
        const QStringList few = { "label", "type" };
        const QStringList types = { "cspro", "cspro8", "stata", "spss" };
        for (const QString &one : types) {
            for (const QString &other : types) {
                const bool areForms = one.startsWith("cspro") && other.startsWith("cspro");
                QTest::newRow(qPrintable(one + " and " + other)) << one << other
                                                                 << (one == other   ? all
                                                                         : areForms ? forms
                                                                                    : few);
            }
        }
    }
    void twoFormatsAreComparedInWhatBothTell()
    {
        QFETCH(QString, oldType);
        QFETCH(QString, newType);
        QFETCH(QStringList, compared);
        QCOMPARE(names(comparableProperties(oldType.toStdString(), newType.toStdString())), compared);
    }

    void addedAndRemovedStandInTheOrderOfTheirLayout()
    {
        Variables before, after;
        for (const char *name : { "R2", "STAYS", "R1" })
            before.add(name);
        for (const char *name : { "A2", "STAYS", "A1" })
            after.add(name);
        const LayoutDiff diff = compare(before, after);
        QCOMPARE(names(diff.added), (QStringList{ "A2", "A1" }));
        QCOMPARE(names(diff.removed), (QStringList{ "R2", "R1" }));
        QVERIFY(diff.renamed.isEmpty() && diff.changed.isEmpty());
    }

    void orderOfVariablesIsNotCompared()
    {
        Variables before, after;
        for (const char *name : { "A", "B" })
            before.add(name);
        for (const char *name : { "B", "A" })
            after.add(name);
        QVERIFY(compare(before, after).isEmpty());
    }

    void emptyLayoutsCanBeCompared()
    {
        Variables none, one;
        one.add("A");
        QVERIFY(compare(none, none).isEmpty());
        QCOMPARE(names(compare(none, one).added), QStringList("A"));
        QCOMPARE(names(compare(one, none).removed), QStringList("A"));
    }

    void valueLabelsAreComparedByCode_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QStringList>("changes");
        // clang-format off
        QTest::newRow("same")               << "1 a\t2 b\t" << "1 a\t2 b\t"      << QStringList();
        QTest::newRow("none")               << ""           << ""                << QStringList();
        QTest::newRow("other order")        << "1 a\t2 b\t" << "2 b\t1 a\t"      << QStringList();
        QTest::newRow("no tab at the end")  << "1 a\t2 b\t" << "1 a\t2 b"        << QStringList();
        QTest::newRow("changed")            << "1 a\t2 b\t" << "1 a\t2 c\t"      << QStringList("2|b|c");
        QTest::newRow("added")              << "2 b\t"      << "1 a\t2 b\t3 c\t" << QStringList{"1|-|a", "3|-|c"};
        QTest::newRow("removed")            << "1 a\t2 b\t" << "2 b\t"           << QStringList("1|a|-");
        QTest::newRow("all added")          << ""           << "1 a\t"           << QStringList("1|-|a");
        QTest::newRow("all removed")        << "1 a\t"      << ""                << QStringList("1|a|-");
        QTest::newRow("added come last")    << "3 c\t1 a\t" << "9 z\t1 b\t"      << QStringList{"3|c|-", "1|a|b", "9|-|z"};
        QTest::newRow("label in any case")  << "1 a\t"      << "1 A\t"           << QStringList("1|a|A");
        QTest::newRow("code in any case")   << "m a\t"      << "M a\t"           << QStringList{"m|a|-", "M|-|a"};
        QTest::newRow("zero in front")      << "1 a\t"      << "01 a\t"          << QStringList{"1|a|-", "01|-|a"};
        QTest::newRow("blank at the end")   << "1 a\t"      << "1 a \t"          << QStringList("1|a|a ");
        QTest::newRow("label lost")         << "1 a\t"      << "1\t"             << QStringList("1|a|");
        QTest::newRow("no label, empty")    << "1\t"        << "1 \t"            << QStringList();
        QTest::newRow("no code")            << " a\t"       << " b\t"            << QStringList("|a|b");
        QTest::newRow("repeated, same")     << "1 a\t1 b\t" << "1 a\t1 b\t"      << QStringList();
        QTest::newRow("repeated, second")   << "1 a\t1 b\t" << "1 a\t1 c\t"      << QStringList("1|b|c");
        QTest::newRow("repeated, swapped")  << "1 a\t1 b\t" << "1 b\t1 a\t"      << QStringList{"1|a|b", "1|b|a"};
        QTest::newRow("repeated, one less") << "1 a\t1 b\t" << "1 a\t"           << QStringList("1|b|-");
        QTest::newRow("repeated, one more") << "1 a\t"      << "1 a\t2 x\t1 b\t" << QStringList{"2|-|x", "1|-|b"};
        QTest::newRow("repeated, between")  << "1 a\t2 x\t1 b\t" << "1 a\t1 b\t2 x\t" << QStringList();
        // clang-format on
    }
    void valueLabelsAreComparedByCode()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        QFETCH(QStringList, changes);
        Variables oldOnes, newOnes;
        oldOnes.add("A").valueLabels = before;
        newOnes.add("A").valueLabels = after;
        const LayoutDiff diff = compare(oldOnes, newOnes);
        QCOMPARE(diff.isEmpty(), changes.isEmpty());
        if (diff.isEmpty())
            return;
        QCOMPARE(names(diff.changed), QStringList("A@>A@"));
        QVERIFY(diff.changed.first().properties.isEmpty());
        QCOMPARE(described(diff.changed.first().valueLabels), changes);
    }

    void namesThatComeSeveralTimesGoByTheirOrder()
    {
        Variables before, after;
        for (const char *label : { "a", "b", "c" })
            before.add("X").label = label;
        for (const char *label : { "a", "z" })
            after.add("X").label = label;
        const LayoutDiff diff = compare(before, after);
        QCOMPARE(diff.changed.size(), 1);
        QCOMPARE(diff.changed.first().oldField->label, QString("b"));
        QCOMPARE(diff.changed.first().newField->label, QString("z"));
        QCOMPARE(diff.removed.size(), 1);
        QCOMPARE(diff.removed.first()->label, QString("c"));

        const LayoutDiff back = compare(after, before);
        QCOMPARE(back.added.size(), 1);
        QCOMPARE(back.added.first()->label, QString("c"));
    }

    void variablesAreSoughtInTheirGroup_data()
    {
        QTest::addColumn<QStringList>("before"); // name@group
        QTest::addColumn<QStringList>("after");
        QTest::addColumn<QStringList>("added");
        QTest::addColumn<QStringList>("removed");
        QTest::addColumn<QStringList>("renamed");
        QTest::addColumn<QStringList>("changed"); // old>new

        const QStringList none;
        QTest::newRow("same name in two groups")
            << QStringList{ "X@R", "X@S" } << QStringList{ "X@S", "X@R" } << none << none << none << none;
        QTest::newRow("moved to another group")
            << QStringList{ "X@R" } << QStringList{ "X@S" } << none << none << none << QStringList("X@R>X@S");
        QTest::newRow("moved, and one that stays") << QStringList{ "X@R", "X@S" } << QStringList{ "X@T", "X@R" } << none
                                                   << none << none << QStringList("X@S>X@T");
        QTest::newRow("several could have moved") << QStringList{ "X@R", "X@S" } << QStringList{ "X@T", "X@U" }
                                                  << QStringList{ "X", "X" } << QStringList{ "X", "X" } << none << none;
        QTest::newRow("case in the group first") << QStringList{ "x@R", "x@S" } << QStringList{ "X@S", "X@R" } << none
                                                 << none << QStringList{ "x@S>X@S", "x@R>X@R" } << none;
        QTest::newRow("case in another group")
            << QStringList{ "x@R" } << QStringList{ "X@S" } << none << none << QStringList("x@R>X@S") << none;
        QTest::newRow("same name goes before case")
            << QStringList{ "x@R", "X@R" } << QStringList{ "X@R" } << none << QStringList("x") << none << none;
        QTest::newRow("same name in another group goes before case")
            << QStringList{ "X@S", "x@R" } << QStringList{ "X@R" } << none << QStringList("x") << none
            << QStringList("X@S>X@R");
        QTest::newRow("several differ in case") << QStringList{ "xy@R", "XY@R" } << QStringList{ "Xy@R" }
                                                << QStringList("Xy") << (QStringList{ "xy", "XY" }) << none << none;
    }
    void variablesAreSoughtInTheirGroup()
    {
        QFETCH(QStringList, before);
        QFETCH(QStringList, after);
        QFETCH(QStringList, added);
        QFETCH(QStringList, removed);
        QFETCH(QStringList, renamed);
        QFETCH(QStringList, changed);
        const auto fill = [](Variables &variables, const QStringList &list) {
            for (const QString &name : list)
                variables.add(name.section('@', 0, 0), name.section('@', 1));
        };
        Variables oldOnes, newOnes;
        fill(oldOnes, before);
        fill(newOnes, after);
        const LayoutDiff diff = compare(oldOnes, newOnes);
        QCOMPARE(names(diff.added), added);
        QCOMPARE(names(diff.removed), removed);
        QCOMPARE(names(diff.renamed), renamed);
        QCOMPARE(names(diff.changed), changed);
        for (const VariableChange &change : diff.changed)
            QCOMPARE(names(change.properties), QStringList("group"));
    }

    void withoutGroupsOnOneSideNamesAloneCount()
    {
        Variables grouped, plain;
        grouped.add("A", "R");
        grouped.add("X", "R").label = "first";
        grouped.add("X", "S").label = "second";
        plain.add("X").label = "first";
        plain.add("X").label = "third";
        plain.add("A");
        const QVector<const Property *> compared = comparableProperties("cspro", "stata");
        for (const bool back : { false, true }) {
            const LayoutDiff diff = back ? compareLayouts(plain.list(), grouped.list(), compared)
                                         : compareLayouts(grouped.list(), plain.list(), compared);
            QVERIFY(diff.added.isEmpty() && diff.removed.isEmpty() && diff.renamed.isEmpty());
            QCOMPARE(diff.changed.size(), 1);
            QCOMPARE(diff.changed.first().oldField->label, QString(back ? "third" : "second"));
            QCOMPARE(names(diff.changed.first().properties), QStringList("label"));
        }
        QCOMPARE(compare(grouped, plain).changed.size(), 3); // the group too
    }

    void placeAndLabelsTellARenamedVariable_data()
    {
        QTest::addColumn<QString>("property");
        QTest::addColumn<bool>("isRenamed");
        QTest::newRow("nothing else") << "" << true;
        QTest::newRow("start") << "start" << false;
        QTest::newRow("length") << "length" << false;
        QTest::newRow("label") << "label" << false;
        QTest::newRow("value labels") << "value labels" << false;
        QTest::newRow("type") << "type" << true;
        QTest::newRow("decimals") << "decimals" << true;
        QTest::newRow("minimum") << "minimum" << true;
        QTest::newRow("maximum") << "maximum" << true;
        QTest::newRow("not applicable") << "notApplicable" << true;
        QTest::newRow("missing") << "missing" << true;
        QTest::newRow("group") << "group" << true;
    }
    void placeAndLabelsTellARenamedVariable()
    {
        QFETCH(QString, property);
        QFETCH(bool, isRenamed);
        Variables before, after;
        TVpSourceField &one = before.addPlaced("OLD", 5, "A label", "R");
        TVpSourceField &other = after.addPlaced("NEW", 5, "A label", "R");
        one.valueLabels = other.valueLabels = "1 a\t";
        if (property == "value labels")
            other.valueLabels = "1 b\t";
        for (const Property *compared : allProperties()) {
            if (property != compared->name)
                continue;
            if (compared->text)
                other.*compared->text = "other";
            else
                other.*compared->number = 77;
        }
        const LayoutDiff diff = compare(before, after);
        QVERIFY(diff.changed.isEmpty());
        if (!isRenamed) {
            QCOMPARE(names(diff.added), QStringList("NEW"));
            QCOMPARE(names(diff.removed), QStringList("OLD"));
            QVERIFY(diff.renamed.isEmpty());
            return;
        }
        QVERIFY(diff.added.isEmpty() && diff.removed.isEmpty());
        QCOMPARE(diff.renamed.size(), 1);
        QCOMPARE(diff.renamed.first().oldField, &one);
        QCOMPARE(diff.renamed.first().newField, &other);
        QCOMPARE(names(diff.renamed.first().properties), property.isEmpty() ? QStringList() : QStringList(property));
    }

    void caseAloneIsARenamingWithAnyFurtherChange()
    {
        Variables before, after;
        before.addPlaced("AGE", 5, "Age").valueLabels = "1 a\t";
        after.addPlaced("age", 7, "Age").valueLabels = "1 b\t";
        const LayoutDiff diff = compare(before, after);
        QCOMPARE(names(diff.renamed), QStringList("AGE@>age@"));
        QCOMPARE(names(diff.renamed.first().properties), QStringList("start"));
        QCOMPARE(described(diff.renamed.first().valueLabels), QStringList("1|a|b"));
        QVERIFY(diff.added.isEmpty() && diff.removed.isEmpty() && diff.changed.isEmpty());
    }

    void severalThatLookAlikeAreNotRenamed()
    {
        Variables before, after;
        before.addPlaced("A", 5, "Same");
        before.addPlaced("B", 5, "Same");
        after.addPlaced("C", 5, "Same");
        const LayoutDiff diff = compare(before, after);
        QCOMPARE(names(diff.removed), (QStringList{ "A", "B" }));
        QCOMPARE(names(diff.added), QStringList("C"));
        QVERIFY(diff.renamed.isEmpty());
        QCOMPARE(names(compare(after, before).added), (QStringList{ "A", "B" }));
    }

    void variableThatKeepsItsNameIsNoCandidateForARenaming()
    {
        Variables before, after;
        before.addPlaced("STAYS", 5, "Same");
        before.addPlaced("A", 5, "Same");
        after.addPlaced("B", 5, "Same");
        after.addPlaced("STAYS", 5, "Same");
        const LayoutDiff diff = compare(before, after);
        QCOMPARE(names(diff.renamed), QStringList("A@>B@"));
        QVERIFY(diff.added.isEmpty() && diff.removed.isEmpty() && diff.changed.isEmpty());
    }

    void variableWithoutALabelIsKnownByItsPlaceInItsGroup_data()
    {
        QTest::addColumn<int>("start");
        QTest::addColumn<QString>("oldGroup");
        QTest::addColumn<QString>("newGroup");
        QTest::addColumn<bool>("isRenamed");
        QTest::newRow("no groups") << 5 << ""
                                   << "" << true;
        QTest::newRow("same group") << 5 << "R"
                                    << "R" << true;
        QTest::newRow("other group") << 5 << "R"
                                     << "S" << false;
        QTest::newRow("no place") << 0 << ""
                                  << "" << false;
        QTest::newRow("no place in its group") << 0 << "R"
                                               << "R" << false;
    }
    void variableWithoutALabelIsKnownByItsPlaceInItsGroup()
    {
        QFETCH(int, start);
        QFETCH(QString, oldGroup);
        QFETCH(QString, newGroup);
        QFETCH(bool, isRenamed);
        Variables before, after;
        before.addPlaced("OLD", start, QString(), oldGroup);
        after.addPlaced("NEW", start, QString(), newGroup);
        QCOMPARE(compare(before, after).renamed.size(), isRenamed ? 1 : 0);
        // A place that one of two formats does not tell is no place.
        const auto compared = comparableProperties("cspro", "spss");
        QCOMPARE(compareLayouts(before.list(), after.list(), compared).renamed.size(), 0);
    }

    void betweenFormatsWithoutPlacesLabelsTellARenamedVariable()
    {
        Variables before, after;
        before.addPlaced("OLD", 5, "A label").valueLabels = "1 a\t";
        TVpSourceField &other = after.addPlaced("NEW", 0, "A label");
        other.length = 8;
        other.valueLabels = "1 a\t";
        QVERIFY(compare(before, after).renamed.isEmpty());
        const LayoutDiff diff = compareLayouts(before.list(), after.list(), comparableProperties("cspro", "stata"));
        QCOMPARE(names(diff.renamed), QStringList("OLD@>NEW@"));
        QVERIFY(diff.renamed.first().properties.isEmpty());
    }

    void manyVariablesThatLookAlikeAreCompared()
    {
        constexpr int count = 100000;
        Variables sameNames, otherNames, renamed, numbered;
        for (int i = 0; i < count; ++i) {
            sameNames.add("X").label = "Same";
            otherNames.add("Y").label = "Same";
            numbered.addPlaced("V" + QString::number(i), i + 1, "Same").valueLabels = "1 a\t";
            renamed.addPlaced("W" + QString::number(i), i + 1, "Same").valueLabels = "1 a\t";
        }
        QVERIFY(compare(sameNames, sameNames).isEmpty());
        QCOMPARE(compare(sameNames, otherNames).added.size(), count);
        QCOMPARE(compare(sameNames, otherNames).removed.size(), count);
        const LayoutDiff diff = compare(numbered, renamed);
        QCOMPARE(diff.renamed.size(), count);
        QCOMPARE(names(diff.renamed).at(777), QString("V777@>W777@"));
    }

    void manyValueLabelsOfOneCodeAreCompared()
    {
        constexpr int count = 200000;
        Variables before, after;
        before.add("A").valueLabels = QString("1 a\t").repeated(count);
        after.add("A").valueLabels = QString("1 a\t").repeated(count / 2) + QString("1 b\t").repeated(count);
        const LayoutDiff diff = compare(before, after);
        QCOMPARE(diff.changed.size(), 1);
        const QStringList changes = described(diff.changed.first().valueLabels);
        QCOMPARE(changes.size(), count);
        QCOMPARE(changes.count("1|a|b"), count / 2);
        QCOMPARE(changes.count("1|-|b"), count / 2);
    }

    // The command

    void tableIsTheDefaultForm()
    {
        write("before.dcf", surveyBefore());
        write("after.dcf", surveyAfter());
        const Run run = diff({ "before.dcf", "after.dcf" });
        QCOMPARE(run.status, finding);
        QCOMPARE(run.err, QByteArray());
        QCOMPARE(QString::fromUtf8(run.out),
                 QString::fromUtf8("Old: before.dcf: CSPro text dictionary, 4 variables\n"
                                   "New: after.dcf: CSPro text dictionary, 4 variables\n"
                                   "\n"
                                   "1 added, 1 removed, 1 renamed, 2 changed\n"
                                   "\n"
                                   "Added\n"
                                   "  P05_LANGUAGE (PERSON): \"Main language\"\n"
                                   "\n"
                                   "Removed\n"
                                   "  P03_SCHOOL (PERSON): \"Now at school\"\n"
                                   "\n"
                                   "Renamed\n"
                                   "  P01_SEX → P01_GENDER (PERSON)\n"
                                   "\n"
                                   "Changed\n"
                                   "  P02_AGE (PERSON)\n"
                                   "    label: \"Age\" → \"Age in years\"\n"
                                   "    length: 2 → 3\n"
                                   "    maximum: \"99\" → \"999\"\n"
                                   "  P04_WORK (PERSON)\n"
                                   "    maximum: \"2\" → \"3\"\n"
                                   "    value labels:\n"
                                   "      1: \"Yes\" → \"Yes, for pay\"\n"
                                   "      3: added \"Not known\"\n"));
    }

    void jsonHasEveryKeyInItsOrder()
    {
        write("before.dcf", surveyBefore());
        write("after.dcf", surveyAfter());
        const Run run = diff({ "--format", "json", "before.dcf", "after.dcf" });
        QCOMPARE(run.status, finding);
        QCOMPARE(run.err, QByteArray());
        QVERIFY(QJsonDocument::fromJson(run.out).isObject());
        QByteArray tokens = run.out;
        tokens.replace("\n", "");
        while (tokens.contains("  "))
            tokens.replace("  ", " ");
        QCOMPARE(tokens,
                 QByteArray("{ \"old\": { \"file\": \"before.dcf\", \"type\": \"cspro\" },"
                            " \"new\": { \"file\": \"after.dcf\", \"type\": \"cspro\" },"
                            " \"notCompared\": [], \"recordType\": [], \"records\": [],"
                            " \"added\": [ { \"name\": \"P05_LANGUAGE\", \"group\": \"PERSON\","
                            " \"label\": \"Main language\" } ],"
                            " \"removed\": [ { \"name\": \"P03_SCHOOL\", \"group\": \"PERSON\","
                            " \"label\": \"Now at school\" } ],"
                            " \"renamed\": [ { \"from\": \"P01_SEX\", \"to\": \"P01_GENDER\","
                            " \"group\": \"PERSON\", \"properties\": [], \"valueLabels\": [] } ],"
                            " \"changed\": [ { \"name\": \"P02_AGE\", \"group\": \"PERSON\", \"properties\": ["
                            " { \"property\": \"label\", \"old\": \"Age\", \"new\": \"Age in years\" },"
                            " { \"property\": \"length\", \"old\": 2, \"new\": 3 },"
                            " { \"property\": \"maximum\", \"old\": \"99\", \"new\": \"999\" } ],"
                            " \"valueLabels\": [] },"
                            " { \"name\": \"P04_WORK\", \"group\": \"PERSON\", \"properties\": ["
                            " { \"property\": \"maximum\", \"old\": \"2\", \"new\": \"3\" } ],"
                            " \"valueLabels\": ["
                            " { \"code\": \"1\", \"old\": \"Yes\", \"new\": \"Yes, for pay\" },"
                            " { \"code\": \"3\", \"old\": null, \"new\": \"Not known\" } ] } ]}"));

        const Run back = diff({ "--format", "json", "after.dcf", "before.dcf" });
        const QJsonObject removed = back.json()["changed"].toArray().at(1)["valueLabels"].toArray().at(1).toObject();
        QCOMPARE(removed["code"].toString(), QString("3"));
        QCOMPARE(removed["old"].toString(), QString("Not known"));
        QVERIFY(removed.contains("new") && removed["new"].isNull());
    }

    void tableTellsWhatWasRemoved()
    {
        write("before.dcf", surveyBefore());
        write("after.dcf", surveyAfter());
        const Run run = diff({ "after.dcf", "before.dcf" });
        QCOMPARE(run.status, finding);
        QVERIFY(run.out.contains("\nAdded\n  P03_SCHOOL (PERSON): "));
        QVERIFY(run.out.contains("\nRemoved\n  P05_LANGUAGE (PERSON): "));
        QVERIFY(run.out.contains("\n      3: removed \"Not known\"\n"));
    }

    void tableHasNoCaptionWithoutAVariable()
    {
        write("before.dcf", dictionary(record("R", item("A", "a", 2, 1))));
        write("after.dcf", dictionary(record("R", item("A", "b", 2, 1))));
        const Run run = diff({ "before.dcf", "after.dcf" });
        QVERIFY(run.out.contains("0 added, 0 removed, 0 renamed, 1 changed\n\nChanged\n"));
        for (const char *caption : { "Added", "Removed", "Renamed" })
            QVERIFY2(!run.out.contains(caption), caption);
    }

    void sameLayoutIsStatus0_data()
    {
        QTest::addColumn<QString>("file");
        for (const char *name : { "census.dcf", "census8.dcf", "marks.dcf", "occurrences.dcf", "subitems.dcf" })
            QTest::newRow(name) << QStringLiteral(VAN_EXAMPLES "/") + name;
        for (const char *name : { "types.sav", "types.zsav", "types-118.dta" })
            QTest::newRow(name) << QStringLiteral(VAN_MADE_DATA "/") + name;
    }
    void sameLayoutIsStatus0()
    {
        QFETCH(QString, file);
        const Run run = diff({ file, file });
        QCOMPARE(run.status, fine);
        QCOMPARE(run.err, QByteArray());
        QVERIFY(run.out.endsWith("\n\nThe layouts are the same\n"));
        const Run json = diff({ "--format", "json", file, file });
        QCOMPARE(json.status, fine);
        for (const char *key : { "notCompared", "recordType", "records", "added", "removed", "renamed", "changed" }) {
            QVERIFY2(json.json()[key].isArray(), key);
            QVERIFY2(json.json()[key].toArray().isEmpty(), key);
        }
    }

    void recordsAreCompared_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QString>("table");
        QTest::addColumn<QByteArray>("recordType");
        QTest::addColumn<QByteArray>("records");
        const QString items = item("A", "a", 5, 1);
        const QString plain = dictionary(record("R", items));
        const QByteArray none = "[]";
        QTest::newRow("column of the record type")
            << plain << QString(plain).replace("RecordTypeStart=1", "RecordTypeStart=2") << "recordTypeStart: 1 → 2\n"
            << QByteArray("[{\"new\":2,\"old\":1,\"property\":\"recordTypeStart\"}]") << none;
        QTest::newRow("width of the record type")
            << plain << dictionary(record("R", items), 3) << "recordTypeSize: 1 → 3\n"
            << QByteArray("[{\"new\":3,\"old\":1,\"property\":\"recordTypeSize\"}]") << none;
        QTest::newRow("value of a record")
            << plain << QString(plain).replace("Value='1'", "Value='2'") << "R: \"1\" → \"2\"\n"
            << none << QByteArray("[{\"name\":\"R\",\"new\":\"2\",\"old\":\"1\"}]");
        QTest::newRow("added record") << plain << plain + record("S", QString()) << "S: added \"1\"\n"
                                      << none << QByteArray("[{\"name\":\"S\",\"new\":\"1\",\"old\":null}]");
        QTest::newRow("removed record") << plain + record("S", QString()) << plain << "S: removed \"1\"\n"
                                        << none << QByteArray("[{\"name\":\"S\",\"new\":null,\"old\":\"1\"}]");
    }
    void recordsAreCompared()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        QFETCH(QString, table);
        QFETCH(QByteArray, recordType);
        QFETCH(QByteArray, records);
        write("before.dcf", before);
        write("after.dcf", after);
        const Run run = diff({ "before.dcf", "after.dcf" });
        QCOMPARE(run.status, finding);
        QVERIFY2(run.out.endsWith(("\n\nThe variables are the same\n\nRecords\n  " + table).toUtf8()),
                 run.out.constData());
        const Run json = diff({ "--format", "json", "before.dcf", "after.dcf" });
        QCOMPARE(json.status, finding);
        const auto written
            = [&](const char *key) { return QJsonDocument(json.json()[key].toArray()).toJson(QJsonDocument::Compact); };
        QCOMPARE(written("recordType"), recordType);
        QCOMPARE(written("records"), records);
        QCOMPARE(written("changed"), QByteArray("[]"));
    }

    void orderOfRecordsIsNotCompared()
    {
        const auto numbered = [](const QString &name, int value) {
            return record(name, item(name + "_A", "a", 5, 1)).replace("'1'", "'" + QString::number(value) + "'");
        };
        write("before.dcf", dictionary(numbered("R", 1) + numbered("S", 2)));
        write("after.dcf", dictionary(numbered("S", 2) + numbered("R", 1)));
        QCOMPARE(diff({ "before.dcf", "after.dcf" }).status, fine);
    }

    void recordsOfOneNameAreComparedInTheirOrder()
    {
        Records before;
        before.types = { { "R", "1" }, { "R", "2" } };
        Records after = before;
        QVERIFY(compareRecords(before, after).isEmpty());
        after.types[1].value = "3";
        QCOMPARE(described(compareRecords(before, after).records), QStringList("R|2|3"));
        after.types.removeFirst();
        QCOMPARE(described(compareRecords(before, after).records), (QStringList{ "R|1|3", "R|2|-" }));
    }

    void recordsAreComparedBetweenDictionariesAlone()
    {
        QVERIFY(areRecordsComparable("cspro", "cspro"));
        QVERIFY(areRecordsComparable("cspro", "cspro8"));
        QVERIFY(!areRecordsComparable("cspro", "stata"));
        QVERIFY(!areRecordsComparable("spss", "cspro8"));
    }

    void twoFormsOfADictionaryAreCompared()
    {
        const QString text = QStringLiteral(VAN_EXAMPLES "/census.dcf");
        const QString json = QStringLiteral(VAN_EXAMPLES "/census8.dcf");
        const Run run = diff({ "--format", "json", text, json });
        QCOMPARE(run.status, finding);
        const QJsonValue found = run.json();
        QCOMPARE(found["notCompared"].toArray(), (QJsonArray{ "decimals", "notApplicable", "missing" }));
        QCOMPARE(found["records"].toArray().size() + found["recordType"].toArray().size(), 0);
        QCOMPARE(found["old"]["type"].toString(), QString("cspro"));
        QCOMPARE(found["new"]["type"].toString(), QString("cspro8"));
        QCOMPARE(found["added"].toArray().size() + found["removed"].toArray().size(), 0);
        // The forms name occurrences differently; place and labels tell that they are the same.
        QStringList renamed;
        for (const auto &entry : found["renamed"].toArray()) {
            renamed.append(entry.toObject()["to"].toString());
            QCOMPARE(entry.toObject()["properties"].toArray().size(), 0);
        }
        QCOMPARE(renamed,
                 (QStringList{ "H12_ASSET_1", "H12_ASSET_2", "H12_ASSET_3", "H12_ASSET_4", "H12_ASSET_5",
                               "P11_DIFFICULTY_1", "P11_DIFFICULTY_2", "P11_DIFFICULTY_3", "P11_DIFFICULTY_4" }));
        // One form reads no decimals, one keeps the apostrophe behind a code.
        QJsonObject changes;
        for (const auto &entry : found["changed"].toArray()) {
            changes[entry.toObject()["name"].toString()] = entry;
            for (const auto &change : entry.toObject()["properties"].toArray())
                QVERIFY(
                    QStringList({ "type", "minimum", "maximum" }).contains(change.toObject()["property"].toString()));
        }
        const QJsonValue changed = changes;
        QCOMPARE(changed["H07_RENT"]["properties"][0]["new"].toString(), QString("INTEGER"));
        QCOMPARE(changed["P08_CITIZENSHIP"]["valueLabels"][0]["code"].toString(), QString("ORV'"));
        QVERIFY(changed["EA"].isUndefined());

        const Run table = diff({ text, json });
        QVERIFY(table.out.contains("\nNot compared between these formats: decimals, notApplicable, missing\n"));
        QVERIFY(table.out.contains("\n  H12_ASSET_\xE2\x90\x81 \xE2\x86\x92 H12_ASSET_1 (HOUSING)\n"));
    }

    void statisticalFilesOfTwoFormatsAreCompared()
    {
        const Run run
            = diff({ QStringLiteral(VAN_MADE_DATA "/types.sav"), QStringLiteral(VAN_MADE_DATA "/types-118.dta") });
        QCOMPARE(run.status, finding);
        QVERIFY(run.out.contains("\nNot compared between these formats: length, start, decimals, minimum, maximum, "
                                 "notApplicable, missing, group\n"));
        QVERIFY(run.out.contains("\n  NAME \xE2\x86\x92 name\n    label: \"A wider text\" \xE2\x86\x92 \"A text\"\n"));
        for (const char *property : { "length", "minimum", "maximum" })
            QVERIFY2(!run.out.contains(QByteArray("    ") + property), property);
    }

    void plainAndCompressedSpssFilesHaveTheSameLayout()
    {
        const Run run
            = diff({ QStringLiteral(VAN_MADE_DATA "/types.sav"), QStringLiteral(VAN_MADE_DATA "/types.zsav") });
        QCOMPARE(run.status, fine);
        QVERIFY(!run.out.contains("Not compared"));
    }

    void groupOfTheOldVariableIsToldWhereTheNewHasNone()
    {
        write("before.dcf", dictionary(record("R", item("A", "a", 1, 1))));
        write("after.dcf", dictionary(record("R", item("A", "a", 1, 1)), 0));
        const QJsonValue change = diff({ "--format", "json", "before.dcf", "after.dcf" }).json()["changed"][0];
        QCOMPARE(change["group"].toString(), QString("R"));
        QCOMPARE(change["properties"][0]["property"].toString(), QString("group"));
        QCOMPARE(change["properties"][0]["new"].toString(), QString(""));
    }

    void namedTypesOverruleTheContent()
    {
        const QString plain = dictionary(record("R", item("A", "a", 2, 1)));
        write("plain.dcf", plain);
        write("brace.dcf", "{\n" + plain);
        QCOMPARE(diff({ "plain.dcf", "brace.dcf" }).status, noAnswer);
        QCOMPARE(diff({ "--new-type", "cspro", "plain.dcf", "brace.dcf" }).status, fine);
        QCOMPARE(diff({ "--old-type", "cspro", "brace.dcf", "plain.dcf" }).status, fine);
        QCOMPARE(diff({ "--old-type", "cspro", "plain.dcf", "brace.dcf" }).status, noAnswer);
        QCOMPARE(diff({ "--new-type", "cspro8", "plain.dcf", "plain.dcf" }).status, noAnswer);
    }

    void decimalsAnswersTheQuestion_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<int>("status");
        QTest::newRow("default") << QStringList() << fine;
        QTest::newRow("no") << QStringList{ "--decimals", "no" } << fine;
        QTest::newRow("yes") << QStringList{ "--decimals", "yes" } << finding;
    }
    void decimalsAnswersTheQuestion()
    {
        QFETCH(QStringList, options);
        QFETCH(int, status);
        write("before.dcf", dictionary(record("R", item("A", "a", 2, 1))));
        write("after.dcf", dictionary(record("R", item("A", "a", 2, 1, valueSet({ "0.5;Half" })))));
        const Run run = diff(options + QStringList{ "before.dcf", "after.dcf" });
        QCOMPARE(run.status, status);
        QCOMPARE(run.out.contains("      0: added \"Half\"\n"), status == finding);
    }

    void fileWithoutAnAnswerIsStatus2AndALineEach_data()
    {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QByteArray>("complaint");
        const QByteArray missing = "vanlayout: missing.dcf: no such file\n";
        const QByteArray folderLine = "vanlayout: .: is a folder\n";
        const QByteArray empty = "vanlayout: empty.dcf: no variable found, read as a CSPro text dictionary\n";
        QTest::newRow("old") << QStringList{ "missing.dcf", "good.dcf" } << missing;
        QTest::newRow("new") << QStringList{ "good.dcf", "missing.dcf" } << missing;
        QTest::newRow("both") << QStringList{ "missing.dcf", "." } << missing + folderLine;
        QTest::newRow("both, turned") << QStringList{ ".", "missing.dcf" } << folderLine + missing;
        QTest::newRow("no variable") << QStringList{ "good.dcf", "empty.dcf" } << empty;
        QTest::newRow("no name") << QStringList{ "", "good.dcf" } << QByteArray("vanlayout: '': no such file\n");
    }
    void fileWithoutAnAnswerIsStatus2AndALineEach()
    {
        QFETCH(QStringList, files);
        QFETCH(QByteArray, complaint);
        write("good.dcf", dictionary(record("R", item("A", "a", 2, 1))));
        write("empty.dcf", QString());
        for (const char *format : { "table", "json" }) {
            const Run run = diff(QStringList{ "--format", format } + files);
            QCOMPARE(run.status, noAnswer);
            QCOMPARE(run.out, QByteArray());
            QCOMPARE(run.err, complaint);
        }
    }

    void wrongUseIsStatus2AndOneLine_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("no file") << QStringList();
        QTest::newRow("one file") << QStringList{ "good.dcf" };
        QTest::newRow("three files") << QStringList{ "good.dcf", "good.dcf", "good.dcf" };
        QTest::newRow("csv") << QStringList{ "--format", "csv", "good.dcf", "good.dcf" };
        QTest::newRow("one type for both") << QStringList{ "--type", "cspro", "good.dcf", "good.dcf" };
        QTest::newRow("unknown old type") << QStringList{ "--old-type", "dbf", "good.dcf", "good.dcf" };
        QTest::newRow("unknown new type") << QStringList{ "--new-type", "dbf", "good.dcf", "good.dcf" };
        QTest::newRow("question") << QStringList{ "--decimals", "ask", "good.dcf", "good.dcf" };
    }
    void wrongUseIsStatus2AndOneLine()
    {
        QFETCH(QStringList, arguments);
        write("good.dcf", dictionary(record("R", item("A", "a", 2, 1))));
        const Run run = diff(arguments);
        verifyComplaint(run, QByteArray());
        QCOMPARE(run.out, QByteArray());
    }

    void oldFileCanBePiped()
    {
        write("before.dcf", surveyBefore());
        write("after.dcf", surveyAfter());
        QProcess tool;
        tool.setStandardInputFile(folder.filePath("before.dcf"));
        const Run run = diff({ "--format", "json", "/dev/stdin", "after.dcf" }, tool);
        QCOMPARE(run.status, finding);
        QCOMPARE(run.json()["old"]["file"].toString(), QString("/dev/stdin"));
        QCOMPARE(run.json()["changed"].toArray().size(), 2);
    }

    void fullDiskIsStatus2AndOneLine()
    {
        write("before.dcf", surveyBefore());
        for (const char *format : { "table", "json" })
            verifyFullDiskIsTold(folder, { "diff", "--format", format, "before.dcf", "before.dcf" });
    }

    void jsonHoldsTheExactTexts()
    {
        const QString before = QString::fromUtf8("\"quoted\\\", \x01\x1B[31m\tÉ 日付 ");
        const QString after = QString(QChar(0xD83D)) + "half";
        folder.write("before.dcf",
                     inUtf16(dictionary(record("R", item("A", before, 2, 1, valueSet({ "1;" + before }))))));
        folder.write("after.dcf", inUtf16(dictionary(record("R", item("A", after, 2, 1, valueSet({ "1;" + after }))))));
        const Run run = diff({ "--format", "json", "before.dcf", "after.dcf" });
        QCOMPARE(run.status, finding);
        const QJsonValue change = run.json()["changed"][0];
        QCOMPARE(change["properties"][0]["property"].toString(), QString("label"));
        QCOMPARE(change["properties"][0]["old"].toString(), before.trimmed());
        QVERIFY(run.out.toLower().contains("\"new\": \"\\ud83d\\u0068\\u0061\\u006c\\u0066\""));
        // A label ends where a tab ends its entry.
        QCOMPARE(change["valueLabels"][0]["old"].toString(), before.section('\t', 0, 0));
    }

    void tableSendsNoControlCharacters()
    {
        const QString before = "\x1B[31m\tred\x07";
        const QString after = QString(QChar(0xD83D)) + QChar(0x9B) + "half";
        const auto content = [](const QString &text) {
            return inUtf16(dictionary(record("R\x07", item("A\x1B", text, 2, 1, valueSet({ "1;" + text })))));
        };
        folder.write("be\x1B[1mfore.dcf", content(before));
        folder.write("after.dcf", content(after));
        const Run run = diff({ "be\x1B[1mfore.dcf", "after.dcf" });
        QCOMPARE(run.status, finding);
        QVERIFY(run.out.contains("label: "));
        QVERIFY(run.out.contains("value labels:"));
        for (const QChar character : QString::fromUtf8(run.out)) {
            const ushort code = character.unicode();
            QVERIFY(code == '\n' || (code >= 0x20 && code < 0x7F) || code >= 0xA0);
        }
    }

    void emptyTextsAndBlanksAreSeenInTheTable()
    {
        const auto content = [](const QString &label, const QString &valueLabel) {
            return QStringLiteral("{ \"levels\": [ { \"ids\": { \"items\": [ { \"name\": \"A\", \"labels\": "
                                  "[ { \"text\": \"%1\" } ], \"contentType\": \"numeric\", \"length\": 1, "
                                  "\"valueSets\": [ { \"values\": [ { \"labels\": [ { \"text\": \"%2\" } ], "
                                  "\"pairs\": [ { \"value\": \"1\" } ] } ] } ] } ] } } ] }")
                .arg(label, valueLabel);
        };
        write("before.dcf", content("a", "x"));
        write("after.dcf", content("", "x "));
        const Run run = diff({ "before.dcf", "after.dcf" });
        QVERIFY(run.out.contains("    label: \"a\" \xE2\x86\x92 \"\"\n"));
        QVERIFY(run.out.contains("      1: \"x\" \xE2\x86\x92 \"x \"\n"));
    }

    void largeLayoutsAreCompared()
    {
        constexpr int count = 100000;
        write("before.dcf", manyItems(count, "V", "label"));
        write("renamed.dcf", manyItems(count, "W", "label"));
        write("changed.dcf", manyItems(count, "V", "other"));
        const QByteArray renamed = diff({ "before.dcf", "renamed.dcf" }).out;
        QVERIFY(renamed.contains("0 added, 0 removed, 100000 renamed, 0 changed\n"));
        const QByteArray changed = diff({ "before.dcf", "changed.dcf" }).out;
        QVERIFY(changed.contains("0 added, 0 removed, 0 renamed, 100000 changed\n"));
        QCOMPARE(changed.count("\"other "), count * 2);
    }

    void realFilesAreTheSameAsThemselves()
    {
        if (!QFile::exists(QStringLiteral(VAN_CORPUS)))
            QSKIP("the corpus is not here");
        int compared = 0;
        for (const char *kind : { "cspro-text", "cspro-json", "spss", "stata" }) {
            for (const QString &file : corpusFiles(kind)) {
                const Run run = diff({ "--format", "json", file, file });
                QVERIFY2(run.status == fine || (run.status == noAnswer && run.out.isEmpty()), qPrintable(file));
                compared += run.status == fine;
            }
        }
        QVERIFY(compared > 0);
    }

    void helpTellsOfTheCommand()
    {
        verifyHelpTellsOf("diff", { "--format", "--old-type", "--new-type", "--decimals", "OLD", "NEW" });
    }

private:
    static QString manyItems(int count, const QString &prefix, const QString &label)
    {
        QString items;
        for (int i = 0; i < count; ++i)
            items += item(prefix + QString::number(i), "Variable", 2 + i, 1,
                          valueSet({ "1;" + label + " one", "2;" + label + " two" }));
        return dictionary(record("R", items));
    }

    void write(const QString &name, const QString &text) const { folder.write(name, text.toUtf8()); }

    Run diff(const QStringList &arguments) const { return folder.run(QStringList("diff") + arguments); }

    Run diff(const QStringList &arguments, QProcess &tool) const
    {
        return folder.run(QStringList("diff") + arguments, tool);
    }

    ToolFolder folder;
};

QTEST_GUILESS_MAIN(VanlayoutDiffTest)
#include "VanlayoutDiffTest.moc"
