#ifndef LAYOUT_LOAD_SPSSLINES_P_H
#define LAYOUT_LOAD_SPSSLINES_P_H

#include "load/LinePieces_p.h"
#include "load/Plan_p.h"

#include <QByteArray>
#include <QStringList>

namespace vanlayout
{

/// How an SPSS program reads the lines of the data file and finds columns in them.
///
/// SPSS and PSPP count bytes, so that the program finds out at which byte each character of a line begins. Lines that
/// are too long for one variable are read as several, and their columns are bytes.
class SpssLines
{
public:
    explicit SpssLines(const LoadPlan &loadPlan);

    /// The statements from the path of the data file to the data set `lines`, with the number of the record type of
    /// each line in `@record`.
    QByteArray read() const;

    /// The statements that fill `#at`, for a table whose last character is in the column before \a columns.
    QByteArray positions(int columns) const;

    /// The piece of the line that holds all of an item that begins in this 1-based column.
    QString pieceAt(int column) const { return pieces.at(division.indexAt(column)); }
    const QStringList &allPieces() const { return pieces; }
    const LinePieces &divided() const { return division; }
    bool findsCharacters() const { return division.countCharacters(); }

private:
    int bytesOfShortLine() const;
    QByteArray lineColumns() const;
    QByteArray records() const;
    QByteArray recordNumber() const;
    QByteArray typeField() const;

    const LoadPlan &plan;
    bool isUtf8;
    LinePieces division;
    QStringList pieces;
};

/// The statements that print a count if it is not zero. \a before is an expression that ends in a comma, or empty.
QByteArray spssCount(const QByteArray &count, const QByteArray &before, const QByteArray &after);

} // namespace vanlayout

#endif
