#ifndef LAYOUT_WRITE_EXPORTABLE_H
#define LAYOUT_WRITE_EXPORTABLE_H

#include "model/Layout.h"
#include "vanlayout_export.h"

namespace vanlayout
{

/// Bounds for forms that have a column for each occurrence: a few bytes of a dictionary can state any number of them.
constexpr qint64 maxExportColumns = 1000000;
constexpr qint64 maxExportValues = 4000000;

/// Why a layout is too large for the forms that have a column for each occurrence of an item, as DDI and CSV on the Web
/// have; empty where it is not. To be asked before such a form is written.
VANLAYOUT_EXPORT QString exportProblem(const Layout &layout);

} // namespace vanlayout

#endif
