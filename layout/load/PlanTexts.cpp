#include "PlanTexts_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

bool isPlain(QChar character)
{
    return character >= QLatin1Char(' ') && character <= QLatin1Char('~');
}

bool endsLine(QChar character)
{
    if (isPlain(character))
        return false;
    return character.category() == QChar::Other_Control || character == QChar::LineSeparator
        || character == QChar::ParagraphSeparator;
}

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

int digitsAt(QStringView text, int start)
{
    int end = start;
    while (end < text.size() && isDigit(text.at(end)))
        ++end;
    return end - start;
}

QString plainNumber(bool isNegative, QStringView whole, QStringView decimals)
{
    while (whole.size() > 1 && whole.front() == QLatin1Char('0'))
        whole = whole.mid(1);
    while (!decimals.isEmpty() && decimals.back() == QLatin1Char('0'))
        decimals.chop(1);
    QString number = whole.isEmpty() ? QStringLiteral("0") : whole.toString();
    if (!decimals.isEmpty())
        number += QLatin1Char('.') + decimals.toString();
    return isNegative && number != QLatin1String("0") ? QLatin1Char('-') + number : number;
}

// Whether the digits of a number are written as in plainNumber().
bool arePlain(QStringView digits)
{
    return digits.size() == 1 || (!digits.isEmpty() && digits.front() != QLatin1Char('0'));
}

// Whether a text is within a limit in any case.
bool isShort(const QString &text, const LengthLimit &limit)
{
    constexpr int maxBytes = 3; // of a UTF-16 code unit
    return text.size() <= (limit.unit == LengthUnit::Bytes ? limit.max / maxBytes : limit.max);
}

int bytesOf(uint character)
{
    constexpr uint pastTwoBytes = 0x800;
    constexpr uint pastThreeBytes = 0x10000;
    if (character < 0x80)
        return 1;
    return character < pastTwoBytes ? 2 : character < pastThreeBytes ? 3 : 4;
}

} // namespace

QString oneLine(const QString &text)
{
    if (std::none_of(text.begin(), text.end(), endsLine))
        return text;
    QString line;
    line.reserve(text.size());
    bool isInRun = false;
    for (const QChar character : text) {
        const bool isEnd = endsLine(character);
        if (!isEnd)
            line += character;
        else if (!isInRun)
            line += QLatin1Char(' ');
        isInRun = isEnd;
    }
    return line;
}

QString cutTo(const QString &text, const LengthLimit &limit)
{
    if (limit.max == 0 || isShort(text, limit))
        return text;
    int used = 0;
    for (int i = 0; i < text.size();) {
        const bool isPair = text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        const uint character = isPair ? QChar::surrogateToUcs4(text.at(i), text.at(i + 1)) : text.at(i).unicode();
        used += limit.unit == LengthUnit::Bytes ? bytesOf(character) : 1;
        if (used > limit.max)
            return text.left(i);
        i += isPair ? 2 : 1;
    }
    return text;
}

QString withoutTrailingBlanks(const QString &text)
{
    int end = text.size();
    while (end > 0 && text.at(end - 1) == QLatin1Char(' '))
        --end;
    return text.left(end);
}

QString withoutBlanks(const QString &text)
{
    int start = 0;
    while (start < text.size() && text.at(start) == QLatin1Char(' '))
        ++start;
    return withoutTrailingBlanks(text.mid(start));
}

std::optional<QString> plainNumberOf(const QString &text)
{
    const QString written = withoutBlanks(text);
    QStringView number = written;
    const bool isNegative = number.startsWith(QLatin1Char('-'));
    if (isNegative || number.startsWith(QLatin1Char('+')))
        number = number.mid(1);
    const int whole = digitsAt(number, 0);
    const bool hasMark
        = whole < number.size() && (number.at(whole) == QLatin1Char('.') || number.at(whole) == QLatin1Char(','));
    const int decimals = hasMark ? digitsAt(number, whole + 1) : 0;
    if (whole + decimals == 0 || whole + (hasMark ? 1 : 0) + decimals < number.size())
        return std::nullopt;
    if (whole == written.size() && arePlain(written))
        return written;
    return plainNumber(isNegative, number.left(whole), number.mid(whole + (hasMark ? 1 : 0)));
}

} // namespace vanlayout
