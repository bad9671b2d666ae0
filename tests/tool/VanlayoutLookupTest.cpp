#include "support/OrdinaryUser.h"
#include "support/PseudoTerminal.h"
#include "support/ToolRun.h"

#include <QtTest>

#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>

#include <sys/stat.h>

/// Tests `vanlayout lookup`, run as by a user.
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
        const QJsonValue report = run.json();
        QTEST(report["mode"].toInt(), "number");
        QTEST(int(report["errors"].toArray().size()), "errors");
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
        const QJsonArray frequencies = run.json()["frequencies"].toArray();
        QCOMPARE(frequencies.at(0)["text"].toString(), QString("B"));
    }

    void thereIsNoLimitOfMessagesByDefault()
    {
        write("AA x\nAA y\nAA z\n");
        QVERIFY(!check({ "lookup.txt" }).out.contains("Too many"));
        const Run run = check({ "--format", "json", "--max-messages", "1", "lookup.txt" });
        const QJsonArray errors = run.json()["errors"].toArray();
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
        QTest::newRow("absent") << QStringList("absent.txt") << QByteArray("absent.txt: no such file\n");
        QTest::newRow("directory") << QStringList(".") << QByteArray(".: is a directory\n");
        QTest::newRow("empty name") << QStringList("") << QByteArray("'': no such file\n");
        QTest::newRow("no file") << QStringList() << QByteArray();
        QTest::newRow("two files") << (QStringList{ "lookup.txt", "lookup.txt" }) << QByteArray();
        QTest::newRow("unknown mode") << (QStringList{ "--mode", "all", "lookup.txt" }) << QByteArray();
        QTest::newRow("unknown separator") << (QStringList{ "--separator", "|", "lookup.txt" }) << QByteArray();
        QTest::newRow("csv") << (QStringList{ "--format", "csv", "lookup.txt" }) << QByteArray();
        QTest::newRow("limit is no number") << (QStringList{ "--max-messages", "all", "lookup.txt" }) << QByteArray();
        QTest::newRow("limit is larger than an int")
            << (QStringList{ "--max-messages", "2147483648", "lookup.txt" }) << QByteArray();
        QTest::newRow("option of fields") << (QStringList{ "--type", "auto", "lookup.txt" }) << QByteArray();
        QTest::newRow("below a file") << QStringList("lookup.txt/x") << QByteArray("lookup.txt/x: no such file\n");
        QTest::newRow("value in two lines") << (QStringList{ "--mode", "a\nb", "lookup.txt" }) << QByteArray();
        QTest::newRow("name in two lines") << QStringList("a\nb")
                                           << QByteArray("a\xE2\x90\x8A"
                                                         "b: no such file\n");
        QTest::newRow("negative limit") << (QStringList{ "--max-messages", "-1", "lookup.txt" }) << QByteArray();
    }
    void noAnswerIsStatus2AndOneLine()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, problem);
        write("AA x\n");
        const Run run = check(arguments);
        verifyComplaint(run, problem);
        QCOMPARE(run.out, QByteArray());
    }

    void pipeIsNotRead()
    {
        QCOMPARE(mkfifo(QFile::encodeName(directory.filePath("fifo")).constData(), 0600), 0);
        const Run run = check({ "fifo" });
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.err, QByteArray("vanlayout: fifo: not read from a pipe\n"));
    }

    void fileWithoutPermissionIsStatus2AndOneLine()
    {
        write("AA x\n");
        const QString path = directory.filePath("lookup.txt");
        QFile::setPermissions(path, QFileDevice::WriteOwner);
        Run run;
        asOrdinaryUser([&] { run = check({ "lookup.txt" }); });
        QFile::remove(path);
        verifyComplaint(run, "lookup.txt: cannot be opened");
    }

    void fullDiskIsStatus2AndOneLine()
    {
        write("AA x\n");
        verifyFullDiskIsReported(directory, { "lookup", "lookup.txt" });
    }

    void closedStandardOutputIsStatus2AndOneLine()
    {
        write("AA x\n");
        const Run run = runShell(directory, "\"$0\" lookup lookup.txt >&-");
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.err, QByteArray("vanlayout: standard output: cannot be written\n"));
    }

    void versionIsReported()
    {
        const Run run = check({ "--version" });
        QCOMPARE(run.status, fine);
        QVERIFY2(run.out.startsWith("vanlayout "), run.out.constData());
        QCOMPARE(run.out.count('\n'), 1);
        QCOMPARE(run.err, QByteArray());
    }

    void wordAfterTwoHyphensIsAFile()
    {
        directory.write("--help", "AA x\n");
        const Run run = check({ "--format", "json", "--", "--help" });
        QCOMPARE(run.status, fine);
        QCOMPARE(run.json()["file"].toString(), QString("--help"));
    }

    void tableSendsNoControlCharacters()
    {
        write("A\033[31m x\033\nA\033[31m \ay\n");
        const Run run = check({ "lookup.txt" });
        QCOMPARE(run.status, finding);
        for (const char byte : run.out)
            QVERIFY(byte == '\n' || static_cast<unsigned char>(byte) >= ' ');
    }

    void longCheckShowsItsProgressOnATerminal()
    {
        // The number of lines is doubled until a run takes long enough on this machine. A run is ended when its
        // progress was seen.
        constexpr int fewestLines = 6 << 20;
        constexpr int maxLines = fewestLines << 4;
        constexpr qint64 longEnough = 10000; // milliseconds
        const PseudoTerminal terminal;
        QVERIFY2(terminal.isOpen(), "this system has no pseudo terminals");
        ProgressSeen seen;
        for (int lines = fewestLines; lines <= maxLines && !seen.isShown && seen.elapsed < longEnough; lines *= 2) {
            writeLargeFile(lines);
            seen = watchLargeFile(terminal);
        }
        QVERIFY2(seen.isShown, qPrintable(QStringLiteral("not shown in %1 ms").arg(seen.elapsed)));

        // There is no progress in a pipe.
        const Run piped = check({ "--mode", "count", "large.txt" });
        QCOMPARE(piped.status, fine);
        QCOMPARE(piped.err, QByteArray());
        QFile::remove(directory.filePath("large.txt"));
    }

    void shortCheckShowsNothingOnATerminal()
    {
        write("AA x\n");
        const PseudoTerminal terminal;
        QVERIFY2(terminal.isOpen(), "this system has no pseudo terminals");
        QProcess tool;
        tool.setStandardErrorFile(terminal.name());
        const Run run = check({ "lookup.txt" }, tool);
        QCOMPARE(run.status, fine);
        QCOMPARE(terminal.taken(), QByteArray());
    }

    void limitOfNoneReplacesTheFirstMessage()
    {
        write("AA x\nAA y\nAA z\n");
        const Run run = check({ "--format", "json", "--max-messages", "0", "lookup.txt" });
        QCOMPARE(run.status, finding);
        const QJsonArray errors = run.json()["errors"].toArray();
        QCOMPARE(errors.size(), 2);
        QVERIFY(errors.at(0).toString().startsWith("2_Too many error messages ["));
        QCOMPARE(errors.at(1).toString(), QString("3_Key [AA] already exists"));
        QVERIFY(run.out.contains("only the first [\\u0000] will be shown")); // a character, not a digit
    }

    void frequenciesAreInTheOrderOfTheirTexts()
    {
        write("1 z\n2 a\n3 B\n4 10\n5 9\n6 \xC3\xA9\n7 z\n8 \n");
        const Run run = check({ "--format", "json", "lookup.txt" });
        QStringList texts;
        for (const auto &entry : run.json()["frequencies"].toArray()) {
            texts.append(entry.toObject()["text"].toString());
            QCOMPARE(entry.toObject()["count"].toInt(), 1); // of "z" too
        }
        QCOMPARE(texts, (QStringList{ "", "10", "9", "B", "a", "z", QString::fromUtf8("\xC3\xA9") }));
    }

    void jsonEscapesWhatItMust()
    {
        write("A \"\\\t\x01\n");
        QVERIFY(check({ "--format", "json", "lookup.txt" }).out.contains("\"text\": \"\\\"\\\\\\t\\u0001\""));
        // Half a surrogate pair, which UTF-8 cannot represent; the file is in UTF-16.
        directory.write("lookup.txt",
                        QByteArray("\xFF\xFE"
                                   "A\0 \0\x3D\xD8",
                                   8));
        QVERIFY(check({ "--format", "json", "lookup.txt" }).out.toLower().contains("\"text\": \"\\ud83d\""));
    }

    void columnsOfTheTableAreAligned()
    {
        write("1 x\n2 \xE5\x9F\x8E\xE5\xB8\x82\n3 " + QByteArray(100, 'w') + '\n');
        const QList<QByteArray> lines = check({ "lookup.txt" }).out.split('\n');
        constexpr int width = 60; // a longer text does not move the counts of the others
        QVERIFY(lines.contains(QByteArray("Value").leftJustified(width + 2) + "Count"));
        QVERIFY(lines.contains(QByteArray("x").leftJustified(width + 2) + '1'));
        QVERIFY(lines.contains("\xE5\x9F\x8E\xE5\xB8\x82" + QByteArray(width + 2 - 4, ' ') + '1')); // two columns each
    }

    void namesAndTextsAreUtf8InAPlainLocale()
    {
        const QString name = QString::fromUtf8("caf\xC3\xA9.txt");
        directory.write(name, "A \xC3\xA9\n");
        QProcess tool;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("LC_ALL", "C");
        tool.setProcessEnvironment(environment);
        const Run run = check({ "--format", "json", name }, tool);
        QCOMPARE(run.status, fine);
        const QJsonValue report = run.json();
        QCOMPARE(report["file"].toString(), name);
        QCOMPARE(report["frequencies"].toArray().at(0)["text"].toString(), QString(QChar(0xE9)));
    }

    void fileIsReadThroughALink()
    {
        write("AA x\n");
        QVERIFY(QFile::link("lookup.txt", directory.filePath("link")));
        const Run run = check({ "--format", "json", "link" });
        QCOMPARE(run.status, fine);
        QCOMPARE(run.json()["file"].toString(), QString("link"));
    }

    void optionsMayFollowTheFile()
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

    void helpDescribesTheCommand()
    {
        verifyHelpDescribes("lookup", { "--format", "--separator", "--mode", "--max-messages", "FILE" });
    }

