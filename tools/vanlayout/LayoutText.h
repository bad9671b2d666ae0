#ifndef VANLAYOUT_LAYOUTTEXT_H
#define VANLAYOUT_LAYOUTTEXT_H

#include "write/Wording_p.h"

#include <QString>

#include <functional>

/// Short texts about parts of an exact layout, in addition to those of the library.

/// "1 variable" or "3 variables".
QString countOf(qint64 count, const QString &noun);

/// Calls \a visit for each item with its level and record; the record is null for an id item.
void forEachItem(
    const vanlayout::Layout &layout,
    const std::function<void(const vanlayout::Level &, const vanlayout::Record *, const vanlayout::Item &)> &visit);

#endif
