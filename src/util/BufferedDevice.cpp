#include "util/BufferedDevice_p.h"

#include <QFileDevice>

#include <cerrno>

namespace
{

// ReadStat reads a file at most four times.
constexpr qint64 maxPasses = 16;
constexpr qint64 alwaysDelivered = 1 << 20;

int descriptorOf(QIODevice &device)
{
    const auto *file = qobject_cast<QFileDevice *>(&device);
    return file ? file->handle() : -1;
}

} // namespace

BufferedDevice::BufferedDevice(QIODevice &source)
    : device(source)
    , descriptor(descriptorOf(source))
    , start(source.pos())
{
    beginAt0(source.size() - start);
    setMaxDelivered(alwaysDelivered + maxPasses * size());
}

bool BufferedDevice::openPath(const char * /*path*/)
{
    seek(0, READSTAT_SEEK_SET);
    return true;
}

qint64 BufferedDevice::readFrom(qint64 place, char *target, qint64 size)
{
    if (descriptor >= 0)
        return readDescriptor(descriptor, place, target, size);
    return device.seek(place) ? device.read(target, size) : -1;
}

qint64 BufferedDevice::readAt(qint64 place, char *target, qint64 size)
{
    const qint64 count = readFrom(start + place, target, size);
    if (count < 0 && firstProblem.isEmpty())
        firstProblem = descriptor < 0 ? device.errorString() : qt_error_string(errno);
    return count;
}
