#include "Codes_p.h"

#include "util/KeyedHash_p.h"

#include <QLocale>

#include <algorithm>
#include <cmath>
#include <limits>

namespace vanlayout
{

namespace
{

constexpr int digitsOfAnyDouble = 15;
constexpr int safeExponent = 300;
constexpr int longestPlain = 21; // max digits of a number without an exponent

// The number 0.DIGITS * 10^exponent; the digits have no zeros at either end.
struct Digits {
    bool isNegative = false;
    QByteArray digits;
    qint64 exponent = 0;
};

bool operator==(const Digits &left, const Digits &right)
{
    return left.isNegative == right.isNegative && left.digits == right.digits && left.exponent == right.exponent;
}

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

// Reads the parts of a number from the beginning of a text.
class NumberScanner
{
public:
    explicit NumberScanner(QStringView number)
        : text(number)
    {
    }

    std::optional<Digits> scan()
    {
        Digits result;
        result.isNegative = take(QLatin1Char('-'));
        if (!result.isNegative)
            take(QLatin1Char('+'));
        const int whole = takeDigits(result.digits);
        int all = whole;
        if (take(QLatin1Char('.')) || take(QLatin1Char(',')))
            all += takeDigits(result.digits);
        const std::optional<int> exponent = takeExponent();
        if (all == 0 || !exponent || index < text.size())
            return std::nullopt;
        result.exponent = qint64(whole) + *exponent;
        normalize(result);
        return result;
    }

private:
    bool take(QChar wanted)
    {
        const bool isThere = index < text.size() && text.at(index) == wanted;
        index += isThere ? 1 : 0;
        return isThere;
    }
    int takeDigits(QByteArray &digits)
    {
        int count = 0;
        for (; index < text.size() && isDigit(text.at(index)); ++index, ++count)
            digits.append(text.at(index).toLatin1());
        return count;
    }
    // The exponent; 0 if there is none, no value if it is not a small number.
    std::optional<int> takeExponent()
    {
        constexpr int longest = 6;
        if (!take(QLatin1Char('e')) && !take(QLatin1Char('E')))
            return 0;
        const bool isNegative = take(QLatin1Char('-'));
        if (!isNegative)
            take(QLatin1Char('+'));
        QByteArray digits;
        const int count = takeDigits(digits);
        if (count == 0 || count > longest)
            return std::nullopt;
        return isNegative ? -digits.toInt() : digits.toInt();
    }
    static void normalize(Digits &number)
    {
        QByteArray &digits = number.digits;
        int leading = 0;
        while (leading < digits.size() && digits.at(leading) == '0')
            ++leading;
        int end = digits.size();
        while (end > leading && digits.at(end - 1) == '0')
            --end;
        digits = digits.mid(leading, end - leading);
        number.exponent -= leading;
        if (digits.isEmpty())
            number = Digits();
    }

    QStringView text;
    int index = 0;
};

std::optional<Digits> digitsOf(const QString &code)
{
    return NumberScanner(QStringView(code).trimmed()).scan();
}

QByteArray spell(const Digits &number)
{
    constexpr int maxZeros = 4;
    if (number.digits.isEmpty())
        return QByteArrayLiteral("0");
    const QByteArray sign = number.isNegative ? QByteArrayLiteral("-") : QByteArray();
    const int count = number.digits.size();
    if (number.exponent > longestPlain || number.exponent < -maxZeros) {
        const QByteArray fraction = count > 1 ? '.' + number.digits.mid(1) : QByteArray();
        return sign + number.digits.left(1) + fraction + 'e' + QByteArray::number(number.exponent - 1);
    }
    const int whole = int(number.exponent);
    if (whole >= count)
        return sign + number.digits + QByteArray(whole - count, '0');
    if (whole <= 0)
        return sign + "0." + QByteArray(-whole, '0') + number.digits;
    return sign + number.digits.left(whole) + '.' + number.digits.mid(whole);
}

bool isKeptByDouble(const Digits &number)
{
    if (std::abs(number.exponent) > safeExponent + digitsOfAnyDouble)
        return false;
    if (number.digits.size() <= digitsOfAnyDouble && std::abs(number.exponent) <= safeExponent)
        return true;
    const double value = spell(number).toDouble();
    const QString shortest = QString::fromLatin1(QByteArray::number(value, 'e', QLocale::FloatingPointShortest));
    return std::isfinite(value) && digitsOf(shortest) == number;
}

// Whether a text is a whole number in JSON syntax with so few digits that a double represents it, as most codes are.
bool isShortAndPlain(const QString &code)
{
    const int size = code.size();
    if (size == 0 || size > digitsOfAnyDouble || (size > 1 && code.at(0) == QLatin1Char('0')))
        return false;
    return std::all_of(code.begin(), code.end(), isDigit);
}

// Whether a value is user-missing. valueOf() reads the infinite ends of a range.
bool isUserMissing(const Item &item, const QString &code)
{
    const auto holds = [&](const Range &range) {
        if (isSingle(range) || !item.isNumeric())
            return cellOf(item, range.from) == code;
        const double value = valueOf(code);
        return value >= valueOf(range.from) && value <= valueOf(range.to);
    };
    return std::any_of(item.missing.begin(), item.missing.end(), holds);
}

// Whether a code is `.`, `.a` to `.z` or `._`, which are not numbers.
bool isExtendedMissing(const Item &item, const QString &code)
{
    return item.isNumeric() && item.storage != Storage::None && code.startsWith(QLatin1Char('.')) && code.size() <= 2
        && !(code.size() == 2 && isDigit(code.at(1)));
}

// Collects codes, each once.
class MissingCodes
{
public:
    explicit MissingCodes(const Item &codedItem)
        : item(codedItem)
    {
    }

