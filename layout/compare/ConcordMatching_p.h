#ifndef LAYOUT_COMPARE_CONCORDMATCHING_P_H
#define LAYOUT_COMPARE_CONCORDMATCHING_P_H

#include "compare/ConcordContext_p.h"
#include "compare/ConcordEvidence_p.h"
#include "compare/ConcordNames_p.h"

#include <functional>

namespace vanlayout
{

/// One matching: the latest item of each variable so far, and the items of the next round.
struct ConcordSides {
    QVector<RoundPlace> before; ///< by number of the variable
    QVector<int> order;         ///< the numbers of the variables in their order
    int round = 0;              ///< index of the next round
    QVector<int> decided;       ///< for each item of the round, the variable that a decision selects, or none
    /// Whether the decisions permit that the variable and the item are the same; null if there are no decisions.
    std::function<bool(int variable, int item)> isPermitted;
};

/// Matches the items of rounds.
///
/// The candidates of an item are the variables with a name, rare words or rare values in common. A first assignment
/// uses the evidence of the items alone. Its unambiguous pairs then show how much names prove, which records belong
/// together, and which items are neighbours, and the assignment is repeated with that evidence.
class ConcordMatching
{
public:
    static constexpr int none = -1;

    explicit ConcordMatching(const std::vector<ConcordRound> &rounds);

    /// The variable of each item of the round, or none. No two items have the same variable.
    QVector<int> match(const ConcordSides &sides);

private:
    ConcordCorpus corpus;
    ConcordEvidence evidence;
};

} // namespace vanlayout

#endif
