#ifndef VANLAYOUT_CONCORDTABLE_H
#define VANLAYOUT_CONCORDTABLE_H

#include "compare/Concord.h"

#include <QIODevice>

struct ConcordTableStyle {
    int width = 0;         ///< columns of the terminal; 0 for no limit
    bool showsAll = false; ///< also the variables and codes that are the same in all rounds
};

/// Writes a concordance for reading: the variables, then the codes; what differs most first, and the number of the
/// variables and codes that are the same in all rounds last.
///
/// Each is a table with a column for each round if that fits the width, else a list with a line for each round that
/// differs.
void printConcordTable(const vanlayout::Concordance &concordance, QIODevice &out, const ConcordTableStyle &style);

#endif
