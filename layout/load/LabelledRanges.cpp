#include "LabelledRanges_p.h"

namespace vanlayout
{

namespace
{

// Whether they meet at one number that only one of them holds.
bool isOnlyTouched(const CodeRange &range, const CodeRange &other)
{
    const bool isBelow = other.high.value == range.low.value && !(other.high.isIncluded && range.low.isIncluded);
    const bool isAbove = other.low.value == range.high.value && !(other.low.isIncluded && range.high.isIncluded);
    return isBelow || isAbove;
}

// Appends what is before a range that is taken, and leaves what is after it.
void cut(CodeRange *range, const CodeRange &other, QVector<CodeRange> *left)
{
    if (range->isEmpty() || other.high.value < range->low.value || isOnlyTouched(*range, other))
        return;
    RangeEnd end = other.low;
    end.isIncluded = !end.isIncluded;
    const CodeRange before = { range->low, end };
    if (!before.isEmpty())
        left->append(before);
    range->low = other.high;
    range->low.isIncluded = !other.high.isIncluded;
}

} // namespace

QVector<CodeRange> LabelledRanges::add(CodeRange range)
{
    QVector<CodeRange> left;
    std::multimap<double, CodeRange>::const_iterator next = taken.lower_bound(range.low.value);
    if (next != taken.begin())
        --next;
    for (; next != taken.end() && next->first <= range.high.value; ++next)
        cut(&range, next->second, &left);
    if (!range.isEmpty())
        left.append(range);
    for (const CodeRange &part : qAsConst(left))
        taken.emplace(part.low.value, part);
    return left;
}

} // namespace vanlayout
