#ifndef LAYOUT_COMPARE_DIFFMATCHING_P_H
#define LAYOUT_COMPARE_DIFFMATCHING_P_H

#include "compare/DiffPairing_p.h"
#include "compare/DiffScope_p.h"
#include "compare/DiffValues_p.h"

#include <vector>

namespace vanlayout
{

/// An item among those of its record.
struct ItemPlace {
    const Item *item = nullptr;
    int parent = Pairing::none; ///< place of the item that holds this subitem among all items of the layout
    int container = 0;          ///< place of the record among all records of the layout
};

/// The items of a record, or the id items of a level.
struct ItemContainer {
    const Level *level = nullptr;
    const Record *record = nullptr; ///< null for id items and where records are not compared
    int depth = 0;                  ///< of the level, from 0
    int firstItem = 0;
    int itemCount = 0;

    QString name() const;
};

/// The records and items of one layout as lists: id items first, level by level. Where one of the formats has no
/// records, all items are in one container.
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

/// Finds which record and which item of one layout is which of the other.
class ItemMatching
{
public:
    ItemMatching(const ItemList &beforeItems, const ItemList &afterItems, const DiffScope &scope,
                 const LabelComparison &labelComparison, ValueSetComparison &valueSets);

    const Pairing &records() const { return recordPairing; }
    const Pairing &items() const { return itemPairing; }
    /// Whether a variable of a statistical file holds the second or a later occurrence of an item of the dictionary
    /// that it is compared with: `X_2` where the item X, which repeats, is paired with `X_1`.
    bool isFurtherOccurrence(LabelComparison::Side side, int item) const { return isFurther[side].at(item); }
    /// Whether two names are those of an item that repeats and of its first occurrence.
    static bool areItemAndOccurrence(const QString &item, const QString &occurrence);

private:
    void matchRecords(bool hasRecords);
    void matchRecordsByItems();
    void matchItems();
    void matchItemsElsewhere();
    /// Pairs the items of a dictionary that repeat with their first occurrences in a statistical file.
    void matchOccurrences(LabelComparison::Side repeatingSide);
    void matchRenamedItems(const DiffScope &scope);
    /// A number that is the same for records that are paired; none for a record without a partner.
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
