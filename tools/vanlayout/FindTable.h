#ifndef VANLAYOUT_FINDTABLE_H
#define VANLAYOUT_FINDTABLE_H

#include "search/Search.h"
#include "search/SharedSets.h"

#include <QIODevice>

/// Prints hits for reading: one line for each, with record, item, where it was found, label and values.
class FindTable
{
public:
    /// Hits of a file are below its name if \a areGrouped, as at a terminal; otherwise each line begins with the name
    /// of the file. Lines are cut to \a width columns; 0 for no limit.
    FindTable(QIODevice &device, bool areGrouped, int columns);
    void print(const QString &file, const QVector<vanlayout::SearchHit> &hits);

private:
    void write(const QString &line);

    QIODevice &out;
    bool isGrouped;
    int width;
    bool isFirst = true;
};

/// Prints lists of values for reading: the identity, the values in the language \a language, and the variables below.
void printSharedSets(const QVector<vanlayout::SharedSet> &sets, const QString &language, QIODevice &device, int width);

#endif
