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
    QByteArray spelling;  ///< as JSON spells numbers; empty for a text that is no number
    bool isWhole = false; ///< without decimals
    bool isKept = false;  ///< whether a double keeps the value, so that any program reads the same number
};

/// Reads a number of a dictionary: blanks around it, a sign, leading zeros and a decimal comma are allowed.
///
/// A value is kept where the shortest digits of the nearest double are those of the text: all numbers of 15 digits are.
DecimalNumber decimalNumberOf(const QString &code);

/// The value of a number of a dictionary; not a number for other texts.
double valueOf(const QString &code);

/// A code as it stands in a cell: without the blanks around it, of a text without those behind it.
QString cellOf(const Item &item, const QString &code);

/// Whether the codes that an item's value sets label are all that it may hold: those of CSPro are. A statistical file
/// labels some of the values and allows any other.
bool isClosed(const Item &item);

/// Whether a range is one code.
inline bool isSingle(const Range &range)
{
    return range.to.isEmpty() || range.to == range.from;
}

/// Whether a value stands for a missing one at this code: it is special, one of the item's user-missing values, or an
/// extended missing value such as `.a`.
bool isMissing(const Item &item, const Value &value, const Range &range);

/// A code that stands for no value.
struct MissingCode {
    QString code;                 ///< as in a cell; empty for blanks
    const Value *value = nullptr; ///< that labels it; null where none does
};

/// The missing codes of an item, each once: those that value sets label, in their order, then the single user-missing
/// values. Ranges of user-missing values are no codes.
///
/// A number of a dictionary has each spelling that its cells may have: the one of the dictionary (`09`, `9,50`), the
/// plain one (`9`, `9.5`), and filled with zeros to the length of the item where its data is.
QVector<MissingCode> missingCodesOf(const Item &item);

/// The one range that holds all values of a closed item that are not missing; none where there are several ranges, or
/// codes beside it, or where the range ends before it begins.
std::optional<Range> onlyRangeOf(const Item &item);

} // namespace vanlayout

#endif
