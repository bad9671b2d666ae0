#ifndef LAYOUT_WRITE_DDI_H
#define LAYOUT_WRITE_DDI_H

#include "model/Layout.h"
#include "vanlayout_export.h"

#include <QString>

class QIODevice;

namespace vanlayout
{

/// The readers that a DDI document is made for.
enum class DdiProfile {
    Plain, ///< archives and catalogues: what the file says, and nothing else
    Ipums  ///< beside that, what readers of IPUMS extracts need to cut the lines of a data file
};

/// Settings of a DDI document.
struct DdiOptions {
    QString title; ///< of the study; empty for the label of the dictionary, or its name where there is no label
    DdiProfile profile = DdiProfile::Plain;
};

/// Writes a layout as one document of DDI Codebook 2.5: XML in UTF-8, valid whatever texts the layout has.
///
/// Each column that the layout has for other programs is one `var`: an id item of a level is one variable of all
/// records at and below its level, each occurrence of an item is a variable of its own (`X_1` ... `X_n`). Columns are
/// those of the data, 1-based characters. What the file does not state is not written. `docs/export.md` lists the
/// elements.
///
/// A character that XML cannot hold is replaced by a visible one. Streams onto \a device, which is open for writing.
/// False if the device did not take all bytes; its error string says why. The caller asks exportProblem() before.
VANLAYOUT_EXPORT bool writeDdi(const Layout &layout, QIODevice &device, const DdiOptions &options = {});

} // namespace vanlayout

#endif
