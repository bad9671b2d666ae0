#include "support/NotesLine.h"
#include "support/ToolRun.h"

#include <QJsonArray>
#include <QProcessEnvironment>

#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr int items = 3000;
const QByteArray cause = "cannot be read: Input/output error\n";

QByteArray textDictionary()
{
    QByteArray text = "[Dictionary]\nName=D\nRecordTypeStart=1\nRecordTypeLen=1\n\n[IdItems]\n";
    for (int i = 0; i < items; ++i)
        text += "\n[Item]\nLabel=An item\nName=ITEM_" + QByteArray::number(i) + "\nStart=2\nLen=3\n";
    return text;
}

QByteArray jsonDictionary()
{
    QByteArray text = R"({"name": "D", "recordType": {"start": 1, "length": 1}, "levels": [{"ids": {"items": [)";
    for (int i = 0; i < items; ++i)
        text += QByteArray(i > 0 ? "," : "") + R"({"name": "ITEM_)" + QByteArray::number(i) + R"(", "length": 3})";
    return text + "]}}]}\n";
}

QByteArray lookupFile()
{
    QByteArray text;
    for (int i = 0; i < items; ++i)
        text += QByteArray::number(10000 + i) + " value\n";
    return text;
}

const QStringList commandsOnOne[] = {
    { "fields", "--format", "table" },
    { "fields", "--format", "csv" },
    { "codebook", "-o", "-" },
    { "export", "--to", "ddi" },
    { "export", "--to", "csvw" },
    { "export", "--to", "json-schema" },
    { "convert", "--to", "cspro-text" },
    { "convert", "--to", "cspro-json" },
    { "convert", "--to", "sav" },
    { "lint" },
    { "lint", "--fix" },
};

} // namespace

