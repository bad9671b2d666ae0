#ifndef LAYOUT_COMPARE_CONCORDROUND_P_H
#define LAYOUT_COMPARE_CONCORDROUND_P_H

#include "compare/DiffCodes_p.h"
#include "model/Layout.h"

#include <QVector>

namespace vanlayout
{

/// An item of a round with its place.
struct RoundItem {
    static constexpr int none = -1;

    const Item *item = nullptr;
    const Level *level = nullptr;
    const Record *record = nullptr; ///< null for an id item
    int depth = 0;                  ///< 0-based index of the level
    int container = 0;              ///< 0-based number of its record, or of the id items of its level, in the round
    int parent = none;              ///< index of the item that contains this subitem

    QString recordName() const { return record ? record->name : QStringLiteral("(ids)"); }
};

/// The items of one round in the order of the file, level by level, with the id items of a level first.
class ConcordRound
{
public:
    explicit ConcordRound(const Layout &layoutOfRound);

    const Layout &layout() const { return ofRound; }
    const QVector<RoundItem> &items() const { return itemList; }
    const RoundItem &at(int item) const { return itemList.at(item); }
    int size() const { return int(itemList.size()); }
    int containerCount() const { return containers; }
    /// Whether it is a CSPro dictionary, which states records and columns.
    bool isDictionary() const;

private:
    void append(const Level &level, const Record *record, int depth, const QVector<Item> &items);

    const Layout &ofRound;
    QVector<RoundItem> itemList;
    int containers = 0;
};

/// An item by the index of its round and its index in ConcordRound::items().
struct RoundPlace {
    int round = 0;
    int item = 0;
};

/// The values of an item that the table of codes shows: those of its first value set with codes; null if it has none.
const ValueSet *codedSetOf(const Item &item);

} // namespace vanlayout

Q_DECLARE_TYPEINFO(vanlayout::RoundItem, Q_PRIMITIVE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::RoundPlace, Q_PRIMITIVE_TYPE);

#endif