private:
    void write(const QByteArray &content) const { directory.write("lookup.txt", content); }

    Run check(const QStringList &arguments) const { return directory.run(QStringList("lookup") + arguments); }

    Run check(const QStringList &arguments, QProcess &tool) const
    {
        return directory.run(QStringList("lookup") + arguments, tool);
    }

    void writeLargeFile(int lines) const
    {
        QFile file(directory.filePath("large.txt"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        constexpr int linesOfAPiece = 1 << 19;
        QByteArray piece;
        for (int i = 0; i < linesOfAPiece; ++i)
            piece += QByteArray::number(qint64(i) * 7919) + " Label\n";
        for (int i = 0; i < lines / linesOfAPiece; ++i)
            QCOMPARE(file.write(piece), qint64(piece.size()));
    }

    struct ProgressSeen {
        bool isShown = false;
        qint64 elapsed = 0; // milliseconds
    };

    // Runs the tool on a terminal until it shows its progress or ends.
    ProgressSeen watchLargeFile(const PseudoTerminal &terminal) const
    {
        QProcess tool;
        tool.setStandardErrorFile(terminal.name());
        tool.setStandardOutputFile(QProcess::nullDevice());
        tool.setWorkingDirectory(directory.path());
        QElapsedTimer timer;
        timer.start();
        tool.start(VAN_TOOL, { "lookup", "--mode", "count", "large.txt" });
        const QRegularExpression progress("large\\.txt: [0-9]+ %");
        QByteArray shown;
        bool isRunning = tool.waitForStarted();
        ProgressSeen seen;
        while (isRunning && !seen.isShown && !timer.hasExpired(patience)) {
            isRunning = !tool.waitForFinished(10);
            shown += terminal.taken();
            seen.isShown = progress.match(QString::fromLocal8Bit(shown)).hasMatch();
        }
        seen.elapsed = timer.elapsed();
        tool.kill();
        tool.waitForFinished();
        return seen;
    }

    ToolDirectory directory;
};

QTEST_GUILESS_MAIN(VanlayoutLookupTest)
#include "VanlayoutLookupTest.moc"
