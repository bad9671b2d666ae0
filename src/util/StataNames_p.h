#ifndef UTIL_STATANAMES_P_H
#define UTIL_STATANAMES_P_H

#include <QByteArray>

#include <limits>

/// Most bytes of a label set's name that may be looked at: where the field of a Stata file is full, ReadStat hands it
/// over without an end mark.
struct NameBounds {
    uint withVariable;
    uint withLabel;
};
/// A name that has an end mark is taken whole, however long it is.
constexpr NameBounds wholeNames = { std::numeric_limits<uint>::max(), std::numeric_limits<uint>::max() };
/// The bounds of names in a Stata file of any version.
constexpr NameBounds widestStataNames = { 129, 129 };
/// The bounds in a Stata file that begins with \a head, of which 32 bytes are enough, by the version in it.
NameBounds stataNameBounds(const QByteArray &head);

#endif
