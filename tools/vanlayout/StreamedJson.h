#ifndef VANLAYOUT_STREAMEDJSON_H
#define VANLAYOUT_STREAMEDJSON_H

#include "DeviceStream.h"

#include <rapidjson/prettywriter.h>

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

/// Writes a JSON document piece by piece, byte for byte as QJsonDocument lays it out when it has the whole: indented by
/// four blanks, with a line feed at the end. The caller writes the members of an object in the order of their keys.
class StreamedJson
{
public:
    explicit StreamedJson(QIODevice &device);

    void beginObject();
    void endObject();
    void beginArray();
    void endArray();
    void key(const char *name);
    void key(const QString &name);
    /// A value that is made whole: a text, a number, or an array or object of a few members.
    void value(const QJsonValue &value);
    void member(const char *name, const QJsonValue &memberValue);
    /// All members of an object that is open here.
    void members(const QJsonObject &object);
    /// The end of the document: writes what is left. Nothing may follow.
    void finish();

private:
    void writeText(const QString &text);
    void writeRaw(const QByteArray &text);

    DeviceStream stream;
    rapidjson::PrettyWriter<DeviceStream> json;
    int depth = 0; ///< objects and arrays that are open
};

#endif
