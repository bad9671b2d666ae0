#ifndef CONVERT_MADEDICTIONARY_H
#define CONVERT_MADEDICTIONARY_H

#include "layout/MadeLayout.h"
#include "write/Loss.h"

namespace made
{

/// A dictionary of the text form with the id ID and this item in the record R.
inline vanlayout::Layout dictionary(const vanlayout::Item &only = item(QStringLiteral("X")))
{
    vanlayout::Layout made;
    made.format = vanlayout::Format::CSProText;
    made.formatVersion = QStringLiteral("7.7");
    made.encoding = QStringLiteral("utf-8");
    made.name = QStringLiteral("D");
    made.relativePositions = true;
    vanlayout::Level level;
    level.name = QStringLiteral("L");
    level.ids = { item(QStringLiteral("ID"), 3) };
    level.ids[0].start = 1;
    vanlayout::Record record;
    record.name = QStringLiteral("R");
    record.items = { only };
    if (record.items[0].start == 0)
        record.items[0].start = 4;
    level.records = { record };
    made.levels = { level };
    return made;
}

/// Each loss as `PATH: WHAT`.
inline QStringList linesOf(const QVector<vanlayout::Loss> &losses)
{
    QStringList lines;
    for (const vanlayout::Loss &loss : losses)
        lines.append(loss.path + QStringLiteral(": ") + loss.what);
    return lines;
}

} // namespace made

#endif
