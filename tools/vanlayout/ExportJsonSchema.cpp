#include "Export.h"

#include "ExportedVariable.h"
#include "Resource.h"
#include "StreamedJson.h"
#include "util/KeyedHash_p.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>

#include <cmath>
#include <functional>
#include <iterator>

namespace
{

// JSON is read into doubles: up to here, each whole number is another one.
constexpr double largestExact = 9007199254740991.0;

// Of one record of the data, as an object with a property for each variable.
class RecordSchema
{
public:
    RecordSchema(const Layout &source, StreamedJson &output)
        : layout(source)
        , json(output)
        , isInColumns(hasColumns(source))
    {
    }

    void write()
    {
        json.beginObject();
        json.member("additionalProperties", false);
        json.key("properties");
        writeProperties();
        json.member("title", QStringLiteral("Record of the data"));
        json.member("type", QStringLiteral("object"));
        json.endObject();
    }

private:
    void writeProperties()
    {
        const QList<TVpSourceField *> &fields = *layout.provider.getFields();
        const QStringList names = uniqueNames(fields, wholeCharacters);
        QMap<QString, const TVpSourceField *> sorted;
        for (int i = 0; i < fields.size(); ++i)
            sorted.insert(names.at(i), fields.at(i));
        json.beginObject();
        for (auto field = sorted.cbegin(); field != sorted.cend(); ++field) {
            json.key(field.key());
            writeProperty(*field.value(), field.key());
        }
        json.endObject();
    }

    void writeProperty(const TVpSourceField &field, const QString &key)
    {
        const QString title = propertyTitle(field, key);
        const QVector<Category> categories = categoriesOf(field);
        const ValueKind kind = kindOf(field);
        if (categories.isEmpty()) {
            QJsonObject property = values(field, kind);
            property.insert(QLatin1String("title"), title);
            json.value(property);
            return;
        }
        json.beginObject();
        json.key("anyOf");
        writeAlternatives(field, kind, categories);
        json.member("title", title);
        json.members(typeSchema(kind));
        json.endObject();
    }

    // The label; the name stands in front where the key is another.
    static QString propertyTitle(const TVpSourceField &field, const QString &key)
    {
        const bool isRenamed = key != wholeCharacters(field.fieldName);
        if (field.label.isEmpty() || field.fieldName.isEmpty() || !isRenamed)
            return wholeCharacters(field.label.isEmpty() ? field.fieldName : field.label);
        return wholeCharacters(field.fieldName) + QLatin1String(": ") + wholeCharacters(field.label);
    }

    // Any value in the bounds, or a code: a value set need not list every value, and a missing code need not lie in the
    // bounds. A code that is no value of the variable's type cannot stand in a record.
    void writeAlternatives(const TVpSourceField &field, ValueKind kind, const QVector<Category> &categories)
    {
        json.beginArray();
        json.value(values(field, kind));
        for (const Category &category : categories) {
            const QJsonValue value = valueOf(category.code, kind);
            if (!value.isUndefined())
                writeCode(category, value);
        }
        json.endArray();
    }

    QJsonObject values(const TVpSourceField &field, ValueKind kind) const
    {
        QJsonObject values = typeSchema(kind);
        if (!isInColumns)
            return values;
        if (kind == ValueKind::text && field.length > 0)
            values.insert(QLatin1String("maxLength"), field.length);
        const Bounds bounds = boundsOf(field, kind);
        if (!bounds.minimum.isEmpty())
            values.insert(QLatin1String("minimum"), valueOf(bounds.minimum, kind));
        if (!bounds.maximum.isEmpty())
            values.insert(QLatin1String("maximum"), valueOf(bounds.maximum, kind));
        return values;
    }

    static QJsonObject typeSchema(ValueKind kind)
    {
        if (kind == ValueKind::unknown)
            return {};
        const char *const names[] = { "", "integer", "number", "string" };
        return { { QStringLiteral("type"), QLatin1String(names[int(kind)]) } };
    }

    void writeCode(const Category &category, const QJsonValue &value)
    {
        json.beginObject();
        json.member("const", value);
        if (category.isMissing)
            json.member("description", QStringLiteral("stands for a missing value"));
        if (!category.label.isEmpty())
            json.member("title", wholeCharacters(category.label));
        json.endObject();
    }

    // Undefined, which an object takes for nothing, where the code is no value of that kind that JSON holds exactly.
    static QJsonValue valueOf(const QString &code, ValueKind kind)
    {
        if (!isNumber(kind))
            return wholeCharacters(code);
        if (kind == ValueKind::whole && !wholeNumberOf(code))
            return QJsonValue::Undefined;
        const std::optional<double> number = realNumberOf(code);
        return number && std::abs(*number) <= largestExact ? QJsonValue(*number) : QJsonValue(QJsonValue::Undefined);
    }

