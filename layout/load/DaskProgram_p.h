#ifndef LAYOUT_LOAD_DASKPROGRAM_P_H
#define LAYOUT_LOAD_DASKPROGRAM_P_H

#include "load/Plan_p.h"

namespace vanlayout
{

/// The load program for Dask: a module of Python, and the module for pandas that it uses.
QVector<LoadFile> daskProgram(const LoadPlan &plan);

} // namespace vanlayout

#endif
