#ifndef LAYOUT_LOAD_TARGETS_P_H
#define LAYOUT_LOAD_TARGETS_P_H

#include "load/TargetRules_p.h"

#include <QVector>

namespace vanlayout
{

/// All targets, in the order of LoadTarget.
const QVector<TargetRules> &targetRules();

} // namespace vanlayout

#endif
