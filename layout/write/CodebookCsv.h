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
    QString language;        ///< of the labels; empty for the primary one
    bool isForExcel = false; ///< a byte-order mark in front, and no text that a spreadsheet would run as a formula
};

/// Writes a code book as one table: a line an item and code, so that a spreadsheet can filter it. RFC 4180 with CR LF
/// and a header line, UTF-8.
///
/// The columns are level, record, name, label, type, start, length, occurrences, subitemOf, decimals, format, measure,
/// missing, note, valueSet, from, to, valueLabel, special, valueNote. Ids have the record `(ids)`. An item with value
/// sets has a line for each code and each range of them, with `to` for a range alone, and one for a value without
/// codes; another item has one line. Items are not repeated for their occurrences.
///
/// All texts are exact. For Excel, a text that is no number and begins with `=`, `+`, `-`, `@`, a tab or a line break
/// has an apostrophe in front, as a spreadsheet would run it as a formula.
///
/// Streams onto \a device, which is open for writing. False if the device did not take all bytes; its error string says
/// why.
VANLAYOUT_EXPORT bool writeCodebookCsv(const Layout &layout, QIODevice &device, const CodebookCsvOptions &options = {});

} // namespace vanlayout

#endif
