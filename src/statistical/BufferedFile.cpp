#include "statistical/BufferedFile_p.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace statistical
{

BufferedFile::~BufferedFile()
{
    BufferedFile::close();
}

bool BufferedFile::open(const char *path)
{
    close();
    firstError = 0;
    descriptor = ::open(path, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const qint64 size = lseek(descriptor, 0, SEEK_END);
    beginAt0(size);
    if (size < 0) // positions are refused; the error of reading the file is a better reason
        fill();
    return true;
}

void BufferedFile::close()
{
    if (descriptor >= 0)
        ::close(descriptor);
    descriptor = -1;
}

// The system may refuse a position after the end, although nothing is read there.
bool BufferedFile::canGoTo(qint64 place)
{
    return lseek(descriptor, place, SEEK_SET) >= 0;
}

qint64 BufferedFile::readAt(qint64 place, char *target, qint64 size)
{
    const qint64 count = readDescriptor(descriptor, place, target, size);
    if (count < 0 && firstError == 0)
        firstError = errno;
    return count;
}

} // namespace statistical
