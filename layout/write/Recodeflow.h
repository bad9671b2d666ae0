#ifndef LAYOUT_WRITE_RECODEFLOW_H
#define LAYOUT_WRITE_RECODEFLOW_H

#include "compare/Concord.h"
#include "vanlayout_export.h"

class QIODevice;

namespace vanlayout
{

/// Writes the table `variable_details` of the R package recodeflow, which its `rec_with_table()` reads: CSV with a line
/// of heads, and a row for each rule that recodes the values of a variable. \a rounds are the layouts of the
/// concordance, in its order.
///
/// The database of a round is its name in recodeflowDatabases(). A code that is the same in several rounds has one row
/// with all of them. A code whose meaning changed has a row for each meaning: the first keeps the code, the others get
/// codes that are free, and a note states the labels. Special codes and user-missing values become `NA::a` (not
/// applicable) or `NA::b`. A variable with codes is categorical; a number without codes, or with ranges, is continuous
/// and copied.
///
/// Streams onto \a device, which must be open for writing. Returns false if the device did not accept all bytes.
VANLAYOUT_EXPORT bool writeRecodeflowDetails(const Concordance &concordance, const QVector<Layout> &rounds,
                                             QIODevice &device);

/// Writes the table `variables` of recodeflow likewise: a row for each variable.
VANLAYOUT_EXPORT bool writeRecodeflowVariables(const Concordance &concordance, const QVector<Layout> &rounds,
                                               QIODevice &device);

/// The names of the rounds as databases: the names of the files without extension, with `_` for other characters than
/// ASCII letters, digits and `_`, and `r` before a name that does not begin with a letter. recodeflow searches for a
/// name within the list of databases; if a name is part of another one, all names are followed by the number of the
/// round, and if that does not suffice, they are `round_1`, `round_2` ...
VANLAYOUT_EXPORT QStringList recodeflowDatabases(const QStringList &files);

/// The names of the items because of which a variable is not in the tables: recodeflow cannot read names that contain
/// a comma, a colon or a square bracket, or begin or end with a blank. Each once, in the order of the concordance.
VANLAYOUT_EXPORT QStringList recodeflowOmitted(const Concordance &concordance);

} // namespace vanlayout

#endif
