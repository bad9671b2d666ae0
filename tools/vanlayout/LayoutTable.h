#ifndef VANLAYOUT_LAYOUTTABLE_H
#define VANLAYOUT_LAYOUTTABLE_H

#include "model/Layout.h"

#include <QString>

#include <cstdio>

/// How an exact layout is printed for a person.
struct LayoutTableStyle {
    QString language;         ///< code of the language of the labels; empty for the primary one
    bool showsValues = false; ///< value labels beneath each item
    bool isSelection = false; ///< the layout has been reduced to some of its variables
    int width = 0;            ///< columns of the terminal; 0 for no bound
};

/// Prints a layout as a table: the title, the records as headings, one line an item. A column that would be empty
/// throughout is left out; the label gets the columns that the others leave.
void printLayoutTable(const vanlayout::Layout &layout, const LayoutTableStyle &style, std::FILE *out);

#endif
