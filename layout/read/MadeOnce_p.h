#ifndef LAYOUT_READ_MADEONCE_P_H
#define LAYOUT_READ_MADEONCE_P_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vanlayout
{

/// A cache of objects made from bytes, such as labels and codes. These repeat a lot and are implicitly shared: equal
/// ones then share their memory. TextCache is the same for texts.
///
/// Each key has one slot, in which it replaces the previous key, so that no choice of keys makes it slow. An object of
/// a long key is not kept.
///
/// Figures of `vanlayout show`, compared with no cache: a CSPro text dictionary of 100,000 items with ten values each
/// takes a third less processor time and 58 % less memory; an SPSS file of 10,000 variables with ten labels each 17 %
/// and 28 %, a Stata file 27 % and 27 %. Small files, and one set of 100,000 different labels, take the same as without
/// it.
template <typename Made> class MadeOnce
{
public:
    template <typename Make> Made of(std::string_view key, Make make)
    {
        constexpr size_t longestKept = 64;
        if (key.size() > longestKept)
            return make(key);
        Place &place = places[hashOf(key) % places.size()];
        if (!place.isTaken || place.key != key) {
            place.made = make(key);
            place.key = key;
            place.isTaken = true;
        }
        return place.made;
    }
    void clear() { places.assign(placeCount, {}); }

private:
    struct Place {
        bool isTaken = false;
        std::string key;
        Made made;
    };

    static size_t hashOf(std::string_view key)
    {
        constexpr size_t factor = 31;
        constexpr int highBits = 20; // the bytes of two numbers may differ only at the end
        size_t hash = 0;
        for (const char byte : key)
            hash = hash * factor + static_cast<unsigned char>(byte);
        return hash ^ (hash >> highBits);
    }

    static constexpr size_t placeCount = 2048;
    std::vector<Place> places = std::vector<Place>(placeCount);
};

} // namespace vanlayout

#endif
