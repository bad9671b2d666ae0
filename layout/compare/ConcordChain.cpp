#include "compare/ConcordChain_p.h"

#include <algorithm>

namespace vanlayout
{

ConcordChain::ConcordChain(const std::vector<ConcordRound> &allRounds, const ConcordDecisions &allDecisions)
    : rounds(allRounds)
    , decisions(allDecisions)
    , matching(allRounds)
    , variableOfGroup(size_t(allDecisions.groupCount()), ConcordMatching::none)
{
}

void ConcordChain::addAll()
{
    for (int round = 0; round < int(rounds.size()); ++round)
        add(round, matching.match(sidesOf(round)));
}

ConcordSides ConcordChain::sidesOf(int round) const
{
    ConcordSides sides;
    sides.round = round;
    sides.order = order.rows();
    sides.before.reserve(places.size());
    for (const QVector<RoundPlace> &items : places)
        sides.before.append(items.constLast());
    const int count = rounds[size_t(round)].size();
    sides.decided.fill(ConcordMatching::none, count);
    if (decisions.isEmpty())
        return sides;
    for (int item = 0; item < count; ++item) {
        const int group = decisions.groupOf({ round, item });
        if (group != ConcordDecisions::none)
            sides.decided[item] = variableOfGroup[size_t(group)];
    }
    sides.isPermitted = [this, round](int variable, int item) { return isPermitted(variable, { round, item }); };
    return sides;
}

bool ConcordChain::isPermitted(int variable, const RoundPlace &place) const
{
    const std::vector<int> &groups = groupsOf[size_t(variable)];
    const int group = decisions.groupOf(place);
    return group == ConcordDecisions::none
        || std::all_of(groups.begin(), groups.end(), [&](int other) { return decisions.canBeOne(group, other); });
}

void ConcordChain::add(int round, QVector<int> variables)
{
    const ConcordRound &added = rounds[size_t(round)];
    for (int item = 0; item < added.size(); ++item) {
        if (variables.at(item) == ConcordMatching::none) {
            variables[item] = addNear(added, variables, item);
            places.append(QVector<RoundPlace>());
            groupsOf.emplace_back();
        }
        const int variable = variables.at(item);
        places[variable].append({ round, item });
        const int group = decisions.groupOf({ round, item });
        if (group == ConcordDecisions::none)
            continue;
        variableOfGroup[size_t(group)] = variable;
        std::vector<int> &groups = groupsOf[size_t(variable)];
        if (std::find(groups.begin(), groups.end(), group) == groups.end())
            groups.push_back(group);
    }
}

int ConcordChain::addNear(const ConcordRound &round, const QVector<int> &variables, int item)
{
    const int container = round.at(item).container;
    if (item > 0 && round.at(item - 1).container == container)
        return order.addAfter(variables.at(item - 1));
    for (int next = item + 1; next < round.size() && round.at(next).container == container; ++next) {
        if (variables.at(next) != ConcordMatching::none)
            return order.addBefore(variables.at(next));
    }
    return order.addAfter(item > 0 ? variables.at(item - 1) : ConcordOrder::none);
}

} // namespace vanlayout
