#ifndef BENCH_GENERATEDLOOKUP_H
#define BENCH_GENERATEDLOOKUP_H

#include <QString>

/// The keys and values of a generated lookup file.
enum class LookupKeys {
    shuffled,  ///< keys all different, in random order
    ascending, ///< keys all different, in ascending order
    faulty,    ///< keys in random order, 5 % of them repeated and 5 % one character too long
    named      ///< as `shuffled`, but each value is different too
};

/// Writes a lookup file of \a lines lines with keys of nine digits and 1,000 different values unless \a keys requires
/// more, separated by a blank. Equal arguments give equal bytes.
void generateLookup(LookupKeys keys, int lines, const QString &path);

#endif
