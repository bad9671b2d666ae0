#include "check/LintedText.h"
#include "layout/MadeLayout.h"
#include "write/Ddi.h"

#include <QtTest>

#include <QRandomGenerator>

using namespace linted;

Q_DECLARE_METATYPE(vanlayout::Item)
Q_DECLARE_METATYPE(QVector<vanlayout::Item>)

namespace
{

// The findings of a change of the dictionary of the page, as `id path`.
QStringList idsAndPaths(const QVector<LintFinding> &findings)
{
    QStringList texts;
    for (const LintFinding &finding : findings)
        texts.append(infoOf(finding.rule).id + QLatin1Char(' ') + finding.path);
    return texts;
}

// A dictionary with one record; the record type is column 1 and the id items follow it.
Layout dictionary(const QVector<Item> &items, const QVector<Item> &ids = {})
{
    Record record;
    record.name = "R";
    record.labels = made::labels("Record");
    record.recordType = "1";
    record.items = items;
    Level level;
    level.name = "L";
    level.labels = made::labels("Level");
    level.ids = ids;
    level.records = { record };
    Layout layout;
    layout.format = Format::CSProText;
    layout.name = "D";
    layout.labels = made::labels("Dictionary");
    layout.recordType = RecordTypeColumns{ 1, 1 };
    layout.relativePositions = false;
    layout.levels = { level };
    return layout;
}

Item itemAt(const QString &name, int start, int length)
{
    Item item = made::item(name, length);
    item.labels = made::labels("Label of " + name);
    item.start = start;
    return item;
}

Item itemWith(const QVector<Value> &values, int length = 2, const QString &type = itemtype::numeric())
{
    Item item = itemAt("AGE", 2, length);
    item.type = type;
    item.valueSets = { made::valueSet(values) };
    item.valueSets[0].labels = made::labels("Values");
    return item;
}

// The findings of an item that is the only one of its dictionary.
QStringList idsFor(const Item &item)
{
    QStringList ids;
    const QVector<LintFinding> findings = lint(dictionary({ item }));
    for (const LintFinding &finding : findings)
        ids.append(infoOf(finding.rule).id);
    return ids;
}

Value special(const QString &code, Special meaning)
{
    return made::value(code, wordOf(meaning), meaning);
}

} // namespace

