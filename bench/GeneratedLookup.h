#ifndef BENCH_GENERATEDLOOKUP_H
#define BENCH_GENERATEDLOOKUP_H

#include <QString>

/// How the keys of a generated lookup file come.
enum class LookupKeys {
    shuffled,  ///< different, in no order
    ascending, ///< different, in their order
    faulty     ///< in no order, 5 % of them repeated and 5 % one character too long
};

/// Writes a lookup file of \a lines lines with keys of nine digits and 1,000 different values, parted by a blank. The
/// same numbers always give the same bytes.
void generateLookup(LookupKeys keys, int lines, const QString &path);

#endif
