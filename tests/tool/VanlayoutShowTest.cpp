#include "support/ToolRun.h"

#include <QJsonArray>

namespace
{

const QByteArray survey = "\xEF\xBB\xBF[Dictionary]\n"
                          "Version=CSPro 7.7\n"
                          "Label=Survey of homes|Enquête\n"
                          "Name=HOMES_DICT\n"
                          "RecordTypeStart=1\n"
                          "RecordTypeLen=1\n"
                          "Positions=Relative\n"
                          "ZeroFill=No\n"
                          "DecimalChar=Yes\n"
                          "\n[Languages]\nEN=English\nFR=Français\n"
                          "\n[Level]\nLabel=House|Maison\nName=HOUSE_LEVEL\n"
                          "\n[IdItems]\n"
                          "\n[Item]\nLabel=House number|Numéro\nName=HOUSE\nStart=2\nLen=3\nZeroFill=Yes\n"
                          "\n[Record]\nLabel=Person|Personne\nName=PERSON\nRecordTypeValue='P'\nRequired=No\n"
                          "MaxRecords=20\nRecordLen=30\n"
                          "\n[Item]\nLabel=Birth date|Naissance\nName=BIRTH\nStart=5\nLen=6\n"
                          "\n[Item]\nLabel=Month|Mois\nName=BIRTH_MONTH\nStart=9\nLen=2\nItemType=SubItem\n"
                          "\n[ValueSet]\nLabel=Months|Mois\nName=BIRTH_MONTH_VS1\n"
                          "Value=1:12;Month|Mois\nValue=99;Unknown\nName=MISSING,Special\n"
                          "Value='  ';Not asked|Pas demandé\nName=NOTAPPL,Special\n"
                          "\n[Item]\nLabel=Weight|Poids\nName=WEIGHT\nStart=11\nLen=5\nOccurrences=2\nDecimal=1\n"
                          "DecimalChar=Yes\n"
                          "\n[Item]\nLabel=Income|Revenu\nName=INCOME\nStart=21\nLen=8\nDecimal=2\n"
                          "\n[Item]\nLabel=Kind, or \"sort\"|Genre\nName=KIND\nStart=29\nLen=2\nDataType=Alpha\n"
                          "\n[ValueSet]\nLabel=Kind\nName=KIND_VS1\nValue='A ' 'B ';First\nValue='C '\n"
                          "\n[ValueSet]\nLabel=Kind again\nName=KIND_VS2\nValue='A ';Only\n";

// A dictionary whose only item has a given name, label and number of value lines.
QByteArray oneItem(const QByteArray &name, const QByteArray &label)
{
    return "[Dictionary]\nName=D\nRecordTypeStart=0\nRecordTypeLen=0\nPositions=Absolute\n"
           "[Level]\nName=L\n[IdItems]\n[Item]\nName=ID\nStart=1\nLen=1\n[Record]\nName=R\nRecordTypeValue=''\n[Item]\n"
           "Label="
        + label + "\nName=" + name + "\nStart=2\nLen=3\n";
}

const QByteArray withWarning = oneItem("A", "a") + "Unknown=1\n";

QList<QByteArray> linesOf(const QByteArray &text)
{
    QList<QByteArray> lines = text.split('\n');
    lines.removeLast();
    return lines;
}

int widthOf(const QByteArray &line)
{
    return int(QString::fromUtf8(line).toUcs4().size());
}

} // namespace

/// Tests `vanlayout show`, run as by a user.
class VanlayoutShowTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void tableHasTitleHeadingsAndOneLineAnItem();
    void twoFormsOfTheCensusAreOneSurvey();
    void tableFitsTheTerminal();
    void languagesThatDoNotFitAreOnFurtherLines();
    void headingHasTheFactsOfItsRecord();
    void recordWithoutItemsHasOnlyItsHeading();
    void wideCodeHasALineOfItsOwn();
    void longTypeIsCut();
    void verySmallTerminalIsNotExceeded();
    void columnThatIsEmptyThroughoutIsLeftOut();
    void longNameHasALineOfItsOwn();
    void valuesAreShownBelowTheirItem();
    void labelsAreThoseOfTheLanguage();
    void languagesAreListed();
    void languageThatTheFileLacksIsAnError();
    void fileWithoutLanguagesIsShownInAnyLanguage();
    void variableIsSelectedByName_data();
    void variableIsSelectedByName();
    void headingsWithoutASelectedItemAreLeftOut();
    void variableThatNoFileHasIsAnError();
    void csvHasOneLineAnItem();
    void csvHasTheTextsOfTheFile();
    void csvQuotesWhatNeedsIt_data();
    void csvQuotesWhatNeedsIt();
    void csvOfSeveralFilesBeginsWithTheFile();
    void codesHaveOneLineEach();
    void codesOfOneLanguageHaveOneLabel();
    void codesNeedCsv();
    void codesHaveAColumnForEachLanguageOfAllFiles();
    void valueWithoutACodeKeepsItsLabel();
    void codesOfAPipeAreInAllItsLanguages();
    void answersThatExcludeEachOtherAreRefused_data();
    void answersThatExcludeEachOtherAreRefused();
    void jsonIsOneObjectALineForSeveralFiles();
    void prettyJsonIsIndented();
    void jsonOfAFailingFileNamesItsError();
    void warningsAreOneLineOnStandardError();
    void problemsAreListed_data();
    void problemsAreListed();
    void standardInputIsRead();
    void fileThatIsNoLayoutIsOneLine_data();
    void fileThatIsNoLayoutIsOneLine();
    void fullDiskIsReported_data();
    void fullDiskIsReported();
    void controlsOfTheFileAreShownAsSigns();
    void helpNamesEveryOption();

