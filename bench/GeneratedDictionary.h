#ifndef BENCH_GENERATEDDICTIONARY_H
#define BENCH_GENERATEDDICTIONARY_H

#include <QByteArray>

/// A CSPro text dictionary of one record with \a items items, each with a value set of \a values labelled values, or
/// without a value set for 0. Equal arguments give equal bytes.
QByteArray generatedDictionary(int items, int values);

/// The same dictionary in the JSON form, with the same line breaks and blanks as from CSPro.
QByteArray generatedJsonDictionary(int items, int values);

/// A CSPro text dictionary of \a records records without items, with names of about the same length.
QByteArray generatedRecords(int records);

#endif
