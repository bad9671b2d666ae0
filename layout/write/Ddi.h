#ifndef LAYOUT_WRITE_DDI_H
#define LAYOUT_WRITE_DDI_H

#include "model/Layout.h"
#include "vanlayout_export.h"

#include <QString>

class QIODevice;

namespace vanlayout
{

/// The kind of programs that a DDI document is written for.
enum class DdiProfile {
    Plain, ///< archives and catalogues: only what the file states
    Ipums  ///< also what readers of IPUMS extracts need to split the lines of a data file
};

/// Settings for writeDdi().
struct DdiOptions {
    QString title; ///< title of the study; empty for the label of the dictionary, or its name if it has no label
    DdiProfile profile = DdiProfile::Plain;
};

/// Writes a layout as one document of DDI Codebook 2.5: XML in UTF-8, valid for any texts of the layout.
///
/// Each column of the layout's tables is one `var`: an id item of a level is one variable of all records at and below
/// its level, and each occurrence of an item is a variable (`X_1` ... `X_n`). Columns are those of the data, 1-based
/// characters. Nothing is written that the file does not state. `docs/export.md` lists the elements.
///
/// A character that XML cannot represent is replaced by a visible one. Streams onto \a device, which must be open for
/// writing. Returns false if the device did not accept all bytes; its error string gives the reason. Not to be called
/// for a layout with an exportProblem().
VANLAYOUT_EXPORT bool writeDdi(const Layout &layout, QIODevice &device, const DdiOptions &options = {});

} // namespace vanlayout

#endif
