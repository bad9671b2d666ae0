#ifndef LAYOUT_WRITE_CONCORDCSV_H
#define LAYOUT_WRITE_CONCORDCSV_H

#include "compare/Concord.h"
#include "vanlayout_export.h"

class QIODevice;

namespace vanlayout
{

/// Options of the tables of a concordance in CSV.
struct VANLAYOUT_EXPORT ConcordCsvOptions {
    /// A byte-order mark, and an apostrophe before each text that a spreadsheet would evaluate as a formula.
    bool isForSpreadsheets = false;
};

/// Writes the table of variables as CSV (RFC 4180, UTF-8, CR LF) with a line of heads: one row for each variable.
///
/// The columns are `variable` (0-based index in Concordance::variables), `name` (of its first item; that
/// of a variable that begins in a later round is followed by a number if it is taken), `changes` (all words of its
/// cells, and `absent` if a round does not have it), and for each round `level`, `record`, `item`, `label` and
/// `changes`, each followed by a blank and the name of the round as in roundNames(). Several words are separated by
/// blanks. The cells of a round that does not have the variable are empty.
///
/// Streams onto \a device, which must be open for writing. Returns false if the device did not accept all bytes.
VANLAYOUT_EXPORT bool writeConcordVariablesCsv(const Concordance &concordance, QIODevice &device,
                                               const ConcordCsvOptions &options = {});

/// Writes the table of codes likewise: one row for each code or range of a variable.
///
/// The columns are `variable` and `name` as in the table of variables, `from`, `to` (empty for one code), `special`,
/// `change`, and for each round the label, with the name of the round as head. The cell of a round that does not have
/// the code is empty; that of a code without a label is `(no label)`.
VANLAYOUT_EXPORT bool writeConcordCodesCsv(const Concordance &concordance, QIODevice &device,
                                           const ConcordCsvOptions &options = {});

} // namespace vanlayout

#endif
