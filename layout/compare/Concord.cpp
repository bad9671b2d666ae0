#include "compare/Concord.h"

#include "compare/ConcordChain_p.h"
#include "compare/ConcordChanges_p.h"
#include "compare/ConcordCodes_p.h"

#include <algorithm>
#include <array>

namespace vanlayout
{

namespace
{

/// Makes the tables of a chain.
class ConcordTables
{
public:
    ConcordTables(const std::vector<ConcordRound> &allRounds, const ConcordChain &chain, const QString &labelLanguage)
        : rounds(allRounds)
        , language(labelLanguage)
        , records(allRounds)
        , changes(allRounds, records, language)
    {
        for (int variable = 0; variable < chain.count(); ++variable) {
            const QVector<RoundPlace> &items = chain.itemsOf(variable);
            for (int i = 1; i < items.size(); ++i)
                records.add(items.at(i - 1), items.at(i));
        }
    }

    void addTo(Concordance &concordance, const QVector<RoundPlace> &items) const
    {
        const ConcordCodes table(rounds, language);
        const QVector<ConcordCode> codes = table.codesOf(int(concordance.variables.size()), items);
        ConcordVariable variable;
        variable.cells.resize(int(rounds.size()));
        const RoundPlace *previous = nullptr;
        for (const RoundPlace &place : items) {
            variable.cells[place.round] = cellOf(place);
            if (previous)
                variable.cells[place.round]->changes = changesOf(*previous, place, codes);
            previous = &place;
        }
        concordance.variables.append(variable);
        concordance.codes += codes;
    }

private:
    ConcordCell cellOf(const RoundPlace &place) const
    {
        const RoundItem &item = rounds[size_t(place.round)].at(place.item);
        return { item.level->name, item.recordName(), item.item->name, item.item->labels.in(language), {} };
    }

    QVector<ConcordChange> changesOf(const RoundPlace &before, const RoundPlace &after,
                                     const QVector<ConcordCode> &codes) const
    {
        QVector<ConcordChange> all = changes.changesOf(before, after);
        const auto isSame = [](const std::optional<QString> &one, const std::optional<QString> &other) {
            return one == other || (one && other && one->simplified() == other->simplified());
        };
        if (!std::all_of(codes.begin(), codes.end(), [&](const ConcordCode &code) {
                return isSame(code.cells.at(before.round), code.cells.at(after.round));
            }))
            all.append(ConcordChange::Values);
        return all;
    }

    const std::vector<ConcordRound> &rounds;
    const QString &language;
    ConcordRecordNames records;
    ConcordChanges changes;
};

} // namespace

QString wordOf(ConcordChange change)
{
    static const std::array<const char *, 7> words
        = { "renamed", "moved", "type", "width", "decimals", "label", "values" };
    return QLatin1String(words.at(size_t(change)));
}

QString wordOf(CodeChange change)
{
    static const std::array<const char *, 6> words = { "none", "spelling", "wording", "meaning", "added", "removed" };
    return QLatin1String(words.at(size_t(change)));
}

Concordance concord(const QVector<Layout> &rounds, const ConcordOptions &options)
{
    Concordance concordance;
    std::vector<ConcordRound> items;
    items.reserve(size_t(rounds.size()));
    for (const Layout &layout : rounds) {
        concordance.rounds.append(layout.file);
        items.emplace_back(layout);
    }
    const ConcordDecisions decisions(items, options.decisions);
    concordance.problems = decisions.problems();
    ConcordChain chain(items, decisions);
    chain.addAll();
    const ConcordTables tables(items, chain, options.language);
    const QVector<int> variables = chain.inOrder();
    for (const int variable : variables)
        tables.addTo(concordance, chain.itemsOf(variable));
    return concordance;
}

} // namespace vanlayout
