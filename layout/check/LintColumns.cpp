#include "check/LintFindings_p.h"
#include "util/KeyedHash_p.h"

#include <algorithm>
#include <vector>

namespace vanlayout
{

namespace
{

/// Columns that belong to one element, from the first to the last, both from 1.
struct Columns {
    qint64 first;
    qint64 last;
    QString name; ///< for messages
    ElementAddress address;
};

bool startsBefore(const Columns &left, const Columns &right)
{
    return left.first < right.first;
}

// Whether one of them has all columns of the other.
bool contains(const Columns &one, const Columns &other)
{
    return (one.first >= other.first && one.last <= other.last) || (other.first >= one.first && other.last <= one.last);
}

QString shownColumns(qint64 first, qint64 last)
{
    return first == last ? QStringLiteral("column %1").arg(first)
                         : QStringLiteral("columns %1 to %2").arg(first).arg(last);
}

QString shownColumns(const Columns &columns)
{
    return shownColumns(columns.first, columns.last);
}

/// The items of a list that have columns, without subitems, sorted by their first column.
std::vector<Columns> columnsOfItems(const QVector<Item> &items, const ElementAddress &address)
{
    std::vector<Columns> list;
    forEachItem(items, address, [&](const LintItem &place) {
        const qint64 last = lastColumnOf(place.item);
        if (!place.item.isSubitem && last >= place.item.start && place.item.start >= 1)
            list.push_back({ place.item.start, last, inMessage(place.item.name), place.address });
    });
    std::stable_sort(list.begin(), list.end(), startsBefore);
    return list;
}

/// Checks the columns of all records with a sweep over the items in the order of their columns.
class ColumnCheck
{
public:
    ColumnCheck(const Layout &source, LintFindings &list)
        : layout(source)
        , findings(list)
    {
        gatherCommonColumns();
    }

    void check()
    {
        findOverlaps(common);
        mergeCommonColumns();
        forEachItemList(layout, [&](const QVector<Item> &items, const ElementAddress &address, const Record *record) {
            if (!record)
                return;
            const std::vector<Columns> columns = columnsOfItems(items, address);
            findOverlaps(columns);
            for (const Columns &each : columns)
                findOverlapWithCommon(each);
            if (findings.wants(LintRule::Gap))
                findGaps(columns, address);
        });
    }

private:
    // The columns of the record type and of the ids of all levels are on each line.
    void gatherCommonColumns()
    {
        if (layout.recordType && layout.recordType->start >= 1 && layout.recordType->length >= 1) {
            const qint64 first = layout.recordType->start;
            common.push_back(
                { first, first + layout.recordType->length - 1, QStringLiteral("the record type"), ElementAddress() });
        }
        forEachItemList(layout, [&](const QVector<Item> &items, const ElementAddress &address, const Record *record) {
            if (record)
                return;
            const std::vector<Columns> ids = columnsOfItems(items, address);
            common.insert(common.end(), ids.begin(), ids.end());
        });
        std::stable_sort(common.begin(), common.end(), startsBefore);
    }

    // Joins the columns that overlap or adjoin, so that those before a column are found with one search.
    void mergeCommonColumns()
    {
        for (const Columns &each : common) {
            if (!merged.empty() && each.first <= merged.back().last + 1)
                merged.back().last = std::max(merged.back().last, each.last);
            else
                merged.push_back(each);
            lastUntil.push_back(lastUntil.empty() || common[lastUntil.back()].last < each.last ? lastUntil.size()
                                                                                               : lastUntil.back());
        }
    }

    // A DDI document has no subitems: a variable may have some of the columns of another one.
    void report(const Columns &one, const Columns &other)
    {
        if (!isDictionary(layout) && contains(one, other))
            return;
        findings.add(LintRule::Overlap, one.address,
                     QStringLiteral("%1 (%2) overlaps %3 (%4); move one of them")
                         .arg(one.name, shownColumns(one), other.name, shownColumns(other)));
    }

    // Each item is reported once, with the item before it that ends last.
    void findOverlaps(const std::vector<Columns> &sorted)
    {
        const Columns *longest = nullptr;
        for (const Columns &each : sorted) {
            if (longest && each.first <= longest->last) {
                if (each.address.level < 0)
                    report(*longest, each);
                else
                    report(each, *longest);
            }
            if (!longest || each.last > longest->last)
                longest = &each;
        }
    }

    void findOverlapWithCommon(const Columns &columns)
    {
        const auto after = std::upper_bound(common.begin(), common.end(), columns.last,
                                            [](qint64 last, const Columns &each) { return last < each.first; });
        if (after == common.begin())
            return;
        const Columns &other = common[lastUntil[size_t(after - common.begin()) - 1]];
        if (other.last >= columns.first)
            report(columns, other);
    }

    void findGaps(const std::vector<Columns> &sorted, const ElementAddress &record)
    {
        qint64 next = 1;
        for (const Columns &each : sorted) {
            if (each.first > next)
                findGap(next, each.first - 1, record);
            next = std::max(next, each.last + 1);
        }
    }

