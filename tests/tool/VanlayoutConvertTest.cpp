#include "convert/StatisticalFile.h"
#include "read/Reader.h"
#include "support/ToolRun.h"

#include <QtTest>

using namespace vanlayout;

namespace
{

// A dictionary in the text form of CSPro 7.7, as CSPro writes it but with LF.
const QByteArray canonical
    = "[Dictionary]\nVersion=CSPro 7.7\nLabel=Survey\nName=D\nRecordTypeStart=0\nRecordTypeLen=0\nPositions=Relative\n"
      "ZeroFill=No\nDecimalChar=No\n\n[Level]\nLabel=Level\nName=L\n\n[IdItems]\n\n[Item]\nLabel=Id\nName=ID\nStart=1\n"
      "Len=3\nDataType=Numeric\n\n[Record]\nLabel=Record\nName=R\nRecordTypeValue=''\nRecordLen=5\n\n[Item]\n"
      "Label=Age\nName=AGE\nStart=4\nLen=2\nDataType=Numeric\n\n[ValueSet]\nLabel=Age\nName=AGE_VS1\n"
      "Value=0:98;Years|Ans\nValue=99;Unknown\nName=MISSING,Special\n";

QByteArray withCrLf(QByteArray text)
{
    return text.replace("\n", "\r\n");
}

QByteArray spssFile()
{
    Layout layout;
    Level level;
    Record record;
    for (const char *name : { "hhid", "age" }) {
        Item item;
        item.name = QString::fromLatin1(name);
        item.length = 3;
        item.measure = Measure::Scale;
        record.items.append(item);
    }
    level.records = { record };
    layout.levels = { level };
    return makeStatisticalFile(layout, StatisticalFormat::Sav, QString()).bytes;
}

} // namespace

