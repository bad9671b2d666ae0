#ifndef LAYOUT_COMPARE_CONCORDTERMS_P_H
#define LAYOUT_COMPARE_CONCORDTERMS_P_H

#include "util/KeyedHash_p.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace vanlayout
{

/// Numbers of texts, from 0 in the order in which they first occur.
class ConcordNumbers
{
public:
    int of(const QString &text) { return numbers.emplace(text, int(numbers.size())).first->second; }
    int size() const { return int(numbers.size()); }

private:
    KeyedMap<QString, int> numbers;
};

/// Terms, such as words, with their weights: the fewer items have a term, the larger its weight.
class ConcordTerms
{
public:
    /// Sorted numbers of terms without repetitions.
    using List = std::vector<int>;

    int numberOf(const QString &term);
    /// The number of a term that consists of two numbers. Its text is empty.
    int numberOf(int one, int other);
    const QString &textOf(int term) const { return texts[size_t(term)]; }
    int size() const { return int(texts.size()); }
    /// Counts the terms of one item.
    void count(const List &terms);
    /// Computes the weights from the counts in \a rounds rounds with \a items items. Terms are also rare in a small
    /// dictionary: frequencies are those among \a furtherItems more items, which do not have them.
    void weigh(int rounds, int items, double furtherItems);
    /// The weight squared: the square of the information in nats.
    double weightOf(int term) const { return weights[size_t(term)]; }
    /// The max weight of a term, for words that are in most languages of surveys without meaning.
    void limit(int term, double information);

    static List sorted(List terms);

private:
    static constexpr double maxInformation = 6.5;

    int add(const QString &text);

    KeyedMap<QString, int> numbers;
    std::unordered_map<quint64, int> numbersOfPairs;
    std::vector<QString> texts;
    std::vector<int> counts;
    std::vector<double> limits;
    std::vector<double> weights;
};

/// How much two lists of terms have in common: sums of squared weights.
struct ConcordOverlap {
    double common = 0;
    double different = 0;    ///< of both lists
    bool isContrary = false; ///< whether they have different numbers, or words such as "father" and "mother"

    /// 0 to 1; 0 if both lists are empty.
    double similarity() const
    {
        const double all = 2 * common + different;
        return all > 0 ? 2 * common / all : 0;
    }
    /// The evidence in nats that the lists belong to the same item; negative if it is against that. \a maxFor and
    /// \a maxAgainst are bounds.
    double evidence(double maxFor, double maxAgainst) const;
};

ConcordOverlap overlapOf(const ConcordTerms &terms, const ConcordTerms::List &one, const ConcordTerms::List &other);

} // namespace vanlayout

#endif
