#ifndef LAYOUT_WRITE_CODES_P_H
#define LAYOUT_WRITE_CODES_P_H

#include "model/Layout.h"

#include <QByteArray>
#include <QVector>

#include <optional>

/// The codes of value sets, as other programs need them.
namespace vanlayout
{

/// A number of a file in decimal digits.
struct DecimalNumber {
    QByteArray spelling;  ///< in JSON syntax; empty for a text that is not a number
    bool isWhole = false; ///< without decimals
    bool isKept = false;  ///< whether a double represents the value, so that every program reads the same number
};

/// Reads a number of a dictionary: blanks around it, a sign, leading zeros and a decimal comma are allowed.
///
/// A double represents a value if the shortest digits of the nearest double are those of the text, as for all numbers
/// of 15 digits.
DecimalNumber decimalNumberOf(const QString &code);

/// The value of a number of a dictionary; not a number for other texts.
double valueOf(const QString &code);

/// A code as written in a cell: a number without surrounding blanks, a text without trailing blanks.
QString cellOf(const Item &item, const QString &code);

/// True if an item can only have the codes of its value sets, as in CSPro. A statistical file labels some of the values
/// and allows any other.
bool isClosed(const Item &item);

/// True if a range is one code.
inline bool isSingle(const Range &range)
{
    return range.to.isEmpty() || range.to == range.from;
}

/// True if a value means missing at this code: it is special, one of the item's user-missing values, or an extended
/// missing value such as `.a`.
bool isMissing(const Item &item, const Value &value, const Range &range);

/// A code that means missing.
struct MissingCode {
    QString code;                 ///< as in a cell; empty for blanks
    const Value *value = nullptr; ///< value that labels it; null if there is none
};

/// The missing codes of an item, each once: those of its value sets, in their order, then the single user-missing
/// values. Ranges of user-missing values are not included.
///
/// A number of a dictionary has each spelling that its cells can have: that of the dictionary (`09`, `9,50`), the plain
/// one (`9`, `9.5`), and padded with zeros to the length of the item if its data is.
QVector<MissingCode> missingCodesOf(const Item &item);

/// The only range of an item with a closed list of values that are not missing; none if there are several ranges, or
/// codes besides the range, or if the range ends before it begins.
std::optional<Range> onlyRangeOf(const Item &item);

} // namespace vanlayout

#endif