private:
    Run show(const QStringList &arguments) const { return directory.run(QStringList{ "show" } + arguments); }

    ToolDirectory directory;
};

void VanlayoutShowTest::initTestCase()
{
    qputenv("COLUMNS", "80");
    directory.write("homes.dcf", survey);
    directory.write("one.dcf", oneItem("A", "a"));
    directory.write("warning.dcf", withWarning);
}

void VanlayoutShowTest::tableHasTitleHeadingsAndOneLineAnItem()
{
    const Run run = show({ "homes.dcf" });
    QCOMPARE(run.status, fine);
    QCOMPARE(run.err, QByteArray());
    QCOMPARE(run.out,
             QByteArray("Survey of homes\n"
                        "homes.dcf\n"
                        "CSPro dictionary, text form 7.7, HOMES_DICT, 6 variables, languages EN FR\n"
                        "\n"
                        "Id items of level 1 HOUSE_LEVEL: House\n"
                        "Name           Type    Start  Len  Occ  Values  Label\n"
                        "HOUSE          9(3)        2    3               House number\n"
                        "\n"
                        "PERSON: Person (type \"P\", max 20, optional)\n"
                        "BIRTH          9(6)        5    6               Birth date\n"
                        "  BIRTH_MONTH  9(2)        9    2            3  Month\n"
                        "WEIGHT         9(5).1     11    5    2          Weight\n"
                        "INCOME         9(8)v2     21    8               Income\n"
                        "KIND           A(2)       29    2       3 in 2  Kind, or \"sort\"\n"));
}

void VanlayoutShowTest::twoFormsOfTheCensusAreOneSurvey()
{
    const QString text = QStringLiteral(VAN_EXAMPLES "/census.dcf");
    const QString json = QStringLiteral(VAN_EXAMPLES "/census8.dcf");
    const auto answers = [&](QStringList options) {
        const Run ofText = show(options + QStringList{ text });
        const Run ofJson = show(options + QStringList{ json });
        QCOMPARE(ofText.status, fine);
        QCOMPARE(ofText.err + ofJson.err, QByteArray());
        QList<QByteArray> lines = linesOf(ofText.out);
        QList<QByteArray> others = linesOf(QByteArray(ofJson.out).replace("census8.dcf", "census.dcf"));
        QVERIFY(lines.size() > 50);
        if (options.contains("--labels")) { // the kind of the file
            QVERIFY(lines.at(2).startsWith("CSPro dictionary, text form 7.7, ORVANDIA_CENSUS_DICT, 56 variables"));
            QVERIFY(others.at(2).startsWith("CSPro dictionary, JSON form 8.0, ORVANDIA_CENSUS_DICT, 56 variables"));
            lines.removeAt(2);
            others.removeAt(2);
        }
        QCOMPARE(others, lines);
    };
    answers({ "--labels" });
    answers({ "--format", "csv" });
    answers({ "--codes" });
}

void VanlayoutShowTest::tableFitsTheTerminal()
{
    directory.write("long.dcf", oneItem("QUITE_A_LONG_NAME_OF_40_CHARACTERS_IN_ALL", QByteArray(300, 'x')));
    const QList<QByteArray> lines = linesOf(show({ "--labels", "homes.dcf", "long.dcf" }).out);
    for (const QByteArray &line : lines)
        QVERIFY2(widthOf(line) <= 80, line.constData());
}

