#ifndef UTIL_EMPTYTEXT_P_H
#define UTIL_EMPTYTEXT_P_H

#include <QString>

/// Returns a text that is empty and not null, without allocating memory. Callers see the difference in `isNull()`, in a
/// `QVariant`, and in a value that is bound to an SQL statement.
inline QString emptyText()
{
    return QStringLiteral(""); // clazy:exclude=empty-qstringliteral
}

/// Returns \a text, or emptyText() if it is null.
inline QString notNull(QString text)
{
    return text.isNull() ? emptyText() : text;
}

#endif
