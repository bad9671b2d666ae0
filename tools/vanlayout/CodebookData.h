#ifndef VANLAYOUT_CODEBOOKDATA_H
#define VANLAYOUT_CODEBOOKDATA_H

#include "Layout.h"

#include <QIODevice>

/// Notes that a codebook shows at most; further ones are in its counts alone.
constexpr int mostCodebookNotes = 100000;

/// Writes the data of a codebook: the variables of a layout and the notes on its reading as one JSON object, which can
/// stand in a script element of an HTML page as it is. Every character that could end the element, that UTF-8 cannot
/// hold or that HTML forbids is an escape.
///
/// Keys of no value are left out. Equal sets of value labels stand there once; a variable has the number of its set.
void writeCodebookData(QIODevice &device, const Layout &layout, const ReadReport &report);

#endif
