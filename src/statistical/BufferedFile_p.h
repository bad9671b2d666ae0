#ifndef STATISTICAL_BUFFEREDFILE_P_H
#define STATISTICAL_BUFFEREDFILE_P_H

#include <readstat.h>

#include <QtGlobal>

#include <vector>

namespace statistical
{

/// A file as ReadStat reads it, in large pieces: ReadStat itself asks the system for each number.
///
/// Answers what the system would answer, so that a parse ends the same way, but for one thing: where the system fails
/// to read, as on a damaged disk, no bytes are answered, and error() says why. ReadStat takes the answer -1 for as many
/// bytes as it asked for.
class BufferedFile
{
public:
    BufferedFile() = default;
    ~BufferedFile();
    BufferedFile(const BufferedFile &) = delete;
    BufferedFile &operator=(const BufferedFile &) = delete;

    /// Has the parser read through this object, which must outlive the parse. For regular files only.
    void attachTo(readstat_parser_t *parser);

    /// \a path is in the encoding of the system.
    bool open(const char *path);
    /// The place that is reached, or -1 where there is none. One behind the end may be; nothing is read there.
    qint64 seek(qint64 offset, readstat_io_flags_t whence);
    /// Reads as many bytes as there are in front of the end, and of the place that the system fails to read.
    qint64 read(char *target, qint64 size);
    /// The number of the system's error at the first failure to read since the file was opened; 0 where there was none.
    int error() const { return firstError; }

private:
    static int onOpen(const char *path, void *context);
    static int onClose(void *context);
    static readstat_off_t onSeek(readstat_off_t offset, readstat_io_flags_t whence, void *context);
    static ssize_t onRead(void *target, size_t size, void *context);
    static readstat_error_t onUpdate(long fileSize, readstat_progress_handler progress, void *userContext,
                                     void *context);

    void close();
    void fill();

    int descriptor = -1; ///< not a `QFile`, which warns of a place that the system refuses
    qint64 fileSize = 0;
    std::vector<char> buffer;
    qint64 bufferStart = 0; ///< of its first byte in the file
    qint64 bufferSize = 0;  ///< bytes that are filled
    qint64 position = 0;    ///< from which the next byte is read
    int firstError = 0;
};

} // namespace statistical

#endif