/// Tests a disk that fails while the tool reads a file.
class VanlayoutReadFailureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        directory.write("bad.dcf", textDictionary());
        directory.write("bad.json", jsonDictionary());
        directory.write("bad.txt", lookupFile());
        directory.write("good.dcf", "[Dictionary]\nName=D\n\n[Item]\nName=GOOD\nStart=2\nLen=3\n");
    }

    void fileThatFailsGivesNoDocument_data() { makeRows(); }
    void fileThatFailsGivesNoDocument()
    {
        QFETCH(QString, file);
        QFETCH(qint64, goodBytes);

        for (const QStringList &command : commandsOnOne) {
            const Run run = runOnBadDisk(command + QStringList{ file }, file, goodBytes);
            verifyComplaint(run, file.toUtf8() + ": " + cause);
            QCOMPARE(run.out, QByteArray());
        }
        for (const QStringList &files : { QStringList{ file, "good.dcf" }, QStringList{ "good.dcf", file } }) {
            for (const char *command : { "diff", "concord" }) {
                const Run run = runOnBadDisk(QStringList{ command } + files, file, goodBytes);
                verifyComplaint(run, file.toUtf8() + ": " + cause);
                QCOMPARE(run.out, QByteArray());
            }
        }
    }

    // The labels of a Stata file are at its end, so all variables have been read when the disk fails.
    void statisticalFileThatFailsGivesNoDocument_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("stata") << "types-118.dta";
        QTest::newRow("spss") << "types.sav";
    }
    void statisticalFileThatFailsGivesNoDocument()
    {
        QFETCH(QString, file);

        QFile made(QStringLiteral(VAN_MADE_DATA "/") + file);
        QVERIFY(made.open(QIODevice::ReadOnly));
        const QByteArray bytes = made.readAll();
        directory.write(file, bytes);
        const qint64 goodBytes = bytes.contains("<lbl>") ? bytes.lastIndexOf("<lbl>") + 20 : bytes.size() / 2;
        for (const QStringList &command :
             { QStringList{ "codebook", "-o", "-" }, QStringList{ "export", "--to", "ddi" },
               QStringList{ "convert", "--to", "dta" },
               QStringList{ "convert", "--to", "cspro-json", "--ids", "x" } }) {
            const Run run = runOnBadDisk(command + QStringList{ file }, file, goodBytes);
            QCOMPARE(run.status, noAnswer);
            QVERIFY(run.err.endsWith("vanlayout: " + file.toUtf8() + ": " + cause));
            QCOMPARE(run.out, QByteArray());
        }
        const Run run = runOnBadDisk({ "explain", file }, file, goodBytes);
        QCOMPARE(run.status, noAnswer);
        QVERIFY(run.out.contains("read-failed (1)"));
    }

    void jsonSaysTheCause_data() { makeRows(); }
    void jsonSaysTheCause()
    {
        QFETCH(QString, file);
        QFETCH(qint64, goodBytes);

        const Run run = runOnBadDisk({ "fields", "--format", "json", file }, file, goodBytes);
        verifyComplaint(run, file.toUtf8() + ": " + cause);
        const QJsonObject whole = run.json().toObject();
        QCOMPARE(whole.keys(), QStringList("error"));
        const QJsonObject error = whole.value("error").toObject();
        QCOMPARE(error.keys(), QStringList("cause"));
        QCOMPARE(error.value("cause").toString().toUtf8() + '\n', cause);
    }

    void explainReportsTheFailure_data() { makeRows(); }
    void explainReportsTheFailure()
    {
        QFETCH(QString, file);
        QFETCH(qint64, goodBytes);

        const Run run = runOnBadDisk({ "explain", "--format", "json", file }, file, goodBytes);
        verifyComplaint(run, file.toUtf8() + ": " + cause);
        const QJsonArray notes = run.json().toObject().value("notes").toArray();
        QCOMPARE(notes.size(), 1);
        QCOMPARE(notes.at(0).toObject().value("kind").toString(), QString("read-failed"));
    }

    void outputIsNotReplaced_data() { makeRows(); }
    void outputIsNotReplaced()
    {
        QFETCH(QString, file);
        QFETCH(qint64, goodBytes);

        directory.write("kept", "as it was");
        for (const QStringList &command :
             { QStringList{ "export", "--to", "ddi" }, QStringList{ "codebook" },
               QStringList{ "convert", "--to", "cspro-text" }, QStringList{ "lint", "--fix" } }) {
            const Run run = runOnBadDisk(command + QStringList{ "-o", "kept", file }, file, goodBytes);
            verifyComplaint(run, file.toUtf8() + ": " + cause);
            QCOMPARE(directory.read("kept"), QByteArray("as it was"));
        }
    }

    void theOtherFilesAreShown()
    {
        Run run = runOnBadDisk({ "fields", "--format", "csv", "good.dcf", "bad.dcf", "good.dcf" }, "bad.dcf", 60000);
        run.err = withoutNotesLine(run.err);
        verifyComplaint(run, "bad.dcf: " + cause);
        QCOMPARE(run.out.count("GOOD"), 2);
        QCOMPARE(run.out.count("ITEM"), 0);
    }

    void lookupThatFailsHasNoReport_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<qint64>("goodBytes");
        for (const qint64 goodBytes : { 0, 3, 20000 }) {
            QTest::addRow("lookup after %lld", goodBytes) << QStringList{ "lookup" } << goodBytes;
            QTest::addRow("lookup as JSON after %lld", goodBytes)
                << QStringList{ "lookup", "--format", "json" } << goodBytes;
        }
    }
    void lookupThatFailsHasNoReport()
    {
        QFETCH(QStringList, options);
        QFETCH(qint64, goodBytes);

        const Run run = runOnBadDisk(options + QStringList{ "bad.txt" }, "bad.txt", goodBytes);
        verifyComplaint(run, "bad.txt: " + cause);
        QCOMPARE(run.out, QByteArray());
        const Run explained = runOnBadDisk({ "explain", "--type", "lookup", "bad.txt" }, "bad.txt", goodBytes);
        verifyComplaint(explained, "bad.txt: " + cause);
        QVERIFY(explained.out.contains("read-failed (1)"));
    }

    void diskThatReadsAllIsNoFailure()
    {
        const Run run = runOnBadDisk({ "fields", "--format", "csv", "bad.dcf" }, "bad.dcf", 100 << 20);
        QCOMPARE(run.status, fine);
        QCOMPARE(run.out.count("ITEM"), items);
    }

    void fileOverALimitIsNamedAsThat_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("problem");
        QTest::newRow("text of more than a gibibyte")
            << "huge.dcf" << QByteArray("is larger than 1 GiB, the limit for a text dictionary");
        QTest::newRow("JSON of more than two")
            << "huge.json" << QByteArray("is larger than 2 GiB, the limit for a JSON dictionary");
        QTest::newRow("items") << "items.dcf"
                               << QByteArray("has more than 1000000 items, or 250000000 characters in the names "
                                             "of occurrences");
        QTest::newRow("value labels of occurrences")
            << "values.dcf" << QByteArray("has more than 4000000 value labels in the occurrences of items");
    }
    void fileOverALimitIsNamedAsThat()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, problem);

        directory.write("huge.dcf", "[Dictionary]\n");
        QVERIFY(QFile::resize(directory.filePath("huge.dcf"), (qint64(1) << 30) + 1));
        directory.write("huge.json", "{\n");
        QVERIFY(QFile::resize(directory.filePath("huge.json"), (qint64(1) << 31) + 1));
        directory.write("items.dcf", "[Dictionary]\nName=D\n\n[Item]\nName=A\nStart=1\nLen=1\nOccurrences=1000001\n");
        QByteArray values = "[Item]\nName=A\n\n[Item]\nName=B\nLen=4\nOccurrences=400001\n\n[ValueSet]\nName=V\n";
        for (int value = 0; value < 10; ++value)
            values += "Value=" + QByteArray::number(value) + ";label\n";
        directory.write("values.dcf", values);
        const Run run = directory.run({ "fields", "--format", "json", file });
        verifyComplaint(run, file.toUtf8() + ": " + problem + '\n');
        const QJsonObject error = run.json().toObject().value("error").toObject();
        QCOMPARE(error.value("cause").toString().toUtf8(), problem);
        QVERIFY(QFile::remove(directory.filePath("huge.dcf")) && QFile::remove(directory.filePath("huge.json")));
    }

    void outputOfEarlierFilesIsThereBeforeTheNextIsRead_data()
    {
        QTest::addColumn<QStringList>("command");
        for (const char *format : { "table", "json", "csv" })
            QTest::addRow("fields as %s", format) << QStringList{ "fields", "--format", format };
        for (const char *format : { "table", "json" })
            QTest::addRow("explain as %s", format) << QStringList{ "explain", "--format", format };
    }
    void outputOfEarlierFilesIsThereBeforeTheNextIsRead()
    {
        QFETCH(QStringList, command);

        // The second file is a pipe that nobody writes to: the tool waits, and is killed.
        const QByteArray pipe = QFile::encodeName(directory.filePath("pipe"));
        unlink(pipe.constData());
        QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
        QProcess tool;
        tool.setWorkingDirectory(directory.path());
        tool.start(VAN_TOOL, command + QStringList{ "good.dcf", "pipe" });
        QByteArray out;
        while (!out.contains("GOOD") && tool.waitForReadyRead(patience))
            out += tool.readAllStandardOutput();
        QVERIFY(tool.state() == QProcess::Running);
        tool.kill();
        tool.waitForFinished();
        QVERIFY2(out.contains("GOOD"), out.constData());
    }

    void memoryOfTheProcessIsNoFile_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::newRow("fields") << QStringList{ "fields" };
        QTest::newRow("cspro") << QStringList{ "fields", "--type", "cspro" };
        QTest::newRow("cspro8") << QStringList{ "fields", "--type", "cspro8" };
        QTest::newRow("lookup") << QStringList{ "lookup" };
        QTest::newRow("export") << QStringList{ "export", "--to", "ddi" };
        QTest::newRow("convert") << QStringList{ "convert", "--to", "cspro-json" };
    }
    void memoryOfTheProcessIsNoFile()
    {
        QFETCH(QStringList, options);

        const Run run = directory.run(options + QStringList{ "/proc/self/mem" });
        verifyComplaint(run, "/proc/self/mem: " + cause);
        QCOMPARE(run.out, QByteArray());
    }

private:
    static void makeRows()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<qint64>("goodBytes");
        for (const char *file : { "bad.dcf", "bad.json" }) {
            for (const qint64 goodBytes : { 0, 5, 60000 })
                QTest::addRow("%s after %lld bytes", file, goodBytes) << file << goodBytes;
        }
    }

    Run runOnBadDisk(const QStringList &arguments, const QString &file, qint64 goodBytes) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("LD_PRELOAD", FAILING_DISK);
        // The sanitizer requires to be loaded first, which is not necessary here.
        environment.insert("ASAN_OPTIONS", environment.value("ASAN_OPTIONS") + ":verify_asan_link_order=0");
        environment.insert("FAILING_FILE", '/' + file);
        environment.insert("FAILING_BEHIND", QString::number(goodBytes));
        QProcess tool;
        tool.setProcessEnvironment(environment);
        return directory.run(arguments, tool);
    }

    ToolDirectory directory;
};

QTEST_GUILESS_MAIN(VanlayoutReadFailureTest)
#include "VanlayoutReadFailureTest.moc"
