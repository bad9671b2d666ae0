#ifndef CSPRO_GROUPVALUE_P_H
#define CSPRO_GROUPVALUE_P_H

#include <QString>
#include <QStringList>

namespace cspro
{

/// The value of a group: the first of \a groups that contains \a text, case-sensitively; "" if none does. \a text is
/// the name of the group at \a index from 0, or the name that a subclass gives it.
///
/// Asking for each group of a list must not take a time that grows with the square of the list. The search for a text
/// that is itself the group at \a index therefore ends after some 100,000 comparisons of characters, and that group is
/// the answer. Names of 40 characters reach the bound after 200 groups at the earliest; real dictionaries have 1
/// to 17.
QString groupValue(const QStringList &groups, int index, const QString &text);

} // namespace cspro

#endif
