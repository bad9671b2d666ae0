#ifndef LAYOUT_CONVERT_DICTIONARYIDS_P_H
#define LAYOUT_CONVERT_DICTIONARYIDS_P_H

#include "model/Layout.h"

#include <QStringList>

namespace vanlayout
{

/// The variables that become id items.
struct DictionaryIds {
    QVector<int> places; ///< among the variables, in the order of the names
    QString problem;     ///< why they cannot be ids, as a predicate; empty if they can
};

/// Finds each name among the variables: the exact name, or else the only name that differs in case.
DictionaryIds findIds(const QVector<Item> &variables, const QStringList &names);

/// Moves the named variables of a file of lines to the ids of its level, if it states none. Each must be in the same
/// columns of all records. Returns why that is not possible, as a predicate; empty if it is.
QString moveIds(Layout &layout, const QStringList &names);

} // namespace vanlayout

#endif
