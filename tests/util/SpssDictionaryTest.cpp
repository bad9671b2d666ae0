#include "support/SpssBytes.h"
#include "util/SpssDictionary_p.h"

#include <readstat.h>

#include <QBuffer>
#include <QTemporaryDir>
#include <QtTest>

#include <iterator>
#include <memory>
#include <random>

namespace
{

/// The result of ReadStat's own parse of a file.
struct Parse {
    bool isFine = false;
    int variables = 0;
};

Parse parse(const QString &path)
{
    Parse result;
    const std::unique_ptr<readstat_parser_t, void (*)(readstat_parser_t *)> parser(readstat_parser_init(),
                                                                                   readstat_parser_free);
    readstat_set_variable_handler(parser.get(), [](int, readstat_variable_t *, const char *, void *count) {
        ++*static_cast<int *>(count);
        return int(READSTAT_HANDLER_OK);
    });
    result.isFine
        = readstat_parse_sav(parser.get(), QFile::encodeName(path).constData(), &result.variables) == READSTAT_OK;
    return result;
}

/// The bytes of records without the head of a file.
template <typename Fill> QByteArray recordsOf(Fill fill)
{
    SpssBytes records;
    records.bytes.clear();
    fill(records);
    return records.bytes;
}

/// One record of each kind, with the records that may follow it.
QByteArray everyRecord(bool isBigEndian)
{
    SpssBytes file(isBigEndian);
    file.variable("A", true, 2);
    file.label("label of A");
    file.bytes += QByteArray(16, '\0');
    file.variable("B", 0, 0, 20);
    file.parts(2);
    file.variable("C", true, -3);
    file.label(QByteArray());
    file.bytes += QByteArray(24, '\0');
    file.valueLabels();
    file.documents();
    file.extension(SpssBytes::attributes);
    file.extension(SpssBytes::longNames, "A=longname\tB=othername");
    file.extension(SpssBytes::veryLongTexts, QByteArray("B=00020\0\t", 9));
    SpssBytes content(isBigEndian);
    content.bytes.clear();
    content.numbers({ 9 });
    content.bytes += "othername";
    constexpr qint32 width = 20;
    constexpr qint32 labelCount = 1;
    constexpr qint32 valueSize = 2;
    content.numbers({ width, labelCount, valueSize });
    content.bytes += "ab";
    content.numbers({ 3 });
    content.bytes += "lab";
    file.extension(SpssBytes::longTextLabels, content.bytes);
    content.bytes.clear();
    content.numbers({ 9 });
    content.bytes += "othername\2";
    content.numbers({ 3 });
    content.bytes += "abcdef";
    file.extension(SpssBytes::longTextMissing, content.bytes);
    file.end();
    return file.bytes;
}

/// Changes a number, a byte, or the place of some records, at random.
class Change
{
public:
    explicit Change(std::mt19937 &source)
        : random(source)
    {
    }

    void operator()(QByteArray &bytes)
    {
        constexpr int headerSize = 176;
        const int numbers = (bytes.size() - headerSize) / 4;
        if (numbers < 1)
            return;
        const int at = headerSize + below(numbers) * 4;
        switch (below(4)) {
        case 0:
            bytes.replace(at, 4, oddNumber());
            break;
        case 1:
            bytes[at] = char(bytes[at] ^ 1 << below(8));
            break;
        case 2:
            bytes.remove(at, 4 * below(12));
            break;
        default:
            bytes.insert(headerSize + below(numbers) * 4, bytes.mid(at, 4 * below(20)));
            break;
        }
    }

private:
    int below(int bound) { return int(random() % unsigned(bound)); }
    QByteArray oddNumber()
    {
        // Counts, sizes, types of records and of extensions, negative numbers, and numbers that overflow when they are
        // multiplied by a size.
        constexpr quint32 sizeOfShortText = 8;
        constexpr quint32 numberOfCases = 16;
        constexpr quint32 sizeOfDocumentLine = 80;
        constexpr quint32 minimum = 0x80000000;
        constexpr quint32 maximum = 0x7FFFFFFF;
        constexpr quint32 timesTwentyIsFour = 0x0CCCCCCD;
        constexpr quint32 timesFiveIsFour = 0x33333334;
        constexpr quint32 timesFourIsFour = 0x40000001;
        static constexpr quint32 odd[] = {
            0,
            1,
            SpssBytes::variableRecord,
            SpssBytes::labelsRecord,
            SpssBytes::labelledVariablesRecord,
            SpssBytes::documentsRecord,
            SpssBytes::extensionRecord,
            sizeOfShortText,
            SpssBytes::longNames,
            SpssBytes::veryLongTexts,
            numberOfCases,
            SpssBytes::longTextLabels,
            SpssBytes::longTextMissing,
            sizeOfDocumentLine,
            SpssBytes::endRecord,
            quint32(-1),
            quint32(-2),
            quint32(-3),
            quint32(-4),
            minimum,
            maximum,
            timesTwentyIsFour,
            timesFiveIsFour,
            timesFourIsFour,
        };
        SpssBytes number(below(4) == 0);
        number.bytes.clear();
        number.number(odd[below(int(std::size(odd)))]);
        return number.bytes;
    }