    // Common columns at the ends of a gap are no part of it. A gap before the last common column is on all lines.
    void findGap(qint64 first, qint64 last, const ElementAddress &record)
    {
        const auto holding = [this](qint64 column) -> const Columns * {
            const auto after = std::upper_bound(merged.begin(), merged.end(), column,
                                                [](qint64 each, const Columns &run) { return each < run.first; });
            return after != merged.begin() && (after - 1)->last >= column ? &*(after - 1) : nullptr;
        };
        if (const Columns *run = holding(first))
            first = run->last + 1;
        if (const Columns *run = holding(last))
            last = run->first - 1;
        const bool isCommon = !merged.empty() && last < merged.back().last;
        if (first > last || (isCommon && !commonGaps.insert(quint64(first)).second))
            return;
        ElementAddress file;
        findings.add(LintRule::Gap, isCommon ? file : record,
                     QStringLiteral("no item has %1; move the items after the gap, or declare an item there")
                         .arg(shownColumns(first, last)));
    }

    const Layout &layout;
    LintFindings &findings;
    std::vector<Columns> common;   ///< record type and ids, sorted by their first column
    std::vector<size_t> lastUntil; ///< for each of them the one among it and those before that ends last
    std::vector<Columns> merged;
    KeyedSet<quint64> commonGaps; ///< first columns of the gaps on all lines that are reported
};

void lintSubitems(const Layout &layout, LintFindings &findings)
{
    forEachItem(layout, [&](const LintItem &place) {
        const Item &item = place.item;
        if (!place.parent || item.start < 1 || place.parent->start < 1)
            return;
        const qint64 parentEnd = qint64(place.parent->start) + place.parent->length - 1;
        if (item.start < place.parent->start || lastColumnOf(item) > parentEnd)
            findings.add(LintRule::SubitemOutsideItem, place.address,
                         QStringLiteral("the subitem has %1, but its item %2 has %3; move it into the item, or make "
                                        "the item longer")
                             .arg(shownColumns(item.start, lastColumnOf(item)), inMessage(place.parent->name),
                                  shownColumns(place.parent->start, parentEnd)));
        if (item.occurrences > 1 && place.parent->occurrences > 1 && isDictionary(layout))
            findings.add(LintRule::NestedOccurrences, place.address,
                         QStringLiteral("the subitem has %1 occurrences, and its item %2 has %3; only one of them may "
                                        "repeat")
                             .arg(QString::number(item.occurrences), inMessage(place.parent->name),
                                  QString::number(place.parent->occurrences)));
    });
}

/// Compares the columns of a relative file with those where CSPro places the items (CSPro dictionary format, text form,
/// section 7.2). Only the first item of a list that is elsewhere is reported; the others follow it.
class RelativeCheck
{
public:
    RelativeCheck(const Layout &source, LintFindings &list)
        : layout(source)
        , findings(list)
    {
    }

    void check()
    {
        qint64 next = 1;
        bool isPlaced = !layout.recordType || layout.recordType->start < 1;
        forEachItemList(layout, [&](const QVector<Item> &items, const ElementAddress &address, const Record *record) {
            if (record)
                return;
            forEachItem(items, address, [&](const LintItem &place) {
                if (!isPlaced && layout.recordType->start <= next) {
                    isPlaced = true;
                    next += layout.recordType->length;
                }
                compare(place, next);
                next += columnsOf(place.item);
            });
        });
        if (!isPlaced)
            next += layout.recordType->length;
        forEachItemList(layout, [&](const QVector<Item> &items, const ElementAddress &address, const Record *record) {
            if (record)
                compareAll(items, address, next);
        });
    }

private:
    static qint64 columnsOf(const Item &item)
    {
        return qint64(std::max(item.length, 0)) * std::max(item.occurrences, 1);
    }

    void compareAll(const QVector<Item> &items, const ElementAddress &address, qint64 next)
    {
        bool isSame = true;
        forEachItem(items, address, [&](const LintItem &place) {
            if (place.item.isSubitem || !isSame)
                return;
            isSame = compare(place, next);
            next += columnsOf(place.item);
        });
    }

    bool compare(const LintItem &place, qint64 expected)
    {
        if (place.item.start < 1 || place.item.start == expected)
            return true;
        findings.add(LintRule::RelativeStart, place.address,
                     QStringLiteral("the item starts in column %1, but positions are relative and CSPro moves it to "
                                    "column %2; set Positions to Absolute, or correct the columns and the data")
                         .arg(place.item.start)
                         .arg(expected));
        return false;
    }

    const Layout &layout;
    LintFindings &findings;
};

} // namespace

void lintColumns(const Layout &layout, LintFindings &findings)
{
    ColumnCheck(layout, findings).check();
    lintSubitems(layout, findings);
    if (layout.relativePositions.value_or(false) && findings.wants(LintRule::RelativeStart))
        RelativeCheck(layout, findings).check();
}

} // namespace vanlayout
