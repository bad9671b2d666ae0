#ifndef LAYOUT_WRITE_DIFFJSON_H
#define LAYOUT_WRITE_DIFFJSON_H

#include "compare/Diff.h"
#include "vanlayout_export.h"
#include "write/LayoutJson.h"

class QIODevice;

namespace vanlayout
{

/// Writes a comparison as one JSON object in UTF-8, followed by a line feed. `docs/diff.md` describes the keys; a
/// member of a change that is empty is omitted, but for the texts that its kind has.
///
/// Streams onto \a device, which is open for writing. False if the device did not take all bytes.
VANLAYOUT_EXPORT bool writeDiffJson(const LayoutDiff &diff, QIODevice &device, JsonStyle style = JsonStyle::Compact);

} // namespace vanlayout

#endif
