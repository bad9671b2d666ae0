#ifndef UTIL_SPSSDICTIONARY_P_H
#define UTIL_SPSSDICTIONARY_P_H

#include "util/ReadStatFaults_p.h"

#include <QString>

class QIODevice;

/// Properties of the dictionary of an SPSS file that decide whether ReadStat 1.1.8 can read it safely.
struct SpssDictionary {
    bool isReadable = true;    ///< whether the device has not failed at the end of the walk
    bool isSpss = false;       ///< whether the file begins as an SPSS file does
    bool isWhole = false;      ///< whether ReadStat accepts all records up to the end of the dictionary
    qint64 variables = 0;      ///< without the further parts of a text
    qint64 lookupSteps = 0;    ///< approximate number of comparisons of names when ReadStat searches for variables
    bool hasLongNames = false; ///< whether there is a record of long names, or of very long texts
    qint64 fileSize = 0;

    /// Max number of variables of a file with long names, or with very long texts, for which ReadStat has memory. With
    /// more it writes through a null pointer.
    static constexpr int maxLongNames = 419328;
    /// Max number of comparisons of names when ReadStat searches for variables. For each set of value labels or missing
    /// values of a long text it searches from the first variable on: this is 15,811 sets in a file of 15,811 variables.
    static constexpr qint64 maxLookupSteps = 250000000;

    /// Returns the reason why ReadStat must not read the file, as one line for a person; null if ReadStat reads the
    /// file, or refuses it, without harm.
    ///
    /// A file of 64 KiB or more is also refused if its dictionary is not whole, since the rest of the file cannot be
    /// checked. A failure of the device is not a problem of the file.
    ///
    /// \a release is the release of ReadStat that is to read the file. Faults that it does not have are no reasons.
    QString problem(int release = readstat::installedRelease) const;
};

/// States whether ReadStat skips or reads the documents of a file. It counts the bytes in 32 bits when it skips them,
/// and reads them line by line when a handler for notes is installed.
enum class SpssDocuments { areSkipped, areRead };

/// Walks through the records of an SPSS file as ReadStat 1.1.8 does, from the current position of \a device up to the
/// first record that ReadStat does not accept. The position of the device is undefined afterwards.
///
/// The format is that of the PSPP developers' guide. Sizes are computed as ReadStat computes them, including those that
/// it computes in 32 bits, so that the walk reaches the same records.
SpssDictionary walkSpssDictionary(QIODevice &device, SpssDocuments documents);

#endif
