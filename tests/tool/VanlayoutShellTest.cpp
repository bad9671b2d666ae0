#include "support/PseudoTerminal.h"
#include "support/ToolRun.h"

#include <QtTest>

#include <QRegularExpression>

#include <csignal>
#include <sys/stat.h>

namespace
{

const QStringList allCommands = { "show",     "fields", "explain", "lookup", "diff",       "find", "concord",
                                  "codebook", "export", "load",    "lint",   "completion", "help" };

} // namespace

/// Tests the use of the command in a shell: help, examples, suggestions for mistyped words, and completion.
class VanlayoutShellTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void helpOfACommandIsThatOfItsOption_data()
    {
        QTest::addColumn<QString>("command");
        for (const QString &command : allCommands)
            QTest::newRow(qPrintable(command)) << command;
    }
    void helpOfACommandIsThatOfItsOption()
    {
        QFETCH(QString, command);
        const Run help = directory.run({ "help", command });
        QCOMPARE(help.status, fine);
        QCOMPARE(help.err, QByteArray());
        QCOMPARE(help.out, directory.run({ command, "--help" }).out);
        QVERIFY(help.out.contains("Usage: vanlayout " + command.toUtf8() + " [OPTIONS]"));
        QVERIFY2(help.out.contains("\nExamples:\n  vanlayout " + command.toUtf8()), help.out.constData());
    }

    void theManualNamesEveryOptionAndValue_data() { helpOfACommandIsThatOfItsOption_data(); }
    void theManualNamesEveryOptionAndValue()
    {
        QFETCH(QString, command);
        QFile page(QStringLiteral(VAN_DOCS "/vanlayout.1"));
        QVERIFY(page.open(QIODevice::ReadOnly));
        const QString manual = QString::fromUtf8(page.readAll()).replace("\\-", "-");
        QVERIFY(manual.contains("\n.B vanlayout " + command + '\n'));
        const int place = manual.indexOf(".SH OPTIONS OF " + command.toUpper() + '\n');
        const QString section = place < 0 ? QString() : manual.mid(place, manual.indexOf("\n.SH ", place) - place);
        const QString ofAll = manual.mid(manual.indexOf(".SH OPTIONS OF ALL"));
        const QString help = QString::fromUtf8(directory.run({ "help", command }).out);
        QRegularExpressionMatchIterator options
            = QRegularExpression(QStringLiteral("^  (?:(-\\w),)?(--[\\w-]+)"), QRegularExpression::MultilineOption)
                  .globalMatch(help);
        QVERIFY(options.hasNext());
        while (options.hasNext()) {
            const QRegularExpressionMatch option = options.next();
            const QString &where = option.captured(2) == "--help" ? ofAll : section;
            QVERIFY2(where.contains(option.captured(1)), qPrintable(option.captured(1)));
            QVERIFY2(where.contains(option.captured(2)), qPrintable(option.captured(2)));
        }
        QRegularExpressionMatchIterator lists = QRegularExpression(QStringLiteral("\\{([^}]*)\\}")).globalMatch(help);
        while (lists.hasNext()) {
            const QStringList values = lists.next().captured(1).split(',');
            for (const QString &value : values)
                QVERIFY2(manual.contains(QRegularExpression("\\b" + value + "\\b")), qPrintable(value));
        }
    }

    void helpWithoutACommandListsAll()
    {
        const Run help = directory.run({ "help" });
        QCOMPARE(help.status, fine);
        QCOMPARE(help.out, directory.run({ "--help" }).out);
        for (const QString &command : allCommands)
            QVERIFY2(help.out.contains("\n  " + command.toUtf8() + ' '), qPrintable(command));
        QVERIFY(help.out.contains("vanlayout help COMMAND shows the options of a command, and examples."));
    }

    void everyExampleIsACallThatIsTaken()
    {
        const QByteArray missing = "No such file or directory";
        for (const QString &command : allCommands) {
            const QList<QByteArray> lines = directory.run({ "help", command }).out.split('\n');
            for (const QByteArray &line : lines) {
                if (!line.startsWith("  vanlayout "))
                    continue;
                QStringList words = QString::fromUtf8(line).simplified().split(QLatin1Char(' '));
                const int redirection = words.indexOf(QStringLiteral(">"));
                words = words.mid(1, redirection < 0 ? -1 : redirection - 1);
                const Run run = directory.run(words);
                QVERIFY2(run.status == fine || run.err.contains(missing) || run.err.contains("no such file"),
                         (line + '\n' + run.err).constData());
            }
        }
    }

    void aNearMissIsSuggested_data()
    {
        QTest::addColumn<QStringList>("call");
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("swapped letters") << QStringList{ "shwo", "x" }
                                         << QByteArray("shwo: no such command or option; did you mean show?");
        QTest::newRow("letter left out") << QStringList{ "expot" }
                                         << QByteArray("expot: no such command or option; did you mean export?");
        QTest::newRow("letter added") << QStringList{ "codeboook" }
                                      << QByteArray("codeboook: no such command or option; did you mean codebook?");
        QTest::newRow("letter exchanged")
            << QStringList{ "loakup" } << QByteArray("loakup: no such command or option; did you mean lookup?");
        QTest::newRow("option of the tool")
            << QStringList{ "--verbos" } << QByteArray("--verbos: no such command or option; did you mean --verbose?");
        QTest::newRow("option of a command") << QStringList{ "show", "--lables", "x" }
                                             << QByteArray("--lables: no such option of show; did you mean --labels?");
        QTest::newRow("option with a value")
            << QStringList{ "show", "--fromat=csv", "x" }
            << QByteArray("--fromat=csv: no such option of show; did you mean --format?");
        QTest::newRow("value") << QStringList{ "show", "--format", "tabel", "x" }
                               << QByteArray("--format: tabel not in {table,json,csv}; did you mean table?");
        QTest::newRow("capital letters") << QStringList{ "SHOW" }
                                         << QByteArray("SHOW: no such command or option; did you mean show?");
        QTest::newRow("value in capital letters") << QStringList{ "explain", "--fail-on", "LOST", "x" }
                                                  << QByteArray("--fail-on: LOST is not known; did you mean lost?");
        QTest::newRow("option before its command")
            << QStringList{ "--fromat", "json", "show", "x" }
            << QByteArray("--fromat: no such option of show; did you mean --format?");
        QTest::newRow("option of the tool after a command")
            << QStringList{ "show", "x", "--verbos" }
            << QByteArray("--verbos: no such option of show; did you mean --verbose?");
        QTest::newRow("topic of help")
            << QStringList{ "help", "shwo" }
            << QByteArray(
                   "COMMAND: shwo not in "
                   "{show,fields,explain,lookup,diff,find,concord,codebook,export,load,convert,lint,completion,help}; "
                   "did you mean show?");
        QTest::newRow("file before its command")
            << QStringList{ "x.dcf", "show" } << QByteArray("x.dcf: no such command or option");
        QTest::newRow("empty word") << QStringList{ "" } << QByteArray("'': no such command or option");
        QTest::newRow("nothing near") << QStringList{ "frobnicate" }
                                      << QByteArray("frobnicate: no such command or option");
        QTest::newRow("no option near") << QStringList{ "show", "--zzz", "x" }
                                        << QByteArray("--zzz: no such option of show");
        QTest::newRow("value far from all")
            << QStringList{ "show", "--format", "yaml", "x" } << QByteArray("--format: yaml not in {table,json,csv}");
        QTest::newRow("a long word") << QStringList{ QString(100000, 's') }
                                     << QByteArray(100000, 's') + ": no such command or option";
    }
    void aNearMissIsSuggested()
    {
        QFETCH(QStringList, call);
        QFETCH(QByteArray, line);
        const Run run = directory.run(call);
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.out, QByteArray());
        QCOMPARE(run.err, "vanlayout: " + line + '\n');
    }

    void completionKnowsEveryCommandAndOption_data() { shells(); }
    void completionKnowsEveryCommandAndOption()
    {
        QFETCH(QString, shell);
        const QByteArray script = directory.run({ "completion", shell }).out;
        for (const QString &command : allCommands) {
            QVERIFY2(script.contains(command.toUtf8()), qPrintable(command));
            const QString help = QString::fromUtf8(directory.run({ "help", command }).out);
            QRegularExpressionMatchIterator options
                = QRegularExpression(QStringLiteral("^  (?:-\\w,)?--([\\w-]+)"), QRegularExpression::MultilineOption)
                      .globalMatch(help);
            QVERIFY(options.hasNext());
            while (options.hasNext()) {
                const QString option = options.next().captured(1);
                const QString typed
                    = shell == QLatin1String("fish") ? QLatin1String("-l ") + option : QLatin1String("--") + option;
                QVERIFY2(script.contains(typed.toUtf8()), qPrintable(command + QLatin1Char(' ') + option));
            }
        }
    }

    void shellTakesTheScript_data() { shells(); }
    void shellTakesTheScript()
    {
        QFETCH(QString, shell);
        directory.write("script", directory.run({ "completion", shell }).out);
        QProcess checker;
        checker.start(shell, { shell == QLatin1String("fish") ? "--no-execute" : "-n", directory.path() + "/script" });
        QVERIFY2(checker.waitForFinished(patience), qPrintable(checker.errorString()));
        QCOMPARE(checker.readAllStandardError(), QByteArray());
        QCOMPARE(checker.exitCode(), 0);
    }

    void bashCompletesAWord_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<QByteArray>("completions");
        QTest::newRow("command") << QStringList{ "sh" } << QByteArray("show");
        QTest::newRow("commands") << QStringList{ "ex" } << QByteArray("explain export");
        QTest::newRow("global option") << QStringList{ "--verb" } << QByteArray("--verbose");
        QTest::newRow("option") << QStringList{ "show", "--lab" } << QByteArray("--labels");
        QTest::newRow("option after a file") << QStringList{ "show", "a.dcf", "--prob" } << QByteArray("--problems");
        QTest::newRow("value") << QStringList{ "show", "--format", "j" } << QByteArray("json");
        QTest::newRow("value after a sign") << QStringList{ "show", "--format", "=", "j" } << QByteArray("json");
        QTest::newRow("all values") << QStringList{ "show", "--format", "=" } << QByteArray("table json csv");
        QTest::newRow("after a global option") << QStringList{ "--verbose", "loo" } << QByteArray("lookup");
        QTest::newRow("topic of help") << QStringList{ "help", "codeb" } << QByteArray("codebook");
        QTest::newRow("shell") << QStringList{ "completion", "z" } << QByteArray("zsh");
        QTest::newRow("option of the tool after a command")
            << QStringList{ "show", "--verb" } << QByteArray("--verbose");
        QTest::newRow("kind of note") << QStringList{ "explain", "--fail-on", "subitem-" }
                                      << QByteArray("subitem-read-flat");
        QTest::newRow("kind of difference")
            << QStringList{ "diff", "--ignore", "item-lab" } << QByteArray("item-label");
        QTest::newRow("second of a list")
            << QStringList{ "explain", "--fail-on", "lost,subitem-" } << QByteArray("lost,subitem-read-flat");
        QTest::newRow("second of a list after a sign") << QStringList{ "diff", "--only", "=", "item-label,value-set-l" }
                                                       << QByteArray("item-label,value-set-label");
        QTest::newRow("one value only") << QStringList{ "show", "--format", "csv,j" } << QByteArray();
        QTest::newRow("files are the shell's own business") << QStringList{ "show", "cens" } << QByteArray();
        QTest::newRow("value without a list") << QStringList{ "show", "--catalog", "x" } << QByteArray();
    }
    void bashCompletesAWord()
    {
        QFETCH(QStringList, words);
        QFETCH(QByteArray, completions);
        directory.write("script", directory.run({ "completion", "bash" }).out);
        QProcess bash;
        bash.setWorkingDirectory(directory.path());
        bash.start("bash",
                   QStringList{ "--norc", "-c",
                                ". ./script; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); _vanlayout; "
                                "echo \"${COMPREPLY[*]}\"",
                                "bash", "vanlayout" }
                       + words);
        QVERIFY2(bash.waitForFinished(patience), qPrintable(bash.errorString()));
        QCOMPARE(bash.readAllStandardError(), QByteArray());
        QCOMPARE(bash.readAllStandardOutput().trimmed(), completions);
    }

    void fishCompletesAWord_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("completions");
        QTest::newRow("command") << "vanlayout sh" << QStringList{ "show" };
        QTest::newRow("option") << "vanlayout show --lab" << QStringList{ "--labels" };
        QTest::newRow("value") << "vanlayout show --format " << QStringList{ "csv", "json", "table" };
        QTest::newRow("shell") << "vanlayout completion z" << QStringList{ "zsh" };
        QTest::newRow("option of the tool after a command") << "vanlayout show --verb" << QStringList{ "--verbose" };
        QTest::newRow("value after a sign") << "vanlayout export --to=d" << QStringList{ "--to=ddi" };
        QTest::newRow("second of a list")
            << "vanlayout explain --fail-on lost,subitem-" << QStringList{ "lost,subitem-read-flat" };
        QTest::newRow("file with a blank") << "vanlayout show --catalog my" << QStringList{ "my file.dcf" };
    }
    void fishCompletesAWord()
    {
        QFETCH(QString, line);
        QFETCH(QStringList, completions);
        directory.write("script", directory.run({ "completion", "fish" }).out);
        directory.write("my file.dcf", QByteArray());
        QProcess fish;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HOME", directory.path());
        environment.insert("XDG_CONFIG_HOME", directory.path());
        environment.insert("XDG_DATA_HOME", directory.path());
        fish.setProcessEnvironment(environment);
        fish.setWorkingDirectory(directory.path());
        fish.start("fish", { "--no-config", "-c", "source script; complete -C '" + line + "'" });
        QVERIFY2(fish.waitForFinished(patience), qPrintable(fish.errorString()));
        QStringList found;
        const QList<QByteArray> lines = fish.readAllStandardOutput().split('\n');
        for (const QByteArray &completion : lines) {
            if (!completion.isEmpty())
                found.append(QString::fromUtf8(completion.split('\t').first()));
        }
        found.sort();
        QCOMPARE(found, completions);
    }

    // The functions of the completion system are replaced by functions that print their arguments.
    void zshCompletesAWord_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<QByteArray>("handed");
        QTest::newRow("command") << "vanlayout sh" << QByteArray("\nshow:Show the exact layout of each FILE.\n");
        QTest::newRow("global option") << "vanlayout --v" << QByteArray("\n--version[print the version and exit]\n");
        QTest::newRow("value") << "vanlayout show --format j"
                               << QByteArray("\n--format=[table, json or csv]:value:(table json csv)\n");
        QTest::newRow("list of values") << "vanlayout explain --fail-on l"
                                        << QByteArray(":value:_values -s , value lost changed file-not-read");
        QTest::newRow("list that is taken again") << "vanlayout explain --fail-on l" << QByteArray("\n*--fail-on=[");
        QTest::newRow("option of the tool after a command")
            << "vanlayout show --verb" << QByteArray("\n--verbose[write the library's debug lines");
        QTest::newRow("command after an option")
            << "vanlayout --verbose sh" << QByteArray("\nshow:Show the exact layout of each FILE.\n");
        QTest::newRow("value after an option and a command")
            << "vanlayout --verbose completion z" << QByteArray("\n*:value:(bash fish zsh)\n");
        QTest::newRow("one spelling of two") << "vanlayout export -o x"
                                             << QByteArray("\n(-o --output)-o[file to write, or directory for several "
                                                           "files; standard output if - or absent]:file:_files\n"
                                                           "(-o --output)--output=[file to write");
        QTest::newRow("file") << "vanlayout show x" << QByteArray("\n*:file:_files\n");
        QTest::newRow("shell") << "vanlayout completion z" << QByteArray("\n*:value:(bash fish zsh)\n");
    }
    void zshCompletesAWord()
    {
        QFETCH(QString, words);
        QFETCH(QByteArray, handed);
        directory.write("script", directory.run({ "completion", "zsh" }).out);
        QProcess zsh;
        zsh.setWorkingDirectory(directory.path());
        zsh.start("zsh",
                  { "-f", "-c",
                    "_arguments() { print -l -- '' \"$@\"; }; _describe() { print -l -- '' ${(P)2}; }; "
                    "words=("
                        + words + "); CURRENT=${#words}; . ./script" });
        QVERIFY2(zsh.waitForFinished(patience), qPrintable(zsh.errorString()));
        QCOMPARE(zsh.readAllStandardError(), QByteArray());
        const QByteArray out = zsh.readAllStandardOutput();
        QVERIFY2(out.contains(handed), out.constData());
    }

    void longWorkNamesItsFileOnATerminal()
    {
        const PseudoTerminal terminal;
        QVERIFY2(terminal.isOpen(), "this system has no pseudo terminals");
        QProcess tool;
        tool.setStandardErrorFile(terminal.name());
        tool.start(VAN_TOOL, { "show", "--format", "json", "-" });
        QElapsedTimer timer;
        timer.start();
        QByteArray seen = firstShownOn(terminal);
        QCOMPARE(seen, QByteArray("\rstandard input\033[K"));
        QVERIFY(timer.elapsed() >= 1000);
        tool.write("x");
        tool.closeWriteChannel();
        QVERIFY(tool.waitForFinished(patience));
        QCOMPARE(tool.exitCode(), noAnswer);
        seen += terminal.taken();
        // The line is removed before any other is written, and at the end.
        QVERIFY2(seen.contains("\r\033[Kvanlayout: -: "), seen.constData());
        QVERIFY2(seen.endsWith("\n"), seen.constData());
    }

    void longWorkNamesItsFileInOneLineOfTheTerminal()
    {
        const PseudoTerminal terminal;
        QVERIFY2(terminal.isOpen() && terminal.setWidth(20), "this system has no pseudo terminals");
        const QByteArray pipe = QFile::encodeName(directory.filePath("a pipe with a very long name"));
        QVERIFY(::mkfifo(pipe.constData(), 0600) == 0);
        QProcess tool;
        tool.setStandardErrorFile(terminal.name());
        tool.setWorkingDirectory(directory.path());
        tool.start(VAN_TOOL, { "explain", "a pipe with a very long name", "b" });
        QCOMPARE(firstShownOn(terminal), QByteArray("\ra pipe wi\xE2\x80\xA6 (1 of 2)\033[K"));
        tool.kill();
        QVERIFY(tool.waitForFinished(patience));
    }

    void anInterruptedCommandTakesItsLineAway_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("interrupt") << SIGINT;
        QTest::newRow("termination") << SIGTERM;
        QTest::newRow("hangup") << SIGHUP;
    }
    void anInterruptedCommandTakesItsLineAway()
    {
        QFETCH(int, signal);
        const PseudoTerminal terminal;
        QVERIFY2(terminal.isOpen(), "this system has no pseudo terminals");
        QProcess tool;
        tool.setStandardErrorFile(terminal.name());
        tool.start(VAN_TOOL, { "show", "--format", "json", "-" });
        QCOMPARE(firstShownOn(terminal), QByteArray("\rstandard input\033[K"));
        QCOMPARE(::kill(pid_t(tool.processId()), signal), 0);
        QVERIFY(tool.waitForFinished(patience));
        QCOMPARE(tool.exitStatus(), QProcess::CrashExit); // the signal ends it
        QCOMPARE(tool.exitCode(), signal);
        const QByteArray shown = terminal.taken();
        QVERIFY2(shown.endsWith("\r\033[K"), shown.constData());
    }

    void longWorkIsSilentIfTheOutputIsOnTheTerminal()
    {
        const PseudoTerminal terminal;
        QVERIFY2(terminal.isOpen(), "this system has no pseudo terminals");
        QProcess tool;
        tool.setStandardErrorFile(terminal.name());
        tool.setStandardOutputFile(terminal.name());
        tool.start(VAN_TOOL, { "show", "-" });
        QTest::qWait(3000);
        QCOMPARE(terminal.taken(), QByteArray());
        tool.closeWriteChannel();
        QVERIFY(tool.waitForFinished(patience));
    }

    void anUnknownShellIsRefused()
    {
        const Run run = directory.run({ "completion", "tcsh" });
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.err, QByteArray("vanlayout: SHELL: tcsh not in {bash,fish,zsh}\n"));
    }

private:
    static QByteArray firstShownOn(const PseudoTerminal &terminal)
    {
        QByteArray seen;
        QElapsedTimer timer;
        for (timer.start(); seen.isEmpty() && timer.elapsed() < patience; QTest::qWait(20))
            seen = terminal.taken();
        return seen;
    }

    static void shells()
    {
        QTest::addColumn<QString>("shell");
        for (const char *shell : { "bash", "fish", "zsh" })
            QTest::newRow(shell) << shell;
    }

    ToolDirectory directory;
};

QTEST_GUILESS_MAIN(VanlayoutShellTest)
#include "VanlayoutShellTest.moc"
