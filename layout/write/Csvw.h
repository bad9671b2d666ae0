#ifndef LAYOUT_WRITE_CSVW_H
#define LAYOUT_WRITE_CSVW_H

#include "model/Layout.h"
#include "vanlayout_export.h"
#include "write/LayoutJson.h"

class QIODevice;

namespace vanlayout
{

/// Settings for writeCsvw().
struct VANLAYOUT_EXPORT CsvwOptions {
    QString title; ///< of the whole; empty for the label of the layout, or its name
    JsonStyle style = JsonStyle::Pretty;
};

/// Writes metadata of CSV on the Web (W3C Recommendation "Metadata Vocabulary for Tabular Data") in UTF-8: one table
/// group with a table a record type, for the data as CSV files with a header line.
///
/// - A table is `RECORD.csv`; characters that a file cannot bear are `_`. Its columns are the ids of all levels, then
///   the items of the record; an item that occurs several times is `X_1` ... `X_n`.
/// - `name` has letters, digits, `_` and single points; other characters are in percent. `titles` has the name as it is
/// in the header
///   line, of no language (`und`), and the label in each language.
/// - `datatype`: `integer`, `decimal` (CSPro) or `double` (statistical files), `string` with `maxLength`, `date` and
///   `datetime`. Dates of CSPro that keep their digits have a `format` such as `yyyyMMdd`, those of statistical files
///   are those of ISO 8601. `minimum` and `maximum` stand where one range of the file holds all values.
/// - `null`: the empty cell, the codes of special values, user-missing codes. Ranges of user-missing values have no
///   equivalent.
/// - `primaryKey`: the ids, of records that a case has once. A record that repeats has none, as the file has no column
///   for the number of an occurrence. `foreignKeys`: the ids, to the first record of the level that is required and
///   occurs once, or of the level above.
/// - Value sets are `schema:DefinedTermSet` annotations of their column, with ranges as `schema:QuantitativeValue`;
/// they
///   close no column.
///
/// Streams onto \a device, which is open for writing. False if the device did not take all bytes; its error string says
/// why. A layout that exportProblem() refuses must not be written.
VANLAYOUT_EXPORT bool writeCsvw(const Layout &layout, QIODevice &device, const CsvwOptions &options = {});

} // namespace vanlayout

#endif
