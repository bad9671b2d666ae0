#ifndef LAYOUT_LOAD_SPSSLINES_P_H
#define LAYOUT_LOAD_SPSSLINES_P_H

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

    /// A piece of the line that holds all of an item that begins in this 1-based column.
    QString pieceAt(int column) const { return pieces.at(indexOfPiece(column)); }
    /// The 1-based column within that piece.
    int columnInPiece(int column) const { return column - indexOfPiece(column) * pieceStep; }

    bool findsCharacters() const { return pieces.size() == 1; }
    /// The bytes of a variable for a text.
    int bytesOf(int characters) const;
    const QStringList &allPieces() const { return pieces; }
    static constexpr int pieceStep = 16000; ///< bytes from the start of one piece to that of the next
    static constexpr int pieceLength = 2 * pieceStep;

private:
    int indexOfPiece(int column) const { return findsCharacters() ? 0 : (column - 1) / pieceStep; }
    QByteArray lineColumns() const;
    QByteArray records() const;
    QByteArray recordNumber() const;
    QByteArray typeField() const;

    const LoadPlan &plan;
    bool isUtf8;
    int lastColumn = 1; ///< of all tables
    QStringList pieces;
};

/// The statements that print a count if it is not zero. \a before is an expression that ends in a comma, or empty.
QByteArray spssCount(const QByteArray &count, const QByteArray &before, const QByteArray &after);

} // namespace vanlayout

#endif
