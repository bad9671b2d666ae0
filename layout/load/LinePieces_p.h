#ifndef LAYOUT_LOAD_LINEPIECES_P_H
#define LAYOUT_LOAD_LINEPIECES_P_H

#include "load/Plan_p.h"

namespace vanlayout
{

/// How the lines of a data file are divided into variables of SPSS or SAS, which have at most 32,767 bytes.
///
/// The columns of a line that fits into one variable are characters. A longer one is read as several pieces that
/// overlap, so that each item of at most maxItem bytes is in one of them, and its columns are bytes.
class LinePieces
{
public:
    explicit LinePieces(const LoadPlan &plan);

    static constexpr int maxText = 32767; ///< bytes of a variable
    static constexpr int step = 16000;    ///< bytes from the start of one piece to that of the next
    static constexpr int length = 2 * step;
    static constexpr int maxItem = length - step + 1; ///< bytes that are in one piece, wherever they begin

    int count() const { return pieces; }
    bool countCharacters() const { return pieces == 1; }
    /// The last column of all tables, 1-based.
    int lastColumn() const { return last; }
    /// The bytes of a line.
    qint64 bytesOfLine() const { return qint64(pieces - 1) * step + length; }

    /// The index of the piece for an item that begins in this 1-based column.
    int indexAt(int column) const { return countCharacters() ? 0 : (column - 1) / step; }
    /// The 1-based column within that piece.
    int columnInPiece(int column) const { return column - indexAt(column) * step; }
    /// How much of a field is in that piece: all of it, if it has at most 16,001 bytes.
    int lengthInPiece(int column, int length) const;
    /// A line for the head for each text of a table that is cut.
    QStringList cutTextRemarks(const PlannedTable &table) const;
    /// The bytes of a variable for a text.
    int bytesOf(int characters) const;

private:
    int bytesOfCharacter;
    int last;
    int pieces;
};

} // namespace vanlayout

#endif
