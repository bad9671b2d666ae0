#ifndef VANLAYOUT_DIFFTABLE_H
#define VANLAYOUT_DIFFTABLE_H

#include "compare/Diff.h"

#include <QIODevice>

/// Prints the differences of two layouts for a person: both files, how often each kind occurs, then the changes by
/// record and item. Lines are at most \a width columns wide where they can be broken; 0 for no bound.
void printDiffTable(const vanlayout::LayoutDiff &diff, QIODevice &out, int width);

/// Prints both files and how often each kind of change occurs, with its meaning.
void printDiffSummary(const vanlayout::LayoutDiff &diff, QIODevice &out, int width);

#endif
