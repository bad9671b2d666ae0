#include "Export.h"

#include "ExportedVariable.h"
#include "JsonDevice.h"

namespace
{

QString asItIs(const QString &name)
{
    return name;
}

class JsonSchemaWriter
{
public:
    JsonSchemaWriter(const Layout &source, DeviceJson &writer)
        : layout(source)
        , json(writer)
        , isInColumns(hasColumns(source))
    {
    }

    void write()
    {
        json.StartObject();
        writeJson(json, "$schema", QStringLiteral("https://json-schema.org/draft/2020-12/schema"));
        writeJson(json, "title", titleOf(layout));
        writeJson(json, "type", QStringLiteral("object"));
        json.Key("properties");
        json.StartObject();
        writeProperties();
        json.EndObject();
        json.Key("additionalProperties");
        json.Bool(false);
        json.EndObject();
    }

private:
    void writeProperties()
    {
        const QList<TVpSourceField *> &fields = *layout.provider.getFields();
        const QStringList names = uniqueNames(fields, asItIs);
        for (int i = 0; i < fields.size(); ++i) {
            writeJson(json, names.at(i));
            writeProperty(*fields.at(i), names.at(i));
        }
    }

    void writeProperty(const TVpSourceField &field, const QString &key)
    {
        const QVector<Category> categories = categoriesOf(field);
        json.StartObject();
        writeJson(json, "title", titleOfProperty(field, key));
        if (categories.isEmpty()) {
            writeValues(field);
        } else {
            writeType(kindOf(field));
            writeAlternatives(field, categories);
        }
        json.EndObject();
    }

    // The label; the name stands in front where the key is another.
    static QString titleOfProperty(const TVpSourceField &field, const QString &key)
    {
        if (field.label.isEmpty())
            return field.fieldName;
        const bool isRenamed = key != field.fieldName && !field.fieldName.isEmpty();
        return isRenamed ? field.fieldName + QLatin1String(": ") + field.label : field.label;
    }

    // Any value in the bounds, or a code: a value set need not list every value, and a missing code need not lie in the
    // bounds.
    void writeAlternatives(const TVpSourceField &field, const QVector<Category> &categories)
    {
        json.Key("anyOf");
        json.StartArray();
        json.StartObject();
        writeValues(field);
        json.EndObject();
        for (const Category &category : categories)
            writeCode(category, kindOf(field));
        json.EndArray();
    }

    void writeValues(const TVpSourceField &field)
    {
        const ValueKind kind = kindOf(field);
        writeType(kind);
        if (!isInColumns)
            return;
        if (kind == ValueKind::text && field.length > 0)
            writeJson(json, "maxLength", field.length);
        const Bounds bounds = boundsOf(field);
        if (!bounds.minimum.isEmpty())
            writeNumber("minimum", bounds.minimum, kind);
        if (!bounds.maximum.isEmpty())
            writeNumber("maximum", bounds.maximum, kind);
    }

    void writeType(ValueKind kind)
    {
        if (kind == ValueKind::unknown)
            return;
        const char *const names[] = { "", "integer", "number", "string" };
        json.Key("type");
        json.String(names[int(kind)]);
    }

    // A code that is no value of the variable's type cannot stand in a record.
    void writeCode(const Category &category, ValueKind kind)
    {
        if (!isValue(category.code, kind))
            return;
        json.StartObject();
        if (isNumber(kind))
            writeNumber("const", category.code, kind);
        else
            writeJson(json, "const", category.code);
        if (!category.label.isEmpty())
            writeJson(json, "title", category.label);
        if (category.isMissing)
            writeJson(json, "description", QStringLiteral("stands for a missing value"));
        json.EndObject();
    }

    static bool isValue(const QString &code, ValueKind kind)
    {
        if (kind == ValueKind::whole)
            return wholeNumberOf(code).has_value();
        return kind != ValueKind::real || realNumberOf(code).has_value();
    }

    void writeNumber(const char *key, const QString &number, ValueKind kind)
    {
        json.Key(key);
        if (kind == ValueKind::whole)
            json.Int64(*wholeNumberOf(number));
        else
            json.Double(*realNumberOf(number));
    }

    const Layout &layout;
    DeviceJson &json;
    bool isInColumns;
};

} // namespace

void writeJsonSchema(const Layout &layout, QIODevice &device)
{
    writeJsonDocument(device, [&](DeviceJson &json) { JsonSchemaWriter(layout, json).write(); });
}
