#include "util/BufferedDevice_p.h"

#include <QIODevice>

#include <algorithm>
#include <cstring>
#include <limits>

BufferedDevice::BufferedDevice(QIODevice &source)
    : device(source)
    , start(source.pos())
    , fileSize(source.size() - start)
{
}

void BufferedDevice::attachTo(readstat_parser_t *parser)
{
    readstat_set_open_handler(parser, [](const char *, void *) { return 0; });
    readstat_set_close_handler(parser, [](void *) { return 0; });
    readstat_set_seek_handler(parser, [](readstat_off_t offset, readstat_io_flags_t whence, void *context) {
        return readstat_off_t(static_cast<BufferedDevice *>(context)->seek(offset, whence));
    });
    readstat_set_read_handler(parser, [](void *target, size_t size, void *context) {
        return ssize_t(static_cast<BufferedDevice *>(context)->read(static_cast<char *>(target), qint64(size)));
    });
    readstat_set_update_handler(parser, [](long, readstat_progress_handler, void *, void *) { return READSTAT_OK; });
    readstat_set_io_ctx(parser, this);
}

qint64 BufferedDevice::seek(qint64 offset, readstat_io_flags_t whence)
{
    qint64 base = 0;
    if (whence == READSTAT_SEEK_CUR)
        base = position;
    else if (whence == READSTAT_SEEK_END)
        base = fileSize;
    if (offset < -base || offset > std::numeric_limits<qint64>::max() - base)
        return -1;
    position = base + offset;
    return position;
}

qint64 BufferedDevice::read(char *target, qint64 size)
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

// Fills the buffer from the position on; nothing behind the end of the file.
void BufferedDevice::fill()
{
    constexpr size_t pieceSize = 1 << 16;
    buffer.resize(pieceSize);
    bufferStart = position;
    bufferSize = 0;
    if (position >= fileSize)
        return;
    const qint64 count = device.seek(start + position) ? device.read(buffer.data(), qint64(buffer.size())) : -1;
    bufferSize = std::max<qint64>(count, 0);
    if (count < 0 && firstProblem.isEmpty())
        firstProblem = device.errorString();
}
