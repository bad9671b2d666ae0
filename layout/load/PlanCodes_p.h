#ifndef LAYOUT_LOAD_PLANCODES_P_H
#define LAYOUT_LOAD_PLANCODES_P_H

#include "load/Plan_p.h"
#include "load/TargetRules_p.h"

namespace vanlayout
{

/// The codes of an item with at least one value set: those of the first.
CodeList codeListOf(const Item &item, const LoadOptions &options, const LengthLimit &labelLimit);

/// The content of the cells with a code of a value that is special or, with Special::None, is not.
CellOutcome outcomeOf(Special special, SpecialForm form);

} // namespace vanlayout

#endif
