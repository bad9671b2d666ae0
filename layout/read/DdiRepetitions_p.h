#ifndef LAYOUT_READ_DDIREPETITIONS_P_H
#define LAYOUT_READ_DDIREPETITIONS_P_H

#include "read/DdiContent_p.h"
#include "util/KeyedHash_p.h"

namespace vanlayout::ddi
{

/// A variable of a record or a list of ids, with the columns that it has there.
struct PlacedItem {
    Item item;
    QString id;
};

/// Joins the occurrences of items: a group of type `repetition` becomes one item with occurrences, if its variables are
/// in one list, follow each other at the same distance, and are alike. Other groups stay as they are.
class Repetitions
{
public:
    explicit Repetitions(const QVector<Group> &groups);

    /// The items of a list of placed variables, in their order.
    QVector<Item> join(const QVector<PlacedItem> &placed);
    /// The groups of type `repetition` that were not joined.
    QVector<const Group *> unused() const;

private:
    const QVector<Group> &groups;
    KeyedMap<QString, int> groupOf; ///< index of the group of a variable by its ID
    QVector<bool> isUsed;
};

} // namespace vanlayout::ddi

#endif
