#ifndef LAYOUT_WRITE_DDIMISSING_P_H
#define LAYOUT_WRITE_DDIMISSING_P_H

#include "model/Layout.h"

namespace vanlayout
{

/// Why a code of an item is no valid value, in words: "not applicable", "user-missing", "extended missing" ...; empty
/// for a valid one. A special value of CSPro, a user-missing value of SPSS, or `.`, `.a` ... of a number of a
/// statistical file.
QString missingKindOf(const Item &item, const Value &value, const Range &range);

/// All codes and ranges of an item that are no valid values, each once: user-missing values first, then those of its
/// value sets, in the order of the file.
QVector<Range> missingRangesOf(const Item &item);

} // namespace vanlayout

#endif
