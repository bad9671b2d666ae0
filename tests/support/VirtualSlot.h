#ifndef SUPPORT_VIRTUALSLOT_H
#define SUPPORT_VIRTUALSLOT_H

#include <cstddef>
#include <cstring>

/// Returns the place of a virtual operation in the table of its class. A virtual destructor takes two places.
///
/// This works only with compilers of the common C++ ABI, in which a pointer to a virtual operation holds the offset in
/// the table.
#ifdef __GXX_ABI_VERSION
#define SUPPORT_HAS_VIRTUALSLOT
template <typename Operation> std::ptrdiff_t virtualSlot(Operation operation)
{
    std::ptrdiff_t offset = 0;
    static_assert(sizeof(operation) >= sizeof(offset));
    std::memcpy(&offset, &operation, sizeof(offset));
#if defined(__arm__) || defined(__aarch64__)
    return offset / std::ptrdiff_t(sizeof(void *));
#else
    return (offset - 1) / std::ptrdiff_t(sizeof(void *));
#endif
}
#endif

#endif