void VanlayoutShowTest::languagesThatDoNotFitAreOnFurtherLines()
{
    QByteArray languages;
    for (const char *name : { "AA", "BB", "CC", "DD", "EE", "FF", "GG", "HH", "II", "JJ", "KK", "LL", "MM", "NN" })
        languages += QByteArray(name) + "=Language\n";
    directory.write("many.dcf",
                    QByteArray(survey).replace("EN=English\nFR=Fran\xC3\xA7"
                                               "ais\n",
                                               languages));
    QVERIFY(show({ "many.dcf" })
                .out.contains("CSPro dictionary, text form 7.7, HOMES_DICT, 6 variables,\n"
                              "  languages AA BB CC DD EE FF GG HH II JJ KK LL MM NN\n"
                              "\n"));
    QVERIFY(runShell(directory, "COLUMNS= \"$0\" show many.dcf")
                .out.contains("6 variables, languages AA BB CC DD EE FF GG HH II JJ KK LL MM NN\n"));
    const Run narrow = runShell(directory, "COLUMNS=30 \"$0\" show many.dcf");
    QVERIFY2(narrow.out.contains("\nCSPro dictionary, text form 7\u2026\n"
                                 "  HOMES_DICT, 6 variables,\n"
                                 "  languages AA BB CC DD EE FF\n"
                                 "  GG HH II JJ KK LL MM NN\n"
                                 "\n"),
             narrow.out.constData());
}

void VanlayoutShowTest::headingHasTheFactsOfItsRecord()
{
    const QByteArray record = "[Record]\nName=R2\nLabel=Second\nRecordTypeValue=\'\'\n";
    const QByteArray item = "[Item]\nName=B\nStart=5\nLen=1\n";
    directory.write("records.dcf", oneItem("A", "a") + record + item);
    const QByteArray out = show({ "records.dcf" }).out;
    QVERIFY2(out.contains("\nR2: Second (max 1)\nB "), out.constData());
    directory.write("levels.dcf", oneItem("A", "a") + "[Level]\nName=L2\nLabel=Inner\n[IdItems]\n" + record + item);
    const QByteArray levels = show({ "levels.dcf" }).out;
    QVERIFY2(levels.contains("\nR (level 1, max 1)\n"), levels.constData());
    QVERIFY2(levels.contains("\nR2: Second (level 2, max 1)\n"), levels.constData());
    QVERIFY(!levels.contains("Id items of level 2"));
    // A DDI document of another program does not state how many records a case has.
    directory.write("records.xml",
                    "<codeBook><fileDscr><fileTxt><fileStrc><recGrp rectype='H'/><recGrp ID='P'>"
                    "<labl>Person</labl></recGrp></fileStrc></fileTxt></fileDscr><dataDscr>"
                    "<var name='A'/></dataDscr></codeBook>");
    const QByteArray document = show({ "records.xml" }).out;
    QVERIFY2(document.contains("\nH (type \"H\")\nName"), document.constData());
    QVERIFY2(document.contains("\nP: Person\nA "), document.constData());
}

void VanlayoutShowTest::recordWithoutItemsHasOnlyItsHeading()
{
    directory.write("record.dcf",
                    "[Dictionary]\nName=D\nRecordTypeStart=1\nRecordTypeLen=1\nPositions=Absolute\n[Level]\nName=L\n"
                    "[IdItems]\n[Record]\nName=EMPTY\nRecordTypeValue=\'1\'\n[Record]\nName=R\nRecordTypeValue=\'2\'\n"
                    "[Item]\nName=A\nStart=2\nLen=3\n");
    const QByteArray out = show({ "--quiet", "record.dcf" }).out;
    QVERIFY2(out.contains("\nEMPTY (type \"1\", max 1)\n\nR (type \"2\", max 1)\nName  Type  Start  Len\nA     9(3)"),
             out.constData());
}

void VanlayoutShowTest::wideCodeHasALineOfItsOwn()
{
    const QByteArray code(25, 'C');
    directory.write("codes.dcf",
                    oneItem("A", "a") + "[ValueSet]\nName=A_VS1\nValue=\'" + code + "\';Wide\nValue=\'1\';One\n");
    const QByteArray blanks(24 - 1 + 2, ' ');
    QVERIFY(show({ "--labels", "codes.dcf" })
                .out.contains("      " + code + "\n      " + QByteArray(26, ' ') + "Wide\n      1" + blanks + "One\n"));
}

void VanlayoutShowTest::longTypeIsCut()
{
    directory.write(
        "type.dcf",
        R"({"name":"D","relativePositions":false,"recordType":{"start":0,"length":0},"levels":[{"name":"L",)"
        R"("ids":{"items":[{"name":"A","contentType":"abcdefghijklmnopqrstuvwxyz","start":1,"length":1}]}}]})");
    const QByteArray out = show({ "--quiet", "type.dcf" }).out;
    QVERIFY2(out.contains("\nA     abcdefghijklmnopqrstuvw…      1    1\n"), out.constData());
}

