#ifndef LAYOUT_LOAD_SQLTABLE_P_H
#define LAYOUT_LOAD_SQLTABLE_P_H

#include "load/Plan_p.h"

#include <QByteArray>

namespace vanlayout
{

/// How a database spells the parts of the query of a table.
struct SqlDialect {
    /// The value of the characters of a column, without regard to special codes.
    QByteArray (*cell)(const PlannedColumn &column, const QByteArray &field);
    /// Whether the characters of a numeric column are neither blank nor a number.
    QByteArray (*isNoNumber)(const PlannedColumn &column, const QByteArray &field);
    QByteArray lines;      ///< the table of the lines, with columns `text` and `mark`
    QByteArray lineNumber; ///< its column with the number of the line
    QByteArray fence;      ///< after a query whose columns are computed once, although others use them several times
    QByteArray (*codeEnd)(const PlannedColumn &column); ///< SqlCell::codeEnd
    bool ordersCases; ///< whether rows are sorted before their fields are read, and stay in that order
};

/// The query that makes the rows of a table from the lines of the file.
class SqlTable
{
public:
    SqlTable(const LoadPlan &loadPlan, const PlannedTable &planned, const SqlDialect &sqlDialect);

    /// The rows, in the order of the file.
    QByteArray rows() const;
    /// The query of the lines with this record type, one row for each occurrence in an item table. It has the line as
    /// `text`.
    QByteArray source() const;
    /// The names, as literals `TABLE.COLUMN`, of the columns whose texts that are no numbers are counted.
    QByteArrayList countedNames() const;
    /// Their counts, as expressions in a query of source(), in the same order.
    QByteArrayList counts() const;
    /// The condition that is true for an occurrence that is not blank, in a query of source().
    QByteArray isOccurrence(const QByteArray &line = "text") const;

private:
    QByteArray ids() const;
    QByteArray cases() const;
    QByteArray fields() const;
    QByteArray cells() const;
    QByteArray occurrences() const;

    const LoadPlan &plan;
    const PlannedTable &table;
    const SqlDialect &dialect;
    QByteArray lineNumber; ///< names that no column of the table has
    QByteArray lineText;
};

} // namespace vanlayout

#endif
