#ifndef LAYOUT_READ_CSPROPOSITIONS_P_H
#define LAYOUT_READ_CSPROPOSITIONS_P_H

#include "model/Layout.h"

#include <optional>
#include <vector>

namespace vanlayout
{

/// The statements of the JSON form on the columns of one item that `Item` does not hold.
struct StoredColumns {
    bool hasStart = false;            ///< whether `Item::start` is the file's own
    std::optional<int> subitemOffset; ///< columns from the start of the item that holds the subitem
};

/// The statements for the items of one level, in the order of the layout.
struct LevelColumns {
    std::vector<StoredColumns> ids;
    std::vector<std::vector<StoredColumns>> records;
};

/// Gives columns to the items of a dictionary in JSON form that state none.
///
/// A stored start counts, in every dictionary. Where positions are relative, the ids of all levels follow each other
/// from column 1, with the record type among them where `recordType.start` has it; the items of each record follow
/// each other from the first column after all of these. An item occupies its columns in this order whether its own
/// start is stored or not. A subitem starts `subitemOffset` columns after the start of its item, also if positions are
/// absolute. An item without a column keeps 0. Columns beyond `int` are the largest `int`.
///
/// \a stored has one entry for each level of \a layout and, within it, one for each item.
void layOutColumns(Layout &layout, const std::vector<LevelColumns> &stored);

} // namespace vanlayout

#endif
