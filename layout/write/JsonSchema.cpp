#include "JsonSchema.h"

#include "util/KeyedHash_p.h"
#include "write/Codes_p.h"
#include "write/Columns_p.h"
#include "write/Dates_p.h"
#include "write/JsonMembers_p.h"
#include "write/Tables_p.h"
#include "write/Wording_p.h"

namespace vanlayout
{

namespace
{

constexpr int longestSafeNumber = 15; // max characters of a number that every program reads exactly

// The type of a column regardless of its codes.
struct BaseType {
    const char *name = nullptr; // type of JSON; null for any
    bool isLong = false;        // whether a number may also be a text of digits
    Calendar calendar = Calendar::None;
};

bool isLongNumber(const Item &item)
{
    return item.storage == Storage::None && item.length > longestSafeNumber;
}

BaseType baseOf(const Item &item)
{
    const Calendar calendar = item.storage == Storage::None ? Calendar::None : dateFormOf(item).calendar;
    if (calendar != Calendar::None)
        return { "string", false, calendar };
    const bool isLong = isLongNumber(item);
    switch (kindOf(item)) {
    case ValueKind::Whole:
        return { "integer", isLong, Calendar::None };
    case ValueKind::Number:
        return { "number", isLong, Calendar::None };
    case ValueKind::Text:
        return { "string", false, Calendar::None };
    case ValueKind::Binary:
        break;
    }
    return {};
}

enum class Validity { Valid, Missing };

// One of the values that a column may hold.
struct Alternative {
    enum class Form { Number, Text, Null, Range };
    Form form = Form::Text;
    QByteArray number;    // a number, or the minimum of a range; empty if there is none
    QByteArray maximum;   // maximum of a range; empty if there is none
    QString text;         // a text, or the ends of a range that cannot be stated as numbers
    bool hasText = false; // whether a value in the range may be a number as a text
    const Value *value = nullptr;
    Validity validity = Validity::Valid;
};

// The values of the value sets of an item and its user-missing values, each once.
class Alternatives
{
public:
    explicit Alternatives(const Item &valuedItem)
        : item(valuedItem)
        , kind(kindOf(valuedItem))
    {
        if (kind == ValueKind::Binary)
            return;
        for (const ValueSet &set : item.valueSets) {
            for (const Value &value : set.values) {
                for (const Range &range : value.ranges)
                    add(range, &value, isMissing(item, value, range) ? Validity::Missing : Validity::Valid);
            }
        }
        for (const Range &range : item.missing)
            add(range, nullptr, Validity::Missing);
    }

    QVector<Alternative> all;
    bool hasRange = false;
    bool hasNull = false;
    bool hasNumber = false;
    bool hasText = false;
    bool hasValid = false; // whether a value is not missing

private:
    void add(const Range &range, const Value *value, Validity validity)
    {
        if (isSingle(range))
            addCode(cellOf(item, range.from), value, validity);
        else
            addRange(range, value, validity);
    }
    void addCode(const QString &code, const Value *value, Validity validity)
    {
        Alternative entry;
        entry.value = value;
        entry.validity = validity;
        if (code.isEmpty() && (item.isNumeric() || validity == Validity::Missing)) {
            entry.form = Alternative::Form::Null;
            hasNull = true;
        } else if (item.isNumeric()) {
            if (!setNumber(entry, code))
                return;
        } else {
            entry.text = code;
            hasText = true;
        }
        if (!isNew(entry))
            return;
        all.append(entry);
        hasValid = hasValid || validity == Validity::Valid;
    }
    // False for a code that is not a value of the item's type.
    bool setNumber(Alternative &entry, const QString &code)
    {
        const DecimalNumber number = decimalNumberOf(code);
        const bool isExtended = number.spelling.isEmpty() && entry.validity == Validity::Missing;
        if ((number.spelling.isEmpty() || (kind == ValueKind::Whole && !number.isWhole)) && !isExtended)
            return false;
        if (number.isKept) {
            entry.form = Alternative::Form::Number;
            entry.number = number.spelling;
            hasNumber = true;
        } else {
            const bool isAsWritten = isExtended || number.spelling.contains('e');
            entry.text = isAsWritten ? code : QString::fromLatin1(number.spelling);
            hasText = true;
        }
        return true;
    }
    bool isNew(const Alternative &entry)
    {
        const QString mark = QString::number(int(entry.form)) + entry.text + QLatin1String(entry.number);
        return known.insert(mark).second;
    }
    void addRange(const Range &range, const Value *value, Validity validity)
    {
        Alternative entry;
        entry.form = Alternative::Form::Range;
        entry.value = value;
        entry.validity = validity;
        const bool endsBeforeBegin = valueOf(range.from) > valueOf(range.to); // no value would be within such bounds
        if (item.isNumeric() && !endsBeforeBegin) {
            entry.number = boundOf(range.from, entry);
            entry.maximum = boundOf(range.to, entry);
        } else {
            entry.text = describeRanges({ range });
            entry.hasText = item.isNumeric() && isLongNumber(item);
        }
        hasRange = true;
        hasValid = hasValid || validity == Validity::Valid;
        all.append(entry);
    }
    // A range contains texts if it contains numbers that a double rounds, even if a double represents both bounds.
    QByteArray boundOf(const QString &code, Alternative &entry) const
    {
        const DecimalNumber number = decimalNumberOf(code);
        const bool isWide = isLongNumber(item)
            && (kind == ValueKind::Number || number.spelling.size() > longestSafeNumber
                || number.spelling.contains('e'));
        entry.hasText = entry.hasText || (!number.spelling.isEmpty() && (isWide || !number.isKept));
        return number.isKept ? number.spelling : QByteArray();
    }

