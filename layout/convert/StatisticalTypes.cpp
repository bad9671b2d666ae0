#include "convert/StatisticalTypes_p.h"

#include "write/Columns_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

constexpr int maxTextOfSav = 32767; // bytes
constexpr int maxTextOfDta = 2045;  // bytes; longer ones are strL

// The smallest type that holds all numbers of this width.
readstat_type_t typeOfDigits(int digits)
{
    constexpr int digitsOfByte = 2;
    constexpr int digitsOfInt = 4;
    constexpr int digitsOfLong = 9;
    if (digits <= digitsOfByte)
        return READSTAT_TYPE_INT8;
    if (digits <= digitsOfInt)
        return READSTAT_TYPE_INT16;
    return digits <= digitsOfLong ? READSTAT_TYPE_INT32 : READSTAT_TYPE_DOUBLE;
}

} // namespace

StatisticalTypes::StatisticalTypes(StatisticalFormat target, Format sourceFormat)
    : isSav(target == StatisticalFormat::Sav)
    , isOwnForm(sourceFormat == (isSav ? Format::Spss : Format::Stata))
{
}

bool StatisticalTypes::isLongText(const Item &item) const
{
    return !isSav && (item.length < 1 || item.length > maxTextOfDta);
}

readstat_type_t StatisticalTypes::typeOf(const Item &item) const
{
    if (kindOf(item) == ValueKind::Text)
        return isLongText(item) ? READSTAT_TYPE_STRING_REF : READSTAT_TYPE_STRING;
    if (isSav)
        return READSTAT_TYPE_DOUBLE;
    switch (item.storage) {
    case Storage::Int8:
        return READSTAT_TYPE_INT8;
    case Storage::Int16:
        return READSTAT_TYPE_INT16;
    case Storage::Int32:
        return READSTAT_TYPE_INT32;
    case Storage::Float:
        return READSTAT_TYPE_FLOAT;
    case Storage::Double:
    case Storage::String:
        return READSTAT_TYPE_DOUBLE;
    case Storage::None:
        break;
    }
    return kindOf(item) == ValueKind::Whole ? typeOfDigits(item.length) : READSTAT_TYPE_DOUBLE;
}

size_t StatisticalTypes::widthOfText(const Item &item) const
{
    if (isLongText(item))
        return 0;
    return size_t(std::clamp(item.length, 1, isSav ? maxTextOfSav : maxTextOfDta));
}

QString StatisticalTypes::formatOf(const Item &item) const
{
    if (isOwnForm && !item.format.isEmpty())
        return item.format;
    return kindOf(item) == ValueKind::Text ? formatOfText(item) : formatOfNumber(item);
}

QString StatisticalTypes::formatOfText(const Item &item) const
{
    constexpr int widthOfLongText = 9; // as Stata itself shows a strL
    const QString width = QString::number(isLongText(item) ? widthOfLongText : int(widthOfText(item)));
    return isSav ? QLatin1Char('A') + width : QLatin1Char('%') + width + QLatin1Char('s');
}

QString StatisticalTypes::formatOfNumber(const Item &item) const
{
    constexpr int longest = 32;
    const int least = item.decimals > 0 ? item.decimals + 2 : 1;
    const QString width = QString::number(std::min(std::max(item.length, least), longest));
    const QString decimals = QLatin1Char('.') + QString::number(item.decimals);
    return isSav ? QLatin1Char('F') + width + decimals : QLatin1Char('%') + width + decimals + QLatin1Char('f');
}

} // namespace vanlayout
