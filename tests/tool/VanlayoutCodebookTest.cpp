#include "support/Corpus.h"
#include "support/OrdinaryUser.h"
#include "support/ReadPipe.h"
#include "support/ToolRun.h"

#include <QtTest>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

namespace
{

// The text between two others, after the first occurrence of the first.
QByteArray between(const QByteArray &whole, const QByteArray &before, const QByteArray &behind)
{
    const int begin = whole.indexOf(before) + before.size();
    return whole.mid(begin, whole.indexOf(behind, begin) - begin);
}

QByteArray dataTextOf(const QByteArray &page)
{
    return between(page, "<script type=\"application/json\" id=\"page-data\">", "</script>");
}

QJsonObject dataOf(const QByteArray &page)
{
    return QJsonDocument::fromJson(dataTextOf(page)).object();
}

// The names of all items of a layout, which its JSON form and the data of its page have in the same order.
QStringList itemNamesOf(const QJsonObject &layout)
{
    QStringList names;
    const auto add = [&](const QJsonValue &items) {
        for (const auto &item : items.toArray())
            names.append(item.toObject()["name"].toString());
    };
    for (const auto &level : layout["levels"].toArray()) {
        add(level.toObject()["ids"]);
        for (const auto &record : level.toObject()["records"].toArray())
            add(record.toObject()["items"]);
    }
    return names;
}

// A dictionary of one variable with a label and a value label.
QString dictionaryTextWith(const QString &label, const QString &valueLabel)
{
    return QStringLiteral(
               "[Dictionary]\nVersion=CSPro 7.7\nLabel=D\nName=D\nRecordTypeStart=0\nRecordTypeLen=0\n"
               "Positions=Absolute\nZeroFill=Yes\nDecimalChar=No\n\n[Level]\nLabel=L\nName=L\n\n[IdItems]\n\n"
               "[Item]\nLabel=%1\nName=ODD\nStart=1\nLen=2\nDataType=Numeric\n\n"
               "[ValueSet]\nLabel=V\nName=V\nValue=1;%2\n")
        .arg(label, valueLabel);
}

QByteArray dictionaryWith(const QString &label, const QString &valueLabel)
{
    return dictionaryTextWith(label, valueLabel).toUtf8();
}

// A dictionary in English and French.
QByteArray twoLanguages()
{
    return dictionaryWith("House|Maison", "Yes|Oui")
        .replace("Label=D\n", "Label=Survey|Enquete\n")
        .replace("[Level]", "[Languages]\nEN=English\nFR=French\n\n[Level]");
}

} // namespace

