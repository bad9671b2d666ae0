#ifndef LAYOUT_LOAD_SASTABLE_P_H
#define LAYOUT_LOAD_SASTABLE_P_H

#include "load/Plan_p.h"
#include "load/SasFormats_p.h"

#include <QByteArray>

namespace vanlayout
{

class SasLines;

/// The steps of a SAS program that make one table.
class SasTable
{
public:
    /// The formats are those of the plan, by the index of the codes. They have to live as long as the table.
    SasTable(const LoadPlan &loadPlan, const SasLines &linesOfProgram, const QVector<SasFormat> &formatsOfCodes,
             int tableIndex);

    /// The steps, which make a data set in WORK and print the number of its rows.
    QByteArray steps() const;

private:
    QByteArray lengths() const;
    QByteArray isRecord() const;
    QByteArray fieldOf(int start, int length, bool isShifted) const;
    QByteArray fieldOf(const PlannedColumn &column) const;
    QByteArray partOfOccurrence() const;
    QByteArray columns(ColumnRole role) const;
    QByteArray textColumn(const PlannedColumn &column) const;
    QByteArray numberColumn(int column) const;
    QVector<QByteArray> keyNames() const;
    bool needsKeys() const { return table.hasOccurrence && !table.isItemTable(); }
    QByteArray occurrences() const;
    QByteArray counts() const;
    QByteArray kept() const;
    QByteArray labels() const;
    QByteArray numberLabel() const;
    QByteArray occurrenceNumbers() const;
    QByteArray recordNumbers() const;
    QByteArray rows() const;

    const LoadPlan &plan;
    const SasLines &lines;
    const QVector<SasFormat> &formats;
    const PlannedTable &table;
    int index;
    const QByteArray &p; ///< beginning of the names that the program makes
};

} // namespace vanlayout

#endif
