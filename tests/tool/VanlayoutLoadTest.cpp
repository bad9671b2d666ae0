#include "load/Load.h"
#include "support/MadeDatabase.h"
#include "support/ToolRun.h"

#include <QtTest>

#include <QDir>

namespace
{

// A dictionary of the record R with the id ID and the item X.
QByteArray dictionary(const QByteArray &name = "D", const QByteArray &item = QByteArray(),
                      const QByteArray &rest = QByteArray())
{
    return "[Dictionary]\nVersion=CSPro 7.7\nLabel=Survey\nName=" + name + "\nRecordTypeStart=1\nRecordTypeLen=1\n"
        + rest
        + "\n[Level]\nName=L\n\n[IdItems]\n\n[Item]\nName=ID\nStart=2\nLen=3\n\n[Record]\nName=R\nRecordTypeValue='R'\n"
          "\n[Item]\nName=X\nStart=5\nLen=2\n"
        + item;
}

const QByteArray secondRecord = "\n[Record]\nName=S\nRecordTypeValue='S'\n\n[Item]\nName=Y\nStart=5\nLen=2\n";

} // namespace

/// Tests `vanlayout load`, run as by a user. The programs themselves are run in tests/load/.
class VanlayoutLoadTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { directory.write("survey.dcf", dictionary() + secondRecord); }

    void severalFilesAreWrittenTogether()
    {
        QVERIFY(QDir(directory.filePath(QStringLiteral("."))).mkpath(QStringLiteral("part/S.dct")));
        directory.write("part/D.do", "earlier");
        const Run run = directory.run({ "load", "--to", "stata", "-o", "part", "survey.dcf" });
        QCOMPARE(run.status, noAnswer);
        QVERIFY2(run.err.contains("S.dct: cannot be written: "), run.err.constData());
        QCOMPARE(run.err.count('\n'), 1);
        QCOMPARE(directory.read("part/D.do"), QByteArray("earlier"));
        QCOMPARE(QDir(directory.filePath(QStringLiteral("part"))).entryList(QDir::Files, QDir::Name),
                 QStringList("D.do"));
    }

    void everyTargetHasAProgram_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QStringList>("files");
        QTest::newRow("sqlite") << "sqlite" << QStringList{ "D.sql" };
        QTest::newRow("postgresql") << "postgresql" << QStringList{ "D.sql" };
        QTest::newRow("duckdb") << "duckdb" << QStringList{ "D.sql" };
        QTest::newRow("dask") << "dask" << QStringList{ "D.py", "D_dask.py" };
        QTest::newRow("r") << "r" << QStringList{ "D.R" };
        QTest::newRow("pandas") << "pandas" << QStringList{ "D.py" };
        QTest::newRow("spss") << "spss" << QStringList{ "D.sps" };
        QTest::newRow("stata") << "stata" << QStringList{ "D.do", "R.dct", "S.dct" };
        QTest::newRow("sas") << "sas" << QStringList{ "D.sas" };
    }
    void everyTargetHasAProgram()
    {
        QFETCH(QString, target);
        QFETCH(QStringList, files);
        QVERIFY(vanlayout::loadTargetOf(target).has_value());
        const QString output = "made/" + target;
        const Run run = directory.run({ "load", "--to", target, "-o", output, "--data", "my data.dat", "survey.dcf" });
        QCOMPARE(run.err, QByteArray());
        QCOMPARE(run.out, QByteArray());
        QCOMPARE(run.status, fine);
        QCOMPARE(QDir(directory.filePath(output)).entryList(QDir::Files, QDir::Name), files);
        const QByteArray program = directory.read(output + '/' + files.constFirst());
        QVERIFY2(program.contains("vanlayout"), program.constData());
        QVERIFY2(program.contains("my data.dat"), program.constData());
        QVERIFY2(program.contains("Survey"), program.constData());
    }

    void programOfOneFileGoesToStandardOutput()
    {
        directory.run({ "load", "--to", "sqlite", "-o", "out", "survey.dcf" });
        const QByteArray program = directory.read("out/D.sql");
        QVERIFY(!program.isEmpty());
        for (const QStringList &output : { QStringList(), QStringList{ "-o", "-" } }) {
            const Run run = directory.run(QStringList{ "load", "--to", "sqlite" } + output + QStringList("survey.dcf"));
            QCOMPARE(run.status, fine);
            QCOMPARE(run.err, QByteArray());
            QCOMPARE(run.out, program);
        }
    }

    void standardInputIsRead()
    {
        QProcess tool;
        tool.setStandardInputFile(directory.filePath("survey.dcf"));
        const Run run = directory.run({ "load", "--to", "sqlite", "-" }, tool);
        QCOMPARE(run.status, fine);
        QCOMPARE(run.out, directory.run({ "load", "--to", "sqlite", "survey.dcf" }).out);
    }

    void dictionaryOfADataFileIsUsed()
    {
        makeDatabase(directory.filePath("survey.csdb"), dictionary());
        const Run run = directory.run({ "load", "--to", "sqlite", "survey.csdb" });
        QCOMPARE(run.err, QByteArray());
        QCOMPARE(run.status, fine);
        QVERIFY(run.out.contains("CREATE TABLE main.\"R\""));
    }

    void dataFileIsNotOpened()
    {
        const Run run = directory.run({ "load", "--to", "sqlite", "--data", "absent.dat", "survey.dcf" });
        QCOMPARE(run.status, fine);
        QVERIFY(run.out.contains("\"./absent.dat\""));
        QVERIFY(directory.run({ "load", "--to", "sqlite", "survey.dcf" }).out.contains("\"./D.dat\""));
    }

    void optionsReachTheProgram()
    {
        const auto program = [&](const QStringList &options) {
            return directory.run(QStringList{ "load", "--to", "sqlite" } + options + QStringList("many.dcf")).out;
        };
        directory.write("many.dcf",
                        dictionary("D", "Occurrences=12\n\n[ValueSet]\nName=V\nValue=9;Unknown\nName=MISSING,Special\n",
                                   "\n[Languages]\nEN=English\nFR=French\n")
                            + secondRecord);
        QVERIFY(program({}).contains("\"X_01\"") && program({}).contains("\"Y\""));
        QVERIFY(program({ "--occurrences", "long" }).contains("\"R_X\""));
        QVERIFY(!program({ "--records", "R" }).contains("\"Y\""));
        QVERIFY(program({ "--records", "R,S" }).contains("\"Y\""));
        QVERIFY(program({ "--records", "S", "--records", "R" }).contains("\"Y\""));
        QVERIFY(program({}).contains("THEN NULL") && !program({ "--specials", "keep" }).contains("= 9 THEN NULL"));
        QVERIFY(program({ "--encoding", "windows-1252" }).contains("8364"));
        QCOMPARE(program({ "--language", "fr" }), program({ "--language", "FR" }));
    }

    void nameOfTheDictionaryNamesNoPath()
    {
        directory.write("path.dcf", dictionary("../../x y"));
        const Run run = directory.run({ "load", "--to", "sqlite", "-o", "in/here", "path.dcf" });
        QCOMPARE(run.status, fine);
        QCOMPARE(QDir(directory.filePath("in/here")).entryList(QDir::Files), QStringList("______x_y.sql"));
    }

    void dictionaryIsNotOverwritten()
    {
        directory.write("D.sql", dictionary());
        verifyComplaint(directory.run({ "load", "--to", "sqlite", "-o", ".", "D.sql" }), "./D.sql: is the file");
        QCOMPARE(directory.read("D.sql"), dictionary());
    }

    void fileThatBecomesTooLargeIsLeftAsItWas()
    {
        QVERIFY(QDir(directory.path()).mkpath("small"));
        directory.write("small/D.sql", "before");
        // One block of 512 bytes or of 1024: far less than a program has.
        const Run run = runShell(directory, "trap '' XFSZ; ulimit -f 1; \"$0\" load --to sqlite -o small survey.dcf");
        verifyComplaint(run, "small/D.sql: cannot be written: File too large\n");
        QCOMPARE(directory.read("small/D.sql"), QByteArray("before"));
        QCOMPARE(QDir(directory.filePath("small")).entryList(QDir::Files), QStringList("D.sql"));
    }

    void fullDiskIsReported() { verifyFullDiskIsReported(directory, { "load", "--to", "sqlite", "survey.dcf" }); }

    void failureIsStatus2AndOneLine_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QByteArray>("problem");
        const QStringList sqlite{ "--to", "sqlite" };
        const QStringList none;
        const auto row = [&](const char *name, const QByteArray &content, const QStringList &options,
                             const QByteArray &problem) { QTest::newRow(name) << content << options << problem; };
        row("no dictionary", "text", sqlite, "file.dcf: ");
        row("empty", "", sqlite, "file.dcf: ");
        row("no target", dictionary(), none, "--to is required\n");
        row("unknown target", dictionary(), { "--to", "excel" }, "--to: excel not in ");
        row("several targets", dictionary(), { "--to", "r,pandas" }, "--to: r,pandas not in ");
        row("two targets", dictionary(), { "--to", "r", "--to", "pandas" }, "");
        row("unknown encoding", dictionary(), sqlite + QStringList{ "--encoding", "utf-16" },
            "--encoding: utf-16 not in ");
        row("unknown form", dictionary(), sqlite + QStringList{ "--occurrences", "tall" },
            "--occurrences: tall not in ");
        row("unknown language", dictionary(), sqlite + QStringList{ "--language", "FR" },
            "file.dcf: has no language FR; it declares no languages\n");
        row("unknown record", dictionary(), sqlite + QStringList{ "--records", "R,r" },
            "file.dcf: has no record r; it has R\n");
        row("two equal record types", dictionary() + QByteArray(secondRecord).replace("'S'", "'R'"), sqlite,
            "file.dcf: has two records with the record type 'R': R and S\n");
        row("item without length", dictionary("D", "\n[Item]\nName=Z\nStart=7\nLen=0\n"), sqlite,
            "file.dcf: has an item without columns: Z\n");
        row("huge occurrences", dictionary("D", "Occurrences=2000000000\n"), sqlite,
            "file.dcf: has more than 1000000 variables, counting each occurrence\n");
        row("too wide for the target", dictionary("D", "Occurrences=5000\n"), sqlite,
            "file.dcf: has 5001 columns in the table R, and sqlite holds 1900; use --occurrences long, or leave the "
            "record "
            "out with --records\n");
        row("several files", dictionary(), { "--to", "dask" },
            "several files are written into a directory; name it with -o DIRECTORY\n");
        row("output without a name", dictionary(), sqlite + QStringList{ "-o", "" }, "'': no such directory\n");
        row("output is a file", dictionary(), sqlite + QStringList{ "-o", "survey.dcf" },
            "survey.dcf: is not a directory; a program is written into one\n");
        row("output below a file", dictionary(), sqlite + QStringList{ "-o", "survey.dcf/x" },
            "survey.dcf/x: the directory cannot be created\n");
    }
    void failureIsStatus2AndOneLine()
    {
        QFETCH(QByteArray, content);
        QFETCH(QStringList, options);
        QFETCH(QByteArray, problem);
        directory.write("file.dcf", content);
        const Run run = directory.run(QStringList("load") + options + QStringList("file.dcf"));
        verifyComplaint(run, problem);
        QCOMPARE(run.out, QByteArray());
    }

    void statisticalFileHoldsItsData()
    {
        const Run run = directory.run({ "load", "--to", "r", VAN_MADE_DATA "/types.sav" });
        verifyComplaint(run, VAN_MADE_DATA "/types.sav: already holds its data\n");
        QCOMPARE(run.out, QByteArray());
    }

    void failureMakesNoDirectory()
    {
        directory.run({ "load", "--to", "sqlite", "--records", "T", "-o", "unmade", "survey.dcf" });
        QVERIFY(!QDir(directory.filePath("unmade")).exists());
    }

private:
    ToolDirectory directory;
};

QTEST_GUILESS_MAIN(VanlayoutLoadTest)
#include "VanlayoutLoadTest.moc"