    std::mt19937 &random;
};

} // namespace

/// Tests the walk through the dictionary of an SPSS file before ReadStat reads it, and compares it with ReadStat.
class SpssDictionaryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyRecordIsGonePast()
    {
        for (const bool isBigEndian : { false, true }) {
            const QString path = write(everyRecord(isBigEndian));
            const SpssDictionary found = walk(path);
            QVERIFY(found.isSpss);
            QVERIFY(found.isWhole);
            QVERIFY(found.hasLongNames);
            QCOMPARE(found.variables, Q_INT64_C(3));
            // Both records of names sort three variables; each of the two sets is looked up among three.
            QCOMPARE(found.lookupSteps, Q_INT64_C(2 * 16 * 3 + 2 * 3));
            QCOMPARE(parse(path).variables, 3);
        }
    }

    void sizesAreCountedAsReadStatCounts_data()
    {
        QTest::addColumn<QByteArray>("records");
        QTest::addColumn<bool>("isWhole");
        const auto addRow
            = [](const char *name, bool isWhole, auto fill) { QTest::newRow(name) << recordsOf(fill) << isWhole; };
        // In 32 bits the size of these lines is 16 bytes.
        addRow("documents beyond 32 bits", true, [](SpssBytes &file) {
            file.numbers({ SpssBytes::documentsRecord, 0x0CCCCCCD });
            file.bytes += QByteArray(16, ' ');
        });
        addRow("documents beyond 31 bits", false, [](SpssBytes &file) {
            file.numbers({ SpssBytes::documentsRecord, -5 });
        });
        addRow("no documents", true, [](SpssBytes &file) { file.numbers({ SpssBytes::documentsRecord, 0 }); });
        addRow("four missing values", false, [](SpssBytes &file) {
            file.variable("B", 0, 4);
            file.bytes += QByteArray(32, '\0');
        });
        addRow("four missing values as a range", false, [](SpssBytes &file) {
            file.variable("B", 0, -4);
            file.bytes += QByteArray(32, '\0');
        });
        addRow("smallest number of missing values", false,
               [](SpssBytes &file) { file.variable("B", 0, std::numeric_limits<int>::min()); });
        addRow("label of a part", false, [](SpssBytes &file) {
            file.part(true);
            file.label("label");
        });
        addRow("missing values of a part", false, [](SpssBytes &file) {
            file.part(0, 1);
            file.bytes += QByteArray(8, '\0');
        });
        addRow("part with another number below 0", true, [](SpssBytes &file) {
            file.numbers({ SpssBytes::variableRecord, -5, 0, 0, 0, 0 });
            file.bytes += QByteArray(8, ' ');
        });
        addRow("extension of no size", false, [](SpssBytes &file) {
            file.numbers({ SpssBytes::extensionRecord, SpssBytes::attributes, 0, 5 });
        });
        addRow("extension of no elements", false, [](SpssBytes &file) {
            file.numbers({ SpssBytes::extensionRecord, SpssBytes::attributes, 5, 0 });
        });
        // As a position in a file this is 8 GB before the record.
        addRow("largest extension", false, [](SpssBytes &file) {
            file.numbers({ SpssBytes::extensionRecord, SpssBytes::attributes, -1, -1 });
        });
        addRow("extension as large as memory is given for", true, [](SpssBytes &file) {
            file.numbers({ SpssBytes::extensionRecord, SpssBytes::attributes, 1, 0xFFF000 });
            file.bytes += QByteArray(0xFFF000, ' ');
        });
        addRow("larger extension", false, [](SpssBytes &file) {
            file.numbers({ SpssBytes::extensionRecord, SpssBytes::attributes, 1, 0xFFF001 });
            file.bytes += QByteArray(0xFFF001, ' ');
        });
        addRow("no labels", true, [](SpssBytes &file) {
            file.numbers({ SpssBytes::labelsRecord, 0, SpssBytes::labelledVariablesRecord, 0 });
        });
        addRow("labels with another record after them", false, [](SpssBytes &file) {
            file.numbers({ SpssBytes::labelsRecord, 0, 5, 0 });
        });
        addRow("as many labels as memory is given for", true, [](SpssBytes &file) { labels(file, 232960); });
        addRow("more labels", false, [](SpssBytes &file) { labels(file, 232961); });
        addRow("as many labelled variables as memory is given for", true,
               [](SpssBytes &file) { labelled(file, 0xFFF000 / 4); });
        addRow("more labelled variables", false, [](SpssBytes &file) { labelled(file, 0xFFF000 / 4 + 1); });
    }
    void sizesAreCountedAsReadStatCounts()
    {
        QFETCH(QByteArray, records);
        QFETCH(bool, isWhole);
        SpssBytes file;
        file.variable("A", 0, 0, 8);
        file.bytes += records;
        file.variable("Z");
        file.end();
        const QString path = write(file.bytes);
        const SpssDictionary found = walk(path);
        QCOMPARE(found.isWhole, isWhole);
        QCOMPARE(parse(path).isFine, isWhole);
        if (isWhole)
            QCOMPARE(found.variables, qint64(parse(path).variables));
    }

    // Rounded up to a multiple of 4 this size is 0 in 32 bits; ReadStat skips it, and later has no memory for it.
    void labelBeyond32BitsHidesNoVariables()
    {
        SpssBytes file;
        file.variable("A", true);
        file.numbers({ -3 });
        file.variables(5);
        file.end();
        const QString path = write(file.bytes);
        QVERIFY(walk(path).isWhole);
        QCOMPARE(walk(path).variables, Q_INT64_C(6));
        QVERIFY(!parse(path).isFine);
    }

    void documentsBeyond32BitsEndTheWalkWhereTheyAreRead()
    {
        for (const int lines : { 2, 0x0CCCCCCD }) {
            SpssBytes file;
            file.numbers({ SpssBytes::documentsRecord, lines });
            file.bytes += QByteArray(lines == 2 ? 160 : 16, ' ');
            file.variable("A");
            file.end();
            const QString path = write(file.bytes);
            QVERIFY(walk(path, SpssDocuments::areSkipped).isWhole);
            QCOMPARE(walk(path, SpssDocuments::areRead).isWhole, lines == 2);
        }
    }

    void fileMayBeginAfterOtherBytes()
    {
        SpssBytes bytes;
        bytes.variables(3);
        bytes.end();
        QByteArray all = "other bytes" + bytes.bytes;
        QBuffer device(&all);
        QVERIFY(device.open(QIODevice::ReadOnly));
        QVERIFY(device.seek(11));
        const SpssDictionary found = walkSpssDictionary(device, SpssDocuments::areSkipped);
        QVERIFY(found.isWhole);
        QCOMPARE(found.variables, Q_INT64_C(3));
        QCOMPARE(found.fileSize, qint64(bytes.bytes.size()));
    }

    void partInFrontOfAllVariablesEndsTheWalk()
    {
        SpssBytes file;
        file.part();
        file.variable("A");
        file.end();
        const QString path = write(file.bytes);
        QVERIFY(!walk(path).isWhole);
        QVERIFY(!parse(path).isFine);
    }

    // The first of ReadStat's passes skips the label of a part. The second one reads it as records, and finds variables
    // in the bytes that are a label in the first pass.
    void labelOfAPartHidesNoVariables()
    {
        const QByteArray hidden = recordsOf([](SpssBytes &records) {
            records.variables(5);
            records.end();
        });
        SpssBytes file;
        file.variable("A", 0, 0, 8);
        file.part(true);
        const QByteArray between = recordsOf([&](SpssBytes &records) {
            constexpr qint32 width = 0;
            constexpr qint32 hasLabel = 1;
            constexpr qint32 missingValues = 0;
            constexpr qint32 format = 0x050800;
            constexpr qint32 halfOfName = 0;
            records.numbers(
                { width, hasLabel, missingValues, format, format, halfOfName, halfOfName, int(hidden.size()) });
        });
        file.numbers({ SpssBytes::extensionRecord, SpssBytes::attributes, int(between.size()) / 2, 2 });
        file.bytes += between + hidden;
        file.end();
        const QString path = write(file.bytes);
        QCOMPARE(parse(path).variables, 6);
        QVERIFY(!walk(path).isWhole);
    }

    void setsAreCountedUpToTheFirstThatIsBroken_data()
    {
        QTest::addColumn<int>("subtype");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("sets");
        const auto addRow = [](const char *name, int subtype, std::initializer_list<qint32> numbers, int sets) {
            QTest::newRow(name) << subtype << recordsOf([&](SpssBytes &content) { content.numbers(numbers); }) << sets;
        };
        constexpr int labels = SpssBytes::longTextLabels;
        // A set has the size of its name, a width and a number of labels; a label the sizes of its value and text.
        constexpr qint32 noName = 0;
        constexpr qint32 longName = 5;
        constexpr qint32 width = 9;
        constexpr qint32 noLabels = 0;
        constexpr qint32 oneLabel = 1;
        constexpr qint32 twoLabels = 2;
        constexpr qint32 noValue = 0;
        constexpr qint32 noText = 0;
        constexpr qint32 longText = -1;
        addRow("no label", labels, { noName, width, noLabels, noName, width, noLabels }, 2);
        addRow("two labels", labels,
               { noName, width, twoLabels, noValue, noText, noValue, noText, noName, width, noLabels }, 2);
        addRow("name cut off", labels, { noName, width, noLabels, longName }, 2);
        addRow("width missing", labels, { noName }, 1);
        addRow("number of labels missing", labels, { noName, width }, 1);
        addRow("label missing", labels, { noName, width, twoLabels, noValue, noText, noValue }, 1);
        addRow("larger label than is there", labels,
               { noName, width, oneLabel, noValue, longText, noName, width, noLabels }, 1);
        constexpr int missing = SpssBytes::longTextMissing;
        QTest::newRow("missing values") << missing << QByteArray("\0\0\0\0\1\0\0\0\0", 9).repeated(3) << 3;
        QTest::newRow("number of missing values missing") << missing << QByteArray(4, '\0') << 1;
        QTest::newRow("no missing value") << missing << QByteArray(18, '\0') << 1;
        QTest::newRow("four missing values") << missing << QByteArray("\0\0\0\0\4\0\0\0\0", 9).repeated(3) << 1;
        QTest::newRow("less than none") << missing << QByteArray("\0\0\0\0\xFF\4\0\0\0", 9).repeated(3) << 1;
        QTest::newRow("size missing") << missing << QByteArray("\0\0\0\0\1\0\0\0", 8) << 1;
        QTest::newRow("bytes missing") << missing << QByteArray("\0\0\0\0\2\4\0\0\0abcdefg", 16) << 1;
    }
    void setsAreCountedUpToTheFirstThatIsBroken()
    {
        QFETCH(int, subtype);
        QFETCH(QByteArray, content);
        QFETCH(int, sets);
        SpssBytes file;
        file.variables(10);
        file.extension(subtype, content);
        file.variable("LAST");
        file.end();
        const SpssDictionary found = walk(write(file.bytes));
        QCOMPARE(found.lookupSteps, qint64(10) * sets);
        QVERIFY(found.isWhole); // whatever the record contains, ReadStat skips all of it
        QCOMPARE(found.variables, Q_INT64_C(11));
    }

    void fileOfAnotherFormatIsNoSpssFile_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("isSpss");
        QTest::newRow("empty") << QByteArray() << false;
        QTest::newRow("head cut off") << QByteArray("$FL2").leftJustified(175, ' ') << false;
        QTest::newRow("head only") << QByteArray("$FL2").leftJustified(176, ' ') << true;
        QTest::newRow("compressed") << QByteArray("$FL3").leftJustified(176, ' ') << true;
        QTest::newRow("unknown version") << QByteArray("$FL4").leftJustified(176, ' ') << false;
        QTest::newRow("text") << QByteArray(400, 'x') << false;
    }
    void fileOfAnotherFormatIsNoSpssFile()
    {
        QFETCH(QByteArray, bytes);
        const SpssDictionary found = walk(write(bytes));
        QTEST(found.isSpss, "isSpss");
        QVERIFY(!found.isWhole);
    }

    void guardIsOffWithTheReleaseThatMendsItsFault_data()
    {
        QTest::addColumn<bool>("isWhole");
        QTest::addColumn<qint64>("variables");
        QTest::addColumn<qint64>("lookupSteps");
        QTest::newRow("cut dictionary") << false << Q_INT64_C(1) << Q_INT64_C(0);
        QTest::newRow("too many long names") << true << qint64(SpssDictionary::maxLongNames + 1) << Q_INT64_C(0);
        QTest::newRow("too many lookups") << true << Q_INT64_C(1) << SpssDictionary::maxLookupSteps + 1;
    }
    void guardIsOffWithTheReleaseThatMendsItsFault()
    {
        QFETCH(bool, isWhole);
        QFETCH(qint64, variables);
        QFETCH(qint64, lookupSteps);
        SpssDictionary dictionary;
        dictionary.isSpss = true;
        dictionary.isWhole = isWhole;
        dictionary.variables = variables;
        dictionary.lookupSteps = lookupSteps;
        dictionary.hasLongNames = true;
        dictionary.fileSize = 1 << 20;
        QVERIFY(!dictionary.problem().isNull());
        constexpr int unknownRelease = 0;
        QCOMPARE(dictionary.problem(unknownRelease), dictionary.problem());
        QCOMPARE(dictionary.problem(readstat::releaseNumber(1, 1, 8)), dictionary.problem());
        QVERIFY(dictionary.problem(readstat::noRelease).isNull()); // as each release from the mending one on
    }

    // Whatever is changed in a file: if ReadStat reads it, the walk has passed the same records.
    void changedFilesAreWalkedAsReadStatReadsThem()
    {
        std::mt19937 random(13); // NOLINT: the same files every time
        Change change(random);
        int readable = 0;
        for (int round = 0; round < 2000; ++round) {
            QByteArray bytes = everyRecord(round % 2 == 1);
            for (int changes = 1 + round % 3; changes > 0; --changes)
                change(bytes);
            const QString path = write(bytes);
            const Parse expected = parse(path);
            const SpssDictionary found = walk(path);
            if (!expected.isFine || hasPartWithMore(bytes))
                continue;
            ++readable;
            if (!found.isWhole || found.variables < expected.variables)
                QFAIL(qPrintable(QStringLiteral("round %1: %2 of %3 variables")
                                     .arg(round)
                                     .arg(found.variables)
                                     .arg(expected.variables)));
        }
        QVERIFY(readable > 300);
    }

