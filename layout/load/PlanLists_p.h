#ifndef LAYOUT_LOAD_PLANLISTS_P_H
#define LAYOUT_LOAD_PLANLISTS_P_H

#include "load/Plan_p.h"

#include <QByteArray>
#include <QStringList>

#include <utility>

/// Lists and sums over a plan that several writers need.
namespace vanlayout
{

/// The names of all columns of a table.
QStringList columnNames(const PlannedTable &table);

/// The last column of the lines of a table, 1-based.
int lastColumnOf(const PlannedTable &table);
/// That of all tables and of the record type.
int lastColumnOf(const LoadPlan &plan);

/// The beginning of names that a program makes for itself: `_van_`, with further `_` if one of the names begins so.
QByteArray freePrefix(const QStringList &names, Qt::CaseSensitivity sensitivity);

/// Calls the function once for each list of codes, with the first table and column that have it.
template <typename Function> void forEachCodeList(const LoadPlan &plan, Function function)
{
    QVector<bool> isDone(plan.codes.size());
    for (const PlannedTable &table : plan.tables) {
        for (const PlannedColumn &column : table.columns) {
            if (column.codes >= 0 && !std::exchange(isDone[column.codes], true))
                function(table, column);
        }
    }
}

/// The missing value in Stata, such as `.m`, and in lower case that in SAS; empty for a value.
QByteArray missingValueOf(CellOutcome outcome);

/// The statements that turn special codes into missing values, where the first rule that matches counts.
/// \a conditionOf makes the condition of a rule, and \a statementOf the statement for a condition and an outcome.
/// \a butNot comes between a condition and an excluded one, such as " & !(".
template <typename ConditionOf, typename StatementOf>
QByteArray specialStatements(const CodeList &codes, const char *butNot, ConditionOf conditionOf,
                             StatementOf statementOf)
{
    QByteArray statements;
    QByteArray kept;
    for (const SpecialRule &rule : codes.specials) {
        const QByteArray condition = conditionOf(rule);
        if (rule.outcome == CellOutcome::Value)
            kept += butNot + condition + ')';
        else
            statements += statementOf(condition + kept, rule.outcome);
    }
    return statements;
}

/// A line for the head for each list of special codes of a text, for targets whose texts have no missing values.
QStringList textSpecialRemarks(const LoadPlan &plan);

constexpr int maxExactDigits = 15; ///< of a double

/// A line for the head for each item whose special codes have more digits than a double holds, if the cells of so many
/// digits are doubles: numbers of more than \a maxWhole digits, and of more than \a maxDecimal digits with decimals.
QStringList longCodeRemarks(const LoadPlan &plan, int maxWhole, int maxDecimal);

} // namespace vanlayout

#endif
