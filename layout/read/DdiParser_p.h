#ifndef LAYOUT_READ_DDIPARSER_P_H
#define LAYOUT_READ_DDIPARSER_P_H

#include "read/DdiContent_p.h"
#include "read/DdiXml_p.h"

namespace vanlayout::ddi
{

/// Reads the current element, the root `codeBook`, and leaves it. After a problem of the document, the content is what
/// was read until then.
Content readCodeBook(Xml &xml);

} // namespace vanlayout::ddi

#endif
