#ifndef LAYOUT_LOAD_SASPROGRAM_P_H
#define LAYOUT_LOAD_SASPROGRAM_P_H

#include "load/Plan_p.h"

namespace vanlayout
{

/// The program for SAS: `NAME.sas`, which makes a data set of each table. A data step for each table reads the lines;
/// the data sets are copied to their library when all of them are made.
QVector<LoadFile> sasProgram(const LoadPlan &plan);

/// Names that SAS has for itself: of variables, `_N_` ..., and of data sets, `_NULL_` ...
bool isReservedInSas(const QString &name);
bool isReservedDataSet(const QString &name);

} // namespace vanlayout

#endif
