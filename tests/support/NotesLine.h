#ifndef SUPPORT_NOTESLINE_H
#define SUPPORT_NOTESLINE_H

#include <QByteArray>
#include <QRegularExpression>
#include <QString>

/// Returns the line that `vanlayout fields` writes to standard error if a file has notes.
inline const QRegularExpression &notesLine()
{
    static const QRegularExpression line(
        QStringLiteral("^vanlayout: .*: \\d+ notes? \\([^()]+\\); vanlayout explain shows them\n"),
        QRegularExpression::MultilineOption);
    return line;
}

inline QByteArray withoutNotesLine(const QByteArray &err)
{
    return QString::fromLatin1(err).remove(notesLine()).toLatin1();
}

inline QByteArray notesLinesOf(const QByteArray &err)
{
    QByteArray lines;
    QRegularExpressionMatchIterator found = notesLine().globalMatch(QString::fromLatin1(err));
    while (found.hasNext())
        lines += found.next().captured().toLatin1();
    return lines;
}

#endif
