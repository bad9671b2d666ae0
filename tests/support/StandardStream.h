#ifndef SUPPORT_STANDARDSTREAM_H
#define SUPPORT_STANDARDSTREAM_H

#include <QByteArray>
#include <QtGlobal>

#include <cstdio>

#include <unistd.h>

/// Catches all that is written to standard output or standard error while this object exists. Debug lines of a test go
/// to standard output too: catch them with a DebugCapture.
class StandardStream
{
public:
    explicit StandardStream(std::FILE *caught)
        : stream(caught)
        , catcher(std::tmpfile())
    {
        if (!catcher)
            qFatal("no temporary file");
        std::fflush(stream);
        descriptor = dup(fileno(stream));
        dup2(fileno(catcher), fileno(stream));
    }
    ~StandardStream()
    {
        std::fflush(stream);
        dup2(descriptor, fileno(stream));
        close(descriptor);
        std::fclose(catcher);
    }
    StandardStream(const StandardStream &) = delete;
    StandardStream &operator=(const StandardStream &) = delete;

    /// Returns all that has been written so far.
    QByteArray taken() const
    {
        std::fflush(stream);
        QByteArray bytes(int(lseek(fileno(catcher), 0, SEEK_END)), '\0');
        const ssize_t size = pread(fileno(catcher), bytes.data(), size_t(bytes.size()), 0);
        return bytes.left(int(size));
    }

private:
    std::FILE *stream;
    std::FILE *catcher;
    int descriptor = -1;
};

#endif
