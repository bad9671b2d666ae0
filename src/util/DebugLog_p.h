#ifndef UTIL_DEBUGLOG_P_H
#define UTIL_DEBUGLOG_P_H

#include <QDebug>

/// Returns whether debug output is on.
bool isDebugLogOn();

/// Writes one plain line to the debug log: texts are not quoted, and one blank separates the parts of a line.
///
/// Nothing is formatted when debug output is off.
template <typename... Parts> void debugLine(const Parts &...parts)
{
    if (isDebugLogOn())
        (qDebug().noquote() << ... << parts);
}

#endif
