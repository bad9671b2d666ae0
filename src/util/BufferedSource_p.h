#ifndef UTIL_BUFFEREDSOURCE_P_H
#define UTIL_BUFFEREDSOURCE_P_H

#include <readstat.h>

#include <QtGlobal>

#include <limits>
#include <vector>

/// Base class of the sources from which ReadStat reads in large pieces. Its own input calls the system for each number.
///
/// If the system fails to read, for example from a damaged disk, the parser gets no bytes, and the source stores the
/// error. It does not return -1, since ReadStat would treat -1 as the number of bytes that it requested.
class BufferedSource
{
public:
    BufferedSource() = default;
    virtual ~BufferedSource() = default;
    BufferedSource(const BufferedSource &) = delete;
    BufferedSource &operator=(const BufferedSource &) = delete;

    /// Makes the parser read through this object, which must outlive the parse.
    void attachTo(readstat_parser_t *parser);

    /// Moves to a position and returns it, or -1 if there is no such position. A position after the end may exist; no
    /// bytes are read there.
    qint64 seek(qint64 offset, readstat_io_flags_t whence);
    /// Reads the bytes before the end of the file, or before the position that the system fails to read.
    qint64 read(char *target, qint64 size);
    qint64 size() const { return fileSize; }
    qint64 bytesLeft() const { return fileSize - position; } ///< up to the end of the file; negative after it

protected:
    /// Moves to the first byte of a file of \a size bytes. A \a size of -1 means that the file has no known size.
    void beginAt0(qint64 size);
    /// Fills the buffer from the current position on.
    void fill();
    /// Reads bytes of an open file of the system and returns their number; -1 if the system fails, with `errno` set.
    static qint64 readDescriptor(int descriptor, qint64 place, char *target, qint64 size);
    /// Number of bytes that are delivered, in total, before the source delivers no more.
    void setMaxDelivered(qint64 bytes) { bytesToDeliver = bytes; }
    bool hasDeliveredMax() const { return bytesToDeliver <= 0; }

private:
    virtual bool openPath(const char *path) = 0;
    virtual void close() { }
    /// Returns whether the system accepts a position after the end.
    virtual bool canGoTo(qint64 /*place*/) { return true; }
    /// Reads at most \a size bytes from a position and returns their number. If the system fails, stores its error and
    /// returns -1.
    virtual qint64 readAt(qint64 place, char *target, qint64 size) = 0;

    qint64 fileSize = 0;
    std::vector<char> buffer;
    qint64 bufferStart = 0; ///< position of its first byte in the file
    qint64 bufferSize = 0;  ///< number of bytes that are filled
    qint64 pieceSize = 0;   ///< size of the last request to the system
    qint64 position = 0;    ///< position of the next byte that is read
    qint64 bytesToDeliver = std::numeric_limits<qint64>::max();
};

#endif
