#ifndef BENCH_GENERATEDSTATFILE_H
#define BENCH_GENERATEDSTATFILE_H

#include "StatFile.h"

#include <QString>

/// What a generated Stata or SPSS file holds.
struct StatFileShape {
    StatFile::Kind kind; ///< sav or dta
    int variables;       ///< doubles, or ints in a Stata file with label sets
    int labels;          ///< labels of a set
    bool isOneSet;       ///< one set for all variables, or one each
    qint64 rows;         ///< rows of nothing but zeros, kept as a hole in the file
};

/// Writes such a file; the same shape always gives the same bytes.
void generateStatFile(const StatFileShape &shape, const QString &path);

#endif
