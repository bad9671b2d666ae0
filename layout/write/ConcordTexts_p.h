#ifndef LAYOUT_WRITE_CONCORDTEXTS_P_H
#define LAYOUT_WRITE_CONCORDTEXTS_P_H

#include "compare/Concord.h"
#include "write/UniqueNames_p.h"
#include "write/Wording_p.h"

#include <QStringList>

#include <algorithm>
#include <numeric>

// The presentation of a concordance for people and for spreadsheets: one wording for all forms.

namespace vanlayout
{

/// The index of the first round that has a variable; the number of rounds if none has it.
inline int firstRoundOf(const ConcordVariable &variable)
{
    const auto found = std::find_if(variable.cells.begin(), variable.cells.end(),
                                    [](const std::optional<ConcordCell> &cell) { return cell.has_value(); });
    return int(found - variable.cells.begin());
}

/// The item of a variable in the first round that has it.
inline const ConcordCell &firstCellOf(const ConcordVariable &variable)
{
    static const ConcordCell none;
    const int round = firstRoundOf(variable);
    return round == variable.cells.size() ? none : *variable.cells.at(round);
}

/// The names of all variables, each once: the name of the first item. If several variables have that name, those that
/// begin in a later round are followed by a number: `P304_2`.
inline QStringList namesOf(const QVector<ConcordVariable> &variables)
{
    QVector<int> order(variables.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](int one, int other) {
        return firstRoundOf(variables.at(one)) < firstRoundOf(variables.at(other));
    });
    UniqueNames names;
    QVector<QString> given(variables.size());
    for (const int index : qAsConst(order))
        given[index] = names.give(firstCellOf(variables.at(index)).item);
    return QStringList(given.begin(), given.end());
}

/// True if a round does not have the variable.
inline bool isAbsentSomewhere(const ConcordVariable &variable)
{
    return std::any_of(variable.cells.begin(), variable.cells.end(),
                       [](const std::optional<ConcordCell> &cell) { return !cell; });
}

/// True if the variable differs from one round to the next one that has it.
inline bool isChanged(const ConcordVariable &variable)
{
    return std::any_of(variable.cells.begin(), variable.cells.end(),
                       [](const std::optional<ConcordCell> &cell) { return cell && !cell->changes.isEmpty(); });
}

/// The words of changes.
inline QStringList wordsOf(const QVector<ConcordChange> &changes)
{
    QStringList words;
    for (const ConcordChange change : changes)
        words.append(wordOf(change));
    return words;
}

/// The changes of a variable in all rounds, each once, in the order of the enumeration.
inline QVector<ConcordChange> allChangesOf(const ConcordVariable &variable)
{
    QVector<ConcordChange> all;
    for (const std::optional<ConcordCell> &cell : variable.cells) {
        if (cell)
            all += cell->changes;
    }
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

/// A code or a range with its special meaning, for people; blanks and an empty code are visible.
inline QString describeCode(const ConcordCode &code)
{
    QString text = code.from.trimmed().isEmpty() ? QStringLiteral("(blank)") : code.from;
    if (!code.to.isEmpty())
        text += QLatin1String(" to ") + code.to;
    if (code.special != Special::None)
        text += QLatin1String(" [") + describeSpecial(code.special) + QLatin1Char(']');
    return text;
}

} // namespace vanlayout

#endif
