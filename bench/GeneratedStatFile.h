#ifndef BENCH_GENERATEDSTATFILE_H
#define BENCH_GENERATEDSTATFILE_H

#include "StatFile.h"

#include <QString>

/// The contents of a generated Stata or SPSS file.
struct StatFileShape {
    StatFile::Kind kind; ///< sav or dta
    int variables;       ///< number of variables: doubles, or ints in a Stata file with label sets
    int labels;          ///< number of labels of a set
    bool isOneSet;       ///< whether all variables share one set instead of having one each
    qint64 rows;         ///< number of rows of zeros, stored as a hole in the file
};

/// Writes such a file. Equal shapes give equal bytes.
void generateStatFile(const StatFileShape &shape, const QString &path);

#endif
