#include "TextGrid.h"

#include "Columns.h"

#include <algorithm>
#include <numeric>

namespace
{

constexpr int gap = 2; // blanks between columns

} // namespace

TextGrid::TextGrid(const QStringList &headings, int widestCell)
    : widths(headings.size(), 0)
    , maxWidth(widestCell)
{
    add(headings);
}

void TextGrid::add(QStringList cells)
{
    for (int i = 0; i < cells.size(); ++i) {
        if (i + 1 < cells.size())
            cells[i] = cutToColumns(cells.at(i), maxWidth);
        widths[i] = std::max(widths.at(i), columnsOf(cells.at(i)));
    }
    rows.append(cells);
}

int TextGrid::widthWithLast(int last) const
{
    const int begin
        = std::accumulate(widths.begin(), widths.end() - 1, 0, [](int sum, int width) { return sum + width + gap; });
    return begin + std::min(widths.constLast(), last);
}

void TextGrid::print(TableLines &lines, int width) const
{
    for (const QStringList &row : rows) {
        QString line;
        for (int i = 0; i + 1 < row.size(); ++i)
            line += paddedToColumns(row.at(i), widths.at(i) + gap);
        lines.printWhole(cutToColumns(line + row.constLast(), width));
    }
}
