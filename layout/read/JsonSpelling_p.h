#ifndef LAYOUT_READ_JSONSPELLING_P_H
#define LAYOUT_READ_JSONSPELLING_P_H

#include <QString>

#include <rapidjson/reader.h>

#include <cstdlib>
#include <new>
#include <string_view>

namespace vanlayout
{

/// Allocator for RapidJSON, which does not check whether memory was allocated: throws `std::bad_alloc` if it was not.
class JsonAllocator
{
public:
    static const bool kNeedFree = true;

    void *Malloc(size_t size) { return size == 0 ? nullptr : checked(std::malloc(size)); }
    void *Realloc(void *memory, size_t /*oldSize*/, size_t newSize)
    {
        if (newSize != 0)
            return checked(std::realloc(memory, newSize));
        std::free(memory);
        return nullptr;
    }
    static void Free(void *memory) { std::free(memory); }

private:
    static void *checked(void *memory)
    {
        if (!memory)
            throw std::bad_alloc();
        return memory;
    }
};

/// Flags for RapidJSON's reader: nesting uses no stack, comments are allowed, numbers keep their spelling.
constexpr unsigned jsonFlags
    = rapidjson::kParseIterativeFlag | rapidjson::kParseCommentsFlag | rapidjson::kParseNumbersAsStringsFlag;
using JsonReader = rapidjson::GenericReader<rapidjson::UTF8<>, rapidjson::UTF8<>, JsonAllocator>;

/// The spelling of the JSON value in \a bytes, without white space and comments between its parts; numbers are
/// unchanged.
QString jsonSpellingOf(std::string_view bytes);
/// The JSON string of \a text, which is in UTF-8 or in the encoding of the file.
QString jsonSpellingOfText(std::string_view text);

} // namespace vanlayout

#endif
