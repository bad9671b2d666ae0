#ifndef LAYOUT_CONVERT_DICTIONARYLANGUAGES_P_H
#define LAYOUT_CONVERT_DICTIONARYLANGUAGES_P_H

#include "model/Layout.h"

namespace vanlayout
{

/// Makes the codes of the languages of a layout names of CSPro, in the list and in all labels: "fr" becomes FR, and
/// "pt-BR" becomes PT_BR. A language without a name to display gets its code as written.
void nameLanguages(Layout &layout);

} // namespace vanlayout

#endif
