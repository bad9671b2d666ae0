#ifndef UTIL_STATANAMES_P_H
#define UTIL_STATANAMES_P_H

#include <QByteArray>

#include <limits>

/// Max number of bytes that may be read of the name of a label set. ReadStat delivers a name without an end mark if it
/// fills its field in a Stata file.
struct NameBounds {
    uint withVariable;
    uint withLabel;
};
/// Bounds for names that have an end mark: they are read whole.
constexpr NameBounds wholeNames = { std::numeric_limits<uint>::max(), std::numeric_limits<uint>::max() };
/// Bounds that hold for a Stata file of any version.
constexpr NameBounds widestStataNames = { 129, 129 };
/// Returns the bounds for the version of a Stata file that begins with \a head. 32 bytes are enough.
NameBounds stataNameBounds(const QByteArray &head);

#endif
