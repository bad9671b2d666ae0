#ifndef LAYOUT_READ_STATFILECLOCK_P_H
#define LAYOUT_READ_STATFILECLOCK_P_H

#include "model/Layout.h"

#include <QByteArray>

#include <ctime>
#include <optional>

namespace vanlayout::stat
{

/// The date and time that a statistical file states, as `YYYY-MM-DDTHH:MM:SS`; none where ReadStat found none.
///
/// SAS data sets hold a moment. The other formats hold the wall clock of the writer, which ReadStat takes for local
/// time: its \a moment depends on the time zone, and a wall clock that a zone leaves out in spring is not to be had
/// back from it. So the clock is looked up in \a head, the first bytes of the file, where \a moment may be at most one
/// day away from it. Midnight of 1 January 1970 is no date, in any zone.
std::optional<QString> clockOf(Format format, time_t moment, const QByteArray &head);

} // namespace vanlayout::stat

#endif
