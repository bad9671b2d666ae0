#ifndef VANLAYOUT_LINEDIFF_H
#define VANLAYOUT_LINEDIFF_H

#include <QByteArray>
#include <QIODevice>
#include <QString>

/// Prints the difference between two texts as a unified diff with three lines of context; nothing if they are equal.
/// Lines end with a line feed; a carriage return before it is part of the line, as are all bytes that are not valid in
/// UTF-8.
///
/// The difference is the shortest one, unless more than 1,000 lines differ. Then lines that occur exactly once in both
/// texts are paired first, and the shortest difference of the parts between them is searched. Parts that would take too
/// long are shown as removed and added as a whole. With \a isForTerminal, control characters are shown as symbols.
void printLineDiff(const QByteArray &before, const QByteArray &after, const QString &nameBefore,
                   const QString &nameAfter, bool isForTerminal, QIODevice &out);

#endif
