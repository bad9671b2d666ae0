#include "import/ReadReport.h"
#include "lookup/Lookup.h"
#include "lookup/LookupEntries_p.h"
#include "support/VirtualSlot.h"
#include "support/OrdinaryUser.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <tuple>
#include <type_traits>

#include <fcntl.h>
#include <unistd.h>

/// The numbers and flags of a lookup. All are 0 by default.
struct LookupNumbers {
    int errorCode = 0;
    int separator = 0;
    int maxMessages = 0;
    bool readFailed = false;
    bool fileAccepted = false;
    bool carriedFlag = false;
    int keySize = 0;
    econsistencyCheck consistency = ccNone;
    int lineNumber = 0;
    int errorCount = 0;
    bool tooManyIssued = false;
    qint64 fileSize = 0;
    qint64 currentSize = 0;

    auto all() const
    {
        return std::tie(errorCode, separator, maxMessages, readFailed, fileAccepted, carriedFlag, keySize, consistency,
                        lineNumber, errorCount, tooManyIssued, fileSize, currentSize);
    }
    bool operator==(const LookupNumbers &other) const { return all() == other.all(); }
};

struct TestAccess {
    static bool openLookup(TVpLookup &lookup) { return lookup.openLookup(); }
    static bool readLookup(TVpLookup &lookup) { return lookup.readLookup(); }
    static void split(TVpLookup &lookup, const QString &line, QStringList *errors)
    {
        lookup.currentLine = line;
        lookup.splitKeyValueAVL(errors);
    }
    static bool importAVL(TVpLookup &lookup, std::map<QString, int *> &frequencies, QStringList *errors)
    {
        return lookup.importAVL(frequencies, errors);
    }
    static void issue(TVpLookup &lookup, QStringList *errors, const QString &message)
    {
        lookup.issueErrorMessage(errors, message);
    }
    // Pointers to the operations. With other parameters or results they would not compile.
    static constexpr bool (TVpLookup::*openOperation)() = &TVpLookup::openLookup;
    static constexpr bool (TVpLookup::*readOperation)() = &TVpLookup::readLookup;
    static constexpr bool (TVpLookup::*importOperation)(std::map<QString, int *> &, QStringList *)
        = &TVpLookup::importAVL;
    static constexpr void (TVpLookup::*splitOperation)(QStringList *) = &TVpLookup::splitKeyValueAVL;
    static constexpr void (TVpLookup::*issueOperation)(QStringList *, QString) = &TVpLookup::issueErrorMessage;
    static void setMode(TVpLookup &lookup, econsistencyCheck mode) { lookup.consistency = mode; }
    static void setLine(TVpLookup &lookup, int line) { lookup.lineNumber = line; }
    static void setErrorCount(TVpLookup &lookup, int count) { lookup.errorCount = count; }
    static void setReadFailed(TVpLookup &lookup) { lookup.readFailed = true; }
    static void fill(TVpLookup &lookup)
    {
        lookup.text1 = QStringLiteral("one");
        lookup.text2 = QStringLiteral("two");
        lookup.flag1 = false;
        lookup.keySize = 7;
        lookup.errorText = QStringLiteral("error");
    }
    static const std::map<QString, QString> &entries(const TVpLookup &lookup) { return lookup.entries; }
    static QString key(const TVpLookup &lookup) { return lookup.key; }
    static QString value(const TVpLookup &lookup) { return lookup.value; }
    static QString line(const TVpLookup &lookup) { return lookup.currentLine; }
    static QString errorText(const TVpLookup &lookup) { return lookup.errorText; }
    static LookupNumbers numbers(const TVpLookup &lookup)
    {
        LookupNumbers numbers;
        numbers.errorCode = lookup.errorCode;
        numbers.separator = lookup.separator;
        numbers.maxMessages = lookup.maxMessages;
        numbers.readFailed = lookup.readFailed;
        numbers.fileAccepted = lookup.fileAccepted;
        numbers.carriedFlag = lookup.flag1;
        numbers.keySize = lookup.keySize;
        numbers.consistency = lookup.consistency;
        numbers.lineNumber = lookup.lineNumber;
        numbers.errorCount = lookup.errorCount;
        numbers.tooManyIssued = lookup.tooManyIssued;
        numbers.fileSize = lookup.fileSize;
        numbers.currentSize = lookup.currentSize;
        return numbers;
    }
    static QStringList texts(const TVpLookup &lookup)
    {
        return { lookup.id,  lookup.label, lookup.errorText, lookup.text1,      lookup.text2,
                 lookup.key, lookup.value, lookup.fileName,  lookup.currentLine };
    }
    static bool hasNullTexts(const TVpLookup &lookup)
    {
        return lookup.key.isNull() && lookup.value.isNull() && lookup.currentLine.isNull();
    }
    static bool isAccepted(const TVpLookup &lookup) { return lookup.fileAccepted; }
    static int errorCode(const TVpLookup &lookup) { return lookup.errorCode; }
    static int errorCount(const TVpLookup &lookup) { return lookup.errorCount; }
    static int lineNumber(const TVpLookup &lookup) { return lookup.lineNumber; }
    static qint64 currentSize(const TVpLookup &lookup) { return lookup.currentSize; }
    static qint64 fileSize(const TVpLookup &lookup) { return lookup.fileSize; }
};

namespace
{

constexpr int noLimit = std::numeric_limits<int>::max();

/// Frequencies that free their ints.
struct Frequencies {
    ~Frequencies()
    {
        for (const auto &entry : map)
            delete entry.second;
    }
    QStringList texts() const
    {
        QStringList list;
        for (const auto &entry : map)
            list.append(entry.first + '=' + QString::number(*entry.second));
        return list;
    }
    std::map<QString, int *> map;
};

/// Adds one virtual operation. Its place shows the number of virtual operations of TVpLookup.
class DerivedLookup : public TVpLookup
{
public:
    virtual void next() { }
};

QStringList pairsOf(const TVpLookup &lookup)
{
    QStringList list;
    for (const auto &entry : TestAccess::entries(lookup))
        list.append(entry.first + '=' + entry.second);
    return list;
}

} // namespace

