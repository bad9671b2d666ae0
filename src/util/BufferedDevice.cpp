#include "util/BufferedDevice_p.h"

#include <QIODevice>

namespace
{

// ReadStat goes through a file four times at most.
constexpr qint64 mostPasses = 16;
constexpr qint64 alwaysAnswered = 1 << 20;

} // namespace

BufferedDevice::BufferedDevice(QIODevice &source)
    : device(source)
    , start(source.pos())
{
    beginAt0(source.size() - start);
    setMostAnswered(alwaysAnswered + mostPasses * size());
}

bool BufferedDevice::openPath(const char * /*path*/)
{
    seek(0, READSTAT_SEEK_SET);
    return true;
}

qint64 BufferedDevice::readAt(qint64 place, char *target, qint64 size)
{
    const qint64 count = device.seek(start + place) ? device.read(target, size) : -1;
    if (count < 0 && firstProblem.isEmpty())
        firstProblem = device.errorString();
    return count;
}
