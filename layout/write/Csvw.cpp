#include "Csvw.h"

#include "write/Codes_p.h"
#include "write/Columns_p.h"
#include "write/Dates_p.h"
#include "write/JsonMembers_p.h"
#include "write/LanguageTag_p.h"
#include "write/Tables_p.h"
#include "write/Wording_p.h"

#include <QUrl>

namespace vanlayout
{

namespace
{

// Whether the character at an index is a point; both ends of the text are treated as one.
bool isPoint(const QByteArray &text, int index)
{
    return index < 0 || index >= text.size() || text.at(index) == '.';
}

// A column name is a variable of a URI template: letters, digits and `_`, with single points between them; all other
// characters are percent-encoded. A leading `_` is reserved for names that a processor generates.
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

QStringList columnNames(const QStringList &names)
{
    QStringList result;
    for (const QString &name : names)
        result.append(columnName(name));
    return result;
}

// Texts of one language.
struct Titles {
    QString tag;
    QStringList texts;
};

const char *const anyLanguage = "und";

// The titles of a column by language, each once, in the order of their first text.
class TitleList
{
public:
    void add(const QString &tag, const QString &text)
    {
        if (!known.insert(tag + QChar(0) + text).second)
            return;
        const int place = places.emplace(tag, all.size()).first->second;
        if (place == all.size())
            all.append({ tag, {} });
        all[place].texts.append(text);
    }