/// Tests `vanlayout convert`, run as by a user. The written forms are tested in tests/convert/.
class VanlayoutConvertTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        directory.write("survey.dcf", canonical);
        directory.write("survey.sav", spssFile());
    }

    void aCanonicalTextKeepsItsBytes_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray mark = "\xEF\xBB\xBF";
        QTest::newRow("LF") << canonical;
        QTest::newRow("CR LF") << withCrLf(canonical);
        QTest::newRow("mark") << mark + canonical;
        QTest::newRow("mark and CR LF") << mark + withCrLf(canonical);
    }
    void aCanonicalTextKeepsItsBytes()
    {
        QFETCH(QByteArray, bytes);
        directory.write("survey.dcf", bytes);
        const Run run = directory.run({ "convert", "--to", "cspro-text", "survey.dcf" });
        QCOMPARE(run.err, QByteArray());
        QCOMPARE(run.status, fine);
        QCOMPARE(run.out, bytes);
    }

    // Files without the mark of UTF-8 get it when they are written in UTF-8 now.
    void encodingsOfTextForms_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("written");
        const auto version = [](const QByteArray &number, const QByteArray &label) {
            return QByteArray(canonical).replace("7.7", number).replace("=Survey", '=' + label);
        };
        const auto typeless = [](QByteArray text) { return text.replace("DataType=Numeric\n", ""); };
        const QByteArray mark = "\xEF\xBB\xBF";
        QTest::newRow("windows-1252") << version("7.7", "\xe9t\xe9") << mark + version("7.7", "été");
        QTest::newRow("windows-1252 of an old release")
            << typeless(version("4.1", "\xe9t\xe9")) << typeless(version("4.1", "\xe9t\xe9"));
        QTest::newRow("mark of an old release")
            << mark + typeless(version("4.1", "été")) << mark + typeless(version("4.1", "été"));
        QByteArray wide = "\xFF\xFE";
        for (const char character : canonical)
            wide += QByteArray(1, character) + '\0';
        QTest::newRow("UTF-16") << wide << mark + canonical;
    }
    void encodingsOfTextForms()
    {
        QFETCH(QByteArray, bytes);
        directory.write("survey.dcf", bytes);
        const Run run = directory.run({ "convert", "--to", "cspro-text", "survey.dcf" });
        QCOMPARE(run.err, QByteArray());
        QTEST(run.out, "written");
    }

    void statementsThatAreDamagedAreListed()
    {
        const QByteArray marked = "\xEF\xBB\xBF" + canonical;
        directory.write("survey.dcf",
                        QByteArray(marked).replace("=5", "=5x").replace("=Id", "=\xe9").replace("Char=No", "Char=0"));
        const Run run = directory.run({ "convert", "--to", "cspro-json", "survey.dcf" });
        QCOMPARE(run.status, finding);
        QCOMPARE(
            run.err,
            QByteArray(
                "vanlayout: survey.dcf: line 9: DecimalChar is \"0\", which is neither Yes nor No; it is read as No\n"
                "vanlayout: survey.dcf: line 18: the line has bytes that are not valid in its encoding; they were "
                "replaced by U+FFFD\n"
                "vanlayout: survey.dcf: L/R: line 28: RecordLen is \"5x\", which is not an integer; it is read as "
                "5\n"));
    }

    void theTextFormComesBackFromTheJsonForm()
    {
        QCOMPARE(directory.run({ "convert", "--to", "cspro-json", "survey.dcf", "-o", "survey8.dcf" }).status, fine);
        QVERIFY(directory.read("survey8.dcf").startsWith("{\n  \"software\": \"CSPro\", \n"));
        const Run run = directory.run({ "convert", "--to", "cspro-text", "survey8.dcf" });
        QCOMPARE(run.status, fine);
        QCOMPARE(run.out, QByteArray("\xEF\xBB\xBF" + withCrLf(canonical)));
        QCOMPARE(directory.run({ "diff", "survey.dcf", "survey8.dcf" }).status, fine);
    }

    void standardInputIsWrittenAsCSProDoes()
    {
        const Run run = runShell(directory, "\"$0\" convert --to cspro-text - < survey.dcf");
        QCOMPARE(run.status, fine);
        QCOMPARE(run.out, QByteArray("\xEF\xBB\xBF" + withCrLf(canonical)));
    }

    void statementsThatAreLostAreListed()
    {
        const Run run = directory.run({ "convert", "--to", "sav", "survey.dcf", "-o", "out.sav" });
        QCOMPARE(run.status, finding);
        QCOMPARE(run.err, QByteArray("vanlayout: survey.dcf: AGE: cannot hold the label of 0 to 98: \"Years\"\n"));
        QCOMPARE(run.out, QByteArray());
        const Layout layout = readLayout(directory.filePath("out.sav"));
        QCOMPARE(layout.format, Format::Spss);
        QCOMPARE(layout.levels.at(0).records.at(0).items.at(1).missing, (QVector<Range>{ { "99", QString() } }));
    }

    void statisticalFilesBecomeDictionaries()
    {
        const Run run
            = directory.run({ "convert", "--to", "cspro-text", "--ids", "HHID", "survey.sav", "-o", "made.dcf" });
        QCOMPARE(run.status, finding);
        QCOMPARE(run.err,
                 QByteArray("vanlayout: survey.sav: //hhid: cannot hold the name, which is now HHID\n"
                            "vanlayout: survey.sav: //age: cannot hold the name, which is now AGE\n"
                            "vanlayout: survey.sav: cannot hold format of hhid, age\n"
                            "vanlayout: survey.sav: cannot hold level of measurement of hhid, age\n"
                            "vanlayout: survey.sav: cannot hold display width of hhid, age\n"));
        const Layout layout = readLayout(directory.filePath("made.dcf"));
        QCOMPARE(layout.format, Format::CSProText);
        QCOMPARE(layout.problems.size(), 0);
        QCOMPARE(layout.levels.at(0).ids.at(0).name, QStringLiteral("HHID"));
        QCOMPARE(layout.levels.at(0).records.at(0).items.at(0).start, 4);
    }

    void severalIdsAreSeparatedByCommas()
    {
        const Run run = directory.run({ "convert", "--to", "cspro-json", "--ids", "age,hhid", "survey.sav" });
        QCOMPARE(run.status, finding);
        QVERIFY(run.out.indexOf("\"name\": \"AGE\"") < run.out.indexOf("\"name\": \"HHID\""));
    }

    void callsWithoutAnAnswer_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("no ids") << QStringList{ "--to", "cspro-text", "survey.sav" }
                                << QByteArray(
                                       "survey.sav: has no id items, which a dictionary must have; name them with "
                                       "--ids");
        QTest::newRow("unknown id") << QStringList{ "--to", "cspro-text", "--ids", "X", "survey.sav" }
                                    << QByteArray("survey.sav: has no variable \"X\", which --ids names");
        QTest::newRow("ids of a dictionary")
            << QStringList{ "--to", "cspro-json", "--ids", "ID", "survey.dcf" }
            << QByteArray("survey.dcf: has id items already; --ids is for statistical files");
        QTest::newRow("ids for a statistical file")
            << QStringList{ "--to", "dta", "--ids", "ID", "survey.dcf" }
            << QByteArray("survey.dcf: a statistical file has no id items; --ids is for cspro-text and cspro-json");
        for (const char *target : { "cspro-text", "cspro-json" })
            QTest::addRow("language for %s", target)
                << QStringList{ "--to", target, "--language", "FR", "survey.dcf" }
                << QByteArray("survey.dcf: is written with all of its languages; --language is for sav and dta");
        QTest::newRow("no such directory")
            << QStringList{ "--to", "cspro-json", "survey.dcf", "-o", "absent/out.dcf" }
            << QByteArray("absent/out.dcf: cannot be written: No such file or directory");
        QTest::newRow("no such file") << QStringList{ "--to", "dta", "absent.dcf" }
                                      << QByteArray("absent.dcf: cannot be opened: No such file or directory");
        QTest::newRow("own input") << QStringList{ "--to", "cspro-text", "survey.dcf", "-o", "survey.dcf" }
                                   << QByteArray("survey.dcf: is the file to read, and is not overwritten");
        QTest::newRow("no target") << QStringList{ "survey.dcf" } << QByteArray("--to is required");
        QTest::newRow("unknown target") << QStringList{ "--to", "cspro", "survey.dcf" }
                                        << QByteArray("--to: cspro not in {cspro-text,cspro-json,sav,dta}");
    }
    void callsWithoutAnAnswer()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, line);
        const Run run = directory.run(QStringList{ "convert" } + arguments);
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.out, QByteArray());
        QVERIFY2(run.err.startsWith("vanlayout: " + line), run.err.constData());
        QCOMPARE(run.err.count('\n'), 1);
        QCOMPARE(directory.read("survey.dcf"), canonical);
    }

    void unknownLanguageIsRefused()
    {
        directory.write("two.dcf", QByteArray(canonical).replace("\n[Level]", "\n[Languages]\nEN=English\n\n[Level]"));
        const Run run = directory.run({ "convert", "--to", "sav", "--language", "FR", "two.dcf" });
        QCOMPARE(run.status, noAnswer);
        QVERIFY2(run.err.contains("FR"), run.err.constData());
    }

private:
    ToolDirectory directory;
};

QTEST_GUILESS_MAIN(VanlayoutConvertTest)

#include "VanlayoutConvertTest.moc"
