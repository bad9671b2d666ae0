#ifndef VANLAYOUT_LAYOUTINPUT_H
#define VANLAYOUT_LAYOUTINPUT_H

#include "read/Reader.h"

#include <QString>

/// Reads the exact layout of a file, or of standard input if \a file is "-".
vanlayout::Layout readExactLayout(const QString &file, const vanlayout::ReadOptions &options);

/// The message of the problem because of which a file has no layout, with its line number.
QString messageOf(const vanlayout::Problem &problem);

/// Prints one line on standard error if only the first part of the file could be read, such as of a cut Stata file, or
/// if the given catalog could not be read.
void complainIfReadInPart(const vanlayout::Layout &layout);

/// The reason why a layout cannot be written in a language: it declares languages, but not this one. Empty if it can,
/// or if \a language is empty.
QString problemWithLanguage(const vanlayout::Layout &layout, const QString &language);

#endif
