#include "read/StatFileTexts_p.h"

#include "read/Decoding_p.h"
#include "util/Numbers_p.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace vanlayout::stat
{

namespace
{

constexpr int lowestPlainExponent = -4;
constexpr int highestPlainExponent = 15;
constexpr size_t longestNumber = 64; // sign, 17 digits, zeros, mark, exponent

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

bool isLetter(QChar character)
{
    const ushort lowerCase = character.unicode() | 0x20;
    return lowerCase >= 'a' && lowerCase <= 'z';
}

template <typename Number, typename... Form> QString written(Number number, Form... form)
{
    std::array<char, longestNumber> digits;
    char *const begin = digits.data();
    char *const end = std::to_chars(begin, begin + digits.size(), number, form...).ptr;
    return QString::fromLatin1(begin, int(end - begin));
}

// The value of a run of digits; the largest int if it is exceeded.
int numberOf(const QChar *begin, const QChar *end)
{
    qint64 number = 0;
    for (; begin != end && number <= std::numeric_limits<int>::max(); ++begin)
        number = number * 10 + (begin->unicode() - '0');
    return numbers::clamped(number);
}

// The shortest digits of a number. The form `d.ddde+NN` shows the exponent, which determines the form of the result.
QString spelledReal(double number)
{
    const QString scientific = written(number, std::chars_format::scientific);
    const int mark = scientific.lastIndexOf(QLatin1Char('e'));
    const int exponent = numbers::toInt(QStringView(scientific).mid(mark + 1));
    const bool isPlain = exponent >= lowestPlainExponent && exponent <= highestPlainExponent;
    return isPlain ? written(number, std::chars_format::fixed) : scientific;
}

// SPSS marks the open end of a range by one of the two numbers with the largest magnitude of a double. ReadStat knows
// one such number for each end, but not all programs write that one.
bool isOpenEnd(double number)
{
    return std::abs(number) >= std::nextafter(std::numeric_limits<double>::max(), 0);
}

QString missingTag(char tag)
{
    return QLatin1Char('.') + QString(QChar(QLatin1Char(tag))).toLower();
}

} // namespace

QString textOf(const char *text, size_t bound)
{
    return text ? decoding::fromUtf8(text, int(strnlen(text, bound))) : QString();
}

QString textOfOldStata(const char *text, size_t bound)
{
    return text ? decoding::fromWindows1252(text, int(strnlen(text, bound))) : QString();
}

QString spelled(double number)
{
    if (std::isnan(number))
        return QStringLiteral(".");
    if (std::isinf(number))
        return number < 0 ? QStringLiteral("-inf") : QStringLiteral("inf");
    constexpr double longestInt = 1e15;
    if (std::abs(number) < longestInt && number == std::trunc(number))
        return written(qint64(number)); // -0 becomes 0
    return spelledReal(number);
}

QString codeOf(const readstat_value_t &value)
{
    if (readstat_value_is_tagged_missing(value))
        return missingTag(readstat_value_tag(value));
    if (readstat_value_is_system_missing(value))
        return QStringLiteral(".");
    switch (readstat_value_type(value)) {
    case READSTAT_TYPE_STRING:
    case READSTAT_TYPE_STRING_REF:
        return textOf(value.v.string_value);
    case READSTAT_TYPE_INT8:
    case READSTAT_TYPE_INT16:
    case READSTAT_TYPE_INT32:
        return written(readstat_int32_value(value));
    case READSTAT_TYPE_FLOAT:
    case READSTAT_TYPE_DOUBLE:
        break;
    }
    return spelled(readstat_double_value(value));
}

QString missingCodeOf(const readstat_value_t &value)
{
    if (readstat_value_type(value) == READSTAT_TYPE_DOUBLE && isOpenEnd(readstat_double_value(value)))
        return spelled(std::copysign(HUGE_VAL, readstat_double_value(value)));
    QString code = codeOf(value);
    while (code.endsWith(QLatin1Char(' ')))
        code.chop(1);
    return code;
}

int widthInFormat(const QString &format)
{
    const QChar *digits = std::find_if(format.cbegin(), format.cend(), isDigit);
    return numberOf(digits, std::find_if_not(digits, format.cend(), isDigit));
}

int decimalsInFormat(const QString &format)
{
    const int mark = std::max(format.lastIndexOf(QLatin1Char('.')), format.lastIndexOf(QLatin1Char(',')));
    if (mark < 0)
        return 0;
    const QChar *digits = format.cbegin() + mark + 1;
    const QChar *letters = std::find_if_not(digits, format.cend(), isDigit);
    return std::all_of(letters, format.cend(), isLetter) ? numberOf(digits, letters) : 0;
}

} // namespace vanlayout::stat
