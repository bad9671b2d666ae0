#ifndef LAYOUT_LOAD_SASFORMATS_P_H
#define LAYOUT_LOAD_SASFORMATS_P_H

#include "load/Plan_p.h"

#include <QByteArray>

namespace vanlayout
{

/// The format of the columns that share codes.
struct SasFormat {
    QByteArray name;      ///< empty if no code has a label
    QByteArray statement; ///< of PROC FORMAT
};

/// The formats of a program, by the index of the codes.
QVector<SasFormat> sasFormats(const LoadPlan &plan);

/// The statement that defines a format with the labels of a column; empty if it has none. Ranges do not overlap: a code
/// has the label of its special value, else of the first value in the order of the file.
QByteArray sasFormat(const QByteArray &format, const CodeList &codes, bool isText, SpecialForm specials);

} // namespace vanlayout

#endif
