#ifndef VANLAYOUT_COLUMNS_H
#define VANLAYOUT_COLUMNS_H

#include <QString>
#include <QStringList>

#include <cstdio>

/// Columns of a terminal that a text takes: none for a mark on the character before it, two for a wide character.
int columnsOf(const QString &text);

/// The text as far as it fits, an ellipsis in place of what does not; all of it where \a width is no bound (0).
QString cutToColumns(const QString &text, int width);

/// The text and blanks up to \a width columns.
QString paddedToColumns(const QString &text, int width);

/// The text in lines of at most \a width columns, parted at blanks, and within words that are longer than that. One
/// line where \a width is no bound (0).
QStringList wrappedToColumns(const QString &text, int width);

/// The width of the terminal that a descriptor is; 0 where it is none, or has no width.
int widthOfTerminal(int descriptor);

/// The width of the terminal that standard output is, or of COLUMNS where it is none; 0 for no bound.
int terminalWidth();

/// Writes a line in UTF-8, without the blanks at its end, and with signs in place of controls.
void printLine(std::FILE *out, QString line);

#endif