/// Tests `vanlayout codebook`, run as by a user. The behaviour of the page is tested in a browser.
class VanlayoutCodebookTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyItemIsInThePage_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("format");
        QTest::newRow("cspro") << QStringLiteral(VAN_EXAMPLES "/census.dcf") << "CSPro dictionary, text form 7.7";
        QTest::newRow("cspro8") << QStringLiteral(VAN_EXAMPLES "/census8.dcf") << "CSPro dictionary, JSON form 8.0";
        QTest::newRow("spss") << QStringLiteral(VAN_MADE_DATA "/types.sav") << "SPSS file";
        QTest::newRow("stata") << QStringLiteral(VAN_MADE_DATA "/types-118.dta") << "Stata file, version 118";
    }
    void everyItemIsInThePage()
    {
        QFETCH(QString, file);
        QFETCH(QString, format);
        const QByteArray page = pageOf(file);
        QVERIFY(page.contains("<p class=\"format\">" + format.toUtf8() + "</p>"));
        const QStringList names = itemNamesOf(dataOf(page));
        QVERIFY(!names.isEmpty());
        QCOMPARE(names, itemNamesOf(directory.run({ "show", "--format", "json", file }).json().toObject()));
        QVERIFY(page.contains("<li><b>" + QByteArray::number(names.size()) + "</b> variables</li>"));
    }

    void languageIsThatOfTheOption()
    {
        directory.write("both.dcf", twoLanguages());
        const Run french = directory.run({ "codebook", "--language", "fr", "both.dcf", "-o", "-" });
        QCOMPARE(french.status, fine);
        QVERIFY(french.out.contains("<title>Enquete \xE2\x80\x93 codebook</title>"));
        QVERIFY(directory.run({ "codebook", "both.dcf", "-o", "-" }).out.contains("<title>Survey"));
    }

    void languageThatIsAbsentIsAProblem()
    {
        directory.write("both.dcf", twoLanguages());
        const Run made = directory.run({ "codebook", "--language", "SW", "both.dcf", "-o", "-" });
        verifyComplaint(made, "both.dcf: has no language SW; it has EN, FR\n");
        QCOMPARE(made.out, QByteArray());
    }

    void problemsAreInThePageUnlessTheyAreNotWanted()
    {
        directory.write("odd.dcf", dictionaryWith("L", "One") + "Colour=red\n");
        QCOMPARE(dataOf(pageOf("odd.dcf"))["problems"].toArray().size(), 1);
        const Run made = directory.run({ "codebook", "--no-problems", "odd.dcf", "-o", "-" });
        QCOMPARE(made.status, fine);
        QVERIFY(!dataOf(made.out).contains("problems"));
    }

    void fileThatIsReadInPartSaysSoInThePage()
    {
        QFile whole(QStringLiteral(VAN_MADE_DATA "/types-118.dta"));
        QVERIFY(whole.open(QIODevice::ReadOnly));
        const QByteArray bytes = whole.readAll();
        directory.write("cut.dta", bytes.left(bytes.size() - 600));
        const Run made = directory.run({ "codebook", "cut.dta", "-o", "-" });
        QCOMPARE(made.status, fine);
        QVERIFY2(made.err.startsWith("vanlayout: cut.dta: reading ended "), made.err.constData());
        const QJsonArray problems = dataOf(made.out)["problems"].toArray();
        QCOMPARE(problems.at(0).toArray().at(1).toString(), QString("reading-ended"));
    }

    void standardInputIsRead()
    {
        directory.write("fine.dcf", dictionaryWith("Age", "One"));
        const Run made = runShell(directory, "\"$0\" codebook - -o - < fine.dcf");
        QCOMPARE(made.status, fine);
        QCOMPARE(itemNamesOf(dataOf(made.out)), QStringList("ODD"));
        QVERIFY(!made.out.contains("<dt>File</dt>"));
    }

    void catalogHasTheLabelsOfASasDataSet()
    {
        const Run made = directory.run({ "codebook", QStringLiteral(VAN_MADE_DATA "/survey.sas7bdat"), "--catalog",
                                         QStringLiteral(VAN_MADE_DATA "/formats.sas7bcat"), "-o", "-" });
        QCOMPARE(made.status, fine);
        QVERIFY(!dataOf(made.out)["lists"].toArray().isEmpty());
    }

    void severalFilesAreAPageEachAndAnIndex()
    {
        const QTemporaryDir room(directory.filePath("room"));
        QDir(room.path()).mkdir("in");
        QDir(room.path()).mkdir("in/deep");
        directory.write(room.filePath("in/b.dcf"), dictionaryWith("Age", "One"));
        directory.write(room.filePath("in/deep/B.dcf"), twoLanguages());
        directory.write(room.filePath("in/bad.dcf"), "none");
        const Run made = directory.run({ "codebook", "-r", room.filePath("in"), "-o", room.filePath("out") });
        QCOMPARE(made.status, noAnswer);
        QCOMPARE(made.err.count('\n'), 1);
        QVERIFY(made.err.contains("bad.dcf: "));
        QCOMPARE(QDir(room.filePath("out")).entryList(QDir::Files),
                 (QStringList{ "B-2.html", "b.html", "index.html" }));
        const QByteArray index = directory.read(room.filePath("out/index.html"));
        const QJsonArray books = QJsonDocument::fromJson(dataTextOf(index)).array();
        QCOMPARE(books.size(), 2);
        QCOMPARE(books.at(0).toObject()["page"].toString(), QString("b.html"));
        QCOMPARE(books.at(1).toObject()["page"].toString(), QString("B-2.html"));
        QCOMPARE(books.at(1).toObject()["items"].toArray().at(0).toArray().at(0).toString(), QString("ODD"));
        QCOMPARE(directory.read(room.filePath("out/b.html")), pageOf(room.filePath("in/b.dcf")));
    }

    void severalFilesNeedADirectory()
    {
        directory.write("fine.dcf", dictionaryWith("L", "One"));
        directory.write("page.html", "old");
        for (const char *output : { "-", "page.html" })
            QCOMPARE(directory.run({ "codebook", "fine.dcf", "fine.dcf", "-o", output }).status, noAnswer);
        QCOMPARE(directory.read("page.html"), QByteArray("old"));
    }

    void fileNameIsOnlyTextAndNoTitle()
    {
        const QString name = "<b>&\"{{data}}\033.dcf";
        directory.write(name, dictionaryWith("L", "One"));
        const QByteArray page = pageOf(name);
        QCOMPARE(page.count("&lt;b&gt;&amp;&quot;{{data}}\\u001b.dcf"), 1);
        QVERIFY(page.contains("<title>D \xE2\x80\x93 codebook</title>"));
        QVERIFY(!page.contains("<b>&\""));
        QVERIFY(!page.contains('\033'));
    }

    void sameFileGivesTheSamePage()
    {
        const QString file = QStringLiteral(VAN_EXAMPLES "/census.dcf");
        const QByteArray page = pageOf(file);
        QVERIFY(page == pageOf(file));
        const Run toOutput = directory.run({ "codebook", file, "-o", "-" });
        QCOMPARE(toOutput.status, fine);
        QVERIFY(toOutput.out == page);
    }

    void noAnswerIsStatus2AndOneLineAndNoPage_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("problem");
        const QStringList toPage = { "-o", "page.html" };
        QTest::newRow("absent") << QStringList("absent.dcf") + toPage << QByteArray("absent.dcf: cannot be opened: ");
        QTest::newRow("empty name") << QStringList("") + toPage << QByteArray("'': cannot be opened: ");
        QTest::newRow("no layout") << QStringList("empty.dcf") + toPage << QByteArray("empty.dcf: ");
        QTest::newRow("no file") << toPage << QByteArray();
        QTest::newRow("no page") << QStringList("fine.dcf") << QByteArray();
        QTest::newRow("option that is gone")
            << (QStringList{ "--decimals", "yes", "fine.dcf" } + toPage) << QByteArray();
        QTest::newRow("directory without -r") << (QStringList{ "." } + toPage) << QByteArray(".: is a directory");
        QTest::newRow("output without a name")
            << QStringList{ "fine.dcf", "-o", "" } << QByteArray("'': no such file\n");
        QTest::newRow("output in an absent directory") << QStringList{ "fine.dcf", "-o", "absent/page.html" }
                                                       << QByteArray("absent/page.html: cannot be written: ");
        QTest::newRow("output is the input") << QStringList{ "fine.dcf", "-o", "./fine.dcf" }
                                             << QByteArray("./fine.dcf: is the file to read, and is not overwritten\n");
        QTest::newRow("output is a link to the input")
            << QStringList{ "fine.dcf", "-o", "link" }
            << QByteArray("link: is the file to read, and is not overwritten\n");
        QTest::newRow("output is another name of the input")
            << QStringList{ "fine.dcf", "-o", "hard" }
            << QByteArray("hard: is the file to read, and is not overwritten\n");
    }
    void noAnswerIsStatus2AndOneLineAndNoPage()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, problem);
        directory.write("empty.dcf", QByteArray());
        directory.write("fine.dcf", dictionaryWith("L", "One"));
        QFile::remove(directory.filePath("page.html"));
        QFile::remove(directory.filePath("link"));
        QVERIFY(QFile::link("fine.dcf", directory.filePath("link")));
        giveAnotherName("fine.dcf", "hard");
        const QStringList before = QDir(directory.path()).entryList();
        const Run made = directory.run(QStringList("codebook") + arguments);
        verifyComplaint(made, problem);
        QCOMPARE(made.out, QByteArray());
        QCOMPARE(QDir(directory.path()).entryList(), before);
        QCOMPARE(directory.read("fine.dcf"), dictionaryWith("L", "One"));
    }

    void existingPageIsKeptWithoutAResult()
    {
        directory.write("page.html", "old");
        QCOMPARE(directory.run({ "codebook", "absent.dcf", "-o", "page.html" }).status, noAnswer);
        QCOMPARE(directory.read("page.html"), QByteArray("old"));
    }

    void writtenPageReplacesWhatStoodThere()
    {
        directory.write("fine.dcf", dictionaryWith("L", "One"));
        const QByteArray page = pageOf("fine.dcf");
        directory.write("page.html", QByteArray(1 << 20, 'x'));
        QCOMPARE(directory.run({ "codebook", "fine.dcf", "-o", "page.html" }).status, fine);
        QVERIFY(directory.read("page.html") == page);
        QVERIFY(page.endsWith("</html>\n"));
    }

    void linkStaysAndItsFileGetsThePage_data() { addWhatStandsThere(); }
    void linkStaysAndItsFileGetsThePage()
    {
        QFETCH(bool, isThere);
        directory.write("fine.dcf", dictionaryWith("L", "One"));
        const QByteArray page = pageOf("fine.dcf");
        const QTemporaryDir room(directory.filePath("room"));
        const QString target = room.filePath("target.html");
        const QString link = room.filePath("link.html");
        if (isThere)
            directory.write(target, "old");
        QVERIFY(QFile::link("target.html", link));
        QCOMPARE(directory.run({ "codebook", "fine.dcf", "-o", link }).status, fine);
        QCOMPARE(QFileInfo(link).symLinkTarget(), target);
        QVERIFY(!QFileInfo(target).isSymLink());
        QVERIFY(directory.read(target) == page);
        QCOMPARE(QDir(room.path()).entryList(QDir::Files | QDir::System), (QStringList{ "link.html", "target.html" }));
    }

    void pipeIsWrittenToAndStays_data()
    {
        QTest::addColumn<QString>("output");
        QTest::newRow("pipe") << "pipe";
        QTest::newRow("link to a pipe") << "link";
    }
    void pipeIsWrittenToAndStays()
    {
        QFETCH(QString, output);
        directory.write("fine.dcf", dictionaryWith("L", "One"));
        const QByteArray page = pageOf("fine.dcf");
        QVERIFY(!page.isEmpty());
        const QTemporaryDir room(directory.filePath("room"));
        ReadPipe pipe(room.filePath("pipe"));
        QVERIFY2(pipe.isRead(), "no pipe can be made, or there is no cat");
        QVERIFY(QFile::link("pipe", room.filePath("link")));
        const Run made = directory.run({ "codebook", "fine.dcf", "-o", room.filePath(output) });
        QVERIFY(pipe.isThere());
        QCOMPARE(QFileInfo(room.filePath("link")).symLinkTarget(), room.filePath("pipe"));
        QCOMPARE(made.status, fine);
        QCOMPARE(made.err, QByteArray());
        QVERIFY(pipe.taken(patience) == page);
    }

    // Output is appended to the content of the file that the descriptor refers to.
    void descriptorIsWrittenToAndItsFileStays_data()
    {
        QTest::addColumn<QString>("call");
        QTest::newRow("standard output") << "\"$0\" codebook fine.dcf -o - >> all.html";
        QTest::newRow("its device") << "\"$0\" codebook fine.dcf -o /dev/stdout >> all.html";
        QTest::newRow("its descriptor") << "\"$0\" codebook fine.dcf -o /dev/fd/1 >> all.html";
        QTest::newRow("its place in the process") << "\"$0\" codebook fine.dcf -o /proc/self/fd/1 >> all.html";
        QTest::newRow("link to it") << "ln -sf /dev/stdout out.html; \"$0\" codebook fine.dcf -o out.html >> all.html";
        QTest::newRow("another descriptor") << "\"$0\" codebook fine.dcf -o /dev/fd/3 3>> all.html";
    }
    void descriptorIsWrittenToAndItsFileStays()
    {
        QVERIFY2(QFile::exists(QStringLiteral("/proc/self/fd")), "this system has no /proc");
        QFETCH(QString, call);
        directory.write("fine.dcf", dictionaryWith("L", "One"));
        const QByteArray page = pageOf("fine.dcf");
        QVERIFY(!page.isEmpty());
        directory.write("all.html", "HEADER\n");
        const Run made = runShell(directory, call);
        QFile::remove(directory.filePath("out.html"));
        QCOMPARE(made.status, fine);
        QCOMPARE(made.err, QByteArray());
        QCOMPARE(made.out, QByteArray());
        QVERIFY(directory.read("all.html") == "HEADER\n" + page);
    }

    void descriptorThatCannotBeWrittenToIsStatus2AndOneLine_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QByteArray>("problem");
        QTest::newRow("not open") << "\"$0\" codebook fine.dcf -o /dev/fd/9"
                                  << QByteArray("/dev/fd/9: cannot be written: ");
        QTest::newRow("open to be read") << "\"$0\" codebook fine.dcf -o /dev/stdin < all.html"
                                         << QByteArray("/dev/stdin: cannot be written: ");
        QTest::newRow("of the file to read") << "\"$0\" codebook fine.dcf -o /dev/fd/3 3>> fine.dcf"
                                             << QByteArray("/dev/fd/3: is the file to read, and is not overwritten\n");
        QTest::newRow("of another name of the file to read")
            << "\"$0\" codebook fine.dcf -o /dev/fd/3 3>> hard"
            << QByteArray("/dev/fd/3: is the file to read, and is not overwritten\n");
        QTest::newRow("standard output, which is the file to read")
            << "\"$0\" codebook fine.dcf -o - >> fine.dcf"
            << QByteArray("fine.dcf: is standard output as well, and is not overwritten\n");
        QTest::newRow("standard output, which is another name of it")
            << "\"$0\" codebook fine.dcf -o /dev/stdout >> hard"
            << QByteArray("fine.dcf: is standard output as well, and is not overwritten\n");
        QTest::newRow("of another process")
            << "exec 3>> all.html; ln -sf /proc/$$/fd/3 out.html; \"$0\" codebook fine.dcf -o out.html; exit $?"
            << QByteArray("out.html: is open in another process, and is not written to\n");
    }
    void descriptorThatCannotBeWrittenToIsStatus2AndOneLine()
    {
        QVERIFY2(QFile::exists(QStringLiteral("/proc/self/fd")), "this system has no /proc");
        QFETCH(QString, call);
        QFETCH(QByteArray, problem);
        directory.write("fine.dcf", dictionaryWith("L", "One"));
        directory.write("all.html", "HEADER\n");
        giveAnotherName("fine.dcf", "hard");
        const Run made = runShell(directory, call);
        QFile::remove(directory.filePath("out.html"));
        verifyComplaint(made, problem);
        QCOMPARE(directory.read("all.html"), QByteArray("HEADER\n"));
        QCOMPARE(directory.read("fine.dcf"), dictionaryWith("L", "One"));
    }

    void linksWithoutAnEndAreNotReplaced()
    {
        directory.write("fine.dcf", dictionaryWith("L", "One"));
        const QTemporaryDir room(directory.filePath("room"));
        QVERIFY(QFile::link("second", room.filePath("first")));
        QVERIFY(QFile::link("first", room.filePath("second")));
        const QString output = room.filePath("first");
        verifyComplaint(directory.run({ "codebook", "fine.dcf", "-o", output }),
                        QFile::encodeName(output) + ": cannot be written: ");
        QCOMPARE(QFileInfo(output).symLinkTarget(), room.filePath("second"));
        QCOMPARE(QFileInfo(room.filePath("second")).symLinkTarget(), output);
    }

    // The system allows the tool to write less than the page.
    void fullDiskLeavesWhatStoodThere_data() { addWhatStandsThere(); }
    void fullDiskLeavesWhatStoodThere()
    {
        QFETCH(bool, isThere);
        directory.write("fine.dcf", dictionaryWith("L", "One"));
        QFile::remove(directory.filePath("page.html"));
        if (isThere)
            directory.write("page.html", "old");
        const QStringList before = QDir(directory.path()).entryList();
        const Run made
            = runShell(directory, "trap '' XFSZ && ulimit -f 8 && exec \"$0\" codebook fine.dcf -o page.html");
        verifyComplaint(made, "page.html: cannot be written: ");
        QCOMPARE(QDir(directory.path()).entryList(), before);
        QCOMPARE(directory.read("page.html"), QByteArray(isThere ? "old" : ""));
    }

    void fullStandardOutputIsStatus2AndOneLine()
    {
        directory.write("fine.dcf", dictionaryWith("L", "One"));
        verifyFullDiskIsReported(directory, { "codebook", "fine.dcf", "-o", "-" });
    }

    void directoryWithoutPermissionIsStatus2AndOneLine()
    {
        directory.write("fine.dcf", dictionaryWith("L", "One"));
        QDir(directory.path()).mkdir("locked");
        const QByteArray locked = QFile::encodeName(directory.filePath("locked"));
        QCOMPARE(chmod(locked.constData(), 0500), 0);
        Run made;
        asOrdinaryUser([&] { made = directory.run({ "codebook", "fine.dcf", "-o", "locked/page.html" }); });
        verifyComplaint(made, "locked/page.html: cannot be written: ");
    }

    void manyVariablesStaySmall()
    {
        constexpr int variables = 10000;
        constexpr int labels = 10;
        constexpr int largest = 15 << 20;
        QString text = dictionaryTextWith("L", "One");
        for (int i = 0; i < variables; ++i) {
            text += QStringLiteral("\n[Item]\nLabel=Question %1 of the survey\nName=V%1\nStart=%2\nLen=2\n"
                                   "DataType=Numeric\n\n[ValueSet]\nLabel=S\nName=S\n")
                        .arg(i)
                        .arg(3 + 2 * i);
            for (int code = 1; code <= labels; ++code)
                text += QStringLiteral("Value=%1;Answer %1 to question %2\n").arg(code).arg(i);
        }
        directory.write("many.dcf", text.toUtf8());
        const QByteArray page = pageOf("many.dcf");
        QVERIFY(page.size() < largest);
        QVERIFY(page.contains("<li><b>10,001</b> variables</li>"));
        const QJsonObject data = dataOf(page);
        QCOMPARE(itemNamesOf(data).size(), variables + 1);
        QCOMPARE(data["lists"].toArray().size(), variables + 1);
        QCOMPARE(data["lists"].toArray().at(variables).toArray().size(), labels);
    }

    void corpusGivesAPageForEachLayout()
    {
        if (!QFile::exists(QStringLiteral(VAN_CORPUS)))
            QSKIP("the corpus is not available");
        int pages = 0;
        for (const char *kind : { "cspro-text", "cspro-json", "spss", "stata" }) {
            const QStringList files = corpusFiles(kind).mid(0, 12);
            for (const QString &file : files) {
                const Run shown = directory.run({ "show", "--format", "json", file });
                const Run made = directory.run({ "codebook", file, "-o", "-" });
                QCOMPARE(made.status, shown.status);
                if (made.status != fine)
                    continue;
                QCOMPARE(itemNamesOf(dataOf(made.out)), itemNamesOf(shown.json().toObject()));
                ++pages;
            }
        }
        QVERIFY(pages > 0);
    }

    void helpNamesTheOptions()
    {
        verifyHelpDescribes("codebook",
                            { "--language", "--no-problems", "--catalog", "--recursive", "--output", "FILE" });
    }

private:
    // A second name of the same file.
    void giveAnotherName(const QString &name, const QString &other) const
    {
        QFile::remove(directory.filePath(other));
        QCOMPARE(link(QFile::encodeName(directory.filePath(name)).constData(),
                      QFile::encodeName(directory.filePath(other)).constData()),
                 0);
    }

    static void addWhatStandsThere()
    {
        QTest::addColumn<bool>("isThere");
        QTest::newRow("file") << true;
        QTest::newRow("file to come") << false;
    }

    // The page that the tool writes, or nothing.
    QByteArray pageOf(const QString &file) const
    {
        QFile::remove(directory.filePath("page.html"));
        const Run made = directory.run({ "codebook", file, "-o", "page.html" });
        if (made.status != fine || !made.out.isEmpty() || !made.err.isEmpty())
            return {};
        return directory.read("page.html");
    }

    ToolDirectory directory;
};

QTEST_GUILESS_MAIN(VanlayoutCodebookTest)
#include "VanlayoutCodebookTest.moc"