    const Item &item;
    const ValueKind kind;
    KeyedSet<QString> known;
};

template <typename Writer> class SchemaWriter : private JsonMembers<Writer>
{
    using Base = JsonMembers<Writer>;
    using Base::array;
    using Base::boolean;
    using Base::integer;
    using Base::json;
    using Base::number;
    using Base::object;
    using Base::optionalText;
    using Base::string;
    using Base::text;
    using Base::texts;
    using Base::word;

public:
    SchemaWriter(Writer &jsonWriter, const Layout &source, const QString &shownLanguage)
        : Base(jsonWriter)
        , layout(source)
        , language(shownLanguage)
        , tables(tablesOf(source))
    {
    }

    void write(const QString &title)
    {
        object([&] {
            word("$schema", "https://json-schema.org/draft/2020-12/schema");
            optionalText("title", titleOf(layout, title, language));
            optionalText("description", layout.note);
            if (isTableOfRows())
                writeReference(tables.constFirst());
            else
                writeCase();
            object("$defs", [&] {
                for (const Table &table : tables)
                    writeRecord(table);
            });
        });
    }

private:
    bool isTableOfRows() const { return tables.size() == 1 && idNamesOf(layout, tables.constFirst().level).isEmpty(); }

    void writeReference(const Table &table) { text("$ref", QLatin1String("#/$defs/") + table.name); }
    void writeCase()
    {
        word("type", "object");
        object("properties", [&] {
            for (const Table &table : tables)
                writeRecordsOfCase(table);
        });
        QStringList required;
        for (const Table &table : tables) {
            if (table.level == 0 && table.record->required)
                required.append(table.name);
        }
        if (!required.isEmpty())
            texts("required", required);
        boolean("additionalProperties", false);
    }
    void writeRecordsOfCase(const Table &table)
    {
        object(table.name.toLatin1().constData(), [&] {
            const bool isBounded = table.level == 0 && table.record->maximum > 0;
            if (isBounded && table.record->maximum == 1) {
                writeReference(table);
                return;
            }
            word("type", "array");
            object("items", [&] { writeReference(table); });
            if (table.level == 0 && table.record->required)
                integer("minItems", 1);
            if (isBounded)
                integer("maxItems", table.record->maximum);
        });
    }

    void writeRecord(const Table &table)
    {
        object(table.name.toLatin1().constData(), [&] {
            optionalText("title", table.record->labels.in(language));
            optionalText("description", table.record->note);
            word("type", "object");
            object("properties", [&] {
                const QVector<Column> columns = columnsOf(layout, table.level, *table.record);
                for (const Column &column : columns)
                    writeColumn(column);
            });
            const QStringList ids = idNamesOf(layout, table.level);
            if (!ids.isEmpty())
                texts("required", ids);
            boolean("additionalProperties", false);
        });
    }

    void writeColumn(const Column &column)
    {
        const Item &item = *column.item;
        const BaseType base = baseOf(item);
        const Alternatives values(item);
        string(column.name); // the key
        object([&] {
            optionalText("title", labelsOf(column).in(language));
            optionalText("description", item.note);
            writeTypes(base, values);
            writeFormOfTexts(item, base);
            if (!values.all.isEmpty())
                writeAlternatives(item, base, values);
        });
    }

    void writeTypes(const BaseType &base, const Alternatives &values)
    {
        if (!base.name)
            return;
        const bool isText = qstrcmp(base.name, "string") == 0;
        QStringList types = { QLatin1String(base.name) };
        if (!isText && (values.hasText || base.isLong))
            types.append(QStringLiteral("string"));
        if (isText && values.hasNumber)
            types.append(QStringLiteral("number"));
        if (values.hasNull)
            types.append(QStringLiteral("null"));
        if (types.size() == 1)
            text("type", types.constFirst());
        else
            texts("type", types);
    }
    void writeFormOfTexts(const Item &item, const BaseType &base)
    {
        if (base.calendar == Calendar::Date)
            word("format", "date");
        else if (base.calendar == Calendar::DateTime)
            word("pattern", "^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}(\\.[0-9]+)?$");
        else if (base.isLong)
            word("pattern", kindOf(item) == ValueKind::Whole ? "^-?[0-9]+$" : "^-?[0-9]+(\\.[0-9]+)?$");
        else if (kindOf(item) == ValueKind::Text && item.length > 0)
            integer("maxLength", item.length);
    }

    void writeAlternatives(const Item &item, const BaseType &base, const Alternatives &values)
    {
        const bool isOpen = !isClosed(item) || !values.hasValid;
        array(isOpen || values.hasRange ? "anyOf" : "oneOf", [&] {
            for (const Alternative &alternative : values.all)
                object([&] { writeAlternative(base, alternative); });
            if (isOpen)
                object([&] { writeAnyValue(base); });
        });
    }
    // Allows all values of the type, including long numbers as texts.
    void writeAnyValue(const BaseType &base)
    {
        if (base.isLong)
            texts("type", { QLatin1String(base.name), QStringLiteral("string") });
        else
            word("type", base.name);
    }
    void writeAlternative(const BaseType &base, const Alternative &alternative)
    {
        switch (alternative.form) {
        case Alternative::Form::Number:
            number("const", alternative.number);
            break;
        case Alternative::Form::Text:
            text("const", alternative.text);
            break;
        case Alternative::Form::Null:
            json.Key("const");
            json.Null();
            break;
        case Alternative::Form::Range:
            writeRange(base, alternative);
        }
        if (alternative.value)
            optionalText("title", alternative.value->labels.in(language));
        optionalText("description", descriptionOf(alternative));
    }
    void writeRange(const BaseType &base, const Alternative &range)
    {
        const bool isNumber = range.text.isEmpty();
        if (range.hasText)
            texts("type", { QLatin1String(base.name), QStringLiteral("string") });
        else
            word("type", isNumber && base.calendar != Calendar::None ? "number" : base.name);
        if (!range.number.isEmpty())
            number("minimum", range.number);
        if (!range.maximum.isEmpty())
            number("maximum", range.maximum);
    }
    static QString descriptionOf(const Alternative &alternative)
    {
        QStringList parts;
        const Special special = alternative.value ? alternative.value->special : Special::None;
        if (special != Special::None || alternative.validity == Validity::Missing)
            parts.append(special == Special::None ? QStringLiteral("missing") : describeSpecial(special));
        if (alternative.form == Alternative::Form::Range && !alternative.text.isEmpty())
            parts.append(alternative.text);
        if (alternative.value && !alternative.value->note.isEmpty())
            parts.append(alternative.value->note);
        return parts.join(QLatin1String("; "));
    }

    const Layout &layout;
    const QString language;
    const QVector<Table> tables;
};

} // namespace

bool writeJsonSchema(const Layout &layout, QIODevice &device, const JsonSchemaOptions &options)
{
    return writeJsonDocument(device, options.style,
                             [&](auto &json) { SchemaWriter(json, layout, options.language).write(options.title); });
}

} // namespace vanlayout
