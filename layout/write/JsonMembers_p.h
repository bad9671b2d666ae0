#ifndef LAYOUT_WRITE_JSONMEMBERS_P_H
#define LAYOUT_WRITE_JSONMEMBERS_P_H

#include "write/JsonStream_p.h"

#include <QStringList>

namespace vanlayout
{

/// Base class of the writers of JSON documents: writes members of objects with a writer of RapidJSON.
template <typename Writer> class JsonMembers
{
public:
    explicit JsonMembers(Writer &jsonWriter)
        : json(jsonWriter)
    {
    }

protected:
    void string(const QString &value) { writeJsonString(json, value); }
    void text(const char *key, const QString &value)
    {
        json.Key(key);
        string(value);
    }
    /// No member for an empty text.
    void optionalText(const char *key, const QString &value)
    {
        if (!value.isEmpty())
            text(key, value);
    }
    /// A text of this program, which needs no escapes.
    void word(const char *key, const char *value)
    {
        json.Key(key);
        json.String(value);
    }
    void integer(const char *key, qint64 value)
    {
        json.Key(key);
        json.Int64(value);
    }
    void boolean(const char *key, bool value)
    {
        json.Key(key);
        json.Bool(value);
    }
    /// A number in JSON syntax.
    void number(const QByteArray &spelling)
    {
        json.RawValue(spelling.constData(), size_t(spelling.size()), rapidjson::kNumberType);
    }
    void number(const char *key, const QByteArray &spelling)
    {
        json.Key(key);
        number(spelling);
    }
    template <typename Members> void object(Members members)
    {
        json.StartObject();
        members();
        json.EndObject();
    }
    template <typename Members> void object(const char *key, Members members)
    {
        json.Key(key);
        object(members);
    }
    template <typename Elements> void array(const char *key, Elements elements)
    {
        json.Key(key);
        json.StartArray();
        elements();
        json.EndArray();
    }
    /// An array with an object for each entry; \a members writes the members of one.
    template <typename List, typename Members> void objects(const char *key, const List &entries, Members members)
    {
        array(key, [&] {
            for (const auto &entry : entries)
                object([&] { members(entry); });
        });
    }
    void texts(const char *key, const QStringList &values)
    {
        array(key, [&] {
            for (const QString &value : values)
                string(value);
        });
    }

    Writer &json;
};

} // namespace vanlayout

#endif
