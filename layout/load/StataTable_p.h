#ifndef LAYOUT_LOAD_STATATABLE_P_H
#define LAYOUT_LOAD_STATATABLE_P_H

#include "load/Plan_p.h"
#include "load/StataVariables_p.h"

#include <QByteArray>

#include <unordered_map>

namespace vanlayout
{

/// The commands of a do-file that make one table.
class StataTable
{
public:
    StataTable(const LoadPlan &loadPlan, const PlannedTable &plannedTable);

    /// The variables that infix reads.
    const StataVariables &variables() const { return raw; }

    /// The commands, in lines that begin with four blanks. They leave the table in memory.
    QByteArray commands() const;

    /// The name of a file of the table, in quotes.
    QByteArray quotedFile(const char *extension) const;

    /// The greatest number of variables that are in memory at once.
    int variablesAtOnce() const;

private:
    QByteArray own(const char *name) const { return raw.own(name); }

    QByteArray firstLine() const;
    QByteArray selection() const;
    QByteArray occurrenceNumbers() const;
    QByteArray occurrences() const;
    QByteArray chosen(const QByteArray &name, const QByteArray &source) const;
    QString labelOfMade(ColumnRole role) const;

    QByteArray columns(ColumnRole role) const;
    QByteArray ownText(int index) const;
    QByteArray numberColumn(int index) const;
    QByteArray markedNumber(const PlannedColumn &column) const;
    QByteArray countOf(const PlannedColumn &column) const;
    QByteArray valueLabel(int index) const;
    QByteArray textColumn(int index) const;
    QByteArray longText(int index) const;

    const LoadPlan &plan;
    const PlannedTable &table;
    StataVariables raw;
    std::unordered_map<int, int> firstColumns; ///< index of the first number with each list of codes, by its index
};

} // namespace vanlayout

#endif
