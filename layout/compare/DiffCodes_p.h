#ifndef LAYOUT_COMPARE_DIFFCODES_P_H
#define LAYOUT_COMPARE_DIFFCODES_P_H

#include "model/Layout.h"
#include "util/KeyedHash_p.h"

namespace vanlayout
{

/// A code in the spelling that all equal codes have in common.
///
/// The code of a numeric item is without blanks around it, zeros in front, zeros after the decimal mark and a plus
/// sign, with a point as decimal mark; a text that is no plain number stays as it is between its blanks. The code of
/// any other item is without blanks at the end, since codes are padded to the length of the item.
QString canonicalCode(const QString &code, bool isNumeric);

/// The codes of one entry: equal for entries that stand for the same values.
struct CodeKey {
    QString from;
    QString to;          ///< empty for one code
    bool hasCode = true; ///< false for a value without any code, which is no blank

    bool operator==(const CodeKey &other) const
    {
        return from == other.from && to == other.to && hasCode == other.hasCode;
    }
};

struct CodeKeyHash {
    size_t operator()(const CodeKey &key) const
    {
        const KeyedHash hash;
        return key.to.isEmpty() && key.hasCode ? hash(key.from) : hash({ hash(key.from), hash(key.to), key.hasCode });
    }
};

/// One code or range of a value.
struct CodeEntry {
    CodeKey key;
    const Value *value = nullptr;
    const Range *range = nullptr; ///< as the file has it; null for a value without codes
};

/// The key of a value without codes.
CodeKey keyWithoutCode(const Value &value);
/// The key of a range of a value; the code of "not applicable" is blank, whatever the file has.
CodeKey keyOf(const Value &value, const Range &range, bool isNumeric);

/// A code or range as a person writes it: "1", "5 to 9", "(blank)" for a code of blanks, "(no code)" for none.
QString describeCode(const CodeKey &key);

} // namespace vanlayout

#endif
