#include "Json.h"

bool hasLoneSurrogate(QStringView text)
{
    for (const QChar *unit = text.begin(); unit != text.end(); ++unit) {
        if (unit->isHighSurrogate() && unit + 1 != text.end() && unit[1].isLowSurrogate())
            ++unit;
        else if (unit->isSurrogate())
            return true;
    }
    return false;
}

QByteArray escapedJson(QStringView text)
{
    QByteArray literal(1, '"');
    for (const QChar unit : text) {
        literal += "\\u";
        literal += QByteArray::number(unit.unicode(), 16).rightJustified(4, '0');
    }
    return literal + '"';
}
