#ifndef VANLAYOUT_JSON_H
#define VANLAYOUT_JSON_H

#include "write/LayoutJson.h"

#include <rapidjson/filewritestream.h>
#include <rapidjson/prettywriter.h>

#include <QByteArray>
#include <QStringView>

#include <cstdio>

/// True if a text contains half of a surrogate pair, for example in the suffix of an occurrence. UTF-8 cannot represent
/// it; an escape can.
bool hasLoneSurrogate(QStringView text);

/// The escape of any UTF-16 unit in a JSON string.
QByteArray jsonEscape(QChar unit);

/// The text as a JSON string that consists only of escapes, with quotation marks.
QByteArray escapedJson(QStringView text);

/// Writes a text with a writer of RapidJSON.
template <typename Writer> void writeJson(Writer &json, QStringView text)
{
    if (hasLoneSurrogate(text)) {
        const QByteArray literal = escapedJson(text);
        json.RawValue(literal.constData(), size_t(literal.size()), rapidjson::kStringType);
    } else {
        const QByteArray utf8 = text.toUtf8();
        json.String(utf8.constData(), rapidjson::SizeType(utf8.size()));
    }
}

/// Writes a key with its text or number.
template <typename Writer> void writeJson(Writer &json, const char *key, QStringView text)
{
    json.Key(key);
    writeJson(json, text);
}

template <typename Writer> void writeJson(Writer &json, const char *key, int number)
{
    json.Key(key);
    json.Int(number);
}

/// Prints one document, in that style. \a content is called with the writer.
template <typename Content> void printJson(std::FILE *out, vanlayout::JsonStyle style, Content content)
{
    constexpr unsigned indentation = 2;
    char buffer[1 << 16];
    rapidjson::FileWriteStream stream(out, buffer, sizeof buffer);
    if (style == vanlayout::JsonStyle::Compact) {
        rapidjson::Writer<rapidjson::FileWriteStream> json(stream);
        content(json);
    } else {
        rapidjson::PrettyWriter<rapidjson::FileWriteStream> json(stream);
        json.SetIndent(' ', indentation);
        content(json);
    }
    stream.Put('\n');
    stream.Flush();
}

#endif
