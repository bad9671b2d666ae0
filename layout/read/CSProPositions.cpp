#include "read/CSProPositions_p.h"

#include "util/Numbers_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

// Columns of all occurrences. Sizes below zero take no room.
qint64 widthOf(const Item &item)
{
    return qint64(std::max(item.length, 0)) * std::max(item.occurrences, 0);
}

// A sum of columns stays far below the largest qint64 then.
qint64 bounded(qint64 column)
{
    return std::min(column, qint64(1) << 62);
}

// Gives columns to the items of one container, one after the other.
class Columns
{
public:
    Columns(qint64 first, bool relative)
        : next(first)
        , isRelative(relative)
    {
    }

    void place(Item &item, const StoredColumns &stored)
    {
        if (item.isSubitem)
            placeSubitem(item, stored);
        else
            placeItem(item, stored);
    }

    qint64 next;    ///< first column behind the items so far, wherever their stored starts are
    qint64 end = 1; ///< first column behind the last of their columns

private:
    void placeItem(Item &item, const StoredColumns &stored)
    {
        if (!stored.hasStart && isRelative)
            item.start = numbers::clamped(next);
        start = item.start;
        next = bounded(next + widthOf(item));
        end = std::max(end, bounded(start + widthOf(item)));
    }

    void placeSubitem(Item &item, const StoredColumns &stored) const
    {
        if (!stored.hasStart && stored.subitemOffset && start > 0)
            item.start = numbers::clamped(qint64(start) + *stored.subitemOffset);
    }

    bool isRelative;
    int start = 0; ///< of the last item that is no subitem
};

// Gives columns to the ids of all levels; returns the first column for the items of records.
qint64 layOutIds(Layout &layout, const std::vector<LevelColumns> &stored, bool isRelative)
{
    const RecordTypeColumns type = layout.recordType.value_or(RecordTypeColumns());
    bool isTypePlaced = false;
    Columns columns(1, isRelative);
    for (int level = 0; level < layout.levels.size(); ++level) {
        QVector<Item> &ids = layout.levels[level].ids;
        for (int id = 0; id < ids.size(); ++id) {
            if (!isTypePlaced && type.start <= columns.next) {
                isTypePlaced = true;
                columns.next += std::max(type.length, 0);
            }
            columns.place(ids[id], stored[size_t(level)].ids[size_t(id)]);
            columns.next = std::max(columns.next, columns.end);
        }
    }
    if (!isTypePlaced && type.start != 0)
        columns.next += std::max(type.length, 0);
    return columns.next;
}

} // namespace

void layOutColumns(Layout &layout, const std::vector<LevelColumns> &stored)
{
    const bool isRelative = layout.relativePositions.value_or(false);
    const qint64 first = layOutIds(layout, stored, isRelative);
    for (int level = 0; level < layout.levels.size(); ++level) {
        QVector<Record> &records = layout.levels[level].records;
        for (int record = 0; record < records.size(); ++record) {
            QVector<Item> &items = records[record].items;
            Columns columns(first, isRelative);
            for (int item = 0; item < items.size(); ++item)
                columns.place(items[item], stored[size_t(level)].records[size_t(record)][size_t(item)]);
        }
    }
}

} // namespace vanlayout
