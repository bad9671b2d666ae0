#include "support/Corpus.h"
#include "support/OrdinaryUser.h"
#include "support/ReadPipe.h"
#include "support/ToolRun.h"

#include <QtTest>

#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamReader>

#include <sys/stat.h>

namespace
{

// A dictionary in the text form with a label and an item with this name.
QByteArray dictionary(const QByteArray &item, const QByteArray &rest = QByteArray())
{
    return "[Dictionary]\nVersion=CSPro 7.7\nLabel=Survey\nName=D\nRecordTypeStart=0\nRecordTypeLen=0\n" + rest
        + "\n[Level]\nName=L\n\n[Record]\nName=R\nRecordTypeValue=\n\n[Item]\nLabel=A label\nName=" + item
        + "\nStart=1\nLen=2\n";
}

bool isWholeXml(const QByteArray &document)
{
    QXmlStreamReader xml(document);
    while (!xml.atEnd())
        xml.readNext();
    return !xml.hasError();
}

bool isWholeJson(const QByteArray &document)
{
    return QJsonDocument::fromJson(document).isObject();
}

} // namespace

/// Tests `vanlayout export`, run as by a user. The content of the forms is tested in the tests of their writers.
class VanlayoutExportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { directory.write("survey.dcf", dictionary("X")); }

    void everyFormIsWritten_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QByteArray>("words");
        QTest::newRow("ddi") << "ddi" << QByteArray("<codeBook");
        QTest::newRow("csvw") << "csvw" << QByteArray("http://www.w3.org/ns/csvw");
        QTest::newRow("json-schema") << "json-schema" << QByteArray("https://json-schema.org/draft/2020-12/schema");
        QTest::newRow("frictionless") << "frictionless" << QByteArray("datapackage");
        QTest::newRow("markdown") << "markdown" << QByteArray("# Survey\n");
        QTest::newRow("csv") << "csv" << QByteArray("A label");
    }
    void everyFormIsWritten()
    {
        QFETCH(QString, target);
        QFETCH(QByteArray, words);
        const Run run = exported(target, "survey.dcf");
        QCOMPARE(run.status, fine);
        QCOMPARE(run.err, QByteArray());
        QVERIFY2(run.out.contains(words), run.out.constData());
        QVERIFY2(run.out.contains("A label"), run.out.constData());
        QVERIFY(run.out.endsWith('\n'));
    }

    void everyFormOfRealFilesIsWhole_data()
    {
        QTest::addColumn<QString>("file");
        for (const char *file : { "census.dcf", "census8.dcf", "subitems.dcf", "occurrences.dcf" })
            QTest::newRow(file) << QStringLiteral(VAN_EXAMPLES "/") + file;
        QTest::newRow("SPSS") << QStringLiteral(VAN_MADE_DATA "/types.sav");
        QTest::newRow("Stata") << QStringLiteral(VAN_MADE_DATA "/types-118.dta");
        for (const char *kind : { "cspro-text", "cspro-json", "spss", "stata" }) {
            for (const QString &file : corpusFiles(kind).mid(0, 5))
                QTest::addRow("%s/%s", kind, qPrintable(QFileInfo(file).fileName())) << file;
        }
    }
    void everyFormOfRealFilesIsWhole()
    {
        QFETCH(QString, file);
        for (const char *target : { "ddi", "csvw", "json-schema", "frictionless", "markdown", "csv" }) {
            const Run run = exported(target, file);
            QCOMPARE(run.status, fine);
            QCOMPARE(run.err, QByteArray());
            QVERIFY2(target != QByteArray("ddi") || isWholeXml(run.out), target);
            const bool isJson = run.out.startsWith('{');
            QVERIFY2(!isJson || isWholeJson(run.out), target);
            QVERIFY2(!run.out.isEmpty(), target);
        }
    }

    void theVariableOfTheReadmeIsThatOfTheExample()
    {
        QFile readme(QStringLiteral(VAN_EXAMPLES "/../README.md"));
        QVERIFY(readme.open(QIODevice::ReadOnly));
        const QByteArray page = readme.readAll();
        const int begin = page.indexOf("```xml\n") + 7;
        const QByteArray shown = page.mid(begin, page.indexOf("```", begin) - begin);
        QVERIFY2(shown.startsWith("<var ID=\"P04_SEX\""), shown.constData());
        QByteArray document = exported("ddi", QStringLiteral(VAN_EXAMPLES "/census.dcf")).out;
        QVERIFY2(document.replace("\n    ", "\n").contains(shown), shown.constData());
    }

    void outputGoesIntoAFile()
    {
        const QByteArray printed = exported("ddi", "survey.dcf").out;
        const Run run = directory.run({ "export", "--to", "ddi", "-o", "survey.xml", "survey.dcf" });
        QCOMPARE(run.status, fine);
        QCOMPARE(run.out, QByteArray());
        QCOMPARE(run.err, QByteArray());
        QCOMPARE(directory.read("survey.xml"), printed);
        QCOMPARE(directory.run({ "export", "--to", "ddi", "-o", "-", "survey.dcf" }).out, printed);
    }

    void standardInputIsRead()
    {
        QProcess filter;
        filter.setStandardInputFile(directory.filePath("survey.dcf"));
        QCOMPARE(directory.run({ "export", "--to", "ddi", "-", "-o", "piped/" }, filter).status, fine);
        QCOMPARE(directory.read("piped/layout.xml"), exported("ddi", "survey.dcf").out);
        QProcess tool;
        tool.setStandardInputFile(directory.filePath("survey.dcf"));
        QCOMPARE(directory.run({ "export", "--to", "markdown", "-" }, tool).status, fine);
    }

    void aFileThatBecomesTooLargeIsLeftAsItWas()
    {
        directory.write("page.html", "before");
        // One block of 512 bytes or of 1024: far less than a page has.
        const Run run = runShell(directory, "trap '' XFSZ; ulimit -f 1; \"$0\" codebook survey.dcf -o page.html");
        verifyComplaint(run, "page.html: cannot be written: File too large\n");
        QCOMPARE(directory.read("page.html"), QByteArray("before"));
        QCOMPARE(QDir(directory.path()).entryList({ "page.html*" }, QDir::Files), QStringList("page.html"));
    }

    void failureLeavesTheFileThatWasThere()
    {
        directory.write("survey.xml", "before");
        directory.write("survey.dcf", "no dictionary");
        QCOMPARE(directory.run({ "export", "--to", "ddi", "-o", "survey.xml", "survey.dcf" }).status, noAnswer);
        QCOMPARE(directory.read("survey.xml"), QByteArray("before"));
    }

    void pipeIsWrittenToAndStays()
    {
        const QByteArray printed = exported("csvw", "survey.dcf").out;
        QVERIFY(!printed.isEmpty());
        QFile::remove(directory.filePath("pipe"));
        ReadPipe pipe(directory.filePath("pipe"));
        QVERIFY2(pipe.isRead(), "no pipe can be made, or there is no cat");
        const Run run = directory.run({ "export", "--to", "csvw", "-o", "pipe", "survey.dcf" });
        QVERIFY(pipe.isThere());
        QCOMPARE(run.status, fine);
        QCOMPARE(pipe.taken(patience), printed);
    }

    void fullDiskIsStatus2AndOneLine_data()
    {
        QTest::addColumn<QString>("target");
        for (const char *target : { "ddi", "csvw", "json-schema", "frictionless", "markdown", "csv" })
            QTest::newRow(target) << target;
    }
    void fullDiskIsStatus2AndOneLine()
    {
        QFETCH(QString, target);
        verifyFullDiskIsReported(directory, { "export", "--to", target, "survey.dcf" });
    }

    void titleIsTheCallersOrTheDictionarysOwn_data()
    {
        QTest::addColumn<QString>("target");
        for (const char *target : { "ddi", "csvw", "json-schema", "frictionless", "markdown" })
            QTest::newRow(target) << target;
    }
    void titleIsTheCallersOrTheDictionarysOwn()
    {
        QFETCH(QString, target);
        QVERIFY(exported(target, "survey.dcf").out.contains("Survey"));
        const Run titled = directory.run({ "export", "--to", target, "--title", "Häuser 2031", "survey.dcf" });
        QVERIFY2(titled.out.contains("Häuser 2031"), titled.out.constData());
    }

    void aTitleIsOnlyText()
    {
        const Run titled = directory.run({ "export", "--to", "ddi", "--title", "Häuser & Höfe", "survey.dcf" });
        QVERIFY2(titled.out.contains("<titl>Häuser &amp; Höfe</titl>"), titled.out.constData());
    }

    void profileAddsWhatItsReadersNeed()
    {
        const QByteArray plain = exported("ddi", "survey.dcf").out;
        QCOMPARE(directory.run({ "export", "--to", "ddi", "--profile", "plain", "survey.dcf" }).out, plain);
        const QByteArray ipums = directory.run({ "export", "--to", "ddi", "--profile", "ipums", "survey.dcf" }).out;
        QVERIFY(!plain.contains("<filePlac"));
        QVERIFY2(ipums.contains("<filePlac"), ipums.constData());
    }

    void excelGetsAByteOrderMark()
    {
        const QByteArray plain = exported("csv", "survey.dcf").out;
        const QByteArray marked = directory.run({ "export", "--to", "csv", "--excel", "survey.dcf" }).out;
        QVERIFY(!plain.startsWith("\xEF\xBB\xBF"));
        QCOMPARE(marked, "\xEF\xBB\xBF" + plain);
    }

    void labelsAreInTheLanguageThatIsAskedFor_data()
    {
        QTest::addColumn<QString>("target");
        for (const char *target : { "json-schema", "frictionless", "markdown", "csv" })
            QTest::newRow(target) << target;
    }
    void labelsAreInTheLanguageThatIsAskedFor()
    {
        QFETCH(QString, target);
        const QByteArray languages = "\n[Languages]\nEN=English\nFR=Fran\u00E7ais\n";
        directory.write("survey.dcf", dictionary("X", languages).replace("A label", "House|Maison"));
        const QStringList call{ "export", "--to", target };
        QVERIFY(directory.run(call + QStringList("survey.dcf")).out.contains("House"));
        const QByteArray french = directory.run(call + QStringList{ "--language", "FR", "survey.dcf" }).out;
        QVERIFY2(french.contains("Maison") && !french.contains("House"), french.constData());
        const Run absent = directory.run(call + QStringList{ "--language", "ES", "survey.dcf" });
        verifyComplaint(absent, "survey.dcf: has no language ES; it has EN, FR\n");
    }

    void occurrencesAreBoundedWhereEachHasAColumn_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<int>("status");
        for (const char *target : { "ddi", "csvw", "json-schema", "frictionless" })
            QTest::newRow(target) << target << noAnswer;
        for (const char *target : { "markdown", "csv" })
            QTest::newRow(target) << target << fine;
    }
    void occurrencesAreBoundedWhereEachHasAColumn()
    {
        QFETCH(QString, target);
        QFETCH(int, status);
        directory.write("many.dcf", dictionary("X") + "Occurrences=2000000000\n");
        const Run run = exported(target, "many.dcf");
        QCOMPARE(run.status, status);
        QCOMPARE(run.out.isEmpty(), status == noAnswer);
    }

    void anOptionThatTheFormDoesNotTakeIsRefused_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("problem");
        QTest::newRow("--excel") << QStringList{ "--to", "ddi", "--excel" }
                                 << QByteArray("--excel can only be used with --to csv\n");
        QTest::newRow("--profile") << QStringList{ "--to", "csvw", "--profile", "ipums" }
                                   << QByteArray("--profile can only be used with --to ddi\n");
        QTest::newRow("--title") << QStringList{
            "--to", "csv", "--title", "T"
        } << QByteArray("--title can only be used with --to ddi, csvw, json-schema, frictionless and markdown\n");
        QTest::newRow("--language") << QStringList{
            "--to", "ddi", "--language", "EN"
        } << QByteArray("--language can only be used with --to json-schema, frictionless, markdown and csv\n");
    }
    void anOptionThatTheFormDoesNotTakeIsRefused()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, problem);
        const Run run = directory.run(QStringList("export") + arguments + QStringList("survey.dcf"));
        verifyComplaint(run, problem);
        QCOMPARE(run.out, QByteArray());
    }

    void noAnswerIsStatus2AndOneLine_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("problem");
        const QStringList ddi{ "--to", "ddi" };
        QTest::newRow("absent") << ddi + QStringList("absent.dcf") << QByteArray("absent.dcf: cannot be opened: ");
        QTest::newRow("directory") << ddi + QStringList(".")
                                   << QByteArray(".: is a directory; add -r to read the files in it\n");
        QTest::newRow("empty name") << ddi + QStringList("") << QByteArray("'': ");
        QTest::newRow("empty file") << ddi + QStringList("empty.dcf") << QByteArray("empty.dcf: ");
        QTest::newRow("no target") << QStringList("survey.dcf") << QByteArray();
        QTest::newRow("unknown target") << QStringList{ "--to", "sas", "survey.dcf" }
                                        << QByteArray("--to: sas not in ");
        QTest::newRow("no file") << ddi << QByteArray();
        QTest::newRow("two files without a directory")
            << ddi + QStringList{ "survey.dcf", "survey.dcf" }
            << QByteArray("several files are written into a directory; name it with -o DIRECTORY\n");
        QTest::newRow("two files to standard output")
            << ddi + QStringList{ "-o", "-", "survey.dcf", "survey.dcf" }
            << QByteArray("several files are written into a directory; name it with -o DIRECTORY\n");
        QTest::newRow("output without a name")
            << ddi + QStringList{ "-o", "", "survey.dcf" } << QByteArray("'': no such file\n");
        QTest::newRow("full disk") << ddi + QStringList{ "-o", "/dev/full", "survey.dcf" }
                                   << QByteArray("/dev/full: cannot be written: No space left on device\n");
        QTest::newRow("standard input twice") << ddi + QStringList{ "-", "-", "-o", "twice" }
                                              << QByteArray("standard input can be read only once; name - once\n");
        QTest::newRow("two files into a file")
            << ddi + QStringList{ "-o", "survey.dcf", "survey.dcf", "survey.dcf" }
            << QByteArray("survey.dcf: is not a directory; several files are written into one\n");
        QTest::newRow("output in no directory")
            << ddi + QStringList{ "-o", "absent/x", "survey.dcf" } << QByteArray("absent/x: cannot be written: ");
        QTest::newRow("output is the file itself")
            << ddi + QStringList{ "-o", "./survey.dcf", "survey.dcf" } << QByteArray("./survey.dcf: is the file");
        QTest::newRow("too many occurrences")
            << ddi + QStringList("many.dcf")
            << QByteArray("many.dcf: has more than 1000000 variables, counting each occurrence\n");
    }
    void noAnswerIsStatus2AndOneLine()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, problem);
        directory.write("empty.dcf", "");
        directory.write("many.dcf", dictionary("X") + "Occurrences=2000000000\n");
        const Run run = directory.run(QStringList("export") + arguments);
        verifyComplaint(run, problem);
        QCOMPARE(run.out, QByteArray());
        QCOMPARE(directory.read("survey.dcf"), dictionary("X"));
    }

    void severalFilesAreWrittenIntoADirectory()
    {
        directory.write("b.dcf", dictionary("B"));
        const Run run = directory.run({ "export", "--to", "ddi", "survey.dcf", "b.dcf", "-o", "new/forms" });
        QCOMPARE(run.status, fine);
        QCOMPARE(run.out + run.err, QByteArray());
        QCOMPARE(directory.read("new/forms/survey.xml"), exported("ddi", "survey.dcf").out);
        QCOMPARE(directory.read("new/forms/b.xml"), exported("ddi", "b.dcf").out);
    }

    void oneFileIsWrittenIntoADirectoryThatIsThere()
    {
        QVERIFY(QDir(directory.path()).mkpath("there"));
        QCOMPARE(directory.run({ "export", "--to", "csvw", "survey.dcf", "-o", "there" }).status, fine);
        QCOMPARE(directory.read("there/survey.csv-metadata.json"), exported("csvw", "survey.dcf").out);
        QCOMPARE(directory.run({ "export", "--to", "markdown", "survey.dcf", "-o", "made/" }).status, fine);
        QVERIFY(!directory.read("made/survey.md").isEmpty());
        directory.write(".dcf", dictionary("X"));
        QCOMPARE(directory.run({ "export", "--to", "markdown", ".dcf", "-o", "made/" }).status, fine);
        QVERIFY(!directory.read("made/.dcf.md").isEmpty());
    }

    void filesOfOneNameAreNumbered()
    {
        QVERIFY(QDir(directory.path()).mkpath("a") && QDir(directory.path()).mkpath("b"));
        directory.write("a/Survey.dcf", dictionary("A"));
        directory.write("b/survey.sav", dictionary("B"));
        const Run run
            = directory.run({ "export", "--to", "ddi", "survey.dcf", "a/Survey.dcf", "b/survey.sav", "-o", "out" });
        QCOMPARE(run.status, fine);
        QVERIFY(directory.read("out/survey.xml").contains("name=\"X\""));
        QVERIFY(directory.read("out/Survey-2.xml").contains("name=\"A\""));
        QVERIFY(directory.read("out/survey-3.xml").contains("name=\"B\""));
    }

    void noFileThatIsReadIsWrittenOver()
    {
        QVERIFY(QDir(directory.path()).mkpath("same"));
        directory.write("same/a.dcf", dictionary("A"));
        directory.write("same/a.xml", dictionary("B"));
        const Run run = directory.run({ "export", "--to", "ddi", "same/a.dcf", "same/a.xml", "-o", "same" });
        QCOMPARE(run.status, fine);
        QCOMPARE(directory.read("same/a.xml"), dictionary("B"));
        QVERIFY(directory.read("same/a-2.xml").contains("name=\"A\""));
        QVERIFY(directory.read("same/a-3.xml").contains("name=\"B\""));
    }

    void aFileThatIsReadInPartIsOneLine()
    {
        const QByteArray whole = [] {
            QFile file(QStringLiteral(VAN_MADE_DATA "/survey.dta"));
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        }();
        directory.write("cut.dta", whole.left(whole.size() - 30));
        const Run run = exported("markdown", "cut.dta");
        QCOMPARE(run.status, fine);
        QVERIFY(!run.out.isEmpty());
        QVERIFY2(run.err.startsWith("vanlayout: cut.dta: reading ended "), run.err.constData());
        QCOMPARE(run.err.count('\n'), 1);
    }

    void aFileThatCannotBeReadIsOneLineAndTheRestIsWritten()
    {
        directory.write("bad.dcf", "no dictionary");
        const Run run
            = directory.run({ "export", "--to", "ddi", "bad.dcf", "survey.dcf", "absent.dcf", "-o", "partly" });
        QCOMPARE(run.status, noAnswer);
        const QList<QByteArray> lines = run.err.trimmed().split('\n');
        QCOMPARE(lines.size(), 2);
        QVERIFY2(lines.at(0).startsWith("vanlayout: bad.dcf: "), run.err.constData());
        QVERIFY2(lines.at(1).startsWith("vanlayout: absent.dcf: "), run.err.constData());
        QCOMPARE(QDir(directory.filePath("partly")).entryList(QDir::Files), QStringList("survey.xml"));
    }

    void directoriesAreWalkedInTheOrderOfTheirNames()
    {
        const QDir top(directory.path());
        QVERIFY(top.mkpath("walk/b/c") && top.mkpath("walk/.hidden"));
        directory.write("walk/z.dcf", dictionary("Z"));
        directory.write("walk/b/same.dcf", dictionary("B"));
        directory.write("walk/b/c/same.dcf", dictionary("C"));
        directory.write("walk/.hidden/h.dcf", dictionary("H"));
        directory.write("walk/.h.dcf", dictionary("H"));
        QVERIFY(QFile::link(directory.filePath("walk"), directory.filePath("walk/circle")));
        const Run run = directory.run({ "export", "--to", "ddi", "-r", "walk", "-o", "walk/out" });
        QCOMPARE(run.status, fine);
        QCOMPARE(run.err, QByteArray());
        QCOMPARE(QDir(directory.filePath("walk/out")).entryList(QDir::Files, QDir::Name),
                 QStringList({ "same-2.xml", "same.xml", "z.xml" }));
        QVERIFY(directory.read("walk/out/same.xml").contains("name=\"C\""));
        QVERIFY(directory.read("walk/out/same-2.xml").contains("name=\"B\""));
        // The next call does not read the files that were written.
        QCOMPARE(directory.run({ "export", "--to", "ddi", "-r", "walk", "-o", "walk/out" }).err, QByteArray());
    }

    void aFileOfADirectoryThatCannotBeReadIsOneLineAndTheRestIsWritten()
    {
        QVERIFY(QDir(directory.path()).mkpath("odd/closed"));
        directory.write("odd/survey.dcf", dictionary("X"));
        directory.write("odd/closed/a.dcf", dictionary("A"));
        QVERIFY(QFile::link("nowhere", directory.filePath("odd/leads.dcf")));
        const QByteArray odd = QFile::encodeName(directory.filePath("odd"));
        QCOMPARE(::mkfifo(QByteArray(odd + "/pipe.dcf").constData(), 0600), 0); // reading it would never end
        QCOMPARE(::mkdir(QByteArray(odd + "/name\xff").constData(), 0700), 0);
        QVERIFY(QFile::setPermissions(directory.filePath("odd/closed"), QFileDevice::WriteOwner));
        Run run;
        asOrdinaryUser([&] { run = directory.run({ "export", "--to", "ddi", "-r", "odd", "-o", "some" }); });
        QVERIFY(QFile::setPermissions(directory.filePath("odd/closed"),
                                      QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner));
        QCOMPARE(run.status, noAnswer);
        const QList<QByteArray> lines = run.err.trimmed().split('\n');
        QCOMPARE(lines.size(), 3);
        QCOMPARE(lines.at(0), QByteArray("vanlayout: odd/closed: the directory cannot be read"));
        QCOMPARE(lines.at(1), QByteArray("vanlayout: odd/leads.dcf: cannot be opened: No such file or directory"));
        QCOMPARE(lines.at(2),
                 QByteArray("vanlayout: odd/name\xEF\xBF\xBD: cannot be opened: No such file or directory"));
        QCOMPARE(QDir(directory.filePath("some")).entryList(QDir::Files), QStringList("survey.xml"));
    }

    void aFileInADirectoryMayHaveAnyName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("colon at the beginning") << ":colon";
        QTest::newRow("line feed") << "new\nline";
        QTest::newRow("dash at the beginning") << "--to";
        QTest::newRow("signs of the shell") << "*?[a] $(x)";
        QTest::newRow("beyond ASCII") << "\u00FC b";
    }
    void aFileInADirectoryMayHaveAnyName()
    {
        QFETCH(QString, name);
        const QString top = QString::fromLatin1(QTest::currentDataTag());
        QVERIFY(QDir(directory.path()).mkpath(top + "/in"));
        directory.write(top + "/in/" + name + ".dcf", dictionary("X"));
        const Run run = directory.run({ "export", "--to", "ddi", "-r", top + "/in", "-o", top + "/out" });
        QCOMPARE(run.err, QByteArray());
        QCOMPARE(run.status, fine);
        QCOMPARE(QDir(directory.filePath(top + "/out")).entryList(QDir::Files), QStringList(name + ".xml"));
    }

    void aDirectoryThatIsReadAndWrittenIsRefused()
    {
        QVERIFY(QDir(directory.path()).mkpath("both"));
        directory.write("both/survey.dcf", dictionary("X"));
        const Run run = directory.run({ "export", "--to", "ddi", "-r", "both", "-o", "./both" });
        verifyComplaint(run,
                        "both: is the directory to read, and no file is written into it; name another one with -o\n");
        QCOMPARE(QDir(directory.filePath("both")).entryList(QDir::Files), QStringList("survey.dcf"));
    }

    void aDirectoryWithoutAFileIsOneLine()
    {
        QVERIFY(QDir(directory.path()).mkpath("empty/deep"));
        const Run alone = directory.run({ "codebook", "-r", "empty", "-o", "none" });
        verifyComplaint(alone, "empty: has no file to read\n");
        QVERIFY(!QFileInfo::exists(directory.filePath("none")));
        const Run beside = directory.run({ "export", "--to", "ddi", "-r", "empty", "survey.dcf", "-o", "some" });
        QCOMPARE(beside.status, noAnswer);
        QCOMPARE(beside.err, QByteArray("vanlayout: empty: has no file to read\n"));
        QVERIFY(!directory.read("some/survey.xml").isEmpty());
    }

    void anIndexIsWrittenOverNoFileThatIsRead()
    {
        QVERIFY(QDir(directory.path()).mkpath("pages"));
        directory.write("pages/index.html", dictionary("X"));
        const Run run = directory.run({ "codebook", "pages/index.html", "survey.dcf", "-o", "pages" });
        verifyComplaint(run, "pages/index.html: is a file to read, and is not overwritten\n");
        QCOMPARE(directory.read("pages/index.html"), dictionary("X"));
        QVERIFY(!directory.read("pages/index-2.html").isEmpty());
        QVERIFY(!directory.read("pages/survey.html").isEmpty());
    }

    void aCatalogIsReadAndNotWrittenOver()
    {
        const QString survey = QStringLiteral(VAN_MADE_DATA "/survey.sas7bdat");
        QFile::remove(directory.filePath("formats.sas7bcat"));
        QVERIFY(QFile::copy(QStringLiteral(VAN_MADE_DATA "/formats.sas7bcat"), directory.filePath("formats.sas7bcat")));
        const QByteArray catalog = directory.read("formats.sas7bcat");
        const QStringList call{ "export", "--to", "csv", "--catalog", "formats.sas7bcat", survey };
        const Run labelled = directory.run(call);
        QCOMPARE(labelled.err, QByteArray());
        QVERIFY(labelled.out != exported("csv", survey).out);
        verifyComplaint(directory.run(call + QStringList{ "-o", "formats.sas7bcat" }),
                        "formats.sas7bcat: is a file to read, and is not overwritten\n");
        QVERIFY(QFile::rename(directory.filePath("formats.sas7bcat"), directory.filePath("survey.csv")));
        QCOMPARE(directory.run({ "export", "--to", "csv", "--catalog", "survey.csv", survey, "-o", "./" }).status,
                 fine);
        QCOMPARE(directory.read("survey.csv"), catalog);
        QVERIFY(!directory.read("survey-2.csv").isEmpty());
    }

    void aCatalogThatCannotBeReadIsOneLine()
    {
        const QString survey = QStringLiteral(VAN_MADE_DATA "/survey.sas7bdat");
        const Run run = directory.run({ "export", "--to", "csv", "--catalog", "absent.sas7bcat", survey });
        QCOMPARE(run.status, fine);
        QCOMPARE(run.out, exported("csv", survey).out);
        QCOMPARE(run.err,
                 "vanlayout: " + survey.toUtf8()
                     + ": the catalog absent.sas7bcat: cannot be opened: No such file or directory\n");
    }

    void aDirectoryThatCannotBeWrittenIntoIsALineAFile()
    {
        QVERIFY(QDir(directory.path()).mkpath("closed"));
        QVERIFY(QFile::setPermissions(directory.filePath("closed"), QFileDevice::ReadOwner | QFileDevice::ExeOwner));
        directory.write("b.dcf", dictionary("B"));
        Run run;
        asOrdinaryUser([&] { run = directory.run({ "codebook", "survey.dcf", "b.dcf", "-o", "closed" }); });
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.err,
                 QByteArray("vanlayout: closed/survey.html: cannot be written: Permission denied\n"
                            "vanlayout: closed/b.html: cannot be written: Permission denied\n"
                            "vanlayout: closed/index.html: cannot be written: Permission denied\n"));
    }

    void aDirectoryThatCannotBeMadeIsOneLine()
    {
        directory.write("file", "x");
        const Run run = directory.run({ "export", "--to", "ddi", "survey.dcf", "-o", "file/" });
        verifyComplaint(run, "file/: ");
    }

    void helpDescribesTheCommand()
    {
        verifyHelpDescribes("export",
                            { "--to", "--title", "--language", "--profile", "--excel", "--catalog", "--recursive",
                              "--output", "FILE" });
    }

private:
    Run exported(const QString &target, const QString &file) const
    {
        return directory.run({ "export", "--to", target, file });
    }

    ToolDirectory directory;
};

QTEST_GUILESS_MAIN(VanlayoutExportTest)
#include "VanlayoutExportTest.moc"
