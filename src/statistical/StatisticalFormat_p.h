#ifndef STATISTICAL_STATISTICALFORMAT_P_H
#define STATISTICAL_STATISTICALFORMAT_P_H

#include "import/Constants.h"
#include "statistical/FileGuards_p.h"
#include "util/StataNames_p.h"

#include <readstat.h>

#include <QByteArray>
#include <QString>

#include <cstddef>

/// The differences between the two statistical formats, and the properties of a variable as ReadStat delivers it.
namespace statistical
{

enum class TextEncoding { latin1, utf8 };

/// The rules by which one format differs from the other. All other rules are common to both.
struct Format {
    readstat_error_t (*parse)(readstat_parser_t *, const char *path, void *context) = nullptr;
    /// Encoding in which labels, and values that are texts, are read. ReadStat delivers UTF-8, so each letter outside
    /// ASCII becomes several in Latin-1.
    TextEncoding encoding = TextEncoding::utf8;
    /// Whether a floating type without decimals is an integer, and the values of its labels are too.
    bool decimalsDecide = false;
    bool textsHaveRange = false; ///< whether a text has a minimum and a maximum
    qint32 (*widthOf)(const readstat_variable_t &variable) = nullptr;
    bool widthIsOneDigit = false; ///< whether widthOf() cuts a width in the variable's format to one digit
    /// Returns the reason why ReadStat must not read a file.
    ReadProblem (*problem)(const QString &path) = nullptr;
    NameBounds widestNames = wholeNames;
    NameBounds (*nameBounds)(const QString &path) = nullptr;
};
extern const Format stata;
extern const Format spss;

/// Returns the length of a text in a fixed field, which has no end mark if the text fills it.
template <size_t Size> size_t lengthOf(const char (&field)[Size])
{
    return qstrnlen(field, Size);
}
bool isAscii(const char *text, size_t size);
/// Appends \a size bytes in the encoding of the format.
void appendText(const Format &format, QString &text, const char *bytes, size_t size);

/// Returns the number of a type, which may be a number outside of the enumeration.
int typeNumber(const readstat_type_t &type);
eVanVarType typeOf(const Format &format, const readstat_variable_t &variable);
bool hasDecimals(const readstat_variable_t &variable);
/// Returns the whole width in the variable's format: 10 for "F10.2", 11 for "DATE11"; 0 if it has none.
int widthInFormat(const readstat_variable_t &variable);

} // namespace statistical

#endif
