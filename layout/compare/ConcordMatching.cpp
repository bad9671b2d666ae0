#include "compare/ConcordMatching_p.h"

#include "compare/DiffPairing_p.h"

namespace vanlayout
{

ConcordMatching::ConcordMatching(const std::vector<ConcordRound> &allRounds)
    : rounds(allRounds)
{
}

QVector<int> ConcordMatching::match(const ConcordSides &sides) const
{
    const ConcordRound &round = rounds[size_t(sides.round)];
    Pairing pairing(int(sides.before.size()), round.size());
    for (int item = 0; item < round.size(); ++item) {
        if (sides.decided.at(item) != none)
            pairing.pair(sides.decided.at(item), item);
    }
    using Key = std::optional<QString>;
    const auto itemOf = [&](int variable) -> const RoundItem & {
        const RoundPlace &place = sides.before.at(variable);
        return rounds[size_t(place.round)].at(place.item);
    };
    const auto inRecord = [](const RoundItem &place) {
        return Key(place.recordName().toCaseFolded() + QLatin1Char('/') + place.item->name.toCaseFolded());
    };
    const auto anywhere = [](const RoundItem &place) { return Key(place.item->name.toCaseFolded()); };
    const auto arePermitted
        = [&](int variable, int item) { return !sides.isPermitted || sides.isPermitted(variable, item); };
    pairing.ifUniqueAnd(
        arePermitted, [&](int variable) { return inRecord(itemOf(variable)); },
        [&](int item) { return inRecord(round.at(item)); });
    pairing.ifUniqueAnd(
        arePermitted, [&](int variable) { return anywhere(itemOf(variable)); },
        [&](int item) { return anywhere(round.at(item)); });
    QVector<int> variables(round.size(), none);
    for (int item = 0; item < round.size(); ++item)
        variables[item] = pairing.partnerOfAfter(item);
    return variables;
}

} // namespace vanlayout
