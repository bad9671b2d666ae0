#include "statistical/BufferedFile_p.h"
#include "statistical/FileGuards_p.h"
#include "statistical/SPSSDataImport.h"

#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#include <algorithm>
#include <limits>
#include <random>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

struct TestAccess {
    static int fieldsOf(TSPSSDataImport &importer)
    {
        importer.openFile();
        return importer.fields->size();
    }
};

namespace
{

constexpr int longNames = 13;
constexpr int veryLongTexts = 14;

/// Puts an SPSS file together, record by record.
class SpssBytes
{
public:
    explicit SpssBytes(bool bigEndian = false)
        : isBigEndian(bigEndian)
    {
        bytes = QByteArray("$FL2").leftJustified(64, ' ');
        numbers({ 2, -1, 0, 0, 0 });
        bytes += QByteArray(8, '\0') + "01 Jan 2000:00:00" + QByteArray(67, ' ');
    }

    void numbers(std::initializer_list<qint32> list)
    {
        for (const qint32 number : list) {
            char four[4];
            if (isBigEndian)
                qToBigEndian(number, four);
            else
                qToLittleEndian(number, four);
            bytes.append(four, 4);
        }
    }
    void variables(int count, bool areBare = true)
    {
        bytes.reserve(bytes.size() + count * 32 + 1000);
        for (int i = 0; i < count; ++i) {
            const bool hasMore = !areBare && i % 1000 == 0;
            numbers({ 2, 0, hasMore, hasMore ? -2 : 0, 0x050800, 0x050800 });
            bytes += QByteArray("V" + QByteArray::number(i, 36).toUpper()).leftJustified(8, ' ');
            if (hasMore) {
                numbers({ 5 });
                bytes += QByteArray("Label\0\0\0", 8);
                bytes += QByteArray(16, '\0');
            }
        }
    }
    void continuations(int count)
    {
        for (int i = 0; i < count; ++i) {
            numbers({ 2, -1, 0, 0, 0, 0 });
            bytes += QByteArray(8, ' ');
        }
    }
    void valueLabels()
    {
        numbers({ 3, 2 });
        bytes += QByteArray(8, '\0') + '\3' + "Yes" + QByteArray(4, ' ');
        bytes += QByteArray(8, '\1') + '\7' + "Perhaps";
        numbers({ 4, 1, 1 });
    }
    void documents()
    {
        numbers({ 6, 2 });
        bytes += QByteArray(160, ' ');
    }
    void extension(int subtype)
    {
        const QByteArray names("V0=longname");
        numbers({ 7, subtype, 1, names.size() });
        bytes += names;
    }
    void end() { numbers({ 999, 0 }); }

    QByteArray bytes;

private:
    bool isBigEndian;
};

} // namespace

