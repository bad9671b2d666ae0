#ifndef LAYOUT_COMPARE_DIFFMATCHING_P_H
#define LAYOUT_COMPARE_DIFFMATCHING_P_H

#include "compare/DiffPairing_p.h"
#include "compare/DiffScope_p.h"
#include "compare/DiffValues_p.h"

#include <vector>

namespace vanlayout
{

/// An item of a layout with its place.
struct ItemPlace {
    const Item *item = nullptr;
    int parent = Pairing::none; ///< index in ItemList::items() of the item that contains this subitem, if any
    int container = 0;          ///< index of its record in ItemList::containers()
};

/// The items of a record, or the id items of a level.
struct ItemContainer {
    const Level *level = nullptr;
    const Record *record = nullptr; ///< null for id items and if records are not compared
    int depth = 0;                  ///< 0-based index of the level
    int firstItem = 0;              ///< index in ItemList::items()
    int itemCount = 0;

    QString name() const;
};

/// The records and items of one layout as lists, level by level, with the id items of a level first. If one of the two
/// formats has no records, all items are in one container.
class ItemList
{
public:
    ItemList(const Layout &layout, const DiffScope &scope);

    const QVector<ItemContainer> &containers() const { return containerList; }
    const QVector<ItemPlace> &items() const { return itemList; }
    const ItemContainer &containerOf(int item) const { return containerList.at(itemList.at(item).container); }

private:
    void begin(const Level *level, const Record *record, int depth);
    void append(const QVector<Item> &items, const DiffScope &scope);

    QVector<ItemContainer> containerList;
    QVector<ItemPlace> itemList;
};

/// Matches the records and items of one layout with those of the other.
class ItemMatching
{
public:
    ItemMatching(const ItemList &beforeItems, const ItemList &afterItems, const DiffScope &scope,
                 const LabelComparison &labelComparison, ValueSetComparison &valueSets);

    const Pairing &records() const { return recordPairing; }
    const Pairing &items() const { return itemPairing; }
    /// Whether a variable of a statistical file holds the second or a later occurrence of an item of the dictionary
    /// that the file is compared with: `X_2` if the repeating item `X` is paired with `X_1`.
    bool isFurtherOccurrence(LabelComparison::Side side, int item) const { return isFurther[side].at(item); }
    /// Whether two names are those of a repeating item and of its first occurrence, such as `X` and `X_1`.
    static bool areItemAndOccurrence(const QString &item, const QString &occurrence);

private:
    void matchRecords(bool hasRecords);
    void matchRecordsByItems();
    void matchItems();
    void matchItemsElsewhere();
    /// Pairs the repeating items of a dictionary, which is on \a repeatingSide, with their first occurrences in a
    /// statistical file.
    void matchOccurrences(LabelComparison::Side repeatingSide);
    void matchRenamedItems(const DiffScope &scope);
    /// The number of the pair of records that an item is in; none if its record has no partner.
    std::optional<quint64> pairOf(LabelComparison::Side side, int item) const;

    const ItemList &before;
    const ItemList &after;
    const LabelComparison &labels;
    ValueSetComparison &values;
    Pairing recordPairing;
    Pairing itemPairing;
    QVector<bool> isFurther[2];
};

} // namespace vanlayout

#endif
