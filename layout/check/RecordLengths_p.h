#ifndef LAYOUT_CHECK_RECORDLENGTHS_P_H
#define LAYOUT_CHECK_RECORDLENGTHS_P_H

#include "write/CSProForms_p.h"

#include <algorithm>

namespace vanlayout
{

/// The last columns of the records of a layout. The columns that are on each line are only searched once.
class RecordLengths
{
public:
    explicit RecordLengths(const Layout &layout)
        : common(csproforms::recordLength(layout, Record()))
    {
    }

    int of(const Record &record) const { return std::max(common, csproforms::recordLength(Layout(), record)); }

    /// Whether all items of a record have columns; else its last column is unknown.
    static bool isKnown(const Record &record)
    {
        return std::all_of(record.items.begin(), record.items.end(),
                           [](const Item &item) { return item.start >= 1 && item.length >= 1; });
    }

private:
    int common; ///< last column of the record type and the ids
};

} // namespace vanlayout

#endif
