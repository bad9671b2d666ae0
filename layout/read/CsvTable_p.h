#ifndef LAYOUT_READ_CSVTABLE_P_H
#define LAYOUT_READ_CSVTABLE_P_H

#include <QByteArray>
#include <QStringList>
#include <QVector>

namespace vanlayout
{

/// A row of a CSV file.
struct CsvRow {
    int line = 0; ///< 1-based line at which the row begins
    QStringList cells;
};

/// The rows of a CSV file; those without any text are omitted.
struct CsvTable {
    QVector<CsvRow> rows;
    QString problem; ///< the reason why reading ended, as a predicate; empty if the file was read whole
    int line = 0;    ///< 1-based line of the problem
};

/// Reads a CSV file as spreadsheets write it: UTF-8, with or without a byte-order mark, or Windows-1252 if it is not
/// UTF-8; lines end in LF or CR LF. The separator is the first comma, semicolon or tab of the first line that is not in
/// quotation marks; a comma if there is none.
///
/// A cell in quotation marks may contain separators, line breaks, and quotation marks, which are doubled. Problems are
/// a quotation mark within another cell, a text after a closing one, and a missing closing one.
CsvTable readCsvTable(const QByteArray &bytes);

} // namespace vanlayout

Q_DECLARE_TYPEINFO(vanlayout::CsvRow, Q_MOVABLE_TYPE);

#endif
