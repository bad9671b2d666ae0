#ifndef LAYOUT_READ_DDIVARIABLE_P_H
#define LAYOUT_READ_DDIVARIABLE_P_H

#include "read/DdiContent_p.h"
#include "read/DdiXml_p.h"

namespace vanlayout::ddi
{

/// Reads the current element, a `var`, and leaves it. The item has its value sets and missing values, but no columns:
/// these depend on the record. \a isWeight is set to whether the variable is a weight.
Variable readVariable(Xml &xml, bool &isWeight);

} // namespace vanlayout::ddi

#endif
