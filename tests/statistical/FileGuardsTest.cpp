#include "statistical/BufferedFile_p.h"
#include "statistical/FileGuards_p.h"
#include "import/ReadReport.h"
#include "statistical/SPSSDataImport.h"
#include "support/SpssBytes.h"
#include "util/SpssDictionary_p.h"

#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#include <algorithm>
#include <cerrno>
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

/// Tests the checks before ReadStat reads a file, and the large pieces in which it may read.
class FileGuardsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesOfStataAreBoundedByTheVersion_data()
    {
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<int>("withVariable");
        QTest::addColumn<int>("withLabel");
        QTest::newRow("104") << QByteArray(1, char(104)) << 9 << 12;
        for (const int version : { 105, 108, 109 })
            QTest::addRow("%d", version) << QByteArray(1, char(version)) << 9 << 33;
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
        const NameBounds bounds = statistical::stataNameBounds(write(head));
        QTEST(int(bounds.withVariable), "withVariable");
        QTEST(int(bounds.withLabel), "withLabel");
    }

    void fileThatWillNotOpenHasTheNamesOfTheOldestVersion()
    {
        const NameBounds bounds = statistical::stataNameBounds(QStringLiteral("/nowhere/absent.dta"));
        QCOMPARE(int(bounds.withVariable), 9);
        QCOMPARE(int(bounds.withLabel), 12);
    }

    void tooManyVariablesAreNotReadWhereNamesAreLookedUp_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("subtype");
        QTest::addColumn<bool>("isBigEndian");
        QTest::addColumn<bool>("isSafe");
        const int most = SpssDictionary::maxLongNames;
        QTest::newRow("as many as there is room for") << most << SpssBytes::longNames << false << true;
        QTest::newRow("one more with long names") << most + 1 << SpssBytes::longNames << false << false;
        QTest::newRow("one more with very long texts") << most + 1 << SpssBytes::veryLongTexts << false << false;
        QTest::newRow("one more, big-endian") << most + 1 << SpssBytes::longNames << true << false;
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
        // All records that may be between the variables and the record that matters.
        file.variables(count, false);
        file.valueLabels();
        file.documents();
        file.extension(20);
        if (subtype != 0)
            file.extension(subtype);
        file.end();
        QCOMPARE(statistical::spssProblem(write(file.bytes)).isNull(), isSafe);
    }

    void eitherLayoutCodeStatesTheByteOrder_data()
    {
        QTest::addColumn<bool>("isBigEndian");
        QTest::newRow("little-endian") << false;
        QTest::newRow("big-endian") << true;
    }
    void eitherLayoutCodeStatesTheByteOrder()
    {
        QFETCH(bool, isBigEndian);
        for (const char layoutCode : { '\2', '\3' }) {
            SpssBytes file(isBigEndian);
            file.bytes[isBigEndian ? 67 : 64] = layoutCode;
            file.variables(SpssDictionary::maxLongNames + 1);
            file.extension(SpssBytes::longNames);
            file.end();
            QCOMPARE(statistical::spssProblem(write(file.bytes)).line,
                     QStringLiteral("has more than 419328 variables with long names, which is the limit"));
        }
    }

    void bigFileWhoseDictionaryBreaksOffIsRefused_data()
    {
        QTest::addColumn<QByteArray>("tail");
        constexpr int numeric = 0;
        constexpr int noLabel = 0;
        constexpr int hasLabel = 1;
        constexpr int noLabels = 0;
        constexpr int twoLabels = 2;
        constexpr int fiveVariables = 5;
        constexpr int bytesEach = 1;
        constexpr int count = 50;
        constexpr int oneLine = 1;
        const auto addRow = [](const char *name, std::initializer_list<qint32> numbers) {
            SpssBytes record;
            record.bytes.clear();
            record.numbers(numbers);
            QTest::newRow(name) << record.bytes;
        };
        QTest::newRow("nothing more") << QByteArray();
        QTest::newRow("type cut off") << QByteArray("\2\0\0", 3);
        addRow("unknown type", { 5 });
        addRow("end, filler missing", { SpssBytes::endRecord });
        addRow("extension, subtype missing", { SpssBytes::extensionRecord });
        addRow("extension, size missing", { SpssBytes::extensionRecord, SpssBytes::longNames });
        addRow("extension, count missing", { SpssBytes::extensionRecord, SpssBytes::longNames, bytesEach });
        addRow("extension, bytes missing", { SpssBytes::extensionRecord, SpssBytes::longNames, bytesEach, count });
        addRow("sets of labels, bytes missing",
               { SpssBytes::extensionRecord, SpssBytes::longTextLabels, bytesEach, count });
        addRow("variable, numbers missing", { SpssBytes::variableRecord, numeric, noLabel });
        addRow("variable, the rest missing", { SpssBytes::variableRecord, numeric, noLabel, 0 });
        addRow("variable, size of label missing", { SpssBytes::variableRecord, numeric, hasLabel, 0, 0, 0, 0, 0 });
        addRow("labels, number missing", { SpssBytes::labelsRecord });
        addRow("labels, all missing", { SpssBytes::labelsRecord, twoLabels });
        addRow("labels, size missing", { SpssBytes::labelsRecord, twoLabels, 0, 0 });
        addRow("labels, no variables", { SpssBytes::labelsRecord, noLabels });
        addRow("labels, another record", { SpssBytes::labelsRecord, noLabels, SpssBytes::variableRecord, 0 });
        addRow("labels, number of variables missing",
               { SpssBytes::labelsRecord, noLabels, SpssBytes::labelledVariablesRecord });
        addRow("labels, variables missing",
               { SpssBytes::labelsRecord, noLabels, SpssBytes::labelledVariablesRecord, fiveVariables });
        addRow("labelled variables only", { SpssBytes::labelledVariablesRecord, 0, SpssBytes::endRecord, 0 });
        addRow("documents, number missing", { SpssBytes::documentsRecord });
        addRow("documents, lines missing", { SpssBytes::documentsRecord, oneLine });
    }
    void bigFileWhoseDictionaryBreaksOffIsRefused()
    {
        QFETCH(QByteArray, tail);
        const QString brokenOff = QStringLiteral("has a dictionary that is cut, or a record in it that cannot be read");
        for (const int size : { 2040, 2048 }) { // variables, on both sides of 64 KiB
            SpssBytes file;
            file.variables(size);
            file.bytes += tail;
            const bool isBig = file.bytes.size() >= 1 << 16;
            QCOMPARE(statistical::spssProblem(write(file.bytes)).line, isBig ? brokenOff : QString());
        }
    }

    void documentsDoNotHideVariables()
    {
        SpssBytes file;
        constexpr int lines = 0x0CCCCCCD; // times 80 bytes, this is 16 in 32 bits, and 17 GB in 64
        file.numbers({ SpssBytes::documentsRecord, lines });
        file.bytes += QByteArray(16, ' ');
        file.variables(SpssDictionary::maxLongNames + 1);
        file.extension(SpssBytes::longNames);
        file.end();
        QCOMPARE(statistical::spssProblem(write(file.bytes)).line,
                 QStringLiteral("has more than 419328 variables with long names, which is the limit"));
    }

    void setsTimesVariablesAreBounded_data()
    {
        QTest::addColumn<int>("subtype");
        QTest::addColumn<QByteArray>("set");
        SpssBytes labels;
        labels.bytes.clear();
        labels.numbers({ 1 });
        labels.bytes += 'V';
        labels.numbers({ 9, 1, 2 });
        labels.bytes += "ab";
        labels.numbers({ 0 });
        QTest::newRow("labels") << SpssBytes::longTextLabels << labels.bytes;
        SpssBytes missing;
        missing.bytes.clear();
        missing.numbers({ 1 });
        missing.bytes += "V\2";
        missing.numbers({ 3 });
        missing.bytes += "abcdef";
        QTest::newRow("missing values") << SpssBytes::longTextMissing << missing.bytes;
    }
    void setsTimesVariablesAreBounded()
    {
        QFETCH(int, subtype);
        QFETCH(QByteArray, set);
        constexpr int variables = 25000;
        constexpr int most = int(SpssDictionary::maxLookupSteps / variables);
        for (const int sets : { most, most + 1 }) {
            SpssBytes file;
            file.variables(variables);
            // The sets are in several records: records one after the other cost as much.
            file.extension(subtype, set.repeated(sets - 5000));
            file.extension(subtype, set.repeated(5000));
            file.end();
            const QString problem = statistical::spssProblem(write(file.bytes)).line;
            QCOMPARE(problem.isNull(), sets == most);
            if (sets > most)
                QCOMPARE(problem,
                         QStringLiteral(
                             "has too many sets of labels or missing values of long texts, or records of "
                             "long names, for its 25000 variables: their number times the variables may be at most "
                             "250000000"));
        }
    }

    void recordsOfLongNamesCountAsOftenAsTheyAreSorted()
    {
        constexpr int variables = 10000;
        for (const int subtype : { SpssBytes::longNames, SpssBytes::veryLongTexts }) {
            for (const int records : { 100, 2000 }) {
                SpssBytes file;
                file.variables(variables);
                for (int i = 0; i < records; ++i)
                    file.extension(subtype, "V0=9");
                file.end();
                QCOMPARE(statistical::spssProblem(write(file.bytes)).isNull(), records == 100);
            }
        }
    }

    void setsOfAFileThatIsReadAreBoundedToo()
    {
        // Too many of them, and one of the size at which the reading is bounded.
        constexpr int variables = 20000;
        for (const int sets : { 10, variables }) {
            SpssBytes file;
            file.variables(variables);
            SpssBytes content;
            content.bytes.clear();
            for (int i = 0; i < sets; ++i) {
                const QByteArray name = SpssBytes::nameOf(i);
                content.numbers({ int(name.size()) });
                content.bytes += name;
                content.numbers({ 8, 0 });
            }
            file.extension(SpssBytes::longTextLabels, content.bytes);
            file.end();
            TSPSSDataImport importer(write(file.bytes));
            ReadReport report;
            importer.setReadReport(&report);
            QCOMPARE(TestAccess::fieldsOf(importer), sets == 10 ? variables : 0);
            QCOMPARE(report.count(NoteKind::fileNotRead), sets == 10 ? 0 : 1);
        }
    }

    void importerTakesSuchAFileAsOneThatCannotBeRead()
    {
        const int most = SpssDictionary::maxLongNames;
        for (const int count : { 10, most + 1 }) {
            SpssBytes file;
            file.variables(count);
            file.extension(SpssBytes::longNames);
            file.end();
            TSPSSDataImport importer(write(file.bytes));
            importer.setReadingBuffered(true);
            QCOMPARE(TestAccess::fieldsOf(importer), count > most ? 0 : count);
        }
    }

    void partsOfATextAreNotCounted()
    {
        SpssBytes file;
        file.variables(SpssDictionary::maxLongNames);
        file.parts(10);
        file.extension(SpssBytes::longNames);
        file.end();
        QVERIFY(statistical::spssProblem(write(file.bytes)).isNull());
    }

    void noSpssFileIsLeftToReadStat()
    {
        QVERIFY(statistical::spssProblem(QStringLiteral("/nowhere/absent.sav")).isNull());
        QVERIFY(statistical::spssProblem(write(QByteArray(14 << 20, 'x'))).isNull());
        QVERIFY(statistical::spssProblem(write(QByteArray("$FL2"))).isNull());
        QVERIFY(statistical::spssProblem(write("$FL4" + QByteArray(1 << 20, ' '))).isNull());
    }

    void directoryHasNoBytes()
    {
        statistical::BufferedFile file;
        QVERIFY(file.open(QFile::encodeName(directory.path()).constData()));
        char byte = 'x';
        QVERIFY(file.read(&byte, 1) < 1);
        QCOMPARE(file.error(), EISDIR);
        QCOMPARE(byte, 'x');
    }

    void failureToReadIsAnErrorAfterTheReadPart()
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
        QCOMPARE(file.error(), 0);
        io.close(io.io_ctx); // from now on the system refuses
        const auto given = int(io.read(bytes.data(), bytes.size(), io.io_ctx));
        QVERIFY(given > 0 && given < size);
        QCOMPARE(std::count(bytes.begin(), bytes.begin() + given, 'a'), qptrdiff(given));
        QVERIFY(file.error() != 0);
        // The result is not -1, which ReadStat would treat as the number of bytes that it requested.
        QCOMPARE(int(io.read(bytes.data(), 1, io.io_ctx)), 0);
        QCOMPARE(io.open(path.constData(), io.io_ctx), 0);
        QCOMPARE(file.error(), 0);
        readstat_parser_free(parser);
    }

    void failureToReadTheFirstByteIsAnError()
    {
        statistical::BufferedFile file;
        QVERIFY(file.open("/proc/self/mem")); // there is nothing at the address 0
        char byte = 'x';
        QCOMPARE(file.read(&byte, 1), Q_INT64_C(0));
        QCOMPARE(file.error(), EIO);
        QCOMPARE(byte, 'x');
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
        QCOMPARE(file.read(&byte, 1), Q_INT64_C(1)); // the position has not changed
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
        const QString path = directory.filePath(QStringLiteral("large"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize(far)); // takes no space on the disk
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
        const QString path = directory.filePath(QStringLiteral("file"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("%s cannot be written", qPrintable(path));
        return path;
    }

    QTemporaryDir directory;
};

QTEST_APPLESS_MAIN(FileGuardsTest)
#include "FileGuardsTest.moc"
