#ifndef LAYOUT_WRITE_CODEBOOKCSV_H
#define LAYOUT_WRITE_CODEBOOKCSV_H

#include "model/Layout.h"
#include "vanlayout_export.h"

#include <QString>

class QIODevice;

namespace vanlayout
{

/// Settings for writeCodebookCsv().
struct VANLAYOUT_EXPORT CodebookCsvOptions {
    QString language;        ///< code of the language of the labels; empty for the primary one
    bool isForExcel = false; ///< whether to begin with a byte-order mark and to escape texts that would be evaluated
};

/// Writes a codebook as one table for spreadsheets: one line per item and code. RFC 4180 with CR LF and a header line,
/// UTF-8.
///
/// The columns are level, record, name, label, type, start, length, occurrences, subitemOf, decimals, format, measure,
/// missing, note, valueSet, from, to, valueLabel, special, valueNote. Id items have the record `(ids)`. An item with
/// value sets has one line for each code and each range of their values, with `to` only for a range, and one line for
/// each value without codes. Any other item has one line. Items are not repeated for their occurrences.
///
/// All texts are exact. With `isForExcel`, a text that is not a number and begins with `=`, `+`, `-`, `@`, a tab or a
/// line break is prefixed with an apostrophe, because a spreadsheet would evaluate it as a formula.
///
/// Streams onto \a device, which must be open for writing. Returns false if the device did not accept all bytes; its
/// error string gives the reason.
VANLAYOUT_EXPORT bool writeCodebookCsv(const Layout &layout, QIODevice &device, const CodebookCsvOptions &options = {});

} // namespace vanlayout

#endif
