#ifndef LAYOUT_READ_DDIASSEMBLY_P_H
#define LAYOUT_READ_DDIASSEMBLY_P_H

#include "read/DdiContent_p.h"
#include "read/Diagnostics_p.h"

namespace vanlayout::ddi
{

/// Puts the parts of a document together as the levels, records and items of a layout.
///
/// Documents of this library state their levels and records as groups of variables. In others each record group of a
/// file is a record, or a file without record groups, or a line number (`RecSegNo`) of a file whose cases have several
/// lines; a variable belongs to the records that its `rectype` and `files` name, to several of them as an item of each.
/// A variable of all records that is a key of each is an id.
void assemble(Content content, Layout &layout, Diagnostics &diagnostics);

} // namespace vanlayout::ddi

#endif
