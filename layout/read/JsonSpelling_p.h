#ifndef LAYOUT_READ_JSONSPELLING_P_H
#define LAYOUT_READ_JSONSPELLING_P_H

#include <rapidjson/writer.h>

#include <cstdlib>
#include <new>

namespace vanlayout
{

/// Memory for RapidJSON, which does not check what it is given: raises `std::bad_alloc` where there is none.
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

/// The JSON spelling of one value, written from the events of its reading: numbers as in the file, no white space
/// between the parts.
class JsonSpelling
{
public:
    void begin()
    {
        buffer.Clear();
        writer.Reset(buffer);
        openParts = 0;
    }
    bool isWhole() const { return openParts == 0; }
    int depth() const { return openParts; }
    /// UTF-8, or whatever bytes the file has; valid until the next begin().
    const char *bytes() const { return buffer.GetString(); }
    int size() const { return int(buffer.GetSize()); }

    void null() { writer.Null(); }
    void boolean(bool value) { writer.Bool(value); }
    void number(const char *spelling, size_t size) { writer.RawValue(spelling, size, rapidjson::kNumberType); }
    void text(const char *text, size_t size) { writer.String(text, rapidjson::SizeType(size)); }
    void key(const char *text, size_t size) { writer.Key(text, rapidjson::SizeType(size)); }
    void beginObject()
    {
        ++openParts;
        writer.StartObject();
    }
    void endObject()
    {
        --openParts;
        writer.EndObject();
    }
    void beginList()
    {
        ++openParts;
        writer.StartArray();
    }
    void endList()
    {
        --openParts;
        writer.EndArray();
    }

private:
    using Buffer = rapidjson::GenericStringBuffer<rapidjson::UTF8<>, JsonAllocator>;

    Buffer buffer;
    rapidjson::Writer<Buffer, rapidjson::UTF8<>, rapidjson::UTF8<>, JsonAllocator> writer{ buffer };
    int openParts = 0;
};

} // namespace vanlayout

#endif
