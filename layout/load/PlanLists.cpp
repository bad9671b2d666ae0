#include "PlanLists_p.h"

#include <algorithm>

namespace vanlayout
{

QStringList columnNames(const PlannedTable &table)
{
    QStringList names;
    names.reserve(table.columns.size());
    for (const PlannedColumn &column : table.columns)
        names.append(column.name);
    return names;
}

int lastColumnOf(const PlannedTable &table)
{
    const int shift = (table.occurrences - 1) * table.step;
    int last = table.isItemTable() ? table.start - 1 + shift + table.length : 0;
    for (const PlannedColumn &column : table.columns) {
        if (!column.isMade())
            last = std::max(last, column.start - 1 + column.length + (table.isOfOccurrence(column) ? shift : 0));
    }
    return last;
}

int lastColumnOf(const LoadPlan &plan)
{
    int last = plan.recordType ? plan.recordType->start - 1 + plan.recordType->length : 1;
    for (const PlannedTable &table : plan.tables)
        last = std::max(last, lastColumnOf(table));
    return last;
}

QByteArray freePrefix(const QStringList &names, Qt::CaseSensitivity sensitivity)
{
    QByteArray prefix = "_van_";
    const auto isUsed = [&](const QString &name) { return name.startsWith(QLatin1String(prefix), sensitivity); };
    while (std::any_of(names.begin(), names.end(), isUsed))
        prefix += '_';
    return prefix;
}

QByteArray missingValueOf(CellOutcome outcome)
{
    switch (outcome) {
    case CellOutcome::Value:
        return QByteArray();
    case CellOutcome::Missing:
        return ".";
    case CellOutcome::NoAnswer:
        return ".m";
    case CellOutcome::Refused:
        return ".r";
    }
    return QByteArray();
}

QStringList cutTextRemarks(const PlannedTable &table, int maxBytes)
{
    QStringList remarks;
    for (const PlannedColumn &column : table.columns) {
        if (column.type == CellType::Text && column.length > maxBytes)
            remarks.append(QStringLiteral("%1.%2 is cut to %3 bytes.").arg(table.name, column.name).arg(maxBytes));
    }
    return remarks;
}

} // namespace vanlayout
