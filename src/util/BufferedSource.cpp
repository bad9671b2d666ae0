#include "util/BufferedSource_p.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <unistd.h>

namespace
{

// A piece is small after the parser moved to another position, and grows while it continues to read.
constexpr qint64 smallestPiece = 1 << 10;
constexpr qint64 largestPiece = 1 << 16;

BufferedSource *sourceOf(void *context)
{
    return static_cast<BufferedSource *>(context);
}

} // namespace

void BufferedSource::attachTo(readstat_parser_t *parser)
{
    buffer.resize(largestPiece); // here, since no exception may cross ReadStat
    readstat_set_open_handler(
        parser, [](const char *path, void *context) { return sourceOf(context)->openPath(path) ? 0 : -1; });
    readstat_set_close_handler(parser, [](void *context) {
        sourceOf(context)->close();
        return 0;
    });
    readstat_set_seek_handler(parser, [](readstat_off_t offset, readstat_io_flags_t whence, void *context) {
        return readstat_off_t(sourceOf(context)->seek(offset, whence));
    });
    readstat_set_read_handler(parser, [](void *target, size_t size, void *context) {
        return ssize_t(sourceOf(context)->read(static_cast<char *>(target), qint64(size)));
    });
    readstat_set_update_handler(parser, [](long, readstat_progress_handler, void *, void *) { return READSTAT_OK; });
    readstat_set_io_ctx(parser, this);
}

qint64 BufferedSource::readDescriptor(int descriptor, qint64 place, char *target, qint64 size)
{
    if (lseek(descriptor, place, SEEK_SET) < 0)
        return -1;
    ssize_t count = 0;
    do
        count = ::read(descriptor, target, size_t(size));
    while (count < 0 && errno == EINTR);
    return count;
}

void BufferedSource::beginAt0(qint64 size)
{
    fileSize = size;
    bufferStart = bufferSize = pieceSize = position = 0;
}

qint64 BufferedSource::seek(qint64 offset, readstat_io_flags_t whence)
{
    qint64 base = 0;
    if (whence == READSTAT_SEEK_CUR)
        base = position;
    else if (whence == READSTAT_SEEK_END)
        base = fileSize;
    if (offset < -base || offset > std::numeric_limits<qint64>::max() - base)
        return -1;
    const qint64 target = base + offset;
    if (target > fileSize && !canGoTo(target))
        return -1;
    position = target;
    return target;
}

qint64 BufferedSource::read(char *target, qint64 size)
{
    qint64 done = 0;
    while (done < size && !hasDeliveredMax()) {
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
        bytesToDeliver -= count;
    }
    return done;
}

// Leaves the buffer empty after the end of the file, and if the system fails to read.
void BufferedSource::fill()
{
    const bool goesOn = position == bufferStart + bufferSize;
    pieceSize = std::clamp(goesOn ? 2 * pieceSize : 0, smallestPiece, largestPiece);
    buffer.resize(largestPiece);
    bufferStart = position;
    bufferSize = 0;
    if (fileSize < 0 || position < fileSize)
        bufferSize = std::max<qint64>(readAt(position, buffer.data(), pieceSize), 0);
}
