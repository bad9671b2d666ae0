#ifndef VANLAYOUT_JSON_H
#define VANLAYOUT_JSON_H

#include <rapidjson/filewritestream.h>
#include <rapidjson/prettywriter.h>

#include <QByteArray>
#include <QStringView>

#include <cstdio>

/// Whether a text holds half of a surrogate pair, as an occurrence's suffix can be. UTF-8 cannot hold it; an escape
/// can.
bool hasLoneSurrogate(QStringView text);

/// What stands for a unit in a JSON string, whatever it is.
QByteArray jsonEscape(QChar unit);

/// The text as a JSON string of nothing but escapes, quotes included.
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

/// Prints one document, in one line or laid out for a person. \a content is handed the writer.
template <typename Content> void printJson(std::FILE *out, bool isCompact, Content content)
{
    constexpr unsigned indentation = 2;
    char buffer[1 << 16];
    rapidjson::FileWriteStream stream(out, buffer, sizeof buffer);
    if (isCompact) {
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
