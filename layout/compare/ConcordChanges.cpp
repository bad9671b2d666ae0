#include "compare/ConcordChanges_p.h"

namespace vanlayout
{

namespace
{

bool isMoved(const RoundItem &before, const RoundItem &after)
{
    return before.depth != after.depth || !before.record != !after.record
        || before.recordName().compare(after.recordName(), Qt::CaseInsensitive) != 0;
}

} // namespace

QVector<ConcordChange> ConcordChanges::changesOf(const RoundItem &before, const RoundItem &after) const
{
    const bool areDictionaries = earlier.isDictionary() && later.isDictionary();
    const bool areOfOneKind = earlier.isDictionary() == later.isDictionary();
    const Item &one = *before.item;
    const Item &other = *after.item;
    QVector<ConcordChange> changes;
    const auto addIf = [&](bool isChanged, ConcordChange change) {
        if (isChanged)
            changes.append(change);
    };
    addIf(one.name != other.name, ConcordChange::Renamed);
    addIf(areDictionaries && isMoved(before, after), ConcordChange::Moved);
    addIf(one.type != other.type, ConcordChange::Type);
    addIf(areOfOneKind && one.length != other.length, ConcordChange::Width);
    addIf(areDictionaries && one.decimals != other.decimals, ConcordChange::Decimals);
    addIf(one.labels.in(language).simplified() != other.labels.in(language).simplified(), ConcordChange::Label);
    return changes;
}

} // namespace vanlayout
