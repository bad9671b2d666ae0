#ifndef LAYOUT_LOAD_SPSSPROGRAM_P_H
#define LAYOUT_LOAD_SPSSPROGRAM_P_H

#include "load/Plan_p.h"
#include "load/TargetRules_p.h"

namespace vanlayout
{

/// The program for SPSS and PSPP: `NAME.sps`, which saves a file `TABLE.sav` for each table.
///
/// Each line is read as one text, because both programs count the columns of a data file in bytes. The record types go
/// to data sets of their own; all of them are complete before the first file is saved.
QVector<LoadFile> spssProgram(const LoadPlan &plan);

/// Words of the language, which cannot name a variable.
bool isReservedInSpss(const QString &name);

} // namespace vanlayout

#endif
