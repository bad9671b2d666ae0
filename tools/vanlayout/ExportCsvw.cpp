#include "Export.h"

#include "ExportedVariable.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
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

class CsvwTable
{
public:
    explicit CsvwTable(const Layout &source)
        : layout(source)
        , isInColumns(hasColumns(source))
    {
    }

    QJsonObject table() const
    {
        const QString title = wholeCharacters(titleOf(layout));
        return {
            { QStringLiteral("@context"), QStringLiteral("http://www.w3.org/ns/csvw") },
            { QStringLiteral("@type"), QStringLiteral("Table") },
            { QStringLiteral("url"), QString::fromLatin1(QUrl::toPercentEncoding(title)) + QLatin1String(".csv") },
            { QStringLiteral("dc:title"), title },
            { QStringLiteral("tableSchema"), QJsonObject{ { QStringLiteral("columns"), columns() } } },
        };
    }

private:
    QJsonArray columns() const
    {
        const QList<TVpSourceField *> &fields = *layout.provider.getFields();
        const QStringList names = uniqueNames(fields, columnName);
        QJsonArray columns;
        for (int i = 0; i < fields.size(); ++i)
            columns.append(column(*fields.at(i), names.at(i)));
        return columns;
    }

    QJsonObject column(const TVpSourceField &field, const QString &name) const
    {
        QJsonObject column{ { QStringLiteral("name"), name }, { QStringLiteral("datatype"), datatype(field) } };
        if (!field.fieldName.isEmpty())
            column.insert(QLatin1String("titles"), wholeCharacters(field.fieldName));
        if (!field.label.isEmpty())
            column.insert(QLatin1String("dc:description"), wholeCharacters(field.label));
        const QStringList missingCodes = missingCodesOf(field);
        if (!missingCodes.isEmpty())
            column.insert(QLatin1String("null"), nulls(missingCodes));
        const QVector<Category> categories = categoriesOf(field);
        if (!categories.isEmpty())
            column.insert(QLatin1String("qb:codeList"), codeList(categories));
        return column;
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
    static QJsonArray nulls(const QStringList &codes)
    {
        QJsonArray nulls{ QString() };
        for (const QString &code : codes)
            nulls.append(wholeCharacters(code));
        return nulls;
    }

    static QJsonObject codeList(const QVector<Category> &categories)
    {
        QJsonArray concepts;
        for (const Category &category : categories)
            concepts.append(topConcept(category));
        return { { QStringLiteral("@type"), QStringLiteral("skos:ConceptScheme") },
                 { QStringLiteral("skos:hasTopConcept"), concepts } };
    }

    static QJsonObject topConcept(const Category &category)
    {
        QJsonObject result{ { QStringLiteral("@type"), QStringLiteral("skos:Concept") },
                            { QStringLiteral("skos:notation"), wholeCharacters(category.code) } };
        if (!category.label.isEmpty())
            result.insert(QLatin1String("skos:prefLabel"), wholeCharacters(category.label));
        return result;
    }

    const Layout &layout;
    bool isInColumns;
};

} // namespace

void writeCsvw(const Layout &layout, QIODevice &device)
{
    device.write(QJsonDocument(CsvwTable(layout).table()).toJson());
}
