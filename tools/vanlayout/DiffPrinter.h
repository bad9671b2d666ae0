#ifndef VANLAYOUT_DIFFPRINTER_H
#define VANLAYOUT_DIFFPRINTER_H

#include "Diff.h"
#include "Layout.h"

#include <cstdio>

/// Two layouts that are answers, and what was compared of their variables.
struct ComparedLayouts {
    const Layout &oldLayout;
    const Layout &newLayout;
    QVector<const Property *> properties;
};

/// A summary line and, for each variable that differs, in what; for a person.
void printDiffAsTable(std::FILE *out, const ComparedLayouts &compared, const LayoutDiff &diff);

/// One object with the exact texts.
void printDiffAsJson(std::FILE *out, const ComparedLayouts &compared, const LayoutDiff &diff);

#endif
