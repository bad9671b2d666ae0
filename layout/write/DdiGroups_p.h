#ifndef LAYOUT_WRITE_DDIGROUPS_P_H
#define LAYOUT_WRITE_DDIGROUPS_P_H

#include "DdiVariables_p.h"
#include "XmlStream_p.h"

namespace vanlayout
{

/// Writes the elements `varGrp` of a document: the levels and records of a dictionary, the occurrences of each
/// repeating item, and each item with its subitems.
void writeDdiGroups(XmlStream &xml, const Layout &layout, const DdiVariables &variables);

} // namespace vanlayout

#endif
