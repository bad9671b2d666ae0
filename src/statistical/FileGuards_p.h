#ifndef STATISTICAL_FILEGUARDS_P_H
#define STATISTICAL_FILEGUARDS_P_H

#include "statistical/StatisticalImport_p.h"

#include <QString>

/// What is looked at in a file before ReadStat reads it.
namespace statistical
{

/// Most variables of an SPSS file with long names, or with very long texts, that ReadStat has room for; with more it
/// writes through a null pointer.
constexpr int mostLongNames = 419328;
/// Most comparisons of names with which ReadStat may look for variables. For each set of value labels or missing values
/// of a long text it goes through the variables from the first on: this is 15,811 sets in a file of as many variables.
constexpr qint64 mostLookupSteps = 250000000;

/// Why ReadStat 1.1.8 cannot be trusted with the SPSS file at \a path, as one line for a person; null where it reads
/// the file, or refuses it, without harm.
///
/// A file of 64 KiB or more is also refused where its dictionary is not as ReadStat could read it up to the end: what
/// is behind such a place cannot be judged.
ReadProblem spssProblem(const QString &path);

/// The problem of a file that the system fails to read with the error \a error.
ReadProblem deviceProblem(int error);

/// How long the names of label sets can be in a Stata file of any version.
constexpr NameBounds widestStataNames = { 129, 129 };
/// How long they can be in the one at \a path, by the version in its head.
NameBounds stataNameBounds(const QString &path);

} // namespace statistical

#endif
