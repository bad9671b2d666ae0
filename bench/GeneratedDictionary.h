#ifndef BENCH_GENERATEDDICTIONARY_H
#define BENCH_GENERATEDDICTIONARY_H

#include <QByteArray>

/// A CSPro text dictionary of one record with \a items items, each with a value set of \a values labelled values, or
/// with none for 0. The same numbers always give the same bytes.
QByteArray generatedDictionary(int items, int values);

/// The same dictionary in the JSON form, laid out with line breaks and blanks as CSPro writes it.
QByteArray generatedJsonDictionary(int items, int values);

/// A CSPro text dictionary of \a records records without items, with names of about the same length.
QByteArray generatedRecords(int records);

#endif
