#include "layout/LayoutFiles.h"
#include "support/RandomLayouts.h"

#include "read/DdiXml_p.h"
#include "read/Reader.h"
#include "read/StatFileTexts_p.h"
#include "write/Columns_p.h"
#include "write/Ddi.h"
#include "write/Exportable.h"
#include "write/LanguageTag_p.h"
#include "write/LayoutJson.h"
#include "write/XmlStream_p.h"

#include <QBuffer>
#include <QDir>
#include <QTest>

#include <algorithm>
#include <random>

using namespace vanlayout;

namespace
{

/// Removes from a layout what its DDI document does not hold. Each operation is a row of the list in `docs/ddi.md`.
class HeldByDdi
{
public:
    HeldByDdi(Layout whole, DdiProfile documentProfile)
        : layout(std::move(whole))
        , profile(documentProfile)
    {
    }

    Layout reduced()
    {
        nameItems();
        dropFactsOfTheFile();
        layout.created = layout.modified ? layout.modified : layout.created;
        layout.modified.reset();
        layout.name = heldText(layout.name);
        layout.note = heldText(layout.note);
        layout.aliases = heldAliases(layout.aliases);
        layout.labels = heldLabels(layout.labels);
        for (Label &label : layout.labels.parts)
            label.text = label.text.trimmed();
        if (layout.labels.parts.size() == 1 && layout.labels.primary() == layout.name)
            layout.labels = Labels();
        reduceRecordType();
        for (Level &level : layout.levels)
            reduceLevel(level);
        for (Relation &relation : layout.relations)
            reduceRelation(relation);
        return layout;
    }

private:
    static QString heldText(const QString &text) { return ddi::withoutIndentation(xmlText(text)); }
    static QStringList heldAliases(QStringList aliases)
    {
        for (QString &alias : aliases)
            alias = xmlText(alias);
        return aliases;
    }
    static Labels heldLabels(const Labels &labels)
    {
        Labels held;
        for (const Label &label : labels.parts) {
            const QString text = heldText(label.text);
            if (!text.isEmpty())
                held.parts.append({ languageTagOf(label.language), text });
        }
        return held;
    }

    void dropFactsOfTheFile()
    {
        layout.file.clear();
        layout.format = Format::None;
        layout.formatVersion.clear();
        layout.container.clear();
        layout.encoding.clear();
        layout.languages.clear();
        layout.relativePositions.reset();
        layout.decimalMark = false;
        layout.zeroFill = false;
        layout.editable = true;
        layout.security.reset();
        layout.readOptimization.reset();
        layout.enableBinaryItems.reset();
        layout.valueSetImages.reset();
        layout.extras.clear();
        layout.problems.clear();
    }

    // Names are those of the variables: unique in a record, and never empty.
    void nameItems()
    {
        const Layout original = layout;
        const auto rename = [&](const QVector<Column> &columns, const QVector<Item> &before, QVector<Item> &after) {
            for (const Column &column : columns) {
                const bool isHere
                    = column.item >= before.constData() && column.item < before.constData() + before.size();
                if (isHere && column.occurrence == 0)
                    after[int(column.item - before.constData())].name = column.name;
            }
        };
        for (int i = 0; i < original.levels.size(); ++i) {
            rename(columnsOf(original, i, Record()), original.levels.at(i).ids, layout.levels[i].ids);
            for (int k = 0; k < original.levels.at(i).records.size(); ++k) {
                const Record &record = original.levels.at(i).records.at(k);
                rename(columnsOf(original, i, record), record.items, layout.levels[i].records[k].items);
            }
        }
    }

    void reduceRecordType()
    {
        const bool hasRecords = std::any_of(layout.levels.begin(), layout.levels.end(),
                                            [](const Level &level) { return !level.records.isEmpty(); });
        hasTypes = hasRecords && layout.recordType && layout.recordType->start > 0 && layout.recordType->length > 0;
        if (!hasTypes)
            layout.recordType.reset();
    }

