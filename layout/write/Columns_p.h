#ifndef LAYOUT_WRITE_COLUMNS_P_H
#define LAYOUT_WRITE_COLUMNS_P_H

#include "model/Layout.h"

#include <QVector>

/// The columns that a record type has in programs that know tables alone: forms for other programs are written from
/// them, so that a variable has one name in all forms.
namespace vanlayout
{

/// One column of such a table: an item that does not repeat, or one occurrence of one that does. Points into the layout
/// that it was made from.
struct Column {
    const Item *item = nullptr;
    const Item *parent = nullptr; ///< item that holds a subitem; null for others
    bool isId = false;
    int occurrence = 0;    ///< from 1, of the item, or of the item that holds the subitem; 0 where nothing repeats
    int subOccurrence = 0; ///< from 1, of a subitem that repeats within an item that repeats; 0 for others
    QString name;          ///< `NAME`, or `NAME_k`, or `NAME_i_k` for the k-th occurrence within the i-th; unique
    int start = 0;         ///< 1-based column of the data file; 0 where there are no columns
    const OccurrenceLabel *label = nullptr;    ///< of the occurrence; null where it has none
    const OccurrenceLabel *subLabel = nullptr; ///< of the subOccurrence; null where it has none
};

/// The columns of a record: the ids of its level and of the levels above, outermost first, then its items in the order
/// of the file. An item with subitems that repeats is followed by its subitems at each occurrence.
///
/// The later of two columns with one name is `NAME_2`, or the first of `NAME_3` ... that is free. An item without a
/// name is `V` and its position among the items of its record, from 1. \a level is an index into the levels of \a
/// layout, and \a record one of its records.
QVector<Column> columnsOf(const Layout &layout, int level, const Record &record);

/// The columns of the ids of one level alone, named in the same way.
QVector<Column> idColumnsOf(const Level &level);

/// The label of a column: that of its item and behind it, for an occurrence, the label of the occurrence or its number
/// in parentheses, in each language that the item's label has. Empty where the item has no label.
Labels labelsOf(const Column &column);

/// Kind of the values of an item in other programs.
enum class ValueKind {
    Whole,  ///< whole numbers: no decimals, or stored as integers
    Number, ///< numbers that may have decimals
    Text,
    Binary ///< documents, audio, images and geometries
};
ValueKind kindOf(const Item &item);

} // namespace vanlayout

#endif
