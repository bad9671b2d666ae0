#ifndef LAYOUT_WRITE_DDIMISSING_P_H
#define LAYOUT_WRITE_DDIMISSING_P_H

#include "model/Layout.h"

namespace vanlayout
{

/// The reason why a code of an item is not a valid value, in words: "not applicable", "user-missing", "extended
/// missing" ...; empty for a valid one. Codes that are not valid are special values of CSPro, user-missing values of
/// SPSS, and `.`, `.a` ... of a number of a statistical file.
QString missingKindOf(const Item &item, const Value &value, const Range &range);

/// All codes and ranges of an item that are not valid values, each once: user-missing values first, then those of its
/// value sets, in the order of the file.
QVector<Range> missingRangesOf(const Item &item);

} // namespace vanlayout

#endif
