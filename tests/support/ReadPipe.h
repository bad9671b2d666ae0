#ifndef SUPPORT_READPIPE_H
#define SUPPORT_READPIPE_H

#include <QByteArray>
#include <QFile>
#include <QProcess>
#include <QString>

#include <sys/stat.h>

/// A named pipe, and a process that reads from it.
class ReadPipe
{
public:
    explicit ReadPipe(const QString &path)
        : name(QFile::encodeName(path))
        , isMade(mkfifo(name.constData(), 0600) == 0)
    {
        reader.start("cat", { path });
    }

    /// Returns whether the pipe was made and its reader is running.
    bool isRead() { return isMade && reader.waitForStarted(); }

    /// Returns whether its name still belongs to the pipe and not to another file.
    bool isThere() const
    {
        struct stat status = {};
        return stat(name.constData(), &status) == 0 && S_ISFIFO(status.st_mode);
    }

    /// Returns all bytes that were written, once the writer has closed the pipe; none if the pipe no longer exists or
    /// this takes too long.
    QByteArray taken(int milliseconds)
    {
        if (!isThere())
            reader.kill(); // it waits for a pipe that no longer exists
        return reader.waitForFinished(milliseconds) ? reader.readAllStandardOutput() : QByteArray();
    }

private:
    QByteArray name;
    bool isMade = false;
    QProcess reader;
};

#endif
