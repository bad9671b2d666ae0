#ifndef VANLAYOUT_COLUMNS_H
#define VANLAYOUT_COLUMNS_H

#include <QString>
#include <QStringList>

#include <cstdio>

/// Number of terminal columns of a text: none for a combining mark, two for a wide character.
int columnsOf(const QString &text);

/// The text cut to \a width columns, with an ellipsis if it was cut; unchanged if \a width is 0 (no limit).
QString cutToColumns(const QString &text, int width);

/// The text padded with blanks to \a width columns.
QString paddedToColumns(const QString &text, int width);

/// The text in lines of at most \a width columns, split at blanks, and within longer words. One line if \a width is 0
/// (no limit).
QStringList wrappedToColumns(const QString &text, int width);

/// The width of a terminal; 0 if the descriptor is not a terminal, or has no width.
int widthOfTerminal(int descriptor);

/// The width of the terminal at standard output, or that of COLUMNS if it is not a terminal; 0 for no limit.
int terminalWidth();

/// Writes a line in UTF-8, without trailing blanks, and with visible symbols for control characters.
void printLine(std::FILE *out, QString line);

#endif
