#include "compare/ConcordDecisions_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

bool isAt(const RoundItem &item, const ConcordDecision::Place &place)
{
    const auto isSame = [](const QString &wanted, const QString &name) {
        return wanted.isEmpty() || wanted.compare(name, Qt::CaseInsensitive) == 0;
    };
    return isSame(place.level, item.level->name) && isSame(place.record, item.recordName());
}

QString describe(const ConcordDecision::Place &place)
{
    return place.record.isEmpty() ? place.item : place.record + QLatin1Char('/') + place.item;
}

} // namespace

ConcordDecisions::ConcordDecisions(const std::vector<ConcordRound> &allRounds,
                                   const QVector<ConcordDecision> &decisions)
    : rounds(allRounds)
{
    if (decisions.isEmpty())
        return;
    for (const ConcordRound &round : rounds) {
        itemsOfName.emplace_back();
        for (int item = 0; item < round.size(); ++item)
            itemsOfName.back()[round.at(item).item->name.toCaseFolded()].push_back(item);
    }
    std::vector<std::pair<int, int>> places;
    for (int i = 0; i < decisions.size(); ++i) {
        const int one = find(decisions.at(i).one, i);
        places.emplace_back(one, one == none ? none : find(decisions.at(i).other, i));
    }
    for (const bool isSame : { true, false }) {
        for (int i = 0; i < decisions.size(); ++i) {
            const auto [one, other] = places[size_t(i)];
            if (other == none || decisions.at(i).isSame != isSame)
                continue;
            if (isSame)
                join(rootOf(one), rootOf(other), i);
            else
                separate(rootOf(one), rootOf(other), i);
        }
    }
    makeCompact();
}

QVector<ConcordProblem> ConcordDecisions::problems() const
{
    QVector<ConcordProblem> list;
    for (const auto &[decision, text] : texts)
        list.append({ decision, text });
    return list;
}

// Returns the group of the item, or none if it is not found.
int ConcordDecisions::find(const ConcordDecision::Place &place, int decision)
{
    if (place.round < 0 || place.round >= int(rounds.size())) {
        addProblem(decision, QStringLiteral("there is no round %1").arg(qint64(place.round) + 1));
        return none;
    }
    const std::vector<int> found = itemsAt(place);
    if (found.size() == 1)
        return groupOfPlace({ place.round, found.front() });
    const QString text = found.empty() ? QStringLiteral("%1 has no item %2; correct the name")
                                       : QStringLiteral("%1 has several items %2; state the record or the level");
    addProblem(decision, text.arg(rounds[size_t(place.round)].layout().file, describe(place)));
    return none;
}

// Names are compared case-insensitively, but if one item has exactly the name, that is meant.
std::vector<int> ConcordDecisions::itemsAt(const ConcordDecision::Place &place) const
{
    const ConcordRound &round = rounds[size_t(place.round)];
    const auto named = itemsOfName[size_t(place.round)].find(place.item.toCaseFolded());
    std::vector<int> found;
    std::vector<int> exact;
    if (named == itemsOfName[size_t(place.round)].end())
        return found;
    for (const int item : named->second) {
        if (!isAt(round.at(item), place))
            continue;
        found.push_back(item);
        if (round.at(item).item->name == place.item)
            exact.push_back(item);
    }
    return exact.size() == 1 ? exact : found;
}

int ConcordDecisions::groupOfPlace(const Place &place)
{
    const auto [found, isNew] = groupOfItem.emplace(place, int(groups.size()));
    if (isNew) {
        parents.push_back(found->second);
        groups.push_back({ place.first });
    }
    return found->second;
}

int ConcordDecisions::rootOf(int group)
{
    while (parents[size_t(group)] != group) {
        parents[size_t(group)] = parents[size_t(parents[size_t(group)])];
        group = parents[size_t(group)];
    }
    return group;
}

void ConcordDecisions::join(int one, int other, int decision)
{
    if (one == other)
        return;
    const std::set<int> &ofOne = groups[size_t(one)];
    const std::set<int> &ofOther = groups[size_t(other)];
    const auto common = std::find_if(ofOne.begin(), ofOne.end(), [&](int round) { return ofOther.count(round) > 0; });
    if (common != ofOne.end()) {
        addProblem(
            decision,
            QStringLiteral("with the decisions before it, two items of %1 would be one variable; remove one of them")
                .arg(rounds[size_t(*common)].layout().file));
        return;
    }
    parents[size_t(other)] = one;
    groups[size_t(one)].insert(ofOther.begin(), ofOther.end());
}

void ConcordDecisions::separate(int one, int other, int decision)
{
    if (one == other)
        addProblem(decision, QStringLiteral("other decisions make the two items the same; remove one of them"));
    else
        separated.insert(std::minmax(one, other));
}

void ConcordDecisions::makeCompact()
{
    for (auto &[place, group] : groupOfItem)
        group = rootOf(group);
}

int ConcordDecisions::groupOf(const RoundPlace &place) const
{
    const auto found = groupOfItem.find({ place.round, place.item });
    return found != groupOfItem.end() ? found->second : none;
}

bool ConcordDecisions::canBeOne(int one, int other) const
{
    if (one == other)
        return true;
    const std::set<int> &ofOne = groups[size_t(one)];
    const std::set<int> &ofOther = groups[size_t(other)];
    return separated.count(std::minmax(one, other)) == 0
        && std::none_of(ofOne.begin(), ofOne.end(), [&](int round) { return ofOther.count(round) > 0; });
}

} // namespace vanlayout
