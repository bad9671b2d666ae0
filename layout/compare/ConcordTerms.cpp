#include "compare/ConcordTerms_p.h"

#include <algorithm>
#include <cmath>

namespace vanlayout
{

int ConcordTerms::add(const QString &text)
{
    texts.push_back(text);
    counts.push_back(0);
    limits.push_back(maxInformation);
    return size() - 1;
}

int ConcordTerms::numberOf(const QString &term)
{
    const auto [found, isNew] = numbers.emplace(term, size());
    return isNew ? add(term) : found->second;
}

int ConcordTerms::numberOf(int one, int other)
{
    const auto [found, isNew] = numbersOfPairs.emplace((quint64(quint32(one)) << 32) | quint32(other), size());
    return isNew ? add(QString()) : found->second;
}

void ConcordTerms::count(const List &terms)
{
    for (const int term : terms)
        ++counts[size_t(term)];
}

void ConcordTerms::limit(int term, double information)
{
    limits[size_t(term)] = information;
}

void ConcordTerms::weigh(int rounds, int items, double furtherItems)
{
    constexpr double furtherCount = 0.5;
    const double perRound = double(items) / std::max(rounds, 1);
    weights.resize(texts.size());
    for (size_t term = 0; term < texts.size(); ++term) {
        const double count = double(counts[term]) / std::max(rounds, 1);
        const double information = std::log((perRound + furtherItems) / (count + furtherCount));
        const double weight = std::clamp(information, 0.1, limits[term]);
        weights[term] = weight * weight;
    }
}

ConcordTerms::List ConcordTerms::sorted(List terms)
{
    std::sort(terms.begin(), terms.end());
    terms.erase(std::unique(terms.begin(), terms.end()), terms.end());
    return terms;
}

double ConcordOverlap::evidence(double maxFor, double maxAgainst) const
{
    constexpr double against = 0.6;
    const double share = similarity();
    return std::min(std::sqrt(common), maxFor) * share
        - against * std::min(std::sqrt(different / 2), maxAgainst) * (1 - share);
}

ConcordOverlap overlapOf(const ConcordTerms &terms, const ConcordTerms::List &one, const ConcordTerms::List &other)
{
    ConcordOverlap overlap;
    auto left = one.begin();
    auto right = other.begin();
    while (left != one.end() || right != other.end()) {
        if (right == other.end() || (left != one.end() && *left < *right)) {
            overlap.different += terms.weightOf(*left++);
        } else if (left == one.end() || *right < *left) {
            overlap.different += terms.weightOf(*right++);
        } else {
            overlap.common += terms.weightOf(*left);
            ++left;
            ++right;
        }
    }
    return overlap;
}

} // namespace vanlayout
