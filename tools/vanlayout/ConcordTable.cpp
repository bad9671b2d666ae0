#include "ConcordTable.h"

#include "Printable.h"
#include "RoundLines.h"
#include "TableLines.h"
#include "TextGrid.h"
#include "compare/RoundNames.h"
#include "write/ConcordTexts_p.h"

#include <QStringList>
#include <QVector>

#include <algorithm>
#include <array>

using vanlayout::CodeChange;
using vanlayout::Concordance;
using vanlayout::ConcordCell;
using vanlayout::ConcordChange;
using vanlayout::ConcordCode;
using vanlayout::ConcordVariable;

namespace
{

constexpr int maxCellWidth = 40;   // a longer label is cut in a column of a terminal, not in a list
constexpr int maxWidestCell = 200; // likewise in a column without a terminal, because all rows are as wide
constexpr int minLabelWidth = 16;

const QString &absentMark()
{
    static const QString mark = QStringLiteral("-");
    return mark;
}

const QString &sameMark()
{
    static const QString mark = QStringLiteral("=");
    return mark;
}

QString quoted(const QString &text)
{
    return QLatin1Char('"') + printable(text) + QLatin1Char('"');
}

QString countOf(int count, const char *one)
{
    return QString::number(count) + QLatin1Char(' ') + QLatin1String(one) + QLatin1String(count == 1 ? "" : "s");
}

// The changes of a cell: the new name, the new record, and words for the others.
QStringList changesIn(const ConcordCell &cell, bool showsLabel)
{
    QStringList texts;
    for (const ConcordChange change : cell.changes) {
        if (change == ConcordChange::Renamed)
            texts.append(printable(cell.item));
        else if (change == ConcordChange::Moved)
            texts.append(QLatin1String("in ") + printable(cell.record));
        else if (change == ConcordChange::Label && showsLabel)
            texts.append(QLatin1String("label ") + quoted(cell.label));
        else
            texts.append(wordOf(change));
    }
    return texts;
}

/// The order in which the changes of codes are listed.
const std::array<CodeChange, 6> &codeChangesInOrder()
{
    static const std::array<CodeChange, 6> changes = { CodeChange::Meaning, CodeChange::Wording, CodeChange::Spelling,
                                                       CodeChange::Removed, CodeChange::Added,   CodeChange::None };
    return changes;
}

/// Prints both tables.
class ConcordPrinter
{
public:
    ConcordPrinter(const Concordance &source, QIODevice &device, const ConcordTableStyle &tableStyle)
        : concordance(source)
        , lines(device, tableStyle.width)
        , style(tableStyle)
    {
        const QStringList names = vanlayout::roundNames(source.rounds);
        std::transform(names.begin(), names.end(), std::back_inserter(rounds), printable);
        const QStringList ofVariables = vanlayout::namesOf(source.variables);
        std::transform(ofVariables.begin(), ofVariables.end(), std::back_inserter(variableNames), printable);
    }

    void print()
    {
        lines.print(0, countOf(int(rounds.size()), "round") + QLatin1String(": ") + rounds.join(QLatin1String(", ")));
        lines.printEmpty();
        printVariables();
        lines.printEmpty();
        printCodes();
    }

private:
    void printVariables()
    {
        const QVector<int> differing = differingVariables();
        const int count = concordance.variables.size();
        printCount(countOf(count, "variable"), int(differing.size()), wordsOfVariables());
        QVector<int> shown = differing;
        for (int i = 0; style.showsAll && i < count; ++i) {
            if (!isDiffering(concordance.variables.at(i)))
                shown.append(i);
        }
        if (!shown.isEmpty() && !printVariableGrid(shown))
            printVariableList(shown);
        printRest(count - int(differing.size()), "variable");
    }
    void printCodes()
    {
        const QVector<int> differing = codesInOrder();
        const int rest = int(std::count_if(concordance.codes.begin(), concordance.codes.end(),
                                           [](const ConcordCode &code) { return code.change == CodeChange::None; }));
        const int count = concordance.codes.size();
        printCount(countOf(count, "code"), count - rest, wordsOfCodes());
        const QVector<int> shown = style.showsAll ? differing : differing.mid(0, count - rest);
        if (!shown.isEmpty() && !printCodeGrid(shown))
            printCodeList(shown);
        printRest(rest, "code");
    }

    // "5 variables, 2 differ: renamed 1, label 2"
    void printCount(const QString &all, int differing, const QStringList &counts)
    {
        QStringList words = { all };
        if (differing > 0)
            words.last()
                += QStringLiteral(", %1 %2:").arg(differing).arg(QLatin1String(differing == 1 ? "differs" : "differ"));
        for (int i = 0; i < counts.size(); ++i)
            words.append(counts.at(i) + QLatin1String(i + 1 < counts.size() ? "," : ""));
        lines.print(0, words);
    }
    void printRest(int count, const char *one)
    {
        if (count > 0)
            lines.print(0, countOf(count, one) + QLatin1String(" without a change"));
    }

