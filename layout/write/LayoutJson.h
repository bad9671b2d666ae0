#ifndef LAYOUT_WRITE_LAYOUTJSON_H
#define LAYOUT_WRITE_LAYOUTJSON_H

#include "model/Layout.h"
#include "vanlayout_export.h"

class QIODevice;

namespace vanlayout
{

/// Whether a JSON document stands on one line or is indented for people.
enum class JsonStyle { Compact, Pretty };

/// Writes a layout as one JSON object in UTF-8, followed by a line feed. `docs/layout.md` describes the keys and
/// `docs/layout.schema.json` is their schema; a key whose value is its default is left out.
///
/// Streams onto \a device, which is open for writing. False if the device did not take all bytes; its error string says
/// why.
VANLAYOUT_EXPORT bool writeLayoutJson(const Layout &layout, QIODevice &device, JsonStyle style = JsonStyle::Compact);

/// Writes the object `{"file", "error": {"id", "message", "line"}}` for a file that gave no layout, followed by a line
/// feed; `line` is left out where it is 0. \a layout has an error.
VANLAYOUT_EXPORT bool writeErrorJson(const Layout &layout, QIODevice &device, JsonStyle style = JsonStyle::Compact);

} // namespace vanlayout

#endif
