#include "convert/DictionaryItems_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

constexpr int maxDigits = 15; // of a number in CSPro
constexpr int maxDecimals = 9;
constexpr int maxText = 999;             // characters of a text
constexpr int textOfUnknownLength = 255; // characters

// The characters that hold all numbers of a storage type, with their sign.
int widthOf(Storage storage)
{
    switch (storage) {
    case Storage::Int8:
        return 4; // NOLINT(readability-magic-numbers)
    case Storage::Int16:
        return 6; // NOLINT(readability-magic-numbers)
    case Storage::Int32:
        return 11; // NOLINT(readability-magic-numbers)
    case Storage::None:
    case Storage::Float:
    case Storage::Double:
    case Storage::String:
        break;
    }
    return maxDigits;
}

// Whether a code is a number, and not a missing value such as `.a`, or `-inf`. CSPro knows both decimal marks.
bool isNumber(const QString &code)
{
    bool isWhole = false;
    QString(code).replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&isWhole);
    return isWhole && !code.contains(QLatin1String("inf"), Qt::CaseInsensitive)
        && !code.contains(QLatin1String("nan"), Qt::CaseInsensitive);
}

// Whether a number of CSPro can be this code.
bool isCode(const QString &code)
{
    return isNumber(code) && code.size() <= maxDigits && !code.contains(QLatin1Char('e'), Qt::CaseInsensitive);
}

template <typename Visit> void forEachCode(const Item &variable, Visit visit)
{
    const auto visitBoth = [&](const Range &range) {
        visit(range.from);
        if (!range.to.isEmpty())
            visit(range.to);
    };
    for (const ValueSet &set : variable.valueSets) {
        for (const Value &value : set.values)
            std::for_each(value.ranges.begin(), value.ranges.end(), visitBoth);
    }
    std::for_each(variable.missing.begin(), variable.missing.end(), visitBoth);
}

/// The characters that all codes of a number need before and after the decimal mark.
struct Digits {
    int whole = 1; ///< with the sign
    int decimals = 0;
};

Digits digitsOfCodes(const Item &variable)
{
    Digits digits;
    forEachCode(variable, [&](const QString &code) {
        if (!isCode(code))
            return;
        const int mark = code.indexOf(QLatin1Char('.'));
        digits.whole = std::max(digits.whole, mark < 0 ? int(code.size()) : mark);
        digits.decimals = std::max(digits.decimals, mark < 0 ? 0 : int(code.size()) - mark - 1);
    });
    return digits;
}

bool meansMissing(const Value &value)
{
    return value.special == Special::Missing;
}

QString keyOf(const Range &range)
{
    return range.from + QChar(0) + range.to;
}

} // namespace

Item DictionaryItems::make(const Item &variable, const QString &name, Use use)
{
    Item item = copyOf(variable);
    item.name = name;
    if (item.name != variable.name)
        lose(variable, QStringLiteral("the name, which is now %1").arg(item.name));
    if (columns == Columns::Kept)
        keepWidth(item, variable);
    else if (variable.isNumeric())
        setWidthOfNumber(item, variable);
    else
        setWidthOfText(item, variable);
    if (columns == Columns::Made && use == Use::Id && item.decimals > 0)
        removeDecimals(item, variable);
    addValueSets(item, variable);
    loseProperties(variable);
    return item;
}

// The members of an item of a dictionary; those of statistical files are lost.
Item DictionaryItems::copyOf(const Item &variable) const
{
    Item item;
    if (columns == Columns::Kept) {
        item = variable;
        item.valueSets.clear();
        item.missing.clear();
        item.format.clear();
        item.storage = Storage::None;
        item.measure = Measure::None;
        item.alignment = Alignment::None;
        item.displayWidth = 0;
        return item;
    }
    item.labels = variable.labels;
    item.note = variable.note;
    item.type = variable.type;
    return item;
}

void DictionaryItems::setWidthOfText(Item &item, const Item &variable)
{
    int longest = variable.length > 0 ? variable.length : textOfUnknownLength;
    forEachCode(variable, [&](const QString &code) { longest = std::max(longest, int(code.size())); });
    item.length = std::min(longest, maxText);
    if (variable.length == 0 || variable.length > maxText)
        lose(variable, QStringLiteral("the length of the text, which is now %1 characters").arg(item.length));
}

void DictionaryItems::setWidthOfNumber(Item &item, const Item &variable)
{
    const Digits codes = digitsOfCodes(variable);
    const int stated = variable.length > 0 ? variable.length : widthOf(variable.storage);
    const int roomForDecimals = std::max(0, maxDigits - 1 - codes.whole);
    item.decimals = std::min({ std::max(variable.decimals, codes.decimals), maxDecimals, roomForDecimals });
    item.decimalMark = item.decimals > 0;
    const int needed = codes.whole + (item.decimalMark ? item.decimals + 1 : 0);
    const int width = std::max(stated, needed);
    item.length = std::min(width, maxDigits);
    if (item.length < width || item.decimals != variable.decimals)
        lose(variable,
             QStringLiteral("the width %1.%2, which is now %3.%4")
                 .arg(stated)
                 .arg(variable.decimals)
                 .arg(item.length)
                 .arg(item.decimals));
    const bool isFraction = variable.storage == Storage::Float || variable.storage == Storage::Double;
    if (isFraction && variable.decimals == 0 && variable.format.contains(QLatin1Char('g')))
        general.add(QStringLiteral("decimals, which the format does not state,"), variable.name);
}

