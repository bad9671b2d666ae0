#ifndef CSPRO_CSPRONOTES_P_H
#define CSPRO_CSPRONOTES_P_H

#include "cspro/CSProModel_p.h"
#include "import/GenericField.h"
#include "import/ReadReport.h"

/// What the CSPro readers tell a report. All of it is asked for only where there is one.
namespace cspro
{

/// Tells of what \a field, the description of \a item, shows otherwise than the item has it: decimals, long codes, and
/// codes and labels that part their entry in the value labels. \a before is the item in front of it, null for the
/// first: one occurrence stands for those that have the same.
void tellOfDescription(ReadReport &report, const TCSProItem &item, const TCSProItem *before,
                       const TGenericField &field);
/// Tells of the layout as a whole: positions, groups and records.
void tellOfLayout(ReadReport &report, const CSProDictionary &dictionary, const QStringList *groups);

} // namespace cspro

#endif
