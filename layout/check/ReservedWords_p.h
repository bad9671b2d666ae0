#ifndef LAYOUT_CHECK_RESERVEDWORDS_P_H
#define LAYOUT_CHECK_RESERVEDWORDS_P_H

#include <QString>

namespace vanlayout
{

/// Whether a name is a word of the CSPro language in any case, which cannot be the name of an element.
bool isCSProWord(const QString &name);

} // namespace vanlayout

#endif
