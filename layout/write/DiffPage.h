#ifndef LAYOUT_WRITE_DIFFPAGE_H
#define LAYOUT_WRITE_DIFFPAGE_H

#include "compare/Diff.h"
#include "vanlayout_export.h"

class QIODevice;

namespace vanlayout
{

/// Writes a comparison as one self-contained HTML page in UTF-8 that looks like a codebook: the facts of both files,
/// the number of changes of each kind, and the changes by record and item. The page can be read without its script,
/// which filters the list by kind or by words. Texts of the files are shown as plain text, even if they contain HTML.
///
/// Streams onto \a device, which must be open for writing. Returns false if the device did not accept all bytes; its
/// error string gives the reason.
VANLAYOUT_EXPORT bool writeDiffPage(const LayoutDiff &diff, QIODevice &device);

} // namespace vanlayout

#endif
