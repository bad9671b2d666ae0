#ifndef LAYOUT_READ_ELEMENTADDRESS_P_H
#define LAYOUT_READ_ELEMENTADDRESS_P_H

#include "model/Layout.h"
#include "read/ElementLines.h"

namespace vanlayout
{

/// An element of a layout by its 0-based indexes, -1 for none. Unlike its path, it is known before the names are,
/// because the keys of a JSON object have no order.
struct ElementAddress {
    static constexpr int ids = -2; ///< value of `record` for the id items

    int level = -1;
    int record = -1;
    int item = -1;
    int valueSet = -1;
    int value = -1;
    int relation = -1;

    bool isInIds() const { return record == ids; }
};

bool operator==(const ElementAddress &left, const ElementAddress &right);

/// The path of an element, as in Problem; empty for that of the file.
QString pathOf(const Layout &layout, const ElementAddress &address);

/// Sets the line of an element; elements before it in its list that have no line yet have line 0.
void setLine(ElementLines &lines, const ElementAddress &address, int line);
/// The line of an element, or of the nearest one that contains it and has a line.
int lineOf(const ElementLines &lines, const ElementAddress &address);

} // namespace vanlayout

#endif
