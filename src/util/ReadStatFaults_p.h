#ifndef UTIL_READSTATFAULTS_P_H
#define UTIL_READSTATFAULTS_P_H

#include <limits>

/// Faults of ReadStat, each with the first release that mends it. Files that would trigger a fault are not passed to
/// ReadStat. A program that is built with that release or a later one passes such files to ReadStat.
namespace readstat
{

/// A release as one number, for comparisons.
constexpr int releaseNumber(int major, int minor, int patch)
{
    return (major << 16) | (minor << 8) | patch;
}

/// The release that the program is built with. It is 0 if the build does not know the release, so that every guard is
/// on. A project that brings its own target of ReadStat may define the number.
#ifndef VAN_READSTAT_RELEASE
#define VAN_READSTAT_RELEASE 0
#endif
constexpr int installedRelease = VAN_READSTAT_RELEASE;

/// Used in place of a release if none is known that mends the fault. A guard is switched off only after its tests pass
/// without it.
constexpr int noRelease = std::numeric_limits<int>::max();

/// The two passes over the dictionary of an SPSS file differ if the dictionary is cut or has an unknown record.
constexpr int mendsSpssPasses = noRelease;
/// An SPSS file with too many long names makes ReadStat write through a null pointer.
constexpr int mendsSpssLongNames = noRelease;
/// The time to look up variables in an SPSS file grows with the number of variables times the number of sets of labels
/// or missing values of long texts.
constexpr int mendsSpssLookups = noRelease;

/// Returns whether the release \a installed has the fault that the release \a mending mends.
constexpr bool isFaulty(int mending, int installed = installedRelease)
{
    return installed < mending;
}

} // namespace readstat

#endif
