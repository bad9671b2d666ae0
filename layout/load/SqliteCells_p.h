#ifndef LAYOUT_LOAD_SQLITECELLS_P_H
#define LAYOUT_LOAD_SQLITECELLS_P_H

#include "load/Plan_p.h"

#include <QByteArray>
#include <QByteArrayList>

/// Expressions with which the SQLite program cuts cells from a line.
///
/// A number is first kept as a whole number times the power of ten of its decimals. A column with the type INTEGER
/// or REAL makes a number of each text that is one; in lines where no number has a decimal mark, an exponent or a white
/// space other than a blank, these are exactly the numbers of CSPro. Any other text is unchanged, and is examined
/// later.
namespace vanlayout
{

/// The type of the column that first takes the cells.
QByteArray sqliteTypeOfCells(const PlannedColumn &column);

/// An expression for the cell of a plain line.
QByteArray sqlitePlainCell(const PlannedTable &table, const PlannedColumn &column);

/// A condition that is true for a cell of a number that is a text other than blanks: a text is greater than any number.
QByteArray sqliteIsText(const PlannedColumn &column, const QByteArray &cell);

/// A condition that is true for a cell of a plain line that is a number or blank, also where the line ends before it.
/// (A text that begins with a control character is less than blanks.)
QByteArray sqliteIsNumberOrBlank(const PlannedColumn &column, const QByteArray &cell);

/// An expression for the cell of any line: numbers with other characters than digits become texts that begin with `=`.
QByteArray sqliteOtherCell(const PlannedTable &table, const PlannedColumn &column);

/// A condition that is true for plain lines: SQLite takes no text in the columns for a number that is none in CSPro, as
/// it does with `1E2` and `5.`, and with white space other than blanks. One of the columns has to be a number.
QByteArray sqliteIsPlain(const PlannedTable &table, const QVector<PlannedColumn> &columns);

/// The terms joined by an operator such as " OR ", in groups, because SQLite limits the depth of expressions.
QByteArray sqliteJoined(const QByteArrayList &terms, const char *separator);

} // namespace vanlayout

#endif
