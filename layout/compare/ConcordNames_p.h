#ifndef LAYOUT_COMPARE_CONCORDNAMES_P_H
#define LAYOUT_COMPARE_CONCORDNAMES_P_H

#include "compare/ConcordTraits_p.h"

#include <map>
#include <unordered_map>

namespace vanlayout
{

/// How much names prove between two rounds. Names that occur in both rounds prove much if the items that have them have
/// the same labels and values, and little in a questionnaire that was renumbered; this differs from section to section.
///
/// Names correspond if they are equal, or if they have the same number after different prefixes, such as HV009 and
/// V009.
class ConcordNames
{
public:
    explicit ConcordNames(const ConcordCorpus &ofCorpus)
        : corpus(ofCorpus)
    {
    }

    static bool correspond(const ConcordTraits &one, const ConcordTraits &other);

    void clear();
    /// Adds a pair of items with corresponding names that are, or are not, the same.
    void learn(const ConcordTraits &one, const ConcordTraits &other, bool areSame);
    /// Adds a pair of items that are the same, whatever their names are.
    void learnSame(const ConcordTraits &one, const ConcordTraits &other);

    /// The evidence of the names of two items, with that of any pair \a prior, which a name that corresponds outweighs.
    double evidence(const ConcordTraits &one, const ConcordTraits &other, double prior) const;

private:
    struct Share {
        double same = 0;
        double all = 0;

        double after(double parent, double weight) const { return (same + weight * parent) / (all + weight); }
        void add(bool isSame)
        {
            same += isSame ? 1 : 0;
            all += 1;
        }
    };

    static bool isFirstOccurrence(const ConcordTraits &item, const ConcordTraits &variable);
    static bool areEqual(const ConcordTraits &one, const ConcordTraits &other);
    double shareOf(const ConcordTraits &one, const ConcordTraits &other) const;
    double ofWords(const ConcordTraits &one, const ConcordTraits &other) const;

    const ConcordCorpus &corpus;
    Share mnemonics;
    Share numbered;
    Share kept; // of items that are the same: those whose names correspond
    std::unordered_map<int, Share> sections;
    std::map<std::pair<int, int>, Share> prefixes;
};

} // namespace vanlayout

#endif
