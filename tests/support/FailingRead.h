#ifndef SUPPORT_FAILINGREAD_H
#define SUPPORT_FAILINGREAD_H

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string>

#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

/// A disk that fails: reading from the file whose path ends in `fileName` fails with EIO after its first `goodBytes`
/// bytes. Include this once in a program, or in a library that is loaded before all others: it replaces `read`.
namespace failingread
{

inline std::string fileName; ///< if empty, no file fails
inline off_t goodBytes = 0;

inline bool isFailing(int descriptor)
{
    if (fileName.empty())
        return false;
    char path[4096];
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t size = readlink(link.c_str(), path, sizeof path);
    const auto length = ssize_t(fileName.size());
    return size >= length && std::memcmp(path + (size - length), fileName.data(), fileName.size()) == 0;
}

} // namespace failingread

extern "C" __attribute__((visibility("default"))) ssize_t read(int descriptor, void *buffer, size_t size)
{
    const int before = errno; // for a caller that relies on it
    if (failingread::isFailing(descriptor)) {
        const off_t left = failingread::goodBytes - lseek(descriptor, 0, SEEK_CUR);
        if (left <= 0) {
            errno = EIO;
            return -1;
        }
        size = std::min(size, size_t(left));
    }
    errno = before;
    return syscall(SYS_read, descriptor, buffer, size);
}

#endif
