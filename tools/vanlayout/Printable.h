#ifndef VANLAYOUT_PRINTABLE_H
#define VANLAYOUT_PRINTABLE_H

#include <QString>

/// The text with a visible symbol for each character that a terminal would interpret: the control characters of ASCII
/// and Latin-1, and those of bidirectional text. All texts for a terminal pass through this, at the latest when they
/// are printed.
QString printable(const QString &text);

/// Prints one line to standard error, in the encoding of the locale.
void printToStandardError(const QString &line);

#endif
