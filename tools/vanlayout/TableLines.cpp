#include "TableLines.h"

#include "Columns.h"
#include "Printable.h"

namespace
{

constexpr int indentation = 2; // columns of one level

} // namespace

void TableLines::print(int depth, const QStringList &words)
{
    QString line(depth * indentation, QLatin1Char(' '));
    if (width <= 0) {
        write(line + words.join(QLatin1Char(' ')));
        return;
    }
    const QString next(line.size() + indentation, QLatin1Char(' '));
    bool isEmpty = true;
    for (const QString &word : words) {
        if (!isEmpty && !fits(0, line + QLatin1Char(' ') + word)) {
            write(line);
            line = next;
            isEmpty = true;
        }
        line += isEmpty ? word : QLatin1Char(' ') + word;
        isEmpty = false;
    }
    write(line);
}

bool TableLines::fits(int depth, const QString &text) const
{
    return width <= 0 || depth * indentation + columnsOf(text) <= width;
}

void TableLines::write(QString line)
{
    while (line.endsWith(QLatin1Char(' ')))
        line.chop(1);
    out.write(printable(line).toUtf8() + '\n');
}
