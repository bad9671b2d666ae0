#ifndef LAYOUT_WRITE_CONCORDTEXTS_P_H
#define LAYOUT_WRITE_CONCORDTEXTS_P_H

#include "compare/Concord.h"
#include "write/Wording_p.h"

#include <QStringList>

#include <algorithm>

// The presentation of a concordance for people and for spreadsheets: one wording for all forms.

namespace vanlayout
{

/// The item of a variable in the first round that has it.
inline const ConcordCell &firstCellOf(const ConcordVariable &variable)
{
    static const ConcordCell none;
    const auto found = std::find_if(variable.cells.begin(), variable.cells.end(),
                                    [](const std::optional<ConcordCell> &cell) { return cell.has_value(); });
    return found == variable.cells.end() ? none : **found;
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
