#ifndef LAYOUT_COMPARE_CONCORDPLURALS_P_H
#define LAYOUT_COMPARE_CONCORDPLURALS_P_H

#include <QString>

namespace vanlayout
{

/// Whether one folded word is the plural of the other one although it has more than a further `s` or `x`: "women" of
/// "woman", "regioes" of "regiao", "journaux" of "journal".
bool areSingularAndPlural(const QString &one, const QString &other);

} // namespace vanlayout

#endif
