#ifndef VANLAYOUT_ROUNDLINES_H
#define VANLAYOUT_ROUNDLINES_H

#include "TableLines.h"

#include <QStringList>

/// A list with the rounds of a variable or code below a heading.
class RoundLines
{
public:
    /// Both arguments must outlive this object.
    RoundLines(TableLines &tableLines, const QStringList &roundNames)
        : lines(tableLines)
        , rounds(roundNames)
    {
    }

    /// Prints a line for each round whose text is not empty; successive rounds in which it is absent share one. If it
    /// is only absent, that is part of the heading.
    void print(const QString &heading, const QStringList &texts);
    /// The text for a round that does not have the variable or code.
    static QString absent() { return QStringLiteral("absent"); }

private:
    QString namesOf(int first, int last) const;

    TableLines &lines;
    const QStringList &rounds;
};

#endif
