#ifndef LAYOUT_READ_KEPTFORBYTES_P_H
#define LAYOUT_READ_KEPTFORBYTES_P_H

#include <array>
#include <cstddef>
#include <cstring>
#include <string>

namespace vanlayout
{

/// A cache of objects made from bytes. Codes and labels of value sets repeat a lot: as implicitly shared values they
/// then share their memory.
///
/// Each key has one slot, in which it replaces the previous key, so that no choice of keys makes it slow.
template <typename Made> class KeptForBytes
{
public:
    template <typename Make> const Made &get(const char *bytes, size_t size, Make make)
    {
        Kept &kept = places[hashOf(bytes, size) % places.size()];
        if (!kept.isFilled || kept.key.compare(0, std::string::npos, bytes, size) != 0) {
            kept.made = make();
            kept.key.assign(bytes, size);
            kept.isFilled = true;
        }
        return kept.made;
    }

private:
    struct Kept {
        std::string key;
        Made made;
        bool isFilled = false;
    };

    // Uses the first bytes, which is sufficient for keys that are short or differ early.
    static size_t hashOf(const char *bytes, size_t size)
    {
        constexpr size_t longest = 64;
        size_t hash = size;
        for (const char *byte = bytes; byte != bytes + (size < longest ? size : longest); ++byte)
            hash = hash * 31 + static_cast<unsigned char>(*byte);
        return hash ^ (hash >> 20);
    }

    std::array<Kept, 2048> places;
};

} // namespace vanlayout

#endif
