#ifndef LAYOUT_WRITE_DDIFILE_P_H
#define LAYOUT_WRITE_DDIFILE_P_H

#include "Ddi.h"
#include "DdiVariables_p.h"
#include "XmlStream_p.h"

namespace vanlayout
{

/// Writes `fileDscr`: the data file, with a `recGrp` for each record of a dictionary.
void writeDdiFile(XmlStream &xml, const Layout &layout, const DdiVariables &variables, DdiProfile profile);

/// The types of the records from \a first to \a end - 1, each once, separated by blanks; empty if lines have no type.
QString ddiRecordTypes(const Layout &layout, const DdiVariables &variables, int first, int end);

/// "numeric" if the types of all records are numbers, else "character".
QString ddiRecordTypeFormat(const Layout &layout);

/// The ID of the `recGrp` of a record. \a record is an index into DdiVariables::records.
QString ddiRecordId(int record);

} // namespace vanlayout

#endif
