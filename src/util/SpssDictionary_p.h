#ifndef UTIL_SPSSDICTIONARY_P_H
#define UTIL_SPSSDICTIONARY_P_H

#include <QString>

class QIODevice;

/// The dictionary of an SPSS file, as far as ReadStat 1.1.8 may come to harm in it.
struct SpssDictionary {
    bool isReadable = true;    ///< whether the device does not fail where the walk ends
    bool isSpss = false;       ///< whether the file begins as an SPSS file does
    bool isWhole = false;      ///< whether ReadStat goes past each record up to the end of the dictionary
    qint64 variables = 0;      ///< without the further parts of a text
    qint64 lookupSteps = 0;    ///< about how often ReadStat compares names while it looks variables up
    bool hasLongNames = false; ///< whether there is a record of long names, or of very long texts
    qint64 fileSize = 0;

    /// Most variables of a file with long names, or with very long texts, that ReadStat has room for; with more it
    /// writes through a null pointer.
    static constexpr int mostLongNames = 419328;
    /// Most comparisons of names with which ReadStat may look for variables. For each set of value labels or missing
    /// values of a long text it goes through the variables from the first on: this is 15,811 sets in a file of as many
    /// variables.
    static constexpr qint64 mostLookupSteps = 250000000;

    /// Why ReadStat cannot be trusted with the file, as one line for a person; null where it reads the file, or refuses
    /// it, without harm.
    ///
    /// A file of 64 KiB or more is also refused where its dictionary is not whole: what is behind such a place cannot
    /// be judged. A device that fails is no problem of the file.
    QString problem() const;
};

/// How ReadStat takes the documents of a file: it counts their bytes in 32 bits where it goes past them, and line by
/// line where a handler for notes is installed.
enum class SpssDocuments { areSkipped, areRead };

/// Walks from record to record of an SPSS file, which begins where \a device is, as ReadStat 1.1.8 does, until one that
/// it does not go past. Leaves the device somewhere.
///
/// The format is that of the PSPP developers' guide. Sizes are counted as ReadStat counts them, in 32 bits where it
/// does: a walk that counts otherwise arrives at other records.
SpssDictionary walkSpssDictionary(QIODevice &device, SpssDocuments documents);

#endif
