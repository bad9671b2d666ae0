#ifndef SUPPORT_LITERALBYTES_H
#define SUPPORT_LITERALBYTES_H

#include <QByteArray>

/// Returns the bytes of a literal, NULs included.
template <size_t size> QByteArray bytes(const char (&literal)[size])
{
    return QByteArray(literal, int(size) - 1);
}

#endif
