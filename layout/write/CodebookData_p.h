#ifndef LAYOUT_WRITE_CODEBOOKDATA_P_H
#define LAYOUT_WRITE_CODEBOOKDATA_P_H

#include "write/Codebook.h"

namespace vanlayout
{

/// Writes the data of a codebook: a layout as one JSON object that can be the content of a script element as it is.
///
/// Keys without a value are omitted, as are defaults. The forms of what occurs often are short:
///  - A label is a text, or the list of its texts. A text in the list is in the language of its place; a pair is a
///    number of a language and a text. The list of languages, pairs of code and name, is at the end.
///  - Codes are one text, or a list of texts and of pairs from and to.
///  - A value is a list of codes, label and an object with what else it has.
///  - A value set has the number of its list in `lists`, where equal lists are one.
bool writeCodebookData(const Layout &layout, QIODevice &device, const CodebookOptions &options);

} // namespace vanlayout

#endif
