#ifndef VANLAYOUT_LINTTABLE_H
#define VANLAYOUT_LINTTABLE_H

#include "check/LintJson.h"

#include <QIODevice>

/// How the findings of a file are printed.
struct LintTableStyle {
    int width = 0;         ///< of the terminal; 0 for no limit
    bool showsAll = false; ///< whether all findings of a rule are printed, not only the first ten
};

/// Prints the counts of a file and its findings, the most severe first.
void printLintTable(const vanlayout::LintedFile &file, const LintTableStyle &style, QIODevice &out);

/// Prints the rules with their severity and meaning.
void printLintRules(int width, QIODevice &out);

#endif