/// Tests the check of a lookup file.
class LookupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newLookupIsEmpty()
    {
        const TVpLookup lookup;
        LookupNumbers expected;
        expected.errorCode = -1;
        expected.carriedFlag = true;
        QVERIFY(TestAccess::numbers(lookup) == expected);
        QCOMPARE(TestAccess::texts(lookup).join(QString()), QString());
        QVERIFY(TestAccess::entries(lookup).empty());
        QVERIFY(TestAccess::hasNullTexts(lookup));
    }

    void accessorsHoldWhatWasSet()
    {
        TVpLookup lookup;
        lookup.setId("id");
        lookup.setLabel("label");
        lookup.setFfileName("file");
        lookup.setSeparator(3);
        lookup.setMaxMessages(12);
        QCOMPARE(lookup.getId(), QString("id"));
        QCOMPARE(lookup.getLabel(), QString("label"));
        QCOMPARE(lookup.getFfileName(), QString("file"));
        QCOMPARE(lookup.getSeparator(), 3);
        QCOMPARE(lookup.getMaxMessages(), 12);
    }

    void lineIsCutAtItsFirstSeparator_data()
    {
        QTest::addColumn<int>("separator");
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("pair");
        // clang-format off
        QTest::newRow("space")                          << 0 << "A1 Label"       << "A1=Label";
        QTest::newRow("space: blanks at the beginning go") << 0 << "A1   Label  x"  << "A1=Label  x";
        QTest::newRow("space: all white space goes")    << 0 << QString::fromUtf8("A1  \t\xC2\xA0\xE3\x80\x80L") << "A1=L";
        QTest::newRow("space: that of control characters too") << 0 << QString::fromUtf8("A1 \v\f\r\xC2\x85L") << "A1=L";
        QTest::newRow("space: the end of the value stays") << 0 << "A1 Label  "  << "A1=Label  ";
        QTest::newRow("space: nothing is left")         << 0 << "A1   "          << "A1=";
        QTest::newRow("tab")                            << 1 << "A1\tLabel x"    << "A1=Label x";
        QTest::newRow("tab: blanks stay")               << 1 << "A1\t  Label "   << "A1=  Label ";
        QTest::newRow("comma")                          << 2 << "A 1,Label"      << "A 1=Label";
        QTest::newRow("semicolon: its blank stays")     << 3 << "A1; Label"      << "A1= Label";
        QTest::newRow("later ones are of the value")    << 3 << "A1;B;C"         << "A1=B;C";
        QTest::newRow("colon")                          << 4 << "A1:Label"       << "A1=Label";
        QTest::newRow("another number is a space")      << 7 << "A1 Label"       << "A1=Label";
        QTest::newRow("there blanks at the beginning stay") << 7 << "A1   Label"     << "A1=  Label";
        QTest::newRow("a negative one too")             << -1 << "A1  Label"     << "A1= Label";
        QTest::newRow("nothing after it")               << 3 << "A1;"            << "A1=";
        QTest::newRow("no quotes")                      << 2 << "\"a,b\",c"      << "\"a=b\",c";
        // clang-format on
    }
    void lineIsCutAtItsFirstSeparator()
    {
        QFETCH(int, separator);
        QFETCH(QString, line);
        TVpLookup lookup;
        lookup.setSeparator(separator);
        check(lookup, ccErrors, line + '\n');
        QTEST(pairsOf(lookup).join('|'), "pair");
        QCOMPARE(errors, QStringList());
    }

    void lineWithoutASeparatorRepeatsTheOneBefore_data()
    {
        QTest::addColumn<QString>("line");
        QTest::newRow("none") << "nothing";
        QTest::newRow("in the first column") << ";A2;Label";
        QTest::newRow("empty line") << "";
    }
    void lineWithoutASeparatorRepeatsTheOneBefore()
    {
        QFETCH(QString, line);
        TVpLookup lookup;
        lookup.setSeparator(3);
        lookup.setMaxMessages(noLimit);
        check(lookup, ccErrors, "A1;x\n" + line + "\nA2;y\n");
        QCOMPARE(errors, (QStringList{ "2_Separator [;] does not exist", "2_Key [A1] already exists" }));
        QCOMPARE(pairsOf(lookup), (QStringList{ "A1=x", "A2=y" }));
    }

    void separatorIsNamedInItsMessage_data()
    {
        QTest::addColumn<int>("separator");
        QTest::addColumn<QString>("name");
        QTest::newRow("space") << 0 << " ";
        QTest::newRow("tab") << 1 << "\t";
        QTest::newRow("comma") << 2 << ",";
        QTest::newRow("semicolon") << 3 << ";";
        QTest::newRow("colon") << 4 << ":";
        QTest::newRow("another") << 9 << " ";
    }
    void separatorIsNamedInItsMessage()
    {
        QFETCH(int, separator);
        QFETCH(QString, name);
        TVpLookup lookup;
        lookup.setSeparator(separator);
        lookup.setMaxMessages(noLimit);
        check(lookup, ccErrors, "x\n");
        QCOMPARE(errors, QStringList("1_Separator [" + name + "] does not exist"));
    }

    void keyOfAnotherLengthIsReportedAndEntered()
    {
        TVpLookup lookup;
        lookup.setMaxMessages(noLimit);
        check(lookup, ccErrors, "AAA x\nBB y\nCCCCCCCCCCCC z\n");
        QCOMPARE(errors,
                 (QStringList{ "2_Key [BB] has a different key size [2] from the first record [3]",
                               "3_Key [CCCCCCCCCCCC] has a different key size [12] from the first record [3]" }));
        QCOMPARE(pairsOf(lookup), (QStringList{ "AAA=x", "BB=y", "CCCCCCCCCCCC=z" }));
    }

    void emptyFirstKeyLeavesTheLengthOpen()
    {
        TVpLookup lookup;
        lookup.setMaxMessages(noLimit);
        // The first line has no separator: its key is that of a new object, which is empty.
        check(lookup, ccErrors, "none\nAA x\nB y\n");
        QCOMPARE(errors,
                 (QStringList{ "1_Separator [ ] does not exist",
                               "3_Key [B] has a different key size [1] from the first record [2]" }));
        QCOMPARE(pairsOf(lookup), (QStringList{ "=", "AA=x", "B=y" }));
    }

    void messagesOfALineAreInTheirOrder()
    {
        TVpLookup lookup;
        lookup.setMaxMessages(noLimit);
        check(lookup, ccBoth, "AA x\nB y\nnone\n");
        QCOMPARE(errors,
                 (QStringList{ "2_Key [B] has a different key size [1] from the first record [2]",
                               "3_Separator [ ] does not exist",
                               "3_Key [B] has a different key size [1] from the first record [2]",
                               "3_Key [B] already exists" }));
    }

    void firstValueOfAKeyIsKept()
    {
        TVpLookup lookup;
        check(lookup, ccNone, "AA x\nAA y\n");
        QCOMPARE(pairsOf(lookup), QStringList("AA=x"));
        QCOMPARE(errors, QStringList());
    }

    void modeSaysWhatIsDone_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("counts");
        QTest::addColumn<bool>("reports");
        QTest::newRow("0") << 0 << false << false;
        QTest::newRow("1 counts") << 1 << true << false;
        QTest::newRow("2 reports") << 2 << false << true;
        QTest::newRow("3 does both") << 3 << true << true;
        QTest::newRow("4") << 4 << false << false;
        QTest::newRow("7") << 7 << false << false;
        QTest::newRow("-1") << -1 << false << false;
    }
    void modeSaysWhatIsDone()
    {
        QFETCH(int, mode);
        QFETCH(bool, counts);
        QFETCH(bool, reports);
        TVpLookup lookup;
        lookup.setMaxMessages(noLimit);
        check(lookup, econsistencyCheck(mode), "AA x\n\nB y\n");
        QCOMPARE(frequencies.texts(), counts ? (QStringList{ "x=1", "y=1" }) : QStringList());
        QCOMPARE(errors.size(), reports ? 3 : 0);
        QCOMPARE(pairsOf(lookup), (QStringList{ "AA=x", "B=y" }));
        QCOMPARE(int(TestAccess::numbers(lookup).consistency), mode);
    }

    void firstMessageBeyondTheLimitIsReplacedOnce()
    {
        TVpLookup lookup;
        check(lookup, ccErrors, "AA x\nAA y\nAA z\n\n");
        const QString limit = QString("Too many error messages [%1], only the first [%2] will be shown")
                                  .arg(QChar(1))
                                  .arg(QChar(ushort(0)));
        QCOMPARE(errors,
                 (QStringList{ "2_" + limit, "3_Key [AA] already exists", "4_Separator [ ] does not exist",
                               "4_Key [AA] already exists" }));
        // The message about the limit is never issued again in the life of the object.
        errors.clear();
        check(lookup, ccErrors, "AA x\nAA y\n");
        QCOMPARE(errors, QStringList("2_Key [AA] already exists"));
        QCOMPARE(TestAccess::errorCount(lookup), 5);
    }

    void numbersOfTheLimitAreCharacters()
    {
        TVpLookup lookup;
        lookup.setMaxMessages(65);
        for (int i = 0; i < 66; ++i)
            TestAccess::issue(lookup, &errors, "text");
        QCOMPARE(errors.at(64), QString("0_text"));
        QCOMPARE(errors.at(65), QString("0_Too many error messages [B], only the first [A] will be shown"));
    }

    void messageBeginsWithTheLineNumber()
    {
        TVpLookup lookup;
        lookup.setMaxMessages(noLimit);
        TestAccess::setLine(lookup, 1234567);
        TestAccess::issue(lookup, &errors, "text");
        QCOMPARE(errors, QStringList("1234567_text"));
    }

    void frequencyIsLookedUpByKeyAndKeptByValue()
    {
        TVpLookup lookup;
        check(lookup, ccFrequencies, "A x\nB x\nC y\n\n");
        QCOMPARE(frequencies.texts(), (QStringList{ "x=1", "y=1" })); // the count stays 1
        QCOMPARE(errors, QStringList());
    }

    void keyThatEqualsAnEarlierValueLeavesItsEntry()
    {
        TVpLookup lookup;
        int held = 5;
        frequencies.map["C"] = &held;
        // "x" is a value of the first line and a key of the second; "C" was the caller's.
        check(lookup, ccFrequencies, "A x\nx y\nC z\n");
        QCOMPARE(held, 5);
        QVERIFY(frequencies.map["C"] == &held);
        frequencies.map.erase("C");
        QCOMPARE(frequencies.texts(), QStringList("x=1"));
    }

    void entryOfAValueIsReplaced()
    {
        TVpLookup lookup;
        int held = 5;
        frequencies.map["x"] = &held;
        check(lookup, ccFrequencies, "A x\n");
        QVERIFY(frequencies.map["x"] != &held);
        QCOMPARE(held, 5);
        QCOMPARE(frequencies.texts(), QStringList("x=1"));
    }

    void duplicateKeyIsNotCounted()
    {
        TVpLookup lookup;
        check(lookup, ccFrequencies, "A x\nA y\n");
        QCOMPARE(frequencies.texts(), QStringList("x=1"));
    }

    void callersObjectsAreOnlyAddedTo()
    {
        TVpLookup lookup;
        lookup.setMaxMessages(noLimit);
        errors = QStringList("mine");
        frequencies.map["mine"] = new int(3);
        check(lookup, ccBoth, "A x\nA y\n");
        QCOMPARE(errors, (QStringList{ "mine", "2_Key [A] already exists" }));
        QCOMPARE(frequencies.texts(), (QStringList{ "mine=3", "x=1" }));
    }

    void errorsMayBeNull()
    {
        TVpLookup lookup;
        write("A x\nA y\n\nBB z\n");
        lookup.setFfileName(path());
        for (const int mode : { 0, 1, 2, 3 })
            lookup.consistencyCheck(econsistencyCheck(mode), frequencies.map, nullptr);
        QCOMPARE(TestAccess::errorCount(lookup), 2 * 4);
        QCOMPARE(pairsOf(lookup), (QStringList{ "A=x", "BB=z" }));
    }

    void countersStayAtTheLargestNumber()
    {
        TVpLookup lookup;
        lookup.setMaxMessages(noLimit);
        write("A x\n");
        lookup.setFfileName(path());
        TestAccess::setErrorCount(lookup, noLimit - 1);
        TestAccess::setLine(lookup, noLimit - 1);
        for (int time = 0; time < 3; ++time) {
            TestAccess::issue(lookup, &errors, "message");
            QVERIFY(TestAccess::readLookup(lookup));
            QCOMPARE(TestAccess::errorCount(lookup), noLimit);
            QCOMPARE(TestAccess::lineNumber(lookup), noLimit);
        }
        QCOMPARE(errors.size(), 3);
        QCOMPARE(errors.last(), QString("%1_message").arg(noLimit));
    }

    void keyAndValueCarryOverToTheNextCheck()
    {
        TVpLookup lookup;
        lookup.setMaxMessages(noLimit);
        check(lookup, ccErrors, "A x\nB y\n");
        check(lookup, ccErrors, "none\n");
        QCOMPARE(TestAccess::key(lookup), QString("B"));
        QCOMPARE(pairsOf(lookup), QStringList("B=y"));
        QCOMPARE(errors, QStringList("1_Separator [ ] does not exist"));
    }

    void eachCheckBeginsAnew()
    {
        TVpLookup lookup;
        lookup.setMaxMessages(noLimit);
        check(lookup, ccErrors, "A x\nBB y\nlast line\n");
        QCOMPARE(TestAccess::lineNumber(lookup), 3);
        QCOMPARE(TestAccess::line(lookup), QString("last line"));
        QCOMPARE(TestAccess::currentSize(lookup), qint64(9));
        errors.clear();
        check(lookup, ccErrors, "DD z");
        QCOMPARE(TestAccess::lineNumber(lookup), 1);
        QCOMPARE(pairsOf(lookup), QStringList("DD=z"));
        QCOMPARE(errors, QStringList()); // this is the length of the first key too
        check(lookup, ccErrors, QString());
        QCOMPARE(TestAccess::lineNumber(lookup), 0);
        QCOMPARE(TestAccess::line(lookup), QString());
        QVERIFY(TestAccess::entries(lookup).empty());
    }

    void sizesAreBytesOfTheFileAndCharactersOfTheLine()
    {
        TVpLookup lookup;
        check(lookup, ccNone, QString::fromUtf8("A \xC3\xA9\n"));
        QCOMPARE(TestAccess::fileSize(lookup), qint64(5));
        QCOMPARE(TestAccess::currentSize(lookup), qint64(3));
        QVERIFY(TestAccess::openLookup(lookup));
        QCOMPARE(TestAccess::currentSize(lookup), qint64(0));
    }

    void missingFileChangesNothing()
    {
        TVpLookup lookup;
        check(lookup, ccBoth, "A x\n");
        lookup.setFfileName("/nowhere/absent.txt");
        QStringList messages;
        std::map<QString, int *> counts;
        QVERIFY(!TestAccess::importAVL(lookup, counts, &messages));
        QCOMPARE(TestAccess::errorText(lookup), QString("Input data file [/nowhere/absent.txt] was not found"));
        QCOMPARE(TestAccess::errorCode(lookup), 1);
        QCOMPARE(pairsOf(lookup), QStringList("A=x"));
        QCOMPARE(TestAccess::line(lookup), QString("A x"));
        QVERIFY(messages.isEmpty() && counts.empty());
        QVERIFY(!TestAccess::openLookup(lookup));
    }

    void placeholderInTheNameOfAMissingFileIsFilledToo()
    {
        TVpLookup lookup;
        lookup.setFfileName("/nowhere%2/absent.txt");
        QVERIFY(!TestAccess::importAVL(lookup, frequencies.map, &errors));
        // There is no second argument.
        QCOMPARE(TestAccess::errorText(lookup), QString("Input data file [/nowhere/absent.txt] was not found"));
    }

    void missingFileIsReportedToAReport()
    {
        ReadReport report;
        TVpLookup lookup;
        lookup.setReadReport(&report);
        lookup.setFfileName("/nowhere/absent.txt");
        lookup.consistencyCheck(ccBoth, frequencies.map, &errors);
        QCOMPARE(report.notes().size(), size_t(1));
        QCOMPARE(report.notes().front().kind, NoteKind::fileNotRead);
        QCOMPARE(report.notes().front().text, QString("/nowhere/absent.txt"));
        lookup.setReadReport(nullptr);
        lookup.consistencyCheck(ccBoth, frequencies.map, &errors);
        QCOMPARE(report.notes().size(), size_t(1));
    }

    void directoryIsNoLookupFile()
    {
        TVpLookup lookup;
        lookup.setFfileName(directory.path());
        std::map<QString, int *> counts;
        QVERIFY(!TestAccess::importAVL(lookup, counts, nullptr));
        QCOMPARE(TestAccess::errorCode(lookup), 1);
    }

    void fileThatWillNotOpenIsEmpty()
    {
        ReadReport report;
        TVpLookup lookup;
        check(lookup, ccBoth, "A x\n");
        lookup.setReadReport(&report);
        QFile::setPermissions(path(), QFileDevice::WriteOwner);
        std::map<QString, int *> counts;
        bool isImported = false;
        asOrdinaryUser([&] { isImported = TestAccess::importAVL(lookup, counts, &errors); });
        QFile::setPermissions(path(), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        QVERIFY(isImported);
        QVERIFY(TestAccess::entries(lookup).empty());
        QVERIFY(errors.isEmpty() && counts.empty());
        QCOMPARE(TestAccess::lineNumber(lookup), 0);
        QCOMPARE(TestAccess::line(lookup), QString());
        QCOMPARE(TestAccess::key(lookup), QString("A")); // unchanged since the check before
        QCOMPARE(TestAccess::value(lookup), QString("x"));
        QCOMPARE(TestAccess::errorCode(lookup), -1);
        QCOMPARE(TestAccess::errorText(lookup), QString());
        QCOMPARE(report.notes().size(), size_t(1));
        QCOMPARE(report.notes().front().kind, NoteKind::fileNotRead);
    }

    void checkEndsWhereTheDiskGivesNoMore()
    {
        constexpr int lines = 200000;
        write(QString("Key value\n").repeated(lines));
        ReadReport report;
        TVpLookup lookup;
        lookup.setReadReport(&report);
        lookup.setFfileName(path());
        lookup.setProgressListener([this](qint64 /*done*/, qint64 /*size*/) { makeReadingFail(); });
        lookup.consistencyCheck(ccErrors, frequencies.map, nullptr);
        QVERIFY(TestAccess::lineNumber(lookup) > 0);
        QVERIFY(TestAccess::lineNumber(lookup) < lines);
        QCOMPARE(pairsOf(lookup), QStringList());
        QVERIFY(lookup.getReadProblem().startsWith("cannot be read: "));
        QCOMPARE(report.count(NoteKind::readFailed), 1);
        QCOMPARE(report.notes().back().kind, NoteKind::readFailed);
        QCOMPARE(report.notes().back().line, TestAccess::lineNumber(lookup) + 1);
    }

    void checkEndsWhereTheFileBecameShorter()
    {
        constexpr int lines = 200000;
        write(QString("Key value\n").repeated(lines));
        ReadReport report;
        TVpLookup lookup;
        lookup.setReadReport(&report);
        lookup.setFfileName(path());
        lookup.setProgressListener([this](qint64 /*done*/, qint64 /*size*/) { QFile::resize(path(), 0); });
        lookup.consistencyCheck(ccErrors, frequencies.map, nullptr);
        QVERIFY(TestAccess::lineNumber(lookup) > 0);
        QVERIFY(TestAccess::lineNumber(lookup) < lines);
        QVERIFY(lookup.getReadProblem().isNull());
        QCOMPARE(report.notes().back().kind, NoteKind::readingEnded);
        QCOMPARE(report.notes().back().line, TestAccess::lineNumber(lookup));
    }

    void readLookupTakesTheWholeFile()
    {
        TVpLookup lookup;
        write("A x\nB y\r\n\nC");
        lookup.setFfileName(path());
        QVERIFY(TestAccess::readLookup(lookup));
        QCOMPARE(TestAccess::line(lookup), QString("A xB yC"));
        QCOMPARE(TestAccess::currentSize(lookup), qint64(7));
        QCOMPARE(TestAccess::lineNumber(lookup), 1);
        TestAccess::setReadFailed(lookup);
        QVERIFY(!TestAccess::readLookup(lookup));
        QCOMPARE(TestAccess::lineNumber(lookup), 1);
        QVERIFY(TestAccess::openLookup(lookup)); // clears the failure
        lookup.setFfileName("/nowhere");
        QVERIFY(TestAccess::readLookup(lookup));
        QCOMPARE(TestAccess::line(lookup), QString());
        writeBytes(QByteArray("\xFF\xFE"
                              "A\0\n\0B\0",
                              8)); // its byte-order mark determines its encoding
        lookup.setFfileName(path());
        QVERIFY(TestAccess::readLookup(lookup));
        QCOMPARE(TestAccess::line(lookup), QString("AB"));
    }

    void textWithoutAMarkIsInTheEncodingOfTheLocale()
    {
        QTextCodec *const before = QTextCodec::codecForLocale();
        const auto restored = qScopeGuard([before] { QTextCodec::setCodecForLocale(before); });
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
        TVpLookup lookup;
        writeBytes("\xE9 x\n");
        lookup.setFfileName(path());
        lookup.consistencyCheck(ccNone, frequencies.map, nullptr);
        QCOMPARE(pairsOf(lookup), QStringList(QString(QChar(0xE9)) + "=x"));
    }

    void lineIsSplitInPlace()
    {
        TVpLookup lookup;
        lookup.setMaxMessages(noLimit);
        TestAccess::setMode(lookup, ccErrors);
        TestAccess::split(lookup, "A x", &errors);
        QCOMPARE(TestAccess::key(lookup), QString("A"));
        QCOMPARE(TestAccess::value(lookup), QString("x"));
        TestAccess::split(lookup, "none", &errors);
        QCOMPARE(TestAccess::key(lookup), QString("A"));
        QCOMPARE(TestAccess::value(lookup), QString("x"));
        QCOMPARE(errors, QStringList("0_Separator [ ] does not exist"));
    }

    void fileNameIsUpdatedWhereTheFileExists()
    {
        write("A x\n");
        TVpLookup lookup;
        lookup.updateFileName(QString());
        QVERIFY(!TestAccess::isAccepted(lookup)); // there is no file name to keep
        lookup.updateFileName("/nowhere/absent.txt");
        QVERIFY(!TestAccess::isAccepted(lookup));
        QCOMPARE(lookup.getFfileName(), QString());
        lookup.updateFileName(path());
        QVERIFY(TestAccess::isAccepted(lookup));
        QCOMPARE(lookup.getFfileName(), path());
        lookup.updateFileName("/nowhere/absent.txt");
        QCOMPARE(lookup.getFfileName(), path());
        QVERIFY(TestAccess::isAccepted(lookup)); // nothing changes

        TVpLookup named;
        named.setFfileName("/nowhere/absent.txt");
        QVERIFY(!TestAccess::isAccepted(named));
        named.updateFileName(QString());
        QVERIFY(TestAccess::isAccepted(named));
        QCOMPARE(named.getFfileName(), QString("/nowhere/absent.txt"));
    }

    void copiesShareTheTextsOfTheEntries()
    {
        TVpLookup lookup;
        lookup.setId("id");
        TestAccess::fill(lookup);
        check(lookup, ccBoth, "A x\nA y\n");
        const TVpLookup copy(lookup);
        TVpLookup assigned;
        assigned = lookup;
        for (const TVpLookup *other : { &copy, const_cast<const TVpLookup *>(&assigned) }) {
            QVERIFY(TestAccess::numbers(*other) == TestAccess::numbers(lookup));
            QCOMPARE(TestAccess::texts(*other), TestAccess::texts(lookup));
            QCOMPARE(pairsOf(*other), pairsOf(lookup));
            QVERIFY(TestAccess::entries(*other).at("A").constData() == TestAccess::entries(lookup).at("A").constData());
        }
        check(assigned, ccBoth, "B z\n");
        QCOMPARE(pairsOf(lookup), QStringList("A=x"));
    }

    void moveTakesNothing()
    {
        TVpLookup lookup;
        TestAccess::fill(lookup);
        check(lookup, ccBoth, "A x\n");
        const QStringList texts = TestAccess::texts(lookup);
        const TVpLookup moved(std::move(lookup));
        QCOMPARE(TestAccess::texts(moved).join(QString()), QString());
        QVERIFY(TestAccess::numbers(moved) == LookupNumbers());
        QVERIFY(TestAccess::entries(moved).empty());
        QCOMPARE(TestAccess::texts(lookup), texts); // NOLINT(bugprone-use-after-move): it keeps all
    }

    void operationsTakeWhatTheyTake()
    {
        QVERIFY((std::is_same<decltype(&TVpLookup::setId), void (TVpLookup::*)(const QString &)>::value));
        QVERIFY((std::is_same<decltype(&TVpLookup::updateFileName), void (TVpLookup::*)(QString)>::value));
        QVERIFY(
            (std::is_same<decltype(&TVpLookup::consistencyCheck),
                          void (TVpLookup::*)(econsistencyCheck, std::map<QString, int *> &, QStringList *)>::value));
        QVERIFY(TestAccess::openOperation && TestAccess::readOperation && TestAccess::importOperation
                && TestAccess::splitOperation && TestAccess::issueOperation);
    }

    void destructorIsVirtual() { QVERIFY(std::has_virtual_destructor<TVpLookup>::value); }

#ifdef SUPPORT_HAS_VIRTUALSLOT
    void destructorIsTheOnlyVirtualOperation()
    {
        constexpr std::ptrdiff_t slotsOfTheDestructor = 2;
        QCOMPARE(virtualSlot(&DerivedLookup::next), slotsOfTheDestructor);
    }
#endif

    void messageOfTheLimitReplacesTheOneBeyondIt_data()
    {
        QTest::addColumn<int>("limit");
        QTest::addColumn<int>("replaced");
        QTest::newRow("none allowed") << 0 << 0;
        QTest::newRow("below none") << -5 << 0;
        QTest::newRow("one") << 1 << 1;
        QTest::newRow("in the middle of a line's messages") << 2 << 2;
        QTest::newRow("the last") << 4 << 4;
        QTest::newRow("as many as there are") << 5 << -1;
        QTest::newRow("the largest") << noLimit << -1;
    }
    void messageOfTheLimitReplacesTheOneBeyondIt()
    {
        QFETCH(int, limit);
        QFETCH(int, replaced);
        TVpLookup lookup;
        lookup.setMaxMessages(limit);
        check(lookup, ccErrors, "AA x\nB y\nnone\nAA z\n");
        QStringList expected
            = { "2_Key [B] has a different key size [1] from the first record [2]", "3_Separator [ ] does not exist",
                "3_Key [B] has a different key size [1] from the first record [2]", "3_Key [B] already exists",
                "4_Key [AA] already exists" };
        if (replaced >= 0)
            expected[replaced] = expected.at(replaced).left(2)
                + QString("Too many error messages [%1], only the first [%2] will be shown")
                      .arg(QChar(ushort(replaced + 1)))
                      .arg(QChar(ushort(limit)));
        QCOMPARE(errors, expected);
        QCOMPARE(TestAccess::errorCount(lookup), 5);
    }

    void placeholderInAKeyIsFilledToo()
    {
        TVpLookup lookup;
        lookup.setMaxMessages(noLimit);
        check(lookup, ccErrors, "A x\n%2%3 y\n%2%3 z\n");
        QCOMPARE(errors,
                 (QStringList{ "2_Key [41] has a different key size [4] from the first record [1]",
                               "3_Key [41] has a different key size [4] from the first record [1]",
                               "3_Key [] already exists" })); // there is no second argument
        QCOMPARE(pairsOf(lookup), (QStringList{ "%2%3=y", "A=x" }));
    }

    void keyMayBeOfSurrogates()
    {
        TVpLookup lookup;
        lookup.setMaxMessages(noLimit);
        // A key's length is that of its UTF-16 units.
        check(lookup, ccErrors, QString::fromUtf8("\xF0\x9F\x98\x80 x\nAA y\nA z\n"));
        QCOMPARE(errors, QStringList("3_Key [A] has a different key size [1] from the first record [2]"));
    }

    void ordinaryCheckSucceeds()
    {
        TVpLookup lookup;
        write("A x\n");
        lookup.setFfileName(path());
        QVERIFY(TestAccess::importAVL(lookup, frequencies.map, &errors));
        QCOMPARE(TestAccess::errorCode(lookup), -1);
        QCOMPARE(TestAccess::errorText(lookup), QString());
    }

    void failureIsRememberedAndTheMode()
    {
        TVpLookup lookup;
        lookup.setFfileName("/nowhere");
        lookup.consistencyCheck(ccBoth, frequencies.map, &errors);
        QCOMPARE(TestAccess::numbers(lookup).consistency, ccBoth);
        QVERIFY(errors.isEmpty() && frequencies.map.empty()); // the caller sees nothing else
        // Nothing resets it.
        check(lookup, ccErrors, "A x\n");
        QCOMPARE(TestAccess::errorCode(lookup), 1);
        QCOMPARE(TestAccess::errorText(lookup), QString("Input data file [/nowhere] was not found"));
    }

    void failureToOpenLeavesSizes()
    {
        TVpLookup lookup;
        check(lookup, ccNone, "A x\nBB y\n");
        TestAccess::setReadFailed(lookup);
        lookup.setFfileName("/nowhere");
        QVERIFY(!TestAccess::openLookup(lookup));
        QCOMPARE(TestAccess::fileSize(lookup), qint64(9));
        QCOMPARE(TestAccess::currentSize(lookup), qint64(4));
        QVERIFY(TestAccess::numbers(lookup).readFailed);
    }

    void keyAndValueOutlastAFileThatIsMissing()
    {
        TVpLookup lookup;
        lookup.setMaxMessages(noLimit);
        check(lookup, ccErrors, "A x\n");
        lookup.setFfileName("/nowhere");
        lookup.consistencyCheck(ccErrors, frequencies.map, &errors);
        QCOMPARE(TestAccess::key(lookup), QString("A"));
        QCOMPARE(TestAccess::value(lookup), QString("x"));
        check(lookup, ccFrequencies, "none\nB y\n"); // in every mode
        QCOMPARE(pairsOf(lookup), (QStringList{ "A=x", "B=y" }));
        QCOMPARE(frequencies.texts(), (QStringList{ "x=1", "y=1" }));
    }

    void frequenciesRunOnFromCheckToCheck()
    {
        TVpLookup lookup;
        check(lookup, ccFrequencies, "A x\nB y\n");
        int *const former = frequencies.map.at("x");
        // "y" is a value of the first check and now a key; "x" is one again.
        check(lookup, ccFrequencies, "C x\ny z\n");
        QCOMPARE(frequencies.texts(), (QStringList{ "x=1", "y=1" }));
        QVERIFY(frequencies.map.at("x") != former);
        delete former;
    }

    void checkLeavesWhatItOnlyCarries()
    {
        TVpLookup lookup;
        lookup.setId("id");
        lookup.setLabel("label");
        TestAccess::fill(lookup);
        check(lookup, ccBoth, "AA x\nB y\n");
        const QStringList texts = TestAccess::texts(lookup);
        QCOMPARE(texts.mid(0, 5), (QStringList{ "id", "label", "error", "one", "two" }));
        QCOMPARE(TestAccess::numbers(lookup).carriedFlag, false);
        QCOMPARE(TestAccess::numbers(lookup).keySize, 7); // nothing maintains it
    }

    void directoryIsNoNewFileName()
    {
        TVpLookup lookup;
        lookup.updateFileName(directory.path());
        QVERIFY(!TestAccess::isAccepted(lookup));
        QCOMPARE(lookup.getFfileName(), QString());
    }

    void copiesReportProgressToTheSameListener()
    {
        int heard = 0;
        TVpLookup lookup;
        lookup.setProgressListener([&](qint64 /*done*/, qint64 /*size*/) { ++heard; });
        TVpLookup copy(lookup);
        const QString text = QString("K v\n").repeated(10000);
        check(copy, ccNone, text);
        QCOMPARE(heard, 1);
        copy.setProgressListener(nullptr);
        check(copy, ccNone, text);
        QCOMPARE(heard, 1);
        check(lookup, ccNone, text);
        QCOMPARE(heard, 2);
    }

    void progressGrowsUpToTheSizeOfTheFile()
    {
        QVector<qint64> heard;
        QVector<qint64> sizes;
        TVpLookup lookup;
        lookup.setProgressListener([&](qint64 done, qint64 size) {
            heard.append(done);
            sizes.append(size);
        });
        const QString text = QString("Key value\n").repeated(50000);
        check(lookup, ccNone, text);
        QVERIFY(heard.size() > 3);
        QVERIFY(heard.first() > 0);
        QVERIFY(heard.last() <= text.size());
        QVERIFY(std::adjacent_find(heard.begin(), heard.end(), std::greater_equal<>()) == heard.end());
        QCOMPARE(sizes, QVector<qint64>(heard.size(), text.size()));
    }

    void textIsDecodedByItsMark_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QString text = QString::fromUtf8("\xC3\xA9\xE6\x97\xA5 x\n");
        const auto encoded = [&](const char *name, bool hasMark) {
            QTextEncoder encoder(QTextCodec::codecForName(name),
                                 hasMark ? QTextCodec::DefaultConversion : QTextCodec::IgnoreHeader);
            return encoder.fromUnicode(text);
        };
        QTest::newRow("UTF-8") << text.toUtf8();
        QTest::newRow("UTF-8 with mark") << "\xEF\xBB\xBF" + text.toUtf8();
        QTest::newRow("UTF-16LE with mark") << "\xFF\xFE" + encoded("UTF-16LE", false);
        QTest::newRow("UTF-16BE with mark") << "\xFE\xFF" + encoded("UTF-16BE", false);
    }
    void textIsDecodedByItsMark()
    {
        QFETCH(QByteArray, bytes);
        TVpLookup lookup;
        writeBytes(bytes);
        lookup.setFfileName(path());
        lookup.consistencyCheck(ccNone, frequencies.map, nullptr);
        QCOMPARE(pairsOf(lookup), QStringList(QString::fromUtf8("\xC3\xA9\xE6\x97\xA5=x")));
    }

    void oddBytesDoNoHarm_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("lines");
        QTest::newRow("empty") << QByteArray() << 0;
        QTest::newRow("invalid UTF-8") << QByteArray("\xC3\x28 x\n\xFF\xFE\xFD y\n") << 2;
        QTest::newRow("NUL") << QByteArray("A\0B x\nC \0\n", 10) << 2;
        QTest::newRow("CR LF") << QByteArray("A x\r\nB y\r\n") << 2;
        QTest::newRow("lone CR ends no line") << QByteArray("A x\rB y\r") << 1;
        QTest::newRow("line feeds only") << QByteArray(1000, '\n') << 1000;
        QTest::newRow("no end") << QByteArray("A x") << 1;
    }
    void oddBytesDoNoHarm()
    {
        QFETCH(QByteArray, bytes);
        TVpLookup lookup;
        writeBytes(bytes);
        lookup.setFfileName(path());
        lookup.consistencyCheck(ccBoth, frequencies.map, &errors);
        QTEST(TestAccess::lineNumber(lookup), "lines");
    }

    void lineOfAHundredMegabytesIsRead()
    {
        TVpLookup lookup;
        constexpr int size = 100 << 20;
        writeBytes("A " + QByteArray(size, 'x'));
        lookup.setFfileName(path());
        lookup.consistencyCheck(ccErrors, frequencies.map, &errors);
        QCOMPARE(TestAccess::entries(lookup).at("A").size(), size);
    }

    void identicalLinesTakeOneEntry()
    {
        TVpLookup lookup;
        constexpr int lines = 1000000;
        writeBytes(QByteArray("KEY value\n").repeated(lines));
        lookup.setFfileName(path());
        lookup.consistencyCheck(ccFrequencies, frequencies.map, &errors);
        QCOMPARE(TestAccess::lineNumber(lookup), lines);
        QCOMPARE(pairsOf(lookup), QStringList("KEY=value"));
        QCOMPARE(frequencies.texts(), QStringList("value=1"));
    }

    void listenerReceivesTheProgress()
    {
        QVector<qint64> heard;
        TVpLookup lookup;
        lookup.setProgressListener([&](qint64 done, qint64 size) {
            QVERIFY(heard.isEmpty() || heard.last() <= done);
            QVERIFY(done <= size);
            heard.append(done);
        });
        check(lookup, ccNone, QString("K v\n").repeated(100));
        QVERIFY(heard.isEmpty()); // not for a short file
        check(lookup, ccNone, QString("K v\n").repeated(100000));
        QVERIFY(heard.size() > 5);
    }

    void entriesAreInTheOrderOfTheirKeys_data()
    {
        QTest::addColumn<QStringList>("keys");
        QStringList numbers;
        for (int i = 0; i < 5000; ++i)
            numbers.append(QString::number(100000 + i));
        QTest::newRow("ascending") << numbers;
        std::shuffle(numbers.begin(), numbers.end(), std::mt19937(3)); // NOLINT: the same order every time
        QTest::newRow("shuffled") << numbers;
        QTest::newRow("ascending, and one again") << (QStringList{ "1", "2", "2", "1", "3", "0", "3" });
        QStringList longKeys;
        for (const QString &number : qAsConst(numbers))
            longKeys.append("a long common head " + number);
        QTest::newRow("the same head") << longKeys;
        QTest::newRow("prefixes") << (QStringList{ "abcdefghi", "abcdefgh", "abcdefg", "abcdefghij", "", "a" });
        QTest::newRow("every script") << (QStringList{
            QString(QChar(0xD800)) + QChar(0xDC00), QString(QChar(0xFFFD)), QString(QChar(0xE9)), "z",
            QString(QChar(ushort(0))), QString("a") + QChar(ushort(0)), "a", QString(QChar(0x65E5)).repeated(9),
            QString(QChar(0x65E5)).repeated(8) });
    }
    void entriesAreInTheOrderOfTheirKeys()
    {
        QFETCH(QStringList, keys);
        lookup::Entries entries;
        std::map<QString, QString> expected;
        for (int i = 0; i < keys.size(); ++i) {
            const QString &key = keys.at(i);
            const bool isNew = expected.emplace(key, QString::number(i)).second;
            QCOMPARE(entries.add(key, QString::number(i)), isNew);
        }
        std::map<QString, QString> map;
        entries.moveTo(map);
        QVERIFY(map == expected);
        QVERIFY(std::equal(map.begin(), map.end(), expected.begin()));
    }

    void textsOfOneHashAreDistinguished()
    {
        lookup::TextIndex index;
        const auto is = [](int wanted) { return [wanted](int number) { return number == wanted; }; };
        QCOMPARE(index.find(1, is(0)), -1);
        for (int number = 0; number < 5000; ++number) // the index grows during the loop
            index.add(number % 2 ? 1 : quint32(number), number);
        for (const int number : { 0, 1, 2, 3, 4999 })
            QCOMPARE(index.find(number % 2 ? 1 : quint32(number), is(number)), number);
        QCOMPARE(index.find(1, is(2)), -1); // the number has another hash
        QCOMPARE(index.find(7, is(7)), -1);
    }

    void cleanup()
    {
        errors.clear();
        for (const auto &entry : frequencies.map)
            delete entry.second;
        frequencies.map.clear();
    }

