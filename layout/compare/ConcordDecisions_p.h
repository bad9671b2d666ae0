#ifndef LAYOUT_COMPARE_CONCORDDECISIONS_P_H
#define LAYOUT_COMPARE_CONCORDDECISIONS_P_H

#include "compare/Concord.h"
#include "compare/ConcordRound_p.h"
#include "util/KeyedHash_p.h"

#include <map>
#include <set>
#include <vector>

namespace vanlayout
{

/// The decisions of a person, as groups of items: those of one group are one variable. An item that only decisions
/// "not the same" name is a group of its own.
///
/// Decisions "the same" are taken in their order, then those "not the same". A decision that contradicts these, or
/// whose items are not found, is not followed, and is a problem.
class ConcordDecisions
{
public:
    static constexpr int none = -1;

    ConcordDecisions(const std::vector<ConcordRound> &allRounds, const QVector<ConcordDecision> &decisions);

    /// The problems, in the order of the decisions.
    QVector<ConcordProblem> problems() const;
    bool isEmpty() const { return groups.empty(); }
    int groupCount() const { return int(groups.size()); }
    /// The group of an item, or none if no decision names it.
    int groupOf(const RoundPlace &place) const;
    /// Whether items of two groups can be one variable: the groups are the same, or no decision separates them and they
    /// have no round in common.
    bool canBeOne(int one, int other) const;

private:
    using Place = std::pair<int, int>; // round and item

    /// The items of one round by name, with case folded.
    using ItemsOfName = KeyedMap<QString, std::vector<int>>;

    int find(const ConcordDecision::Place &place, int decision);
    std::vector<int> itemsAt(const ConcordDecision::Place &place) const;
    int groupOfPlace(const Place &place);
    int rootOf(int group);
    void join(int one, int other, int decision);
    void separate(int one, int other, int decision);
    void makeCompact();
    void addProblem(int decision, const QString &text) { texts[decision] = text; }

    const std::vector<ConcordRound> &rounds;
    std::vector<ItemsOfName> itemsOfName;
    std::map<Place, int> groupOfItem;
    std::vector<int> parents;
    std::vector<std::set<int>> groups; // the rounds of each
    std::set<std::pair<int, int>> separated;
    std::map<int, QString> texts; // of the problems, by the number of the decision
};

} // namespace vanlayout

#endif
