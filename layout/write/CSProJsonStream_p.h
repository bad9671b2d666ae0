#ifndef LAYOUT_WRITE_CSPROJSONSTREAM_P_H
#define LAYOUT_WRITE_CSPROJSONSTREAM_P_H

#include "write/JsonStream_p.h"

#include <QVector>

namespace vanlayout
{

/// Writes JSON in the style of CSPro 8: two blanks of indentation, a blank after each comma, and lists on one line if
/// they are begun as such. The operations are those of the writer of RapidJSON.
class CSProJsonStream
{
public:
    explicit CSProJsonStream(JsonStream &target)
        : stream(target)
    {
    }

    /// Everything in the next list is on one line.
    void beginLine() { isNextOnLine = true; }

    void StartObject() { begin('{'); }
    void EndObject() { end('}'); }
    void StartArray() { begin('['); }
    void EndArray() { end(']'); }
    void Key(const char *key)
    {
        separate();
        put('"');
        put(key);
        put("\": ");
        isAfterKey = true;
    }
    void String(const char *text, rapidjson::SizeType size)
    {
        value();
        rapidjson::Writer<JsonStream>(stream).String(text, size);
    }
    void String(const char *text) { String(text, rapidjson::SizeType(qstrlen(text))); }
    void Int64(qint64 number) { raw(QByteArray::number(number)); }
    void Bool(bool isTrue) { raw(isTrue ? "true" : "false"); }
    void RawValue(const char *json, size_t size, rapidjson::Type) { raw(QByteArray::fromRawData(json, int(size))); }

private:
    struct Frame {
        bool isOnLine = false;
        bool isEmpty = true;
    };

    void put(char character) { stream.Put(character); }
    void put(const char *text)
    {
        for (; *text; ++text)
            stream.Put(*text);
    }
    void raw(const QByteArray &json)
    {
        value();
        for (const char character : json)
            stream.Put(character);
    }
    void lineFeed(int depth)
    {
        put('\n');
        for (int blank = 0; blank < 2 * depth; ++blank)
            put(' ');
    }
    // The separator before an element or a key.
    void separate()
    {
        Frame &frame = frames.last();
        if (!frame.isEmpty)
            put(", ");
        else if (frame.isOnLine)
            put(' ');
        if (!frame.isOnLine)
            lineFeed(frames.size());
        frame.isEmpty = false;
    }
    void value()
    {
        if (!isAfterKey && !frames.isEmpty())
            separate();
        isAfterKey = false;
    }
    void begin(char bracket)
    {
        value();
        put(bracket);
        const bool isOnLine = isNextOnLine || (!frames.isEmpty() && frames.constLast().isOnLine);
        isNextOnLine = false;
        frames.append({ isOnLine, true });
    }
    void end(char bracket)
    {
        const Frame frame = frames.takeLast();
        if (!frame.isEmpty && frame.isOnLine)
            put(' ');
        else if (!frame.isEmpty)
            lineFeed(frames.size());
        put(bracket);
    }

    JsonStream &stream;
    QVector<Frame> frames;
    bool isNextOnLine = false;
    bool isAfterKey = false;
};

} // namespace vanlayout

#endif
