#include "Export.h"

#include "ExportedVariable.h"
#include "StreamedJson.h"

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
    const QByteArray encoded = QUrl::toPercentEncoding(wholeCharacters(name), QByteArray(), "-~");
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

// A decimal has no exponent, which a number that is stored as a double can be written with.
const char *datatypeOf(ValueKind kind, bool isInColumns)
{
    switch (kind) {
    case ValueKind::whole:
        return "integer";
    case ValueKind::real:
        return isInColumns ? "decimal" : "double";
    case ValueKind::text:
    case ValueKind::unknown:
        break;
    }
    return "string";
}

class CsvwWriter
{
public:
    CsvwWriter(const Layout &source, QIODevice &device)
        : layout(source)
        , json(device)
        , isInColumns(hasColumns(source))
    {
    }

    void write()
    {
        const QString title = wholeCharacters(titleOf(layout));
        json.beginObject();
        json.member("@context", QStringLiteral("http://www.w3.org/ns/csvw"));
        json.member("@type", QStringLiteral("Table"));
        json.member("dc:title", title);
        json.key("tableSchema");
        json.beginObject();
        json.key("columns");
        writeColumns();
        json.endObject();
        json.member("url", QString::fromLatin1(QUrl::toPercentEncoding(title)) + QLatin1String(".csv"));
        json.endObject();
        json.finish();
    }

private:
    void writeColumns()
    {
        const QList<TVpSourceField *> &fields = *layout.provider.getFields();
        const QStringList names = uniqueNames(fields, columnName);
        json.beginArray();
        for (int i = 0; i < fields.size(); ++i)
            writeColumn(*fields.at(i), names.at(i));
        json.endArray();
    }

    void writeColumn(const TVpSourceField &field, const QString &name)
    {
        json.beginObject();
        json.member("datatype", datatype(field));
        if (!field.label.isEmpty())
            json.member("dc:description", wholeCharacters(field.label));
        json.member("name", name);
        const QStringList missingCodes = missingCodesOf(field);
        if (!missingCodes.isEmpty())
            writeNulls(missingCodes);
        const QVector<Category> categories = categoriesOf(field);
        if (!categories.isEmpty())
            writeCodeList(categories);
        if (!field.fieldName.isEmpty())
            json.member("titles", wholeCharacters(field.fieldName));
        json.endObject();
    }

    QJsonObject datatype(const TVpSourceField &field) const
    {
        const ValueKind kind = kindOf(field);
        QJsonObject datatype{ { QStringLiteral("base"), QLatin1String(datatypeOf(kind, isInColumns)) } };
        if (!isInColumns)
            return datatype;
        if (kind == ValueKind::text && field.length > 0)
            datatype.insert(QLatin1String("maxLength"), field.length);
        const Bounds bounds = boundsOf(field, kind);
        if (!bounds.minimum.isEmpty())
            datatype.insert(QLatin1String("minimum"), bounds.minimum);
        if (!bounds.maximum.isEmpty())
            datatype.insert(QLatin1String("maximum"), bounds.maximum);
        return datatype;
    }

    // An empty cell is null by default, and stays so beside the codes.
    void writeNulls(const QStringList &codes)
    {
        json.key("null");
        json.beginArray();
        json.value(QString());
        for (const QString &code : codes)
            json.value(wholeCharacters(code));
        json.endArray();
    }

    void writeCodeList(const QVector<Category> &categories)
    {
        json.key("qb:codeList");
        json.beginObject();
        json.member("@type", QStringLiteral("skos:ConceptScheme"));
        json.key("skos:hasTopConcept");
        json.beginArray();
        for (const Category &category : categories)
            writeConcept(category);
        json.endArray();
        json.endObject();
    }

    void writeConcept(const Category &category)
    {
        json.beginObject();
        json.member("@type", QStringLiteral("skos:Concept"));
        json.member("skos:notation", wholeCharacters(category.code));
        if (!category.label.isEmpty())
            json.member("skos:prefLabel", wholeCharacters(category.label));
        json.endObject();
    }

    const Layout &layout;
    StreamedJson json;
    bool isInColumns;
};

} // namespace

void writeCsvw(const Layout &layout, QIODevice &device)
{
    CsvwWriter(layout, device).write();
}