void VanlayoutShowTest::verySmallTerminalIsNotExceeded()
{
    QVERIFY(runShell(directory, "COLUMNS=34 \"$0\" show homes.dcf")
                .out.contains("\nPERSON (type \"P\", max 20, optiona…\n"));
    for (const char *columns : { "1", "5", "12", "20", "33" }) {
        const QList<QByteArray> lines
            = linesOf(runShell(directory, QString("COLUMNS=%1 \"$0\" show --labels homes.dcf").arg(columns)).out);
        QVERIFY(lines.size() > 10);
        for (const QByteArray &line : lines)
            QVERIFY2(line == "homes.dcf" || widthOf(line) <= QByteArray(columns).toInt(), line.constData());
    }
}

void VanlayoutShowTest::columnThatIsEmptyThroughoutIsLeftOut()
{
    const QByteArray out = show({ "one.dcf" }).out;
    QVERIFY(out.contains("Name  Type  Start  Len  Label\n"));
    directory.write("plain.dcf", oneItem("A", ""));
    QVERIFY(!show({ "plain.dcf" }).out.contains("Label"));
}

void VanlayoutShowTest::longNameHasALineOfItsOwn()
{
    const QByteArray name = "QUITE_A_LONG_NAME_OF_MORE_THAN_40_CHARACTERS";
    directory.write("long.dcf", oneItem(name, "the label of this item is long as well"));
    const QList<QByteArray> lines = linesOf(show({ "long.dcf" }).out);
    const int index = lines.indexOf(name);
    QVERIFY(index > 0);
    QVERIFY(lines.at(index + 1).contains("9(3)"));
    QVERIFY2(lines.at(index + 1).contains("the label of this item is long as well"), lines.at(index + 1).constData());
    // Without a terminal the lines may be long, but one long name does not widen the others.
    directory.write("longest.dcf", oneItem(QByteArray(1000, 'N'), "label"));
    const QByteArray out = runShell(directory, "COLUMNS= \"$0\" show longest.dcf").out;
    QVERIFY(out.contains(QByteArray(1000, 'N') + "\n          9(3)"));
    QVERIFY(out.contains("\nID        9(1)"));
}

void VanlayoutShowTest::valuesAreShownBelowTheirItem()
{
    const QByteArray out = show({ "--labels", "homes.dcf" }).out;
    QVERIFY(out.contains("Month\n"
                         "    BIRTH_MONTH_VS1: Months\n"
                         "      1 to 12  Month\n"
                         "      99       Unknown  [missing]\n"
                         "      \"  \"     Not asked  [not applicable]\n"
                         "WEIGHT"));
    QVERIFY(out.contains("    KIND_VS1: Kind\n"
                         "      A , B   First\n"
                         "      C\n"
                         "    KIND_VS2: Kind again\n"
                         "      A   Only\n"));
}

void VanlayoutShowTest::labelsAreThoseOfTheLanguage()
{
    const QByteArray out = show({ "--language", "fr", "--labels", "homes.dcf" }).out;
    QVERIFY(out.startsWith("Enquête\n"));
    QVERIFY(out.contains("PERSON: Personne (type"));
    QVERIFY(out.contains("Pas demandé"));
    QVERIFY(out.contains("99       Unknown")); // the primary label if there is none in the language
}

void VanlayoutShowTest::languagesAreListed()
{
    const Run run = show({ "--languages", "homes.dcf", "one.dcf" });
    QCOMPARE(run.out, QByteArray("homes.dcf\n  EN  English\n  FR  Français\n\none.dcf\n  declares no language\n"));
    const QByteArray longName(100, 'L');
    directory.write("long.dcf", QByteArray(survey).replace("FR=", longName + "="));
    QVERIFY(show({ "--languages", "long.dcf" })
                .out.contains("  EN" + QByteArray(24, ' ') + "English\n  " + longName + "  Français\n"));
}

void VanlayoutShowTest::languageThatTheFileLacksIsAnError()
{
    const Run run = show({ "--language", "ES", "homes.dcf" });
    QCOMPARE(run.out, QByteArray());
    verifyComplaint(run, "homes.dcf: has no language ES; it has EN, FR\n");
}

void VanlayoutShowTest::fileWithoutLanguagesIsShownInAnyLanguage()
{
    QCOMPARE(show({ "--language", "ES", "one.dcf" }).out, show({ "one.dcf" }).out);
}

