#include "lookup/Lookup.h"
#include "support/Sanitizer.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <limits>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

struct TestAccess {
    static bool importAVL(TVpLookup &lookup, std::map<QString, int *> &frequencies, QStringList *errors)
    {
        return lookup.importAVL(frequencies, errors);
    }
    static const std::map<QString, QString> &entries(const TVpLookup &lookup) { return lookup.entries; }
    static int errorCode(const TVpLookup &lookup) { return lookup.errorCode; }
    static QString errorText(const TVpLookup &lookup) { return lookup.errorText; }
    static int lineNumber(const TVpLookup &lookup) { return lookup.lineNumber; }
    static int errorCount(const TVpLookup &lookup) { return lookup.errorCount; }
    static qint64 currentSize(const TVpLookup &lookup) { return lookup.currentSize; }
};

namespace
{

constexpr int noLimit = std::numeric_limits<int>::max();
constexpr int hundredMegabytes = 100 << 20;
const econsistencyCheck everyMode[] = { ccNone, ccFrequencies, ccErrors, ccBoth };

const QString replaced = QString(QChar(QChar::ReplacementCharacter));

/// Returns the bytes of the numbers, \a size bytes for each.
template <typename Numbers> QByteArray bytesOf(const Numbers &numbers, int size, bool isLowFirst)
{
    QByteArray bytes;
    for (const auto number : numbers) {
        for (int i = 0; i < size; ++i)
            bytes += char(uint(number) >> 8 * (isLowFirst ? i : size - 1 - i));
    }
    return bytes;
}

/// Returns the text in UTF-16 or UTF-32, after a byte-order mark.
QByteArray encoded(const QString &text, int size, bool isLowFirst)
{
    const QString marked = QChar(QChar::ByteOrderMark) + text;
    if (size == 4)
        return bytesOf(marked.toUcs4(), size, isLowFirst);
    QVector<ushort> units;
    for (const QChar unit : marked)
        units.append(unit.unicode());
    return bytesOf(units, size, isLowFirst);
}

} // namespace

/// Tests files that are no lookup files, and bytes that no lookup file should contain.
class LookupBadInputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void unreadableFileChangesNothing_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("empty name") << "";
        QTest::newRow("absent") << directory.filePath("absent");
        QTest::newRow("in an absent directory") << directory.filePath("absent/file");
        QTest::newRow("below a file") << directory.filePath("lookup.txt/file");
        QTest::newRow("directory") << directory.path();
        QTest::newRow("directory with a slash") << directory.path() + '/';
        QTest::newRow("name too long") << directory.filePath(QString(5000, 'n'));
        QTest::newRow("line feed in the name") << directory.filePath("a\nb");
        QTest::newRow("NUL in the name") << directory.filePath(QString("lookup.txt") + QChar(ushort(0)) + "x");
    }
    void unreadableFileChangesNothing()
    {
        QFETCH(QString, name);
        write("A x\n");
        for (const econsistencyCheck mode : everyMode) {
            TVpLookup lookup;
            check(lookup, mode);
            const QStringList formerErrors = errors;
            const std::map<QString, int *> former = frequencies;
            const int formerCount = TestAccess::errorCount(lookup);
            lookup.setFfileName(name);
            QVERIFY(!TestAccess::importAVL(lookup, frequencies, &errors));
            QCOMPARE(TestAccess::errorCode(lookup), 1);
            QCOMPARE(TestAccess::errorText(lookup), "Input data file [" + name + "] was not found");
            QCOMPARE(pairsOf(lookup), QStringList("A=x"));
            QCOMPARE(TestAccess::lineNumber(lookup), 1);
            QCOMPARE(TestAccess::errorCount(lookup), formerCount);
            QCOMPARE(errors, formerErrors);
            QVERIFY(frequencies == former);
        }
    }

#ifdef Q_OS_UNIX
    void pipeIsNoLookupFile() // and the check does not wait for its other end
    {
        const QString name = directory.filePath("pipe");
        QCOMPARE(mkfifo(QFile::encodeName(name).constData(), 0600), 0);
        for (const QString &notAFile : { name, QStringLiteral("/dev/null") }) {
            TVpLookup lookup;
            lookup.setFfileName(notAFile);
            QVERIFY(!TestAccess::importAVL(lookup, frequencies, &errors));
            QCOMPARE(TestAccess::errorCode(lookup), 1);
        }
    }

    void linkIsFollowed()
    {
        write("A x\n");
        const QString good = directory.filePath("link");
        QVERIFY(QFile::link(path(), good));
        TVpLookup lookup;
        lookup.setFfileName(good);
        QVERIFY(TestAccess::importAVL(lookup, frequencies, &errors));
        QCOMPARE(pairsOf(lookup), QStringList("A=x"));

        const QString broken = directory.filePath("broken");
        QVERIFY(QFile::link(directory.filePath("absent"), broken));
        lookup.setFfileName(broken);
        QVERIFY(!TestAccess::importAVL(lookup, frequencies, &errors));
    }
