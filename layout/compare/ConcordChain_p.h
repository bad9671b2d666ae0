#ifndef LAYOUT_COMPARE_CONCORDCHAIN_P_H
#define LAYOUT_COMPARE_CONCORDCHAIN_P_H

#include "compare/ConcordDecisions_p.h"
#include "compare/ConcordMatching_p.h"
#include "compare/ConcordOrder_p.h"

namespace vanlayout
{

/// The variables of all rounds: each round is matched with the latest items of the variables of the rounds before it,
/// so that a variable can be absent in a round.
class ConcordChain
{
public:
    ConcordChain(const std::vector<ConcordRound> &allRounds, const ConcordDecisions &allDecisions);

    void addAll();

    /// The number of variables.
    int count() const { return int(places.size()); }
    /// The items of a variable, in the order of rounds.
    const QVector<RoundPlace> &itemsOf(int variable) const { return places.at(variable); }
    /// The variables in the order of the first round; one that a later round adds follows the item that it follows
    /// there, and the first one of a record precedes the next one.
    QVector<int> inOrder() const { return order.rows(); }

private:
    ConcordSides sidesOf(int round) const;
    bool isPermitted(int variable, const RoundPlace &place) const;
    void add(int round, QVector<int> variables);
    int addNear(const ConcordRound &round, const QVector<int> &variables, int item);

    const std::vector<ConcordRound> &rounds;
    const ConcordDecisions &decisions;
    ConcordMatching matching;
    ConcordOrder order;
    QVector<QVector<RoundPlace>> places;    // by number of the variable
    std::vector<std::vector<int>> groupsOf; // of decisions, by number of the variable
    std::vector<int> variableOfGroup;
};

} // namespace vanlayout

#endif
