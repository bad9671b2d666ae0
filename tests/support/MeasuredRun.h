#ifndef SUPPORT_MEASUREDRUN_H
#define SUPPORT_MEASUREDRUN_H

#include <QByteArray>
#include <QElapsedTimer>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <vector>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

constexpr qint64 patience = 60000;          // milliseconds for one file
constexpr qint64 memoryOfAnyRun = 60 << 20; // the process itself, with its libraries

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool measuresMemory = false; // a sanitizer keeps far more than the program requests
#else
constexpr bool measuresMemory = true;
#endif

/// The results of a run of the command line: output, status, time and memory.
struct MeasuredRun {
    int status = -1; // status of wait4: signal and exit status
    bool isInTime = false;
    qint64 peakMemory = 0; // bytes
    QByteArray out;
    QByteArray err;
};

inline QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Waits for the child, and ends it if it takes too long.
inline bool waitFor(pid_t child, int *status, rusage *usage)
{
    QElapsedTimer timer;
    timer.start();
    while (wait4(child, status, WNOHANG, usage) == 0) {
        if (timer.hasExpired(patience)) {
            kill(child, SIGKILL);
            wait4(child, status, 0, usage);
            return false;
        }
        usleep(1000);
    }
    return true;
}

/// Runs the tool with arguments; its output goes to the files `out` and `err` of the directory. Its peak memory is no
/// less than that of the program that runs it, which should therefore read no large output.
inline MeasuredRun measuredRun(const std::vector<QByteArray> &toolArguments, const QTemporaryDir &directory)
{
    const QByteArray out = QFile::encodeName(directory.filePath(QStringLiteral("out")));
    const QByteArray err = QFile::encodeName(directory.filePath(QStringLiteral("err")));
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    constexpr int writing = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, out.constData(), writing, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, err.constData(), writing, 0600);

    std::vector<QByteArray> words = { VAN_TOOL };
    words.insert(words.end(), toolArguments.begin(), toolArguments.end());
    std::vector<char *> arguments;
    for (QByteArray &word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);

    MeasuredRun run;
    pid_t child = 0;
    const int problem = posix_spawn(&child, VAN_TOOL, &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (problem != 0)
        return run;
    rusage usage = {};
    run.isInTime = waitFor(child, &run.status, &usage);
    run.peakMemory = qint64(usage.ru_maxrss) * 1024;
    return run;
}

/// Runs the tool on a file.
inline MeasuredRun showAsJson(const QString &fileName, const QTemporaryDir &directory)
{
    MeasuredRun run = measuredRun({ "fields", "--format", "json", QFile::encodeName(fileName) }, directory);
    run.out = contentOf(directory.filePath(QStringLiteral("out")));
    run.err = contentOf(directory.filePath(QStringLiteral("err")));
    return run;
}

#endif
