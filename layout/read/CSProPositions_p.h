#ifndef LAYOUT_READ_CSPROPOSITIONS_P_H
#define LAYOUT_READ_CSPROPOSITIONS_P_H

#include "model/Layout.h"

#include <optional>
#include <vector>

namespace vanlayout
{

/// The statements of the JSON form on the columns of one item that `Item` does not hold.
struct StoredColumns {
    bool hasStart = false;            ///< whether the file states `Item::start`
    std::optional<int> subitemOffset; ///< columns from the start of the item that contains the subitem, from 0
};

/// The statements for the items of one level, in the order of the layout.
struct LevelColumns {
    std::vector<StoredColumns> ids;
    std::vector<std::vector<StoredColumns>> records;
};

/// Sets the columns of the items of a dictionary in JSON form that state none.
///
/// A stored start always has precedence. If positions are relative, the ids of all levels follow each other from column
/// 1, with the record type among them at `recordType.start`; the items of each record follow each other from the first
/// column after all of these. An item takes up its columns in this order whether its start is stored or not. A subitem
/// starts `subitemOffset` columns after the start of its item, even if positions are absolute. An item without a column
/// keeps 0. Columns beyond `int` are the largest `int`.
///
/// \a stored has one entry for each level of \a layout and, within it, one for each item.
void layOutColumns(Layout &layout, const std::vector<LevelColumns> &stored);

} // namespace vanlayout

#endif
