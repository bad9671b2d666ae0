#ifndef LAYOUT_WRITE_COLUMNS_P_H
#define LAYOUT_WRITE_COLUMNS_P_H

#include "model/Layout.h"

#include <QVector>

/// The columns of a record type in programs whose data are plain tables. All exported forms are written from them, so
/// that a variable has the same name in each.
namespace vanlayout
{

/// One column of such a table: an item that does not repeat, or one occurrence of a repeating item. It points into the
/// layout from which it was made.
struct Column {
    const Item *item = nullptr;
    const Item *parent = nullptr; ///< item that contains a subitem; null for others
    bool isId = false;
    int occurrence = 0;    ///< 1-based, of the item, or of the item that contains the subitem; 0 if nothing repeats
    int subOccurrence = 0; ///< 1-based, of a repeating subitem of a repeating item; 0 for others
    QString name;          ///< `NAME`, or `NAME_k`, or `NAME_i_k` for the k-th occurrence within the i-th; unique
    int start = 0;         ///< 1-based column of the data file; 0 if there are no columns
    const OccurrenceLabel *label = nullptr;    ///< label of the occurrence; null if it has none
    const OccurrenceLabel *subLabel = nullptr; ///< label of the subOccurrence; null if it has none
};

/// The columns of a record: the ids of its level and of the levels above, outermost first, then its items in the order
/// of the file. Each occurrence of a repeating item is followed by its subitems.
///
/// The later of two columns with the same name is `NAME_2`, or the first free one of `NAME_3` ... An item without a
/// name is `V` and its 1-based position among the items of its record. \a level is an index into the levels of \a
/// layout, and \a record one of its records.
QVector<Column> columnsOf(const Layout &layout, int level, const Record &record);

/// The columns of the ids of a single level, named in the same way.
QVector<Column> idColumnsOf(const Level &level);

/// The label of a column: that of its item, for an occurrence followed by the label of the occurrence or its number in
/// parentheses, in each language of the item's label. Empty if the item has no label.
Labels labelsOf(const Column &column);

/// The kind of values of an item in other programs.
enum class ValueKind {
    Whole,  ///< integers: no decimals, or stored as integers
    Number, ///< numbers that may have decimals
    Text,
    Binary ///< documents, audio, images and geometries
};
ValueKind kindOf(const Item &item);

} // namespace vanlayout

#endif
