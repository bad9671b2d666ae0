#include "compare/ConcordEvidence_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

// The evidence of a pair, computed once.
template <typename Compute>
double known(std::unordered_map<quint64, double> &pairs, int one, int other, Compute compute)
{
    constexpr size_t maxKnown = 2000000;
    if (pairs.size() > maxKnown)
        pairs.clear();
    const auto [found, isNew] = pairs.emplace((quint64(quint32(one)) << 32) | quint32(other), 0);
    if (isNew)
        found->second = compute();
    return found->second;
}

// Whether two labels are known to be in different languages, so that other words are no evidence against them.
bool areTranslations(int language, int otherLanguage)
{
    return language != otherLanguage && language != unknownLanguage && otherLanguage != unknownLanguage;
}

} // namespace

double ConcordEvidence::ofContent(const ConcordTraits &one, const ConcordTraits &other)
{
    return ofLabels(one, other) + ofValues(one, other) + ofShape(one, other);
}

double ConcordEvidence::ofLabelPair(int one, int other)
{
    constexpr double maxFor = 9;
    constexpr double maxAgainst = 8;
    constexpr double ofContrary = -2.5;
    constexpr double ofCut = 0.2; // share of the words that only the longer label has
    constexpr double ofUnique = 1;
    return known(labelPairs, one, other, [&] {
        const auto &labels = corpus.labels();
        ConcordOverlap overlap = corpus.words().overlapOfLabels(labels[size_t(one)], labels[size_t(other)]);
        if (corpus.isCut(one, other))
            overlap.different *= ofCut;
        if (one == other && corpus.isUnique(one))
            return overlap.evidence(maxFor, maxAgainst) + ofUnique;
        return overlap.evidence(maxFor, maxAgainst) + (overlap.isContrary ? ofContrary : 0);
    });
}

double ConcordEvidence::ofLabels(const ConcordTraits &one, const ConcordTraits &other)
{
    if (one.texts.empty() || other.texts.empty())
        return 0;
    double best = 0;
    double sum = 0;
    int count = 0;
    for (const ConcordText &text : one.texts) {
        const auto same = std::find_if(other.texts.begin(), other.texts.end(),
                                       [&](const ConcordText &of) { return of.language == text.language; });
        if (same == other.texts.end())
            continue;
        const double evidence = ofLabelPair(text.label, same->label);
        best = count == 0 ? evidence : std::max(best, evidence);
        sum += evidence;
        ++count;
    }
    if (count == 0) {
        const double evidence = ofLabelPair(one.texts.front().label, other.texts.front().label);
        return areTranslations(one.texts.front().language, other.texts.front().language) ? std::max(evidence, 0.0)
                                                                                         : evidence;
    }
    return (best + sum / count) / 2;
}

double ConcordEvidence::ofValuePair(int one, int other)
{
    return known(valuePairs, one, other, [&] {
        const ConcordValueList &left = corpus.valueLists()[size_t(one)];
        const ConcordValueList &right = corpus.valueLists()[size_t(other)];
        const ConcordTerms &terms = corpus.values();
        if (left.labels.empty() || right.labels.empty())
            return overlapOf(terms, left.codes, right.codes).evidence(2.5, 1);
        return 0.8 * overlapOf(terms, left.labels, right.labels).evidence(6, 3.5)
            + 0.5 * overlapOf(terms, left.labelled, right.labelled).evidence(4, 2);
    });
}

double ConcordEvidence::ofValues(const ConcordTraits &one, const ConcordTraits &other)
{
    constexpr double ofNoValues = 0.3;
    constexpr double ofOneSide = -0.8;
    if (one.values == 0 && other.values == 0)
        return ofNoValues;
    if (one.values == 0 || other.values == 0)
        return one.isDictionary == other.isDictionary ? ofOneSide : 0;
    const double evidence = ofValuePair(one.values, other.values);
    return areTranslations(one.valueLanguage, other.valueLanguage) ? std::max(evidence, 0.0) : evidence;
}

double ConcordEvidence::ofShape(const ConcordTraits &one, const ConcordTraits &other)
{
    double evidence = one.type == other.type ? 0.2 : -2.5;
    if (one.isDictionary && other.isDictionary) {
        evidence += one.length == other.length ? 0.4 : -0.4;
        evidence += one.decimals == other.decimals ? 0 : -1;
        evidence += (one.occurrences > 1) == (other.occurrences > 1) ? 0 : -0.7;
        evidence += one.isSubitem == other.isSubitem ? 0 : -1;
        evidence += one.isId == other.isId ? 0 : -1.5;
    }
    return evidence;
}

} // namespace vanlayout
