#include "support/ToolRun.h"

#include <QtTest>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

namespace
{

// A dictionary with one item at column 2 after the record type; `values` are the lines of its value set.
QByteArray dictionary(const QByteArray &values, const QByteArray &recordLength = "4")
{
    return "[Dictionary]\nVersion=CSPro 7.7\nLabel=D\nName=D_DICT\nRecordTypeStart=1\nRecordTypeLen=1\n"
           "Positions=Absolute\nZeroFill=No\nDecimalChar=No\n\n[Level]\nLabel=L\nName=L\n\n[IdItems]\n\n[Item]\n"
           "Label=Case\nName=CASE_ID\nStart=2\nLen=1\nDataType=Numeric\n\n[Record]\nLabel=R\nName=R\nRecordTypeValue='"
           "1'\n"
           "RecordLen="
        + recordLength + "\n\n[Item]\nLabel=Age\nName=AGE\nStart=3\nLen=2\nDataType=Numeric\n\n[ValueSet]\nLabel=Age\n"
        + "Name=AGE_VS1\n" + values;
}

const QByteArray sound = dictionary("Value=1;One\nValue=2;Two\n");
const QByteArray wide = dictionary("Value=1;One\nValue=200;Two\n");
const QByteArray longRecord = dictionary("Value=1;One\nValue=2;Two\n", "9");

// Applies a unified diff: each hunk states its first line, and its context must be there. A wrong diff gives no text.
QByteArray patched(const QByteArray &content, const QByteArray &diff)
{
    QList<QByteArray> lines = content.split('\n');
    QList<QByteArray> result;
    int next = 0;
    QList<QByteArray> edits = diff.split('\n').mid(2);
    for (int index = 0; index + 1 < edits.size(); ++index) {
        const QByteArray &edit = edits.at(index);
        if (edit.startsWith("@@ -")) {
            const int begin = edit.mid(4, edit.indexOf(' ', 4) - 4).split(',').constFirst().toInt() - 1;
            while (next < begin)
                result.append(lines.at(next++));
        } else if (edit.startsWith('+')) {
            result.append(edit.mid(1));
        } else if (edit.startsWith('\\')) {
            if (edits.at(index - 1).startsWith('-'))
                next = int(lines.size()); // the part after the last line feed
        } else if (edit.mid(1) != lines.value(next++)) {
            return QByteArray();
        } else if (edit.startsWith(' ')) {
            result.append(edit.mid(1));
        }
    }
    while (next < lines.size())
        result.append(lines.at(next++));
    QByteArray text = result.join('\n');
    return diff.contains("\n\\ No newline") ? text + '\n' : text;
}

} // namespace

