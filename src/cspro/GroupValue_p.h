#ifndef CSPRO_GROUPVALUE_P_H
#define CSPRO_GROUPVALUE_P_H

#include <QString>
#include <QStringList>

namespace cspro
{

/// Returns the value of a group: the first of \a groups that contains \a text, compared case-sensitively; "" if none
/// does. \a text is the name of the group at the 0-based \a index, or the name that a subclass returns for it.
///
/// Searching for all groups of a list must not take time that grows with the square of its size. The search for a text
/// that is itself the group at \a index therefore ends after 4,000,000,000 comparisons of characters divided by the
/// number of groups, at least 100,000, and the group itself is returned. Lists of up to 3,000 names of 40 characters
/// never reach the limit; real dictionaries have 1 to 17 groups.
QString groupValue(const QStringList &groups, int index, const QString &text);

} // namespace cspro

#endif
