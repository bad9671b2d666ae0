#ifndef LAYOUT_WRITE_JSONSTREAM_P_H
#define LAYOUT_WRITE_JSONSTREAM_P_H

#include "LayoutJson.h"
#include "WriteAll_p.h"

#include <QByteArray>
#include <QIODevice>
#include <QString>

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <algorithm>
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
        isWhole = isWhole && writeAll(device, buffer.data(), qint64(used));
        used = 0;
    }
    /// False if the device did not accept all bytes.
    bool isComplete() const { return isWhole; }

private:
    QIODevice &device;
    std::array<char, 1 << 16> buffer;
    size_t used = 0;
    bool isWhole = true;
};

/// Whether a character is a control character from U+007F on, or the line separator U+2028 or the paragraph separator
/// U+2029. RapidJSON does not escape these, but a terminal interprets the former, and many programs that read line by
/// line interpret the latter.
inline bool isFurtherControl(QChar unit)
{
    return (unit >= QChar(0x7F) && unit <= QChar(0x9F)) || unit == QChar(QChar::LineSeparator)
        || unit == QChar(QChar::ParagraphSeparator);
}

/// Writes a text as a JSON string with all control characters escaped.
template <typename Writer> void writeJsonString(Writer &json, const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    if (std::none_of(text.begin(), text.end(), isFurtherControl)) {
        json.String(utf8.constData(), rapidjson::SizeType(utf8.size()));
        return;
    }
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer>(buffer).String(utf8.constData(), rapidjson::SizeType(utf8.size()));
    const QString written = QString::fromUtf8(buffer.GetString(), int(buffer.GetSize()));
    QString literal;
    for (const QChar unit : written) {
        if (isFurtherControl(unit))
            literal += QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
        else
            literal += unit;
    }
    const QByteArray escaped = literal.toUtf8();
    json.RawValue(escaped.constData(), size_t(escaped.size()), rapidjson::kStringType);
}

/// Writes one document and a line feed; \a content is called with the writer. Returns false if the device did not
/// accept all bytes.
template <typename Content> bool writeJsonDocument(QIODevice &device, JsonStyle style, Content content)
{
    constexpr unsigned indentation = 2;
    JsonStream stream(device);
    if (style == JsonStyle::Pretty) {
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
