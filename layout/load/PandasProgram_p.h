#ifndef LAYOUT_LOAD_PANDASPROGRAM_P_H
#define LAYOUT_LOAD_PANDASPROGRAM_P_H

#include "load/Plan_p.h"

namespace vanlayout
{

/// The load program for pandas: a module of Python.
QVector<LoadFile> pandasProgram(const LoadPlan &plan);

} // namespace vanlayout

#endif
