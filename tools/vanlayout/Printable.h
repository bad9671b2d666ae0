#ifndef VANLAYOUT_PRINTABLE_H
#define VANLAYOUT_PRINTABLE_H

#include <QString>

/// The text with a sign in place of each character that a terminal would act on: the controls of ASCII and Latin-1, and
/// those of bidirectional text. Whatever is meant for a person goes through this, at the latest where it is printed.
QString printable(const QString &text);

/// Prints one line to standard error, in the encoding of the locale.
void printToStandardError(const QString &line);

#endif
