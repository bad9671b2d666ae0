#ifndef LAYOUT_WRITE_DIFFPAGE_H
#define LAYOUT_WRITE_DIFFPAGE_H

#include "compare/Diff.h"
#include "vanlayout_export.h"

class QIODevice;

namespace vanlayout
{

/// Writes a comparison as one HTML page that looks like a codebook and needs nothing beside it: both files, how often
/// each kind occurs, and the changes by record and item. It can be read without its script, which narrows the list down
/// to a kind or to words. Texts of the files are only texts on it.
///
/// Streams onto \a device, which is open for writing. False if the device did not take all bytes.
VANLAYOUT_EXPORT bool writeDiffPage(const LayoutDiff &diff, QIODevice &device);

} // namespace vanlayout

#endif
