#ifndef LAYOUT_WRITE_JSONSTREAM_P_H
#define LAYOUT_WRITE_JSONSTREAM_P_H

#include <QByteArray>
#include <QIODevice>
#include <QString>

#include <rapidjson/prettywriter.h>

#include <array>

namespace vanlayout
{

/// Output stream of RapidJSON on a device, through a buffer.
class JsonStream
{
public:
    using Ch = char;

    explicit JsonStream(QIODevice &target)
        : device(target)
    {
    }

    void Put(char character)
    {
        if (used == buffer.size())
            Flush();
        buffer[used++] = character;
    }
    void Flush()
    {
        isWhole = isWhole && device.write(buffer.data(), qint64(used)) == qint64(used);
        used = 0;
    }
    /// False if the device refused something.
    bool isComplete() const { return isWhole; }

private:
    QIODevice &device;
    std::array<char, 1 << 16> buffer;
    size_t used = 0;
    bool isWhole = true;
};

/// Writes one document and a line feed; \a content is handed the writer. False if the device refused something.
template <typename Content> bool writeJsonDocument(QIODevice &device, bool isPretty, Content content)
{
    constexpr unsigned indentation = 2;
    JsonStream stream(device);
    if (isPretty) {
        rapidjson::PrettyWriter<JsonStream> json(stream);
        json.SetIndent(' ', indentation);
        content(json);
    } else {
        rapidjson::Writer<JsonStream> json(stream);
        content(json);
    }
    stream.Put('\n');
    stream.Flush();
    return stream.isComplete();
}

} // namespace vanlayout

#endif
