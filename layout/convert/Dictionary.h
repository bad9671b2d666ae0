#ifndef LAYOUT_CONVERT_DICTIONARY_H
#define LAYOUT_CONVERT_DICTIONARY_H

#include "model/Layout.h"
#include "vanlayout_export.h"
#include "write/Loss.h"

#include <QString>
#include <QStringList>

namespace vanlayout
{

/// A CSPro dictionary that was made from a layout of another format.
struct VANLAYOUT_EXPORT MadeDictionary {
    Layout layout;   ///< of format `Format::CSProJson`, without problems; empty if there is a problem
    Losses losses;   ///< the statements of the original that a dictionary cannot hold, and the names that were changed
    QString problem; ///< why there is no dictionary, as a predicate without the name of the file; empty if there is one
};

/// Makes a CSPro dictionary from a layout of another format.
///
/// A file of lines whose variables all have columns, which is a DDI document, keeps its levels, records and columns.
/// \a ids are then the names of the variables that become id items, if it states none: each must be in the same columns
/// of all records.
///
/// Any other layout becomes one level and one record, or several if its items need more than 32,000 columns. \a ids are
/// the names of the variables that become id items, in this order: the exact name, or the only one that differs in
/// case; CSPro requires at least one. The other variables are the items of the record. Positions are relative: the ids
/// from column 1, then the items in the order of the file. The width of a number is that of its format, or of its
/// storage type if there is none, but at least that of its longest code, and at most 15; the decimal mark is part of
/// it. A text has its length in bytes, at most 999. User-missing values become values with the special meaning
/// "missing", of which a value set can have one; further ones are ordinary values.
///
/// Names are folded to A to Z, 0 to 9 and `_`, and numbered if they are not unique or words of the CSPro language.
VANLAYOUT_EXPORT MadeDictionary makeDictionary(const Layout &layout, const QStringList &ids);

} // namespace vanlayout

#endif
