#include "record/QuestIndex.h"

#include "util/EmptyText_p.h"

#include <algorithm>

QString TQuestIndex::typeOf(const QString &line) const
{
    return line.mid(typeStart, typeLength);
}

int TQuestIndex::countRecords(QString type) const
{
    if (!lines)
        return 0;
    return int(
        std::count_if(lines->cbegin(), lines->cend(), [&](const QString &line) { return typeOf(line) == type; }));
}

QString TQuestIndex::findRecord(QString type, int occurrence) const
{
    if (!lines)
        return emptyText();
    int match = 0;
    for (const QString &line : qAsConst(*lines)) {
        QString code = typeOf(line);
        if (code == type && match++ == occurrence)
            return notNull(code);
    }
    return emptyText();
}
