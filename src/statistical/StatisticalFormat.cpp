#include "statistical/StatisticalFormat_p.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace statistical
{

namespace
{

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

qint32 storageWidth(const readstat_variable_t &variable)
{
    return static_cast<qint32>(static_cast<quint32>(variable.storage_width));
}

// Returns one digit, the second character of the format, or 0 if that is not a digit. The result for "F10.2" is 1. This
// is intended.
qint32 firstDigitOfFormat(const readstat_variable_t &variable)
{
    return lengthOf(variable.format) > 1 && isDigit(variable.format[1]) ? variable.format[1] - '0' : 0;
}

ReadProblem noProblem(const QString & /*path*/)
{
    return ReadProblem();
}

NameBounds wholeNamesOfAny(const QString & /*path*/)
{
    return wholeNames;
}

constexpr Format makeStata()
{
    Format format;
    format.parse = readstat_parse_dta;
    format.encoding = TextEncoding::latin1;
    format.textsHaveRange = true;
    format.widthOf = storageWidth;
    format.problem = noProblem;
    format.widestNames = widestStataNames;
    format.nameBounds = stataNameBounds;
    return format;
}

constexpr Format makeSpss()
{
    Format format;
    format.parse = readstat_parse_sav;
    format.decimalsDecide = true;
    format.widthOf = firstDigitOfFormat;
    format.widthIsOneDigit = true;
    format.problem = spssProblem;
    format.nameBounds = wholeNamesOfAny;
    return format;
}

} // namespace

const Format stata = makeStata();
const Format spss = makeSpss();

bool isAscii(const char *text, size_t size)
{
    return std::all_of(text, text + size, [](char byte) { return static_cast<signed char>(byte) >= 0; });
}

void appendText(const Format &format, QString &text, const char *bytes, size_t size)
{
    // ASCII is the same in both encodings, and Latin-1 is the faster way.
    if (format.encoding == TextEncoding::latin1 || isAscii(bytes, size))
        text.append(QLatin1String(bytes, int(size)));
    else
        text.append(QString::fromUtf8(bytes, int(size)));
}

int typeNumber(const readstat_type_t &type)
{
    int number = 0;
    std::memcpy(&number, &type, std::min(sizeof(number), sizeof(type)));
    return number;
}

eVanVarType typeOf(const Format &format, const readstat_variable_t &variable)
{
    switch (typeNumber(variable.type)) {
    case READSTAT_TYPE_STRING:
        return vtString;
    case READSTAT_TYPE_INT8:
    case READSTAT_TYPE_INT16:
    case READSTAT_TYPE_INT32:
        return vtInteger;
    case READSTAT_TYPE_FLOAT:
    case READSTAT_TYPE_DOUBLE:
        return format.decimalsDecide && !hasDecimals(variable) ? vtInteger : vtReal;
    default:
        return vtNone; // a long text of Stata, if ReadStat distinguishes it
    }
}

bool hasDecimals(const readstat_variable_t &variable)
{
    // ReadStat leaves `decimals` at 0 when it reads a file. The digits after the point of the format decide then.
    if (variable.decimals != 0)
        return true;
    const char *end = variable.format + lengthOf(variable.format);
    const char *point = std::find(variable.format, end, '.');
    if (point == end)
        return false;
    const char *digit = std::find_if(point + 1, end, [](char character) { return character != '0'; });
    return digit != end && isDigit(*digit);
}

int widthInFormat(const readstat_variable_t &variable)
{
    const char *end = variable.format + lengthOf(variable.format);
    const char *digit = std::find_if(variable.format, end, isDigit);
    int width = 0;
    std::from_chars(digit, end, width);
    return width;
}

} // namespace statistical
