#ifndef LAYOUT_LOAD_SPSSFIELDS_P_H
#define LAYOUT_LOAD_SPSSFIELDS_P_H

#include "load/Plan_p.h"

#include <QByteArray>

namespace vanlayout
{

class SpssLines;

/// The statements of an SPSS program that make the cells of one table from `@line`.
class SpssFields
{
public:
    SpssFields(const SpssLines &linesOfProgram, const PlannedTable &plannedTable)
        : lines(linesOfProgram)
        , table(plannedTable)
    {
    }

    /// Variables of the program that the others need.
    QByteArray declarations() const;
    /// The cells of all columns, or of the ids of an item table.
    QByteArray constantColumns() const;
    /// The cells of the columns of one occurrence, which begins #shift characters after the first.
    QByteArray occurrenceColumns() const;
    /// The statements that set #from and #size, and the variable in which they are columns: one occurrence.
    QByteArray occurrence() const;
    QByteArray occurrenceSource() const;
    /// Prints the number of rows, and how many cells of each column are no numbers.
    QByteArray counts(const QByteArray &rows) const;

private:
    using Columns = QVector<const PlannedColumn *>;

    /// Whether the columns of a field are known, or depend on the occurrence.
    enum class Place { Constant, Shifted };

    Columns columnsOf(Place place, bool areNumbers) const;
    QByteArray cells(Place place) const;
    QByteArray cellsOf(const Columns &columns, Place place) const;
    QByteArray texts(const Columns &columns, Place place) const;
    /// \a first is the index of the first column among the numbers of its place.
    QByteArray numbers(const Columns &columns, Place place, int first) const;
    QByteArray repeat(const Columns &columns, Place place) const;
    QByteArray position(Place place) const;
    QByteArray field(const Columns &columns, Place place) const;
    QByteArray wrongCounts(const Columns &columns, const QByteArray &vector) const;

    const SpssLines &lines;
    const PlannedTable &table;
};

} // namespace vanlayout

#endif
