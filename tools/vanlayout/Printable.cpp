#include "Printable.h"

QString printable(const QString &text)
{
    QString shown = text;
    for (QChar &unit : shown) {
        const ushort code = unit.unicode();
        if (code < 0x20)
            unit = QChar(0x2400 + code);
        else if (code == 0x7F)
            unit = QChar(0x2421);
        else if (code > 0x7F && code < 0xA0)
            unit = QChar(QChar::ReplacementCharacter);
    }
    return shown;
}