/// Tests the rules at their limits: what is just allowed and what is not.
class LintTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void idsOfRulesAreUniqueWords()
    {
        QSet<QString> ids;
        for (const LintRuleInfo &info : lintRules()) {
            QVERIFY2(QRegularExpression("^[a-z]+(-[a-z]+)*$").match(info.id).hasMatch(), qPrintable(info.id));
            QCOMPARE(infoOf(info.rule).id, info.id);
            QCOMPARE(lintRuleOf(info.id.toUpper()).value(), info.rule);
            ids.insert(info.id);
        }
        QCOMPARE(ids.size(), lintRuleCount);
        QVERIFY(!lintRuleOf("no-such-rule"));
    }

    void codesOfAnItem_data()
    {
        QTest::addColumn<Item>("item");
        QTest::addColumn<QStringList>("ids");
        const QStringList none;
        QTest::newRow("width of the item") << itemWith({ made::value("99", "a") }) << none;
        QTest::newRow("leading zeros") << itemWith({ made::value("0099", "a") }) << none;
        QTest::newRow("too wide") << itemWith({ made::value("100", "a") }) << QStringList("wide-code");
        QTest::newRow("sign") << itemWith({ made::value("-9", "a") }) << none;
        QTest::newRow("sign too wide") << itemWith({ made::value("-10", "a") }) << QStringList("wide-code");
        QTest::newRow("end of a range") << itemWith({ made::range("1", "100", "a") }) << QStringList("wide-code");
        QTest::newRow("decimals of zeros") << itemWith({ made::value("9.00", "a") }) << none;
        QTest::newRow("decimal comma") << itemWith({ made::value("9,5", "a") }) << QStringList("code-decimals");
        QTest::newRow("text") << itemWith({ made::value("A", "a") }) << QStringList("text-code");
        QTest::newRow("plus sign") << itemWith({ made::value("+1", "a") }) << QStringList("text-code");
        QTest::newRow("exponent") << itemWith({ made::value("1e0", "a") }, 3) << QStringList("text-code");
        QTest::newRow("blank") << itemWith({ made::value("  ", "a") }) << QStringList("text-code");
        QTest::newRow("blank field") << itemWith({ special("  ", Special::NotApplicable) }) << none;
        QTest::newRow("one code as range") << itemWith({ made::range("1", "1", "a") }) << none;
        QTest::newRow("reversed") << itemWith({ made::range("2", "1", "a") }) << QStringList("reversed-range");
        QTest::newRow("negative range") << itemWith({ made::range("-9", "-1", "a") }) << none;
        QTest::newRow("same number") << itemWith({ made::value("1", "a"), made::value("01", "b") })
                                     << QStringList("duplicate-code");
        QTest::newRow("ranges that adjoin")
            << itemWith({ made::range("1", "2", "a"), made::range("3", "4", "b") }) << none;
        QTest::newRow("ranges that share an end")
            << itemWith({ made::range("1", "3", "a"), made::range("3", "4", "b") }) << QStringList("overlapping-codes");
        QTest::newRow("code in a range") << itemWith({ made::value("2", "a"), made::range("1", "3", "b") })
                                         << QStringList("overlapping-codes");
        QTest::newRow("heading of several codes")
            << itemWith({ made::range("1", "3", "a"), made::value("1", "b"), made::value("2", "c"),
                          made::range("4", "5", "d"), made::value("4", "e") })
            << QStringList({ "overlapping-codes", "overlapping-codes" });
        QTest::newRow("missing code in a range")
            << itemWith({ made::range("0", "99", "a"), special("99", Special::Missing) }) << none;
        QTest::newRow("missing range") << itemWith({ [] {
            Value value = made::range("98", "99", "a");
            value.special = Special::Refused;
            return value;
        }() }) << QStringList("special-range");
        QTest::newRow("missing twice") << itemWith({ special("8", Special::Missing), special("9", Special::Missing) })
                                       << QStringList({ "duplicate-label", "repeated-special" });
        QTest::newRow("text of the width") << itemWith({ made::value("AB ", "a") }, 2, itemtype::alpha()) << none;
        QTest::newRow("text too wide") << itemWith({ made::value("ABC", "a") }, 2, itemtype::alpha())
                                       << QStringList("wide-code");
        QTest::newRow("same text with blanks")
            << itemWith({ made::value("A ", "a"), made::value("A", "b") }, 2, itemtype::alpha())
            << QStringList("duplicate-code");
        QTest::newRow("texts that are equal numbers")
            << itemWith({ made::value("1", "a"), made::value("01", "b") }, 2, itemtype::alpha()) << none;
        QTest::newRow("no label") << itemWith({ made::value("1") }) << QStringList("missing-value-label");
        QTest::newRow("range without label") << itemWith({ made::range("1", "9", "") }) << none;
        QTest::newRow("codes without label") << itemWith({ [] {
            Value value = made::value("1");
            value.ranges.append({ "2", QString() });
            return value;
        }() }) << none;
        QTest::newRow("blank without label") << itemWith({ made::value(" ") }, 1, itemtype::alpha()) << none;
        QTest::newRow("blank field without label") << itemWith({ special("  ", Special::NotApplicable) }) << none;
        QTest::newRow("no values") << itemWith({}) << QStringList("empty-value-set");
    }
    void codesOfAnItem()
    {
        QFETCH(Item, item);
        QFETCH(QStringList, ids);
        QCOMPARE(idsFor(item), ids);
    }

    void widthOfACodeIncludesTheDecimalsOfItsItem_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<bool>("isDecimalMark");
        QTest::addColumn<QStringList>("ids");
        QTest::newRow("implied mark") << "99" << false << QStringList();
        QTest::newRow("implied mark, too wide") << "100" << false << QStringList("wide-code");
        QTest::newRow("written mark") << "9" << true << QStringList();
        QTest::newRow("written mark, too wide") << "10" << true << QStringList("wide-code");
        QTest::newRow("decimals") << "0.25" << true << QStringList();
        QTest::newRow("too many decimals") << "0.125" << true << QStringList("code-decimals");
    }
    void widthOfACodeIncludesTheDecimalsOfItsItem()
    {
        QFETCH(QString, code);
        QFETCH(bool, isDecimalMark);
        Item item = itemWith({ made::value(code, "a") }, 4);
        item.decimals = 2;
        item.decimalMark = isDecimalMark;
        QTEST(idsFor(item), "ids");
    }

    void columnsOfItems_data()
    {
        QTest::addColumn<QVector<Item>>("items");
        QTest::addColumn<QStringList>("findings");
        const QString path = "overlap L/R/";
        QTest::newRow("adjoining") << QVector<Item>{ itemAt("A", 3, 2), itemAt("B", 5, 2) } << QStringList();
        QTest::newRow("in another order") << QVector<Item>{ itemAt("B", 5, 2), itemAt("A", 3, 2) } << QStringList();
        QTest::newRow("one column") << QVector<Item>{ itemAt("A", 3, 3), itemAt("B", 5, 2) } << QStringList(path + "B");
        QTest::newRow("the id") << QVector<Item>{ itemAt("A", 2, 2) } << QStringList(path + "A");
        QTest::newRow("the record type") << QVector<Item>{ itemAt("A", 1, 1), itemAt("B", 3, 1) }
                                         << QStringList(path + "A");
        QTest::newRow("an item before the last one")
            << QVector<Item>{ itemAt("A", 3, 9), itemAt("B", 4, 1), itemAt("C", 10, 1) }
            << QStringList({ path + "B", path + "C" });
        QTest::newRow("without columns") << QVector<Item>{ itemAt("A", 0, 3), itemAt("B", 0, 3) } << QStringList();
        Item repeated = itemAt("A", 3, 2);
        repeated.occurrences = 2;
        QTest::newRow("second occurrence") << QVector<Item>{ repeated, itemAt("B", 6, 1) } << QStringList(path + "B");
        Item subitem = itemAt("S", 3, 1);
        subitem.isSubitem = true;
        QTest::newRow("subitems") << QVector<Item>{ itemAt("A", 3, 2), subitem, subitem } << QStringList();
    }
    void columnsOfItems()
    {
        QFETCH(QVector<Item>, items);
        LintOptions only;
        only.only = { LintRule::Overlap };
        QTEST(idsAndPaths(lint(dictionary(items, { itemAt("ID", 2, 1) }), only)), "findings");
    }

    void gapsAreRunsOfColumnsWithoutItem_data()
    {
        QTest::addColumn<QVector<int>>("starts");
        QTest::addColumn<QStringList>("messages");
        const auto gap = [](const char *columns) {
            return QStringLiteral("no item has %1; move the items after the gap, or declare an item there")
                .arg(columns);
        };
        QTest::newRow("none") << QVector<int>{ 3, 4 } << QStringList();
        QTest::newRow("one column") << QVector<int>{ 3, 5 } << QStringList(gap("column 4"));
        QTest::newRow("several") << QVector<int>{ 5, 9 }
                                 << QStringList({ gap("columns 3 to 4"), gap("columns 6 to 8") });
    }
    void gapsAreRunsOfColumnsWithoutItem()
    {
        QFETCH(QVector<int>, starts);
        QVector<Item> items;
        for (const int start : qAsConst(starts))
            items.append(itemAt(QString("I%1").arg(start), start, 1));
        LintOptions only;
        only.only = { LintRule::Gap };
        QStringList messages;
        const QVector<LintFinding> findings = lint(dictionary(items, { itemAt("ID", 2, 1) }), only);
        for (const LintFinding &finding : findings)
            messages.append(finding.message);
        QTEST(messages, "messages");
    }

    void gapWithinARecordIsReportedForEachRecord()
    {
        Layout layout = dictionary({ itemAt("A", 2, 1), itemAt("B", 4, 1) });
        Record second = layout.levels[0].records[0];
        second.name = "S";
        layout.levels[0].records.append(second);
        LintOptions only;
        only.only = { LintRule::Gap };
        QCOMPARE(idsAndPaths(lint(layout, only)), QStringList({ "gap L/R", "gap L/S" }));
    }

    void subitemIsWithinTheFirstOccurrenceOfItsItem_data()
    {
        QTest::addColumn<int>("start");
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("count");
        QTest::newRow("whole item") << 10 << 4 << 0;
        QTest::newRow("end") << 13 << 1 << 0;
        QTest::newRow("begins before it") << 9 << 2 << 1;
        QTest::newRow("ends after it") << 13 << 2 << 1;
    }
    void subitemIsWithinTheFirstOccurrenceOfItsItem()
    {
        QFETCH(int, start);
        QFETCH(int, length);
        Item item = itemAt("A", 10, 4);
        item.occurrences = 2;
        Item subitem = itemAt("S", start, length);
        subitem.isSubitem = true;
        LintOptions only;
        only.only = { LintRule::SubitemOutsideItem };
        QTEST(int(lint(dictionary({ item, subitem }), only).size()), "count");
    }

    void gapBetweenIdsIsReportedOnce()
    {
        Layout layout = dictionary({ itemAt("A", 6, 1) }, { itemAt("ID", 2, 1), itemAt("ID2", 5, 1) });
        Record second = layout.levels[0].records[0];
        second.name = "S";
        layout.levels[0].records.append(second);
        LintOptions only;
        only.only = { LintRule::Gap };
        QCOMPARE(idsAndPaths(lint(layout, only)), QStringList("gap "));
    }

    void overlapsAreThoseOfEveryPairOfColumns()
    {
        QRandomGenerator random(7);
        for (int round = 0; round < 300; ++round) {
            QVector<Item> items;
            for (int index = 0; index < 6; ++index)
                items.append(itemAt(QString("I%1").arg(index), random.bounded(1, 20), random.bounded(1, 4)));
            LintOptions only;
            only.only = { LintRule::Overlap };
            const Item id = itemAt("ID", 8, 2);
            QSet<int> columns = { 1, 8, 9 };
            bool doOverlap = false;
            for (const Item &item : qAsConst(items)) {
                for (int column = item.start; column < item.start + item.length; ++column) {
                    doOverlap = doOverlap || columns.contains(column);
                    columns.insert(column);
                }
            }
            QCOMPARE(!lint(dictionary(items, { id }), only).isEmpty(), doOverlap);
        }
    }

    void numbersAtTheLimits_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<bool>("isAllowed");
        const auto change = [](const char *before, const char *after) {
            return QStringLiteral("-%1\n+%2").arg(QLatin1String(before), QLatin1String(after));
        };
        QTest::newRow("9999 records") << change("MaxRecords=20", "MaxRecords=9999") << true;
        QTest::newRow("10000 records") << change("MaxRecords=20", "MaxRecords=10000") << false;
        QTest::newRow("no record") << change("MaxRecords=20", "MaxRecords=0") << false;
        QTest::newRow("column 32000") << " Name=ROOMS\n-Start=5\n-Len=2\n+Start=32000\n+Len=1" << true;
        QTest::newRow("column 32001") << " Name=ROOMS\n-Start=5\n-Len=2\n+Start=32001\n+Len=1" << false;
        QTest::newRow("15 digits") << " Name=ROOMS\n Start=5\n-Len=2\n+Len=15" << true;
        QTest::newRow("16 digits") << " Name=ROOMS\n Start=5\n-Len=2\n+Len=16" << false;
        QTest::newRow("999 characters") << " Name=VILLAGE\n Start=16\n-Len=3\n+Len=999" << true;
        QTest::newRow("1000 characters") << " Name=VILLAGE\n Start=16\n-Len=3\n+Len=1000" << false;
        const auto rooms = [](const char *length, const char *more) {
            return QStringLiteral(" Name=ROOMS\n Start=5\n-Len=2\n+Len=%1\n DataType=Numeric\n+%2")
                .arg(QLatin1String(length), QLatin1String(more));
        };
        QTest::newRow("9999 occurrences") << rooms("1", "Occurrences=9999") << true;
        QTest::newRow("10000 occurrences") << rooms("1", "Occurrences=10000") << false;
        QTest::newRow("no occurrence") << rooms("1", "Occurrences=0") << false;
        QTest::newRow("9 decimals") << rooms("15", "Decimal=9") << true;
        QTest::newRow("10 decimals") << rooms("15", "Decimal=10") << false;
        QTest::newRow("record of 32000") << rooms("8", "Occurrences=3999") << true;
        QTest::newRow("record of 32004") << rooms("10", "Occurrences=3200") << false;
        QTest::newRow("type in column 32000") << change("RecordTypeStart=1", "RecordTypeStart=32000") << true;
        QTest::newRow("type in column 32001") << change("RecordTypeStart=1", "RecordTypeStart=32001") << false;
        QTest::newRow("type without column") << change("RecordTypeStart=1", "RecordTypeStart=0") << false;
        QTest::newRow("type without length") << change("RecordTypeLen=1", "RecordTypeLen=0") << false;
        const QString level
            = "+\n+[Level]\n+Label=L\n+Name=L%1\n+\n+[IdItems]\n+\n+[Item]\n+Name=I%1\n+Start=9\n+Len=1";
        const QString end = " Name=ROOMS\n Start=5\n Len=2\n DataType=Numeric\n";
        QTest::newRow("3 levels") << end + level.arg(2) + '\n' + level.arg(3) << true;
        QTest::newRow("4 levels") << end + level.arg(2) + '\n' + level.arg(3) + '\n' + level.arg(4) << false;
        for (const char *place : { "HOUSEHOLD", "PERSON", "ROOMS", "SEX_VS1", "SURVEY_DICT" }) {
            const QString note = QStringLiteral(" Name=%1\n+Note=").arg(QLatin1String(place));
            QTest::newRow(qPrintable(QString("note of 32000 of ") + place)) << note + QString(32000, 'x') << true;
            QTest::newRow(qPrintable(QString("note of 32001 of ") + place)) << note + QString(32001, 'x') << false;
        }
        QTest::newRow("type of 9 characters") << change("RecordTypeLen=1", "RecordTypeLen=9") << true;
        QTest::newRow("type of 10 characters") << change("RecordTypeLen=1", "RecordTypeLen=10") << false;
    }
    void numbersAtTheLimits()
    {
        QFETCH(QString, change);
        const QString text = changed(baseDictionary(), change);
        QVERIFY(!text.isEmpty());
        QTEST(findingsOf(text.toUtf8(), { LintRule::Limit }).isEmpty(), "isAllowed");
    }

    void namesThatProgramsDoNotAccept_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("ids");
        QTest::newRow("plain") << "A_1" << QStringList();
        QTest::newRow("small letters") << "age" << QStringList();
        QTest::newRow("digit first") << "1A" << QStringList({ "invalid-name", "spss-name", "stata-name", "sql-name" });
        QTest::newRow("underscore last") << "A_" << QStringList("invalid-name");
        QTest::newRow("accent") << QString::fromUtf8("ÂGE")
                                << QStringList({ "invalid-name", "spss-name", "stata-name", "sql-name" });
        QTest::newRow("CSPro word") << "VALUESET" << QStringList("reserved-name");
        QTest::newRow("SQL word") << "SELECT" << QStringList("sql-name");
        QTest::newRow("32 characters") << QString(32, 'A') << QStringList();
        QTest::newRow("33 characters") << QString(33, 'A') << QStringList("stata-name");
        QTest::newRow("65 characters") << QString(65, 'A') << QStringList({ "spss-name", "stata-name", "sql-name" });
    }
    void namesThatProgramsDoNotAccept()
    {
        QFETCH(QString, name);
        QTEST(idsFor(itemAt(name, 2, 1)), "ids");
    }

    void codeMayOccurOnceInAValue_data()
    {
        QTest::addColumn<QString>("codes");
        QTest::addColumn<QString>("message");
        QTest::newRow("code") << "1 1;Male"
                              << "the value has the code 1 more than once; remove one of them";
        QTest::newRow("range") << "0:2 1;Male"
                               << "1 overlaps 0 to 2 of the same value; change one of them";
    }
    void codeMayOccurOnceInAValue()
    {
        QFETCH(QString, codes);
        const QString text = changed(baseDictionary(), "-Value=1;Male\n-Value=2;Female\n+Value=" + codes);
        const QVector<LintFinding> findings
            = findingsOf(text.toUtf8(), { LintRule::DuplicateCode, LintRule::OverlappingCodes });
        QCOMPARE(findings.size(), 1);
        QTEST(findings.constFirst().message, "message");
    }

    void lengthOfARecordIsOnlyComparedIfItsItemsHaveColumns()
    {
        const QString text = changed(baseDictionary(), " Name=ROOMS\n-Start=5\n+Start=0");
        QVERIFY(findingsOf(text.toUtf8(), { LintRule::RecordLength, LintRule::ItemOutsideRecord }).isEmpty());
    }

    void idItemsAreWithinTheRecord()
    {
        const QString text = changed(baseDictionary(), " Name=HOUSE\n-Start=2\n+Start=25");
        const QVector<LintFinding> findings = findingsOf(text.toUtf8(), { LintRule::ItemOutsideRecord });
        QCOMPARE(idsAndPaths(findings),
                 QStringList({ "item-outside-record HOUSEHOLD/PERSON", "item-outside-record HOUSEHOLD/HOUSING" }));
        QCOMPARE(findings.constLast().message,
                 QString("the id items or the record type end in column 27, but the record has 6; write RecordLen=27"));
    }

    void signOfARecordTypeIsOnlyReservedInTheFirstColumn()
    {
        Layout layout = dictionary({ itemAt("A", 3, 1) });
        layout.levels[0].records[0].recordType = "~";
        LintOptions only;
        only.only = { LintRule::ReservedRecordType };
        QCOMPARE(idsAndPaths(lint(layout, only)), QStringList("reserved-record-type L/R"));
        layout.recordType->start = 2;
        QVERIFY(lint(layout, only).isEmpty());
    }

    void codesOfLanguagesAreUniqueNames_data()
    {
        QTest::addColumn<QString>("languages");
        QTest::addColumn<QStringList>("findings");
        QTest::newRow("sound") << "+EN=English\n+FR=French" << QStringList();
        QTest::newRow("not a name") << "+EN=English\n+F R=French" << QStringList("invalid-name ");
        QTest::newRow("twice") << "+EN=English\n+en=English" << QStringList("repeated-key ");
    }
    void codesOfLanguagesAreUniqueNames()
    {
        QFETCH(QString, languages);
        const QString text = changed(baseDictionary(), " DecimalChar=No\n \n+[Languages]\n" + languages + "\n+");
        QTEST(idsAndPaths(findingsOf(text.toUtf8(), { LintRule::InvalidName, LintRule::RepeatedKey })), "findings");
    }

    void labelsOfBlanksAreNamedAsThat()
    {
        Item item = itemWith({ made::value(" ", "a"), made::value("A", "a") }, 1, itemtype::alpha());
        QCOMPARE(lint(dictionary({ item })).constFirst().message,
                 QString("the label \"a\" is also that of the value of blanks; give each code its own"));
    }

    void valuesWithoutLabelAreCounted()
    {
        const Item item = itemWith({ made::value("1", "a"), made::value("2"), made::value("3") });
        const QVector<LintFinding> findings = lint(dictionary({ item }));
        QCOMPARE(findings.size(), 1);
        QCOMPARE(findings.constFirst().message, QString("2 of 3 values have no label, such as 2; write them"));
    }

    void labelWithoutItsFirstLanguageLacksATranslation()
    {
        Layout layout = dictionary({ itemAt("A", 2, 1) });
        layout.languages = { { "EN", "English" }, { "FR", "French" } };
        layout.levels[0].records[0].items[0].labels = { { { "EN", "" }, { "FR", "Texte" } } };
        LintOptions only;
        only.only = { LintRule::MissingLabel, LintRule::MissingTranslation };
        QCOMPARE(lint(layout, only).constLast().message, QString("the item has no label in EN; add it"));
        layout.levels[0].records[0].items[0].labels = { { { "EN", "" }, { "FR", " " } } };
        QCOMPARE(idsAndPaths(lint(layout, only)).constFirst(), QString("missing-label L/R/A"));
    }

    void labelsInTheWrongEncoding_data()
    {
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("found");
        const auto is = [](const char *text, const char *meant) {
            return QStringLiteral(
                       "the label has \"%1\", which is \"%2\" in UTF-8; save the file in one encoding, such as "
                       "UTF-8")
                .arg(QString::fromUtf8(text), QString::fromUtf8(meant));
        };
        QTest::newRow("two bytes") << QString::fromUtf8("PiÃ¨ces") << is("Ã¨", "è");
        QTest::newRow("capital") << QString::fromUtf8("Ã‰cole") << is("Ã‰", "É");
        QTest::newRow("three bytes") << QString::fromUtf8("1 â€“ 4") << is("â€“", "–");
        QTest::newRow("four bytes") << QString::fromUtf8("ðŸ˜€") << is("ðŸ˜€", "\xF0\x9F\x98\x80");
        QTest::newRow("sound") << QString::fromUtf8("Pièces, ÇÃO, 1 – 4, “MANHÔ, ŸÃ") << QString();
        QTest::newRow("end of the label") << QString::fromUtf8("â€") << QString();
        QTest::newRow("letter with quotation marks") << QString::fromUtf8("aí“ƒ") << QString();
    }
    void labelsInTheWrongEncoding()
    {
        QFETCH(QString, label);
        Layout layout = dictionary({ itemWith({ made::value("1", label) }) });
        LintOptions only;
        only.only = { LintRule::MixedEncodings };
        const QVector<LintFinding> findings = lint(layout, only);
        QTEST(findings.isEmpty() ? QString() : findings.constFirst().message, "found");
        layout.levels[0].labels = made::labels(label);
        layout.levels[0].records[0].labels = made::labels(label);
        layout.levels[0].records[0].items[0].labels = made::labels(label);
        layout.levels[0].records[0].items[0].valueSets[0].labels = made::labels(label);
        layout.labels = made::labels(label);
        QCOMPARE(lint(layout, only).size(), findings.size() * 6);
    }

    void fileOfTwoEncodingsWithoutMarkIsFound()
    {
        const QByteArray text = baseDictionary().toUtf8();
        const QByteArray both = QByteArray(text)
                                    .replace("Label=Rooms",
                                             "Label=Pi\xC3\xA8"
                                             "ces")
                                    .replace("Label=Village", "Label=Vill\xE8ge");
        QCOMPARE(idsAndPaths(findingsOf(both)), QStringList("mixed-encodings HOUSEHOLD/HOUSING/ROOMS"));
        QVERIFY(findingsOf(QByteArray(text).replace("Label=Rooms",
                                                    "Label=Pi\xE8"
                                                    "ces"))
                    .isEmpty());
    }

    void documentHasTheFindingsOfItsDictionary_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<QStringList>("ids");
        QTest::newRow("sound") << QString() << QStringList();
        QTest::newRow("overlap") << " Name=SEX\n Start=5\n-Len=1\n+Len=2" << QStringList("overlap");
        QTest::newRow("part of a variable") << " Name=SEX\n-Start=5\n+Start=7" << QStringList("gap");
        QTest::newRow("record type") << "-RecordTypeValue='2'\n+RecordTypeValue='02'"
                                     << QStringList("record-type-width");
        QTest::newRow("record length") << "-RecordLen=6\n+RecordLen=5" << QStringList("item-outside-record");
        QTest::newRow("long record") << "-RecordLen=6\n+RecordLen=9" << QStringList();
        QTest::newRow("subitem") << " Name=BIRTH_YEAR\n-Start=10\n+Start=12" << QStringList("subitem-outside-item");
        QTest::newRow("wide code") << "-Value=2;Female\n+Value=20;Female" << QStringList("wide-code");
        QTest::newRow("wide text") << "-Value='B  ';Bourne\n+Value='Bourne';B" << QStringList("wide-code");
        QTest::newRow("reversed range") << "-Value=0:20;Years\n+Value=20:0;Years" << QStringList("reversed-range");
        QTest::newRow("duplicate code") << "-Value=2;Female\n+Value=1;Female" << QStringList("duplicate-code");
        QTest::newRow("duplicate label") << "-Value=2;Female\n+Value=2;Male" << QStringList("duplicate-label");
        QTest::newRow("no label") << "-Label=Rooms\n+Label=\n Name=ROOMS" << QStringList("unlabelled-variable");
        QTest::newRow("name of a word") << "-Name=ROOMS\n+Name=USER" << QStringList("sql-name");
        QTest::newRow("limit of CSPro") << "-MaxRecords=20\n+MaxRecords=10000" << QStringList();
    }
    void documentHasTheFindingsOfItsDictionary()
    {
        QFETCH(QString, change);
        QByteArray text = (change.isEmpty() ? baseDictionary() : changed(baseDictionary(), change)).toUtf8();
        QVERIFY(!text.isEmpty());
        QBuffer buffer(&text);
        buffer.open(QIODevice::ReadOnly);
        QBuffer document;
        document.open(QIODevice::WriteOnly);
        QVERIFY(writeDdi(readLayout(buffer, "survey.dcf"), document));
        QStringList ids;
        const QVector<LintFinding> findings = findingsOf(document.data());
        for (const LintFinding &finding : findings)
            ids.append(infoOf(finding.rule).id);
        QTEST(ids, "ids");
    }

    void labelsMatchTheVariable_data()
    {
        QTest::addColumn<Item>("item");
        QTest::addColumn<QStringList>("ids");
        const auto numeric = [](Storage storage, const QString &code) {
            Item item = itemWith({ made::value(code, "a") }, 8);
            item.storage = storage;
            return item;
        };
        const QStringList outside("label-out-of-range");
        QTest::newRow("byte 100") << numeric(Storage::Int8, "100") << QStringList();
        QTest::newRow("byte 101") << numeric(Storage::Int8, "101") << outside;
        QTest::newRow("byte -127") << numeric(Storage::Int8, "-127") << QStringList();
        QTest::newRow("byte -128") << numeric(Storage::Int8, "-128") << outside;
        QTest::newRow("missing of Stata") << numeric(Storage::Int8, ".z") << QStringList();
        QTest::newRow("int 32740") << numeric(Storage::Int16, "32740") << QStringList();
        QTest::newRow("int 32741") << numeric(Storage::Int16, "32741") << outside;
        QTest::newRow("long 2147483621") << numeric(Storage::Int32, "2147483621") << outside;
        QTest::newRow("double") << numeric(Storage::Double, "2147483621") << QStringList();
        QTest::newRow("text") << itemWith({ made::value("ABC", "a") }, 3, itemtype::alpha()) << QStringList();
        QTest::newRow("long text") << itemWith({ made::value("ABCD", "a") }, 3, itemtype::alpha()) << outside;
        QTest::newRow("two labels") << itemWith({ made::value("1", "a"), made::value("2", "a") })
                                    << QStringList("duplicate-label");
        Item item = itemAt("A", 0, 8);
        item.missing = { { "9", QString() }, { "97", "99" } };
        QTest::newRow("missing value without labels") << item << QStringList("unlabelled-missing");
        item.valueSets = { made::valueSet({ made::value("9", "Refused") }) };
        QTest::newRow("missing value with a label") << item << QStringList();
        item.missing = { { "99", "97" } };
        QTest::newRow("reversed range") << item << QStringList("reversed-range");
    }
    void labelsMatchTheVariable()
    {
        QFETCH(Item, item);
        Layout layout = dictionary({ item });
        layout.format = Format::Stata;
        QStringList ids;
        const QVector<LintFinding> findings = lint(layout);
        for (const LintFinding &finding : findings)
            ids.append(infoOf(finding.rule).id);
        QTEST(ids, "ids");
    }

    void labelSetsOfOldStataFilesAreNotMissing()
    {
        Layout layout;
        layout.format = Format::Stata;
        layout.extras = { { "//A", "valueLabels", "set", 0 } };
        layout.formatVersion = "110";
        QCOMPARE(idsAndPaths(lint(layout)), QStringList("missing-label-set //A"));
        layout.formatVersion = "108";
        QCOMPARE(idsAndPaths(lint(layout)), QStringList("incomplete-reading "));
        layout.extras.clear();
        QVERIFY(lint(layout).isEmpty());
    }

    void labelSetsAreUnknownIfReadingEnded()
    {
        Layout layout;
        layout.format = Format::Stata;
        layout.formatVersion = "118";
        layout.extras = { { "//A", "valueLabels", "set", 0 } };
        layout.problems = { { Severity::Warning, "reading-ended", 0, QString(), "reading ended" } };
        QCOMPARE(idsAndPaths(lint(layout)), QStringList("incomplete-reading "));
    }

    void codesOfADocumentWithoutColumnsHaveAnyWidth()
    {
        Item item = itemWith({ made::value("12345", "a"), made::value(".a", "b"), made::value("1.5", "c") });
        Layout layout = dictionary({ item });
        layout.format = Format::Ddi;
        LintOptions only;
        only.only = { LintRule::WideCode, LintRule::TextCode, LintRule::CodeDecimals };
        QCOMPARE(
            idsAndPaths(lint(layout, only)),
            QStringList({ "wide-code L/R/AGE/VS1/#1", "text-code L/R/AGE/VS1/#2", "code-decimals L/R/AGE/VS1/#3" }));
        layout.levels[0].records[0].items[0].start = 0;
        QVERIFY(lint(layout, only).isEmpty());
    }

    void variablesOfARecordHaveDifferentNames()
    {
        Layout layout = dictionary({ itemAt("A", 2, 1), itemAt("a", 3, 1) });
        layout.format = Format::Stata;
        LintOptions only;
        only.only = { LintRule::DuplicateName };
        QVERIFY(lint(layout, only).isEmpty());
        layout.levels[0].records[0].items[1].name = "A";
        QCOMPARE(idsAndPaths(lint(layout, only)), QStringList("duplicate-name L/R/A"));
    }

    void otherLettersAreAcceptedByNewerVersions()
    {
        const auto message = [](const QString &name) {
            LintOptions only;
            only.only = { LintRule::StataName };
            return lint(dictionary({ itemAt(name, 2, 1) }), only).constFirst().message;
        };
        QCOMPARE(message("A B"),
                 QString("Stata does not accept the name A B; rename the item, or use the name A_B there"));
        QCOMPARE(message(QString::fromUtf8("ÂGE")),
                 QString::fromUtf8("not every version of Stata accepts the name ÂGE; rename the item, or use the name "
                                   "_GE there"));
    }

    void nameIsUniqueAmongAllElementsAndAliases_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<QString>("path");
        QTest::newRow("record and level") << "-Name=PERSON\n+Name=HOUSEHOLD"
                                          << "HOUSEHOLD/HOUSEHOLD";
        QTest::newRow("other case") << "-Name=ROOMS\n+Name=Sex"
                                    << "HOUSEHOLD/HOUSING/Sex";
        QTest::newRow("alias") << " Name=ROOMS\n+Alias=SEX"
                               << "HOUSEHOLD/HOUSING/ROOMS";
        QTest::newRow("value set") << "-Name=SCHOOL_VS1\n+Name=INCOME"
                                   << "HOUSEHOLD/PERSON/SCHOOL/INCOME";
    }
    void nameIsUniqueAmongAllElementsAndAliases()
    {
        QFETCH(QString, change);
        const QVector<LintFinding> findings
            = findingsOf(changed(baseDictionary(), change).toUtf8(), { LintRule::DuplicateName });
        QCOMPARE(findings.size(), 1);
        if (findings.constFirst().path != QLatin1String("HOUSEHOLD/PERSON/INCOME"))
            QTEST(findings.constFirst().path, "path");
    }

    void linkedSetsAreCheckedOnce()
    {
        Item first = itemWith({ made::value("100", "a") });
        first.valueSets[0].link = "7";
        Item second = first;
        second.name = "SECOND";
        second.start = 4;
        second.valueSets[0].name = "VS2";
        QCOMPARE(idsAndPaths(lint(dictionary({ first, second }))), QStringList("wide-code L/R/AGE/VS1/#1"));
        second.length = 1;
        QCOMPARE(lint(dictionary({ first, second })).size(), 2); // a different width is a different check
    }

    void labelsOfALanguageAreMissingOnlyIfTheirPartIs()
    {
        Layout layout = dictionary({ itemAt("A", 2, 1) });
        layout.languages = { { "EN", "English" }, { "FR", "French" } };
        const Labels both = { { { "EN", "Label" }, { "fr", "Texte" } } };
        layout.labels = both;
        layout.levels[0].labels = both;
        layout.levels[0].records[0].labels = both;
        LintOptions only;
        only.only = { LintRule::MissingTranslation };
        QCOMPARE(idsAndPaths(lint(layout, only)), QStringList("missing-translation L/R/A"));
        layout.levels[0].records[0].items[0].labels = both;
        QVERIFY(lint(layout, only).isEmpty());
    }

    void relationNamesRepeatingElementsAndItems_data()
    {
        QTest::addColumn<QString>("relation");
        QTest::addColumn<int>("count");
        QTest::newRow("sound") << "+Primary=PERSON\n+PrimaryLink=SEX\n+Secondary=PERSON" << 0;
        QTest::newRow("record that does not repeat") << "+Primary=HOUSING\n+Secondary=PERSON" << 1;
        QTest::newRow("unknown record") << "+Primary=PERSONS\n+Secondary=PERSON" << 1;
        QTest::newRow("unknown item") << "+Primary=PERSON\n+PrimaryLink=SEXE\n+Secondary=PERSON" << 1;
        QTest::newRow("all wrong") << "+Primary=A\n+PrimaryLink=B\n+Secondary=C\n+SecondaryLink=D" << 4;
    }
    void relationNamesRepeatingElementsAndItems()
    {
        QFETCH(QString, relation);
        const QString text
            = changed(baseDictionary(),
                      " Name=ROOMS\n Start=5\n Len=2\n DataType=Numeric\n+\n+[Relation]\n+Name=PAIRS\n" + relation);
        QTEST(int(findingsOf(text.toUtf8(), { LintRule::RelationTarget }).size()), "count");
    }

    void relativePositionsFollowTheItemsBefore()
    {
        const QString relative = changed(baseDictionary(), "-Positions=Absolute\n+Positions=Relative");
        QVERIFY(findingsOf(relative.toUtf8(), { LintRule::RelativeStart }).isEmpty());
        const QString moved = changed(relative, " Name=SCHOOL\n-Start=14\n+Start=15");
        QCOMPARE(idsAndPaths(findingsOf(moved.toUtf8(), { LintRule::RelativeStart })),
                 QStringList("relative-start HOUSEHOLD/PERSON/SCHOOL"));
    }

    void recordTypeOfARelativeFileMayFollowTheIds()
    {
        Layout layout = dictionary({ itemAt("A", 5, 1) }, { itemAt("ID", 1, 3) });
        layout.recordType = RecordTypeColumns{ 4, 1 };
        layout.relativePositions = true;
        LintOptions only;
        only.only = { LintRule::RelativeStart };
        QVERIFY(lint(layout, only).isEmpty());
        layout.levels[0].records[0].items[0].start = 4;
        QCOMPARE(idsAndPaths(lint(layout, only)), QStringList("relative-start L/R/A"));
    }

    void linkedSetsOfNumbersAndTextsAreCheckedApart()
    {
        Item numeric = itemWith({ made::value("X", "a") });
        numeric.valueSets[0].link = "7";
        Item alpha = numeric;
        alpha.type = itemtype::alpha();
        LintOptions only;
        only.only = { LintRule::TextCode };
        QCOMPARE(lint(dictionary({ alpha, numeric }), only).size(), 1);
    }

    void valueThatIsIgnoredIsToBeCorrected()
    {
        const QByteArray text = "{\"name\": \"D\", \"levels\": {}, \"relativePositions\": true}";
        const QVector<LintFinding> findings = findingsOf(text, { LintRule::MissingKey });
        QVERIFY(!findings.isEmpty());
        QCOMPARE(findings.constFirst().message,
                 QString("a value of \"levels\" is not a list of objects, and is ignored; correct it"));
    }

    void onlyAndDisabledSelectRules()
    {
        const Layout layout = dictionary({ itemWith({ made::value("100"), made::value("A") }) });
        LintOptions options;
        QCOMPARE(idsAndPaths(lint(layout, options)).size(), 3);
        options.disabled = { LintRule::WideCode };
        QCOMPARE(lint(layout, options).size(), 2);
        options.only = { LintRule::WideCode, LintRule::TextCode };
        const QVector<LintFinding> findings = lint(layout, options);
        QCOMPARE(findings.size(), 1);
        QCOMPARE(findings.constFirst().rule, LintRule::TextCode);
    }

    void layoutThatCouldNotBeReadHasNoFindings() { QVERIFY(findingsOf("no dictionary").isEmpty()); }

    void linesAreThoseOfTheElementAlsoWithIdsAfterRecords()
    {
        const QByteArray text = "[Dictionary]\nName=D\nPositions=Absolute\n[Level]\nName=L\n[Record]\nName=R\n[Item]\n"
                                "Name=A\nStart=1\nLen=20\n[ValueSet]\nName=V\nLabel=V\nValue=1;a\nNote=x\nValue=1;b\n"
                                "[IdItems]\n[Item]\nName=I\nStart=30\nLen=20\n";
        const QVector<LintFinding> findings = findingsOf(text, { LintRule::Limit, LintRule::DuplicateCode });
        QCOMPARE(findings.size(), 3);
        QCOMPARE(findings.at(0).line, 19);
        QCOMPARE(findings.at(1).line, 8);
        QCOMPARE(findings.at(2).line, 17);
    }

    void linesOfAJsonDictionaryAreThoseOfItsObjects()
    {
        const QByteArray text
            = "\xEF\xBB\xBF{\n\"name\": \"D\", \"labels\": [\n{\"text\": \"D\"}], \"recordType\": {\"start\": 0, "
              "\"length\": 0},\n\"relativePositions\": false, \"levels\": [\n{\"name\": \"L\", \"ids\": {\n"
              "\"items\": [\n{\"name\": \"I\", \"start\": 1, \"length\": 20, \"contentType\": \"numeric\"}]},\n"
              "\"records\": [\n{\"name\": \"R\", \"occurrences\": {\"required\": true, \"maximum\": 0},\n"
              "\"items\": [{\"name\": \"A\", \"start\": 21, \"length\": 1, \"contentType\": \"numeric\",\n"
              "\"valueSets\": [\n{\"name\": \"V\", \"values\": [\n{\"pairs\": [{\"value\": \"1\"}]},\n"
              "{\"pairs\": [{\"value\": \"1\"}]}]}]}]}]}],\n\"relations\": [{\"name\": \"P\", \"primary\": \"X\"}]}";
        const QVector<LintFinding> findings
            = findingsOf(text,
                         { LintRule::Limit, LintRule::DuplicateCode, LintRule::RelationTarget,
                           LintRule::MissingValueLabel, LintRule::MissingLabel });
        QStringList places;
        for (const LintFinding &finding : findings)
            places.append(QStringLiteral("%1 %2").arg(finding.line).arg(finding.path));
        QCOMPARE(places,
                 QStringList({ "9 L/R", "7 L/(ids)/I", "5 L", "7 L/(ids)/I", "9 L/R", "10 L/R/A", "12 L/R/A/V",
                               "12 L/R/A/V", "14 L/R/A/V/#2", "15 relations/P" }));
    }

    void problemOfAJsonDictionaryHasTheLineOfItsKey_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QString>("place");
        QTest::newRow("unknown key") << QByteArray("@4") << QByteArray("\"x\": {\n\"y\": 1},\n")
                                     << "warning ignored-key 4 ";
        QTest::newRow("misspelled key") << QByteArray("@9") << QByteArray("\"len\":\n1,\n")
                                        << "error misspelled-key 9 L/R/A";
        QTest::newRow("positions") << QByteArray("\"relativePositions\": true,") << QByteArray()
                                   << "error missing-positions 1 ";
        QTest::newRow("repeated key") << QByteArray("@8") << QByteArray("\"name\": \"S\",\n")
                                      << "warning repeated-key 8 L/R";
        QTest::newRow("word") << QByteArray("\"numeric\"") << QByteArray("\"integer\"") << "error unknown-type 9 L/R/A";
        QTest::newRow("type") << QByteArray("\"zeroFill\": false") << QByteArray("\"zeroFill\": 1")
                              << "warning unread-value 10 L/R/A";
        QTest::newRow("type of a required key")
            << QByteArray("\"length\": 5") << QByteArray("\"length\": []") << "error missing-key 10 L/R/A";
        QTest::newRow("list instead of an object")
            << QByteArray("\"ids\": { \"items\": [] }") << QByteArray("\"ids\": []") << "error missing-key 7 L";
        QTest::newRow("missing key") << QByteArray("\"length\": 5, ") << QByteArray() << "error missing-key 8 L/R/A";
        QTest::newRow("entry of a list") << QByteArray("@11") << QByteArray(",\n7") << "error missing-key 12 L/R";
        QTest::newRow("list in a list") << QByteArray("@11") << QByteArray(",\n[\n7]") << "error missing-key 12 L/R";
        QTest::newRow("empty list") << QByteArray("\"zeroFill\": false")
                                    << QByteArray("\"valueSets\": [\n{ \"name\": \"V\",\n\"labels\": [] } ]")
                                    << "info reader-remark 12 L/R/A/V";
        QTest::newRow("label") << QByteArray("[ { \"text\": \"A\" } ]")
                               << QByteArray("[ { \"text\": \"A\" },\n{ \"text\": \"B\", \"language\": \"FR\" } ]")
                               << "warning label-without-language 8 L/R/A";
    }
    void problemOfAJsonDictionaryHasTheLineOfItsKey()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QByteArray text
            = "{\n\"name\": \"D\",\n\"labels\": [ { \"text\": \"D\" } ],\n@4\"relativePositions\": true,\n"
              "\"recordType\": { \"start\": 1, \"length\": 1 }, \"levels\": [\n{ \"name\": \"L\",\n"
              "\"ids\": { \"items\": [] }, \"records\": [ { \"name\": \"R\",\n@8\"occurrences\": { \"required\": "
              "true, \"maximum\": 1 }, \"items\": [ { \"name\": \"A\", \"labels\": [ { \"text\": \"A\" } ],\n"
              "@9\"contentType\": \"numeric\",\n\"length\": 5, \"zeroFill\": false }\n@11] } ] } ]\n}\n";
        QCOMPARE(text.count(before), 1);
        text.replace(before, after);
        for (const char *place : { "@4", "@8", "@9", "@11" })
            text.replace(place, "");
        QStringList places;
        const QVector<LintFinding> findings = findingsOf(text);
        for (const LintFinding &finding : findings)
            places.append(QStringLiteral("%1 %2 %3 %4")
                              .arg(wordOf(finding.severity()), infoOf(finding.rule).id)
                              .arg(finding.line)
                              .arg(finding.path));
        QFETCH(QString, place);
        QVERIFY2(places.contains(place), qPrintable(places.join('\n')));
    }

    void problemOfAReaderIsAFindingOfItsRule_data()
    {
        QTest::addColumn<QString>("problem");
        QTest::addColumn<QString>("rule");
        const std::pair<const char *, QStringList> problemsOfRules[] = {
            { "unknown-key", { "no-equals-sign", "unknown-key", "unknown-section", "text-after-section" } },
            { "ignored-key",
              { "extra-key", "unused-length", "unusable-offset", "unused-offset", "date-without-capture",
                "relation-label" } },
            { "repeated-key", { "repeated-key", "repeated-language", "value-and-range" } },
            { "misplaced-section",
              { "repeated-section", "misplaced-section", "dictionary-after-level", "languages-after-level",
                "no-level-yet" } },
            { "missing-key",
              { "missing-key", "dictionary-without-name", "level-without-name", "record-without-name",
                "item-without-name", "item-without-length", "value-set-without-name", "relation-without-name",
                "relation-without-primary", "relation-without-secondary", "no-level", "no-variables",
                "level-without-ids" } },
            { "missing-positions", { "no-positions", "item-without-start", "no-start" } },
            { "unread-value",
              { "bad-number", "neither-yes-nor-no", "unknown-word", "unknown-special", "wrong-type", "converted-type",
                "bad-pair", "bad-occurrence", "unusable-subitem", "columns-differ", "unknown-file",
                "unknown-record-type", "record-type-columns-differ", "unresolved-entity" } },
            { "unknown-type", { "unknown-type" } },
            { "mixed-encodings", { "bad-bytes" } },
            { "subitem-without-item", { "subitem-without-item" } },
            { "label-without-language", { "label-without-language", "undeclared-language" } },
            { "label-without-occurrence", { "label-without-occurrence" } },
            { "incomplete-reading",
              { "reading-ended", "too-many-problems", "too-many-extras", "too-many-linked-values", "too-much-text",
                "too-many-locations", "catalog-not-read" } },
            { "reader-remark", { "newer-version", "carriage-returns", "another" } },
        };
        for (const auto &[rule, problems] : problemsOfRules) {
            for (const QString &problem : problems)
                QTest::newRow(qPrintable(problem)) << problem << rule;
        }
    }
    void problemOfAReaderIsAFindingOfItsRule()
    {
        QFETCH(QString, problem);
        QFETCH(QString, rule);
        Layout layout = dictionary({ itemAt("A", 2, 1) });
        layout.problems = { { Severity::Warning, problem, 7, "L/R", "the fact" } };
        const QVector<LintFinding> findings = lint(layout);
        QCOMPARE(findings.size(), 1);
        QCOMPARE(infoOf(findings.constFirst().rule).id, rule);
        QCOMPARE(findings.constFirst().line, 7);
        QCOMPARE(findings.constFirst().path, QString("L/R"));
        QVERIFY(findings.constFirst().message.startsWith("the fact"));
        layout.format = Format::CSProJson; // CSPro ignores unknown keys there
        QCOMPARE(infoOf(lint(layout).constFirst().rule).id, rule == "unknown-key" ? QString("ignored-key") : rule);
    }

    void textsOfTheFileAreShortAndOnOneLineInMessages()
    {
        const QString hostile = QString("%1 %2 %3\n\x1B") + QString(100000, 'x');
        Item item = itemWith(
            { made::value(hostile, hostile), made::value(hostile, hostile), made::range("2", "1", hostile) });
        item.name = hostile;
        item.valueSets[0].link = hostile;
        Layout layout = dictionary({ item, item });
        layout.levels[0].records[0].recordType = hostile;
        layout.relations = { { hostile, {}, hostile, { { hostile, hostile, hostile } } } };
        layout.languages = { { "EN", "English" }, { hostile, hostile } };
        const QVector<LintFinding> findings = lint(layout);
        QVERIFY(findings.size() > 10);
        for (const LintFinding &finding : findings) {
            QVERIFY2(finding.message.size() < 500, qPrintable(finding.message.left(500)));
            QVERIFY(!finding.message.contains('\n') && !finding.message.contains('\x1B'));
        }
    }

    void placeholdersInATextOfTheFileAreKept()
    {
        const QVector<LintFinding> findings = lint(dictionary({ itemWith({ made::value("%2%1%3", "a") }) }));
        QCOMPARE(findings.size(), 1);
        QVERIFY(findings.constFirst().message.startsWith("the code \"%2%1%3\" of a numeric item"));
        const QVector<LintFinding> twice
            = lint(dictionary({ itemWith({ made::value("%3", "%1"), made::value("%3", "b") }, 2, itemtype::alpha()) }));
        QCOMPARE(twice.size(), 1);
        QCOMPARE(twice.constFirst().message,
                 QString("the code %3 is also in value 1 of the set (%1); remove one of them"));
    }

    void changedBytesAreChecked()
    {
        QRandomGenerator random(11);
        const QByteArray text = baseDictionary().toUtf8();
        for (int round = 0; round < 500; ++round) {
            QByteArray bytes = text;
            for (int change = 0; change < 8; ++change) {
                const int place = random.bounded(int(bytes.size()));
                if (random.bounded(2) == 0)
                    bytes[place] = char(random.bounded(256));
                else
                    bytes.remove(place, random.bounded(40));
            }
            const QVector<LintFinding> findings = findingsOf(bytes);
            for (const LintFinding &finding : findings)
                QVERIFY(!finding.message.isEmpty() && !finding.message.contains('\n'));
        }
    }

    void extremeNumbersAreChecked()
    {
        Item item = itemAt("A", std::numeric_limits<int>::max(), std::numeric_limits<int>::max());
        item.occurrences = std::numeric_limits<int>::max();
        item.decimals = std::numeric_limits<int>::max();
        Item negative = itemAt("B", -5, -7);
        negative.occurrences = -1;
        Item subitem = item;
        subitem.isSubitem = true;
        Layout layout = dictionary({ item, item, subitem, negative });
        layout.recordType = RecordTypeColumns{ std::numeric_limits<int>::max(), std::numeric_limits<int>::max() };
        layout.relativePositions = true;
        QVERIFY(lint(layout).size() > 5);
    }

    void findingsGrowLinearlyWithTheNumberOfItems()
    {
        QVector<Item> items;
        for (int index = 0; index < 20000; ++index)
            items.append(itemAt(QString("I%1").arg(index), 2, 30000)); // all overlap
        LintOptions only;
        only.only = { LintRule::Overlap };
        QCOMPARE(lint(dictionary(items), only).size(), items.size() - 1);
    }
};

QTEST_APPLESS_MAIN(LintTest)
#include "LintTest.moc"
