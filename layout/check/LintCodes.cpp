#include "check/LintFindings_p.h"
#include "check/LintSets_p.h"
#include "write/Codes_p.h"
#include "write/Wording_p.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace vanlayout
{

namespace
{

/// A range of numbers of a value set, both ends included.
struct NumberRange {
    double from;
    double to;
    int value; ///< index of its value in the set
    const Range *range;
    bool isSpecial;
};

/// Checks the codes of a value set against each other: single codes through a hash table, ranges with a sweep.
class CodeCheck
{
public:
    CodeCheck(const ValueSet &checkedSet, const Item &item, const ElementAddress &setAddress, LintFindings &list)
        : set(checkedSet)
        , isNumeric(item.isNumeric())
        , address(setAddress)
        , findings(list)
    {
    }

    void check()
    {
        for (int index = 0; index < set.values.size(); ++index) {
            for (const Range &range : set.values.at(index).ranges)
                gather(range, index);
        }
        findOverlaps();
    }

private:
    void gather(const Range &range, int index)
    {
        const bool isSpecial = set.values.at(index).special != Special::None;
        const double from = isNumeric ? valueOf(range.from) : std::nan("");
        if (isSingle(range))
            findDuplicate(range, index, from);
        if (std::isnan(from))
            return;
        const double to = isSingle(range) ? from : valueOf(range.to);
        if (from <= to)
            numbers.push_back({ from, to, index, &range, isSpecial });
    }

    // A number has one key for all its spellings: `1`, `01` and `1.0` are the same code.
    void findDuplicate(const Range &range, int index, double number)
    {
        QString text = range.from;
        while (text.endsWith(QLatin1Char(' ')))
            text.chop(1);
        const bool isNew = std::isnan(number) ? texts.emplace(text, index).second : codes.emplace(number, index).second;
        if (isNew)
            return;
        const int first = std::isnan(number) ? texts.at(text) : codes.at(number);
        const QString code = text.isEmpty() ? QStringLiteral("of blanks") : inMessage(text);
        findings.add(LintRule::DuplicateCode, valueAddress(address, index),
                     first == index
                         ? QStringLiteral("the value has the code %1 more than once; remove one of them").arg(code)
                         : QStringLiteral("the code %1 is also in value %2 of the set%3; remove one of them")
                               .arg(code, QString::number(first + 1), labelOf(first)));
    }

    QString labelOf(int index) const
    {
        const QString label = inMessage(set.values.at(index).labels.primary());
        return label.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(label);
    }

    // A special value within a range is usual: it is the code that means missing. A range is reported once: it may be
    // the heading of many codes.
    void findOverlaps()
    {
        std::stable_sort(numbers.begin(), numbers.end(),
                         [](const NumberRange &left, const NumberRange &right) { return left.from < right.from; });
        const NumberRange *longest = nullptr;
        const NumberRange *reported = nullptr;
        for (const NumberRange &each : numbers) {
            if (each.isSpecial)
                continue;
            const bool areSingle = longest && isSingle(*each.range) && isSingle(*longest->range);
            if (longest && longest != reported && each.from <= longest->to && !areSingle) {
                report(each, *longest);
                reported = longest;
            }
            if (!longest || each.to > longest->to)
                longest = &each;
        }
    }

    void report(const NumberRange &one, const NumberRange &other)
    {
        const NumberRange &later = one.value >= other.value ? one : other;
        const NumberRange &earlier = one.value >= other.value ? other : one;
        const QString first = inMessage(describeRanges({ *earlier.range }));
        const QString second = inMessage(describeRanges({ *later.range }));
        findings.add(LintRule::OverlappingCodes, valueAddress(address, later.value),
                     later.value == earlier.value
                         ? QStringLiteral("%1 overlaps %2 of the same value; change one of them").arg(second, first)
                         : QStringLiteral("%1 overlaps %2 of value %3 of the set%4; change one of them")
                               .arg(second, first, QString::number(earlier.value + 1), labelOf(earlier.value)));
    }

    const ValueSet &set;
    bool isNumeric;
    ElementAddress address;
    LintFindings &findings;
    KeyedMap<double, int> codes; ///< index of the first value with a code
    KeyedMap<QString, int> texts;
    std::vector<NumberRange> numbers;
};

} // namespace

void lintCodes(const Layout &layout, LintFindings &findings)
{
    if (!findings.wants(LintRule::DuplicateCode) && !findings.wants(LintRule::OverlappingCodes))
        return;
    CheckedSets sets(layout);
    forEachValueSet(layout, [&](const ValueSet &set, const Item &item, const ElementAddress &address) {
        if (sets.isNew(set, item))
            CodeCheck(set, item, address, findings).check();
    });
}

} // namespace vanlayout
