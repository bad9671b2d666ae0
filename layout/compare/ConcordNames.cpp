#include "compare/ConcordNames_p.h"

#include <algorithm>
#include <cmath>

namespace vanlayout
{

// A repeating item of a dictionary has one variable for each occurrence in a statistical file: X is X_1.
bool ConcordNames::isFirstOccurrence(const ConcordTraits &item, const ConcordTraits &variable)
{
    return item.isDictionary && !variable.isDictionary && item.occurrences > 1
        && variable.name.firstOf == item.name.whole;
}

bool ConcordNames::correspond(const ConcordTraits &one, const ConcordTraits &other)
{
    const ConcordName &left = one.name;
    const ConcordName &right = other.name;
    return areEqual(one, other)
        || (left.rest != ConcordName::none && left.rest == right.rest && !left.isMnemonic && !right.isMnemonic);
}

bool ConcordNames::areEqual(const ConcordTraits &one, const ConcordTraits &other)
{
    return one.name.whole == other.name.whole || isFirstOccurrence(one, other) || isFirstOccurrence(other, one);
}

void ConcordNames::clear()
{
    mnemonics = {};
    numbered = {};
    kept = {};
    sections.clear();
    prefixes.clear();
}

void ConcordNames::learn(const ConcordTraits &one, const ConcordTraits &other, bool areSame)
{
    if (areEqual(one, other) && one.name.isMnemonic) {
        mnemonics.add(areSame);
        return;
    }
    prefixes[{ one.name.prefix, other.name.prefix }].add(areSame);
    if (one.name.prefix == other.name.prefix) {
        numbered.add(areSame);
        sections[one.name.section].add(areSame);
    }
}

void ConcordNames::learnSame(const ConcordTraits &one, const ConcordTraits &other)
{
    kept.add(correspond(one, other));
}

double ConcordNames::shareOf(const ConcordTraits &one, const ConcordTraits &other) const
{
    constexpr double ofMnemonics = 0.95;
    constexpr double ofNumbered = 0.8;
    constexpr double ofOtherPrefix = 0.05;
    constexpr double weight = 3;
    if (areEqual(one, other) && one.name.isMnemonic)
        return mnemonics.after(ofMnemonics, weight);
    const auto prefix = prefixes.find({ one.name.prefix, other.name.prefix });
    const Share ofPrefix = prefix != prefixes.end() ? prefix->second : Share();
    if (one.name.prefix != other.name.prefix)
        return ofPrefix.after(ofOtherPrefix, weight);
    const double ofSamePrefix = ofPrefix.after(numbered.after(ofNumbered, weight), weight);
    const auto section = sections.find(one.name.section);
    return section != sections.end() ? section->second.after(ofSamePrefix, weight) : ofSamePrefix;
}

double ConcordNames::ofWords(const ConcordTraits &one, const ConcordTraits &other) const
{
    if (one.name.words == 0 || other.name.words == 0)
        return 0;
    const auto &lists = corpus.nameWordLists();
    const double evidence
        = overlapOf(corpus.nameWords(), lists[size_t(one.name.words)], lists[size_t(other.name.words)]).evidence(4, 0);
    return evidence;
}

double ConcordNames::evidence(const ConcordTraits &one, const ConcordTraits &other, double prior) const
{
    constexpr double least = -2.5;
    constexpr double most = 4;
    if (correspond(one, other)) {
        const double share = std::clamp(shareOf(one, other), 0.02, 0.99);
        return prior + std::clamp(std::log(share / (1 - share)), least, most);
    }
    const double others = std::clamp(1 - kept.after(0.7, 10), 0.05, 1.0);
    return std::max(std::log(others), least) + ofWords(one, other);
}

} // namespace vanlayout
