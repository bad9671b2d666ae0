#include "util/Numbers_p.h"

#include <QLocale>

#include <algorithm>
#include <cmath>
#include <limits>

namespace numbers
{

namespace
{

// Texts with more digits are converted by Qt. An int can hold any number of up to this many digits.
constexpr int safeDigits = 9;

// Returns the number that a text of 1 to 9 ASCII digits denotes; -1 for any other text.
int plainDigits(const QChar *begin, qsizetype size)
{
    if (size < 1 || size > safeDigits)
        return -1;
    int number = 0;
    for (const QChar *digit = begin; digit != begin + size; ++digit) {
        if (*digit < QLatin1Char('0') || *digit > QLatin1Char('9'))
            return -1;
        number = number * 10 + (digit->unicode() - '0');
    }
    return number;
}

// Reads integers as QString::toInt of Qt 5 does. That of Qt 6 accepts fewer kinds of blanks and minus signs.
const QLocale &localeOfNumbers()
{
    static const QLocale locale = [] {
        QLocale made(QLocale::C);
        made.setNumberOptions(QLocale::RejectGroupSeparator);
        return made;
    }();
    return locale;
}

} // namespace

double toDouble(const QString &text)
{
    const int digits = plainDigits(text.constData(), text.size());
    if (digits >= 0)
        return digits;
    bool ok = false;
    const double number = text.toDouble(&ok);
    return ok ? number : 0.0;
}

int toInt(QStringView text, bool *ok)
{
    const int digits = plainDigits(text.data(), text.size());
    if (digits >= 0) {
        if (ok)
            *ok = true;
        return digits;
    }
    return localeOfNumbers().toInt(text, ok);
}

QString toText(double value)
{
    QString text;
    appendText(text, value);
    return text;
}

void appendText(QString &text, double value)
{
    // A whole number below a million, except minus zero, is the same text in both forms.
    const bool isShort = std::abs(value) < 1e6 && value == std::trunc(value) && !std::signbit(value);
    if (!isShort) {
        text += QString::number(value, 'g', 6);
        return;
    }
    QChar digits[safeDigits];
    QChar *const end = digits + safeDigits;
    QChar *first = end;
    int rest = int(value);
    do {
        *--first = QLatin1Char(char('0' + rest % 10));
        rest /= 10;
    } while (rest > 0);
    text.append(first, int(end - first));
}

int truncated(double value)
{
    const double cut = std::trunc(value);
    const bool fits = cut >= std::numeric_limits<int>::min() && cut <= std::numeric_limits<int>::max();
    return fits ? int(cut) : std::numeric_limits<int>::min();
}

int clamped(qint64 value)
{
    constexpr qint64 lowest = std::numeric_limits<int>::min();
    constexpr qint64 highest = std::numeric_limits<int>::max();
    return int(std::clamp(value, lowest, highest));
}

} // namespace numbers