    template <typename Part> static void reduceTexts(Part &part)
    {
        part.name = xmlText(part.name);
        part.labels = heldLabels(part.labels);
        part.note = heldText(part.note);
        part.aliases = heldAliases(part.aliases);
    }

    void reduceLevel(Level &level)
    {
        reduceTexts(level);
        reduceItems(level.ids);
        for (Record &record : level.records) {
            reduceTexts(record);
            record.recordType = hasTypes ? xmlText(record.recordType) : QString();
            if (record.length && *record.length <= 0)
                record.length.reset();
            for (OccurrenceLabel &label : record.occurrenceLabels)
                label.labels = heldLabels(label.labels);
            dropEmpty(record.occurrenceLabels);
            reduceItems(record.items);
        }
    }

    static void dropEmpty(QVector<OccurrenceLabel> &labels)
    {
        labels.erase(std::remove_if(labels.begin(), labels.end(),
                                    [](const OccurrenceLabel &label) { return label.labels.isEmpty(); }),
                     labels.end());
    }

    void reduceItems(QVector<Item> &items) const
    {
        for (Item &item : items)
            reduceItem(item);
    }

    void reduceItem(Item &item) const
    {
        reduceTexts(item);
        item.isSubitem = !item.subitemOf.isEmpty();
        item.alignment = Alignment::None;
        item.displayWidth = 0;
        item.occurrences = std::max(item.occurrences, 1);
        if (item.storage != Storage::None)
            item.length = stat::widthInFormat(item.format);
        else if (item.start <= 0 || item.length <= 0)
            item.start = item.length = 0;
        reduceNumber(item);
        if (item.capture && item.capture->dateFormat.isEmpty())
            item.capture.reset();
        if (item.capture)
            item.capture->type = QStringLiteral("date");
        reduceOccurrenceLabels(item);
        for (int i = 0; i < item.valueSets.size(); ++i)
            reduceSet(item.valueSets[i], i == 0 && !isListedInNote(item.valueSets.at(i)));
    }

    void reduceNumber(Item &item) const
    {
        const bool isBinary = !item.isNumeric() && !item.isAlpha();
        if (item.type.isEmpty())
            item.type = profile == DdiProfile::Plain ? itemtype::numeric() : itemtype::alpha();
        if (!item.isNumeric() || item.decimals < 0)
            item.decimals = 0;
        if (item.decimals <= 0)
            item.decimalMark = false;
        item.zeroFill = item.zeroFill && !isBinary;
        item.type = xmlText(item.type);
    }

    // The label of an occurrence is a part of the label of its variable, for each language of the item's label.
    static void reduceOccurrenceLabels(Item &item)
    {
        QVector<OccurrenceLabel> held;
        for (int k = 1; k <= item.occurrences && item.occurrences > 1; ++k) {
            const auto found = std::find_if(item.occurrenceLabels.begin(), item.occurrenceLabels.end(),
                                            [&](const OccurrenceLabel &label) { return label.occurrence == k; });
            if (found == item.occurrenceLabels.end() || item.labels.isEmpty())
                continue;
            Labels labels;
            for (const Label &part : item.labels.parts)
                labels.parts.append({ part.language, textOf(*found, part.language) });
            addHeld(held, k, labels);
        }
        item.occurrenceLabels = held;
    }
    static QString textOf(const OccurrenceLabel &label, const QString &tag)
    {
        for (const Label &part : label.labels.parts) {
            if (languageTagOf(part.language) == tag && !part.text.isEmpty())
                return xmlText(part.text);
        }
        return label.labels.primary().isEmpty() ? QString::number(label.occurrence) : xmlText(label.labels.primary());
    }
    static void addHeld(QVector<OccurrenceLabel> &held, int number, Labels labels)
    {
        const QString first = labels.parts.constFirst().text;
        const bool isOne = std::all_of(labels.parts.begin(), labels.parts.end(),
                                       [&](const Label &part) { return part.text == first; });
        if (isOne)
            labels.parts.resize(1);
        if (!isOne || first != QString::number(number))
            held.append({ number, labels });
    }

