#ifndef VANLAYOUT_TEXTGRID_H
#define VANLAYOUT_TEXTGRID_H

#include "TableLines.h"

#include <QStringList>
#include <QVector>

/// A table whose columns are as wide as their widest cell. Long cells are cut, except in the last column, which is cut
/// to the width of the terminal.
class TextGrid
{
public:
    /// \a widestCell is the max width of a column in columns of the terminal.
    TextGrid(const QStringList &headings, int widestCell);

    /// Adds a row with a cell for each heading.
    void add(QStringList cells);
    /// The width of the table if its last column has at most \a last columns.
    int widthWithLast(int last) const;
    /// Prints the rows; \a width is that of the terminal, 0 for no limit.
    void print(TableLines &lines, int width) const;

private:
    QVector<int> widths;
    int maxWidth;
    QVector<QStringList> rows;
};

#endif
