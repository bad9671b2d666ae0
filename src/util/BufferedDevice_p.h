#ifndef UTIL_BUFFEREDDEVICE_P_H
#define UTIL_BUFFEREDDEVICE_P_H

#include <readstat.h>

#include <QString>

#include <vector>

class QIODevice;

/// A device as ReadStat reads it, in large pieces: ReadStat itself asks for each number.
///
/// Where the device fails to read, no bytes are answered, and problem() says why: ReadStat takes the answer -1 for as
/// many bytes as it asked for.
class BufferedDevice
{
public:
    /// \a source can seek, and its file begins where it is now. It must outlive this object.
    explicit BufferedDevice(QIODevice &source);

    /// Has the parser read through this object, which must outlive the parse, whatever path it is given.
    void attachTo(readstat_parser_t *parser);

    /// The device's words for its first failure; empty where there was none.
    const QString &problem() const { return firstProblem; }

private:
    qint64 seek(qint64 offset, readstat_io_flags_t whence);
    qint64 read(char *target, qint64 size);
    void fill();

    QIODevice &device;
    qint64 start;
    qint64 fileSize;
    std::vector<char> buffer;
    qint64 bufferStart = 0; ///< of its first byte in the file
    qint64 bufferSize = 0;  ///< bytes that are filled
    qint64 position = 0;    ///< from which the next byte is read
    QString firstProblem;
};

#endif
