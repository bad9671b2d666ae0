#ifndef LAYOUT_WRITE_EXPORTABLE_H
#define LAYOUT_WRITE_EXPORTABLE_H

#include "model/Layout.h"
#include "vanlayout_export.h"

namespace vanlayout
{

/// Max number of columns in a form with a column for each occurrence, because a few bytes of a dictionary can state any
/// number of occurrences.
constexpr qint64 maxExportColumns = 1000000;
/// Max number of value labels in such a form, counted for each occurrence, each code and each language.
constexpr qint64 maxExportValues = 4000000;

/// The reason why a layout is too large for forms with a column for each occurrence of an item, such as DDI and CSV on
/// the Web, as a predicate without the name of the file; empty if the layout can be written. To be called before such a
/// form is written.
VANLAYOUT_EXPORT QString exportProblem(const Layout &layout);

} // namespace vanlayout

#endif
