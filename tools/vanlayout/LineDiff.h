#ifndef VANLAYOUT_LINEDIFF_H
#define VANLAYOUT_LINEDIFF_H

#include <QByteArray>
#include <QIODevice>
#include <QString>

/// Prints the difference between two texts as a unified diff with three lines of context; nothing if they are equal.
/// Lines end with a line feed; a carriage return before it is part of the line, as are all bytes that are not valid in
/// UTF-8.
///
/// Lines are paired at those that occur exactly once in both texts, and at the beginning and end of the parts between
/// them. The time grows with the number of lines, times its logarithm: parts of a text that would take longer are shown
/// as removed and added. With \a isForTerminal, control characters are shown as symbols.
void printLineDiff(const QByteArray &before, const QByteArray &after, const QString &nameBefore,
                   const QString &nameAfter, bool isForTerminal, QIODevice &out);

#endif
