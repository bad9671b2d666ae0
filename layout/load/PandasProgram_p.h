#ifndef LAYOUT_LOAD_PANDASPROGRAM_P_H
#define LAYOUT_LOAD_PANDASPROGRAM_P_H

#include "load/Plan_p.h"

namespace vanlayout
{

/// The load program for pandas: a module of Python.
QVector<LoadFile> pandasProgram(const LoadPlan &plan);

/// The name of this module: that of the program, or with `_2` after it if the language or a module that it imports has
/// this name. A program with the name of such a module would be imported in its place.
QString pythonModule(const LoadPlan &plan);

} // namespace vanlayout

#endif
