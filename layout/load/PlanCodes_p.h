#ifndef LAYOUT_LOAD_PLANCODES_P_H
#define LAYOUT_LOAD_PLANCODES_P_H

#include "load/Plan_p.h"
#include "load/TargetRules_p.h"

namespace vanlayout
{

/// The codes of an item with at least one value set: those of the first.
CodeList codeListOf(const Item &item, const LoadOptions &options, const LengthLimit &labelLimit);

} // namespace vanlayout

#endif