    void add(const QString &written, const Value *value)
    {
        const QString code = cellOf(item, written);
        addOnce(code, value);
        const DecimalNumber number = isClosed(item) && item.isNumeric() ? decimalNumberOf(code) : DecimalNumber();
        if (number.spelling.isEmpty() || number.spelling.contains('e'))
            return;
        const QString plain = QString::fromLatin1(number.spelling);
        addOnce(plain, value);
        if (item.zeroFill && item.decimals == 0 && number.isWhole && !plain.startsWith(QLatin1Char('-')))
            addOnce(plain.rightJustified(item.length, QLatin1Char('0')), value);
    }

    QVector<MissingCode> codes;

private:
    void addOnce(const QString &code, const Value *value)
    {
        if (known.insert(code).second)
            codes.append({ code, value });
    }

    const Item &item;
    KeyedSet<QString> known;
};

} // namespace

DecimalNumber decimalNumberOf(const QString &code)
{
    if (isShortAndPlain(code))
        return { code.toLatin1(), true, true };
    const std::optional<Digits> digits = digitsOf(code);
    if (!digits)
        return {};
    return { spell(*digits), digits->exponent >= digits->digits.size(), isKeptByDouble(*digits) };
}

double valueOf(const QString &code)
{
    if (code == QLatin1String("inf"))
        return std::numeric_limits<double>::infinity();
    if (code == QLatin1String("-inf"))
        return -std::numeric_limits<double>::infinity();
    const DecimalNumber number = decimalNumberOf(code);
    return number.spelling.isEmpty() ? std::numeric_limits<double>::quiet_NaN() : number.spelling.toDouble();
}

QString cellOf(const Item &item, const QString &code)
{
    if (item.isNumeric())
        return code.trimmed();
    int end = code.size();
    while (end > 0 && code.at(end - 1) == QLatin1Char(' '))
        --end;
    return code.left(end);
}

bool isClosed(const Item &item)
{
    return item.storage == Storage::None;
}

bool isMissing(const Item &item, const Value &value, const Range &range)
{
    if (value.special != Special::None)
        return true;
    if (item.storage == Storage::None || !isSingle(range))
        return false;
    const QString code = cellOf(item, range.from);
    return isUserMissing(item, code) || isExtendedMissing(item, code);
}

QVector<MissingCode> missingCodesOf(const Item &item)
{
    MissingCodes missing(item);
    for (const ValueSet &set : item.valueSets) {
        for (const Value &value : set.values) {
            for (const Range &range : value.ranges) {
                if (isSingle(range) && isMissing(item, value, range))
                    missing.add(range.from, &value);
            }
        }
    }
    for (const Range &range : item.missing) {
        if (isSingle(range))
            missing.add(range.from, nullptr);
    }
    return missing.codes;
}

std::optional<Range> onlyRangeOf(const Item &item)
{
    std::optional<Range> only;
    if (!isClosed(item) || !item.isNumeric())
        return only;
    for (const ValueSet &set : item.valueSets) {
        for (const Value &value : set.values) {
            for (const Range &range : value.ranges) {
                if (isMissing(item, value, range) || (only && *only == range))
                    continue;
                if (only || isSingle(range) || valueOf(range.from) > valueOf(range.to))
                    return std::nullopt;
                only = range;
            }
        }
    }
    return only;
}

} // namespace vanlayout