void VanlayoutShowTest::variableIsSelectedByName_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("one") << QStringList{ "--variable", "KIND" } << QStringList{ "KIND" };
    QTest::newRow("in small letters") << QStringList{ "--variable", "kind" } << QStringList{ "KIND" };
    QTest::newRow("with commas") << QStringList{ "--variable", "KIND,HOUSE" } << QStringList{ "HOUSE", "KIND" };
    QTest::newRow("twice") << QStringList{ "--variable", "KIND", "--variable", "HOUSE" }
                           << QStringList{ "HOUSE", "KIND" };
    QTest::newRow("star") << QStringList{ "--variable", "BIRTH*" } << QStringList{ "BIRTH", "BIRTH_MONTH" };
    QTest::newRow("star within") << QStringList{ "--variable", "*I*H" } << QStringList{ "BIRTH", "BIRTH_MONTH" };
    QTest::newRow("question mark") << QStringList{ "--variable", "?IND" } << QStringList{ "KIND" };
}

void VanlayoutShowTest::variableIsSelectedByName()
{
    QFETCH(QStringList, options);
    const Run run = show(options + QStringList{ "--format", "csv", "homes.dcf" });
    QCOMPARE(run.status, fine);
    QStringList names;
    const QList<QByteArray> lines = linesOf(run.out).mid(1);
    for (const QByteArray &line : lines)
        names.append(line.split(',').at(3));
    QTEST(names, "names");
}

void VanlayoutShowTest::headingsWithoutASelectedItemAreLeftOut()
{
    const QByteArray record = show({ "--variable", "KIND", "homes.dcf" }).out;
    QVERIFY(!record.contains("Id items"));
    QVERIFY(record.contains("PERSON"));
    const QByteArray ids = show({ "--variable", "HOUSE", "homes.dcf" }).out;
    QVERIFY(ids.contains("Id items"));
    QVERIFY(!ids.contains("PERSON"));
    QVERIFY(ids.contains(", 1 variable selected,\n"));
}

void VanlayoutShowTest::variableThatNoFileHasIsAnError()
{
    const Run run = show({ "--variable", "KIND,NONE", "homes.dcf", "one.dcf" });
    QVERIFY(run.out.contains("KIND"));
    verifyComplaint(run, "NONE: no variable has this name\n");
}

void VanlayoutShowTest::csvHasOneLineAnItem()
{
    QCOMPARE(show({ "--format", "csv", "homes.dcf" }).out,
             QByteArray("level,record,recordType,name,label,type,start,length,occurrences,subitemOf,decimals,"
                        "decimalMark,zeroFill,capture,storage,format,measure,alignment,displayWidth,missing,valueSets,"
                        "note,aliases\r\n"
                        "HOUSE_LEVEL,(ids),,HOUSE,House number,numeric,2,3,1,,0,,yes,,,,,,0,,,,\r\n"
                        "HOUSE_LEVEL,PERSON,P,BIRTH,Birth date,numeric,5,6,1,,0,,,,,,,,0,,,,\r\n"
                        "HOUSE_LEVEL,PERSON,P,BIRTH_MONTH,Month,numeric,9,2,1,BIRTH,0,,,,,,,,0,,BIRTH_MONTH_VS1,,\r\n"
                        "HOUSE_LEVEL,PERSON,P,WEIGHT,Weight,numeric,11,5,2,,1,yes,,,,,,,0,,,,\r\n"
                        "HOUSE_LEVEL,PERSON,P,INCOME,Income,numeric,21,8,1,,2,,,,,,,,0,,,,\r\n"
                        "HOUSE_LEVEL,PERSON,P,KIND,\"Kind, or \"\"sort\"\"\",alpha,29,2,1,,0,,,,,,,,0,,"
                        "KIND_VS1 KIND_VS2,,\r\n"));
}

void VanlayoutShowTest::csvHasTheTextsOfTheFile()
{
    directory.write(
        "texts.dcf",
        "[Dictionary]\nName=D\nRecordTypeStart=0\nRecordTypeLen=0\nPositions=Absolute\n"
        "[Languages]\nEN=English\nFR=French\n[Level]\nName=L\n[IdItems]\n"
        "[Item]\nLabel=Sex|Sexe\nName=SEX\nNote=first\\r\\n\nNote=second\nAlias=S1\nAlias=S2\nStart=1\nLen=1\n"
        "CaptureType=RadioButton\n[ValueSet]\nLabel=Sex\nName=SEX_VS1\nValue=1;Male\n");
    QVERIFY(show({ "--format", "csv", "--language", "fr", "texts.dcf" })
                .out.endsWith(
                    "L,(ids),,SEX,Sexe,numeric,1,1,1,,0,,,radioButton,,,,,0,,SEX_VS1,\"first\nsecond\",S1 S2\r\n"));
}

