#ifndef STATISTICAL_SPSSDICTIONARY_P_H
#define STATISTICAL_SPSSDICTIONARY_P_H

#include <QtGlobal>

namespace statistical
{

class BufferedFile;

/// The dictionary of an SPSS file, as far as ReadStat may come to harm in it.
struct SpssDictionary {
    bool isSpss = false;       ///< whether the file begins as an SPSS file does
    bool isWhole = false;      ///< whether ReadStat 1.1.8 goes past each record up to the end of the dictionary
    qint64 variables = 0;      ///< without the further parts of a text
    qint64 lookupSteps = 0;    ///< about how often ReadStat compares names while it looks variables up
    bool hasLongNames = false; ///< whether there is a record of long names, or of very long texts
};

/// Walks from record to record of an SPSS file that is open, as ReadStat 1.1.8 does, until one that it does not go
/// past.
///
/// The format is that of the PSPP developers' guide. Sizes are counted as ReadStat counts them, in 32 bits where it
/// does: a walk that counts otherwise arrives at other records.
SpssDictionary walkSpssDictionary(BufferedFile &file);

} // namespace statistical

#endif
