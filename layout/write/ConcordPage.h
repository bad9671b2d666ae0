#ifndef LAYOUT_WRITE_CONCORDPAGE_H
#define LAYOUT_WRITE_CONCORDPAGE_H

#include "compare/Concord.h"
#include "vanlayout_export.h"

class QIODevice;

namespace vanlayout
{

/// Writes a concordance as one self-contained HTML page in UTF-8 that looks like a codebook: a table with a row for
/// each variable, a row for each of its codes, and a column for each round. The column of the names and the row of the
/// rounds stay in view. A search and a list of the kinds of changes narrow the table. The page contains the table as
/// JSON, which its script draws. Texts of the files are shown as plain text, even if they contain HTML.
///
/// Streams onto \a device, which must be open for writing. Returns false if the device did not accept all bytes; its
/// error string gives the reason.
VANLAYOUT_EXPORT bool writeConcordPage(const Concordance &concordance, QIODevice &device);

} // namespace vanlayout

#endif
