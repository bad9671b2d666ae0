#ifndef LAYOUT_LOAD_RPROGRAM_P_H
#define LAYOUT_LOAD_RPROGRAM_P_H

#include "load/Plan_p.h"

namespace vanlayout
{

/// The load program for R.
QVector<LoadFile> rProgram(const LoadPlan &plan);

} // namespace vanlayout

#endif
