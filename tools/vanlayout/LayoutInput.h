#ifndef VANLAYOUT_LAYOUTINPUT_H
#define VANLAYOUT_LAYOUTINPUT_H

#include "read/Reader.h"

#include <QString>

/// Reads the exact layout of a file, or of standard input where \a file is "-".
vanlayout::Layout readExactLayout(const QString &file, const vanlayout::ReadOptions &options);

/// The message of the problem for which a file has no layout, with its line.
QString messageOf(const vanlayout::Problem &problem);

/// Writes one line to standard error where a layout is that of the first part of its file alone, as of a cut Stata
/// file, or where the catalog that was asked for could not be read.
void complainIfReadInPart(const vanlayout::Layout &layout);

/// Why a layout cannot be written in a language: it declares languages, and this is none of them. Empty where it can,
/// as where no language is asked for.
QString problemWithLanguage(const vanlayout::Layout &layout, const QString &language);

#endif
