#ifndef LAYOUT_COMPARE_CONCORDEVIDENCE_P_H
#define LAYOUT_COMPARE_CONCORDEVIDENCE_P_H

#include "compare/ConcordTraits_p.h"

namespace vanlayout
{

/// The evidence that two items of different rounds are the same, from the items alone, without their names and their
/// neighbours. All evidence is in nats: the logarithm of how much more probable a trait is if the items are the same.
class ConcordEvidence
{
public:
    explicit ConcordEvidence(ConcordCorpus &ofCorpus)
        : corpus(ofCorpus)
    {
    }

    /// That of labels, values, type, width and the like.
    double ofContent(const ConcordTraits &one, const ConcordTraits &other);
    /// That of labels, in the languages that both items have; else of the first labels. 0 if one has no label.
    double ofLabels(const ConcordTraits &one, const ConcordTraits &other);
    double ofValues(const ConcordTraits &one, const ConcordTraits &other);
    static double ofShape(const ConcordTraits &one, const ConcordTraits &other);

private:
    double ofLabelPair(int one, int other);
    double ofValuePair(int one, int other);

    ConcordCorpus &corpus;
    std::unordered_map<quint64, double> labelPairs;
    std::unordered_map<quint64, double> valuePairs;
};

} // namespace vanlayout

#endif
