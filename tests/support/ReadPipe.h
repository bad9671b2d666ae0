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

    /// Whether the pipe was made and its reader is at work.
    bool isRead() { return isMade && reader.waitForStarted(); }

    /// Whether the pipe, and not another file, has its name.
    bool isThere() const
    {
        struct stat status = {};
        return stat(name.constData(), &status) == 0 && S_ISFIFO(status.st_mode);
    }

    /// All that came through, once its writer has closed it; nothing where it is no more or takes too long.
    QByteArray taken(int milliseconds)
    {
        if (!isThere())
            reader.kill(); // it waits for a pipe that is no more
        return reader.waitForFinished(milliseconds) ? reader.readAllStandardOutput() : QByteArray();
    }

private:
    QByteArray name;
    bool isMade = false;
    QProcess reader;
};

#endif
