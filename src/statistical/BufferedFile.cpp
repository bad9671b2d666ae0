#include "statistical/BufferedFile_p.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>

#include <fcntl.h>
#include <unistd.h>

namespace statistical
{

namespace
{

constexpr size_t pieceSize = 1 << 16;

// Some bytes from the place on; -1 where the system fails.
ssize_t readAt(int descriptor, qint64 place, std::vector<char> &target)
{
    if (lseek(descriptor, place, SEEK_SET) < 0)
        return -1;
    ssize_t count = 0;
    do
        count = ::read(descriptor, target.data(), target.size());
    while (count < 0 && errno == EINTR);
    return count;
}

} // namespace

void BufferedFile::attachTo(readstat_parser_t *parser)
{
    readstat_set_open_handler(parser, onOpen);
    readstat_set_close_handler(parser, onClose);
    readstat_set_seek_handler(parser, onSeek);
    readstat_set_read_handler(parser, onRead);
    readstat_set_update_handler(parser, onUpdate);
    readstat_set_io_ctx(parser, this);
}

int BufferedFile::onOpen(const char *path, void *context)
{
    return static_cast<BufferedFile *>(context)->open(path) ? 0 : -1;
}

int BufferedFile::onClose(void *context)
{
    static_cast<BufferedFile *>(context)->close();
    return 0;
}

readstat_off_t BufferedFile::onSeek(readstat_off_t offset, readstat_io_flags_t whence, void *context)
{
    return static_cast<BufferedFile *>(context)->seek(offset, whence);
}

ssize_t BufferedFile::onRead(void *target, size_t size, void *context)
{
    return static_cast<BufferedFile *>(context)->read(static_cast<char *>(target), qint64(size));
}

readstat_error_t BufferedFile::onUpdate(long /*fileSize*/, readstat_progress_handler /*progress*/,
                                        void * /*userContext*/, void * /*context*/)
{
    return READSTAT_OK;
}

BufferedFile::~BufferedFile()
{
    close();
}

bool BufferedFile::open(const char *path)
{
    close();
    firstError = 0;
    descriptor = ::open(path, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    fileSize = lseek(descriptor, 0, SEEK_END);
    bufferStart = bufferSize = position = 0;
    if (fileSize < 0) // no place in it can be found; what reading it fails with is a better reason
        fill();
    return true;
}

void BufferedFile::close()
{
    if (descriptor >= 0)
        ::close(descriptor);
    descriptor = -1;
}

qint64 BufferedFile::seek(qint64 offset, readstat_io_flags_t whence)
{
    qint64 base = 0;
    if (whence == READSTAT_SEEK_CUR)
        base = position;
    else if (whence == READSTAT_SEEK_END)
        base = fileSize;
    if (offset < -base || offset > std::numeric_limits<qint64>::max() - base)
        return -1;
    const qint64 target = base + offset;
    // Behind the end, where nothing can be read, the system may still refuse a place.
    if (target > fileSize && lseek(descriptor, target, SEEK_SET) < 0)
        return -1;
    position = target;
    return target;
}

qint64 BufferedFile::read(char *target, qint64 size)
{
    qint64 done = 0;
    while (done < size) {
        qint64 offset = position - bufferStart;
        if (offset < 0 || offset >= bufferSize) {
            fill();
            if (bufferSize == 0)
                break;
            offset = 0;
        }
        const qint64 count = std::min(size - done, bufferSize - offset);
        std::memcpy(target + done, buffer.data() + offset, size_t(count));
        done += count;
        position += count;
    }
    return done;
}

// Fills the buffer from the position on; nothing behind the end of the file, or where the system fails to read.
void BufferedFile::fill()
{
    buffer.resize(pieceSize);
    bufferStart = position;
    bufferSize = 0;
    if (fileSize >= 0 && position >= fileSize)
        return;
    const ssize_t count = readAt(descriptor, position, buffer);
    if (count >= 0)
        bufferSize = count;
    else if (firstError == 0)
        firstError = errno;
}

} // namespace statistical
