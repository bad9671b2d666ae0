#ifndef LAYOUT_READ_STATFILECLOCK_P_H
#define LAYOUT_READ_STATFILECLOCK_P_H

#include "model/Layout.h"

#include <QByteArray>

#include <ctime>
#include <optional>

namespace vanlayout::stat
{

/// The date and time that a statistical file states, as `YYYY-MM-DDTHH:MM:SS`; none if ReadStat found none.
///
/// SAS data sets store a point in time. The other formats store the writer's local time, which ReadStat interprets in
/// the local time zone: its \a moment depends on that zone, and a local time skipped by daylight saving cannot be
/// recovered from it. The date and time are therefore read from \a head, the first bytes of the file, and \a moment may
/// differ from them by at most one day. Midnight of 1 January 1970 counts as no date, in any zone.
std::optional<QString> clockOf(Format format, time_t moment, const QByteArray &head);

} // namespace vanlayout::stat

#endif
