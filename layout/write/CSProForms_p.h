#ifndef LAYOUT_WRITE_CSPROFORMS_P_H
#define LAYOUT_WRITE_CSPROFORMS_P_H

#include "model/Layout.h"
#include "util/KeyedHash_p.h"

namespace vanlayout
{

/// The rules that apply to writing both the text form and the JSON form of a CSPro dictionary.
namespace csproforms
{

/// Document, audio, image and geometry: the types of items that only CSPro 8 has.
bool isBinary(const Item &item);

/// The last column of a line of a record: of the record type, the ids of all levels and the items; at least 1.
int recordLength(const Layout &layout, const Record &record);

/// The security setting that CSPro 8.1 names `allowDataManagerModifications`; null if the file has none. The settings
/// in words repeat the encrypted ones, and CSPro reads only those.
const Extra *renamedSecurityWord(const Layout &layout);

/// A statement without a member, as a loss.
QString lossOf(const Extra &extra);

} // namespace csproforms

/// The value sets with a link that have been written. The values of a link are written with its first set.
class LinkedValueSets
{
public:
    /// Whether the values of \a set were written with an earlier set. A set with other values of its own is no copy.
    bool isCopy(const ValueSet &set);

private:
    KeyedMap<QString, QVector<Value>> written; // by link
};

} // namespace vanlayout

#endif