void VanlayoutShowTest::csvQuotesWhatNeedsIt_data()
{
    QTest::addColumn<QByteArray>("label");
    QTest::addColumn<QByteArray>("cell");
    QTest::newRow("plain") << QByteArray("a b") << QByteArray("a b");
    QTest::newRow("comma") << QByteArray("a,b") << QByteArray("\"a,b\"");
    QTest::newRow("quotation mark") << QByteArray(R"(a\"b)") << QByteArray(R"("a""b")");
    QTest::newRow("line feed") << QByteArray(R"(a\nb)") << QByteArray("\"a\nb\"");
    QTest::newRow("carriage return") << QByteArray(R"(a\rb)") << QByteArray("\"a\rb\"");
}

void VanlayoutShowTest::csvQuotesWhatNeedsIt()
{
    QFETCH(QByteArray, label);
    QFETCH(QByteArray, cell);
    directory.write(
        "quotes.dcf",
        R"({"name":"D","relativePositions":false,"recordType":{"start":0,"length":0},"levels":[{"name":"L",)"
        R"("ids":{"items":[{"name":"A","labels":[{"text":")"
            + label + R"("}],"contentType":"numeric","start":1,"length":1}]}}]})");
    const QByteArray out = show({ "--format", "csv", "quotes.dcf" }).out;
    QVERIFY2(out.contains("\r\nL,(ids),,A," + cell + ",numeric,1,1,"), out.constData());
}

void VanlayoutShowTest::csvOfSeveralFilesBeginsWithTheFile()
{
    const QList<QByteArray> lines = linesOf(show({ "--format", "csv", "one.dcf", "homes.dcf" }).out);
    QCOMPARE(lines.size(), 9);
    QVERIFY(lines.at(0).startsWith("file,level,"));
    QVERIFY(lines.at(1).startsWith("one.dcf,L,(ids),,ID,"));
    QVERIFY(lines.at(3).startsWith("homes.dcf,HOUSE_LEVEL,"));
}

void VanlayoutShowTest::codesHaveOneLineEach()
{
    QCOMPARE(show({ "--format", "csv", "--codes", "homes.dcf" }).out,
             QByteArray("file,item,valueSet,from,to,label_EN,label_FR,special\r\n"
                        "homes.dcf,BIRTH_MONTH,BIRTH_MONTH_VS1,1,12,Month,Mois,\r\n"
                        "homes.dcf,BIRTH_MONTH,BIRTH_MONTH_VS1,99,,Unknown,,missing\r\n"
                        "homes.dcf,BIRTH_MONTH,BIRTH_MONTH_VS1,  ,,Not asked,Pas demandé,notApplicable\r\n"
                        "homes.dcf,KIND,KIND_VS1,A ,,First,,\r\n"
                        "homes.dcf,KIND,KIND_VS1,B ,,First,,\r\n"
                        "homes.dcf,KIND,KIND_VS1,C ,,,,\r\n"
                        "homes.dcf,KIND,KIND_VS2,A ,,Only,,\r\n"));
}

void VanlayoutShowTest::codesOfOneLanguageHaveOneLabel()
{
    const QByteArray out = show({ "--codes", "--language", "FR", "homes.dcf" }).out;
    QVERIFY(out.startsWith("file,item,valueSet,from,to,label_FR,special\r\n"));
    QVERIFY(out.contains("BIRTH_MONTH_VS1,99,,Unknown,missing\r\n"));
    directory.write("codes.dcf", oneItem("A", "a") + "[ValueSet]\nName=A_VS1\nValue=1;One\n");
    QCOMPARE(show({ "--codes", "codes.dcf" }).out,
             QByteArray("file,item,valueSet,from,to,label,special\r\ncodes.dcf,A,A_VS1,1,,One,\r\n"));
}

void VanlayoutShowTest::codesNeedCsv()
{
    QCOMPARE(show({ "--codes", "homes.dcf" }).out, show({ "--codes", "--format", "csv", "homes.dcf" }).out);
    verifyComplaint(show({ "--codes", "--format", "json", "homes.dcf" }),
                    "--codes can only be used with --format csv\n");
}

