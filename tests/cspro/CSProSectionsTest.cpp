#include "cspro/CSPro_p.h"
#include "import/ReadReport.h"
#include "support/DebugCapture.h"
#include "support/OwnedDictionary.h"
#include "support/Thrown.h"

#include <QTest>

#include <limits>
#include <stdexcept>

struct TestAccess {
    static int sectionKind(TCSPro &reader, const QString &line) { return reader.sectionKind(line); }
    static QStringList sectionLines(const TCSPro &reader, const QStringList &lines, int &index)
    {
        QStringList section;
        for (const QStringView line : reader.sectionLines(lines, index))
            section.append(line.toString());
        return section;
    }
    static QString getStringValue(const TCSPro &reader, const QStringList &lines, const QString &key)
    {
        return reader.getStringValue(lines, key);
    }
    static int getIntValue(const TCSPro &reader, const QStringList &lines, const QString &key, int defaultValue)
    {
        return reader.getIntValue(lines, key, defaultValue);
    }
    static void readDictionary(TCSPro &reader, const QStringList &lines, int &index)
    {
        reader.readDictionary(lines, index);
    }
    static void readRecord(TCSPro &reader, const QStringList &lines, int &index) { reader.readRecord(lines, index); }
    static void readItem(TCSPro &reader, const QStringList &lines, int &index) { reader.readItem(lines, index); }
    static void readValueSet(TCSPro &reader, const QStringList &lines, int &index)
    {
        reader.readValueSet(lines, index);
    }
};

namespace
{

class Wordless : public std::exception
{
public:
    explicit Wordless(const char *text)
        : words(text)
    {
    }
    const char *what() const noexcept override { return words; }

private:
    const char *words;
};

} // namespace

class CSProSectionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void headerHasTheKindOfItsUpperCasedWord_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("kind");

        // clang-format off
        QTest::newRow("dictionary")                          << "[Dictionary]"           << 1;
        QTest::newRow("record")                              << "[Record]"               << 2;
        QTest::newRow("item")                                << "[Item]"                 << 3;
        QTest::newRow("value set")                           << "[ValueSet]"             << 4;
        QTest::newRow("level")                               << "[Level]"                << 0;
        QTest::newRow("id items")                            << "[IdItems]"              << 0;
        QTest::newRow("relation")                            << "[Relation]"             << 0;
        QTest::newRow("upper case")                          << "[DICTIONARY]"           << 1;
        QTest::newRow("lower case")                          << "[record]"               << 2;
        QTest::newRow("mixed case")                          << "[iTeM]"                 << 3;
        QTest::newRow("mixed case of two words")             << "[vALUEsET]"             << 4;
        QTest::newRow("long s turns to S")                   << QStringLiteral("[Value\u017Fet]") << 4;
        QTest::newRow("text after the bracket")              << "[Item] and more"        << 3;
        QTest::newRow("second bracket after the first")      << "[Item]]"                << 3;
        QTest::newRow("two headers in a line")               << "[Record][Item]"         << 2;
        QTest::newRow("no closing bracket: all of the rest") << "[Item"                  << 3;
        QTest::newRow("no closing bracket and more")         << "[Item x"                << 0;
        QTest::newRow("some word, no closing bracket")       << "[word"                  << 0;
        QTest::newRow("nothing between the brackets")        << "[]"                     << 0;
        QTest::newRow("empty word, then a word")             << "[]Item]"                << 0;
        QTest::newRow("blanks in the brackets stay")         << "[ Item ]"               << 0;
        QTest::newRow("blank before the closing bracket")    << "[Item ]"                << 0;
        QTest::newRow("longer word")                         << "[Items]"                << 0;
        QTest::newRow("shorter word")                        << "[Ite]"                  << 0;
        QTest::newRow("two opening brackets")                << "[[Item]"                << 0;
        // clang-format on
    }

    void headerHasTheKindOfItsUpperCasedWord()
    {
        QFETCH(QString, line);
        QFETCH(int, kind);
        OwnedDictionary dictionary;
        QCOMPARE(TestAccess::sectionKind(dictionary, line), kind);
    }

    void onlyAnUnknownHeaderReturnsToTheCommonRecord_data() { headerHasTheKindOfItsUpperCasedWord_data(); }

    void onlyAnUnknownHeaderReturnsToTheCommonRecord()
    {
        QFETCH(QString, line);
        QFETCH(int, kind);
        OwnedDictionary dictionary({ "[Record]", "Name=R" });
        TCSProRecord *record = dictionary.getRecord(0);
        QCOMPARE(dictionary.currentRecord, record);
        TestAccess::sectionKind(dictionary, line);
        QCOMPARE(dictionary.currentRecord, kind == 0 ? dictionary.commonRecord : record);
    }

    void sectionRunsToTheNextUntrimmedHeader_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<int>("index");
        QTest::addColumn<QStringList>("section");
        QTest::addColumn<int>("last");

        // clang-format off
        QTest::newRow("stops before the next header")
            << QStringList{"[A]", "x=1", "y=2", "[B]", "z=3"} << 0 << QStringList{"x=1", "y=2"} << 2;
        QTest::newRow("runs to the end of the lines")
            << QStringList{"[A]", "x=1", "y=2"} << 0 << QStringList{"x=1", "y=2"} << 2;
        QTest::newRow("starts at the index")
            << QStringList{"[A]", "x=1", "[B]", "y=2", "[C]"} << 2 << QStringList{"y=2"} << 3;
        QTest::newRow("header in the last line")
            << QStringList{"[A]", "x=1", "[B]"} << 2 << QStringList{} << 2;
        QTest::newRow("header after header")
            << QStringList{"[A]", "[B]", "x=1"} << 0 << QStringList{} << 0;
        QTest::newRow("empty lines are dropped but counted")
            << QStringList{"[A]", "", "x=1", "  ", "\t", "y=2", ""} << 0 << QStringList{"x=1", "y=2"} << 6;
        QTest::newRow("empty lines before a header")
            << QStringList{"[A]", "x=1", "", "", "[B]"} << 0 << QStringList{"x=1"} << 3;
        QTest::newRow("nothing but empty lines")
            << QStringList{"[A]", "", " ", "[B]"} << 0 << QStringList{} << 2;
        QTest::newRow("lines are trimmed")
            << QStringList{"[A]", "  x = 1  ", "\ty=2\t"} << 0 << QStringList{"x = 1", "y=2"} << 2;
        QTest::newRow("header after a blank is swallowed")
            << QStringList{"[A]", "x=1", " [B]", "y=2", "[C]"} << 0 << QStringList{"x=1", "[B]", "y=2"} << 3;
        QTest::newRow("header after a tab is swallowed")
            << QStringList{"[A]", "\t[B]", "y=2"} << 0 << QStringList{"[B]", "y=2"} << 2;
        QTest::newRow("a lone bracket ends the section")
            << QStringList{"[A]", "x=1", "[", "y=2"} << 0 << QStringList{"x=1"} << 1;
        QTest::newRow("a bracket and a word end the section")
            << QStringList{"[A]", "x=1", "[word", "y=2"} << 0 << QStringList{"x=1"} << 1;
        QTest::newRow("a bracket further on ends nothing")
            << QStringList{"[A]", "x=[1]", "y"} << 0 << QStringList{"x=[1]", "y"} << 2;
        // clang-format on
    }

    void sectionRunsToTheNextUntrimmedHeader()
    {
        QFETCH(QStringList, lines);
        QFETCH(int, index);
        QFETCH(QStringList, section);
        QFETCH(int, last);
        const OwnedDictionary dictionary;
        QCOMPARE(TestAccess::sectionLines(dictionary, lines, index), section);
        QCOMPARE(index, last);
    }

    void textIsAfterTheOneEqualsSignOfTheFirstLineWithTheKey_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QString>("value");

        // clang-format off
        QTest::newRow("found")                                << QStringList{"Key=x"}                 << "x";
        QTest::newRow("among others")                         << QStringList{"A=1", "Key=x", "B=2"}   << "x";
        QTest::newRow("no lines")                             << QStringList{}                        << "";
        QTest::newRow("no such line")                         << QStringList{"A=1", "B=2"}            << "";
        QTest::newRow("first line wins")                      << QStringList{"Key=x", "Key=y"}        << "x";
        QTest::newRow("key within a longer word")             << QStringList{"MyKeys=x", "Key=y"}     << "x";
        QTest::newRow("key within a value")                   << QStringList{"A=The Key", "Key=y"}    << "The Key";
        QTest::newRow("key is case-sensitive")                << QStringList{"key=x", "KEY=y"}        << "";
        QTest::newRow("line of another case is skipped")      << QStringList{"KEY=x", "Key=y"}        << "y";
        QTest::newRow("value is not trimmed")                 << QStringList{"Key= x y"}              << " x y";
        QTest::newRow("blank before the equals sign")         << QStringList{"Key =x"}                << "x";
        QTest::newRow("nothing after the equals sign")        << QStringList{"Key="}                  << "";
        QTest::newRow("no equals sign")                       << QStringList{"Key"}                   << "";
        QTest::newRow("no equals sign hides later lines")     << QStringList{"Key", "Key=x"}          << "";
        QTest::newRow("second equals sign spoils the line")   << QStringList{"Key=a=b"}               << "";
        QTest::newRow("second equals sign at the end")        << QStringList{"Key=a="}                << "";
        QTest::newRow("two equals signs together")            << QStringList{"Key==a"}                << "";
        QTest::newRow("spoiled line hides later lines")       << QStringList{"Key=a=b", "Key=x"}      << "";
        QTest::newRow("equals sign before the key")           << QStringList{"=Key"}                  << "Key";
        // clang-format on
    }

    void textIsAfterTheOneEqualsSignOfTheFirstLineWithTheKey()
    {
        QFETCH(QStringList, lines);
        QFETCH(QString, value);
        const OwnedDictionary dictionary;
        const DebugCapture log;
        QCOMPARE(TestAccess::getStringValue(dictionary, lines, QStringLiteral("Key")), value);
        QCOMPARE(log.taken(), QStringList());
    }

    void numberIsTheDefaultWhereTheLineOrTheConversionFails_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<int>("value");

        constexpr int byDefault = 77;
        // clang-format off
        QTest::newRow("number")                               << QStringList{"Key=5"}                 << 5;
        QTest::newRow("zero")                                 << QStringList{"Key=0"}                 << 0;
        QTest::newRow("negative")                             << QStringList{"Key=-5"}                << -5;
        QTest::newRow("plus sign")                            << QStringList{"Key=+5"}                << 5;
        QTest::newRow("blanks around the number")             << QStringList{"Key= 5 "}               << 5;
        QTest::newRow("base 10 with a leading zero")          << QStringList{"Key=010"}               << 10;
        QTest::newRow("largest int")                          << QStringList{"Key=2147483647"}        << std::numeric_limits<int>::max();
        QTest::newRow("smallest int")                         << QStringList{"Key=-2147483648"}       << std::numeric_limits<int>::min();
        QTest::newRow("above the largest int")                << QStringList{"Key=2147483648"}        << byDefault;
        QTest::newRow("below the smallest int")               << QStringList{"Key=-2147483649"}       << byDefault;
        QTest::newRow("many digits")                          << QStringList{"Key=99999999999999999999"} << byDefault;
        QTest::newRow("many leading zeros")                   << QStringList{"Key=00000000000000000007"} << 7;
        QTest::newRow("word")                                 << QStringList{"Key=abc"}               << byDefault;
        QTest::newRow("number and word")                      << QStringList{"Key=5x"}                << byDefault;
        QTest::newRow("two numbers")                          << QStringList{"Key=5 6"}               << byDefault;
        QTest::newRow("decimal")                              << QStringList{"Key=5.0"}               << byDefault;
        QTest::newRow("hexadecimal")                          << QStringList{"Key=0x10"}              << byDefault;
        QTest::newRow("group separator")                      << QStringList{"Key=1,000"}             << byDefault;
        QTest::newRow("nothing after the equals sign")        << QStringList{"Key="}                  << byDefault;
        QTest::newRow("no equals sign")                       << QStringList{"Key"}                   << byDefault;
        QTest::newRow("no equals sign hides later lines")     << QStringList{"Key", "Key=5"}          << byDefault;
        QTest::newRow("second equals sign")                   << QStringList{"Key=5=5"}               << byDefault;
        QTest::newRow("no lines")                             << QStringList{}                        << byDefault;
        QTest::newRow("no such line")                         << QStringList{"A=5"}                   << byDefault;
        QTest::newRow("key is case-sensitive")                << QStringList{"key=5"}                 << byDefault;
        QTest::newRow("first line wins")                      << QStringList{"Key=5", "Key=6"}        << 5;
        QTest::newRow("line that merely contains the key")    << QStringList{"A=My Key", "Key=6"}     << byDefault;
        QTest::newRow("key within a longer word")             << QStringList{"MyKeys=4", "Key=6"}     << 4;
        // clang-format on
    }

    void numberIsTheDefaultWhereTheLineOrTheConversionFails()
    {
        QFETCH(QStringList, lines);
        QFETCH(int, value);
        const OwnedDictionary dictionary;
        const DebugCapture log;
        QCOMPARE(TestAccess::getIntValue(dictionary, lines, QStringLiteral("Key"), 77), value);
        QCOMPARE(log.taken(), QStringList());
    }

    void emptyKeyIsFoundInTheFirstLine()
    {
        const OwnedDictionary dictionary;
        QCOMPARE(TestAccess::getStringValue(dictionary, { "A=1", "B=2" }, QString()), QString("1"));
        QCOMPARE(TestAccess::getStringValue(dictionary, {}, QString()), QString());
    }

    void recordTypeThatLosesMoreThanQuotesIsReported_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("type");
        QTest::addColumn<bool>("isReported");
        QTest::newRow("quotes") << "'1'"
                                << "1" << false;
        QTest::newRow("double quotes") << "\"1\""
                                       << "1" << false;
        QTest::newRow("quotes only") << "''"
                                     << "" << false;
        QTest::newRow("nothing") << ""
                                 << "" << false;
        QTest::newRow("one character") << "1"
                                       << "" << true;
        QTest::newRow("one quote") << "'"
                                   << "" << true;
        QTest::newRow("no quotes") << "123"
                                   << "2" << true;
        QTest::newRow("no quote after") << "'12"
                                        << "1" << true;
        QTest::newRow("no quote at the beginning") << "12'"
                                                   << "2" << true;
        QTest::newRow("different quotes") << "'1\""
                                          << "1" << true;
    }
    void recordTypeThatLosesMoreThanQuotesIsReported()
    {
        QFETCH(QString, value);
        QFETCH(bool, isReported);
        ReadReport report;
        OwnedDictionary dictionary;
        dictionary.setReport(&report);
        dictionary.read({ "[Record]", "Name=R", "RecordTypeValue=" + value });
        QTEST(dictionary.getRecord(0)->recordType, "type");
        QCOMPARE(report.count(NoteKind::recordTypeCut), isReported ? 1 : 0);
        if (isReported)
            QCOMPARE(report.notes().front().text, value);
    }

    void exceptionIsLoggedInItsOwnWords()
    {
        const DebugCapture log;
        cspro::logException(std::runtime_error("words of it"));
        QCOMPARE(log.taken(), QStringList("words of it"));
    }

    void exceptionWithoutWordsIsLoggedAsUnknown()
    {
        const DebugCapture log;
        cspro::logException(Wordless(""));
        cspro::logException(Wordless(nullptr));
        QCOMPARE(log.taken(), QStringList({ "Unknown exception", "Unknown exception" }));
    }

    void standardExceptionIsLoggedAndPassedOver()
    {
        const DebugCapture log;
        int reached = 0;
        cspro::ignoreExceptions([&] {
            reached = 1;
            throw std::out_of_range("gone");
        });
        QCOMPARE(reached, 1);
        QCOMPARE(log.taken(), QStringList("gone"));
    }

    void workWithoutAnExceptionLogsNothing()
    {
        const DebugCapture log;
        int reached = 0;
        cspro::ignoreExceptions([&] { reached = 1; });
        QCOMPARE(reached, 1);
        QCOMPARE(log.taken(), QStringList());
    }

    void otherExceptionsAreNotIgnored()
    {
        bool caught = false;
        try {
            cspro::ignoreExceptions([] { throw 7; });
        } catch (int number) {
            caught = number == 7;
        }
        QVERIFY(caught);
    }

    void nameIsFoundInALabelWithTheWordNameAboveIt()
    {
        const OwnedDictionary dictionary({ "[Item]", "Label=Name of the head", "Name=HEAD" });
        QCOMPARE(dictionary.getItem(0)->name, QString("Name of the head"));
        QCOMPARE(dictionary.getItem(0)->label, QString("Name of the head"));
    }

    void nameAboveTheLabelIsTheName()
    {
        const OwnedDictionary dictionary({ "[Item]", "Name=HEAD", "Label=Name of the head" });
        QCOMPARE(dictionary.getItem(0)->name, QString("HEAD"));
    }

    void lengthIsZeroAfterALabelThatContainsLen()
    {
        const OwnedDictionary dictionary({ "[Item]", "Label=Length of stay", "Len=3" });
        QCOMPARE(dictionary.getItem(0)->length, 0);
        const OwnedDictionary other({ "[Item]", "Len=3", "Label=Length of stay" });
        QCOMPARE(other.getItem(0)->length, 3);
    }

    void decimalFindsTheLineOfDecimalCharAboveIt()
    {
        const OwnedDictionary dictionary({ "[Item]", "DecimalChar=Yes", "Decimal=2" });
        QCOMPARE(dictionary.getItem(0)->decimals, 0);
        QCOMPARE(dictionary.getItem(0)->decimalChar, true);
        const OwnedDictionary other({ "[Item]", "Decimal=2", "DecimalChar=Yes" });
        QCOMPARE(other.getItem(0)->decimals, 2);
        QCOMPARE(other.getItem(0)->decimalChar, true);
    }

    void decimalIsTheDefaultIfThereIsOnlyDecimalChar()
    {
        const OwnedDictionary dictionary({ "[Item]", "DecimalChar=No" });
        QCOMPARE(dictionary.getItem(0)->decimals, 0);
        QCOMPARE(dictionary.getItem(0)->decimalChar, false);
    }

    void labelWithAnEqualsSignIsEmpty()
    {
        const OwnedDictionary dictionary(
            { "[Dictionary]", "Label=a=b", "[Record]", "Label=a=b", "[Item]", "Label=Sex (1=male)" });
        QCOMPARE(dictionary.label, QString());
        QCOMPARE(dictionary.getRecord(0)->label, QString());
        QCOMPARE(dictionary.getItem(0)->label, QString());
    }

    void swallowedHeaderLineIsSearchedForKeysToo()
    {
        const OwnedDictionary dictionary({ "[Item]", " [Name]", "Name=A" });
        QCOMPARE(dictionary.getItem(0)->name, QString());
    }

    void dictionarySectionFillsTheSettings()
    {
        OwnedDictionary dictionary({ "[Dictionary]", "Version=CSPro 7.0", "Label=Census of 2020", "Name=CENSUS",
                                     "RecordTypeStart=3", "RecordTypeLen=2", "Positions=Relative", "ZeroFill=Yes",
                                     "DecimalChar=No" });
        QCOMPARE(dictionary.version, QString("CSPro 7.0"));
        QCOMPARE(dictionary.label, QString("Census of 2020"));
        QCOMPARE(dictionary.name, QString("CENSUS"));
        QCOMPARE(dictionary.recordTypeStart, 3);
        QCOMPARE(dictionary.recordTypeLen, 2);
        QCOMPARE(dictionary.positions, QString("Relative"));
        QCOMPARE(dictionary.zeroFill, QString("Yes"));
        QCOMPARE(dictionary.decimalChar, QString("No"));
        QCOMPARE(dictionary.getItemsCount(), 0);
        QCOMPARE(dictionary.getRecordsCount(), 0);
    }

    void versionIsFoundInALabelWithTheWordAboveIt()
    {
        const OwnedDictionary dictionary({ "[Dictionary]", "Label=Version two", "Version=CSPro 7.0" });
        QCOMPARE(dictionary.version, QString("Version two"));
    }

    void recordTypeSettingsTakeTheirDefaultOneByOne_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("start");
        QTest::addColumn<int>("length");
        QTest::newRow("none") << "" << 1 << 1;
        QTest::newRow("start only") << "RecordTypeStart=4" << 4 << 1;
        QTest::newRow("length only") << "RecordTypeLen=4" << 1 << 4;
        QTest::newRow("length of zero") << "RecordTypeLen=0" << 1 << 0;
        QTest::newRow("start is no number") << "RecordTypeStart=x" << 1 << 1;
        QTest::newRow("length is no number") << "RecordTypeLen=" << 1 << 1;
        QTest::newRow("negative") << "RecordTypeStart=-1" << -1 << 1;
    }

    void recordTypeSettingsTakeTheirDefaultOneByOne()
    {
        QFETCH(QString, line);
        QFETCH(int, start);
        QFETCH(int, length);
        const OwnedDictionary dictionary({ "[Dictionary]", line });
        QCOMPARE(dictionary.recordTypeStart, start);
        QCOMPARE(dictionary.recordTypeLen, length);
    }

    void laterDictionarySectionReplacesEverySetting()
    {
        const OwnedDictionary dictionary({ "[Dictionary]", "Version=v", "Label=l", "Name=n", "RecordTypeStart=3",
                                           "RecordTypeLen=2", "Positions=p", "ZeroFill=z", "DecimalChar=d",
                                           "[Dictionary]" });
        QCOMPARE(dictionary.version, QString());
        QCOMPARE(dictionary.label, QString());
        QCOMPARE(dictionary.name, QString());
        QCOMPARE(dictionary.recordTypeStart, 1);
        QCOMPARE(dictionary.recordTypeLen, 1);
        QCOMPARE(dictionary.positions, QString());
        QCOMPARE(dictionary.zeroFill, QString());
        QCOMPARE(dictionary.decimalChar, QString());
    }

    void settingsOfTheDictionaryAreNoDefaultForItems()
    {
        const OwnedDictionary dictionary({ "[Dictionary]", "ZeroFill=Yes", "DecimalChar=Yes", "[Item]", "Name=A" });
        QCOMPARE(dictionary.getItem(0)->zeroFill, false);
        QCOMPARE(dictionary.getItem(0)->decimalChar, false);
    }

    void dictionarySectionLeavesTheCurrentRecord()
    {
        const OwnedDictionary dictionary({ "[Record]", "Name=R", "[Dictionary]", "Name=D", "[Item]", "Name=A" });
        QCOMPARE(dictionary.getItem(0)->record->name, QString("R"));
    }

    void recordSectionFillsARecord()
    {
        OwnedDictionary dictionary({ "[Record]", "Label=Household", "Name=HH", "RecordTypeValue='H'", "Required=Yes",
                                     "MaxRecords=20", "RecordLen=80" });
        QCOMPARE(dictionary.getRecordsCount(), 1);
        const TCSProRecord *record = dictionary.getRecord(0);
        QCOMPARE(record->label, QString("Household"));
        QCOMPARE(record->name, QString("HH"));
        QCOMPARE(record->recordType, QString("H"));
        QCOMPARE(record->required, QString("Yes"));
        QCOMPARE(record->maxRecords, 20);
        QCOMPARE(record->recordLen, 80);
        QCOMPARE(dictionary.currentRecord, record);
    }

    void recordSectionWithoutKeysGivesARecordOfDefaults()
    {
        OwnedDictionary dictionary({ "[Record]", "MaxRecords=abc", "RecordLen=" });
        const TCSProRecord *record = dictionary.getRecord(0);
        QCOMPARE(record->label, QString());
        QCOMPARE(record->name, QString());
        QCOMPARE(record->recordType, QString());
        QCOMPARE(record->required, QString());
        QCOMPARE(record->maxRecords, 100);
        QCOMPARE(record->recordLen, 0);
    }

    void firstAndLastCharacterOfTheRecordTypeGo_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("recordType");
        QTest::newRow("quotes") << "RecordTypeValue='H'"
                                << "H";
        QTest::newRow("longer value in quotes") << "RecordTypeValue='10'"
                                                << "10";
        QTest::newRow("double quotes") << "RecordTypeValue=\"H\""
                                       << "H";
        QTest::newRow("no quotes") << "RecordTypeValue=H"
                                   << "";
        QTest::newRow("two characters without quotes") << "RecordTypeValue=12"
                                                       << "";
        QTest::newRow("three characters without quotes") << "RecordTypeValue=123"
                                                         << "2";
        QTest::newRow("quotes around nothing") << "RecordTypeValue=''"
                                               << "";
        QTest::newRow("quotes around a blank") << "RecordTypeValue=' '"
                                               << " ";
        QTest::newRow("blank before the quotes") << "RecordTypeValue= 'H'"
                                                 << "'H";
        QTest::newRow("nothing") << "RecordTypeValue="
                                 << "";
        QTest::newRow("no such line") << ""
                                      << "";
        QTest::newRow("equals sign in quotes") << "RecordTypeValue='='"
                                               << "";
    }

    void firstAndLastCharacterOfTheRecordTypeGo()
    {
        QFETCH(QString, line);
        QFETCH(QString, recordType);
        OwnedDictionary dictionary({ "[Record]", "Name=R", line });
        QCOMPARE(dictionary.getRecord(0)->recordType, recordType);
        QCOMPARE(dictionary.recordMap.size(), size_t(1));
        QCOMPARE(dictionary.recordMap[recordType], dictionary.getRecord(0));
    }

    void laterRecordOfTheSameTypeTakesTheEntryOfTheMap()
    {
        OwnedDictionary dictionary(
            { "[Record]", "Name=A", "RecordTypeValue='1'", "[Record]", "Name=B", "RecordTypeValue='1'" });
        QCOMPARE(dictionary.getRecordsCount(), 2);
        QCOMPARE(dictionary.getRecord(0)->name, QString("A"));
        QCOMPARE(dictionary.getRecord(1)->name, QString("B"));
        QCOMPARE(dictionary.recordMap.size(), size_t(1));
        QCOMPARE(dictionary.recordMap.at(QStringLiteral("1")), dictionary.getRecord(1));
    }

    void mapOfRecordsIsOrderedByTypeAndTheListByFile()
    {
        OwnedDictionary dictionary({ "[Record]", "RecordTypeValue='b'", "[Record]", "RecordTypeValue='9'", "[Record]",
                                     "RecordTypeValue='10'" });
        QStringList listed;
        for (int i = 0; i < dictionary.getRecordsCount(); ++i)
            listed.append(dictionary.getRecord(i)->recordType);
        QStringList mapped;
        for (const auto &entry : dictionary.recordMap)
            mapped.append(entry.first);
        QCOMPARE(listed, QStringList({ "b", "9", "10" }));
        QCOMPARE(mapped, QStringList({ "10", "9", "b" }));
    }

    void handlersLeaveTheIndexOnTheLastLineOfTheirSection()
    {
        OwnedDictionary dictionary;
        const QStringList lines = { "[X]", "Name=A", "", "[Next]", "Name=B" };
        int index = 0;
        TestAccess::readDictionary(dictionary, lines, index);
        QCOMPARE(index, 2);
        index = 0;
        TestAccess::readRecord(dictionary, lines, index);
        QCOMPARE(index, 2);
        index = 0;
        TestAccess::readItem(dictionary, lines, index);
        QCOMPARE(index, 2);
        index = 0;
        TestAccess::readValueSet(dictionary, lines, index);
        QCOMPARE(index, 2);
        QCOMPARE(dictionary.setOf(0)->name, QString("A"));
    }

    void valueSetHandlerLeavesTheIndexWhereTheItemHasASetOrIsMissing()
    {
        OwnedDictionary dictionary;
        const QStringList lines = { "[ValueSet]", "Name=A", "Value=1" };
        int index = 0;
        TestAccess::readValueSet(dictionary, lines, index);
        QCOMPARE(index, 0);
        dictionary.read({ "[Item]" });
        TestAccess::readValueSet(dictionary, lines, index);
        QCOMPARE(index, 2);
        index = 0;
        TestAccess::readValueSet(dictionary, lines, index);
        QCOMPARE(index, 0);
    }

    void headerIsTrimmedWhereNoSectionSwallowsIt_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QStringList>("records");

        // clang-format off
        QTest::newRow("first line, after blanks")     << QStringList{"  [Record]", "Name=R"}               << QStringList{"R"};
        QTest::newRow("after a tab")                  << QStringList{"\t[Record]\t", "Name=R"}             << QStringList{"R"};
        QTest::newRow("after text without a section") << QStringList{"text", "", " [Record]", "Name=R"}    << QStringList{"R"};
        QTest::newRow("in a section of kind 0")       << QStringList{"[Level]", "Name=L", " [Record]", "Name=R"} << QStringList{"R"};
        QTest::newRow("swallowed by a record")        << QStringList{"[Record]", "Name=A", " [Record]", "Name=B"} << QStringList{"A"};
        QTest::newRow("swallowed by the dictionary")  << QStringList{"[Dictionary]", " [Record]", "Name=B"} << QStringList{};
        QTest::newRow("swallowed by an item")         << QStringList{"[Item]", " [Record]", "Name=B"}      << QStringList{};
        QTest::newRow("swallowed by a value set")     << QStringList{"[Item]", "[ValueSet]", " [Record]", "Name=B"} << QStringList{};
        QTest::newRow("in a further value set")       << QStringList{"[Item]", "[ValueSet]", "[ValueSet]", " [Record]", "Name=B"} << QStringList{"B"};
        QTest::newRow("in a value set before any item") << QStringList{"[ValueSet]", " [Record]", "Name=B"} << QStringList{"B"};
        QTest::newRow("untrimmed header ends a section") << QStringList{"[Record]", "Name=A", "[Record]", "Name=B"} << QStringList{"A", "B"};
        QTest::newRow("blanks after a header")        << QStringList{"[Record]", "Name=A", "[Record]  ", "Name=B"} << QStringList{"A", "B"};
        // clang-format on
    }

    void headerIsTrimmedWhereNoSectionSwallowsIt()
    {
        QFETCH(QStringList, lines);
        QFETCH(QStringList, records);
        OwnedDictionary dictionary(lines);
        QStringList names;
        for (int i = 0; i < dictionary.getRecordsCount(); ++i)
            names.append(dictionary.getRecord(i)->name);
        QCOMPARE(names, records);
    }

    void linesThatAreNoHeaderAreSkipped_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("nothing") << QStringList{};
        QTest::newRow("empty lines") << QStringList{ "", "  ", "\t" };
        QTest::newRow("lone bracket") << QStringList{ "[" };
        QTest::newRow("lone bracket among blanks") << QStringList{ " [ " };
        QTest::newRow("one character") << QStringList{ "x" };
        QTest::newRow("keys without a section") << QStringList{ "Name=A", "Len=5" };
        QTest::newRow("header further on in the line") << QStringList{ "x[Item]" };
        QTest::newRow("closing bracket first") << QStringList{ "]Item[" };
        QTest::newRow("header of kind 0") << QStringList{ "[Level]", "Name=L", "Label=x", "Value=1;x" };
    }

    void linesThatAreNoHeaderAreSkipped()
    {
        QFETCH(QStringList, lines);
        OwnedDictionary dictionary(lines);
        QCOMPARE(dictionary.getItemsCount(), 0);
        QCOMPARE(dictionary.getRecordsCount(), 0);
        QCOMPARE(dictionary.name, QString());
        QCOMPARE(dictionary.label, QString());
    }

    void linesAfterALoneBracketBelongToNoSection()
    {
        const OwnedDictionary dictionary({ "[Item]", "Name=A", "[", "Len=5", "[Item]", "Name=B", "Len=6" });
        QCOMPARE(dictionary.itemNames(), QStringList({ "A", "B" }));
        QCOMPARE(dictionary.getItem(0)->length, 0);
        QCOMPARE(dictionary.getItem(1)->length, 6);
    }

    void missingListOfLinesIsAnEmptyDictionary()
    {
        OwnedDictionary dictionary;
        dictionary.parseLines(nullptr);
        QCOMPARE(dictionary.getItemsCount(), 0);
        QCOMPARE(dictionary.getRecordsCount(), 0);
    }

    void linesAreUnchanged()
    {
        const QStringList before = { "  [Item]", " Name=A ", "" };
        QStringList lines = before;
        OwnedDictionary dictionary;
        dictionary.parseLines(&lines);
        QCOMPARE(lines, before);
        QCOMPARE(dictionary.itemNames(), QStringList("A"));
    }

    void noteAndOccurrenceLabelAreNotLookedAt()
    {
        const OwnedDictionary dictionary({ "[Item]", "Name=A", "Label=L", "Note=n", "OccurenceLabel=o" });
        QCOMPARE(dictionary.getItem(0)->name, QString("A"));
        QCOMPARE(dictionary.getItem(0)->label, QString("L"));
    }
};

QTEST_GUILESS_MAIN(CSProSectionsTest)
#include "CSProSectionsTest.moc"