#endif

    void nameMayBeOdd_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("blanks") << "  two  words ";
        QTest::newRow("quotes") << "'a\"b`";
        QTest::newRow("placeholder") << "%1%2";
        QTest::newRow("other scripts") << QString::fromUtf8("\xC3\xA9\xE6\x97\xA5\xF0\x9F\x98\x80.txt");
        QTest::newRow("looks like an option") << "--help";
        QTest::newRow("looks like a resource") << ":name";
        QTest::newRow("pattern") << "*?[a]";
    }
    void nameMayBeOdd()
    {
        QFETCH(QString, name);
        QFile file(directory.path() + '/' + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write("A x\n"), qint64(4));
        file.close();
        TVpLookup lookup;
        lookup.setFfileName(file.fileName());
        lookup.consistencyCheck(ccErrors, frequencies, &errors);
        QCOMPARE(pairsOf(lookup), QStringList("A=x"));

        TVpLookup updated;
        updated.updateFileName(file.fileName());
        QCOMPARE(updated.getFfileName(), file.fileName());
        QVERIFY(file.remove());
    }

    void endsOfLines_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("pairs");
        QTest::addColumn<QStringList>("messages");
        const QStringList none;
        QTest::newRow("empty file") << QByteArray() << none << none;
        QTest::newRow("line feed") << QByteArray("A x\nB y\n") << QStringList{ "A=x", "B=y" } << none;
        QTest::newRow("none at the end") << QByteArray("A x\nB y") << QStringList{ "A=x", "B=y" } << none;
        QTest::newRow("carriage return, line feed")
            << QByteArray("A x\r\nB y\r\n") << QStringList{ "A=x", "B=y" } << none;
        QTest::newRow("both kinds") << QByteArray("A x\r\nB y\nC z\r\n") << QStringList{ "A=x", "B=y", "C=z" } << none;
        QTest::newRow("carriage return within")
            << QByteArray("A x\rB y\nC z\n") << QStringList{ "A=x\rB y", "C=z" } << none;
        QTest::newRow("two before a line feed") << QByteArray("A x\r\r\n") << QStringList("A=x\r") << none;
        QTest::newRow("carriage return at the end") << QByteArray("A x\r") << QStringList("A=x") << none;
        QTest::newRow("carriage return is the key") << QByteArray("\r x\n") << QStringList("\r=x") << none;
        QTest::newRow("one line feed") << QByteArray("\n") << QStringList("=")
                                       << QStringList("1_Separator [ ] does not exist");
        QTest::newRow("line feeds only") << QByteArray("\n\n") << QStringList("=")
                                         << QStringList{ "1_Separator [ ] does not exist",
                                                         "2_Separator [ ] does not exist", "2_Key [] already exists" };
        QTest::newRow("other ends of lines are none")
            << QByteArray("A\fB x\vy\xC2\x85z\xE2\x80\xA8w\n")
            << QStringList(QString::fromUtf8("A\fB=x\vy\xC2\x85z\xE2\x80\xA8w")) << none;
        QTest::newRow("mark only is a line")
            << QByteArray("\xEF\xBB\xBF") << QStringList("=") << QStringList("1_Separator [ ] does not exist");
    }
    void endsOfLines()
    {
        QFETCH(QByteArray, bytes);
        write(bytes);
        TVpLookup lookup;
        check(lookup, ccErrors);
        QTEST(pairsOf(lookup), "pairs");
        QTEST(errors, "messages");
    }

    void endOfALineMayFallBetweenTwoPieces()
    {
        // Whatever the size of the pieces in which the file is read, for each byte position in a line, some line is
        // split there.
        constexpr int most = 70000;
        QByteArray bytes;
        int lines = 0;
        for (; bytes.size() < most; ++lines)
            bytes += QByteArray::number(100000 + lines) + QByteArray(1 + lines % 7, ' ') + "\xC3\xA9\r\n";
        for (int shift = 0; shift < 12; ++shift) {
            write(QByteArray(shift, 'k') + bytes);
            TVpLookup lookup;
            check(lookup, ccErrors);
            QCOMPARE(TestAccess::lineNumber(lookup), lines);
            const auto &entries = TestAccess::entries(lookup);
            QCOMPARE(int(entries.size()), lines);
            const QString value(QChar(0xE9));
            QVERIFY(
                std::all_of(entries.begin(), entries.end(), [&](const auto &entry) { return entry.second == value; }));
            errors.clear();
        }
    }

    void encodings_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QString text = QString::fromUtf8("\xC3\xA9 x\r\n\xE6\x97\xA5 \xF0\x9F\x98\x80\n");
        QTest::newRow("UTF-8") << text.toUtf8();
        QTest::newRow("UTF-8 with mark") << "\xEF\xBB\xBF" + text.toUtf8();
        QTest::newRow("UTF-16, low byte first") << encoded(text, 2, true);
        QTest::newRow("UTF-16, high byte first") << encoded(text, 2, false);
        QTest::newRow("UTF-32, low byte first") << encoded(text, 4, true);
        QTest::newRow("UTF-32, high byte first") << encoded(text, 4, false);
    }
    void encodings()
    {
        QFETCH(QByteArray, bytes);
        write(bytes);
        TVpLookup lookup;
        check(lookup, ccBoth);
        QCOMPARE(pairsOf(lookup),
                 (QStringList{ QString::fromUtf8("\xC3\xA9=x"), QString::fromUtf8("\xE6\x97\xA5=\xF0\x9F\x98\x80") }));
        QCOMPARE(errors, QStringList());
    }

    void bytesThatAreNoTextDoNoHarm_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("pairs");
        const QString nul = QString(QChar(ushort(0)));
        QTest::newRow("lone byte of UTF-8")
            << QByteArray("A\xFF x\nB y\n") << QStringList{ "A" + replaced + "=x", "B=y" };
        QTest::newRow("broken off at the end: dropped") << QByteArray("A x\nB \xE6\x97") << QStringList{ "A=x", "B=" };
        QTest::newRow("NUL in the key") << QByteArray("A\0B x\n", 6) << QStringList("A" + nul + "B=x");
        QTest::newRow("NUL in the value") << QByteArray("A \0x\n", 5) << QStringList("A=" + nul + "x");
        QTest::newRow("NUL only") << QByteArray("\0 \0\n\0\0 x\n", 9)
                                  << QStringList{ nul + '=' + nul, nul + nul + "=x" };
        QTest::newRow("half of a UTF-16 character") << encoded("A x\n", 2, true) + 'B' << QStringList("A=x");
        QTest::newRow("half a pair of surrogates")
            << QByteArray("\xFF\xFE\x3D\xD8 \0x\0\n\0", 10) << QStringList(QString(QChar(0xD83D)) + "=x");
    }
    void bytesThatAreNoTextDoNoHarm()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, pairs);
        write(bytes);
        TVpLookup lookup;
        check(lookup, ccBoth);
        const QStringList found = pairsOf(lookup);
        QVERIFY2(found.mid(0, pairs.size()) == pairs, qPrintable(found.join('|')));
    }

    void randomBytesDoNoHarm()
    {
        QRandomGenerator random(11);
        for (int round = 0; round < 300; ++round) {
            QByteArray bytes(random.bounded(400), '\0');
            for (char &byte : bytes)
                byte = random.bounded(4) == 0 ? " \n\t,"[random.bounded(4)] : char(random.bounded(256));
            write(bytes);
            for (const econsistencyCheck mode : everyMode) {
                TVpLookup lookup;
                lookup.setSeparator(round % 6);
                errors.clear();
                check(lookup, mode);
                QVERIFY(TestAccess::lineNumber(lookup) <= bytes.size());
                QCOMPARE(errors.size(), TestAccess::errorCount(lookup));
                QVERIFY(TestAccess::entries(lookup).size() <= size_t(TestAccess::lineNumber(lookup)));
            }
        }
    }

    void lineOfAHundredMegabytes_data()
    {
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("messages");
        QTest::newRow("with a separator") << QByteArray("A ") << "A" << 0;
        QTest::newRow("without") << QByteArray("xx") << "" << 1;
        QTest::newRow("with one in the first column") << QByteArray(" x") << "" << 1;
    }
    void lineOfAHundredMegabytes()
    {
        QFETCH(QByteArray, head);
        QFETCH(QString, key);
        write(head, QByteArray(1 << 20, 'x'), hundredMegabytes >> 20);
        TVpLookup lookup;
        check(lookup, ccBoth);
        QCOMPARE(TestAccess::lineNumber(lookup), 1);
        QCOMPARE(TestAccess::currentSize(lookup), qint64(hundredMegabytes + 2));
        const auto &entries = TestAccess::entries(lookup);
        QCOMPARE(int(entries.size()), 1);
        QCOMPARE(entries.begin()->first, key);
        QCOMPARE(entries.begin()->second.size(), key.isEmpty() ? 0 : hundredMegabytes);
        QTEST(int(errors.size()), "messages");
        QFile::remove(path());
    }

    void tenMillionIdenticalLines()
    {
        constexpr int lines = sanitizesMemory ? 300000 : 10000000; // ten million lines take too long under a sanitizer
        constexpr int linesOfAPiece = 100000;
        write(QByteArray(), QByteArray("KEY value\n").repeated(linesOfAPiece), lines / linesOfAPiece);
        TVpLookup lookup;
        check(lookup, ccFrequencies);
        QCOMPARE(TestAccess::lineNumber(lookup), lines);
        QCOMPARE(pairsOf(lookup), QStringList("KEY=value"));
        QCOMPARE(int(frequencies.size()), 1);
        QCOMPARE(*frequencies.at("value"), 1);
        QCOMPARE(errors, QStringList());
        QFile::remove(path());
    }

    void messagesAreDroppedWhereThereIsNoList_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<int>("count");
        QTest::newRow("0") << 0 << 0;
        QTest::newRow("1") << 1 << 0;
        QTest::newRow("2") << 2 << 4;
        QTest::newRow("3") << 3 << 4;
        QTest::newRow("7") << 7 << 0;
    }
    void messagesAreDroppedWhereThereIsNoList()
    {
        QFETCH(int, mode);
        write("AA x\nAA y\n\nB z\n");
        TVpLookup lookup;
        lookup.setFfileName(path());
        lookup.consistencyCheck(econsistencyCheck(mode), frequencies, nullptr);
        QCOMPARE(pairsOf(lookup), (QStringList{ "AA=x", "B=z" }));
        QTEST(TestAccess::errorCount(lookup), "count"); // they are counted anyway

        // The message about the limit is among those that were dropped.
        lookup.consistencyCheck(ccErrors, frequencies, &errors);
        QCOMPARE(errors.first(),
                 mode == 2 || mode == 3 ? QString("2_Key [AA] already exists")
                                        : QString("2_Too many error messages [%1], only the first [%2] "
                                                  "will be shown")
                                              .arg(QChar(1))
                                              .arg(QChar(ushort(0))));
    }

    void cleanup()
    {
        errors.clear();
        for (const auto &entry : frequencies)
            numbers.insert(entry.second);
        for (const int *number : qAsConst(numbers))
            delete number;
        numbers.clear();
        frequencies.clear();
    }

