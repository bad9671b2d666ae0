#include "check/LintFindings_p.h"
#include "check/LintSets_p.h"
#include "write/Codes_p.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace vanlayout
{

namespace
{

/// The values that a storage type of Stata can hold, without its missing values.
struct StorageRange {
    Storage storage;
    double min;
    double max;
};

constexpr StorageRange storageRanges[] = {
    { Storage::Int8, -127, 100 },
    { Storage::Int16, -32767, 32740 },
    { Storage::Int32, -2147483647.0, 2147483620.0 },
};

// Null if the type can hold all numbers of a label.
const StorageRange *rangeOf(const Item &item)
{
    const auto *const row = std::find_if(std::begin(storageRanges), std::end(storageRanges),
                                         [&](const StorageRange &each) { return each.storage == item.storage; });
    return row != std::end(storageRanges) ? row : nullptr;
}

// Whether a code is outside the values of its variable. A missing value such as `.a` is not a number.
bool isOutside(const Item &item, const QString &code)
{
    if (item.isAlpha())
        return item.length > 0 && code.toUtf8().size() > item.length;
    const StorageRange *const range = rangeOf(item);
    const double value = valueOf(code);
    return range && !std::isnan(value) && (value < range->min || value > range->max);
}

QString capacityOf(const Item &item)
{
    if (item.isAlpha())
        return QStringLiteral("texts of %1 bytes").arg(item.length);
    const StorageRange &range = *rangeOf(item);
    return QStringLiteral("numbers from %1 to %2 (%3)")
        .arg(QString::number(range.min, 'f', 0), QString::number(range.max, 'f', 0), wordOf(item.storage));
}

void lintValueSet(const ValueSet &set, const Item &item, const ElementAddress &address, LintFindings &findings)
{
    for (int index = 0; index < set.values.size(); ++index) {
        for (const Range &range : set.values.at(index).ranges) {
            if (isOutside(item, range.from))
                findings.add(
                    LintRule::LabelOutOfRange, valueAddress(address, index),
                    QStringLiteral("the value %1 has a label, but the variable holds %2; correct the value, or "
                                   "store the variable in a larger type")
                        .arg(inMessage(range.from), capacityOf(item)));
        }
    }
}

void lintMissing(const LintItem &place, LintFindings &findings)
{
    const Item &item = place.item;
    KeyedSet<QString> labelled;
    for (const ValueSet &set : item.valueSets) {
        for (const Value &value : set.values) {
            for (const Range &range : value.ranges)
                labelled.insert(cellOf(item, range.from));
        }
    }
    for (const Range &range : item.missing) {
        if (isSingle(range)) {
            if (labelled.count(cellOf(item, range.from)) == 0)
                findings.add(LintRule::UnlabelledMissing, place.address,
                             QStringLiteral("the missing value %1 has no label; write one").arg(inMessage(range.from)));
        } else if (valueOf(range.from) > valueOf(range.to)) {
            findings.add(LintRule::ReversedRange, place.address,
                         QStringLiteral("the range %1 to %2 of missing values ends before it begins; exchange its ends")
                             .arg(inMessage(range.from), inMessage(range.to)));
        }
    }
}

} // namespace

void lintStatistical(const Layout &layout, LintFindings &findings)
{
    CheckedSets sets(layout);
    forEachItem(layout, [&](const LintItem &place) {
        if (!place.item.missing.isEmpty())
            lintMissing(place, findings);
        if (hasColumns(layout))
            return; // codes are compared with the length of the item
        ElementAddress address = place.address;
        for (address.valueSet = 0; address.valueSet < place.item.valueSets.size(); ++address.valueSet) {
            const ValueSet &set = place.item.valueSets.at(address.valueSet);
            if (sets.isNew(set, place.item))
                lintValueSet(set, place.item, address, findings);
        }
    });
}

} // namespace vanlayout
