#include "Export.h"

#include "ExportedVariable.h"
#include "Resource.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>

#include <cmath>
#include <iterator>

namespace
{

// JSON is read into doubles: up to here, each whole number is another one.
constexpr double largestExact = 9007199254740991.0;

// Of one record of the data, as an object with a property for each variable.
class RecordSchema
{
public:
    explicit RecordSchema(const Layout &source)
        : layout(source)
        , isInColumns(hasColumns(source))
    {
    }

    QJsonObject schema() const
    {
        return { { QStringLiteral("title"), QStringLiteral("Record of the data") },
                 { QStringLiteral("type"), QStringLiteral("object") },
                 { QStringLiteral("properties"), properties() },
                 { QStringLiteral("additionalProperties"), false } };
    }

private:
    // In the order of the keys, in which an object grows at its end.
    QJsonObject properties() const
    {
        const QList<TVpSourceField *> &fields = *layout.provider.getFields();
        const QStringList names = uniqueNames(fields, wholeCharacters);
        QMap<QString, const TVpSourceField *> sorted;
        for (int i = 0; i < fields.size(); ++i)
            sorted.insert(names.at(i), fields.at(i));
        QJsonObject properties;
        for (auto field = sorted.cbegin(); field != sorted.cend(); ++field)
            properties.insert(field.key(), property(*field.value(), field.key()));
        return properties;
    }

    QJsonObject property(const TVpSourceField &field, const QString &key) const
    {
        const QVector<Category> categories = categoriesOf(field);
        const ValueKind kind = kindOf(field);
        QJsonObject property = categories.isEmpty() ? values(field, kind) : typeSchema(kind);
        property.insert(QLatin1String("title"), propertyTitle(field, key));
        if (!categories.isEmpty())
            property.insert(QLatin1String("anyOf"), alternatives(field, kind, categories));
        return property;
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
    QJsonArray alternatives(const TVpSourceField &field, ValueKind kind, const QVector<Category> &categories) const
    {
        QJsonArray alternatives{ values(field, kind) };
        for (const Category &category : categories) {
            const QJsonValue value = valueOf(category.code, kind);
            if (!value.isUndefined())
                alternatives.append(codeSchema(category, value));
        }
        return alternatives;
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

    static QJsonObject codeSchema(const Category &category, const QJsonValue &value)
    {
        QJsonObject code{ { QStringLiteral("const"), value } };
        if (!category.label.isEmpty())
            code.insert(QLatin1String("title"), wholeCharacters(category.label));
        if (category.isMissing)
            code.insert(QLatin1String("description"), QStringLiteral("stands for a missing value"));
        return code;
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

// Of the names of this layout alone.
QJsonObject nameSchema(const QList<TVpSourceField *> &fields)
{
    QStringList names;
    QStringList patterns;
    for (const TVpSourceField *field : fields) {
        if (wholeCharacters(field->fieldName) == field->fieldName)
            names.append(field->fieldName);
        else
            patterns.append(namePattern(field->fieldName));
    }
    names.removeDuplicates();
    patterns.removeDuplicates();
    QJsonObject listed{ { QStringLiteral("enum"), QJsonArray::fromStringList(names) } };
    if (patterns.isEmpty())
        return listed;
    QJsonArray alternatives;
    if (!names.isEmpty())
        alternatives.append(listed);
    for (const QString &pattern : qAsConst(patterns))
        alternatives.append(QJsonObject{ { QStringLiteral("pattern"), pattern } });
    return { { QStringLiteral("anyOf"), alternatives } };
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

// The definitions of any layout's JSON form, narrowed to this one: so many variables, of these names, and no error.
QJsonObject layoutDefinitions(const QList<TVpSourceField *> &fields)
{
    const QByteArray schema = resource(QStringLiteral(":/export/layout.schema.json"));
    QJsonObject definitions = QJsonDocument::fromJson(schema).object().value(QLatin1String("$defs")).toObject();
    definitions.remove(QStringLiteral("failure"));
    const QJsonObject count{ { QStringLiteral("minItems"), fields.size() },
                             { QStringLiteral("maxItems"), fields.size() } };
    definitions = extended(definitions,
                           { QStringLiteral("layout"), QStringLiteral("properties"), QStringLiteral("fields") }, count);
    return extended(definitions, { QStringLiteral("field"), QStringLiteral("properties"), QStringLiteral("name") },
                    nameSchema(fields));
}

QJsonObject reference(const QString &definition)
{
    return { { QStringLiteral("$ref"), QString(QLatin1String("#/$defs/") + definition) } };
}

} // namespace

void writeJsonSchema(const Layout &layout, QIODevice &device)
{
    QJsonObject definitions = layoutDefinitions(*layout.provider.getFields());
    definitions.insert(QLatin1String("record"), RecordSchema(layout).schema());
    const QJsonObject schema{
        { QStringLiteral("$schema"), QStringLiteral("https://json-schema.org/draft/2020-12/schema") },
        { QStringLiteral("$comment"),
          QStringLiteral("Valid are the JSON form of this layout, and a record of its data.") },
        { QStringLiteral("title"), wholeCharacters(titleOf(layout)) },
        { QStringLiteral("anyOf"),
          QJsonArray{ reference(QStringLiteral("layout")), reference(QStringLiteral("record")) } },
        { QStringLiteral("$defs"), definitions },
    };
    device.write(QJsonDocument(schema).toJson());
}