private:
    QString path() const
    {
        return directory.filePath("lookup.txt");
    }

    void write(const QByteArray &head, const QByteArray &piece = QByteArray(), int times = 0) const
    {
        QFile file(path());
        bool isWritten = file.open(QIODevice::WriteOnly) && file.write(head) == head.size();
        for (; isWritten && times > 0; --times)
            isWritten = file.write(piece) == piece.size();
        if (!isWritten || !file.flush())
            qFatal("%s cannot be written", qPrintable(path()));
    }

    // Checks without a limit of messages, and collects the ints of the frequencies.
    void check(TVpLookup &lookup, econsistencyCheck mode)
    {
        lookup.setMaxMessages(noLimit);
        lookup.setFfileName(path());
        lookup.consistencyCheck(mode, frequencies, &errors);
        for (const auto &entry : frequencies)
            numbers.insert(entry.second);
    }

    static QStringList pairsOf(const TVpLookup &lookup)
    {
        QStringList list;
        for (const auto &entry : TestAccess::entries(lookup))
            list.append(entry.first + '=' + entry.second);
        return list;
    }

    QTemporaryDir directory;
    QStringList errors;
    std::map<QString, int *> frequencies;
    QSet<int *> numbers;
};

QTEST_GUILESS_MAIN(LookupBadInputTest)
#include "LookupBadInputTest.moc"
