#include "compare/ConcordCandidates_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

ConcordTerms::List namesOf(const ConcordTraits &item)
{
    ConcordTerms::List names = { item.name.whole };
    if (item.name.rest != ConcordName::none && !item.name.isMnemonic)
        names.push_back(item.name.rest);
    if (item.name.firstOf != ConcordName::none && !item.isDictionary)
        names.push_back(item.name.firstOf);
    return names;
}

ConcordTerms::List wordsOf(const ConcordCorpus &corpus, const ConcordTraits &item)
{
    ConcordTerms::List words;
    for (const ConcordText &text : item.texts) {
        const ConcordTerms::List &label = corpus.labels()[size_t(text.label)];
        words.insert(words.end(), label.begin(), label.end());
    }
    return ConcordTerms::sorted(std::move(words));
}

} // namespace

template <typename TermsOf>
void ConcordCandidates::Postings::fill(const std::vector<const ConcordTraits *> &items, TermsOf termsOf)
{
    for (const ConcordTraits *const variable : items) {
        for (const int term : termsOf(*variable))
            ++begins[size_t(term) + 1];
    }
    for (size_t term = 1; term < begins.size(); ++term)
        begins[term] += begins[term - 1];
    numbers.resize(size_t(begins.back()));
    std::vector<int> next(begins.begin(), begins.end() - 1);
    for (size_t i = 0; i < items.size(); ++i) {
        for (const int term : termsOf(*items[i]))
            numbers[size_t(next[size_t(term)]++)] = int(i);
    }
}

ConcordCandidates::ConcordCandidates(const ConcordCorpus &ofCorpus,
                                     const std::vector<const ConcordTraits *> &ofVariables)
    : corpus(ofCorpus)
    , variables(ofVariables)
    , byName(corpus.nameCount())
    , byWord(corpus.words().terms().size())
    , byValue(corpus.values().size())
    , byNameWord(corpus.nameWords().size())
    , weights(variables.size(), 0)
{
    byName.fill(variables, namesOf);
    byWord.fill(variables, [&](const ConcordTraits &item) { return wordsOf(corpus, item); });
    byValue.fill(variables, [&](const ConcordTraits &item) -> const ConcordTerms::List & {
        return corpus.valueLists()[size_t(item.values)].labels;
    });
    byNameWord.fill(variables, [&](const ConcordTraits &item) -> const ConcordTerms::List & {
        return corpus.nameWordLists()[size_t(item.name.words)];
    });
}

void ConcordCandidates::add(const Postings &postings, int term, double weight)
{
    if (postings.count(term) > maxPostings)
        return;
    for (const int *variable = postings.begin(term); variable != postings.end(term); ++variable) {
        double &sum = weights[size_t(*variable)];
        if (sum <= 0)
            touched.push_back(*variable);
        sum += weight;
    }
}

void ConcordCandidates::addTerms(const Postings &postings, const ConcordTerms::List &terms,
                                 const ConcordTerms &termWeights)
{
    for (const int term : terms)
        add(postings, term, termWeights.weightOf(term));
}

void ConcordCandidates::takeBest(std::vector<int> &found, int most)
{
    const auto isBetter = [&](int one, int other) {
        const double left = weights[size_t(one)];
        const double right = weights[size_t(other)];
        return left > right || (!(left < right) && one < other);
    };
    const size_t count = std::min(touched.size(), size_t(most));
    std::partial_sort(touched.begin(), touched.begin() + int(count), touched.end(), isBetter);
    found.insert(found.end(), touched.begin(), touched.begin() + int(count));
    for (const int variable : touched)
        weights[size_t(variable)] = 0;
    touched.clear();
}

// Returns the only variable with the same name, label and values, or -1.
int ConcordCandidates::unchanged(const ConcordTraits &item) const
{
    int found = -1;
    if (item.texts.empty() || byName.count(item.name.whole) > maxPostings)
        return found;
    for (const int *variable = byName.begin(item.name.whole); variable != byName.end(item.name.whole); ++variable) {
        const ConcordTraits &other = *variables[size_t(*variable)];
        if (other.values != item.values || other.texts.empty() || other.texts.front().label != item.texts.front().label)
            continue;
        if (found >= 0)
            return -1;
        found = *variable;
    }
    return found;
}

std::vector<int> ConcordCandidates::of(const ConcordTraits &item)
{
    const int same = unchanged(item);
    if (same >= 0)
        return { same };
    std::vector<int> found;
    constexpr double ofWholeName = 10;
    constexpr double ofNumber = 1;
    add(byName, item.name.whole, ofWholeName);
    if (item.name.rest != ConcordName::none && !item.name.isMnemonic)
        add(byName, item.name.rest, ofNumber);
    if (item.name.firstOf != ConcordName::none && !item.isDictionary)
        add(byName, item.name.firstOf, ofWholeName);
    takeBest(found, maxCandidates);
    addTerms(byWord, wordsOf(corpus, item), corpus.words().terms());
    addTerms(byValue, corpus.valueLists()[size_t(item.values)].labels, corpus.values());
    addTerms(byNameWord, corpus.nameWordLists()[size_t(item.name.words)], corpus.nameWords());
    takeBest(found, maxCandidates);
    return ConcordTerms::sorted(std::move(found));
}

} // namespace vanlayout
