#ifndef VANLAYOUT_DIFFPRINTER_H
#define VANLAYOUT_DIFFPRINTER_H

#include "Diff.h"
#include "Layout.h"

#include <cstdio>

/// Two layouts that are answers, what was compared of their variables, and their records.
struct ComparedLayouts {
    const Layout &oldLayout;
    const Layout &newLayout;
    QVector<const Property *> properties;
    Records oldRecords;
    Records newRecords;
};

/// A summary line and, for the records and each variable that differ, in what; for a person.
void printDiffAsTable(std::FILE *out, const ComparedLayouts &compared, const LayoutDiff &diff,
                      const RecordsDiff &records);

/// One object with the exact texts.
void printDiffAsJson(std::FILE *out, const ComparedLayouts &compared, const LayoutDiff &diff,
                     const RecordsDiff &records);

#endif
