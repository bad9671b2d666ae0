#include "compare/DiffCodes_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

bool isDigit(QChar unit)
{
    return unit >= QLatin1Char('0') && unit <= QLatin1Char('9');
}

bool isMark(QChar unit)
{
    return unit == QLatin1Char('.') || unit == QLatin1Char(',');
}

/// The parts of a plain number: digits with an optional sign and an optional decimal mark.
struct PlainNumber {
    bool isPlain = false;
    bool isNegative = false;
    QStringView whole;    // without leading zeros
    QStringView fraction; // without trailing zeros
};

PlainNumber partsOf(QStringView text)
{
    PlainNumber number;
    if (!text.isEmpty() && (text.front() == QLatin1Char('-') || text.front() == QLatin1Char('+'))) {
        number.isNegative = text.front() == QLatin1Char('-');
        text = text.mid(1);
    }
    const QChar *const mark = std::find_if(text.begin(), text.end(), isMark);
    number.whole = text.left(mark - text.begin());
    number.fraction = mark == text.end() ? QStringView() : text.mid(mark - text.begin() + 1);
    number.isPlain = number.whole.size() + number.fraction.size() > 0
        && std::all_of(number.whole.begin(), number.whole.end(), isDigit)
        && std::all_of(number.fraction.begin(), number.fraction.end(), isDigit);
    while (!number.whole.isEmpty() && number.whole.front() == QLatin1Char('0'))
        number.whole = number.whole.mid(1);
    while (!number.fraction.isEmpty() && number.fraction.back() == QLatin1Char('0'))
        number.fraction.chop(1);
    return number;
}

QString spelled(const PlainNumber &number)
{
    const bool isZero = number.whole.isEmpty() && number.fraction.isEmpty();
    QString text = number.isNegative && !isZero ? QStringLiteral("-") : QString();
    if (number.whole.isEmpty())
        text += QLatin1Char('0');
    else
        text.append(number.whole.data(), int(number.whole.size()));
    if (!number.fraction.isEmpty()) {
        text += QLatin1Char('.');
        text.append(number.fraction.data(), int(number.fraction.size()));
    }
    return text;
}

// Whether a code is already in canonical spelling, as nearly all are: digits without a leading zero.
bool isPlainInteger(const QString &code)
{
    return !code.isEmpty() && std::all_of(code.begin(), code.end(), isDigit)
        && (code.size() == 1 || code.front() != QLatin1Char('0'));
}

QString withoutBlanksAtEnd(const QString &text)
{
    int size = text.size();
    while (size > 0 && text.at(size - 1).isSpace())
        --size;
    return text.left(size); // shares its data with the text if there is nothing to remove
}

} // namespace

QString canonicalCode(const QString &code, CodeType type)
{
    if (type == CodeType::Text)
        return withoutBlanksAtEnd(code);
    if (isPlainInteger(code))
        return code;
    const QString text = code.trimmed();
    const PlainNumber number = partsOf(text);
    return number.isPlain ? spelled(number) : text;
}

CodeKey keyWithoutCode(const Value &value)
{
    return { QString(), QString(), value.special == Special::NotApplicable };
}

CodeKey keyOf(const Value &value, const Range &range, CodeType type)
{
    if (value.special == Special::NotApplicable)
        return {};
    CodeKey key = { canonicalCode(range.from, type), canonicalCode(range.to, type), true };
    if (key.to == key.from)
        key.to.clear();
    return key;
}

QString describeCode(const CodeKey &key)
{
    if (!key.hasCode)
        return QStringLiteral("(no code)");
    const QString from = key.from.isEmpty() ? QStringLiteral("(blank)") : key.from;
    return key.to.isEmpty() ? from : from + QLatin1String(" to ") + key.to;
}

} // namespace vanlayout
