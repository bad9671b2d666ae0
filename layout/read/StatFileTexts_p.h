#ifndef LAYOUT_READ_STATFILETEXTS_P_H
#define LAYOUT_READ_STATFILETEXTS_P_H

#include <QString>

#include <readstat.h>

#include <cstddef>

namespace vanlayout
{

/// Conversion of numbers, codes and formats of statistical files to texts of the layout.
namespace stat
{

/// The text of a C string of ReadStat in UTF-8; \a bound is the size of its field in bytes, in which it may be
/// unterminated.
QString textOf(const char *text, size_t bound = SIZE_MAX);
/// The same for a text that ReadStat has not converted from the encoding of old Stata files, Windows-1252.
QString textOfOldStata(const char *text, size_t bound = SIZE_MAX);

/// The shortest digits that read back to the same number. Plain digits if the decimal exponent is from -4 to 15
/// (`100000`, `0.0001`); otherwise `d.ddde+NN` with at least two digits of the exponent. Infinite numbers are `inf` and
/// `-inf`, NaN is `.`.
QString spelled(double number);

/// The code of a value label: a number, a text, `.a` to `.z`, `._` or `.`.
QString codeOf(const readstat_value_t &value);
/// One end of a range of missing values: like codeOf(), but a text has no trailing blanks, and an open end is `-inf` or
/// `inf`.
QString missingCodeOf(const readstat_value_t &value);

/// The first digits in a format: 8 for `F8.2`, 12 for `%-12.3f`, 20 for `DATETIME20`, 0 for `%td`.
int widthInFormat(const QString &format);
/// The digits after the last `.` or `,` of a format if only letters follow: 2 for `F8.2` and `%9.2f`, otherwise 0.
int decimalsInFormat(const QString &format);

} // namespace stat

} // namespace vanlayout

#endif
