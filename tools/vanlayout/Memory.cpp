#include "Memory.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#ifdef __GLIBC__

#include <malloc.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

namespace
{

constexpr int usualPad = 1 << 20;
constexpr int roomAhead = 1 << 29; // addresses, not memory
constexpr int mappedFrom = 1 << 25;
constexpr int keptFree = 1 << 30;

bool areAddressesLimited()
{
    rlimit limit = {};
    return getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur != RLIM_INFINITY;
}

// Has the heap grow once by the room ahead, and asks the system for large pages there: a page at a time, touching
// memory for the first time would cost as much as filling it.
void useLargePages()
{
    constexpr std::uintptr_t largePage = 1 << 21;
    auto *oldEnd = static_cast<char *>(sbrk(0));
    mallopt(M_TOP_PAD, roomAhead);
    void *volatile grown = std::malloc(usualPad); // volatile: not to be left out
    std::free(grown);
    const auto *newEnd = static_cast<char *>(sbrk(0));
    char *begin = oldEnd + (largePage - reinterpret_cast<std::uintptr_t>(oldEnd) % largePage);
    if (newEnd > begin)
        madvise(begin, size_t(newEnd - begin), MADV_HUGEPAGE);
}

} // namespace

void tuneMemory()
{
    // What a file was read into is kept and joined as it gets free: the layout grows there.
    mallopt(M_MMAP_THRESHOLD, mappedFrom);
    mallopt(M_TRIM_THRESHOLD, keptFree);
    mallopt(M_MXFAST, 0);
    if (!areAddressesLimited())
        useLargePages();
    mallopt(M_TOP_PAD, usualPad);
}

#else

void tuneMemory() { }

#endif
