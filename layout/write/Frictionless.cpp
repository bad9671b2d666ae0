#include "Frictionless.h"

#include "util/KeyedHash_p.h"
#include "write/Codes_p.h"
#include "write/Columns_p.h"
#include "write/Dates_p.h"
#include "write/JsonMembers_p.h"
#include "write/Tables_p.h"
#include "write/Wording_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

// A code with the value that labels it.
struct Category {
    DecimalNumber number; // code of a numeric item
    QString text;         // code as in a cell
    const Value *value = nullptr;
};

// The valid values of an item as categories, if that is possible: single codes of texts or whole numbers, each once.
class Categories
{
public:
    explicit Categories(const Item &valuedItem)
        : item(valuedItem)
        , isPossible(item.measure != Measure::Scale && canHave(item))
    {
        for (const ValueSet &set : item.valueSets) {
            for (const Value &value : set.values) {
                for (const Range &range : value.ranges) {
                    if (!isMissing(item, value, range))
                        add(value, range);
                }
            }
        }
    }

    // Whether all valid values are categories, and there is at least one.
    bool areAll() const { return isPossible && !all.isEmpty(); }

    bool areOrdered() const { return item.measure == Measure::Ordinal; }

    QVector<Category> all;
    bool hasLabels = false; // whether a valid value has a label

private:
    // Dates have no categories. A number that may have decimals has them only if its format shows no decimals.
    static bool canHave(const Item &item)
    {
        const ValueKind kind = kindOf(item);
        const bool isShownWhole = kind == ValueKind::Number && item.storage != Storage::None && item.decimals == 0;
        return dateFormOf(item).calendar == Calendar::None && kind != ValueKind::Binary
            && (kind != ValueKind::Number || isShownWhole);
    }
    void add(const Value &value, const Range &range)
    {
        hasLabels = hasLabels || !value.labels.isEmpty();
        Category category;
        category.value = &value;
        category.text = cellOf(item, range.from);
        if (item.isNumeric())
            category.number = decimalNumberOf(category.text);
        isPossible = isPossible && isSingle(range) && (!item.isNumeric() || isWholeAndKept(category.number));
        const bool isNumber = !category.number.spelling.isEmpty();
        const QString code = isNumber ? QString::fromLatin1(category.number.spelling) : category.text;
        if (isPossible && known.insert(code).second)
            all.append(category);
    }
    static bool isWholeAndKept(const DecimalNumber &number) { return number.isWhole && number.isKept; }

    const Item &item;
    bool isPossible = false;
    KeyedSet<QString> known;
};

QString typeOf(const Item &item, const DateForm &dates, bool hasCategories)
{
    if (dates.calendar != Calendar::None)
        return dates.calendar == Calendar::Date ? QStringLiteral("date") : QStringLiteral("datetime");
    switch (kindOf(item)) {
    case ValueKind::Whole:
        return QStringLiteral("integer");
    case ValueKind::Number:
        return hasCategories ? QStringLiteral("integer") : QStringLiteral("number");
    case ValueKind::Text:
        return QStringLiteral("string");
    case ValueKind::Binary:
        break;
    }
    return QStringLiteral("any");
}

// "%Y%m%d" for "yyyyMMdd".
QString formatOf(QString pattern)
{
    return pattern.replace(QLatin1String("yyyy"), QLatin1String("%Y"))
        .replace(QLatin1String("MM"), QLatin1String("%m"))
        .replace(QLatin1String("dd"), QLatin1String("%d"));
}

