#ifndef VANLAYOUT_LINTFIX_H
#define VANLAYOUT_LINTFIX_H

#include "check/Lint.h"

#include <QString>

/// Corrects a dictionary and prints the difference on standard output; the findings that remain are printed on standard
/// error, all of a rule with \a showsAll. The result is written to \a output unless that is "-". Returns the exit
/// status: statusFinding if an error remains.
int fixFile(const QString &file, const QString &output, const vanlayout::LintOptions &options, bool showsAll);

#endif
