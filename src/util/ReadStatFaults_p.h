#ifndef UTIL_READSTATFAULTS_P_H
#define UTIL_READSTATFAULTS_P_H

#include <limits>

/// Faults of ReadStat from which files are kept, each with the first release that mends it. A program that is built
/// with that release or a later one passes such files to ReadStat.
namespace readstat
{

/// A release as one number, for comparisons.
constexpr int releaseNumber(int major, int minor, int patch)
{
    return (major << 16) | (minor << 8) | patch;
}

/// The release that the program is built with; 0 where the build does not know it, so that every guard is on.
constexpr int installedRelease = VAN_READSTAT_RELEASE;

/// In place of a release: none that mends the fault is known. A guard goes off only after its tests pass without it.
constexpr int noRelease = std::numeric_limits<int>::max();

/// The two passes over the dictionary of an SPSS file differ if it is cut or has an unknown record.
constexpr int mendsSpssPasses = noRelease;
/// An SPSS file with too many long names makes it write through a null pointer.
constexpr int mendsSpssLongNames = noRelease;
/// The time to look up variables in an SPSS file grows with their number times that of the sets.
constexpr int mendsSpssLookups = noRelease;

/// Whether the fault that the release \a mending mends is in the release \a installed.
constexpr bool isFaulty(int mending, int installed = installedRelease)
{
    return installed < mending;
}

} // namespace readstat

#endif
