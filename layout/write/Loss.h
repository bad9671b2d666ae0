#ifndef LAYOUT_WRITE_LOSS_H
#define LAYOUT_WRITE_LOSS_H

#include "vanlayout_export.h"

#include <QString>
#include <QVector>

namespace vanlayout
{

/// A statement of a layout that the written form cannot hold.
struct VANLAYOUT_EXPORT Loss {
    QString path; ///< the element by its name, as in Problem; empty for the file as a whole
    QString what; ///< one line: what is missing or changed in the written form
};

/// In the order of the layout.
using Losses = QVector<Loss>;

} // namespace vanlayout

Q_DECLARE_TYPEINFO(vanlayout::Loss, Q_MOVABLE_TYPE);

#endif