    QVector<Titles> all;

private:
    KeyedSet<QString> known;
    KeyedMap<QString, int> places; // by tag
};

// The titles of a column: the name in the header line, then the labels by language.
QVector<Titles> titlesOf(const Column &column, LanguageTags &tags)
{
    TitleList titles;
    titles.add(QLatin1String(anyLanguage), column.name);
    const Labels labels = labelsOf(column);
    for (const Label &label : labels.parts) {
        const QString tag = tags.of(label.language);
        if (!label.text.isEmpty())
            titles.add(tag.isEmpty() ? QLatin1String(anyLanguage) : tag, label.text);
    }
    return titles.all;
}

const char *baseOf(const Item &item, const DateForm &dates)
{
    if (dates.calendar != Calendar::None)
        return dates.calendar == Calendar::Date ? "date" : "datetime";
    switch (kindOf(item)) {
    case ValueKind::Whole:
        return "integer";
    case ValueKind::Number:
        return item.storage == Storage::None ? "decimal" : "double";
    case ValueKind::Text:
    case ValueKind::Binary:
        break;
    }
    return "string";
}

template <typename Writer> class CsvwWriter : private JsonMembers<Writer>
{
    using Base = JsonMembers<Writer>;
    using Base::array;
    using Base::integer;
    using Base::json;
    using Base::object;
    using Base::optionalText;
    using Base::string;
    using Base::text;
    using Base::texts;
    using Base::word;

public:
    CsvwWriter(Writer &jsonWriter, const Layout &source)
        : Base(jsonWriter)
        , layout(source)
        , tables(tablesOf(source))
    {
    }

    void write(const QString &title)
    {
        object([&] {
            word("@context", "http://www.w3.org/ns/csvw");
            word("@type", "TableGroup");
            if (title.isEmpty() && !layout.labels.isEmpty())
                annotation("dc:title", layout.labels);
            else
                optionalText("dc:title", title.isEmpty() ? layout.name : title);
            optionalText("dc:description", layout.note);
            array("tables", [&] {
                for (const Table &table : tables)
                    writeTable(table);
            });
        });
    }

private:
    // Writes labels as the value of a property of another vocabulary.
    void annotation(const char *key, const Labels &labels)
    {
        const auto used = [](const Label &label) { return !label.text.isEmpty(); };
        const auto count = std::count_if(labels.parts.begin(), labels.parts.end(), used);
        if (count == 0)
            return;
        json.Key(key);
        if (count > 1)
            json.StartArray();
        for (const Label &label : labels.parts) {
            if (used(label))
                writeText(label);
        }
        if (count > 1)
            json.EndArray();
    }
    void writeText(const Label &label)
    {
        const QString tag = tags.of(label.language);
        if (tag.isEmpty()) {
            string(label.text);
            return;
        }
        object([&] {
            text("@value", label.text);
            text("@language", tag);
        });
    }

    void writeTable(const Table &table)
    {
        object([&] {
            word("@type", "Table");
            text("url", urlOf(table));
            annotation("dc:title", table.record->labels);
            optionalText("dc:description", table.record->note);
            object("tableSchema", [&] {
                array("columns", [&] {
                    const QVector<Column> columns = columnsOf(layout, table.level, *table.record);
                    for (const Column &column : columns)
                        writeColumn(column);
                });
                writeKeys(table);
            });
        });
    }
    static QString urlOf(const Table &table) { return table.name + QLatin1String(".csv"); }

    void writeKeys(const Table &table)
    {
        if (table.isKeyed)
            texts("primaryKey", columnNames(idNamesOf(layout, table.level)));
        if (table.head < 0)
            return;
        const Table &head = tables.at(table.head);
        const QStringList ids = columnNames(idNamesOf(layout, head.level));
        array("foreignKeys", [&] {
            object([&] {
                texts("columnReference", ids);
                object("reference", [&] {
                    text("resource", urlOf(head));
                    texts("columnReference", ids);
                });
            });
        });
    }

    void writeColumn(const Column &column)
    {
        const Item &item = *column.item;
        object([&] {
            text("name", columnName(column.name));
            writeTitles(titlesOf(column, tags));
            optionalText("dc:description", item.note);
            if (isOtherTime(item))
                text("rdfs:comment", QLatin1String("The values have the format ") + item.format);
            writeDatatype(item);
            writeNulls(item);
            if (column.isId) {
                json.Key("required");
                json.Bool(true);
            }
            writeCodeLists(item);
        });
    }
    void writeTitles(const QVector<Titles> &titles)
    {
        if (titles.size() == 1) {
            textOrTexts("titles", titles.constFirst().texts);
            return;
        }
        object("titles", [&] {
            for (const Titles &entry : titles)
                textOrTexts(entry.tag.toLatin1().constData(), entry.texts);
        });
    }
    void textOrTexts(const char *key, const QStringList &values)
    {
        if (values.size() == 1)
            text(key, values.constFirst());
        else
            texts(key, values);
    }

    void writeDatatype(const Item &item)
    {
        const DateForm dates = dateFormOf(item);
        const char *base = baseOf(item, dates);
        object("datatype", [&] {
            word("base", base);
            optionalText("format", dates.pattern);
            if (dates.calendar != Calendar::None)
                return;
            if (kindOf(item) == ValueKind::Text && item.length > 0)
                integer("maxLength", item.length);
            else if (const std::optional<Range> range = onlyRangeOf(item))
                writeBounds(item, *range);
        });
    }
    // The bounds are written as texts, so that no program rounds them.
    void writeBounds(const Item &item, const Range &range)
    {
        const auto write = [&](const char *key, const QString &code) {
            const DecimalNumber bound = decimalNumberOf(code);
            const bool isOfType = bound.isWhole || kindOf(item) == ValueKind::Number;
            if (!bound.spelling.isEmpty() && isOfType && !bound.spelling.contains('e'))
                text(key, QString::fromLatin1(bound.spelling));
        };
        write("minimum", range.from);
        write("maximum", range.to);
    }

    // The empty cell is null by default, and remains so in addition to the codes.
    void writeNulls(const Item &item)
    {
        const QVector<MissingCode> codes = missingCodesOf(item);
        if (codes.isEmpty())
            return;
        array("null", [&] {
            string(QString());
            for (const MissingCode &missing : codes) {
                if (!missing.code.isEmpty())
                    string(missing.code);
            }
        });
    }

    void writeCodeLists(const Item &item)
    {
        if (item.valueSets.isEmpty())
            return;
        array("schema:valueReference", [&] {
            for (const ValueSet &set : item.valueSets)
                writeCodeList(item, set);
        });
    }
    void writeCodeList(const Item &item, const ValueSet &set)
    {
        object([&] {
            word("@type", "schema:DefinedTermSet");
            optionalText("schema:identifier", set.name);
            annotation("schema:name", set.labels);
            optionalText("schema:description", set.note);
            array("schema:hasDefinedTerm", [&] {
                for (const Value &value : set.values)
                    writeTerm(item, value);
            });
        });
    }
    void writeTerm(const Item &item, const Value &value)
    {
        object([&] {
            word("@type", "schema:DefinedTerm");
            writeCodes(item, value.ranges);
            annotation("schema:name", value.labels);
            optionalText("schema:description", value.note);
            optionalText("schema:disambiguatingDescription", describeSpecial(value.special));
            optionalText("schema:image", value.image);
        });
    }
    void writeCodes(const Item &item, const QVector<Range> &ranges)
    {
        QStringList codes;
        QVector<Range> wide;
        for (const Range &range : ranges) {
            if (isSingle(range))
                codes.append(cellOf(item, range.from));
            else
                wide.append(range);
        }
        if (!codes.isEmpty())
            textOrTexts("schema:termCode", codes);
        if (wide.isEmpty())
            return;
        array("schema:valueReference", [&] {
            for (const Range &range : wide)
                writeRange(item, range);
        });
    }
    void writeRange(const Item &item, const Range &range)
    {
        object([&] {
            word("@type", "schema:QuantitativeValue");
            text("schema:minValue", cellOf(item, range.from));
            text("schema:maxValue", cellOf(item, range.to));
        });
    }

    const Layout &layout;
    const QVector<Table> tables;
    LanguageTags tags;
};

} // namespace

bool writeCsvw(const Layout &layout, QIODevice &device, const CsvwOptions &options)
{
    return writeJsonDocument(device, options.style, [&](auto &json) { CsvwWriter(json, layout).write(options.title); });
}

} // namespace vanlayout
