#include "read/CSProPositions_p.h"

#include "util/Numbers_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

// The columns of all occurrences. Negative sizes are 0.
qint64 widthOf(const Item &item)
{
    return qint64(std::max(item.length, 0)) * std::max(item.occurrences, 0);
}

// Limits a column, so that sums of columns remain far below the largest qint64.
qint64 bounded(qint64 column)
{
    return std::min(column, qint64(1) << 62);
}

// Sets the columns of items, one after another.
class Placement
{
public:
    explicit Placement(bool relative)
        : isRelative(relative)
    {
    }

    // \a next is the column of an item that has no stored start.
    void place(Item &item, const StoredColumns &stored, qint64 next)
    {
        if (item.isSubitem) {
            if (!stored.hasStart && stored.subitemOffset && start > 0)
                item.start = numbers::clamped(qint64(start) + *stored.subitemOffset);
            return;
        }
        if (!stored.hasStart && isRelative)
            item.start = numbers::clamped(next);
        start = item.start;
    }

private:
    bool isRelative;
    int start = 0; ///< start of the last item that is not a subitem
};

// The columns of the ids of all levels, and of the record type among them.
class IdColumns
{
public:
    IdColumns(const RecordTypeColumns &recordType, bool relative)
        : type(recordType)
        , isTypePlaced(recordType.start < 1)
        , placement(relative)
    {
    }

    void place(Item &id, const StoredColumns &stored)
    {
        if (!isTypePlaced && type.start <= next)
            placeType();
        placement.place(id, stored, next);
        if (id.isSubitem)
            return;
        next = bounded(next + widthOf(id));
        end = std::max(end, bounded(id.start + widthOf(id)));
    }

    // The first column after all of them, including those with a stored start further to the right.
    qint64 firstColumnAfter()
    {
        if (!isTypePlaced)
            placeType();
        return std::max(next, end);
    }

private:
    void placeType()
    {
        isTypePlaced = true;
        next += std::max(type.length, 0);
    }

    RecordTypeColumns type;
    bool isTypePlaced;
    Placement placement;
    qint64 next = 1;
    qint64 end = 1;
};

// Returns the first column for the items of records.
qint64 layOutIds(Layout &layout, const std::vector<LevelColumns> &stored, bool isRelative)
{
    IdColumns columns(layout.recordType.value_or(RecordTypeColumns()), isRelative);
    for (int level = 0; level < layout.levels.size(); ++level) {
        QVector<Item> &ids = layout.levels[level].ids;
        for (int id = 0; id < ids.size(); ++id)
            columns.place(ids[id], stored[size_t(level)].ids[size_t(id)]);
    }
    return columns.firstColumnAfter();
}

// The items of a record follow each other from \a next on, whatever starts are stored.
void layOutRecord(QVector<Item> &items, const std::vector<StoredColumns> &stored, qint64 next, bool isRelative)
{
    Placement placement(isRelative);
    for (int index = 0; index < items.size(); ++index) {
        Item &item = items[index];
        placement.place(item, stored[size_t(index)], next);
        if (!item.isSubitem)
            next = bounded(next + widthOf(item));
    }
}

} // namespace

void layOutColumns(Layout &layout, const std::vector<LevelColumns> &stored)
{
    const bool isRelative = layout.relativePositions.value_or(false);
    const qint64 first = layOutIds(layout, stored, isRelative);
    for (int level = 0; level < layout.levels.size(); ++level) {
        QVector<Record> &records = layout.levels[level].records;
        for (int record = 0; record < records.size(); ++record)
            layOutRecord(records[record].items, stored[size_t(level)].records[size_t(record)], first, isRelative);
    }
}

} // namespace vanlayout
