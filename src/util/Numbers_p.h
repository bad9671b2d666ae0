#ifndef UTIL_NUMBERS_P_H
#define UTIL_NUMBERS_P_H

#include <QString>

/// Converts numbers to text and back, with exactly the results of Qt. The short forms that are usual in dictionaries
/// are converted faster.
namespace numbers
{

/// Returns the result of `QString::toDouble`; 0 for a text that it refuses, which includes a number that overflows.
double toDouble(const QString &text);

/// Returns the result of `QString::toInt` of Qt 5 in base 10, which allows blanks of every script around the digits.
/// Sets \a ok, unless null, to whether \a text is a number that an `int` holds; returns 0 if it is not.
int toInt(QStringView text, bool *ok = nullptr);

/// Returns the result of `QString::number` in format g with precision 6: "1e+06" for 1000000.
QString toText(double value);

/// Appends toText() of \a value to \a text.
void appendText(QString &text, double value);

/// Returns \a value truncated toward zero; the smallest int32 if int32 cannot hold it.
int truncated(double value);

/// Returns \a value, or the nearest number that int32 can hold.
int clamped(qint64 value);

} // namespace numbers

#endif