    const Layout &layout;
    StreamedJson &json;
    bool isInColumns;
};

// A regular expression that is the character itself.
QString expressionOf(QChar unit)
{
    const bool isSign = QStringLiteral("^$\\.*+?()[]{}|").contains(unit);
    return isSign ? QLatin1Char('\\') + QString(unit) : QString(unit);
}

// Half of a surrogate pair, or U+FFFD in its place: one program reads the JSON form as it stands, another replaces. Set
// apart from other characters without escapes, which not every kind of regular expressions knows.
QString halfExpression()
{
    const ushort units[] = { '[', '^', 0x0001, '-', 0xD7FF, 0xE000, '-', 0xFFFC, ']' };
    return QString::fromUtf16(units, int(std::size(units)));
}

QString namePattern(const QString &name)
{
    const QString whole = wholeCharacters(name);
    QString pattern(QLatin1Char('^'));
    for (int i = 0; i < name.size(); ++i)
        pattern += whole.at(i) == name.at(i) ? expressionOf(name.at(i)) : halfExpression();
    return pattern + QLatin1Char('$');
}

void writeEnum(const QStringList &texts, StreamedJson &json)
{
    json.key("enum");
    json.beginArray();
    for (const QString &text : texts)
        json.value(text);
    json.endArray();
}

// Each text once, where it comes first.
QStringList distinct(const QStringList &texts)
{
    KeyedSet<QString> known;
    QStringList all;
    for (const QString &text : texts) {
        if (known.insert(text).second)
            all.append(text);
    }
    return all;
}

// The member that allows the names of this layout alone.
void writeNames(const QList<TVpSourceField *> &fields, StreamedJson &json)
{
    QStringList names;
    QStringList patterns;
    for (const TVpSourceField *field : fields) {
        if (wholeCharacters(field->fieldName) == field->fieldName)
            names.append(field->fieldName);
        else
            patterns.append(namePattern(field->fieldName));
    }
    if (patterns.isEmpty()) {
        writeEnum(distinct(names), json);
        return;
    }
    json.key("anyOf");
    json.beginArray();
    if (!names.isEmpty()) {
        json.beginObject();
        writeEnum(distinct(names), json);
        json.endObject();
    }
    const QStringList distinctPatterns = distinct(patterns);
    for (const QString &pattern : distinctPatterns)
        json.value(QJsonObject{ { QStringLiteral("pattern"), pattern } });
    json.endArray();
}

// The object with these members at the end of the path, beside those that are there.
QJsonObject extended(QJsonObject object, const QStringList &path, const QJsonObject &members)
{
    if (path.isEmpty()) {
        for (auto member = members.begin(); member != members.end(); ++member)
            object.insert(member.key(), member.value());
        return object;
    }
    const QJsonObject inner = object.value(path.first()).toObject();
    object.insert(path.first(), extended(inner, path.mid(1), members));
    return object;
}

// The definitions of any layout's JSON form, narrowed to so many variables and to no error.
QJsonObject layoutDefinitions(int variables)
{
    const QByteArray schema = resource(QStringLiteral(":/export/layout.schema.json"));
    QJsonObject definitions = QJsonDocument::fromJson(schema).object().value(QLatin1String("$defs")).toObject();
    definitions.remove(QStringLiteral("failure"));
    const QJsonObject count{ { QStringLiteral("minItems"), variables }, { QStringLiteral("maxItems"), variables } };
    return extended(definitions, { QStringLiteral("layout"), QStringLiteral("properties"), QStringLiteral("fields") },
                    count);
}

// Writes a member of an object, and answers true; or leaves it to the caller.
using MemberWriter = std::function<bool(const QString &key, const QJsonValue &member)>;

void writeObject(const QJsonObject &object, StreamedJson &json, const MemberWriter &writeMember)
{
    json.beginObject();
    for (auto member = object.begin(); member != object.end(); ++member) {
        json.key(member.key());
        if (!writeMember(member.key(), member.value()))
            json.value(member.value());
    }
    json.endObject();
}

// The definition of a variable, with the names of this layout alone. These are many, and what was there of a name comes
// behind them in the order of the keys.
void writeFieldDefinition(const QJsonObject &definition, const QList<TVpSourceField *> &fields, StreamedJson &json)
{
    writeObject(definition, json, [&](const QString &key, const QJsonValue &member) {
        if (key != QLatin1String("properties"))
            return false;
        writeObject(member.toObject(), json, [&](const QString &property, const QJsonValue &schema) {
            if (property != QLatin1String("name"))
                return false;
            json.beginObject();
            writeNames(fields, json);
            json.members(schema.toObject());
            json.endObject();
            return true;
        });
        return true;
    });
}

void writeDefinitions(const Layout &layout, StreamedJson &json)
{
    const QList<TVpSourceField *> &fields = *layout.provider.getFields();
    QJsonObject definitions = layoutDefinitions(fields.size());
    definitions.insert(QLatin1String("record"), QJsonValue::Null); // its place
    writeObject(definitions, json, [&](const QString &key, const QJsonValue &definition) {
        if (key == QLatin1String("record"))
            RecordSchema(layout, json).write();
        else if (key == QLatin1String("field"))
            writeFieldDefinition(definition.toObject(), fields, json);
        else
            return false;
        return true;
    });
}

QJsonObject reference(const QString &definition)
{
    return { { QStringLiteral("$ref"), QString(QLatin1String("#/$defs/") + definition) } };
}

} // namespace

void writeJsonSchema(const Layout &layout, QIODevice &device)
{
    StreamedJson json(device);
    json.beginObject();
    json.member("$comment", QStringLiteral("Valid are the JSON form of this layout, and a record of its data."));
    json.key("$defs");
    writeDefinitions(layout, json);
    json.member("$schema", QStringLiteral("https://json-schema.org/draft/2020-12/schema"));
    json.member("anyOf", QJsonArray{ reference(QStringLiteral("layout")), reference(QStringLiteral("record")) });
    json.member("title", wholeCharacters(titleOf(layout)));
    json.endObject();
    json.finish();
}
