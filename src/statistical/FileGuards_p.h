#ifndef STATISTICAL_FILEGUARDS_P_H
#define STATISTICAL_FILEGUARDS_P_H

#include "util/StataNames_p.h"

#include <QString>

/// Checks of a file before ReadStat reads it.
namespace statistical
{

/// The reason why a file is not read, or not to its end, other than an error that ReadStat finds in its contents.
struct ReadProblem {
    QString line;            ///< for a person; null if there is no problem
    bool isOfDevice = false; ///< whether the system failed to read the file

    bool isNull() const { return line.isNull(); }
};

/// Returns the reason why ReadStat must not read the SPSS file at \a path; no problem if ReadStat reads the file, or
/// refuses it, without harm.
ReadProblem spssProblem(const QString &path);

/// Returns the problem of a file that the system failed to read with the error number \a error.
ReadProblem deviceProblem(int error);

/// Returns the max sizes of names of label sets in the Stata file at \a path.
NameBounds stataNameBounds(const QString &path);

} // namespace statistical

#endif