void VanlayoutShowTest::codesHaveAColumnForEachLanguageOfAllFiles()
{
    directory.write("es.dcf", QByteArray(survey).replace("EN=English", "en=English").replace("FR=", "ES="));
    const QList<QByteArray> lines = linesOf(show({ "--codes", "homes.dcf", "es.dcf", "one.dcf" }).out);
    QCOMPARE(lines.at(0), QByteArray("file,item,valueSet,from,to,label_EN,label_FR,label_ES,special\r"));
    QCOMPARE(lines.at(1), QByteArray("homes.dcf,BIRTH_MONTH,BIRTH_MONTH_VS1,1,12,Month,Mois,,\r"));
    QCOMPARE(lines.at(8), QByteArray("es.dcf,BIRTH_MONTH,BIRTH_MONTH_VS1,1,12,Month,,Mois,\r"));
    directory.write("english.dcf", oneItem("A", "a").replace("[Level]", "[Languages]\nEN=English\n[Level]"));
    QCOMPARE(show({ "--codes", "english.dcf" }).out, QByteArray("file,item,valueSet,from,to,label,special\r\n"));
}

void VanlayoutShowTest::valueWithoutACodeKeepsItsLabel()
{
    directory.write(
        "codeless.dcf",
        R"({"name":"D","relativePositions":false,"recordType":{"start":0,"length":0},"levels":[{"name":"L",)"
        R"("ids":{"items":[{"name":"A","contentType":"numeric","start":1,"length":1,"valueSets":[)"
        R"({"name":"V","values":[{"labels":[{"text":"None"}],"pairs":[]}]}]}]}}]})");
    QCOMPARE(show({ "--quiet", "--codes", "codeless.dcf" }).out,
             QByteArray("file,item,valueSet,from,to,label,special\r\ncodeless.dcf,A,V,,,None,\r\n"));
}

void VanlayoutShowTest::codesOfAPipeAreInAllItsLanguages()
{
    const QByteArray expected = show({ "--codes", "homes.dcf" }).out;
    const auto codesOf = [&](const QByteArray &name, const QString &line) {
        return runShell(directory, line).out.replace(name + ',', "homes.dcf,");
    };
    QCOMPARE(codesOf("-", "cat homes.dcf | \"$0\" show --codes -"), expected);
    QCOMPARE(codesOf("/dev/fd/0", "cat homes.dcf | \"$0\" show --codes /dev/fd/0"), expected);
    QCOMPARE(codesOf("pipe", "mkfifo pipe; cat homes.dcf > pipe & \"$0\" show --codes pipe"), expected);
}

void VanlayoutShowTest::answersThatExcludeEachOtherAreRefused_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::newRow("codes and problems") << QStringList{ "--codes", "--problems" };
    QTest::newRow("codes and languages") << QStringList{ "--codes", "--languages" };
    QTest::newRow("problems and languages") << QStringList{ "--problems", "--languages" };
    QTest::newRow("languages in JSON") << QStringList{ "--languages", "--format", "json" };
    QTest::newRow("languages in CSV") << QStringList{ "--languages", "--format", "csv" };
}

void VanlayoutShowTest::answersThatExcludeEachOtherAreRefused()
{
    QFETCH(QStringList, options);
    const Run run = show(options + QStringList{ "homes.dcf" });
    QCOMPARE(run.out, QByteArray());
    verifyComplaint(run, "--");
}

void VanlayoutShowTest::jsonIsOneObjectALineForSeveralFiles()
{
    const QList<QByteArray> lines = linesOf(show({ "--format", "json", "one.dcf", "homes.dcf" }).out);
    QCOMPARE(lines.size(), 2);
    QCOMPARE(QJsonDocument::fromJson(lines.at(0)).object()["file"].toString(), QString("one.dcf"));
    const QJsonObject layout = QJsonDocument::fromJson(lines.at(1)).object();
    QCOMPARE(layout["layoutVersion"].toInt(), 1);
    QCOMPARE(layout["levels"].toArray().at(0)["records"].toArray().at(0)["items"].toArray().size(), 5);
}

void VanlayoutShowTest::prettyJsonIsIndented()
{
    QVERIFY(show({ "--format", "json", "--pretty", "one.dcf" }).out.startsWith("{\n  \"layoutVersion\": 1,\n"));
    QCOMPARE(show({ "--format", "json", "one.dcf" }).out.count('\n'), 1);
}

void VanlayoutShowTest::jsonOfAFailingFileNamesItsError()
{
    directory.write("empty.dcf", "");
    const Run several = show({ "--format", "json", "one.dcf", "empty.dcf" });
    QCOMPARE(several.status, noAnswer);
    QCOMPARE(
        linesOf(several.out).at(1),
        QByteArray("{\"file\":\"empty.dcf\",\"error\":{\"id\":\"empty-file\",\"message\":\"the file is empty\"}}"));
    QCOMPARE(several.err, QByteArray("vanlayout: empty.dcf: the file is empty\n"));
    const Run language = show({ "--format", "json", "--language", "ES", "homes.dcf", "one.dcf" });
    QCOMPARE(language.status, noAnswer);
    QVERIFY(linesOf(language.out).at(0).startsWith("{\"file\":\"homes.dcf\",\"error\":{\"id\":\"no-language\""));
    QCOMPARE(linesOf(language.out).size(), 2);
    const Run single = show({ "--format", "json", "empty.dcf" });
    QCOMPARE(single.out, QByteArray());
    verifyComplaint(single, "empty.dcf: the file is empty\n");
}

