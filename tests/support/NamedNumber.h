#ifndef SUPPORT_NAMEDNUMBER_H
#define SUPPORT_NAMEDNUMBER_H

#include <QString>
#include <QStringList>

#include <algorithm>
#include <iterator>

/// Returns a numeric member as "name=value". A comparison of such lists shows the name of the member that differs.
inline QString named(const char *name, qint64 value)
{
    return QLatin1String(name) + QLatin1Char('=') + QString::number(value);
}

/// Returns the members of a list whose value is not 0.
inline QStringList nonZero(const QStringList &members)
{
    QStringList found;
    std::copy_if(members.cbegin(), members.cend(), std::back_inserter(found),
                 [](const QString &member) { return !member.endsWith(QLatin1String("=0")); });
    return found;
}

#endif
