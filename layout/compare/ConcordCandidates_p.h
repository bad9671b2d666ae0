#ifndef LAYOUT_COMPARE_CONCORDCANDIDATES_P_H
#define LAYOUT_COMPARE_CONCORDCANDIDATES_P_H

#include "compare/ConcordTraits_p.h"

namespace vanlayout
{

/// Finds the variables that an item can be, by an index of the traits of the variables: names, words of labels, values.
///
/// The traits that more than `maxPostings` variables share identify none of them. An item has at most `maxCandidates`
/// candidates from words and values, and as many from names. A variable with the same name, label and values is the
/// only candidate, if there is one such variable.
class ConcordCandidates
{
public:
    static constexpr int maxPostings = 60;
    static constexpr int maxCandidates = 12;

    ConcordCandidates(const ConcordCorpus &ofCorpus, const std::vector<const ConcordTraits *> &ofVariables);

    /// The variables, sorted.
    std::vector<int> of(const ConcordTraits &item);

private:
    /// For each term the variables that have it.
    class Postings
    {
    public:
        explicit Postings(int terms)
            : begins(size_t(terms) + 1, 0)
        {
        }
        template <typename TermsOf> void fill(const std::vector<const ConcordTraits *> &items, TermsOf termsOf);
        const int *begin(int term) const { return numbers.data() + begins[size_t(term)]; }
        const int *end(int term) const { return numbers.data() + begins[size_t(term) + 1]; }
        int count(int term) const { return begins[size_t(term) + 1] - begins[size_t(term)]; }

    private:
        std::vector<int> begins;
        std::vector<int> numbers;
    };

    int unchanged(const ConcordTraits &item) const;
    void add(const Postings &postings, int term, double weight);
    void addTerms(const Postings &postings, const ConcordTerms::List &terms, const ConcordTerms &weights);
    void takeBest(std::vector<int> &found, int most);

    const ConcordCorpus &corpus;
    const std::vector<const ConcordTraits *> &variables;
    Postings byName;
    Postings byWord;
    Postings byValue;
    Postings byNameWord;
    std::vector<double> weights; // of the variables, for one item
    std::vector<int> touched;
};

} // namespace vanlayout

#endif
