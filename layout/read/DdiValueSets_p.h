#ifndef LAYOUT_READ_DDIVALUESETS_P_H
#define LAYOUT_READ_DDIVALUESETS_P_H

#include "read/DdiContent_p.h"

namespace vanlayout::ddi
{

/// The value sets of a variable. The values of the first one are its categories; the others are in notes of type `value
/// set`, one line per value, as `docs/ddi.md` describes. Marks the valid ranges that are values of a set, and keeps an
/// unknown kind of missing value as a statement.
QVector<ValueSet> valueSetsOf(Variable &variable);

/// The user-missing values of a variable: its invalid ranges that are no special values, nor missing values of a
/// system. The item has its value sets.
QVector<Range> missingOf(const Variable &variable);

/// Whether a note is about a value set, so that valueSetsOf() reads it.
bool isOfValueSet(const Note &note);

/// Codes and ranges in words: `1, 5 to 9`.
QString textOf(const QVector<Range> &ranges);

} // namespace vanlayout::ddi

#endif
