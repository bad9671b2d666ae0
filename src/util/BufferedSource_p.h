#ifndef UTIL_BUFFEREDSOURCE_P_H
#define UTIL_BUFFEREDSOURCE_P_H

#include <readstat.h>

#include <QtGlobal>

#include <limits>
#include <vector>

/// The bytes of a file as ReadStat reads them, in large pieces: ReadStat itself asks the system for each number.
///
/// Where the system fails to read, as on a damaged disk, no bytes are answered, and the source remembers why: ReadStat
/// takes the answer -1 for as many bytes as it asked for.
class BufferedSource
{
public:
    BufferedSource() = default;
    virtual ~BufferedSource() = default;
    BufferedSource(const BufferedSource &) = delete;
    BufferedSource &operator=(const BufferedSource &) = delete;

    /// Has the parser read through this object, which must outlive the parse.
    void attachTo(readstat_parser_t *parser);

    /// The place that is reached, or -1 where there is none. One behind the end may be; nothing is read there.
    qint64 seek(qint64 offset, readstat_io_flags_t whence);
    /// Reads as many bytes as there are in front of the end, and of the place that the system fails to read.
    qint64 read(char *target, qint64 size);
    qint64 size() const { return fileSize; }
    qint64 bytesLeft() const { return fileSize - position; } ///< up to the end; less than 0 behind it

protected:
    /// Begins at the first byte of a file of \a size bytes; -1 for a file that does not state its size.
    void beginAt0(qint64 size);
    /// Reads the first bytes for no one.
    void fill();
    /// Some bytes of an open file of the system; -1 where it fails, and `errno` says why.
    static qint64 readDescriptor(int descriptor, qint64 place, char *target, qint64 size);
    /// Bytes that are answered before there are no more, wherever they are.
    void setMostAnswered(qint64 bytes) { answersLeft = bytes; }
    bool hasAnsweredMost() const { return answersLeft <= 0; }

private:
    virtual bool openPath(const char *path) = 0;
    virtual void close() { }
    /// Whether the system lets one go to a place behind the end.
    virtual bool canGoTo(qint64 /*place*/) { return true; }
    /// Some bytes from the place on, \a size at most; -1 where the system fails, which is remembered.
    virtual qint64 readAt(qint64 place, char *target, qint64 size) = 0;

    qint64 fileSize = 0;
    std::vector<char> buffer;
    qint64 bufferStart = 0; ///< of its first byte in the file
    qint64 bufferSize = 0;  ///< bytes that are filled
    qint64 pieceSize = 0;   ///< for which the system was asked last
    qint64 position = 0;    ///< from which the next byte is read
    qint64 answersLeft = std::numeric_limits<qint64>::max();
};

#endif
