#ifndef VANLAYOUT_DIFFTABLE_H
#define VANLAYOUT_DIFFTABLE_H

#include "compare/Diff.h"

#include <QIODevice>

/// Prints the differences between two layouts for people: both files, the number of changes of each kind, then the
/// changes by record and item. Lines are at most \a width columns wide if they can be broken; 0 for no limit.
void printDiffTable(const vanlayout::LayoutDiff &diff, QIODevice &out, int width);

/// Prints both files and the number of changes of each kind, with the meaning of the kind.
void printDiffSummary(const vanlayout::LayoutDiff &diff, QIODevice &out, int width);

#endif
