#ifndef VANLAYOUT_LAYOUTTABLE_H
#define VANLAYOUT_LAYOUTTABLE_H

#include "model/Layout.h"

#include <QString>

#include <cstdio>

/// Options of the table of an exact layout.
struct LayoutTableStyle {
    QString language;         ///< code of the language of the labels; empty for the primary one
    bool showsValues = false; ///< value labels below each item
    bool isSelection = false; ///< the layout has been reduced to some of its variables
    int width = 0;            ///< columns of the terminal; 0 for no limit
};

/// Prints a layout as a table: the title, the records as headings, one line per item. Empty columns are
/// omitted; the label gets the remaining width.
void printLayoutTable(const vanlayout::Layout &layout, const LayoutTableStyle &style, std::FILE *out);

#endif