    // Readers of extracts have the values of a first set with ranges in a note, as the other sets.
    bool isListedInNote(const ValueSet &set) const
    {
        return profile == DdiProfile::Ipums
            && std::any_of(set.values.begin(), set.values.end(), [](const Value &value) {
                   return std::any_of(value.ranges.begin(), value.ranges.end(),
                                      [](const Range &range) { return !range.to.isEmpty() && range.to != range.from; });
               });
    }

    void reduceSet(ValueSet &set, bool isFirst) const
    {
        reduceTexts(set);
        set.link.clear();
        QVector<Value> values;
        for (Value value : qAsConst(set.values)) {
            value.labels = heldLabels(value.labels);
            value.textColor.clear();
            value.note = isFirst ? heldText(value.note) : QString();
            value.image = isFirst ? xmlText(value.image) : QString();
            if (!isFirst)
                sortByLanguage(value.labels);
            for (Range &range : value.ranges)
                reduceRange(range);
            if (isFirst && (profile == DdiProfile::Plain || !value.ranges.isEmpty()))
                values += perCode(value);
            else if (isFirst)
                continue; // readers of extracts have only categories with a code
            else if (!value.ranges.isEmpty() || !value.labels.isEmpty())
                values.append(value);
        }
        set.values = values;
    }

    static void sortByLanguage(Labels &labels)
    {
        std::stable_sort(labels.parts.begin(), labels.parts.end(),
                         [](const Label &one, const Label &other) { return one.language < other.language; });
    }

    static void reduceRange(Range &range)
    {
        range.from = xmlText(range.from);
        range.to = range.to == range.from ? QString() : xmlText(range.to);
    }

    // A value of the first set is one value for each code, then one for its ranges.
    static QVector<Value> perCode(const Value &value)
    {
        QVector<Value> values;
        QVector<Range> ranges;
        Value part = value;
        for (const Range &range : value.ranges) {
            part.ranges = { range };
            if (range.to.isEmpty())
                values.append(part);
            else
                ranges.append(range);
        }
        part.ranges = ranges;
        if (!ranges.isEmpty() || value.ranges.isEmpty())
            values.append(part);
        return values;
    }

    static void reduceRelation(Relation &relation)
    {
        relation.aliases.clear();
        if (relation.links.isEmpty())
            relation.primary.clear();
    }

    Layout layout;
    DdiProfile profile;
    bool hasTypes = false;
};

QByteArray documentOf(const Layout &layout, DdiProfile profile)
{
    DdiOptions options;
    options.profile = profile;
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return writeDdi(layout, buffer, options) ? buffer.data() : QByteArray();
}

Layout readBack(QByteArray document)
{
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    return readLayout(buffer, QStringLiteral("name"));
}

QByteArrayList linesOf(const Layout &layout)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    writeLayoutJson(layout, buffer, JsonStyle::Pretty);
    return buffer.data().split('\n');
}

// The first difference of two layouts; empty if there is none.
QByteArray differenceOf(const Layout &one, const Layout &other)
{
    if (one == other)
        return QByteArray();
    const QByteArrayList before = linesOf(one);
    const QByteArrayList after = linesOf(other);
    int i = 0;
    while (i < qMin(before.size(), after.size()) && before.at(i) == after.at(i))
        ++i;
    return "line " + QByteArray::number(i + 1) + "\n" + before.mid(qMax(i - 4, 0), 14).join('\n') + "\n--- read back:\n"
        + after.mid(qMax(i - 4, 0), 14).join('\n');
}

/// Makes random dictionaries, the same ones in each run.
class RandomDictionary
{
public:
    explicit RandomDictionary(quint32 seed)
        : random(seed)
    {
    }

