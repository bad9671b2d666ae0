#include "read/Reader.h"
#include "support/Corpus.h"

#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QTest>

#include <algorithm>

using namespace vanlayout;

namespace
{

// The only record for which the file states a length that differs from that of its items.
const QString otherLength = QStringLiteral("istat-household-template.dcf INDIVIDUAL");

// The number of occurrences of each section `[Section]` and each key `[Section]Key`; keys after a value are those of
// `[Value]`.
QMap<QByteArray, int> keysOf(const QByteArray &bytes)
{
    QMap<QByteArray, int> keys;
    QByteArray section;
    for (const QByteArray &line : bytes.split('\n')) {
        const QByteArray key = line.split('=').constFirst().trimmed();
        if (key.contains('['))
            section = key.mid(key.indexOf('['));
        if (!key.isEmpty())
            ++keys[key.contains('[') ? section : section + key];
        if (key == "Value")
            section = "[Value]";
    }
    return keys;
}

// The total numbers of the elements of a layout.
struct Sums {
    int records = 0;
    int optionalRecords = 0;
    int repeatedRecords = 0;
    int items = 0;
    int subitems = 0;
    int alphas = 0;
    int decimals = 0;
    int decimalMarks = 0;
    int zeroFills = 0;
    int occurrences = 0;
    int occurrenceLabels = 0;
    int sets = 0;
    int links = 0;
    int values = 0;
    int specials = 0;
    int images = 0;
};

void add(Sums &sums, const ValueSet &set)
{
    ++sums.sets;
    sums.links += set.link.isEmpty() ? 0 : 1;
    sums.values += set.values.size();
    for (const Value &value : set.values) {
        sums.specials += value.special != Special::None ? 1 : 0;
        sums.images += value.image.isEmpty() ? 0 : 1;
    }
}

void add(Sums &sums, const QVector<Item> &items)
{
    for (const Item &item : items) {
        ++sums.items;
        sums.subitems += item.isSubitem ? 1 : 0;
        sums.alphas += item.isAlpha() ? 1 : 0;
        sums.decimals += item.decimals > 0 ? 1 : 0;
        sums.decimalMarks += item.decimalMark ? 1 : 0;
        sums.zeroFills += item.zeroFill ? 1 : 0;
        sums.occurrences += item.occurrences > 1 ? 1 : 0;
        sums.occurrenceLabels += item.occurrenceLabels.size();
        for (const ValueSet &set : item.valueSets)
            add(sums, set);
    }
}

Sums sumsOf(const Layout &layout)
{
    Sums sums;
    for (const Level &level : layout.levels) {
        add(sums, level.ids);
        for (const Record &record : level.records) {
            ++sums.records;
            sums.optionalRecords += record.required ? 0 : 1;
            sums.repeatedRecords += record.maximum > 1 ? 1 : 0;
            add(sums, record.items);
        }
    }
    return sums;
}

int lastColumn(const Item &item)
{
    return item.start + item.length * item.occurrences - 1;
}

int lastColumn(const QVector<Item> &items)
{
    int last = 1;
    for (const Item &item : items)
        last = std::max(last, item.isSubitem ? 1 : lastColumn(item));
    return last;
}

int lastIdColumn(const Layout &layout)
{
    int last = 1;
    if (layout.recordType)
        last = std::max(last, layout.recordType->start + layout.recordType->length - 1);
    for (const Level &level : layout.levels)
        last = std::max(last, lastColumn(level.ids));
    return last;
}

const Item *findItem(const QVector<Item> &items, const QString &name)
{
    const auto found = std::find_if(items.begin(), items.end(), [&](const Item &item) { return item.name == name; });
    return found != items.end() ? &*found : nullptr;
}

int languageCount(const QMap<QByteArray, int> &keys)
{
    int count = 0;
    for (auto key = keys.begin(); key != keys.end(); ++key)
        count += key.key().startsWith("[Languages]") && key.key() != "[Languages]" ? 1 : 0;
    return count;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void addFiles()
{
    QTest::addColumn<QString>("path");
    for (const QString &path : corpusFiles("cspro-text"))
        QTest::newRow(qPrintable(QFileInfo(path).fileName())) << path;
}

} // namespace

/// Tests properties of all real dictionaries in text form. Without the corpus nothing is checked.
class TextLayoutCorpusTest : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsUnknown_data() { addFiles(); }
    void nothingIsUnknown();
    void everyLineIsInTheLayout_data() { addFiles(); }
    void everyLineIsInTheLayout();
    void recordsAreAsLongAsTheySay_data() { addFiles(); }
    void recordsAreAsLongAsTheySay();
    void subitemsAreWithinTheirItem_data() { addFiles(); }
    void subitemsAreWithinTheirItem();
    void valueSetsHaveValues_data() { addFiles(); }
    void valueSetsHaveValues();
};