void DictionaryItems::keepWidth(Item &item, const Item &variable)
{
    if (variable.isNumeric() || variable.isAlpha())
        item.length = std::min(variable.length, variable.isNumeric() ? maxDigits : maxText);
    item.decimals = std::min({ variable.decimals, maxDecimals, std::max(0, item.length - (item.decimalMark ? 1 : 0)) });
    if (item.length != variable.length || item.decimals != variable.decimals)
        lose(variable,
             QStringLiteral("the width %1.%2, which is now %3.%4")
                 .arg(variable.length)
                 .arg(variable.decimals)
                 .arg(item.length)
                 .arg(item.decimals));
}

void DictionaryItems::removeDecimals(Item &id, const Item &variable)
{
    lose(variable, QStringLiteral("the decimals, which an id item cannot have"));
    id.decimals = 0;
    id.decimalMark = false;
}

void DictionaryItems::addValueSets(Item &item, const Item &variable)
{
    missingCodes.clear();
    for (const Range &range : variable.missing)
        missingCodes.insert(keyOf(range));
    for (const ValueSet &set : variable.valueSets)
        addValueSet(item, variable, set);
    if (variable.valueSets.isEmpty() && !variable.missing.isEmpty())
        addValueSet(item, variable, ValueSet());
}

void DictionaryItems::addValueSet(Item &item, const Item &variable, const ValueSet &source)
{
    ValueSet set;
    set.note = source.note;
    set.aliases = source.aliases;
    set.labels = source.labels.isEmpty() ? item.labels : source.labels;
    hasMissing = std::any_of(source.values.begin(), source.values.end(), meansMissing);
    for (const Value &value : source.values)
        addValue(set, variable, value);
    addMissing(set, variable);
    if (hasNamedLabels && !source.name.isEmpty())
        general.add(QStringLiteral("name \"%1\" of the value labels").arg(source.name), variable.name);
    if (set.values.isEmpty() && columns == Columns::Made)
        return;
    const QString made = item.name + QStringLiteral("_VS%1").arg(item.valueSets.size() + 1);
    set.name = names.give(columns == Columns::Kept ? source.name : made, made);
    if (columns == Columns::Kept && !source.name.isEmpty() && set.name != source.name)
        lose(variable, QStringLiteral("the name %1 of the value set, which is now %2").arg(source.name, set.name));
    item.valueSets.append(set);
}

void DictionaryItems::addMissing(ValueSet &set, const Item &variable)
{
    KeyedSet<QString> known;
    for (const Value &value : qAsConst(set.values)) {
        for (const Range &range : value.ranges)
            known.insert(keyOf(range));
    }
    for (const Range &range : variable.missing) {
        if (known.insert(keyOf(range)).second)
            addValue(set, variable, Value{ {}, {}, Special::None, {}, {}, { range } });
    }
}

void DictionaryItems::addValue(ValueSet &set, const Item &variable, const Value &value)
{
    Value added = value;
    const auto isLost = [&](const Range &range) {
        return variable.isNumeric() && (!isCode(range.from) || (!range.to.isEmpty() && !isCode(range.to)));
    };
    for (const Range &range : value.ranges) {
        if (!isLost(range) || value.special != Special::None)
            continue;
        const QString text = range.to.isEmpty() ? range.from : range.from + QStringLiteral(" to ") + range.to;
        lose(variable, QStringLiteral("the value %1, which no number of %2 characters is").arg(text).arg(maxDigits));
        added.ranges.removeAll(range);
    }
    if (added.ranges.isEmpty() && !value.ranges.isEmpty())
        return;
    const Range code = value.ranges.value(0);
    if (value.special == Special::None && missingCodes.count(keyOf(code)) > 0)
        markMissing(added, variable, code);
    set.values.append(added);
}

// A value set of a number can have one value that means "missing", with one code.
void DictionaryItems::markMissing(Value &value, const Item &variable, const Range &code)
{
    if (!variable.isNumeric()) {
        general.add(QStringLiteral("user-missing texts"), variable.name);
        return;
    }
    if (hasMissing || !code.to.isEmpty()) {
        general.add(QStringLiteral("further user-missing values"), variable.name);
        return;
    }
    hasMissing = true;
    value.special = Special::Missing;
}

void DictionaryItems::lose(const Item &variable, const QString &what)
{
    losses.append({ QStringLiteral("//") + variable.name, what });
}

void DictionaryItems::loseProperties(const Item &variable)
{
    if (!variable.format.isEmpty())
        general.add(QStringLiteral("format"), variable.name);
    if (variable.measure != Measure::None)
        general.add(QStringLiteral("level of measurement"), variable.name);
    if (variable.alignment != Alignment::None)
        general.add(QStringLiteral("alignment"), variable.name);
    if (variable.displayWidth != 0)
        general.add(QStringLiteral("display width"), variable.name);
    const bool isUsual = variable.storage == Storage::None || variable.storage == Storage::String
        || variable.storage == Storage::Double;
    if (!isUsual)
        general.add(QStringLiteral("storage type %1").arg(wordOf(variable.storage)), variable.name);
}

} // namespace vanlayout
