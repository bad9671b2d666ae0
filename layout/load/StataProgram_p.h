#ifndef LAYOUT_LOAD_STATAPROGRAM_P_H
#define LAYOUT_LOAD_STATAPROGRAM_P_H

#include "load/Plan_p.h"

namespace vanlayout
{

/// The program for Stata: `NAME.do`, and for each table a dictionary `TABLE.dct` of the columns of its items, which are
/// read as texts. The program makes numbers of them, and saves `TABLE.dta`.
QVector<LoadFile> stataProgram(const LoadPlan &plan);

/// Words of the language, which cannot name a variable: `_all`, `if`, `str8` ...
bool isReservedInStata(const QString &name);

} // namespace vanlayout

#endif
