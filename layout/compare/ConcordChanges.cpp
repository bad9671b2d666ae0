#include "compare/ConcordChanges_p.h"

namespace vanlayout
{

ConcordRecordNames::ConcordRecordNames(const std::vector<ConcordRound> &allRounds)
    : rounds(allRounds)
{
    names.reserve(rounds.size());
    for (const ConcordRound &round : rounds) {
        names.emplace_back();
        for (const RoundItem &item : round.items())
            names.back().insert(item.recordName().toCaseFolded());
    }
}

ConcordRecordNames::Key ConcordRecordNames::keyOf(const RoundPlace &before, const RoundPlace &after) const
{
    return { before.round, rounds[size_t(before.round)].at(before.item).container, after.round };
}

void ConcordRecordNames::add(const RoundPlace &before, const RoundPlace &after)
{
    const Key key = keyOf(before, after);
    ++counts[key];
    ++countsOfPairs[{ key, rounds[size_t(after.round)].at(after.item).container }];
}

bool ConcordRecordNames::hasRecord(int round, const QString &name) const
{
    return names[size_t(round)].count(name.toCaseFolded()) > 0;
}

bool ConcordRecordNames::isRenamed(const RoundPlace &before, const RoundPlace &after) const
{
    const RoundItem &one = rounds[size_t(before.round)].at(before.item);
    const RoundItem &other = rounds[size_t(after.round)].at(after.item);
    if (!one.record || !other.record || hasRecord(after.round, one.recordName())
        || hasRecord(before.round, other.recordName()))
        return false;
    const Key key = keyOf(before, after);
    return countsOfPairs.at({ key, other.container }) * 2 > counts.at(key);
}

bool ConcordChanges::isMoved(const RoundPlace &before, const RoundPlace &after) const
{
    const RoundItem &one = rounds[size_t(before.round)].at(before.item);
    const RoundItem &other = rounds[size_t(after.round)].at(after.item);
    if (one.depth != other.depth || !one.record != !other.record)
        return true;
    return one.recordName().compare(other.recordName(), Qt::CaseInsensitive) != 0 && !records.isRenamed(before, after);
}

QVector<ConcordChange> ConcordChanges::changesOf(const RoundPlace &before, const RoundPlace &after) const
{
    const ConcordRound &earlier = rounds[size_t(before.round)];
    const ConcordRound &later = rounds[size_t(after.round)];
    const bool areDictionaries = earlier.isDictionary() && later.isDictionary();
    const bool areOfOneKind = earlier.isDictionary() == later.isDictionary();
    const Item &one = *earlier.at(before.item).item;
    const Item &other = *later.at(after.item).item;
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
