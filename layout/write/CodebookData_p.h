#ifndef LAYOUT_WRITE_CODEBOOKDATA_P_H
#define LAYOUT_WRITE_CODEBOOKDATA_P_H

#include "write/Codebook.h"

namespace vanlayout
{

/// Writes the data of a codebook: a layout as one JSON object that can be the content of a script element without
/// further escapes.
///
/// Keys without a value are omitted, as are defaults. Elements that occur often have short forms:
///  - A label is a text, or a list of texts. The n-th text of the list is in the n-th language; a pair in the list is
///    the 0-based number of a language and a text. The list of languages, pairs of code and name, is at the end.
///  - Codes are one text, or a list of texts and of pairs of the first and the last code of a range.
///  - A value is a list of its codes, its label and an object with its other properties.
///  - A value set has the number of its list in `lists`; equal lists occur once there.
///
/// Returns false if the device did not accept all bytes.
bool writeCodebookData(const Layout &layout, QIODevice &device, const CodebookOptions &options);

} // namespace vanlayout

#endif
