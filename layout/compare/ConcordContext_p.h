#ifndef LAYOUT_COMPARE_CONCORDCONTEXT_P_H
#define LAYOUT_COMPARE_CONCORDCONTEXT_P_H

#include "compare/ConcordTraits_p.h"

#include <map>

namespace vanlayout
{

/// One side of a matching: its items in their order, each by its index.
struct ConcordSequence {
    static constexpr int none = -1;

    std::vector<const ConcordTraits *> items; ///< by index
    std::vector<int> order;                   ///< indexes in the order of the questionnaire
    std::vector<int> position;                ///< of each index in the order
    std::vector<int> partner;                 ///< of each index: the index on the other side if that is known, or none
};

/// The evidence from the pairs that are already known: the records and the neighbours of two items.
class ConcordContext
{
public:
    ConcordContext(const ConcordSequence &beforeItems, const ConcordSequence &afterItems);

    /// Learns from the known pairs which records belong together, and whether the order was kept.
    void learn();

    double evidence(int variable, int item) const
    {
        return ofRecords(variable, item) + ofNeighbours(variable, item) + ofPresence(before, variable)
            + ofPresence(after, item);
    }
    /// The indexes on the earlier side next to the partners of the neighbours of an item.
    std::vector<int> candidatesOf(int after) const;

private:
    enum Direction { Backwards = -1, Forwards = 1 };
    /// The nearest item with a partner.
    struct Neighbour {
        int index = ConcordSequence::none;
        int distance = 0;
    };
    using Nearest = std::vector<Neighbour>; // by position

    static Nearest nearest(const ConcordSequence &sequence, Direction direction);
    void learnRecords();
    double ofRecords(int before, int after) const;
    /// That of the share of the other items of the record that have a partner: a record can be absent as a whole.
    double ofPresence(const ConcordSequence &sequence, int index) const;
    double ofNeighbours(int before, int after) const;
    static double ofNeighbour(const ConcordSequence &from, const ConcordSequence &to, const Neighbour &neighbour,
                              int other, Direction direction);

    const ConcordSequence &before;
    const ConcordSequence &after;
    Nearest beforeBackwards;
    Nearest beforeForwards;
    Nearest afterBackwards;
    Nearest afterForwards;
    std::map<std::pair<int, int>, int> pairsOfRecords;
    std::map<int, int> knownOfRecord;    // of the earlier side
    std::map<int, double> shareOfRecord; // of the later side
    struct Presence {
        int known = 0;
        int all = 0;
    };
    std::map<int, Presence> presence[2]; // by record, of the earlier and of the later side
    double orderKept = 0;
};

} // namespace vanlayout

#endif
