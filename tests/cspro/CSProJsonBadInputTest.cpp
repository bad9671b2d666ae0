#include "import/ReadReport.h"
#include "support/DebugCapture.h"
#include "support/OwnedJson.h"
#include "support/ProcessorTime.h"
#include "support/ScarceMemory.h"
#include "support/Thrown.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <limits>
#include <random>

struct TestAccess {
    static void readJsonValueSets(TCSProJson &dictionary, TCSProItem *item, const QJsonObject &object)
    {
        dictionary.readJsonValueSets(item, object);
    }
};

namespace
{

constexpr int million = 1000000;
constexpr int largest = std::numeric_limits<int>::max();
constexpr int smallest = std::numeric_limits<int>::min();

const QByteArray smallDictionary
    = "{\r\n"
      "  \"software\": \"CSPro\", \"version\": 8.0, \"name\": \"D\",\r\n"
      "  \"recordType\": { \"start\": 1, \"length\": 1 },\r\n"
      "  \"defaults\": { \"decimalMark\": true, \"zeroFill\": false },\r\n"
      "  \"relativePositions\": true,\r\n"
      "  \"levels\": [ { \"name\": \"L\",\r\n"
      "    \"ids\": { \"items\": [ { \"name\": \"ID\", \"start\": 2, \"length\": 3 } ] },\r\n"
      "    \"records\": [ { \"name\": \"H\", \"recordType\": \"1\",\r\n"
      "      \"labels\": [ { \"text\": \"Se\xC3\xB1"
      "al\" } ],\r\n"
      "      \"occurrences\": { \"required\": true, \"maximum\": 1 },\r\n"
      "      \"items\": [\r\n"
      "        { \"name\": \"A\", \"contentType\": \"alpha\", \"length\": 1,\r\n"
      "          \"valueSets\": [ { \"name\": \"VS\", \"values\": [\r\n"
      "            { \"labels\": [ { \"text\": \"\\u00e1\" } ], \"pairs\": [ { \"value\": \"1\" } ] },\r\n"
      "            { \"pairs\": [ { \"range\": [ \"2\", \"4\" ] } ] } ] } ] },\r\n"
      "        { \"name\": \"C\", \"length\": 2, \"occurrences\": { \"maximum\": 3 } }\r\n"
      "      ] } ] } ]\r\n"
      "}\r\n";

QByteArray utf16(const QString &text, bool isBigEndian)
{
    QByteArray bytes;
    for (const QChar character : text) {
        const char low = char(character.unicode() & 0xFF);
        const char high = char(character.unicode() >> 8);
        bytes.append(isBigEndian ? high : low);
        bytes.append(isBigEndian ? low : high);
    }
    return bytes;
}

// A dictionary of one record with these items.
QByteArray withItems(const QByteArray &items)
{
    return "{\"levels\":[{\"records\":[{\"name\":\"R\",\"items\":[" + items + "]}]}]}";
}

QByteArray repeatedItem(const QByteArray &name, qint64 count, const QByteArray &keys = QByteArray())
{
    return "{\"name\":\"" + name + "\",\"occurrences\":{\"maximum\":" + QByteArray::number(count) + "}" + keys + "}";
}

// The values of a value set, this many.
QByteArray values(int count)
{
    QByteArray entries;
    for (int i = 0; i < count; ++i)
        entries
            += (i > 0 ? ",{\"pairs\":[{\"value\":\"" : "{\"pairs\":[{\"value\":\"") + QByteArray::number(i) + "\"}]}";
    return ",\"valueSets\":[{\"name\":\"VS\",\"values\":[" + entries + "]}]";
}

qint64 valuesOf(const OwnedJson &dictionary)
{
    qint64 count = 0;
    for (int i = 0; i < dictionary.getItemsCount(); ++i) {
        if (const TCSProValueSet *set = dictionary.setOf(i))
            count += set->Count();
    }
    return count;
}

} // namespace

class CSProJsonBadInputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false")); }

    void fileThatIsNotReadIsReported_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        const QString noBrace = QStringLiteral("no \"{\" after white space among the first 16 bytes");
        QTest::newRow("nothing") << QByteArray() << noBrace;
        QTest::newRow("a text dictionary") << QByteArray("[Dictionary]\nName=D\n") << noBrace;
        QTest::newRow("brace after") << QByteArray(16, ' ') + smallDictionary << noBrace;
        QTest::newRow("brace after a mark")
            << "\xEF\xBB\xBF" + smallDictionary << noBrace + ", but a byte-order mark of UTF-8";
        QTest::newRow("mark after a blank")
            << " \xEF\xBB\xBF" + smallDictionary << noBrace + ", but a byte-order mark of UTF-8";
        QTest::newRow("UTF-16, little end first") << utf16(QChar(0xFEFF) + QString::fromUtf8(smallDictionary), false)
                                                  << noBrace + ", but a byte-order mark of UTF-16";
        QTest::newRow("UTF-16, big end first") << utf16(QChar(0xFEFF) + QString::fromUtf8(smallDictionary), true)
                                               << noBrace + ", but a byte-order mark of UTF-16";
        QTest::newRow("cut off") << QByteArray("{ \"name\": ") << QStringLiteral("*, at byte *");
        QTest::newRow("no comma") << QByteArray("{ \"a\": 1 \"b\": 2 }") << QStringLiteral("*, at byte *");
    }
    void fileThatIsNotReadIsReported()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, text);
        ReadReport report;
        OwnedJson dictionary;
        dictionary.setReport(&report);
        dictionary.read(bytes);
        QCOMPARE(report.notes().size(), size_t(1));
        QCOMPARE(report.notes().front().kind, NoteKind::fileNotRead);
        const QRegularExpression expected(QRegularExpression::wildcardToRegularExpression(text));
        QVERIFY2(expected.match(report.notes().front().text).hasMatch(), qPrintable(report.notes().front().text));
    }

    void valueSetIsReleasedWhereMemoryRunsOut()
    {
        const QJsonObject object = QJsonDocument::fromJson("{\"name\":\"A\"" + values(3) + "}").object();
        OwnedJson dictionary;
        int count = 0;
        const auto readOnce = [&] {
            TCSProItem item;
            TestAccess::readJsonValueSets(dictionary, &item, object);
            const OwnedValueSet set(item.getValueSet(0));
            count = set->Count();
        };
        readOnce(); // objects that are made once stay
        const long before = scarce::blocksHeld;
        const int failures = scarce::runShort(readOnce);
        const long after = scarce::blocksHeld;
        QCOMPARE(count, 3);
        QVERIFY(failures > 3);
        QCOMPARE(after, before);
    }

    void valueSetThatIsNoObjectIsReported()
    {
        for (const QByteArray set : { "5", "null", "\"VS\"", "[]" }) {
            ReadReport report;
            OwnedJson dictionary;
            dictionary.setReport(&report);
            dictionary.read(withItems("{\"name\":\"A\",\"length\":1,\"valueSets\":[" + set + "]}"));
            QCOMPARE(dictionary.itemNames(), QStringList("A"));
            QVERIFY(!dictionary.setOf(0));
            QCOMPARE(report.count(NoteKind::wrongType), 1);
            const std::vector<ReadNote> &notes = report.notes();
            const auto note = std::find_if(notes.cbegin(), notes.cend(), [](const ReadNote &candidate) {
                return candidate.kind == NoteKind::wrongType;
            });
            QCOMPARE(note->text, QString("\"valueSets\":" + set));
            QCOMPARE(note->variable, QString("A"));
        }
    }

    void endOfReadingIsReportedWithItsRecord()
    {
        ReadReport report;
        OwnedJson dictionary;
        dictionary.setReport(&report);
        dictionary.read(withItems(repeatedItem("A", 2) + "," + repeatedItem("B", 2000000000)));
        QCOMPARE(dictionary.itemNames(), (QStringList{ "A_1", "A_2" }));
        QCOMPARE(report.count(NoteKind::readingEnded), 1);
        QCOMPARE(report.notes().back().kind, NoteKind::readingEnded);
        QCOMPARE(report.notes().back().text, QString("R"));
    }

    void whatIsNoDictionaryGivesAnEmptyOne_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QString text = QString::fromUtf8(smallDictionary);
        QTest::newRow("empty file") << QByteArray();
        QTest::newRow("one byte") << QByteArray("{");
        QTest::newRow("line feeds") << QByteArray("\n\n\n");
        QTest::newRow("carriage returns") << QByteArray("\r\r\r");
        QTest::newRow("a text dictionary") << QByteArray("[Dictionary]\nName=D\n[Item]\nName=A\n");
        QTest::newRow("byte-order mark") << QByteArray("\xEF\xBB\xBF") + smallDictionary;
        QTest::newRow("only a mark") << QByteArray("\xEF\xBB\xBF");
        QTest::newRow("a mark after the brace") << QByteArray("{\xEF\xBB\xBF") + smallDictionary.mid(1);
        QTest::newRow("UTF-16 with a mark") << utf16(QChar(0xFEFF) + text, false);
        QTest::newRow("UTF-16, big end first, with a mark") << utf16(QChar(0xFEFF) + text, true);
        QTest::newRow("UTF-16 without a mark") << utf16(text, false);
        QTest::newRow("UTF-16, big end first, without a mark") << utf16(text, true);
        QTest::newRow("NUL characters") << QByteArray(1000, '\0');
        QTest::newRow("NUL character at the beginning") << QByteArray(1, '\0') + smallDictionary;
        QTest::newRow("NUL character after the brace") << QByteArray("{\0", 2) + smallDictionary.mid(1);
        QTest::newRow("NUL character at the end") << smallDictionary + QByteArray(1, '\0');
        QTest::newRow("NUL characters after the brace") << QByteArray("{") + QByteArray(1000, '\0');
        QTest::newRow("a lone byte of UTF-8 in a text") << QByteArray("{\"name\":\"\xC3\"}");
        QTest::newRow("Windows-1252 in a text") << QByteArray("{\"name\":\"Se\xF1"
                                                              "al\"}");
        QTest::newRow("bytes that are in no UTF-8") << QByteArray("{\"name\":\"\xFF\xFE\"}");
        QTest::newRow("invalid UTF-8 in an ignored key") << QByteArray("{\"name\":\"D\",\"note\":\"\xC3(\"}");
        QTest::newRow("20 MB of blanks") << QByteArray(20 * million, ' ');
        QTest::newRow("20 MB of blanks and a dictionary") << QByteArray(20 * million, ' ') + smallDictionary;
        QTest::newRow("20 MB of blanks after a brace") << QByteArray("{") + QByteArray(20 * million, ' ');
        QTest::newRow("20 MB of carriage returns") << QByteArray(20 * million, '\r');
        QTest::newRow("20 MB of braces") << QByteArray(20 * million, '{');
        QTest::newRow("a text of 20 MB without an end") << QByteArray("{\"name\":\"") + QByteArray(20 * million, 'x');
        QTest::newRow("100,000 brackets")
            << QByteArray("{\"levels\":") + QByteArray(100000, '[') + QByteArray(100000, ']') + "}";
        QTest::newRow("100,000 open brackets") << QByteArray("{\"levels\":") + QByteArray(100000, '[');
        QTest::newRow("100,000 objects") << QByteArray("{\"a\":").repeated(100000) + "1" + QByteArray(100000, '}');
        QTest::newRow("100,000 objects without an end") << QByteArray("{\"dictionary\":").repeated(100000);
    }

    void whatIsNoDictionaryGivesAnEmptyOne()
    {
        QFETCH(QByteArray, bytes);
        QLoggingCategory::setFilterRules(QString());
        OwnedJson dictionary;
        const DebugCapture log;
        const auto error = thrownBy([&] { dictionary.read(bytes); });
        QVERIFY(!error);
        QCOMPARE(log.taken(), QStringList());
        QVERIFY(isUnread(dictionary));
    }

    void fileThatCannotBeOpenedGivesAnEmptyDictionary_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::newRow("missing file") << directory.filePath("missing.dcf");
        QTest::newRow("missing directory") << directory.filePath("missing/missing.dcf");
        QTest::newRow("directory") << directory.path();
        QTest::newRow("empty path") << QString("");
        QTest::newRow("null path") << QString();
        QTest::newRow("path with a NUL character") << directory.path() + QChar(u'\0') + "x";
        QTest::newRow("long path") << directory.filePath(QString(100000, 'x'));
    }

    void fileThatCannotBeOpenedGivesAnEmptyDictionary()
    {
        QFETCH(QString, fileName);
        QLoggingCategory::setFilterRules(QString());
        OwnedJson dictionary;
        const DebugCapture log;
        const auto error = thrownBy([&] { dictionary.readFile(fileName); });
        QVERIFY(!error);
        QCOMPARE(log.taken(), QStringList());
        QVERIFY(isUnread(dictionary));
    }

    void unreadableFileLeavesWhatWasReadBefore()
    {
        OwnedJson dictionary(smallDictionary);
        dictionary.readFile(directory.filePath("missing.dcf"));
        dictionary.read("[1]");
        dictionary.read("{\"name\":");
        checkIsTheSmallDictionary(dictionary);
    }

    void fileBeyondTheLargestArrayGivesAnEmptyDictionary()
    {
        QFile file(directory.filePath("large.dcf"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("{");
        QVERIFY(file.resize((qint64(1) << 31) + million)); // takes no space on the disk
        file.close();
        OwnedJson dictionary;
        QVERIFY(!thrownBy([&] { dictionary.readFile(file.fileName()); }));
        QVERIFY(isUnread(dictionary));
        QVERIFY(file.remove());
    }

    void carriageReturnsAreNotAmongTheFirst16Bytes_data()
    {
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<bool>("isRead");

        // clang-format off
        QTest::newRow("16 carriage returns")             << QByteArray(16, '\r')                  << true;
        QTest::newRow("1000 carriage returns")           << QByteArray(1000, '\r')                << true;
        QTest::newRow("20 MB of carriage returns")       << QByteArray(20 * million, '\r')        << true;
        QTest::newRow("15 line ends")                    << QByteArray("\r\n").repeated(15)       << true;
        QTest::newRow("16 line ends")                    << QByteArray("\r\n").repeated(16)       << false;
        QTest::newRow("15 blanks, carriage returns")     << QByteArray(15, ' ') + QByteArray(40, '\r') << true;
        QTest::newRow("16 blanks, carriage returns")     << QByteArray(16, ' ') + QByteArray(40, '\r') << false;
        QTest::newRow("carriage returns, 15 blanks")     << QByteArray(40, '\r') + QByteArray(15, ' ') << true;
        QTest::newRow("carriage returns, 16 blanks")     << QByteArray(40, '\r') + QByteArray(16, ' ') << false;
        QTest::newRow("1000 line feeds")                 << QByteArray(1000, '\n')                << false;
        QTest::newRow("vertical tab")                    << QByteArray("\v")                      << false;
        QTest::newRow("form feed")                       << QByteArray("\f")                      << false;
        // clang-format on
    }

    // A vertical tab is accepted in the test of the first bytes, but is not white space in JSON.
    void carriageReturnsAreNotAmongTheFirst16Bytes()
    {
        QFETCH(QByteArray, head);
        QFETCH(bool, isRead);
        OwnedJson dictionary(head + smallDictionary);
        if (isRead)
            checkIsTheSmallDictionary(dictionary);
        else
            QVERIFY(isUnread(dictionary));
    }

    void dictionaryCutAnywhereIsEmptyUntilItsLastBrace()
    {
        QFile file(directory.filePath("growing.dcf"));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered));
        const int lastBrace = smallDictionary.lastIndexOf('}');
        for (int size = 0; size <= smallDictionary.size(); ++size) {
            if (size > 0)
                QCOMPARE(file.write(smallDictionary.constData() + size - 1, 1), qint64(1));
            OwnedJson dictionary;
            dictionary.readFile(file.fileName());
            if (size <= lastBrace)
                QVERIFY2(isUnread(dictionary), qPrintable(QString::number(size)));
            else
                checkIsTheSmallDictionary(dictionary);
        }
    }

    void dictionaryWithOneByteChangedIsSoundOrEmpty()
    {
        std::mt19937 source(1);
        for (int i = 0; i < smallDictionary.size(); ++i) {
            for (const char byte : { '\0', '0', '"', '{', ']', ',', char(source() & 0xFF) }) {
                QByteArray bytes = smallDictionary;
                bytes[i] = byte;
                OwnedJson dictionary;
                const auto error = thrownBy([&] { dictionary.read(bytes); });
                QVERIFY2(!error, qPrintable(QString::number(i)));
                checkIsSound(dictionary);
            }
        }
    }

    void garbageAfterABraceNeitherCrashesNorHangs()
    {
        for (unsigned seed = 1; seed <= 40; ++seed) {
            std::mt19937 source(seed);
            const QByteArrayList pieces
                = { "{",           "}",       "[", "]",     ",",    ":",    "\"items\"", "\"levels\"",
                    "\"records\"", "\"ids\"", "1", "\"x\"", "null", "true", " ",         "\"occurrences\"" };
            QByteArray bytes = "{";
            for (int i = 0; i < 20000; ++i)
                bytes += pieces.at(int(source() % unsigned(pieces.size())));
            OwnedJson dictionary;
            QVERIFY(!thrownBy([&] { dictionary.read(bytes); }));
            checkIsSound(dictionary);
        }
    }

    void ignoredKeyMayBeDeep()
    {
        const OwnedJson dictionary("{\"name\":\"D\",\"note\":" + QByteArray(500, '[') + QByteArray(500, ']') + "}");
        QCOMPARE(dictionary.name, QString("D"));
    }

    void laterOfTwoEqualKeysCounts()
    {
        const OwnedJson dictionary("{\"name\":\"A\",\"name\":\"B\",\"levels\":7,\"levels\":[{\"ids\":{\"items\":["
                                   "{\"name\":\"I\",\"length\":3,\"length\":\"x\"}]},\"records\":[]}]}");
        QCOMPARE(dictionary.name, QString("B"));
        QCOMPARE(dictionary.itemNames(), QStringList("I"));
        QCOMPARE(dictionary.getItem(0)->length, 0);
    }

    void numbersBeyondAnIntTakeTheirDefaults_data()
    {
        QTest::addColumn<QByteArray>("number");
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("second"); // start of the item after one without a start

        // clang-format off
        QTest::newRow("3e9")         << QByteArray("3e9")         << 0  << 2;
        QTest::newRow("-3e9")        << QByteArray("-3e9")        << 0  << 2;
        QTest::newRow("2147483648")  << QByteArray("2147483648")  << 0  << 2;
        QTest::newRow("1e300")       << QByteArray("1e300")       << 0  << 2;
        QTest::newRow("1e-300")      << QByteArray("1e-300")      << 0  << 2;
        QTest::newRow("-5")          << QByteArray("-5")          << -5 << 2;
        QTest::newRow("99999999999999999999") << QByteArray("99999999999999999999") << 0 << 2;
        // clang-format on
    }

    void numbersBeyondAnIntTakeTheirDefaults()
    {
        QFETCH(QByteArray, number);
        QFETCH(int, length);
        QFETCH(int, second);
        OwnedJson dictionary("{\"recordType\":{\"start\":" + number + ",\"length\":" + number
                             + "},\"levels\":[{\"records\":[{\"occurrences\":{\"maximum\":" + number
                             + "},\"items\":[{\"length\":" + number
                             + "},{\"name\":\"B\",\"occurrences\":{\"maximum\":" + number + "}}]}]}]}");
        QCOMPARE(dictionary.recordTypeStart, length);
        QCOMPARE(dictionary.recordTypeLen, length);
        QCOMPARE(dictionary.getRecord(0)->maxRecords, length == 0 ? 1 : length);
        QCOMPARE(dictionary.getItemsCount(), 2);
        QCOMPARE(dictionary.getItem(0)->length, length);
        QCOMPARE(dictionary.getItem(1)->start, second);
        QCOMPARE(dictionary.getItem(1)->name, QString("B"));
    }

    void startBeyondAnIntIsThePosition()
    {
        const OwnedJson dictionary(withItems("{\"length\":4},{\"start\":3e9,\"length\":2},{\"start\":-3e9}"));
        QCOMPARE(dictionary.starts(), QList<int>({ 1, 5, 7 }));
    }

    void numberThatNoDoubleHoldsGivesNoLength()
    {
        for (const QByteArray &number : { QByteArray("1e400"), QByteArray("-1e400"), QByteArray(500, '9') }) {
            const OwnedJson dictionary(withItems("{\"length\":" + number + "}"));
            // Either the document is malformed, or an int cannot hold the number.
            QVERIFY(isUnread(dictionary) || (dictionary.getItemsCount() == 1 && dictionary.getItem(0)->length == 0));
        }
    }

    void positionsEndAtTheLargestInt()
    {
        const OwnedJson plain(withItems("{\"start\":2147483647,\"length\":2147483647},{\"length\":5},{}"));
        QCOMPARE(plain.starts(), QList<int>({ largest, largest, largest }));
        const OwnedJson copies(withItems("{\"length\":2147483647,\"occurrences\":{\"maximum\":3}},{}"));
        QCOMPARE(copies.starts(), QList<int>({ 1, largest, largest, largest }));
        const OwnedJson below(
            withItems("{\"start\":-2147483648,\"length\":-2147483648,\"occurrences\":{\"maximum\":3}}"));
        QCOMPARE(below.starts(), QList<int>({ smallest, smallest, smallest }));
    }

    // limits

    void readingEndsWhereAnItemOccursTooOften_data()
    {
        QTest::addColumn<qint64>("count");
        QTest::newRow("2,000,000,000") << qint64(2000000000);
        QTest::newRow("largest int") << qint64(largest);
        QTest::newRow("one more than there is room for") << qint64(million);
    }

    void readingEndsWhereAnItemOccursTooOften()
    {
        QFETCH(qint64, count);
        OwnedJson dictionary;
        const ProcessorTime time;
        const auto error = thrownBy([&] {
            dictionary.read("{\"name\":\"D\",\"levels\":[{\"ids\":{\"items\":[{\"name\":\"I\"}]},\"records\":["
                            "{\"name\":\"R1\",\"items\":["
                            + repeatedItem("X", count)
                            + ",{\"name\":\"B\"}]},{\"name\":\"R2\",\"items\":[{\"name\":\"C\"}]}]},"
                            + "{\"records\":[{\"name\":\"R3\"}]}]}");
        });
        QVERIFY(!error);
        QCOMPARE(dictionary.name, QString("D"));
        QCOMPARE(dictionary.itemNames(), QStringList("I"));
        QCOMPARE(dictionary.getRecordsCount(), 1);
        QCOMPARE(dictionary.getRecord(0)->name, QString("R1"));
        QVERIFY(time.seconds() < 5);
    }

    void aMillionItemsAreReadAndNoMore()
    {
        OwnedJson dictionary(withItems("{\"name\":\"A\"}," + repeatedItem("X", million - 1) + ",{\"name\":\"B\"},"
                                       + repeatedItem("C", 2)));
        QCOMPARE(dictionary.getItemsCount(), million);
        QCOMPARE(dictionary.getItem(0)->name, QString("A"));
        QCOMPARE(dictionary.getItem(million - 1)->name, QString("X_999999"));
    }

    void aMillionPlainItemsAreReadAndNoMore()
    {
        QByteArray items = QByteArray("{},").repeated(million);
        OwnedJson dictionary(withItems(items + "{\"name\":\"last\"}"));
        QCOMPARE(dictionary.getItemsCount(), million);
        QCOMPARE(dictionary.getItem(million - 1)->name, QString());
        QCOMPARE(dictionary.getItem(million - 1)->start, million);
    }

    void tooManyIdsEndTheReadingBeforeTheRecords()
    {
        const OwnedJson dictionary("{\"levels\":[{\"ids\":{\"items\":[" + QByteArray("{},").repeated(million)
                                   + "{}]},\"records\":[{\"name\":\"R\"}]}]}");
        QCOMPARE(dictionary.getItemsCount(), million);
        QCOMPARE(dictionary.records->size(), 0);
    }

    void longNamesOfManyOccurrencesDoNotEatMemory()
    {
        OwnedJson dictionary(withItems("{\"name\":\"A\"}," + repeatedItem(QByteArray(100000, 'x'), million - 1)));
        QCOMPARE(dictionary.itemNames(), QStringList("A"));
    }

    void copiesTimesValuesAreBounded()
    {
        OwnedJson dictionary;
        const auto error = thrownBy([&] {
            dictionary.read(
                withItems("{\"name\":\"A\"}," + repeatedItem("X", million - 1, values(100)) + ",{\"name\":\"B\"}"));
        });
        QVERIFY(!error);
        // Copies that would have too many values together are not begun.
        QCOMPARE(dictionary.getItemsCount(), 1);
        QCOMPARE(valuesOf(dictionary), qint64(0));
    }

    void copiesShareTheirTexts()
    {
        const QString label(1000, 'x');
        const QByteArray set = "[{\"name\":\"" + label.toUtf8() + "\",\"values\":[0,0,{\"labels\":[{\"text\":\""
            + label.toUtf8() + "\"}],\"pairs\":[{\"value\":\"" + label.toUtf8() + "\"}]}]}]";
        OwnedJson dictionary(withItems("{\"name\":\"X\",\"occurrences\":{\"maximum\":2},\"valueSets\":" + set + "}"));
        QCOMPARE(dictionary.getItemsCount(), 2);
        const TCSProValueSet *first = dictionary.getItem(0)->getValueSet(0);
        const TCSProValueSet *second = dictionary.getItem(1)->getValueSet(0);
        QVERIFY(first != second);
        QVERIFY(first->getItem(0) != second->getItem(0));
        QCOMPARE(second->Count(), 1);
        QCOMPARE(second->name, label);
        QCOMPARE(second->getItem(0)->code, label);
        QCOMPARE(second->name.constData(), first->name.constData());
        QCOMPARE(second->getItem(0)->code.constData(), first->getItem(0)->code.constData());
        QCOMPARE(second->getItem(0)->name.constData(), first->getItem(0)->name.constData());
    }

    void fewCopiesHaveAllTheirValues()
    {
        OwnedJson dictionary(withItems(repeatedItem("X", 1000, values(100)) + ",{\"name\":\"B\"}"));
        QCOMPARE(dictionary.getItemsCount(), 1001);
        QCOMPARE(valuesOf(dictionary), qint64(100000));
    }

    // size

    void aDictionaryBetween20MegabytesOfBlanksIsRead()
    {
        OwnedJson dictionary("{" + QByteArray(10 * million, ' ') + smallDictionary.mid(1)
                             + QByteArray(10 * million, '\n'));
        checkIsTheSmallDictionary(dictionary);
    }

    void aTextOf20MegabytesIsReadLikeAShortOne()
    {
        const QByteArray text(20 * million, 'x');
        const OwnedJson dictionary("{\"name\":\"" + text + "\"}");
        QCOMPARE(dictionary.name.size(), text.size());
    }

    void manyValuesAreReadInOnePass()
    {
        OwnedJson dictionary(withItems("{\"name\":\"A\"" + values(300000) + "}"));
        QCOMPARE(dictionary.setOf(0)->Count(), 300000);
        QCOMPARE(dictionary.setOf(0)->getItem(299999)->code, QString("299999"));
    }

    void manyRecordsAreReadInOnePass()
    {
        QByteArray records;
        for (int i = 0; i < 100000; ++i)
            records += "{\"recordType\":\"" + QByteArray::number(i) + "\",\"items\":[{}]},";
        OwnedJson dictionary("{\"levels\":[{\"records\":[" + records + "{}]}]}");
        QCOMPARE(dictionary.getRecordsCount(), 100001);
        QCOMPARE(dictionary.recordMap.size(), size_t(100000));
        QCOMPARE(dictionary.getItemsCount(), 100000);
    }

    void manyLevelsAreReadInOnePass()
    {
        const OwnedJson dictionary(
            "{\"levels\":[" + QByteArray("{\"ids\":{\"items\":[{}]},\"records\":[{}]},").repeated(50000) + "{}]}");
        QCOMPARE(dictionary.getItemsCount(), 50000);
        QCOMPARE(dictionary.records->size(), 50000);
    }

