#ifndef TOOL_JSONSCHEMA_H
#define TOOL_JSONSCHEMA_H

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <regex>
#include <string>

/// Validates a JSON value against a JSON Schema. Only the keywords in the schemas of this project are supported; any
/// other keyword is a violation.
class JsonSchema
{
public:
    explicit JsonSchema(const QJsonObject &schema)
        : root(schema)
    {
    }

    /// The first violation with its path; empty if the value is valid.
    QString violation(const QJsonValue &value) const { return violation(root, value, QStringLiteral("$")); }

private:
    QString violation(const QJsonObject &schema, const QJsonValue &value, const QString &place) const
    {
        for (auto keyword = schema.begin(); keyword != schema.end(); ++keyword) {
            const QString problem = violationOf(keyword.key(), schema, value, place);
            if (!problem.isEmpty())
                return problem;
        }
        return QString();
    }

    QString violationOf(const QString &keyword, const QJsonObject &schema, const QJsonValue &value,
                        const QString &place) const
    {
        static const QStringList notes{ "$schema", "$comment", "$defs", "title", "description" };
        const QJsonValue stated = schema.value(keyword);
        if (notes.contains(keyword))
            return QString();
        if (keyword == "$ref")
            return violation(definition(stated.toString()), value, place);
        if (keyword == "properties" || keyword == "additionalProperties")
            return violationOfMembers(schema, value.toObject(), place);
        if (keyword == "items")
            return violationOfItems(stated.toObject(), value.toArray(), place);
        return holds(keyword, stated, value, place) ? QString() : place + ": " + keyword;
    }

    bool holds(const QString &keyword, const QJsonValue &stated, const QJsonValue &value, const QString &place) const
    {
        if (keyword == "type")
            return isOfType(value, stated.toString());
        if (keyword == "const")
            return value == stated;
        if (keyword == "enum")
            return stated.toArray().contains(value);
        if (keyword == "minimum")
            return !value.isDouble() || value.toDouble() >= stated.toDouble();
        if (keyword == "maximum")
            return !value.isDouble() || value.toDouble() <= stated.toDouble();
        if (keyword == "maxLength")
            return !value.isString() || value.toString().toUcs4().size() <= stated.toInt();
        if (keyword == "minItems")
            return !value.isArray() || value.toArray().size() >= stated.toInt();
        if (keyword == "maxItems")
            return !value.isArray() || value.toArray().size() <= stated.toInt();
        if (keyword == "pattern")
            return !value.isString() || matches(value.toString(), stated.toString());
        if (keyword == "required")
            return hasAll(value.toObject(), stated.toArray());
        if (keyword == "anyOf")
            return countOfMatches(stated.toArray(), value, place) > 0;
        if (keyword == "oneOf")
            return countOfMatches(stated.toArray(), value, place) == 1;
        return false;
    }

    QJsonObject definition(const QString &reference) const
    {
        return root["$defs"].toObject().value(reference.section('/', -1)).toObject();
    }

    static bool isOfType(const QJsonValue &value, const QString &type)
    {
        if (type == "integer")
            return value.isDouble() && std::floor(value.toDouble()) == value.toDouble();
        static const QMap<QString, QJsonValue::Type> types{ { "object", QJsonValue::Object },
                                                            { "array", QJsonValue::Array },
                                                            { "string", QJsonValue::String },
                                                            { "number", QJsonValue::Double },
                                                            { "boolean", QJsonValue::Bool } };
        return value.type() == types.value(type, QJsonValue::Undefined);
    }

    // Patterns match single UTF-16 units, because half a surrogate pair may be searched.
    static bool matches(const QString &text, const QString &pattern)
    {
        const auto units = [](const QString &string) {
            std::wstring result;
            for (const QChar unit : string)
                result += wchar_t(unit.unicode());
            return result;
        };
        return std::regex_search(units(text), std::wregex(units(pattern)));
    }

    static bool hasAll(const QJsonObject &object, const QJsonArray &keys)
    {
        return std::all_of(keys.begin(), keys.end(),
                           [&](const QJsonValue &key) { return object.contains(key.toString()); });
    }

    int countOfMatches(const QJsonArray &schemas, const QJsonValue &value, const QString &place) const
    {
        return int(std::count_if(schemas.begin(), schemas.end(), [&](const QJsonValue &schema) {
            return violation(schema.toObject(), value, place).isEmpty();
        }));
    }

    QString violationOfMembers(const QJsonObject &schema, const QJsonObject &object, const QString &place) const
    {
        const QJsonObject properties = schema["properties"].toObject();
        for (auto member = object.begin(); member != object.end(); ++member) {
            const QString path = place + '.' + member.key();
            if (!properties.contains(member.key()) && schema["additionalProperties"] == false)
                return path + ": is no property";
            const QString problem = violation(properties[member.key()].toObject(), member.value(), path);
            if (!problem.isEmpty())
                return problem;
        }
        return QString();
    }

    QString violationOfItems(const QJsonObject &schema, const QJsonArray &array, const QString &place) const
    {
        for (int i = 0; i < array.size(); ++i) {
            const QString problem = violation(schema, array.at(i), place + '[' + QString::number(i) + ']');
            if (!problem.isEmpty())
                return problem;
        }
        return QString();
    }

    QJsonObject root;
};

#endif
