#ifndef STATISTICAL_FILEGUARDS_P_H
#define STATISTICAL_FILEGUARDS_P_H

#include "statistical/StatisticalFormat_p.h"

#include <QString>

/// What is looked at in a file before ReadStat reads it.
namespace statistical
{

/// Why ReadStat cannot be trusted with the SPSS file at \a path; none where it reads the file, or refuses it, without
/// harm.
ReadProblem spssProblem(const QString &path);

/// The problem of a file that the system fails to read with the error \a error.
ReadProblem deviceProblem(int error);

/// How long the names of label sets can be in the Stata file at \a path.
NameBounds stataNameBounds(const QString &path);

} // namespace statistical

#endif
