#include "cspro/GroupValue_p.h"

#include "util/EmptyText_p.h"

#include <algorithm>

namespace cspro
{

namespace
{

// The max number of character comparisons in one search. All searches of a list together take a bounded time, which
// leaves each search of a list of 3,000 names of 40 characters complete.
qint64 maxCostIn(const QStringList &groups)
{
    constexpr qint64 minCost = 100'000;
    constexpr qint64 maxCostOfAll = 4'000'000'000;
    return std::max(minCost, maxCostOfAll / std::max<qint64>(groups.size(), 1));
}

// The max number of character comparisons of a search in one entry, plus the number of comparisons that take as long as
// the call.
qint64 costOfSearch(const QString &entry, const QString &text)
{
    constexpr qint64 costOfCall = 20;
    const qint64 places = std::max(qint64(entry.size()) - text.size() + 1, qint64(0));
    return costOfCall + places * text.size();
}

} // namespace

// This is a plain loop. Preparing a search structure takes 3 times as long as all searches in a list of 17 groups, and
// 11 times as long over the dictionaries of real surveys. It would be faster from 70 groups on.
QString groupValue(const QStringList &groups, int index, const QString &text)
{
    const bool isGroup = index >= 0 && index < groups.size() && groups.at(index) == text;
    const qint64 maxCost = maxCostIn(groups);
    qint64 cost = 0;
    for (const QString &entry : groups) {
        if (entry.contains(text))
            return entry;
        cost += costOfSearch(entry, text);
        if (isGroup && cost > maxCost)
            return groups.at(index);
    }
    return emptyText();
}

} // namespace cspro
