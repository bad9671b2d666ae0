#ifndef LAYOUT_WRITE_CSPROJSON_H
#define LAYOUT_WRITE_CSPROJSON_H

#include "model/Layout.h"
#include "vanlayout_export.h"
#include "write/Loss.h"

class QIODevice;

namespace vanlayout
{

/// Writes a CSPro dictionary in JSON form, as CSPro 8 does: the same members in the same order, indented by two blanks,
/// with short lists on one line and no line end after the last brace (CSPro dictionary format, JSON form).
///
/// A layout that was read from a JSON form keeps its version; any other becomes version 8.0. The layout must be one of
/// a CSPro dictionary (`Format::CSProText` or `Format::CSProJson`).
///
/// In a dictionary with relative positions, only ids state their start, and an item that is not where the items before
/// it end. Blanks at the end of codes are omitted, as CSPro does. Parts of a label that are equal to the first one,
/// and an empty last one, are kept, unlike in CSPro, so that the same text dictionary can be made from the file.
/// `security` is omitted if the layout has none: the settings are encrypted, and none are made up.
///
/// The JSON form cannot hold `ValueSetImages`, a stated record length that differs from the columns, a decimal mark
/// without decimals, and statements that CSPro does not know. They are appended to \a losses, which may be null.
///
/// Streams onto \a device, which must be open for writing. Returns false if the device did not accept all bytes; its
/// error string gives the reason.
VANLAYOUT_EXPORT bool writeCSProJson(const Layout &layout, QIODevice &device, Losses *losses = nullptr);

} // namespace vanlayout

#endif
