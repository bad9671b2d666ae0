#ifndef LAYOUT_COMPARE_CONCORDMATCHING_P_H
#define LAYOUT_COMPARE_CONCORDMATCHING_P_H

#include "compare/ConcordRound_p.h"

#include <functional>
#include <vector>

namespace vanlayout
{

/// One matching: the latest item of each variable so far, and the items of the next round.
struct ConcordSides {
    QVector<RoundPlace> before; ///< by index of the variable
    int round = 0;              ///< index of the next round
    QVector<int> decided;       ///< for each item of the round, the variable that a decision selects, or none
    /// Whether a decision permits that the variable and the item are the same; null if there are no decisions.
    std::function<bool(int variable, int item)> isPermitted;
};

/// Matches the items of rounds.
class ConcordMatching
{
public:
    static constexpr int none = -1;

    explicit ConcordMatching(const std::vector<ConcordRound> &allRounds);

    /// The variable of each item of the round, or none. No two items have the same variable.
    QVector<int> match(const ConcordSides &sides) const;

private:
    const std::vector<ConcordRound> &rounds;
};

} // namespace vanlayout

#endif
