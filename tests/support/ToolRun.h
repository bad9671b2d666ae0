#ifndef SUPPORT_TOOLRUN_H
#define SUPPORT_TOOLRUN_H

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QtTest>

// Exit statuses of the tool.
constexpr int fine = 0;
constexpr int finding = 1;
constexpr int noAnswer = 2;

constexpr int patience = 120000; // milliseconds, far more than any run takes

/// The output of a run of the tool and its exit status; empty and without a status if it ended abnormally.
struct Run {
    int status = -1;
    QByteArray out;
    QByteArray err;

    QJsonValue json() const { return QJsonDocument::fromJson(out).object(); }
};

/// A directory with the files of a test, in which the tool runs. It is removed with this object.
class ToolDirectory : public QTemporaryDir
{
public:
    ToolDirectory() = default;

    void write(const QString &name, const QByteArray &content) const
    {
        QFile file(pathOf(name));
        QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(file.fileName()));
        QCOMPARE(file.write(content), qint64(content.size()));
    }

    /// Returns the content of a file; empty if there is no such file.
    QByteArray read(const QString &name) const
    {
        QFile file(pathOf(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    Run run(const QStringList &arguments) const
    {
        QProcess tool;
        return run(arguments, tool);
    }

    /// Runs the tool as a process that the test has prepared.
    Run run(const QStringList &arguments, QProcess &tool) const
    {
        tool.setWorkingDirectory(path());
        tool.start(QStringLiteral(VAN_TOOL), arguments);
        if (!tool.waitForFinished(patience)) {
            tool.kill();
            tool.waitForFinished();
            return {};
        }
        if (tool.exitStatus() != QProcess::NormalExit)
            return {};
        return { tool.exitCode(), tool.readAllStandardOutput(), tool.readAllStandardError() };
    }

private:
    // A name may be a whole path.
    QString pathOf(const QString &name) const { return QDir(path()).filePath(name); }
};

/// Runs a shell command in the directory of a test; "$0" is the tool.
inline Run runShell(const ToolDirectory &directory, const QString &line)
{
    QProcess shell;
    shell.setWorkingDirectory(directory.path());
    shell.start("sh", { "-c", line, VAN_TOOL });
    if (!shell.waitForFinished(patience) || shell.exitStatus() != QProcess::NormalExit) {
        shell.kill();
        shell.waitForFinished();
        return {};
    }
    return { shell.exitCode(), shell.readAllStandardOutput(), shell.readAllStandardError() };
}

/// Returns the bytes of a file in UTF-16, which can hold any unit.
inline QByteArray inUtf16(const QString &text)
{
    QByteArray bytes("\xFF\xFE");
    for (const QChar unit : text) {
        bytes += char(unit.cell());
        bytes += char(unit.row());
    }
    return bytes;
}

/// Verifies that a run ended without a result and reported this in one line, which begins with a subject and has more
/// text.
inline void verifyComplaint(const Run &run, const QByteArray &subject)
{
    const QByteArray beginning = "vanlayout: " + subject;
    QCOMPARE(run.status, noAnswer);
    QVERIFY2(run.err.startsWith(beginning), run.err.constData());
    QVERIFY2(subject.endsWith('\n') || run.err.trimmed().size() > beginning.size() + 2, run.err.constData());
    QCOMPARE(run.err.count('\n'), 1);
    QVERIFY(run.err.endsWith('\n'));
}

/// Verifies that a run whose output goes to a full disk reports this.
inline void verifyFullDiskIsReported(const ToolDirectory &directory, const QStringList &arguments)
{
    const QString fullDisk = QStringLiteral("/dev/full");
    QVERIFY2(QFile::exists(fullDisk), "this system has no /dev/full");
    QProcess tool;
    tool.setStandardOutputFile(fullDisk);
    const Run run = directory.run(arguments, tool);
    QCOMPARE(run.status, noAnswer);
    QCOMPARE(run.err, QByteArray("vanlayout: standard output: cannot be written\n"));
}

/// Verifies that the help names a command, and that the command's own help has these words.
inline void verifyHelpDescribes(const QString &command, const QStringList &words)
{
    const ToolDirectory directory;
    QVERIFY(directory.run({ "--help" }).out.contains(command.toUtf8()));
    const QByteArray help = directory.run({ command, "--help" }).out;
    for (const QString &word : words)
        QVERIFY2(help.contains(word.toUtf8()), qPrintable(word));
}

#endif
