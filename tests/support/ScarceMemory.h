#ifndef SUPPORT_SCARCEMEMORY_H
#define SUPPORT_SCARCEMEMORY_H

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

/// Memory that runs out after a number of blocks, and a count of the allocated blocks. Both apply to the thread that
/// requests them. Include this once in a program: it replaces the program's `new`.
namespace scarce
{

constexpr long unlimited = std::numeric_limits<long>::max();
inline thread_local long blocksLeft = unlimited;
inline thread_local long blocksHeld = 0;

inline void *take(std::size_t size) noexcept
{
    if (blocksLeft == 0)
        return nullptr;
    if (blocksLeft != unlimited)
        --blocksLeft;
    void *block = std::malloc(std::max<std::size_t>(size, 1));
    blocksHeld += block ? 1 : 0;
    return block;
}

inline void releaseBlock(void *block) noexcept
{
    blocksHeld -= block ? 1 : 0;
    std::free(block);
}

/// Runs \a work repeatedly, with one block more each time, until it succeeds. Returns how often it failed.
template <typename Work> int runShort(Work work)
{
    for (int failures = 0;; ++failures) {
        try {
            blocksLeft = failures;
            work();
            blocksLeft = unlimited;
            return failures;
        } catch (const std::bad_alloc &) {
            blocksLeft = unlimited;
        }
    }
}

} // namespace scarce

void *operator new(std::size_t size)
{
    if (void *block = scarce::take(size))
        return block;
    throw std::bad_alloc();
}
void *operator new(std::size_t size, const std::nothrow_t & /*tag*/) noexcept
{
    return scarce::take(size);
}
void operator delete(void *block) noexcept
{
    scarce::releaseBlock(block);
}
void operator delete(void *block, std::size_t /*size*/) noexcept
{
    scarce::releaseBlock(block);
}

#endif