template <typename Writer> class PackageWriter : private JsonMembers<Writer>
{
    using Base = JsonMembers<Writer>;
    using Base::array;
    using Base::boolean;
    using Base::integer;
    using Base::json;
    using Base::number;
    using Base::object;
    using Base::optionalText;
    using Base::text;
    using Base::texts;
    using Base::word;

public:
    PackageWriter(Writer &jsonWriter, const Layout &source, const QString &shownLanguage)
        : Base(jsonWriter)
        , layout(source)
        , language(shownLanguage)
        , tables(tablesOf(source))
    {
    }

    void write(const QString &title)
    {
        object([&] {
            word("$schema", "https://datapackage.org/profiles/2.0/datapackage.json");
            optionalText("title", titleOf(layout, title, language));
            optionalText("description", layout.note);
            array("resources", [&] {
                for (const Table &table : tables)
                    writeResource(table);
            });
        });
    }

private:
    static QString nameOf(const Table &table) { return table.name.toLower(); }

    void writeResource(const Table &table)
    {
        const QVector<Column> columns = columnsOf(layout, table.level, *table.record);
        if (columns.isEmpty())
            return;
        object([&] {
            text("name", nameOf(table));
            word("type", "table");
            text("path", table.name + QLatin1String(".csv"));
            optionalText("title", table.record->labels.in(language));
            optionalText("description", table.record->note);
            word("format", "csv");
            word("mediatype", "text/csv");
            object("schema", [&] {
                word("$schema", "https://datapackage.org/profiles/2.0/tableschema.json");
                array("fields", [&] {
                    for (const Column &column : columns)
                        writeField(column);
                });
                writeKeys(table);
            });
        });
    }
    void writeKeys(const Table &table)
    {
        if (table.isKeyed)
            texts("primaryKey", idNamesOf(layout, table.level));
        if (table.head < 0)
            return;
        const Table &head = tables.at(table.head);
        const QStringList ids = idNamesOf(layout, head.level);
        array("foreignKeys", [&] {
            object([&] {
                texts("fields", ids);
                object("reference", [&] {
                    text("resource", nameOf(head));
                    texts("fields", ids);
                });
            });
        });
    }

    void writeField(const Column &column)
    {
        const Item &item = *column.item;
        const Categories categories(item);
        const DateForm dates = dateFormOf(item);
        object([&] {
            text("name", column.name);
            text("type", typeOf(item, dates, categories.areAll()));
            optionalText("format", formatOf(dates.pattern));
            optionalText("title", labelsOf(column).in(language));
            optionalText("description", item.note);
            writeConstraints(column);
            if (categories.areAll())
                writeCategories(categories);
            else if (categories.hasLabels)
                writeValueLabels(item);
            writeMissingValues(missingCodesOf(item));
        });
    }

    void writeConstraints(const Column &column)
    {
        const Item &item = *column.item;
        const bool hasMaximumLength
            = kindOf(item) == ValueKind::Text && item.length > 0 && dateFormOf(item).calendar == Calendar::None;
        const std::optional<Range> range
            = dateFormOf(item).calendar == Calendar::None ? onlyRangeOf(item) : std::nullopt;
        if (!column.isId && !hasMaximumLength && !range)
            return;
        object("constraints", [&] {
            if (column.isId)
                boolean("required", true);
            if (hasMaximumLength)
                integer("maxLength", item.length);
            if (range) {
                writeBound("minimum", item, range->from);
                writeBound("maximum", item, range->to);
            }
        });
    }
    void writeBound(const char *key, const Item &item, const QString &code)
    {
        const DecimalNumber bound = decimalNumberOf(code);
        if (bound.isKept && (bound.isWhole || kindOf(item) == ValueKind::Number))
            number(key, bound.spelling);
    }

    void writeCategories(const Categories &categories)
    {
        array("categories", [&] {
            for (const Category &category : categories.all)
                object([&] { writeCategory(category); });
        });
        if (categories.areOrdered())
            boolean("categoriesOrdered", true);
    }
    void writeCategory(const Category &category)
    {
        if (category.number.spelling.isEmpty())
            text("value", category.text);
        else
            number("value", category.number.spelling);
        optionalText("label", category.value->labels.in(language));
    }

    void writeValueLabels(const Item &item)
    {
        array("valueLabels", [&] {
            for (const ValueSet &set : item.valueSets) {
                for (const Value &value : set.values)
                    writeValueLabel(item, value);
            }
        });
    }
    void writeValueLabel(const Item &item, const Value &value)
    {
        for (const Range &range : value.ranges) {
            if (isMissing(item, value, range))
                continue;
            object([&] {
                if (isSingle(range)) {
                    text("value", cellOf(item, range.from));
                } else {
                    text("minimum", cellOf(item, range.from));
                    text("maximum", cellOf(item, range.to));
                }
                optionalText("label", value.labels.in(language));
            });
        }
    }

    // The empty cell is missing by default, and remains so in addition to the codes.
    void writeMissingValues(const QVector<MissingCode> &codes)
    {
        if (codes.isEmpty())
            return;
        const auto isBlank = [](const MissingCode &missing) { return missing.code.isEmpty(); };
        const QVector<MissingCode>::const_iterator blank = std::find_if(codes.begin(), codes.end(), isBlank);
        array("missingValues", [&] {
            writeMissingValue(blank == codes.end() ? MissingCode() : *blank);
            for (const MissingCode &missing : codes) {
                if (!isBlank(missing))
                    writeMissingValue(missing);
            }
        });
    }
    void writeMissingValue(const MissingCode &missing)
    {
        const QString label = missing.value ? missing.value->labels.in(language) : QString();
        const bool isNamed = missing.value && label.isEmpty();
        object([&] {
            text("value", missing.code);
            text("label", isNamed ? describeSpecial(missing.value->special) : label);
        });
    }

    const Layout &layout;
    const QString language;
    const QVector<Table> tables;
};

} // namespace

bool writeFrictionless(const Layout &layout, QIODevice &device, const FrictionlessOptions &options)
{
    return writeJsonDocument(device, options.style,
                             [&](auto &json) { PackageWriter(json, layout, options.language).write(options.title); });
}

} // namespace vanlayout