void TextLayoutCorpusTest::nothingIsUnknown()
{
    QFETCH(QString, path);
    const Layout layout = readLayout(path);
    QVERIFY(layout.isRead());
    QCOMPARE(layout.encoding, QString("utf-8"));
    QVERIFY(!layout.name.isEmpty());
    QVERIFY(!layout.formatVersion.isEmpty());
    QVERIFY(layout.relativePositions.has_value());
    QVERIFY(!layout.levels.isEmpty());
    QVERIFY(layout.extras.isEmpty());
    QVERIFY(layout.problems.isEmpty());
}

void TextLayoutCorpusTest::everyLineIsInTheLayout()
{
    QFETCH(QString, path);
    const QMap<QByteArray, int> keys = keysOf(contentOf(path));
    const Layout layout = readLayout(path);
    const Sums sums = sumsOf(layout);
    QCOMPARE(layout.levels.size(), keys["[Level]"]);
    QCOMPARE(layout.relations.size(), keys["[Relation]"]);
    QCOMPARE(layout.languages.size(), languageCount(keys));
    QCOMPARE(sums.records, keys["[Record]"]);
    QCOMPARE(sums.optionalRecords, keys["[Record]Required"]);
    QCOMPARE(sums.repeatedRecords, keys["[Record]MaxRecords"]);
    QCOMPARE(sums.items, keys["[Item]"]);
    QCOMPARE(sums.subitems, keys["[Item]ItemType"]);
    QCOMPARE(sums.decimals, keys["[Item]Decimal"]);
    QCOMPARE(sums.decimalMarks, keys["[Item]DecimalChar"]);
    QCOMPARE(sums.zeroFills, keys["[Item]ZeroFill"]);
    QCOMPARE(sums.occurrences, keys["[Item]Occurrences"]);
    QCOMPARE(sums.occurrenceLabels, keys["[Item]OccurrenceLabel"]);
    QCOMPARE(sums.sets, keys["[ValueSet]"]);
    QCOMPARE(sums.links, keys["[ValueSet]Link"]);
    const bool areValuesRepeated = sums.links > 0;
    const int values = keys["[ValueSet]Value"] + keys["[Value]Value"];
    QVERIFY(areValuesRepeated ? sums.values >= values : sums.values == values);
    QVERIFY(areValuesRepeated ? sums.specials >= keys["[Value]Name"] : sums.specials == keys["[Value]Name"]);
    QVERIFY(areValuesRepeated ? sums.images >= keys["[Value]Image"] : sums.images == keys["[Value]Image"]);
}

// The rule of the format: the last column of record type, of the ids of all levels and of the record's items.
void TextLayoutCorpusTest::recordsAreAsLongAsTheySay()
{
    QFETCH(QString, path);
    const Layout layout = readLayout(path);
    for (const Level &level : layout.levels) {
        for (const Record &record : level.records) {
            const int computed = std::max(lastIdColumn(layout), lastColumn(record.items));
            const bool isOther = QFileInfo(path).fileName() + ' ' + record.name == otherLength;
            QVERIFY2(
                !record.length || (*record.length == computed) != isOther,
                qPrintable(QStringLiteral("%1: %2 instead of %3").arg(record.name).arg(*record.length).arg(computed)));
        }
    }
}

void TextLayoutCorpusTest::subitemsAreWithinTheirItem()
{
    QFETCH(QString, path);
    for (const Level &level : readLayout(path).levels) {
        for (const Record &record : level.records) {
            for (const Item &item : record.items) {
                if (!item.isSubitem)
                    continue;
                const Item *holder = findItem(record.items, item.subitemOf);
                QVERIFY2(holder && !holder->isSubitem, qPrintable(item.name));
                QVERIFY2(item.start >= holder->start && lastColumn(item) <= holder->start + holder->length - 1,
                         qPrintable(item.name));
            }
        }
    }
}

void TextLayoutCorpusTest::valueSetsHaveValues()
{
    QFETCH(QString, path);
    for (const Level &level : readLayout(path).levels) {
        for (const Record &record : level.records) {
            for (const Item &item : record.items) {
                for (const ValueSet &set : item.valueSets)
                    QVERIFY2(!set.values.isEmpty(), qPrintable(set.name));
            }
        }
    }
}

QTEST_APPLESS_MAIN(TextLayoutCorpusTest)
#include "TextLayoutCorpusTest.moc"
