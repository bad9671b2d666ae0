#ifndef LAYOUT_COMPARE_ROUNDNAMES_H
#define LAYOUT_COMPARE_ROUNDNAMES_H

#include "vanlayout_export.h"

#include <QStringList>

namespace vanlayout
{

/// Short names of files, each once: the name of a file without its directories, or, if several files have that name,
/// with as many directories as are needed: "2001/household.dcf". If the same path occurs again, it is followed by its
/// number: "household.dcf#2".
VANLAYOUT_EXPORT QStringList roundNames(const QStringList &files);

} // namespace vanlayout

#endif