void VanlayoutShowTest::warningsAreOneLineOnStandardError()
{
    const Run run = show({ "warning.dcf" });
    QCOMPARE(run.status, fine);
    QCOMPARE(run.err, QByteArray("vanlayout: warning.dcf: 1 warning; vanlayout show --problems lists them\n"));
    QCOMPARE(show({ "--quiet", "warning.dcf" }).err, QByteArray());
    QCOMPARE(show({ "--format", "json", "warning.dcf" }).err, QByteArray());
    QCOMPARE(show({ "--problems", "warning.dcf" }).err, QByteArray());
}

void VanlayoutShowTest::problemsAreListed_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("beginning");
    QTest::newRow("table") << QStringList{} << QByteArray("warning.dcf: 1 problem\n  warning: line 21: L/R/A: ");
    QTest::newRow("csv") << QStringList{ "--format", "csv" }
                         << QByteArray("file,severity,id,line,path,message\r\nwarning.dcf,warning,unknown-key,21,");
}

void VanlayoutShowTest::problemsAreListed()
{
    QFETCH(QStringList, options);
    QFETCH(QByteArray, beginning);
    const Run run = show(options + QStringList{ "--problems", "warning.dcf" });
    QCOMPARE(run.status, fine);
    QVERIFY2(run.out.startsWith(beginning), run.out.constData());
    QCOMPARE(show({ "--problems", "one.dcf" }).out, QByteArray("one.dcf: no problem\n"));
}

void VanlayoutShowTest::standardInputIsRead()
{
    const Run piped = runShell(directory, "cat homes.dcf | \"$0\" show --format csv -");
    QCOMPARE(piped.out, show({ "--format", "csv", "homes.dcf" }).out);
    const Run redirected = runShell(directory, "\"$0\" show --format json - < one.dcf");
    QCOMPARE(redirected.json()["file"].toString(), QString("-"));
}

void VanlayoutShowTest::fileThatIsNoLayoutIsOneLine_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("part");
    QTest::newRow("PNG") << QByteArray("\x89PNG\r\n\x1a\n") << QByteArray("PNG image");
    QTest::newRow("PDF") << QByteArray("%PDF-1.7\n") << QByteArray("PDF document");
    QTest::newRow("ZIP") << QByteArray("PK\x03\x04") << QByteArray("ZIP archive");
    QTest::newRow("CSV") << QByteArray("name,age,sex\nAnna,12,2\nBert,13,1\n") << QByteArray("CSV");
    QTest::newRow("empty") << QByteArray() << QByteArray("empty");
}

void VanlayoutShowTest::fileThatIsNoLayoutIsOneLine()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, part);
    directory.write("other.dcf", content);
    for (const QString format : { "table", "csv", "json" }) {
        const Run run = show({ "--format", format, "other.dcf" });
        verifyComplaint(run, "other.dcf: the file is ");
        QCOMPARE(run.out, QByteArray());
        QVERIFY2(run.err.contains(part), run.err.constData());
    }
}

void VanlayoutShowTest::fullDiskIsReported_data()
{
    QTest::addColumn<QString>("format");
    for (const char *format : { "table", "csv", "json" })
        QTest::newRow(format) << QString(format);
}

void VanlayoutShowTest::fullDiskIsReported()
{
    QFETCH(QString, format);
    verifyFullDiskIsReported(directory, { "show", "--format", format, "homes.dcf" });
}

void VanlayoutShowTest::controlsOfTheFileAreShownAsSigns()
{
    directory.write("control.dcf",
                    oneItem("A", "red\x1b[31m") + "[ValueSet]\nName=A_VS1\nLabel=\x07\nValue=\x1b;\x1b\n");
    const QByteArray out = show({ "--labels", "control.dcf" }).out;
    QVERIFY(out.contains("red"));
    QVERIFY(!out.contains('\x1b'));
    QVERIFY(!out.contains('\x07'));
}

void VanlayoutShowTest::helpNamesEveryOption()
{
    verifyHelpDescribes("show",
                        { "--format", "--pretty", "--labels", "--codes", "--variable", "--language", "--languages",
                          "--catalog", "--problems", "--quiet", "FILE" });
}

QTEST_MAIN(VanlayoutShowTest)
#include "VanlayoutShowTest.moc"
