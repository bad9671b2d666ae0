#include "support/OrdinaryUser.h"
#include "support/PseudoTerminal.h"
#include "support/ToolRun.h"

#include <QtTest>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <sys/stat.h>

namespace
{

QByteArray item(const QByteArray &name, const QByteArray &label, const QByteArray &more = QByteArray())
{
    return "\n[Item]\nLabel=" + label + "\nName=" + name + "\nStart=2\nLen=2\nDataType=Numeric\n" + more;
}

QByteArray values(const QByteArray &name, const QList<QByteArray> &lines)
{
    return "\n[ValueSet]\nLabel=S\nName=" + name + "\nValue=" + lines.join("\nValue=") + '\n';
}

QByteArray dictionary(const QByteArray &items, const QByteArray &more = QByteArray())
{
    return "[Dictionary]\nVersion=CSPro 7.7\nLabel=D\nName=D\nRecordTypeStart=1\nRecordTypeLen=1\nPositions=Absolute\n"
        + more + "\n[Level]\nLabel=L\nName=QUEST\n\n[IdItems]\n" + item("CASE_ID", "Case")
        + "\n[Record]\nLabel=R\nName=PERSON\nRecordTypeValue='1'\nRecordLen=99\n" + items;
}

QByteArray firstRound()
{
    return dictionary(item("P309", "Mother's line number")
                      + item("P310", "Religion", values("P310_VS1", { "1;Catholic", "2:5;Protestant", "98;Refused" })));
}

QByteArray secondRound()
{
    return dictionary(item("P309", "Religion|Confession",
                           values("P309_VS1", { "1;Catholic|Catholique", "2;Muslim|Musulman", "98;Refused|Refus" }))
                          + item("P311", "Age|\xC3\x82ge"),
                      "[Languages]\nEN=English\nFR=Fran\xC3\xA7"
                      "ais\n");
}

const QByteArray noWord = "there is no word to find; give words, then files and directories";
const QByteArray nameWhat = "name what to search after the words, such as . for this directory";

} // namespace

