#ifndef UTIL_NUMBERCHARACTER_P_H
#define UTIL_NUMBERCHARACTER_P_H

#include <QChar>

/// Returns the one character that represents a number in errors and names: its code is the low 16 bits of \a number.
/// The constructor of `QChar` from an `int` does not accept larger numbers in Qt 6.
inline QChar numberCharacter(int number)
{
    return QChar(ushort(number));
}

#endif
