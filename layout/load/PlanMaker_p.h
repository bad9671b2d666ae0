#ifndef LAYOUT_LOAD_PLANMAKER_P_H
#define LAYOUT_LOAD_PLANMAKER_P_H

#include "load/Plan_p.h"
#include "load/TargetRules_p.h"

namespace vanlayout
{

/// Makes the plan for a target. The plan points into the layout, which has to live as long.
LoadPlan makeLoadPlan(const Layout &layout, const TargetRules &rules, const LoadOptions &options);

} // namespace vanlayout

#endif
