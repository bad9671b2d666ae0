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
    QString title; ///< title of the study; empty for the label of the layout, or its name
    JsonStyle style = JsonStyle::Pretty;
};

/// Writes metadata of CSV on the Web (W3C Recommendation "Metadata Vocabulary for Tabular Data") in UTF-8: one table
/// group with a table per record type, for the data as CSV files with a header line.
///
/// - A table is `RECORD.csv`; characters that are not allowed in file names become `_`. Its columns are the ids of all
///   levels, then the items of the record; a repeating item is `X_1` ... `X_n`.
/// - `name` has letters, digits, `_` and single points; other characters are percent-encoded. `titles` has the name as
///   in the header line, without a language (`und`), and the label in each language.
/// - `datatype`: `integer`, `decimal` (CSPro) or `double` (statistical files), `string` with `maxLength`, `date` and
///   `datetime`. Dates of CSPro that keep their digits have a `format` such as `yyyyMMdd`, those of statistical files
///   are in ISO 8601. `minimum` and `maximum` are present if one range of the file contains all values.
/// - `null`: the empty cell, the codes of special values, user-missing codes. Ranges of user-missing values have no
///   equivalent.
/// - `primaryKey`: the ids, for records that a case has once. A repeating record has none, because the file has no
///   column for the number of an occurrence. `foreignKeys`: the ids, referring to the first record of the level that is
///   required and occurs once, or to that of the level above.
/// - Value sets are `schema:DefinedTermSet` annotations of their column, with ranges as `schema:QuantitativeValue`.
///   They do not restrict a column.
///
/// Streams onto \a device, which must be open for writing. Returns false if the device did not accept all bytes; its
/// error string gives the reason. Not to be called for a layout with an exportProblem().
VANLAYOUT_EXPORT bool writeCsvw(const Layout &layout, QIODevice &device, const CsvwOptions &options = {});

} // namespace vanlayout

#endif
