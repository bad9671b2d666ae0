#include "compare/ConcordRound_p.h"

#include <algorithm>

namespace vanlayout
{

ConcordRound::ConcordRound(const Layout &layoutOfRound)
    : ofRound(layoutOfRound)
{
    for (int depth = 0; depth < ofRound.levels.size(); ++depth) {
        const Level &level = ofRound.levels.at(depth);
        append(level, nullptr, depth, level.ids);
        for (const Record &record : level.records)
            append(level, &record, depth, record.items);
    }
}

bool ConcordRound::isDictionary() const
{
    return !holdsData(ofRound.format);
}

void ConcordRound::append(const Level &level, const Record *record, int depth, const QVector<Item> &items)
{
    int parent = RoundItem::none;
    for (const Item &item : items) {
        if (!item.isSubitem)
            parent = size();
        itemList.append({ &item, &level, record, depth, containers, item.isSubitem ? parent : RoundItem::none });
    }
    ++containers;
}

const ValueSet *codedSetOf(const Item &item)
{
    const auto hasCode = [](const ValueSet &set) {
        return std::any_of(set.values.begin(), set.values.end(),
                           [](const Value &value) { return !value.ranges.isEmpty(); });
    };
    const int set = int(std::find_if(item.valueSets.begin(), item.valueSets.end(), hasCode) - item.valueSets.begin());
    return set < item.valueSets.size() ? &item.valueSets.at(set) : nullptr;
}

} // namespace vanlayout