private:
    QString path() const
    {
        return directory.filePath("lookup.txt");
    }
    void writeBytes(const QByteArray &bytes) const
    {
        QFile file(path());
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("%s cannot be written", qPrintable(path()));
    }
    // Replaces the descriptor of the open file with one that cannot be read. The size of the file stays the same.
    void makeReadingFail() const
    {
        const int unreadable = open(QFile::encodeName(path()).constData(), O_WRONLY | O_CLOEXEC);
        for (const QString &number : QDir("/proc/self/fd").entryList(QDir::Files | QDir::System)) {
            const int descriptor = number.toInt();
            if (descriptor != unreadable && QFile::symLinkTarget("/proc/self/fd/" + number) == path())
                QCOMPARE(dup2(unreadable, descriptor), descriptor);
        }
        close(unreadable);
    }
    void write(const QString &text) const
    {
        writeBytes(text.toUtf8());
    }
    void check(TVpLookup &lookup, econsistencyCheck mode, const QString &text)
    {
        write(text);
        lookup.setFfileName(path());
        lookup.consistencyCheck(mode, frequencies.map, &errors);
    }

    QTemporaryDir directory;
    QStringList errors;
    Frequencies frequencies;
};

QTEST_APPLESS_MAIN(LookupTest)
#include "LookupTest.moc"
