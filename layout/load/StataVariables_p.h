#ifndef LAYOUT_LOAD_STATAVARIABLES_P_H
#define LAYOUT_LOAD_STATAVARIABLES_P_H

#include "load/Plan_p.h"

#include <QByteArray>

namespace vanlayout
{

/// A variable that infix reads: a text in certain columns of the line.
struct StataVariable {
    QByteArray name;
    int start; ///< 1-based column
    int length;

    /// The variable as infix has it, such as `str AGE 5-7`.
    QByteArray declaration() const;
    /// The command that sets the variable in the first row, whose line begins with a byte-order mark.
    QByteArray firstLine(const QByteArray &condition) const;
};

constexpr int maxStataText = 2045; ///< bytes of a variable that is not a strL

/// The number of variables that hold a field of this length, of which none is longer than maxStataText.
int stataPieces(int length);

/// The variable for one piece of a field. \a piece is an index.
StataVariable stataPiece(const QByteArray &name, int start, int length, int piece);

/// The variables that infix reads for one table.
class StataVariables
{
public:
    StataVariables(const LoadPlan &loadPlan, const PlannedTable &plannedTable);

    const QVector<StataVariable> &all() const { return raw; }

    /// The text of the file `TABLE.dct`.
    QByteArray dictionary() const;

    /// The name of a variable that the program drops at the end. No column begins in this way.
    QByteArray own(const char *name) const;

    /// Whether the text of a column is a part of the variable own("line").
    bool isInLine(const PlannedColumn &column) const;
    /// Whether all occurrences of the item of an item table are parts of it.
    bool occurrencesAreInLine() const;
    /// A part of it as an expression; in an item table that of the occurrence, if \a isShifted.
    QByteArray partOfLine(int start, int length, bool isShifted) const;

    /// The variable of one piece of a column, for occurrences without `_` and their number.
    QByteArray nameOf(int column, int piece) const;
    /// The variable of one piece of an occurrence of the item of the table, without its number.
    QByteArray nameOfOccurrence(int piece) const;
    /// The variables that are blank on a line of blanks, if lines of the record type may be blank.
    QVector<QByteArray> namesOfWholeLine() const;

private:
    void addWholeLine();
    void addLine();
    void addColumn(int index);
    void addField(int index, const QByteArray &occurrence, int start);
    void addOccurrences();
    bool isInLine(int start, int length) const;
    int endOf(const PlannedColumn &column) const;
    int endOfOccurrences() const;

    const LoadPlan &plan;
    const PlannedTable &table;
    QByteArray prefix;
    QVector<StataVariable> raw;
};

} // namespace vanlayout

#endif
