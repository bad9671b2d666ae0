#ifndef UTIL_NUMBERS_P_H
#define UTIL_NUMBERS_P_H

#include <QString>

/// Numbers as text and back, exactly as Qt reads and writes them; the short forms that fill dictionaries go a quicker
/// way to the same result.
namespace numbers
{

/// What `QString::toDouble` gives; 0 for a text that it refuses, one that overflows included.
double toDouble(const QString &text);

/// The result of `QString::toInt` of Qt 5 in base 10, which allows blanks of every script around the digits. Sets \a ok
/// to whether \a text is a number that an `int` holds.
int toInt(QStringView text, bool *ok);

/// `QString::number` in format g with precision 6: 1000000 reads "1e+06".
QString toText(double value);

/// Appends toText() of \a value to \a text.
void appendText(QString &text, double value);

/// \a value cut toward zero; the smallest int32 where int32 cannot hold it.
int truncated(double value);

/// \a value, or the nearest number that int32 can hold.
int clamped(qint64 value);

} // namespace numbers

#endif
