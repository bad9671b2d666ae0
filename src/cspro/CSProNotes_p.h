#ifndef CSPRO_CSPRONOTES_P_H
#define CSPRO_CSPRONOTES_P_H

#include "cspro/CSProModel_p.h"
#include "import/GenericField.h"
#include "import/ReadReport.h"

/// Notes on a dictionary that has been read, and on the fields made from it. These operations are called only if there
/// is a report.
namespace cspro
{

/// Adds a note for each difference between \a field, the description of \a item, and the item itself: decimals, long
/// codes, and codes and labels that split their entry in the value labels. \a before is the item before \a item, null
/// for the first item. Of several occurrences with the same values only the first gets notes.
void reportDescription(ReadReport &report, const TCSProItem &item, const TCSProItem *before,
                       const TGenericField &field);
/// Adds notes on the layout as a whole: positions, groups and records.
void reportLayout(ReadReport &report, const CSProDictionary &dictionary, const QStringList *groups);

} // namespace cspro

#endif
