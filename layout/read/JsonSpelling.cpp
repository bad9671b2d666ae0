#include "read/JsonSpelling_p.h"

#include "read/Decoding_p.h"

#include <rapidjson/memorystream.h>
#include <rapidjson/writer.h>

namespace vanlayout
{

namespace
{

using Buffer = rapidjson::GenericStringBuffer<rapidjson::UTF8<>, JsonAllocator>;
using Writer = rapidjson::Writer<Buffer, rapidjson::UTF8<>, rapidjson::UTF8<>, JsonAllocator>;

// A writer that does not change the spelling of numbers.
class SpellingWriter : public Writer
{
public:
    using Writer::Writer;

    bool RawNumber(const char *number, rapidjson::SizeType size, bool /*copy*/ = false)
    {
        return RawValue(number, size, rapidjson::kNumberType);
    }
};

template <typename Write> QString written(Write write)
{
    Buffer buffer;
    SpellingWriter writer(buffer);
    write(writer);
    return decoding::fromUtf8(buffer.GetString(), int(buffer.GetSize()));
}

} // namespace

QString jsonSpellingOf(std::string_view bytes)
{
    return written([bytes](SpellingWriter &writer) {
        rapidjson::MemoryStream stream(bytes.data(), bytes.size());
        JsonReader().Parse<jsonFlags>(stream, writer);
    });
}

QString jsonSpellingOfText(std::string_view text)
{
    return written([text](SpellingWriter &writer) { writer.String(text.data(), rapidjson::SizeType(text.size())); });
}

} // namespace vanlayout