private:
    // The dictionary equals a new one: not even the label of the common record is set.
    static bool isUnread(const OwnedJson &dictionary)
    {
        return dictionary.items->isEmpty() && dictionary.records->isEmpty() && dictionary.recordMap.empty()
            && dictionary.name.isEmpty() && dictionary.version.isEmpty() && dictionary.recordTypeStart == 1
            && dictionary.recordTypeLen == 1 && !dictionary.currentItem && dictionary.commonRecord->label.isEmpty()
            && dictionary.currentRecord == dictionary.commonRecord;
    }

    static void checkIsSound(const OwnedJson &dictionary)
    {
        for (const TCSProRecord *record : qAsConst(*dictionary.records)) {
            QVERIFY(record);
            QVERIFY(record->required == "YES" || record->required == "NO");
        }
        for (int i = 0; i < dictionary.getItemsCount(); ++i) {
            TCSProItem *item = dictionary.getItem(i);
            QVERIFY(item);
            QVERIFY(item->record == dictionary.commonRecord || dictionary.records->contains(item->record));
            QVERIFY(item->getValueSetsCount() <= 1);
            QVERIFY(item->firstOccurrence >= 0 && item->firstOccurrence <= i);
        }
        for (const auto &entry : dictionary.recordMap)
            QVERIFY(!entry.first.isEmpty() && dictionary.records->contains(entry.second));
    }

    static void checkIsTheSmallDictionary(OwnedJson &dictionary)
    {
        QCOMPARE(dictionary.name, QString("D"));
        QCOMPARE(dictionary.version, QString("8"));
        QCOMPARE(dictionary.getRecordsCount(), 1);
        QCOMPARE(dictionary.getRecord(0)->label, QStringLiteral("Se\u00F1al"));
        QCOMPARE(dictionary.itemNames(), QStringList({ "ID", "A", "C_1", "C_2", "C_3" }));
        QCOMPARE(dictionary.starts(), QList<int>({ 2, 1, 2, 4, 6 }));
        QCOMPARE(dictionary.codesOf(1), QStringList({ "1", "2:4" }));
        QCOMPARE(dictionary.labelsOf(1), QStringList({ QStringLiteral("\u00E1"), QString() }));
        checkIsSound(dictionary);
    }

    QTemporaryDir directory;
};

QTEST_GUILESS_MAIN(CSProJsonBadInputTest)
#include "CSProJsonBadInputTest.moc"
