#ifndef LAYOUT_WRITE_CONCORDMAPCSV_H
#define LAYOUT_WRITE_CONCORDMAPCSV_H

#include "compare/Concord.h"
#include "vanlayout_export.h"

class QIODevice;

namespace vanlayout
{

/// Writes the map of a concordance, in which a person enters decisions for readConcordMap(): CSV for a spreadsheet
/// (UTF-8 with a byte-order mark, CR LF, and an apostrophe before a text that would be a formula), with a line of
/// heads.
///
/// Each item of a round except the first round has a row: `decision`, `concord`, `changes`, then `round`, `level`,
/// `record`, `item` and `label` of the item, then `other_round`, `other_level`, `other_record`, `other_item` and
/// `other_label` of the same variable in the nearest earlier round that has it. `concord` is `same`, or `new` if no
/// earlier round has the variable; the other item is then empty. `decision` is empty, unless one of \a decisions is
/// about these two items: a map without new decisions, when read, gives the same concordance. Decisions on other pairs
/// of items follow, with `concord` `different`.
///
/// Streams onto \a device, which must be open for writing. Returns false if the device did not accept all bytes.
VANLAYOUT_EXPORT bool writeConcordMap(const Concordance &concordance, const QVector<ConcordDecision> &decisions,
                                      QIODevice &device);

} // namespace vanlayout

#endif