    Layout make()
    {
        Layout layout;
        layout.format = Format::CSProText;
        layout.name = name("D");
        layout.labels = labels();
        layout.note = note();
        layout.recordType = RecordTypeColumns{ 1, 2 };
        for (int i = 1 + below(2); i > 0; --i)
            layout.levels.append(level());
        return layout;
    }

private:
    int below(int end) { return int(random() % quint32(end)); }
    bool oneIn(int times) { return below(times) == 0; }
    QString name(const char *stem) { return QLatin1String(stem) + QString::number(++count); }
    QString note() { return oneIn(3) ? text() + "\n" + text() : QString(); }
    QString text()
    {
        const QStringList words = { "Age", "of", "head", "<b>", "a & b", "\u00c2ge", "(years)", "x, y", "to 9" };
        QStringList chosen;
        for (int i = 1 + below(3); i > 0; --i)
            chosen.append(words.at(below(words.size())));
        return chosen.join(' ');
    }
    Labels labels()
    {
        if (oneIn(5))
            return {};
        Labels made = { { { "EN", text() } } };
        if (oneIn(2))
            made.parts.append({ "FR", text() });
        return made;
    }
    template <typename Part> void describe(Part &part, const char *stem)
    {
        part.name = name(stem);
        part.labels = labels();
        part.note = note();
        if (oneIn(4))
            part.aliases = QStringList{ name("ALIAS"), name("OTHER") };
    }

    Level level()
    {
        Level made;
        describe(made, "LEVEL");
        start = start == 0 ? 3 : start;
        for (int i = below(3); i > 0; --i)
            made.ids.append(item(start));
        for (int i = 1 + below(3); i > 0; --i)
            made.records.append(record());
        return made;
    }
    Record record()
    {
        Record made;
        describe(made, "RECORD");
        made.recordType = QString::number(++types).rightJustified(2, '0');
        made.required = oneIn(2);
        made.maximum = 1 + below(9);
        if (oneIn(2))
            made.length = 500 + below(100);
        int column = start;
        for (int i = below(6); i > 0; --i)
            addItem(made.items, column);
        return made;
    }
    Item item(int &column)
    {
        Item made;
        describe(made, "ITEM");
        made.start = column;
        made.length = 2 + below(9);
        if (oneIn(4)) {
            made.type = itemtype::alpha();
        } else {
            made.decimals = oneIn(3) ? 1 + below(2) : 0;
            made.decimalMark = made.decimals > 0 && oneIn(2);
            made.zeroFill = oneIn(2);
        }
        for (int i = below(4); i > 0; --i)
            made.valueSets.append(valueSet());
        column += made.length;
        return made;
    }
    void addItem(QVector<Item> &items, int &column)
    {
        Item made = item(column);
        made.occurrences = oneIn(3) ? 2 + below(3) : 1;
        for (int k = 1; k <= made.occurrences && made.occurrences > 1; ++k) {
            if (oneIn(2) && !made.labels.isEmpty())
                made.occurrenceLabels.append({ k, { { { "EN", text() }, { "FR", text() } } } });
        }
        column = made.start + made.length * made.occurrences;
        items.append(made);
        int inside = made.start;
        while (oneIn(2) && inside + 2 <= made.start + made.length) {
            Item part = item(inside);
            part.length = 1;
            part.isSubitem = true;
            part.subitemOf = made.name;
            part.occurrences = oneIn(3) ? 2 : 1;
            inside = part.start + part.occurrences;
            items.append(part);
        }
    }
    ValueSet valueSet()
    {
        ValueSet made;
        describe(made, "SET");
        int code = 1;
        for (int i = below(5); i > 0; --i) {
            Value value;
            value.labels = labels();
            for (int k = 1 + below(2); k > 0; --k) {
                const int from = code;
                code += 1 + below(9);
                value.ranges.append({ QString::number(from), code - from > 5 ? QString::number(code - 1) : QString() });
            }
            value.special = oneIn(4) ? Special(1 + below(4)) : Special::None;
            made.values.append(value);
        }
        return made;
    }

