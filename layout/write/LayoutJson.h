#ifndef LAYOUT_WRITE_LAYOUTJSON_H
#define LAYOUT_WRITE_LAYOUTJSON_H

#include "model/Layout.h"
#include "vanlayout_export.h"

class QIODevice;

namespace vanlayout
{

/// Compact is a JSON document on one line, Pretty is one indented by two blanks.
enum class JsonStyle { Compact, Pretty };

/// Writes a layout as one JSON object in UTF-8, followed by a line feed. `docs/layout.md` describes the keys and
/// `docs/layout.schema.json` is their schema; a key with its default value is omitted.
///
/// Streams onto \a device, which must be open for writing. Returns false if the device did not accept all bytes; its
/// error string gives the reason.
VANLAYOUT_EXPORT bool writeLayoutJson(const Layout &layout, QIODevice &device, JsonStyle style = JsonStyle::Compact);

/// Writes the object `{"file", "error": {"id", "message", "line"}}` for a file without a layout, followed by a line
/// feed; `line` is omitted if it is 0. \a layout must have an error.
VANLAYOUT_EXPORT bool writeErrorJson(const Layout &layout, QIODevice &device, JsonStyle style = JsonStyle::Compact);

} // namespace vanlayout

#endif