private:
    static void labels(SpssBytes &file, int count)
    {
        file.numbers({ SpssBytes::labelsRecord, count });
        file.bytes += (QByteArray(8, '\0') + '\3' + "Yes    ").repeated(count);
        file.numbers({ SpssBytes::labelledVariablesRecord, 1, 1 });
    }

    static void labelled(SpssBytes &file, int count)
    {
        file.numbers({ SpssBytes::labelsRecord, 0, SpssBytes::labelledVariablesRecord, count });
        file.bytes += QByteArray("\1\0\0\0", 4).repeated(count);
    }

    // Such a part is refused, although ReadStat may manage to read it.
    static bool hasPartWithMore(const QByteArray &bytes)
    {
        for (const bool isBigEndian : { false, true }) {
            SpssBytes part(isBigEndian);
            part.bytes.clear();
            part.numbers({ SpssBytes::variableRecord, -1 });
            const QByteArray bare = part.bytes + QByteArray(8, '\0');
            if (bytes.count(part.bytes) != bytes.count(bare))
                return true;
        }
        return false;
    }

    static SpssDictionary walk(const QString &path, SpssDocuments documents = SpssDocuments::areSkipped)
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            qFatal("%s cannot be opened", qPrintable(path));
        return walkSpssDictionary(file, documents);
    }

    QString write(const QByteArray &bytes)
    {
        const QString path = directory.filePath(QStringLiteral("file"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("%s cannot be written", qPrintable(path));
        return path;
    }

    QTemporaryDir directory;
};

QTEST_APPLESS_MAIN(SpssDictionaryTest)
#include "SpssDictionaryTest.moc"
