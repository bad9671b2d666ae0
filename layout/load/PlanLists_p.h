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

/// A line for the head for each text of a table that is longer than a variable of the target, and is cut.
QStringList cutTextRemarks(const PlannedTable &table, int maxBytes);

} // namespace vanlayout

#endif
