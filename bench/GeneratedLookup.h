#ifndef BENCH_GENERATEDLOOKUP_H
#define BENCH_GENERATEDLOOKUP_H

#include <QString>

/// The order of the keys in a generated lookup file.
enum class LookupKeys {
    shuffled,  ///< all different, in random order
    ascending, ///< all different, in ascending order
    faulty     ///< in random order, 5 % of them repeated and 5 % one character too long
};

/// Writes a lookup file of \a lines lines with keys of nine digits and 1,000 different values, separated by a
/// blank. Equal arguments give equal bytes.
void generateLookup(LookupKeys keys, int lines, const QString &path);

#endif
