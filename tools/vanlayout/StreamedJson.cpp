#include "StreamedJson.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace
{

constexpr int indentation = 4;

// A text, number or flag as QJsonDocument writes it, which takes nothing but arrays and objects.
QByteArray literalOf(const QJsonValue &value)
{
    const QByteArray array = QJsonDocument(QJsonArray{ value }).toJson(QJsonDocument::Compact);
    return array.mid(1, array.size() - 2);
}

// A document on several lines, of which the first one is indented already.
QByteArray indented(const QJsonDocument &document, int depth)
{
    QByteArray text = document.toJson();
    text.chop(1);
    return text.replace('\n', '\n' + QByteArray(depth * indentation, ' '));
}

bool hasControl(const QString &text)
{
    return std::any_of(text.cbegin(), text.cend(), [](QChar unit) { return unit < QLatin1Char(' '); });
}

} // namespace

StreamedJson::StreamedJson(QIODevice &device)
    : stream(device)
    , json(stream)
{
    json.SetIndent(' ', indentation);
}

void StreamedJson::beginObject()
{
    json.StartObject();
    ++depth;
}

void StreamedJson::endObject()
{
    json.EndObject();
    --depth;
}

void StreamedJson::beginArray()
{
    json.StartArray();
    ++depth;
}

void StreamedJson::endArray()
{
    json.EndArray();
    --depth;
}

void StreamedJson::key(const char *name)
{
    json.Key(name);
}

void StreamedJson::key(const QString &name)
{
    writeText(name);
}

void StreamedJson::value(const QJsonValue &value)
{
    if (value.isString())
        writeText(value.toString());
    else if (value.isObject())
        writeRaw(indented(QJsonDocument(value.toObject()), depth));
    else if (value.isArray())
        writeRaw(indented(QJsonDocument(value.toArray()), depth));
    else
        writeRaw(literalOf(value));
}

void StreamedJson::member(const char *name, const QJsonValue &memberValue)
{
    key(name);
    value(memberValue);
}

void StreamedJson::members(const QJsonObject &object)
{
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        key(entry.key());
        value(entry.value());
    }
}

void StreamedJson::finish()
{
    stream.Put('\n');
    stream.Flush();
}

// QJsonDocument writes the codes of control characters in lower case, RapidJSON in upper case.
void StreamedJson::writeText(const QString &text)
{
    if (hasControl(text)) {
        writeRaw(literalOf(text));
    } else {
        const QByteArray utf8 = text.toUtf8();
        json.String(utf8.constData(), rapidjson::SizeType(utf8.size()));
    }
}

// The type counts for a key alone, which is a text.
void StreamedJson::writeRaw(const QByteArray &text)
{
    json.RawValue(text.constData(), size_t(text.size()), rapidjson::kStringType);
}
