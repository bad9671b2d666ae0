#ifndef LAYOUT_LOAD_SQLTEXT_P_H
#define LAYOUT_LOAD_SQLTEXT_P_H

#include "load/Head_p.h"
#include "load/Plan_p.h"

#include <QByteArray>
#include <QByteArrayList>

/// The spelling that the SQL programs have in common. Nothing that is quoted can end its string.
namespace vanlayout
{

/// The comments of SQL.
CommentStyle sqlComment();

/// The comment before the statements of a table: its label, or its name.
QByteArray sqlTitle(const PlannedTable &table);

/// A name in double quotation marks.
QByteArray sqlName(const QString &name);

/// A text in single quotation marks. A long one becomes several literals, one on each line, with \a between at the ends
/// of the lines: `||`, or nothing where literals on successive lines are one. U+0000 becomes a blank.
QByteArray sqlText(const QString &text, const char *between = " ||");

/// The texts in parentheses: `('A', 'B')`.
QByteArray sqlTexts(const QStringList &texts);

/// Joins parts by commas, one part on each line, with an indent.
QByteArray sqlList(const QByteArrayList &parts, int indent);

/// A name for a column of a query that no column of the table has, compared without case: \a wanted, or \a wanted with
/// `_` after it.
QByteArray freeColumn(const PlannedTable &table, const QString &wanted);

/// The characters of a column in an expression for a line. In an item table the item's columns depend on `item_occ`.
QByteArray sqlField(const PlannedTable &table, const PlannedColumn &column, const QByteArray &line);

/// The expressions of a cell.
struct SqlCell {
    QByteArray value;   ///< compared with the codes
    QByteArray result;  ///< the cell itself; empty if it is the value
    int shift = 0;      ///< the value is the number times this power of ten
    QByteArray codeEnd; ///< after a number that is compared with the value; it makes the number a double
};

/// An expression for a cell that is NULL for special codes.
QByteArray sqlWithoutSpecials(const LoadPlan &plan, const PlannedColumn &column, const SqlCell &cell);

/// The statements that create the table of codes if it does not exist, and replace the rows of the tables of the plan.
/// The table may hold rows of other programs. \a table is its name as an expression.
QByteArray sqlReplaceCodes(const LoadPlan &plan, const QByteArray &table);

/// The names of all tables of the plan, in parentheses.
QByteArray sqlTableNames(const LoadPlan &plan);

/// The record types that lines may have, in parentheses; one empty text if lines have no type.
QByteArray sqlKnownMarks(const LoadPlan &plan);

} // namespace vanlayout

#endif
