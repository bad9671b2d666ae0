#ifndef LAYOUT_WRITE_CONCORDJSON_H
#define LAYOUT_WRITE_CONCORDJSON_H

#include "compare/Concord.h"
#include "vanlayout_export.h"
#include "write/LayoutJson.h"

class QIODevice;

namespace vanlayout
{

/// Writes a concordance as one JSON object in UTF-8, followed by a line feed. `docs/concord.md` describes the keys. All
/// keys are written, also with empty texts.
///
/// Streams onto \a device, which must be open for writing. Returns false if the device did not accept all bytes; its
/// error string gives the reason.
VANLAYOUT_EXPORT bool writeConcordJson(const Concordance &concordance, QIODevice &device,
                                       JsonStyle style = JsonStyle::Compact);

} // namespace vanlayout

#endif
