#include "compare/ConcordMatching_p.h"

#include "compare/ConcordAssignment_p.h"
#include "compare/ConcordCandidates_p.h"

#include <algorithm>
#include <cmath>

namespace vanlayout
{

namespace
{

/// A variable and an item that can be the same.
struct Pair {
    int variable;
    int item;
    double content; // the evidence of the items alone
    double score;   // all evidence
};

/// The passes of one matching.
class Passes
{
public:
    Passes(const ConcordSides &ofSides, ConcordCorpus &ofCorpus, ConcordEvidence &ofEvidence);

    QVector<int> run();

private:
    static constexpr int none = ConcordMatching::none;
    static constexpr double minScore = 0.5;

    void addPair(int variable, int item);
    void addNeighbours();
    void learnNames();
    void score(bool hasContext);
    void assign();
    void keepUnambiguous();
    bool isDecided(const Pair &pair) const
    {
        return isTaken[size_t(pair.variable)] || sides.decided.at(pair.item) != none;
    }

    const ConcordSides &sides;
    ConcordEvidence &evidence;
    ConcordSequence before;
    ConcordSequence after;
    std::vector<char> isTaken; // whether a decision uses a variable
    std::vector<Pair> pairs;
    std::vector<std::vector<int>> variablesOf; // of each item, sorted: those with a pair
    std::vector<int> variableOf;               // of each item
    ConcordNames names;
    ConcordContext context;
    double prior;
};

Passes::Passes(const ConcordSides &ofSides, ConcordCorpus &ofCorpus, ConcordEvidence &ofEvidence)
    : sides(ofSides)
    , evidence(ofEvidence)
    , names(ofCorpus)
    , context(before, after)
    , prior(0.6 * std::log(ofCorpus.itemsOfRound() + 20))
{
    const auto fill = [](ConcordSequence &sequence) {
        sequence.position.resize(sequence.order.size());
        for (size_t position = 0; position < sequence.order.size(); ++position)
            sequence.position[size_t(sequence.order[position])] = int(position);
        sequence.partner.assign(sequence.items.size(), none);
    };
    for (const RoundPlace &place : sides.before)
        before.items.push_back(&ofCorpus.at(place));
    before.order.assign(sides.order.begin(), sides.order.end());
    fill(before);
    for (int item = 0; item < sides.decided.size(); ++item) {
        after.items.push_back(&ofCorpus.at({ sides.round, item }));
        after.order.push_back(item);
    }
    fill(after);
    variablesOf.resize(after.items.size());
    variableOf.assign(after.items.size(), none);
    isTaken.assign(before.items.size(), 0);
    for (const int variable : sides.decided) {
        if (variable != none)
            isTaken[size_t(variable)] = 1;
    }
    ConcordCandidates candidates(ofCorpus, before.items);
    for (int item = 0; item < int(after.items.size()); ++item) {
        const std::vector<int> found = candidates.of(*after.items[size_t(item)]);
        for (const int variable : found)
            addPair(variable, item);
    }
}

void Passes::addPair(int variable, int item)
{
    if (isTaken[size_t(variable)] || sides.decided.at(item) != none
        || (sides.isPermitted && !sides.isPermitted(variable, item)))
        return;
    std::vector<int> &known = variablesOf[size_t(item)];
    const auto place = std::lower_bound(known.begin(), known.end(), variable);
    if (place != known.end() && *place == variable)
        return;
    known.insert(place, variable);
    pairs.push_back(
        { variable, item, evidence.ofContent(*before.items[size_t(variable)], *after.items[size_t(item)]), 0 });
}

void Passes::addNeighbours()
{
    for (int item = 0; item < int(after.items.size()); ++item) {
        if (after.partner[size_t(item)] != none)
            continue;
        const std::vector<int> found = context.candidatesOf(item);
        for (const int variable : found) {
            if (before.partner[size_t(variable)] == none)
                addPair(variable, item);
        }
    }
}

void Passes::learnNames()
{
    constexpr double sure = 1.5;
    constexpr double unlike = -0.5;
    names.clear();
    for (const Pair &pair : pairs) {
        const ConcordTraits &one = *before.items[size_t(pair.variable)];
        const ConcordTraits &other = *after.items[size_t(pair.item)];
        const bool arePartners = after.partner[size_t(pair.item)] == pair.variable;
        if (arePartners)
            names.learnSame(one, other);
        if (!ConcordNames::correspond(one, other))
            continue;
        const bool haveOthers = !arePartners
            && (after.partner[size_t(pair.item)] != none || before.partner[size_t(pair.variable)] != none);
        if (haveOthers || pair.content < unlike)
            names.learn(one, other, false);
        else if (pair.content > sure)
            names.learn(one, other, true);
    }
}

void Passes::score(bool hasContext)
{
    for (Pair &pair : pairs) {
        pair.score = pair.content - prior
            + names.evidence(*before.items[size_t(pair.variable)], *after.items[size_t(pair.item)], prior)
            + (hasContext ? context.evidence(pair.variable, pair.item) : 0);
    }
}

void Passes::assign()
{
    constexpr double thousandths = 1000;
    ConcordAssignment assignment(int(after.items.size()), int(before.items.size()));
    for (const Pair &pair : pairs)
        assignment.addEdge(pair.item, pair.variable, qint64(std::lround((pair.score - minScore) * thousandths)));
    variableOf = assignment.solve();
    for (int item = 0; item < int(after.items.size()); ++item) {
        if (sides.decided.at(item) != none)
            variableOf[size_t(item)] = sides.decided.at(item);
    }
}

void Passes::keepUnambiguous()
{
    constexpr double minimum = 1.5;
    constexpr double margin = 1;
    std::vector<double> second[2];
    second[0].assign(before.items.size(), 0);
    second[1].assign(after.items.size(), 0);
    const auto isAssigned = [&](const Pair &pair) { return variableOf[size_t(pair.item)] == pair.variable; };
    for (const Pair &pair : pairs) {
        if (!isAssigned(pair)) {
            double &ofVariable = second[0][size_t(pair.variable)];
            double &ofItem = second[1][size_t(pair.item)];
            ofVariable = std::max(ofVariable, pair.score);
            ofItem = std::max(ofItem, pair.score);
        }
    }
    before.partner.assign(before.items.size(), none);
    after.partner.assign(after.items.size(), none);
    const auto keep = [&](int variable, int item) {
        before.partner[size_t(variable)] = item;
        after.partner[size_t(item)] = variable;
    };
    for (const Pair &pair : pairs) {
        const double others = std::max(second[0][size_t(pair.variable)], second[1][size_t(pair.item)]);
        if (isAssigned(pair) && pair.score >= minimum && pair.score >= others + margin)
            keep(pair.variable, pair.item);
    }
    for (int item = 0; item < int(after.items.size()); ++item) {
        if (sides.decided.at(item) != none)
            keep(sides.decided.at(item), item);
    }
}

QVector<int> Passes::run()
{
    constexpr int passesWithContext = 3;
    learnNames();
    score(false);
    assign();
    for (int pass = 0; pass < passesWithContext; ++pass) {
        keepUnambiguous();
        context.learn();
        addNeighbours();
        learnNames();
        score(true);
        assign();
    }
    return QVector<int>(variableOf.begin(), variableOf.end());
}

} // namespace

ConcordMatching::ConcordMatching(const std::vector<ConcordRound> &rounds)
    : corpus(rounds)
    , evidence(corpus)
{
}

QVector<int> ConcordMatching::match(const ConcordSides &sides)
{
    return Passes(sides, corpus, evidence).run();
}

} // namespace vanlayout