/// Tests `vanlayout lint`, run as by a user.
class VanlayoutLintTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tableHasTheFindingsOfEachFile()
    {
        write("sound.dcf", sound);
        write("wide.dcf", wide);
        const Run run = lint({ "sound.dcf", "wide.dcf" });
        QCOMPARE(run.status, finding);
        QCOMPARE(run.err, QByteArray());
        QCOMPARE(
            run.out,
            QByteArray("sound.dcf: no findings\n"
                       "wide.dcf: 1 error\n"
                       "  error [wide-code] line 41 L/R/AGE/AGE_VS1/#2\n"
                       "    the code 200 needs 3 characters, but the item has 2; correct the code, or make the item "
                       "longer\n"));
    }

    void statusIsThatOfTheWorstFile_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("status");
        QTest::newRow("sound") << sound << fine;
        QTest::newRow("only infos") << dictionary("Value=1;One\nValue=2\n") << fine;
        QTest::newRow("only warnings") << longRecord << fine;
        QTest::newRow("errors") << wide << finding;
        QTest::newRow("not a layout") << QByteArray("no layout") << noAnswer;
    }
    void statusIsThatOfTheWorstFile()
    {
        QFETCH(QByteArray, content);
        write("a.dcf", content);
        write("b.dcf", sound);
        QTEST(lint({ "a.dcf", "b.dcf" }).status, "status");
        QTEST(lint({ "b.dcf", "a.dcf" }).status, "status");
    }

    void tableShowsTenFindingsOfARuleUnlessAllAreWanted()
    {
        QByteArray values;
        for (int code = 100; code < 112; ++code)
            values += "Value=" + QByteArray::number(code) + ";Label " + QByteArray::number(code) + '\n';
        write("many.dcf", dictionary(values));
        const Run run = lint({ "many.dcf" });
        QCOMPARE(run.out.count("error [wide-code]"), 10);
        QVERIFY(run.out.endsWith("  2 more of [wide-code]; --all shows them\n"));
        QCOMPARE(lint({ "--all", "many.dcf" }).out.count("error [wide-code]"), 12);
    }

    void severeFindingsComeFirst()
    {
        write("a.dcf", dictionary("Value=1\nValue=200;Two\nValue=1;One\n", "9"));
        const QByteArray out = lint({ "a.dcf" }).out;
        QVERIFY(out.startsWith("a.dcf: 1 error, 2 warnings, 1 info\n"));
        QVERIFY(out.indexOf("wide-code") < out.indexOf("record-length"));
        QVERIFY(out.indexOf("record-length") < out.indexOf("missing-value-label"));
    }

    void jsonIsOneLineForEachFile()
    {
        write("a.dcf", wide);
        write("b.dcf", "no layout");
        const Run run = lint({ "--format", "json", "a.dcf", "b.dcf" });
        QCOMPARE(run.status, noAnswer);
        QVERIFY(run.err.startsWith("vanlayout: b.dcf: "));
        const QList<QByteArray> lines = run.out.trimmed().split('\n');
        QCOMPARE(lines.size(), 2);
        const QJsonObject first = QJsonDocument::fromJson(lines.at(0)).object();
        QCOMPARE(first["errors"].toInt(), 1);
        QCOMPARE(first["findings"].toArray().at(0).toObject()["rule"].toString(), QString("wide-code"));
        QVERIFY(QJsonDocument::fromJson(lines.at(1)).object()["problem"].toString().size() > 10);
        QVERIFY(lint({ "--format", "json", "--pretty", "a.dcf" }).out.contains("\n  \"errors\": 1,\n"));
    }

    void sarifIsOneDocumentForAllFiles()
    {
        write("a.dcf", wide);
        write("b.dcf", longRecord);
        const Run run = lint({ "--format", "sarif", "-o", "findings.sarif", "a.dcf", "b.dcf", "absent.dcf" });
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.out, QByteArray());
        const QJsonObject document = QJsonDocument::fromJson(directory.read("findings.sarif")).object();
        QCOMPARE(document["version"].toString(), QString("2.1.0"));
        const QJsonObject sarifRun = document["runs"].toArray().at(0).toObject();
        QCOMPARE(sarifRun["results"].toArray().size(), 2);
        QVERIFY(!sarifRun["invocations"].toArray().at(0).toObject()["executionSuccessful"].toBool(true));
    }

    void rulesAreSelectedByTheirIds_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QByteArray>("head");
        QTest::newRow("all") << QStringList() << QByteArray("a.dcf: 1 error, 1 warning\n");
        QTest::newRow("disabled") << QStringList({ "--disable", "wide-code" }) << QByteArray("a.dcf: 1 warning\n");
        QTest::newRow("two disabled") << QStringList({ "--disable", "wide-code,RECORD-LENGTH" })
                                      << QByteArray("a.dcf: no findings\n");
        QTest::newRow("only") << QStringList({ "--only", "wide-code" }) << QByteArray("a.dcf: 1 error\n");
        QTest::newRow("only and disabled")
            << QStringList({ "--only", "wide-code", "--disable", "wide-code" }) << QByteArray("a.dcf: no findings\n");
    }
    void rulesAreSelectedByTheirIds()
    {
        QFETCH(QStringList, options);
        QFETCH(QByteArray, head);
        write("a.dcf", dictionary("Value=200;Two\n", "9"));
        const QByteArray out = lint(options + QStringList("a.dcf")).out;
        QVERIFY2(out.startsWith(head), out.constData());
    }

    void unknownRuleIsRefusedWithASuggestion()
    {
        write("a.dcf", sound);
        const Run run = lint({ "--disable", "overlapp", "a.dcf" });
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.err, QByteArray("vanlayout: --disable: overlapp is not known; did you mean overlap?\n"));
    }

    void callThatMakesNoSenseIsRefused_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("words");
        QTest::newRow("no file") << QStringList() << QByteArray("FILE is required");
        QTest::newRow("pretty table") << QStringList({ "--pretty", "a.dcf" }) << QByteArray("--pretty can only");
        QTest::newRow("all of JSON") << QStringList({ "--all", "--format", "json", "a.dcf" })
                                     << QByteArray("--all can only");
        QTest::newRow("fix as JSON") << QStringList({ "--fix", "--format", "json", "a.dcf" })
                                     << QByteArray("--fix prints the difference");
        QTest::newRow("fix of two") << QStringList({ "--fix", "a.dcf", "a.dcf" }) << QByteArray("--fix corrects one");
        QTest::newRow("fix of a directory of two")
            << QStringList({ "--fix", "-r", "two" })
            << QByteArray("--fix corrects one dictionary, but 2 files are named");
        QTest::newRow("fix of no dictionary") << QStringList({ "--fix", "a.xml" }) << QByteArray("cannot be corrected");
        QTest::newRow("fix with an unknown rule")
            << QStringList({ "--fix", "--only", "x", "a.dcf" }) << QByteArray("--only: x is not known");
        QTest::newRow("fix of standard input") << QStringList({ "--fix", "-" }) << QByteArray("--fix corrects one");
        QTest::newRow("standard input twice") << QStringList({ "-", "-" }) << QByteArray("only one of the files");
        QTest::newRow("directory") << QStringList(".") << QByteArray("is a directory; add -r");
        QTest::newRow("output is input") << QStringList({ "-o", "a.dcf", "a.dcf" }) << QByteArray("is not overwritten");
        QTest::newRow("corrected onto itself")
            << QStringList({ "--fix", "a.dcf", "-o", "a.dcf" }) << QByteArray("overwritten");
    }
    void callThatMakesNoSenseIsRefused()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, words);
        write("a.dcf", longRecord);
        write("a.xml", "<codeBook><dataDscr><var name=\"A\"/></dataDscr></codeBook>");
        QVERIFY(QDir(directory.path()).mkpath("two"));
        write("two/a.dcf", longRecord);
        write("two/b.dcf", longRecord);
        const Run run = lint(arguments);
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.out, QByteArray());
        QVERIFY2(run.err.contains(words), run.err.constData());
        QCOMPARE(directory.read("a.dcf"), longRecord);
    }

    void rulesAreListed()
    {
        const Run run = lint({ "--list-rules" });
        QCOMPARE(run.status, fine);
        QVERIFY(run.out.contains("overlap (error)\n  An item uses columns of another item"));
        QVERIFY(run.out.contains("gap (info)\n"));
    }

    void standardInputIsChecked()
    {
        write("a.dcf", wide);
        const Run run = runShell(directory, "\"$0\" lint --format json - < a.dcf");
        QCOMPARE(run.status, finding);
        QCOMPARE(run.json()["file"].toString(), QString("-"));
    }

    void directoriesAreReadWithTheirFiles()
    {
        QVERIFY(QDir(directory.path()).mkpath("sub/inner"));
        write("sub/a.dcf", wide);
        write("sub/inner/b.dcf", sound);
        const Run run = lint({ "-r", "sub" });
        QCOMPARE(run.status, finding);
        QVERIFY(run.out.startsWith("sub/a.dcf: 1 error\n"));
        QVERIFY(run.out.endsWith("sub/inner/b.dcf: no findings\n"));
    }

    void settingsOfTheNearestDirectoryCount()
    {
        QVERIFY(QDir(directory.path()).mkpath("project/inner/.git"));
        write("project/a.dcf", wide);
        write("project/inner/a.dcf", wide);
        write(".vanlayout-lint", "# comment\n\ndisable wide-code, gap # and this\n");
        QCOMPARE(lint({ "project/a.dcf" }).status, fine);
        QCOMPARE(lint({ "project/inner/a.dcf" }).status, finding); // .git ends the search
        write("project/.vanlayout-lint", "only wide-code\n");
        QCOMPARE(lint({ "project/a.dcf" }).status, finding); // the outer file does not count
        QCOMPARE(lint({ "--only", "gap", "project/a.dcf" }).status, fine);
        write("project/inner/.vanlayout-lint", "only gap\r\ndisable\twide-code\r\n");
        QCOMPARE(lint({ "project/inner/a.dcf" }).status, fine);
        write("project/inner/.vanlayout-lint",
              "\xEF\xBB\xBF"
              "disable WIDE-CODE");
        QCOMPARE(lint({ "project/inner/a.dcf" }).status, fine);
        QVERIFY(QFile::remove(directory.filePath("project/inner/.vanlayout-lint")));
        QVERIFY(QDir(directory.path()).mkpath("project/inner/.vanlayout-lint"));
        const Run run = lint({ "project/inner/a.dcf", "project/a.dcf" });
        QCOMPARE(run.status, noAnswer);
        QVERIFY(run.err.endsWith("/project/inner/.vanlayout-lint: is not a file\n"));
        QVERIFY(run.out.startsWith("project/a.dcf: 1 error\n"));
    }

    void settingsThatCannotBeUsedAreReportedOnce_data()
    {
        QTest::addColumn<QByteArray>("settings");
        QTest::addColumn<QByteArray>("problem");
        QTest::newRow("unknown word") << QByteArray("disable gap\nenable gap\n")
                                      << QByteArray(
                                             "line 2: the word \"enable\" is unknown; write disable ID or only ID");
        QTest::newRow("unknown rule") << QByteArray("disable gapp\n")
                                      << QByteArray("line 1: the rule \"gapp\" is unknown; did you mean gap?");
        QTest::newRow("no rule") << QByteArray("only # gap\n")
                                 << QByteArray("line 1: there is no rule after only; write the id of a rule");
        QTest::newRow("binary") << QByteArray("\0\xFF\x1B", 3) << QByteArray("line 1: the word ");
    }
    void settingsThatCannotBeUsedAreReportedOnce()
    {
        QFETCH(QByteArray, settings);
        QFETCH(QByteArray, problem);
        write("a.dcf", wide);
        write(".vanlayout-lint", settings);
        const Run run = lint({ "a.dcf", "a.dcf" });
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.out, QByteArray());
        QVERIFY2(run.err.contains("/.vanlayout-lint: " + problem), run.err.constData());
        QCOMPARE(run.err.count('\n'), 1);
        QVERIFY(!run.err.contains('\x1B'));
    }

    void fixPrintsTheDifferenceAndWritesTheResult()
    {
        write("a.dcf", longRecord);
        const Run run = lint({ "--fix", "a.dcf", "-o", "b.dcf" });
        QCOMPARE(run.status, fine);
        QCOMPARE(run.out,
                 QByteArray(
                     "--- a.dcf\n+++ b.dcf\n@@ -25,7 +25,7 @@\n Label=R\n Name=R\n RecordTypeValue='1'\n-RecordLen=9\n"
                     "+RecordLen=4\n \n [Item]\n Label=Age\n"));
        QCOMPARE(run.err, QByteArray("b.dcf: no findings\n"));
        QCOMPARE(directory.read("b.dcf"), sound);
        QCOMPARE(directory.read("a.dcf"), longRecord);
    }

    void fixWithoutOutputWritesNothing()
    {
        write("a.dcf", longRecord);
        const Run run = lint({ "--fix", "a.dcf" });
        QCOMPARE(run.status, fine);
        QVERIFY(run.out.startsWith("--- a.dcf\n+++ a.dcf\n"));
        QCOMPARE(directory.read("a.dcf"), longRecord);
    }

    void fixReportsTheErrorsThatRemain()
    {
        write("a.dcf", wide);
        const Run run = lint({ "--fix", "a.dcf" });
        QCOMPARE(run.status, finding);
        QCOMPARE(run.out, QByteArray());
        QVERIFY(run.err.startsWith("a.dcf: 1 error\n  error [wide-code] line 41 "));
    }

    void differenceIsAPatchOfTheFile_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("CR LF and mark") << "\xEF\xBB\xBF" + QByteArray(longRecord).replace("\n", "\r\n");
        QTest::newRow("no line end at the end") << longRecord.left(longRecord.size() - 1);
        QTest::newRow("keys in another order")
            << QByteArray(longRecord)
                   .replace("Label=Age\nName=AGE\nStart=3\nLen=2\n", "Len=2\nStart=3\nName=AGE\nLabel=Age\n");
        QTest::newRow("no empty lines") << QByteArray(longRecord).replace("\n\n", "\n");
        QTest::newRow("many empty lines") << QByteArray(longRecord).replace("\n\n", QByteArray(2000, '\n'));
        QTest::newRow("sound") << sound;
    }
    void differenceIsAPatchOfTheFile()
    {
        QFETCH(QByteArray, content);
        write("a.dcf", content);
        const Run run = lint({ "--fix", "a.dcf", "-o", "b.dcf" });
        QCOMPARE(run.status, fine);
        QCOMPARE(run.out.isEmpty(), directory.read("b.dcf") == content);
        QCOMPARE(patched(content, run.out), directory.read("b.dcf"));
    }

    void encodingOfACorrectedDictionaryIsUtf8_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QByteArray>("removed");
        const QByteArray text = QByteArray(longRecord).replace("Label=Age", "Label=\xC3\x82ge").replace("\n", "\r\n");
        const QString unicode = QString::fromUtf8(text);
        QTest::newRow("utf-8") << text << QByteArray("\n-RecordLen=9\r\n");
        QTest::newRow("windows-1252") << unicode.toLatin1() << QByteArray("\n-Label=\xC2ge\r\n");
        QByteArray little = "\xFF\xFE";
        QByteArray big = "\xFE\xFF";
        for (const QChar character : unicode) {
            little.append(char(character.cell())).append(char(character.row()));
            big.append(char(character.row())).append(char(character.cell()));
        }
        QTest::newRow("utf-16le") << little << QByteArray("\n-RecordLen=9\r\n");
        QTest::newRow("utf-16be") << big << QByteArray("\n-RecordLen=9\r\n");
    }
    void encodingOfACorrectedDictionaryIsUtf8()
    {
        QFETCH(QByteArray, content);
        QFETCH(QByteArray, removed);
        write("a.dcf", content);
        const Run run = lint({ "--fix", "a.dcf", "-o", "b.dcf" });
        QCOMPARE(run.status, fine);
        QVERIFY2(run.out.contains(removed), run.out.constData());
        QVERIFY(run.out.size() < 600);
        const QByteArray written = directory.read("b.dcf");
        QVERIFY(written.contains("\r\nLabel=\xC3\x82ge\r\n") && written.contains("\r\nRecordLen=4\r\n"));
        QCOMPARE(written.startsWith("\xEF\xBB\xBF"), QString(QTest::currentDataTag()) != "utf-8");
        write("c.dcf", written);
        QCOMPARE(lint({ "--fix", "c.dcf" }).out, QByteArray());
    }

    void allRemainingFindingsAreShownOnRequest()
    {
        QByteArray values;
        for (int code = 100; code < 112; ++code)
            values += "Value=" + QByteArray::number(code) + ";Label " + QByteArray::number(code) + '\n';
        write("many.dcf", dictionary(values));
        QCOMPARE(lint({ "--fix", "many.dcf" }).err.count("error [wide-code]"), 10);
        QCOMPARE(lint({ "--fix", "--all", "many.dcf" }).err.count("error [wide-code]"), 12);
    }

    void statusIsThatOfAnUnreadableFileAmongOthers()
    {
        write("sound.dcf", sound);
        write("wide.dcf", wide);
        for (const char *format : { "table", "json", "sarif" }) {
            const Run run = lint({ "--format", format, "wide.dcf", "absent.dcf", "sound.dcf" });
            QCOMPARE(run.status, noAnswer);
            QVERIFY(run.out.contains("wide.dcf") && run.out.contains("wide-code"));
            QCOMPARE(run.err, QByteArray("vanlayout: absent.dcf: cannot be opened: No such file or directory\n"));
        }
    }

    void fullDiskIsReported()
    {
        write("a.dcf", wide);
        verifyFullDiskIsReported(directory, { "lint", "a.dcf" });
    }

    void helpNamesTheOptions()
    {
        verifyHelpDescribes("lint",
                            { "--format", "sarif", "--only", "--disable", "--list-rules", "--fix", "--output" });
    }

    void cleanup()
    {
        QFile::remove(QDir(directory.path()).filePath(".vanlayout-lint"));
        QDir(directory.path() + "/project").removeRecursively();
    }

private:
    void write(const QString &name, const QByteArray &content) const { directory.write(name, content); }
    Run lint(const QStringList &arguments) const { return directory.run(QStringList("lint") + arguments); }

    ToolDirectory directory;
};

QTEST_GUILESS_MAIN(VanlayoutLintTest)
#include "VanlayoutLintTest.moc"
