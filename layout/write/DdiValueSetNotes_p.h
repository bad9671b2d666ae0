#ifndef LAYOUT_WRITE_DDIVALUESETNOTES_P_H
#define LAYOUT_WRITE_DDIVALUESETNOTES_P_H

#include "model/Layout.h"

#include <QStringList>

namespace vanlayout
{

/// The note about a value set in one language.
struct DdiValueSetNote {
    QString language; ///< empty if the file states none
    QStringList lines;
};

/// The notes about a value set, one for each language of its texts. They consist of its label and, with \a hasValues, a
/// line for each value, such as `0 to 4, 9: Young [missing]`. A value without a label is in the first note.
QVector<DdiValueSetNote> ddiValueSetNotes(const ValueSet &set, bool hasValues);

} // namespace vanlayout

#endif
