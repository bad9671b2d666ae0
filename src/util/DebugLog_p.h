#ifndef UTIL_DEBUGLOG_P_H
#define UTIL_DEBUGLOG_P_H

#include <QDebug>

/// Whether a debug line would reach anybody.
bool isDebugLogOn();

/// Writes one plain line to the debug log: texts unquoted, parts of a line parted by one blank.
///
/// Nothing is formatted when debug output is off.
template <typename... Parts> void debugLine(const Parts &...parts)
{
    if (isDebugLogOn())
        (qDebug().noquote() << ... << parts);
}

#endif
