#include "convert/StatisticalTypes_p.h"

#include "load/PlanTexts_p.h"
#include "write/Columns_p.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace vanlayout
{

namespace
{

constexpr int maxTextOfSav = 32767;      // bytes
constexpr int maxTextOfDta = 2045;       // bytes; longer ones are strL
constexpr int textOfUnknownLength = 255; // bytes, in SPSS
constexpr int maxDecimalsOfSav = 16;
constexpr int maxWidthOfSav = 40; // of the format F
constexpr int maxWidthOfDta = 32;

bool isOwn(bool isSav, Format source)
{
    return isSav ? source == Format::Spss || source == Format::SpssPortable : source == Format::Stata;
}

// The format of a number of unknown width that the programs themselves use.
QString usualFormat(bool isSav, readstat_type_t type)
{
    if (isSav)
        return QStringLiteral("F8.2");
    switch (type) {
    case READSTAT_TYPE_INT32:
        return QStringLiteral("%12.0g");
    case READSTAT_TYPE_DOUBLE:
        return QStringLiteral("%10.0g");
    case READSTAT_TYPE_FLOAT:
        return QStringLiteral("%9.0g");
    default:
        return QStringLiteral("%8.0g");
    }
}

// The same text for formats of different programs that show values alike: kind, width and decimals, such as `F8.2` for
// "F8.2" and "%8.2f". Any other format is unchanged.
QString plainFormat(const QString &format)
{
    struct Spelling {
        QLatin1String kind;
        QRegularExpression pattern;
    };
    static const std::array<Spelling, 3> spellings = { {
        { QLatin1String("F"), QRegularExpression(R"(^(?:F?(\d+)(?:\.(\d*))?|%-?(\d+)\.(\d+)f)$)") },
        { QLatin1String("COMMA"), QRegularExpression(R"(^(?:COMMA(\d+)(?:\.(\d*))?|%-?(\d+)\.(\d+)fc)$)") },
        { QLatin1String("A"), QRegularExpression(R"(^(?:(?:A|\$|\$CHAR)(\d+)\.?()|%-?(\d+)()s)$)") },
    } };
    if (format.isEmpty())
        return format;
    for (const Spelling &spelling : spellings) {
        const QRegularExpressionMatch match = spelling.pattern.match(format);
        if (match.hasMatch())
            return spelling.kind + match.captured(1) + match.captured(3) + QLatin1Char('.')
                + QString::number((match.captured(2) + match.captured(4)).toInt());
    }
    return format;
}

// The bytes of the longest code, which can be more than the characters of the item.
int longestCode(const Item &item)
{
    int longest = 0;
    for (const ValueSet &set : item.valueSets) {
        for (const Value &value : set.values) {
            for (const Range &range : value.ranges)
                longest = std::max(longest, int(withoutTrailingBlanks(range.from).toUtf8().size()));
        }
    }
    return longest;
}

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

const ValueSet *labelledSetOf(const Item &item)
{
    for (const ValueSet &set : item.valueSets) {
        if (!set.values.isEmpty())
            return &set;
    }
    return nullptr;
}

StatisticalTypes::StatisticalTypes(StatisticalFormat target, Format sourceFormat)
    : isSav(target == StatisticalFormat::Sav)
    , isOwnForm(isOwn(isSav, sourceFormat))
    , hasData(holdsData(sourceFormat))
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
    return kindOf(item) == ValueKind::Whole && item.length > 0 ? typeOfDigits(item.length) : READSTAT_TYPE_DOUBLE;
}

size_t StatisticalTypes::widthOfText(const Item &item) const
{
    if (isLongText(item))
        return 0;
    if (item.length < 1)
        return textOfUnknownLength;
    const int length = hasData ? item.length : std::max(item.length, longestCode(item));
    return size_t(std::min(length, isSav ? maxTextOfSav : maxTextOfDta));
}

QString StatisticalTypes::formatOf(const Item &item) const
{
    const bool isText = kindOf(item) == ValueKind::Text;
    // The width in the format A of SPSS must be that of the text, which some files do not observe.
    const bool isWidth = isSav && isText && item.format.startsWith(QLatin1Char('A')) && widthOfText(item) > 0
        && !item.format.startsWith(QLatin1String("AHEX"));
    if (isOwnForm && !item.format.isEmpty() && !isWidth)
        return item.format;
    return isText ? formatOfText(item) : formatOfNumber(item);
}

QString StatisticalTypes::formatOfText(const Item &item) const
{
    constexpr int widthOfLongText = 9; // as Stata itself shows a strL
    const QString width = QString::number(isLongText(item) ? widthOfLongText : int(widthOfText(item)));
    return isSav ? QLatin1Char('A') + width : QLatin1Char('%') + width + QLatin1Char('s');
}

StatisticalTypes::Digits StatisticalTypes::digitsOf(const Item &item) const
{
    const int maxWidth = isSav ? maxWidthOfSav : maxWidthOfDta;
    const int decimals = std::clamp(item.decimals, 0, isSav ? maxDecimalsOfSav : maxWidth - 2);
    // An implied decimal mark has no column in a line of text.
    const bool isMarkImplied = decimals > 0 && !item.decimalMark && !hasData;
    const int width = std::min(item.length, maxWidth) + (isMarkImplied ? 1 : 0);
    return { std::min(std::max(width, decimals > 0 ? decimals + 2 : 1), maxWidth), decimals };
}

QString StatisticalTypes::formatOfNumber(const Item &item) const
{
    if (item.length < 1)
        return usualFormat(isSav, typeOf(item));
    const Digits digits = digitsOf(item);
    const QString text = QString::number(digits.width) + QLatin1Char('.') + QString::number(digits.decimals);
    const bool hasCommas = plainFormat(item.format).startsWith(QLatin1String("COMMA"));
    if (isSav)
        return (hasCommas ? QLatin1String("COMMA") : QLatin1String("F")) + text;
    return QLatin1Char('%') + text + (hasCommas ? QLatin1String("fc") : QLatin1String("f"));
}

bool StatisticalTypes::keepsFormat(const Item &item) const
{
    const QString written = formatOf(item);
    return item.format.isEmpty() || item.format == written || plainFormat(item.format) == plainFormat(written);
}

bool StatisticalTypes::changesLength(const Item &item) const
{
    const int width = int(widthOfText(item));
    return width < item.length || (item.length < 1 && width > 0);
}

bool StatisticalTypes::cutsNumber(const Item &item) const
{
    if (isOwnForm || item.length < 1)
        return false;
    const Digits digits = digitsOf(item);
    return digits.width < item.length || digits.decimals != item.decimals;
}

bool StatisticalTypes::showsWidth(const Item &item) const
{
    const QString written = formatOf(item);
    if (isOwnForm && written == item.format)
        return true;
    return item.displayWidth == (written.contains(QLatin1Char('s')) ? int(widthOfText(item)) : digitsOf(item).width);
}

} // namespace vanlayout