    static bool isDiffering(const ConcordVariable &variable)
    {
        return isChanged(variable) || isAbsentSomewhere(variable);
    }
    // Variables that changed precede those that are only absent in a round.
    QVector<int> differingVariables() const
    {
        QVector<int> changed;
        QVector<int> absent;
        for (int i = 0; i < concordance.variables.size(); ++i) {
            if (isChanged(concordance.variables.at(i)))
                changed.append(i);
            else if (isAbsentSomewhere(concordance.variables.at(i)))
                absent.append(i);
        }
        return changed + absent;
    }
    QStringList wordsOfVariables() const
    {
        std::array<int, size_t(ConcordChange::Values) + 1> counts = {};
        int absent = 0;
        for (const ConcordVariable &variable : concordance.variables) {
            const QVector<ConcordChange> changes = allChangesOf(variable);
            for (const ConcordChange change : changes)
                ++counts[size_t(change)];
            absent += isAbsentSomewhere(variable) ? 1 : 0;
        }
        QStringList words;
        for (size_t i = 0; i < counts.size(); ++i)
            addCount(words, wordOf(ConcordChange(i)), counts[i]);
        addCount(words, QStringLiteral("absent"), absent);
        return words;
    }
    QStringList wordsOfCodes() const
    {
        std::array<int, size_t(CodeChange::Removed) + 1> counts = {};
        for (const ConcordCode &code : concordance.codes)
            ++counts[size_t(code.change)];
        QStringList words;
        for (const CodeChange change : codeChangesInOrder()) {
            if (change != CodeChange::None)
                addCount(words, wordOf(change), counts[size_t(change)]);
        }
        return words;
    }
    static void addCount(QStringList &words, const QString &word, int count)
    {
        if (count > 0)
            words.append(word + QLatin1Char(' ') + QString::number(count));
    }

    bool printVariableGrid(const QVector<int> &shown)
    {
        TextGrid grid(QStringList{ QStringLiteral("Name") } + rounds + QStringList{ QStringLiteral("Label") },
                      widestCell());
        for (const int index : shown)
            grid.add(rowOf(index));
        return printIfItFits(grid, minLabelWidth);
    }
    int widestCell() const { return style.width > 0 ? maxCellWidth : maxWidestCell; }
    bool printIfItFits(const TextGrid &grid, int lastWidth)
    {
        if (style.width > 0 && grid.widthWithLast(lastWidth) > style.width)
            return false;
        grid.print(lines, style.width);
        return true;
    }
    QStringList rowOf(int index) const
    {
        const ConcordVariable &variable = concordance.variables.at(index);
        const ConcordCell &first = firstCellOf(variable);
        QStringList row = { variableNames.at(index) };
        for (const std::optional<ConcordCell> &cell : variable.cells) {
            if (!cell)
                row.append(absentMark());
            else if (&*cell == &first && printable(cell->item) != row.constFirst())
                row.append(printable(cell->item));
            else
                row.append(cell->changes.isEmpty() ? sameMark() : changesIn(*cell, false).join(QLatin1String(", ")));
        }
        row.append(printable(first.label));
        return row;
    }
    void printVariableList(const QVector<int> &shown)
    {
        RoundLines list(lines, rounds);
        for (const int index : shown) {
            const ConcordVariable &variable = concordance.variables.at(index);
            const ConcordCell &first = firstCellOf(variable);
            QStringList texts;
            for (const std::optional<ConcordCell> &cell : variable.cells)
                texts.append(cell ? changesIn(*cell, true).join(QLatin1String(", ")) : RoundLines::absent());
            list.print(variableNames.at(index) + QLatin1Char(' ') + quoted(first.label), texts);
        }
    }

    QVector<int> codesInOrder() const
    {
        QVector<int> order;
        for (const CodeChange change : codeChangesInOrder()) {
            for (int i = 0; i < concordance.codes.size(); ++i) {
                if (concordance.codes.at(i).change == change)
                    order.append(i);
            }
        }
        return order;
    }
    const QString &nameOf(const ConcordCode &code) const { return variableNames.at(code.variable); }
    static QString changeOf(const ConcordCode &code)
    {
        return code.change == CodeChange::None ? sameMark() : wordOf(code.change);
    }
    // The labels in all rounds, with a text for a round that does not have the code, and one for the label of the
    // nearest earlier round that has it. Empty for a round that does not have the variable.
    QStringList labelsOf(const ConcordCode &code, const QString &absent, const QString &same,
                         QString (*show)(const QString &label)) const
    {
        const ConcordVariable &variable = concordance.variables.at(code.variable);
        QStringList texts;
        const QString *previous = nullptr;
        for (int round = 0; round < code.cells.size(); ++round) {
            const std::optional<QString> &label = code.cells.at(round);
            if (!label)
                texts.append(variable.cells.at(round) ? absent : QString());
            else
                texts.append(previous && *previous == *label ? same : show(*label));
            previous = label ? &*label : previous;
        }
        return texts;
    }
    bool printCodeGrid(const QVector<int> &shown)
    {
        TextGrid grid(QStringList{ QStringLiteral("Name"), QStringLiteral("Code"), QStringLiteral("Change") } + rounds,
                      widestCell());
        for (const int index : shown) {
            const ConcordCode &code = concordance.codes.at(index);
            grid.add(QStringList{ nameOf(code), printable(describeCode(code)), changeOf(code) }
                     + labelsOf(code, absentMark(), sameMark(), printable));
        }
        return printIfItFits(grid, maxCellWidth);
    }
    void printCodeList(const QVector<int> &shown)
    {
        RoundLines list(lines, rounds);
        for (const int index : shown) {
            const ConcordCode &code = concordance.codes.at(index);
            list.print(nameOf(code) + QLatin1Char(' ') + printable(describeCode(code)) + QLatin1String(": ")
                           + changeOf(code),
                       labelsOf(code, RoundLines::absent(), QString(), quoted));
        }
    }

    const Concordance &concordance;
    TableLines lines;
    const ConcordTableStyle &style;
    QStringList rounds;
    QStringList variableNames;
};

} // namespace

void printConcordTable(const Concordance &concordance, QIODevice &out, const ConcordTableStyle &style)
{
    ConcordPrinter(concordance, out, style).print();
}
