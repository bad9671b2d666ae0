#include "Export.h"

#include "ExportedVariable.h"
#include "JsonDevice.h"

#include <QUrl>

namespace
{

// The ends of the text count as one.
bool isPoint(const QByteArray &text, int index)
{
    return index < 0 || index >= text.size() || text.at(index) == '.';
}

// A column name is the variable of a URI template: letters, digits and `_`, a single point between them, anything else
// in percent. A `_` in front is kept for names that a processor makes.
QString columnName(const QString &name)
{
    const QByteArray encoded = QUrl::toPercentEncoding(name, QByteArray(), "-~");
    QString result;
    for (int i = 0; i < encoded.size(); ++i) {
        if (i == 0 && encoded.at(i) == '_')
            result += QLatin1String("%5F");
        else if (encoded.at(i) == '.' && (isPoint(encoded, i - 1) || isPoint(encoded, i + 1)))
            result += QLatin1String("%2E");
        else
            result += QLatin1Char(encoded.at(i));
    }
    return result;
}

const char *datatypeOf(ValueKind kind)
{
    switch (kind) {
    case ValueKind::whole:
        return "integer";
    case ValueKind::real:
        return "decimal";
    case ValueKind::text:
    case ValueKind::unknown:
        break;
    }
    return "string";
}

class CsvwWriter
{
public:
    CsvwWriter(const Layout &source, DeviceJson &writer)
        : layout(source)
        , json(writer)
        , isInColumns(hasColumns(source))
    {
    }

    void write()
    {
        const QString title = titleOf(layout);
        json.StartObject();
        writeJson(json, "@context", QStringLiteral("http://www.w3.org/ns/csvw"));
        writeJson(json, "@type", QStringLiteral("Table"));
        writeJson(json, "url", QString::fromLatin1(QUrl::toPercentEncoding(title)) + QLatin1String(".csv"));
        writeJson(json, "dc:title", title);
        json.Key("tableSchema");
        json.StartObject();
        json.Key("columns");
        json.StartArray();
        writeColumns();
        json.EndArray();
        json.EndObject();
        json.EndObject();
    }

private:
    void writeColumns()
    {
        const QList<TVpSourceField *> &fields = *layout.provider.getFields();
        const QStringList names = uniqueNames(fields, columnName);
        for (int i = 0; i < fields.size(); ++i)
            writeColumn(*fields.at(i), names.at(i));
    }

    void writeColumn(const TVpSourceField &field, const QString &name)
    {
        json.StartObject();
        writeJson(json, "name", name);
        if (!field.fieldName.isEmpty())
            writeJson(json, "titles", field.fieldName);
        if (!field.label.isEmpty())
            writeJson(json, "dc:description", field.label);
        writeDatatype(field);
        writeNulls(missingCodesOf(field));
        writeCodeList(categoriesOf(field));
        json.EndObject();
    }

    void writeDatatype(const TVpSourceField &field)
    {
        const ValueKind kind = kindOf(field);
        json.Key("datatype");
        json.StartObject();
        json.Key("base");
        json.String(datatypeOf(kind));
        if (isInColumns && isNumber(kind))
            writeBounds(boundsOf(field));
        else if (isInColumns && kind == ValueKind::text && field.length > 0)
            writeJson(json, "maxLength", field.length);
        json.EndObject();
    }

    void writeBounds(const Bounds &bounds)
    {
        if (!bounds.minimum.isEmpty())
            writeJson(json, "minimum", bounds.minimum);
        if (!bounds.maximum.isEmpty())
            writeJson(json, "maximum", bounds.maximum);
    }

    // An empty cell is null by default, and stays so beside the codes.
    void writeNulls(const QStringList &codes)
    {
        if (codes.isEmpty())
            return;
        json.Key("null");
        json.StartArray();
        json.String("");
        for (const QString &code : codes)
            writeJson(json, code);
        json.EndArray();
    }

    void writeCodeList(const QVector<Category> &categories)
    {
        if (categories.isEmpty())
            return;
        json.Key("qb:codeList");
        json.StartObject();
        writeJson(json, "@type", QStringLiteral("skos:ConceptScheme"));
        json.Key("skos:hasTopConcept");
        json.StartArray();
        for (const Category &category : categories)
            writeConcept(category);
        json.EndArray();
        json.EndObject();
    }

    void writeConcept(const Category &category)
    {
        json.StartObject();
        writeJson(json, "@type", QStringLiteral("skos:Concept"));
        writeJson(json, "skos:notation", category.code);
        if (!category.label.isEmpty())
            writeJson(json, "skos:prefLabel", category.label);
        json.EndObject();
    }

    const Layout &layout;
    DeviceJson &json;
    bool isInColumns;
};

} // namespace

void writeCsvw(const Layout &layout, QIODevice &device)
{
    writeJsonDocument(device, [&](DeviceJson &json) { CsvwWriter(layout, json).write(); });
}
