#ifndef LAYOUT_WRITE_DIFFJSON_H
#define LAYOUT_WRITE_DIFFJSON_H

#include "compare/Diff.h"
#include "vanlayout_export.h"
#include "write/LayoutJson.h"

class QIODevice;

namespace vanlayout
{

/// Writes a comparison as one JSON object in UTF-8, followed by a line feed. `docs/diff.md` describes the keys. Empty
/// members of a change are omitted, except `before` and `after` if a change of its kind has them.
///
/// Streams onto \a device, which must be open for writing. Returns false if the device did not accept all bytes; its
/// error string gives the reason.
VANLAYOUT_EXPORT bool writeDiffJson(const LayoutDiff &diff, QIODevice &device, JsonStyle style = JsonStyle::Compact);

} // namespace vanlayout

#endif