/// Tests `vanlayout find`, run as by a user.
class VanlayoutFindTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QVERIFY(QDir(directory.path()).removeRecursively());
        QVERIFY(QDir().mkpath(directory.filePath("rounds/2019")));
        directory.write("rounds/2009.dcf", firstRound());
        directory.write("rounds/2019/b.dcf", secondRound());
    }

    void aHitIsALineThatBeginsWithTheFile()
    {
        const Run run = find({ "religion", "rounds" });
        QCOMPARE(run.err, QByteArray());
        QCOMPARE(run.out,
                 QByteArray("rounds/2009.dcf  PERSON  P310  label  Religion\n"
                            "rounds/2019/b.dcf  PERSON  P309  label [EN]  Religion\n"));
        QCOMPARE(run.status, fine);
    }
    void aHitHasTheValuesThatWereFound()
    {
        QCOMPARE(find({ "religion", "refused", "prot", "rounds" }).out,
                 QByteArray("rounds/2009.dcf  PERSON  P310  label  Religion  2 to 5 Protestant; 98 Refused\n"));
        QCOMPARE(find({ "musulman", "rounds" }).out,
                 QByteArray("rounds/2019/b.dcf  PERSON  P309  value [FR]  Religion  2 Musulman\n"));
    }
    void aTextThatNoColumnHasIsInQuotationMarks()
    {
        QCOMPARE(find({ "confession", "rounds" }).out,
                 QByteArray("rounds/2019/b.dcf  PERSON  P309  label [FR]  Religion  \"Confession\"\n"));
    }
    void columnsOfAFileAreAligned()
    {
        directory.write("a.dcf", dictionary(item("LONG_NAME", "Sex") + item("A", "Sex of the head")));
        QCOMPARE(find({ "sex", "a.dcf" }).out,
                 QByteArray("a.dcf  PERSON  LONG_NAME  label  Sex\n"
                            "a.dcf  PERSON  A          label  Sex of the head\n"));
        QCOMPARE(find({ "case", "a.dcf" }).out, QByteArray("a.dcf  (ids)  CASE_ID  name  Case\n"));
    }

    void hitsAreGroupedByFileAtATerminal()
    {
        const PseudoTerminal terminal;
        QVERIFY2(terminal.isOpen(), "this system has no pseudo terminals");
        QVERIFY(terminal.setWidth(40));
        QProcess tool;
        tool.setStandardOutputFile(terminal.name());
        QCOMPARE(find({ "religion", "catholic", "rounds" }, tool).status, fine);
        QCOMPARE(terminal.taken().replace("\r\n", "\n"),
                 QByteArray("rounds/2009.dcf\n"
                            "  PERSON  P310  label  Religion  1 Cath\xE2\x80\xA6\n"
                            "\n"
                            "rounds/2019/b.dcf\n"
                            "  PERSON  P309  label [EN]  Religion  1\xE2\x80\xA6\n"));
    }

    void valuesAreVisibleAtATerminalNextToLongLabels()
    {
        directory.write("long.dcf",
                        dictionary(item("A", "Religion of the person who answers", values("V", { "1;Catholic church" }))
                                   + item("B", "Religion of the person, if not Catholic")));
        const PseudoTerminal terminal;
        QVERIFY(terminal.setWidth(60));
        QProcess tool;
        tool.setStandardOutputFile(terminal.name());
        QCOMPARE(find({ "religion", "catholic", "long.dcf" }, tool).status, fine);
        QCOMPARE(terminal.taken().replace("\r\n", "\n"),
                 QByteArray("long.dcf\n"
                            "  PERSON  A  label  Religion of the pers\xE2\x80\xA6  1 Catholic church\n"
                            "  PERSON  B  label  Religion of the person, if not Catholic\n"));
    }

    void jsonHasAnObjectOnEachLineWithItsKeysInOrder()
    {
        const Run run = find({ "--format", "json", "mus", "confession", "rounds" });
        QCOMPARE(run.status, fine);
        QCOMPARE(run.out,
                 QByteArray("{'file':'rounds/2019/b.dcf','level':'QUEST','record':'PERSON','item':'P309',"
                            "'where':'label','language':'FR','text':'Confession','label':'Religion',"
                            "'values':[{'from':'2','to':'','label':'Muslim'}]}\n")
                     .replace('\'', '"'));
        QCOMPARE(find({ "--format", "json", "catholic", "rounds" }).out.count('\n'), 2);
    }
    void csvHasALineForEachHit()
    {
        QCOMPARE(find({ "--format", "csv", "catholic", "rounds" }).out,
                 QByteArray("file,level,record,item,where,language,text,label,values\r\n"
                            "rounds/2009.dcf,QUEST,PERSON,P310,value,,Catholic,Religion,1 Catholic\r\n"
                            "rounds/2019/b.dcf,QUEST,PERSON,P309,value,EN,Catholic,Religion,1 Catholic\r\n"));
        QCOMPARE(find({ "--format", "csv", "island", "rounds" }).out,
                 QByteArray("file,level,record,item,where,language,text,label,values\r\n"));
    }

    void nothingFoundIsStatus1()
    {
        for (const char *format : { "table", "json" }) {
            const Run run = find({ "--format", format, "island", "rounds" });
            QCOMPARE(run.status, finding);
            QCOMPARE(run.out, QByteArray());
            QCOMPARE(run.err, QByteArray());
        }
    }

    void optionsRestrictTheSearch_data()
    {
        QTest::addColumn<QStringList>("call");
        QTest::addColumn<QStringList>("items"); // file and item
        const QStringList both = { "2009 P309", "b P309" };
        // clang-format off
        QTest::newRow("name or label")       << QStringList{ "p309" }                               << both;
        QTest::newRow("label")               << QStringList{ "p309", "--in", "label" }              << QStringList();
        QTest::newRow("two places")          << QStringList{ "p309", "--in", "label,name" }         << both;
        QTest::newRow("repeated")            << QStringList{ "p309", "--in", "label", "--in", "name" } << both;
        QTest::newRow("value")               << QStringList{ "--in", "value", "catholic" }          << QStringList{ "2009 P310", "b P309" };
        QTest::newRow("note")                << QStringList{ "--in", "note", "catholic" }           << QStringList();
        QTest::newRow("all words")           << QStringList{ "p309", "muslim" }                     << QStringList{ "b P309" };
        QTest::newRow("any word")            << QStringList{ "--any", "age", "mother" }             << QStringList{ "2009 P309", "b P311" };
        QTest::newRow("word of an option")   << QStringList{ "-e", "muslim" }                       << QStringList{ "b P309" };
        QTest::newRow("words of an option")  << QStringList{ "--word", "muslim", "-e", "p309" }     << QStringList{ "b P309" };
        QTest::newRow("code")                << QStringList{ "--codes", "098" }                     << QStringList{ "2009 P310", "b P309" };
        QTest::newRow("code within a range") << QStringList{ "--codes", "3" }                       << QStringList{ "2009 P310" };
        QTest::newRow("codes")               << QStringList{ "--codes", "1,3" }                     << QStringList{ "2009 P310" };
        QTest::newRow("codes repeated")      << QStringList{ "--codes", "1", "--codes", "3" }       << QStringList{ "2009 P310" };
        QTest::newRow("any code")            << QStringList{ "--any", "--codes", "3,2" }            << QStringList{ "2009 P310", "b P309" };
        QTest::newRow("code and word")       << QStringList{ "--codes", "98", "confession" }        << QStringList{ "b P309" };
        QTest::newRow("code or word")        << QStringList{ "--any", "--codes", "3", "age" }       << QStringList{ "2009 P310", "b P311" };
        QTest::newRow("pattern")             << QStringList{ "--regex", "^r.*n$" }                  << QStringList{ "2009 P310", "b P309" };
        QTest::newRow("pattern in a place")  << QStringList{ "--regex", "9$", "--in", "name" }      << both;
        QTest::newRow("accent")              << QStringList{ "\u00e2GE" }                           << QStringList{ "b P311" };
        // clang-format on
    }
    void optionsRestrictTheSearch()
    {
        QFETCH(QStringList, call);
        QFETCH(QStringList, items);
        const Run run = find(QStringList{ "--format", "json" } + call + QStringList("rounds"));
        QCOMPARE(itemsOf(run.out), items);
        QCOMPARE(run.status, items.isEmpty() ? finding : fine);
        QCOMPARE(run.err, QByteArray());
    }

    void labelsAreInTheLanguage()
    {
        QCOMPARE(find({ "--language", "fr", "p309", "rounds" }).out,
                 QByteArray("rounds/2009.dcf  PERSON  P309  name  Mother's line number\n"
                            "rounds/2019/b.dcf  PERSON  P309  name  Confession\n"));
    }

    void wordsAndPathsAreDivided_data()
    {
        QTest::addColumn<QStringList>("call");
        QTest::addColumn<QStringList>("items");
        // clang-format off
        QTest::newRow("a directory has the name of the first word") << QStringList{ "religion", "rounds" } << QStringList{ "2009 P310", "b P309" };
        QTest::newRow("words until the first path")   << QStringList{ "mother", "number", "rounds/2009.dcf", "rounds" } << QStringList{ "2009 P309", "2009 P309" };
        QTest::newRow("all arguments are paths")      << QStringList{ "-e", "age", "rounds/2009.dcf", "rounds/2019" } << QStringList{ "b P311" };
        QTest::newRow("a word with a slash is first") << QStringList{ "mother/line", "rounds" } << QStringList{ "2009 P309" };
        QTest::newRow("code without a word")          << QStringList{ "--codes", "2", "religion", "rounds" } << QStringList{ "2009 P310", "b P309" };
        QTest::newRow("after two hyphens")            << QStringList{ "--", "-98", "rounds" } << QStringList();
        QTest::newRow("word that begins with a hyphen") << QStringList{ "--word=-mother", "rounds" } << QStringList{ "2009 P309" };
        // clang-format on
    }
    void wordsAndPathsAreDivided()
    {
        QFETCH(QStringList, call);
        QFETCH(QStringList, items);
        QVERIFY(QDir().mkpath(directory.filePath("religion")));
        directory.write("religion/c.dcf", dictionary(item("C", "C")));
        const Run run = find(QStringList{ "--format", "json" } + call);
        QCOMPARE(itemsOf(run.out), items);
        QCOMPARE(run.err, QByteArray());
    }

    void aCallWithoutAnAnswerIsOneLine_data()
    {
        QTest::addColumn<QStringList>("call");
        QTest::addColumn<QByteArray>("line");
        // clang-format off
        QTest::newRow("no argument")        << QStringList()                            << QByteArray("WORD... PATH is required");
        QTest::newRow("only a path")        << QStringList{ "rounds" }                  << noWord;
        QTest::newRow("only paths")         << QStringList{ "rounds/2009.dcf", "rounds" } << noWord;
        QTest::newRow("no path")            << QStringList{ "religion" }                << "there is no file or directory to search; " + nameWhat;
        QTest::newRow("mistyped directory") << QStringList{ "religion", "round" }       << "round: no such file or directory; " + nameWhat;
        QTest::newRow("empty path")         << QStringList{ "religion", "" }            << "'': no such file or directory; " + nameWhat;
        QTest::newRow("mistyped file")      << QStringList{ "religion", "2009.DCF" }    << QByteArray("2009.DCF: cannot be opened: No such file or directory");
        QTest::newRow("path with a slash")  << QStringList{ "religion", "rounds/2010" } << QByteArray("rounds/2010: cannot be opened: No such file or directory");
        QTest::newRow("no letter")          << QStringList{ "?", "rounds" }             << QByteArray("the word \"?\" has no letter or digit to find");
        QTest::newRow("empty word")         << QStringList{ "", "rounds" }              << QByteArray("the word \"\" has no letter or digit to find");
        QTest::newRow("wrong pattern")      << QStringList{ "--regex", "a[", "rounds" } << QByteArray("the pattern \"a[\" is invalid at character 3: missing terminating ] for character class");
        QTest::newRow("control characters") << QStringList{ "\x1b?", "rounds" }         << QByteArray("the word \"\xe2\x90\x9b?\" has no letter or digit to find");
        QTest::newRow("empty code")         << QStringList{ "--codes", " ", "rounds" }  << QByteArray("the code is empty");
        QTest::newRow("unknown place")      << QStringList{ "--in", "lable", "a", "rounds" } << QByteArray("--in: lable not in {name,label,value,note}; did you mean label?");
        QTest::newRow("standard input twice") << QStringList{ "a", "-", "-" }           << QByteArray("standard input can be read only once; name - once");
        QTest::newRow("sets of words")      << QStringList{ "--sets", "-e", "a", "rounds" } << QByteArray("--word excludes --sets");
        QTest::newRow("sets without a path") << QStringList{ "--sets", "religion" }     << QByteArray("religion: cannot be opened: No such file or directory");
        // clang-format on
    }
    void aCallWithoutAnAnswerIsOneLine()
    {
        QFETCH(QStringList, call);
        QFETCH(QByteArray, line);
        const Run run = find(call);
        QCOMPARE(run.err, "vanlayout: " + line + '\n');
        QCOMPARE(run.out, QByteArray());
        QCOMPARE(run.status, noAnswer);
    }

    void aDamagedLayoutIsOneLineAndTheOthersAreSearched()
    {
        directory.write("rounds/2010.sav", "$FL2 damaged");
        directory.write("rounds/2018.dcf", "{ \"fileType\": \"dictionary\", ");
        const Run run = find({ "religion", "rounds" });
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.out.count('\n'), 2);
        QCOMPARE(run.err.count('\n'), 2);
        QVERIFY(run.err.startsWith("vanlayout: rounds/2010.sav: the file is an SPSS file that cannot be read: "));
        QVERIFY(run.err.contains("\nvanlayout: rounds/2018.dcf: line 1: damaged JSON at byte "));
    }

    void filesOfADirectoryThatAreNoLayoutsAreSkipped_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("text") << "README.txt" << QByteArray("The surveys of the office.\n");
        QTest::newRow("PDF") << "questionnaire.pdf" << QByteArray("%PDF-1.4\n");
        QTest::newRow("CSV") << "data.csv" << QByteArray("a,b\n1,2\n");
        QTest::newRow("empty") << "empty.dcf" << QByteArray();
        QTest::newRow("JSON") << "package.json" << QByteArray("{ \"name\": \"x\" }\n");
        QTest::newRow("damaged JSON") << "lines.json" << QByteArray("{ \"a\": 1 }\n{ \"a\": 2 }\n");
        QTest::newRow("JSON list") << "list.json" << QByteArray("[ 1, 2 ]\n");
        QTest::newRow("CSPro file of another kind") << "a.ent" << QByteArray("{ \"fileType\": \"entry\" }");
        QTest::newRow("sections") << "settings.ini" << QByteArray("[Window]\nwidth=3\n");
    }
    void filesOfADirectoryThatAreNoLayoutsAreSkipped()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        directory.write("rounds/" + name, content);
        const Run run = find({ "religion", "rounds" });
        QCOMPARE(run.err, QByteArray());
        QCOMPARE(run.status, fine);
        const Run named = find({ "religion", "rounds/2009.dcf", "rounds/" + name });
        QCOMPARE(named.status, noAnswer);
        QCOMPARE(named.out.count('\n'), 1);
        QCOMPARE(named.err.count('\n'), 1);
        QVERIFY(named.err.startsWith("vanlayout: rounds/" + name.toUtf8() + ": "));
    }
    void layoutsThatTheCommandWroteAreSkippedInADirectory()
    {
        for (const QStringList &options : { QStringList(), QStringList("--pretty") }) {
            const Run shown
                = directory.run(QStringList{ "show", "--format", "json" } + options + QStringList("rounds/2009.dcf"));
            directory.write("rounds/shown.json", shown.out);
            const Run run = find({ "religion", "rounds" });
            QCOMPARE(run.err, QByteArray());
            QCOMPARE(run.out.count('\n'), 2);
        }
    }
    void aDirectoryWithoutALayoutIsNoAnswer()
    {
        QVERIFY(QDir().mkpath(directory.filePath("texts")));
        verifyComplaint(find({ "a", "texts" }), "texts: has no file to read\n");
        directory.write("texts/README", "text");
        verifyComplaint(find({ "a", "texts" }), "none of the files has a layout\n");
        QCOMPARE(find({ "religion", "texts", "rounds" }).status, fine);
    }
    void aDirectoryThatCannotBeReadIsOneLine()
    {
        QVERIFY(QDir().mkpath(directory.filePath("rounds/closed")));
        QVERIFY(::chmod(qPrintable(directory.filePath("rounds/closed")), 0) == 0);
        Run run;
        asOrdinaryUser([&] { run = find({ "religion", "rounds" }); });
        QVERIFY(::chmod(qPrintable(directory.filePath("rounds/closed")), 0700) == 0);
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.err, QByteArray("vanlayout: rounds/closed: the directory cannot be read\n"));
        QCOMPARE(run.out.count('\n'), 2);
    }
    void linksToDirectoriesAndHiddenFilesAreNotSearched()
    {
        QVERIFY(QFile::link(directory.filePath("rounds"), directory.filePath("rounds/2019/loop")));
        directory.write("rounds/.hidden.dcf", firstRound());
        const Run run = find({ "religion", "rounds" });
        QCOMPARE(run.status, fine);
        QCOMPARE(run.out.count('\n'), 2);
    }

    void outputIsWrittenToAFile()
    {
        const QByteArray printed = find({ "religion", "rounds" }).out;
        const Run run = find({ "-o", "hits", "religion", "rounds" });
        QCOMPARE(run.status, fine);
        QCOMPARE(run.out, QByteArray());
        QCOMPARE(directory.read("hits"), printed);
    }
    void theOutputOfAnEarlierSearchIsNotSearched()
    {
        directory.write("rounds/hits.dcf", firstRound());
        const Run run = find({ "-o", "rounds/hits.dcf", "religion", "rounds" });
        QCOMPARE(run.status, fine);
        QCOMPARE(directory.read("rounds/hits.dcf").count('\n'), 2);
    }
    void aFileToSearchIsNotOverwritten()
    {
        verifyComplaint(find({ "-o", "rounds/2009.dcf", "religion", "rounds/2009.dcf" }),
                        "rounds/2009.dcf: is a file to search, and is not overwritten\n");
        QCOMPARE(directory.read("rounds/2009.dcf"), firstRound());
    }

    void standardInputIsSearched()
    {
        QProcess tool;
        tool.setStandardInputFile(directory.filePath("rounds/2009.dcf"));
        const Run run = find({ "religion", "-" }, tool);
        QCOMPARE(run.out, QByteArray("-  PERSON  P310  label  Religion\n"));
        QCOMPARE(run.status, fine);
    }

    void resultsAreInTheOrderOfTheFiles()
    {
        constexpr int count = 300;
        QByteArray expected;
        for (int i = 0; i < count; ++i) {
            const QByteArray name = "many/" + QByteArray::number(1000 + i) + ".dcf";
            QVERIFY(QDir().mkpath(directory.filePath("many")));
            // The first files take longest.
            QByteArray items;
            for (int j = 0; j < 3 * (count - i); ++j)
                items += item("A" + QByteArray::number(j), "Item");
            directory.write(name, i % 10 == 3 ? QByteArray("{ \"levels\"") : dictionary(items + item("X", "Sex")));
            if (i % 10 != 3)
                expected += name + "  PERSON  X  label  Sex\n";
        }
        const Run run = find({ "sex", "many" });
        QCOMPARE(run.out, expected);
        QCOMPARE(run.err.count('\n'), count / 10);
        QStringList complaints;
        const QList<QByteArray> errors = run.err.split('\n');
        for (const QByteArray &line : errors)
            complaints.append(QString::fromUtf8(line));
        complaints.removeLast();
        QStringList sorted = complaints;
        sorted.sort();
        QCOMPARE(complaints, sorted);
        const Run again = find({ "sex", "many" });
        QCOMPARE(again.out, run.out);
        QCOMPARE(again.err, run.err);
    }

    void identicalValueSetsAreListedOnce()
    {
        directory.write("rounds/2019/b.dcf",
                        dictionary(item("X", "X", values("X_VS1", { "98;Refused", "2:5;Protestant", "1;Catholic" }))
                                   + item("Y", "Y", values("Y_VS1", { "1;Yes" }))));
        const Run run = find({ "--sets", "rounds" });
        QCOMPARE(run.status, fine);
        QCOMPARE(run.err, QByteArray());
        const QList<QByteArray> lines = run.out.split('\n');
        const QByteArray id = lines.first().left(12);
        QCOMPARE(run.out,
                 id
                     + "  3 values, 2 variables in 2 files\n"
                       "  1 Catholic; 2 to 5 Protestant; 98 Refused\n"
                       "  rounds/2009.dcf\n"
                       "    PERSON  P310  P310_VS1\n"
                       "  rounds/2019/b.dcf\n"
                       "    PERSON  X  X_VS1\n"
                       "\n"
                     + lines.at(7).left(12)
                     + "  1 value, 1 variable in 1 file\n"
                       "  1 Yes\n"
                       "  rounds/2019/b.dcf\n"
                       "    PERSON  Y  Y_VS1\n");
        const Run csv = find({ "--sets", "--format", "csv", "rounds" });
        QVERIFY(csv.out.startsWith("id,values,file,level,record,item,valueSet\r\n" + id
                                   + ",3,rounds/2009.dcf,QUEST,PERSON,P310,P310_VS1\r\n"));
        const Run json = find({ "--sets", "--format", "json", "rounds" });
        QCOMPARE(json.out.count('\n'), 2);
        const QJsonObject set = QJsonDocument::fromJson(json.out.split('\n').first()).object();
        QCOMPARE(set["id"].toString().toUtf8(), id);
        QCOMPARE(set["variables"].toArray().size(), 2);
    }
    void labelsOfValueSetsAreInTheLanguage()
    {
        QVERIFY(find({ "--sets", "rounds/2019" }).out.contains("\n  1 Catholic; 2 Muslim; 98 Refused\n"));
        QVERIFY(find({ "--sets", "--language", "FR", "rounds/2019" })
                    .out.contains("\n  1 Catholique; 2 Musulman; 98 Refus\n"));
    }
    void noValueSetIsStatus1()
    {
        directory.write("plain.dcf", dictionary(item("A", "A")));
        QCOMPARE(find({ "--sets", "plain.dcf" }).status, finding);
    }
    void allFormatsAreSearched()
    {
        const Run run = find({ "--format", "json", "--regex", ".", VAN_MADE_DATA });
        QVERIFY(run.out.contains(".sav\""));
        QVERIFY(run.out.contains(".dta\""));
        QCOMPARE(itemsOf(find({ "--format", "json", "p04_sex", VAN_EXAMPLES }).out),
                 QStringList({ "census P04_SEX", "census8 P04_SEX" }));
    }

    void tableSendsNoControlCharacters()
    {
        const QString label = "red\x1B[31m\tb" + QString(QChar(0x9B)) + "c" + QChar(0x202E);
        directory.write(
            "be\x1B[1mfore.dcf",
            inUtf16(
                QString::fromUtf8(dictionary(item("A", "LABEL", values("S", { "1;LABEL" })))).replace("LABEL", label)));
        for (const QStringList &call : { QStringList{ "red" }, QStringList{ "--sets" } }) {
            const Run run = find(call + QStringList("be\x1B[1mfore.dcf"));
            QCOMPARE(run.status, fine);
            QVERIFY(run.out.contains("red"));
            for (const QChar character : QString::fromUtf8(run.out)) {
                const ushort code = character.unicode();
                QVERIFY(code == '\n' || (code >= 0x20 && code < 0x7F) || (code >= 0xA0 && code != 0x202E));
            }
        }
    }
    void aLabelOfSeveralLinesIsOneLine()
    {
        directory.write("a.dcf",
                        "{ \"levels\": [ { \"name\": \"L\", \"ids\": { \"items\": [ { \"name\": \"A\", \"labels\": [ "
                        "{ \"text\": \"Sex\\n\\nof the head\" } ], \"length\": 1 } ] } } ] }");
        QCOMPARE(find({ "sex", "a.dcf" }).out, QByteArray("a.dcf  (ids)  A  label  Sex of the head\n"));
    }

    void aPatternThatNeedsTooManyStepsIsOneLine()
    {
        directory.write("a.dcf", dictionary(item("A", QByteArray(60, 'a') + '!') + item("B", "aaa")));
        const Run run = find({ "--regex", "^(a+)+$", "--in", "label", "a.dcf" });
        QCOMPARE(run.out, QByteArray("a.dcf  PERSON  B  label  aaa\n"));
        QCOMPARE(run.err,
                 QByteArray("vanlayout: a.dcf: 1 text was not searched to its end, because a pattern needs too many "
                            "steps; use a simpler one\n"));
        QCOMPARE(run.status, fine);
    }

    void fullDiskIsStatus2AndOneLine()
    {
        for (const char *format : { "table", "json", "csv" }) {
            verifyFullDiskIsReported(directory, { "find", "--format", format, "religion", "rounds" });
            verifyFullDiskIsReported(directory, { "find", "--sets", "--format", format, "rounds" });
        }
    }

    void helpNamesTheOptions()
    {
        verifyHelpDescribes("find",
                            { "--format", "--word", "--codes", "--in", "--any", "--regex", "--sets", "--language",
                              "--output", "WORD...", "PATH..." });
    }

private:
    /// "file item" of each line of JSON, the file without directory and extension.
    static QStringList itemsOf(const QByteArray &out)
    {
        const QList<QByteArray> lines = out.split('\n');
        QStringList items;
        for (const QByteArray &line : lines) {
            const QJsonObject hit = QJsonDocument::fromJson(line).object();
            if (!hit.isEmpty())
                items.append(QFileInfo(hit["file"].toString()).completeBaseName() + ' ' + hit["item"].toString());
        }
        return items;
    }

    Run find(const QStringList &arguments) const { return directory.run(QStringList("find") + arguments); }
    Run find(const QStringList &arguments, QProcess &tool) const
    {
        return directory.run(QStringList("find") + arguments, tool);
    }

    ToolDirectory directory;
};

QTEST_GUILESS_MAIN(VanlayoutFindTest)
#include "VanlayoutFindTest.moc"
