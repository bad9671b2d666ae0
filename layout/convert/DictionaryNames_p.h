#ifndef LAYOUT_CONVERT_DICTIONARYNAMES_P_H
#define LAYOUT_CONVERT_DICTIONARYNAMES_P_H

#include "write/UniqueNames_p.h"

#include <QString>

namespace vanlayout
{

/// The names of a CSPro dictionary: a letter from A to Z, then letters, digits and `_`, not ending in `_`, and unique
/// within the dictionary.
class DictionaryNames
{
public:
    /// Returns the folded form of a name: accents are removed, other characters become `_`; \a otherwise if no letter
    /// or digit remains. The later of two equal names, and a word of the CSPro language, is `NAME_2`, or the first free
    /// one of `NAME_3` ...
    QString give(const QString &original, const QString &otherwise);

    /// The folded form of a name, which may be in use; empty if no letter or digit remains.
    static QString folded(const QString &original);

private:
    UniqueNames names;
};

} // namespace vanlayout

#endif
