#include "cspro/CSProImportBody_p.h"

#include "cspro/ValueSet_p.h"
#include "import/Constants.h"
#include "util/EmptyText_p.h"
#include "util/NumberCharacter_p.h"
#include "util/Numbers_p.h"

#include <algorithm>

namespace cspro
{

namespace
{

bool isNumeric(eVanVarType type)
{
    return type == vtInteger || type == vtReal;
}

eVanVarType typeOf(const TCSProItem &item)
{
    if (item.dataType == 1)
        return vtString;
    return item.decimals == 0 && item.length <= longestInteger ? vtInteger : vtReal;
}

QString decimalsOf(const TCSProItem &item)
{
    if (item.dataType == 1)
        return emptyText();
    // The number becomes the character with that code, not a digit: the source field then has 0 decimals.
    return item.decimals == 0 ? QStringLiteral("0") : QString(numberCharacter(item.decimals));
}

// This is fast if the sets share their texts, as those of one repeated item do.
bool haveSameRows(const TCSProValueSet &a, const TCSProValueSet &b)
{
    const auto isSameRow = [](const TValueSetItem *left, const TValueSetItem *right) {
        return left == right
            || (left && right && left->code == right->code && left->name == right->name
                && left->special == right->special);
    };
    const auto &left = a.values();
    const auto &right = b.values();
    return &a == &b || std::equal(left.cbegin(), left.cend(), right.cbegin(), right.cend(), isSameRow);
}

// Returns null if the item has several value sets, or none.
const TCSProValueSet *onlySetOf(const TCSProItem &item)
{
    return item.valueSets->size() == 1 ? item.getValueSet(0) : nullptr;
}

// The lowest and the highest code of an item. The highest is used only if hasRange is true.
struct Span {
    void include(double number)
    {
        lowest = std::min(lowest, number);
        highest = std::max(highest, number);
    }

    double lowest = 0;
    double highest = 0;
    bool hasRange = false;
};

// The first and the last code of a set, which is sorted. A set without a first or last value has no bounds.
Span spanOf(const TCSProValueSet *set)
{
    if (!set || set->values().isEmpty() || !set->values().first() || !set->values().last())
        return {};
    return { numbers::toDouble(set->values().first()->code), numbers::toDouble(set->values().last()->code), true };
}

// Runs work with each value that is a label. Values marked as missing or not applicable are not labels.
template <typename Work> void forEachLabelled(const TCSProItem &item, Work work)
{
    for (const TCSProValueSet *set : qAsConst(*item.valueSets)) {
        if (!set)
            continue;
        for (const TValueSetItem *value : set->values()) {
            if (value && !value->special)
                work(*value);
        }
    }
}

// Appends code, blank, label and tab. The code of an integer is written as a number.
void appendEntry(QString &text, const TValueSetItem &value, eVanVarType type, double number)
{
    if (type == vtInteger)
        numbers::appendText(text, number);
    else
        text += value.code;
    text += Vocabulary::Blank.front();
    text += value.name;
    text += Vocabulary::Tab.front();
}

} // namespace

ItemDescriber::ItemDescriber()
{
    constexpr int usualSize = 4096;
    labelsBuffer.reserve(usualSize); // without a reservation, emptying the buffer frees its memory
}

void ItemDescriber::describe(const TCSProItem &item, TGenericField &field)
{
    field.type = typeOf(item);
    field.decimals = decimalsOf(item);
    field.name = item.name;
    field.label = item.label;
    field.length = item.length;
    field.start = item.start;
    field.missingValue = item.missingValue;
    field.notApplicable = item.notApplicable;
    if (isNumeric(field.type)) {
        field.minimum = QStringLiteral("0");
        field.maximum = nines(item.length);
    }
    if (!item.hasValueSets()) {
        if (isNumeric(field.type) && item.decimals > 0)
            field.maximum = maximumWithoutValues(item);
        return;
    }
    const Labels &found = labelsOf(item, field.type);
    field.valueLabels = found.text;
    field.minimum = found.minimum;
    if (!found.maximum.isNull())
        field.maximum = found.maximum;
}

QString ItemDescriber::maximumWithoutValues(const TCSProItem &item)
{
    // With a decimal character the number of decimals has no effect.
    if (item.decimalChar)
        return nines(qint64(item.length) - 1);
    const qint64 wholeDigits = qint64(item.length) - item.decimals;
    return nines(wholeDigits == 0 ? 1 : wholeDigits);
}

const ItemDescriber::Labels &ItemDescriber::labelsOf(const TCSProItem &item, eVanVarType type)
{
    if (hasLabelsOf(item, type))
        return labels;
    labels = makeLabels(item, type); // if memory runs out, the former labels and their set stay
    labelsSet = onlySetOf(item);
    labelsType = type;
    return labels;
}

bool ItemDescriber::hasLabelsOf(const TCSProItem &item, eVanVarType type) const
{
    const TCSProValueSet *set = onlySetOf(item);
    return set && labelsSet && type == labelsType && haveSameRows(*set, *labelsSet);
}

// Every field with a value set has a minimum: "0" for a text.
ItemDescriber::Labels ItemDescriber::makeLabels(const TCSProItem &item, eVanVarType type)
{
    Span span = isNumeric(type) ? spanOf(item.getValueSet(0)) : Span();
    labelsBuffer.resize(0);
    forEachLabelled(item, [&](const TValueSetItem &value) {
        const double number = isNumeric(type) ? numbers::toDouble(value.code) : 0;
        if (isNumeric(type))
            span.include(number);
        appendEntry(labelsBuffer, value, type, number);
    });
    return { labelsBuffer, numbers::toText(span.lowest), span.hasRange ? numbers::toText(span.highest) : QString() };
}

} // namespace cspro
