#ifndef LAYOUT_COMPARE_CONCORDWORDING_P_H
#define LAYOUT_COMPARE_CONCORDWORDING_P_H

#include "compare/Concord.h"

namespace vanlayout
{

/// How much the label of a code changed: None, Spelling, Wording or Meaning. A label that one of them lacks is no
/// change of meaning, but one of wording.
CodeChange wordingChange(const QString &before, const QString &after);

} // namespace vanlayout

#endif
