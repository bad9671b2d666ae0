#ifndef LAYOUT_READ_STATFILEITEM_P_H
#define LAYOUT_READ_STATFILEITEM_P_H

#include "model/Layout.h"

#include <readstat.h>

namespace vanlayout::stat
{

/// The item of a variable of a file in \a format, without its value set.
Item itemOf(const readstat_variable_t &variable, Format format);

/// The labels of a text of a statistical file: none for an empty one.
Labels labelsOf(const QString &text);

/// The path of an item: a statistical file has one level and one record, both without names.
QString pathOf(const QString &item);

} // namespace vanlayout::stat

#endif
