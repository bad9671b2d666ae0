#ifndef UTIL_EMPTYTEXT_P_H
#define UTIL_EMPTYTEXT_P_H

#include <QString>

/// A text that is empty and not null; it allocates nothing. Callers see the difference: `isNull()`, a `QVariant`, a
/// value bound to an SQL statement.
inline QString emptyText()
{
    return QStringLiteral(""); // clazy:exclude=empty-qstringliteral
}

/// \a text, or emptyText() where it is null.
inline QString notNull(QString text)
{
    return text.isNull() ? emptyText() : text;
}

#endif
