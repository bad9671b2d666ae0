#include "support/OrdinaryUser.h"

#include <QtTest>

#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr int fine = 0;
constexpr int finding = 1;
constexpr int noAnswer = 2;

struct Run {
    int status = -1;
    QByteArray out;
    QByteArray err;
};

} // namespace

/// `vanlayout lookup`, run as a user runs it.
class VanlayoutLookupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void jsonHasEveryKeyInItsOrder()
    {
        write("AA x\nAA y\nBB z\n");
        const Run run = check({ "--format", "json", "lookup.txt" });
        QCOMPARE(run.status, finding);
        QCOMPARE(run.err, QByteArray());
        QCOMPARE(run.out,
                 QByteArray("{\n"
                            "  \"title\": \"VanX Lookup Checking\",\n"
                            "  \"id\": \"\",\n"
                            "  \"label\": \"\",\n"
                            "  \"file\": \"lookup.txt\",\n"
                            "  \"mode\": 3,\n"
                            "  \"errors\": [\n"
                            "    \"2_Key [AA] already exists\"\n"
                            "  ],\n"
                            "  \"frequencies\": [\n"
                            "    {\n"
                            "      \"text\": \"x\",\n"
                            "      \"count\": 1\n"
                            "    },\n"
                            "    {\n"
                            "      \"text\": \"z\",\n"
                            "      \"count\": 1\n"
                            "    }\n"
                            "  ]\n"
                            "}\n"));
    }

    void tableIsTheDefaultForm()
    {
        write("AA x\nAA y\nBB z z\n");
        const Run run = check({ "lookup.txt" });
        QCOMPARE(run.status, finding);
        QCOMPARE(run.out,
                 QByteArray("VanX Lookup Checking\n"
                            "Lookup Identification\n"
                            "Lookup Label\n"
                            "Lookup File            lookup.txt\n"
                            "\n"
                            "Errors: 1, each with its line\n"
                            "2_Key [AA] already exists\n"
                            "\n"
                            "Value  Count\n"
                            "x      1\n"
                            "z z    1\n"));
    }

    void modeSaysWhatIsReported_data()
    {
        QTest::addColumn<QString>("mode");
        QTest::addColumn<int>("number");
        QTest::addColumn<int>("errors");
        QTest::addColumn<int>("frequencies");
        QTest::addColumn<int>("status");
        QTest::newRow("count") << "count" << 1 << 0 << 1 << fine;
        QTest::newRow("errors") << "errors" << 2 << 2 << 0 << finding;
        QTest::newRow("both") << "both" << 3 << 2 << 1 << finding;
    }
    void modeSaysWhatIsReported()
    {
        QFETCH(QString, mode);
        QFETCH(int, frequencies);
        write("AA x\n\n");
        const Run run = check({ "--format", "json", "--mode", mode, "lookup.txt" });
        QTEST(run.status, "status");
        const QJsonObject report = QJsonDocument::fromJson(run.out).object();
        QTEST(report["mode"].toInt(), "number");
        QTEST(report["errors"].toArray().size(), "errors");
        QCOMPARE(report["frequencies"].toArray().size(), frequencies);
        const QByteArray table = check({ "--mode", mode, "lookup.txt" }).out;
        QCOMPARE(table.contains("Errors: 2"), mode != "count");
        QCOMPARE(table.contains("Count"), frequencies > 0);
    }

    void separatorIsNamed_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("line");
        QTest::newRow("space") << "space"
                               << "A B";
        QTest::newRow("tab") << "tab"
                             << "A\tB";
        QTest::newRow("comma") << "comma"
                               << "A,B";
        QTest::newRow("semicolon") << "semicolon"
                                   << "A;B";
        QTest::newRow("colon") << "colon"
                               << "A:B";
    }
    void separatorIsNamed()
    {
        QFETCH(QString, name);
        QFETCH(QString, line);
        write(line.toUtf8());
        const Run run = check({ "--format", "json", "--separator", name, "lookup.txt" });
        QCOMPARE(run.status, fine);
        const QJsonArray frequencies = QJsonDocument::fromJson(run.out).object()["frequencies"].toArray();
        QCOMPARE(frequencies.at(0)["text"].toString(), QString("B"));
    }

    void thereIsNoLimitOfMessagesUntilItIsAskedFor()
    {
        write("AA x\nAA y\nAA z\n");
        QVERIFY(!check({ "lookup.txt" }).out.contains("Too many"));
        const Run run = check({ "--format", "json", "--max-messages", "1", "lookup.txt" });
        const QJsonArray errors = QJsonDocument::fromJson(run.out).object()["errors"].toArray();
        QCOMPARE(errors.at(0).toString(), QString("2_Key [AA] already exists"));
        QCOMPARE(errors.at(1).toString(), QString("3_Too many error messages [\2], only the first [\1] will be shown"));
    }

    void fileWithoutErrorsIsFine()
    {
        write("AA x\nBB y\n");
        const Run run = check({ "lookup.txt" });
        QCOMPARE(run.status, fine);
        QVERIFY(run.out.contains("No errors\n"));
        write("");
        QCOMPARE(check({ "lookup.txt" }).status, fine);
    }

    void noAnswerIsStatus2AndOneLine_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("problem");
        QTest::newRow("absent") << QStringList("absent.txt") << QByteArray("vanlayout: absent.txt: no such file\n");
        QTest::newRow("folder") << QStringList(".") << QByteArray("vanlayout: .: is a folder\n");
        QTest::newRow("empty name") << QStringList("") << QByteArray("vanlayout: '': no such file\n");
        QTest::newRow("no file") << QStringList() << QByteArray("vanlayout: ");
        QTest::newRow("two files") << (QStringList{ "lookup.txt", "lookup.txt" }) << QByteArray("vanlayout: ");
        QTest::newRow("unknown mode") << (QStringList{ "--mode", "all", "lookup.txt" }) << QByteArray("vanlayout: ");
        QTest::newRow("unknown separator")
            << (QStringList{ "--separator", "|", "lookup.txt" }) << QByteArray("vanlayout: ");
        QTest::newRow("csv") << (QStringList{ "--format", "csv", "lookup.txt" }) << QByteArray("vanlayout: ");
        QTest::newRow("limit is no number")
            << (QStringList{ "--max-messages", "all", "lookup.txt" }) << QByteArray("vanlayout: ");
        QTest::newRow("limit is larger than an int")
            << (QStringList{ "--max-messages", "2147483648", "lookup.txt" }) << QByteArray("vanlayout: ");
        QTest::newRow("option of show") << (QStringList{ "--type", "auto", "lookup.txt" }) << QByteArray("vanlayout: ");
        QTest::newRow("below a file") << QStringList("lookup.txt/x")
                                      << QByteArray("vanlayout: lookup.txt/x: no such file\n");
        QTest::newRow("negative limit") << (QStringList{ "--max-messages", "-1", "lookup.txt" })
                                        << QByteArray("vanlayout: ");
    }
    void noAnswerIsStatus2AndOneLine()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, problem);
        write("AA x\n");
        const Run run = check(arguments);
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.out, QByteArray());
        QVERIFY2(run.err.startsWith(problem), run.err.constData());
        QCOMPARE(run.err.count('\n'), 1);
    }

    void pipeIsNotRead()
    {
        QCOMPARE(mkfifo(QFile::encodeName(folder.filePath("fifo")).constData(), 0600), 0);
        const Run run = check({ "fifo" });
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.err, QByteArray("vanlayout: fifo: not read from a pipe\n"));
    }

    void fileWithoutPermissionIsStatus2AndOneLine()
    {
        write("AA x\n");
        const QString path = folder.filePath("lookup.txt");
        QFile::setPermissions(path, QFileDevice::WriteOwner);
        Run run;
        asOrdinaryUser([&] { run = check({ "lookup.txt" }); });
        QFile::remove(path);
        QCOMPARE(run.status, noAnswer);
        QVERIFY(run.err.startsWith("vanlayout: lookup.txt: cannot be opened"));
    }

    void fullDiskIsStatus2AndOneLine()
    {
        if (!QFile::exists("/dev/full"))
            QSKIP("there is no /dev/full");
        write("AA x\n");
        QProcess tool;
        tool.setStandardOutputFile("/dev/full");
        const Run run = check({ "lookup.txt" }, tool);
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.err, QByteArray("vanlayout: standard output: cannot be written\n"));
    }

    void tableSendsNoControlCharacters()
    {
        write("A\033[31m x\033\nA\033[31m \ay\n");
        const Run run = check({ "lookup.txt" });
        QCOMPARE(run.status, finding);
        for (const char byte : run.out)
            QVERIFY(byte == '\n' || static_cast<unsigned char>(byte) >= ' ');
    }

    void longCheckTellsItsProgressOnATerminal()
    {
        // Enough for more than a second on any machine; ended as soon as a line was seen.
        QFile file(folder.filePath("large.txt"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QByteArray piece;
        for (int i = 0; i < 500000; ++i)
            piece += QByteArray::number(qint64(i) * 7919) + " Label\n";
        for (int i = 0; i < 12; ++i)
            file.write(piece);
        file.close();

        const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
        if (terminal < 0 || grantpt(terminal) != 0 || unlockpt(terminal) != 0 || !ptsname(terminal))
            QSKIP("there is no terminal");
        const QByteArray name = ptsname(terminal);
        QProcess tool;
        tool.setStandardErrorFile(QString::fromLocal8Bit(name));
        tool.setStandardOutputFile(QProcess::nullDevice());
        tool.setWorkingDirectory(folder.path());
        tool.start(VAN_TOOL, { "lookup", "--mode", "count", "large.txt" });
        QVERIFY(tool.waitForStarted());
        QElapsedTimer timer;
        timer.start();
        fcntl(terminal, F_SETFL, O_NONBLOCK);
        QByteArray shown;
        const auto hasShown = [&] {
            char bytes[256];
            const ssize_t count = read(terminal, bytes, sizeof(bytes));
            if (count > 0)
                shown.append(bytes, int(count));
            return QRegularExpression("large\\.txt: [0-9]+ %").match(QString::fromLocal8Bit(shown)).hasMatch();
        };
        QTRY_VERIFY_WITH_TIMEOUT(hasShown() || tool.state() == QProcess::NotRunning, 60000);
        hasShown();
        constexpr qint64 longEnough = 1500;
        const bool isQuickMachine = tool.state() == QProcess::NotRunning && timer.elapsed() < longEnough;
        tool.kill();
        tool.waitForFinished();
        close(terminal);
        if (isQuickMachine && shown.isEmpty())
            QSKIP("the check takes no more than a second here");
        QVERIFY2(shown.contains(" %"), shown.constData());

        // Not in a pipe.
        const Run piped = check({ "--mode", "count", "large.txt" });
        QCOMPARE(piped.status, fine);
        QCOMPARE(piped.err, QByteArray());
        QFile::remove(folder.filePath("large.txt"));
    }

    void shortCheckTellsNothingOnATerminal()
    {
        write("AA x\n");
        const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
        if (terminal < 0 || grantpt(terminal) != 0 || unlockpt(terminal) != 0 || !ptsname(terminal))
            QSKIP("there is no terminal");
        const QString name = QString::fromLocal8Bit(ptsname(terminal));
        const int end = open(ptsname(terminal), O_RDWR | O_NOCTTY);
        QVERIFY(end >= 0);
        QProcess tool;
        tool.setStandardErrorFile(name);
        const Run run = check({ "lookup.txt" }, tool);
        fcntl(terminal, F_SETFL, O_NONBLOCK);
        char byte = 0;
        const ssize_t count = read(terminal, &byte, 1);
        close(end);
        close(terminal);
        QCOMPARE(run.status, fine);
        QVERIFY(count <= 0);
    }

    void limitOfNoneReplacesTheFirstMessage()
    {
        write("AA x\nAA y\nAA z\n");
        const Run run = check({ "--format", "json", "--max-messages", "0", "lookup.txt" });
        QCOMPARE(run.status, finding);
        const QJsonArray errors = QJsonDocument::fromJson(run.out).object()["errors"].toArray();
        QCOMPARE(errors.size(), 2);
        QVERIFY(errors.at(0).toString().startsWith("2_Too many error messages ["));
        QCOMPARE(errors.at(1).toString(), QString("3_Key [AA] already exists"));
        QVERIFY(run.out.contains("only the first [\\u0000] will be shown")); // a character, not a digit
    }

    void frequenciesStandInTheOrderOfTheirTexts()
    {
        write("1 z\n2 a\n3 B\n4 10\n5 9\n6 \xC3\xA9\n7 z\n8 \n");
        const Run run = check({ "--format", "json", "lookup.txt" });
        QStringList texts;
        for (const auto &entry : QJsonDocument::fromJson(run.out).object()["frequencies"].toArray()) {
            texts.append(entry.toObject()["text"].toString());
            QCOMPARE(entry.toObject()["count"].toInt(), 1); // of "z" too
        }
        QCOMPARE(texts, (QStringList{ "", "10", "9", "B", "a", "z", QString::fromUtf8("\xC3\xA9") }));
    }

    void jsonEscapesWhatItMust()
    {
        write("A \"\\\t\x01\n");
        QVERIFY(check({ "--format", "json", "lookup.txt" }).out.contains("\"text\": \"\\\"\\\\\\t\\u0001\""));
        // Half of a surrogate pair, which UTF-8 cannot hold; the file is in UTF-16.
        write(QByteArray("\xFF\xFE"
                         "A\0 \0\x3D\xD8",
                         8));
        QVERIFY(check({ "--format", "json", "lookup.txt" }).out.toLower().contains("\"text\": \"\\ud83d\""));
    }

    void columnsOfTheTableAreAligned()
    {
        write("1 x\n2 \xE5\x9F\x8E\xE5\xB8\x82\n3 " + QByteArray(100, 'w') + '\n');
        const QList<QByteArray> lines = check({ "lookup.txt" }).out.split('\n');
        constexpr int width = 60; // a longer text does not push the counts of the others away
        QVERIFY(lines.contains(QByteArray("Value").leftJustified(width + 2) + "Count"));
        QVERIFY(lines.contains(QByteArray("x").leftJustified(width + 2) + '1'));
        QVERIFY(lines.contains("\xE5\x9F\x8E\xE5\xB8\x82" + QByteArray(width + 2 - 4, ' ') + '1')); // two columns each
    }

    void namesAndTextsAreUtf8InAPlainLocale()
    {
        const QString name = QString::fromUtf8("caf\xC3\xA9.txt");
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write("A \xC3\xA9\n"), qint64(5));
        file.close();
        QProcess tool;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("LC_ALL", "C");
        tool.setProcessEnvironment(environment);
        const Run run = check({ "--format", "json", name }, tool);
        QCOMPARE(run.status, fine);
        const QJsonObject report = QJsonDocument::fromJson(run.out).object();
        QCOMPARE(report["file"].toString(), name);
        QCOMPARE(report["frequencies"].toArray().at(0)["text"].toString(), QString(QChar(0xE9)));
    }

    void fileIsReadThroughALink()
    {
        write("AA x\n");
        QVERIFY(QFile::link("lookup.txt", folder.filePath("link")));
        const Run run = check({ "--format", "json", "link" });
        QCOMPARE(run.status, fine);
        QCOMPARE(QJsonDocument::fromJson(run.out).object()["file"].toString(), QString("link"));
    }

    void optionsMayStandBehindTheFile()
    {
        write("AA,x\n");
        const Run run = check({ "lookup.txt", "--separator", "comma", "--mode", "count", "--verbose" });
        QCOMPARE(run.status, fine);
        QVERIFY(run.out.contains("x      1\n"));
        QVERIFY(!run.out.contains("rror"));
    }

    void exampleHasItsFindings()
    {
        const Run run = check({ "--mode", "errors", QStringLiteral(VAN_EXAMPLES "/occupations.txt") });
        QCOMPARE(run.status, finding);
        for (const char *error : { "12_Key [6111] already exists", "14_Key [711] has a different key size [3]",
                                   "17_Separator [ ] does not exist" })
            QVERIFY2(run.out.contains(error), error);
    }

    void helpTellsOfTheCommand()
    {
        QProcess tool;
        tool.start(VAN_TOOL, { "--help" });
        QVERIFY(tool.waitForFinished());
        QVERIFY(tool.readAllStandardOutput().contains("lookup"));
        const QByteArray help = check({ "--help" }).out;
        for (const char *option : { "--format", "--separator", "--mode", "--max-messages", "FILE" })
            QVERIFY2(help.contains(option), option);
    }

private:
    void write(const QByteArray &content) const
    {
        QFile file(folder.filePath("lookup.txt"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    }

    Run check(const QStringList &arguments) const
    {
        QProcess tool;
        return check(arguments, tool);
    }

    Run check(const QStringList &arguments, QProcess &tool) const
    {
        tool.setWorkingDirectory(folder.path());
        tool.start(VAN_TOOL, QStringList("lookup") + arguments);
        constexpr int patience = 120000;
        if (!tool.waitForFinished(patience) || tool.exitStatus() != QProcess::NormalExit)
            return {};
        return { tool.exitCode(), tool.readAllStandardOutput(), tool.readAllStandardError() };
    }

    QTemporaryDir folder;
};

QTEST_GUILESS_MAIN(VanlayoutLookupTest)
#include "VanlayoutLookupTest.moc"
