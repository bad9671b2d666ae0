#include "cspro/TextLines_p.h"

#include <algorithm>

TextLines::TextLines(const QStringList *list)
    : texts(list)
{
}

TextLines::TextLines(const QStringList &list)
    : texts(&list)
{
}

TextLines TextLines::ofText(QStringView text)
{
    TextLines lines;
    lines.text = text;
    lines.end = lines.feedAfter(0);
    return lines;
}

// Moves to the line at the index, or after the last one.
void TextLines::moveTo(int index) const
{
    if (index < line) {
        line = 0;
        begin = 0;
        end = feedAfter(0);
    }
    for (; line < index && end < text.size(); ++line) {
        begin = end + 1;
        end = feedAfter(begin);
    }
}

qsizetype TextLines::feedAfter(qsizetype position) const
{
    return std::find(text.begin() + position, text.end(), QLatin1Char('\n')) - text.begin();
}

SectionLines::SectionLines(const QStringList *list)
{
    if (!list)
        return;
    reserve(list->size());
    for (const QString &line : *list)
        append(line);
}

SectionLines::SectionLines(const QStringList &list)
    : SectionLines(&list)
{
}
