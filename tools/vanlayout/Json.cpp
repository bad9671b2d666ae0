#include "Json.h"

#include "LoneSurrogate.h"

bool hasLoneSurrogate(QStringView text)
{
    return nextLoneSurrogate(text, 0) < text.size();
}

QByteArray jsonEscape(QChar unit)
{
    constexpr int digits = 4;
    constexpr int base = 16;
    return "\\u" + QByteArray::number(unit.unicode(), base).rightJustified(digits, '0');
}

QByteArray escapedJson(QStringView text)
{
    QByteArray literal(1, '"');
    for (const QChar unit : text)
        literal += jsonEscape(unit);
    return literal + '"';
}