    std::mt19937 random;
    int count = 0;
    int types = 0;
    int start = 0;
};

} // namespace

/// A layout that is written as DDI and read back is the same layout, but for what DDI does not hold.
class DdiRoundTripTest : public QObject
{
    Q_OBJECT

private slots:
    void layoutComesBack_data();
    void layoutComesBack();
    void randomLayoutComesBack();
    void documentOfAnotherProgramComesBack_data();
    void documentOfAnotherProgramComesBack();
};

void DdiRoundTripTest::layoutComesBack_data()
{
    addLayoutFiles();
    addFiles("text form of the importers", VAN_TEST_DATA "/cspro", { "*.dcf" });
    addFiles("JSON form of the importers", VAN_TEST_DATA "/cspro8", { "*.dcf" });
}

void DdiRoundTripTest::layoutComesBack()
{
    QFETCH(QStringList, paths);
    if (paths.isEmpty())
        QSKIP("the corpus is not available");
    QByteArrayList differences;
    for (const QString &path : qAsConst(paths)) {
        const Layout layout = readLayout(path);
        if (!layout.isRead() || !exportProblem(layout).isEmpty())
            continue;
        for (const DdiProfile profile : { DdiProfile::Plain, DdiProfile::Ipums }) {
            const Layout back = readBack(documentOf(layout, profile));
            QVERIFY2(back.isRead(), qPrintable(path));
            const QByteArray difference
                = differenceOf(HeldByDdi(layout, profile).reduced(), HeldByDdi(back, profile).reduced());
            if (!difference.isEmpty())
                differences.append(path.toUtf8() + ": " + difference);
        }
    }
    const QByteArray message = QByteArray::number(differences.size()) + " of " + QByteArray::number(paths.size()) + "\n"
        + differences.mid(0, 3).join('\n');
    QVERIFY2(differences.isEmpty(), message.constData());
}

void DdiRoundTripTest::randomLayoutComesBack()
{
    const quint32 layouts = randomLayoutCount(500);
    for (quint32 seed = 1; seed <= layouts; ++seed) {
        const Layout layout = RandomDictionary(seed).make();
        const Layout back = readBack(documentOf(layout, DdiProfile::Plain));
        const QByteArray difference = differenceOf(HeldByDdi(layout, DdiProfile::Plain).reduced(),
                                                   HeldByDdi(back, DdiProfile::Plain).reduced());
        QVERIFY2(difference.isEmpty(), ("seed " + QByteArray::number(seed) + ": " + difference).constData());
        QVERIFY2(back.extras.isEmpty(), QByteArray::number(seed).constData());
        for (const Problem &problem : back.problems)
            QCOMPARE(problem.id, QString("no-variables"));
        // A document of a layout that was read comes back as the same document.
        const QByteArray document = documentOf(back, DdiProfile::Plain);
        QCOMPARE(documentOf(readBack(document), DdiProfile::Plain), document);
    }
}

void DdiRoundTripTest::documentOfAnotherProgramComesBack_data()
{
    QTest::addColumn<QString>("path");
    const QDir directory(QStringLiteral(VAN_TEST_DATA "/layout"));
    for (const QString &name : directory.entryList({ "ddi-*.xml" }))
        QTest::newRow(qPrintable(name)) << directory.filePath(name);
}

void DdiRoundTripTest::documentOfAnotherProgramComesBack()
{
    QFETCH(QString, path);
    const Layout layout = readLayout(path);
    const Layout back = readBack(documentOf(layout, DdiProfile::Plain));
    QCOMPARE(differenceOf(HeldByDdi(layout, DdiProfile::Plain).reduced(), HeldByDdi(back, DdiProfile::Plain).reduced()),
             QByteArray());
}

QTEST_APPLESS_MAIN(DdiRoundTripTest)
#include "DdiRoundTripTest.moc"