/// What is looked at before ReadStat reads a file, and the large pieces in which it may read.
class FileGuardsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesOfStataAreBoundedByTheVersion_data()
    {
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<int>("withVariable");
        QTest::addColumn<int>("withLabel");
        for (const int version : { 104, 105, 108, 109 })
            QTest::addRow("%d", version) << QByteArray(1, char(version)) << 9 << 12;
        for (const int version : { 110, 111, 113, 114, 115 })
            QTest::addRow("%d", version) << QByteArray(1, char(version)) << 33 << 33;
        const QByteArray tag("<stata_dta><header><release>");
        QTest::newRow("117") << tag + "117</release>" << 33 << 33;
        QTest::newRow("118") << tag + "118</release>" << 129 << 129;
        QTest::newRow("119") << tag + "119" << 129 << 129;
        QTest::newRow("empty") << QByteArray() << 9 << 12;
        QTest::newRow("tag cut off") << QByteArray("<stata_dta><header>") << 9 << 12;
        QTest::newRow("no number") << tag + "abc" << 9 << 12;
    }
    void namesOfStataAreBoundedByTheVersion()
    {
        QFETCH(QByteArray, head);
        const statistical::NameBounds bounds = statistical::stataNameBounds(write(head));
        QTEST(int(bounds.withVariable), "withVariable");
        QTEST(int(bounds.withLabel), "withLabel");
    }

    void fileThatWillNotOpenHasTheNamesOfTheOldestVersion()
    {
        const statistical::NameBounds bounds = statistical::stataNameBounds(QStringLiteral("/nowhere/absent.dta"));
        QCOMPARE(int(bounds.withVariable), 9);
        QCOMPARE(int(bounds.withLabel), 12);
    }

    void tooManyVariablesAreNotReadWhereNamesAreLookedUp_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("subtype");
        QTest::addColumn<bool>("isBigEndian");
        QTest::addColumn<bool>("isSafe");
        const int most = statistical::mostLongNames;
        QTest::newRow("as many as there is room for") << most << longNames << false << true;
        QTest::newRow("one more with long names") << most + 1 << longNames << false << false;
        QTest::newRow("one more with very long texts") << most + 1 << veryLongTexts << false << false;
        QTest::newRow("one more, big-endian") << most + 1 << longNames << true << false;
        QTest::newRow("one more with another record") << most + 1 << 20 << false << true;
        QTest::newRow("one more without") << most + 1 << 0 << false << true;
    }
    void tooManyVariablesAreNotReadWhereNamesAreLookedUp()
    {
        QFETCH(int, count);
        QFETCH(int, subtype);
        QFETCH(bool, isBigEndian);
        QFETCH(bool, isSafe);
        SpssBytes file(isBigEndian);
        // All records that may stand between the variables and the one that matters.
        file.variables(count, false);
        file.valueLabels();
        file.documents();
        file.extension(20);
        if (subtype != 0)
            file.extension(subtype);
        file.end();
        QCOMPARE(statistical::isSafeSpssFile(write(file.bytes)), isSafe);
    }

    void eitherLayoutCodeTellsTheByteOrder_data()
    {
        QTest::addColumn<bool>("isBigEndian");
        QTest::newRow("little-endian") << false;
        QTest::newRow("big-endian") << true;
    }
    void eitherLayoutCodeTellsTheByteOrder()
    {
        QFETCH(bool, isBigEndian);
        for (const char layoutCode : { '\2', '\3' }) {
            SpssBytes file(isBigEndian);
            file.bytes[isBigEndian ? 67 : 64] = layoutCode;
            file.variables(statistical::mostLongNames + 1);
            file.extension(longNames);
            file.end();
            QVERIFY(!statistical::isSafeSpssFile(write(file.bytes)));
        }
    }

    void recordThatBreaksOffCountsByWhatIsThere_data()
    {
        QTest::addColumn<QVector<int>>("numbers"); // of the last record
        QTest::addColumn<int>("count");            // of the variables in front of it
        QTest::addColumn<bool>("namesInFront");
        QTest::addColumn<bool>("isSafe");
        using Numbers = QVector<int>;
        const int most = statistical::mostLongNames;
        // clang-format off
        QTest::newRow("extension, subtype missing")      << Numbers{ 7 }            << most + 1 << false << true;
        QTest::newRow("extension, size missing")         << Numbers{ 7, 13 }        << most + 1 << false << true;
        QTest::newRow("extension, count missing")        << Numbers{ 7, 13, 1 }     << most + 1 << false << true;
        QTest::newRow("extension, bytes missing")        << Numbers{ 7, 13, 1, 50 } << most + 1 << false << false;
        QTest::newRow("variable, numbers missing")       << Numbers{ 2, 0, 0 }      << most     << true  << true;
        QTest::newRow("variable, the rest missing")      << Numbers{ 2, 0, 0, 0 }   << most     << true  << false;
        QTest::newRow("variable, size of label missing")
            << Numbers{ 2, 0, 1, 0, 0, 0, 0, 0 } << most << true << false;
        for (const bool namesInFront : { false, true }) {
            const char *names = namesInFront ? "with names" : "without names";
            const auto addRow = [&](const char *name, const Numbers &numbers) {
                QTest::addRow("%s, %s", name, names) << numbers << most + 1 << namesInFront << !namesInFront;
            };
            addRow("labels, number missing", { 3 });
            addRow("labels, all missing",    { 3, 2 });
            addRow("labels, size missing",   { 3, 2, 0, 0 });
            addRow("labelled variables, number missing", { 4 });
            addRow("documents, number missing", { 6 });
            addRow("negative number of labelled variables", { 4, -1 });
        }
        // clang-format on
    }
    void recordThatBreaksOffCountsByWhatIsThere()
    {
        QFETCH(QVector<int>, numbers);
        QFETCH(int, count);
        QFETCH(bool, namesInFront);
        QFETCH(bool, isSafe);
        SpssBytes file;
        file.bytes.reserve((count + 10) * 32);
        if (namesInFront)
            file.extension(longNames);
        file.documents();
        file.variables(count);
        for (const int number : qAsConst(numbers))
            file.numbers({ number });
        QCOMPARE(statistical::isSafeSpssFile(write(file.bytes)), isSafe);
    }

    void importerTakesSuchAFileAsOneThatCannotBeRead()
    {
        const int most = statistical::mostLongNames;
        for (const int count : { 10, most + 1 }) {
            SpssBytes file;
            file.variables(count);
            file.extension(longNames);
            file.end();
            TSPSSDataImport importer(write(file.bytes));
            importer.setReadingBuffered(true);
            QCOMPARE(TestAccess::fieldsOf(importer), count > most ? 0 : count);
        }
    }

    void partsOfATextAreNotCounted()
    {
        SpssBytes file;
        file.variables(statistical::mostLongNames);
        file.continuations(10);
        file.extension(longNames);
        file.end();
        QVERIFY(statistical::isSafeSpssFile(write(file.bytes)));
    }

    void oddFilesAreLeftToReadStat_data()
    {
        QTest::addColumn<QByteArray>("tail");
        SpssBytes labels;
        labels.bytes.clear();
        labels.numbers({ 3, 0x7FFFFFFF });
        QTest::newRow("labels without end") << labels.bytes;
        SpssBytes negative;
        negative.bytes.clear();
        negative.numbers({ 7, longNames, -1, 5 });
        QTest::newRow("negative size") << negative.bytes;
        SpssBytes huge;
        huge.bytes.clear();
        huge.numbers({ 7, longNames, 0x7FFFFFFF, 0x7FFFFFFF });
        QTest::newRow("huge size") << huge.bytes;
        SpssBytes documents;
        documents.bytes.clear();
        documents.numbers({ 6, -5 });
        QTest::newRow("negative number of lines") << documents.bytes;
        QTest::newRow("no record") << QByteArray("garbage of some bytes");
        QTest::newRow("cut off") << QByteArray("\2\0\0", 3);
    }
    void oddFilesAreLeftToReadStat()
    {
        QFETCH(QByteArray, tail);
        SpssBytes file;
        file.variables(10);
        file.bytes += tail;
        file.bytes += QByteArray(14 << 20, '\0'); // as large as one that must be walked through
        QVERIFY(statistical::isSafeSpssFile(write(file.bytes)));
    }

    void noSpssFileIsSafe()
    {
        QVERIFY(statistical::isSafeSpssFile(QStringLiteral("/nowhere/absent.sav")));
        QVERIFY(statistical::isSafeSpssFile(write(QByteArray(14 << 20, 'x'))));
        QVERIFY(statistical::isSafeSpssFile(write(QByteArray("$FL2"))));
        QVERIFY(statistical::isSafeSpssFile(folder.path()));
    }

    void folderHasNoBytes()
    {
        statistical::BufferedFile file;
        QVERIFY(file.open(QFile::encodeName(folder.path()).constData()));
        char byte = 'x';
        QVERIFY(file.read(&byte, 1) < 1);
        QCOMPARE(byte, 'x');
    }

    void failureToReadIsToldOnceWhatWasReadIsGiven()
    {
        constexpr int size = 200000;
        const QByteArray path = QFile::encodeName(write(QByteArray(size, 'a')));
        readstat_parser_t *parser = readstat_parser_init();
        statistical::BufferedFile file;
        file.attachTo(parser);
        const readstat_io_t io = *parser->io;
        QCOMPARE(io.open(path.constData(), io.io_ctx), 0);
        std::vector<char> bytes(size);
        QCOMPARE(int(io.read(bytes.data(), 1, io.io_ctx)), 1);
        io.close(io.io_ctx); // from here on the system refuses
        const auto given = int(io.read(bytes.data(), bytes.size(), io.io_ctx));
        QVERIFY(given > 0 && given < size);
        QCOMPARE(std::count(bytes.begin(), bytes.begin() + given, 'a'), qptrdiff(given));
        QCOMPARE(int(io.read(bytes.data(), 1, io.io_ctx)), -1);
        readstat_parser_free(parser);
    }

    void placeBeyondTheLargestNumberIsRefused()
    {
        constexpr qint64 largest = std::numeric_limits<qint64>::max();
        statistical::BufferedFile file;
        QVERIFY(file.open(QFile::encodeName(write("abc")).constData()));
        QCOMPARE(file.seek(2, READSTAT_SEEK_SET), Q_INT64_C(2));
        QCOMPARE(file.seek(largest - 1, READSTAT_SEEK_CUR), Q_INT64_C(-1));
        QCOMPARE(file.seek(largest, READSTAT_SEEK_END), Q_INT64_C(-1));
        char byte = 0;
        QCOMPARE(file.read(&byte, 1), Q_INT64_C(1)); // the place is the former one
        QCOMPARE(byte, 'c');
    }

    void piecesGiveWhatTheSystemGives()
    {
        // Any order of seeking and reading, across the pieces and beyond the end.
        constexpr int size = 300000;
        QByteArray bytes(size, '\0');
        std::mt19937 random(7); // NOLINT: the same order every time
        for (char &byte : bytes)
            byte = char(random());
        const QByteArray path = QFile::encodeName(write(bytes));
        const int plain = open(path.constData(), O_RDONLY);
        QVERIFY(plain >= 0);

        readstat_parser_t *parser = readstat_parser_init();
        statistical::BufferedFile file;
        file.attachTo(parser);
        const readstat_io_t io = *parser->io;
        QCOMPARE(io.open(path.constData(), io.io_ctx), 0);
        std::vector<char> expected(150000);
        std::vector<char> read(150000);
        for (int round = 0; round < 20000; ++round) {
            const int choice = int(random() % 8);
            if (choice < 3) {
                const auto whence = readstat_io_flags_t(random() % 3);
                const int places[] = { SEEK_SET, SEEK_CUR, SEEK_END };
                const auto offset = off_t(random() % (2 * size)) - (whence == READSTAT_SEEK_SET ? size / 10 : size);
                QCOMPARE(qint64(io.seek(offset, whence, io.io_ctx)), qint64(lseek(plain, offset, places[whence])));
            } else {
                const size_t count = choice == 7 ? random() % read.size() : random() % 200;
                const ssize_t wanted = ::read(plain, expected.data(), count);
                QCOMPARE(io.read(read.data(), count, io.io_ctx), wanted);
                QVERIFY(std::equal(read.begin(), read.begin() + wanted, expected.begin()));
            }
        }
        QCOMPARE(io.close(io.io_ctx), 0);
        close(plain);
        QCOMPARE(io.open("/nowhere/absent", io.io_ctx), -1);
        readstat_parser_free(parser);
    }

    void piecesReachBeyondFourGigabytes()
    {
        constexpr qint64 far = Q_INT64_C(5) << 30;
        const QString path = folder.filePath(QStringLiteral("large"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize(far)); // holds no blocks on the disk
        QVERIFY(file.seek(far));
        QCOMPARE(file.write("end"), qint64(3));
        file.close();
        readstat_parser_t *parser = readstat_parser_init();
        statistical::BufferedFile pieces;
        pieces.attachTo(parser);
        const readstat_io_t io = *parser->io;
        QCOMPARE(io.open(QFile::encodeName(path).constData(), io.io_ctx), 0);
        QCOMPARE(qint64(io.seek(-3, READSTAT_SEEK_END, io.io_ctx)), far);
        char last[8] = {};
        QCOMPARE(int(io.read(last, sizeof(last), io.io_ctx)), 3);
        QCOMPARE(QByteArray(last), QByteArray("end"));
        io.close(io.io_ctx);
        readstat_parser_free(parser);
        QFile::remove(path);
    }

private:
    QString write(const QByteArray &bytes)
    {
        const QString path = folder.filePath(QStringLiteral("file"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("%s cannot be written", qPrintable(path));
        return path;
    }

    QTemporaryDir folder;
};

QTEST_APPLESS_MAIN(FileGuardsTest)
#include "FileGuardsTest.moc"
