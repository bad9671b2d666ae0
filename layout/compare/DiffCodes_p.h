#ifndef LAYOUT_COMPARE_DIFFCODES_P_H
#define LAYOUT_COMPARE_DIFFCODES_P_H

#include "model/Layout.h"
#include "util/KeyedHash_p.h"

namespace vanlayout
{

/// How codes are compared: those of a numeric item as numbers, any others as texts.
enum class CodeType { Number, Text };
inline CodeType codeTypeOf(const Item &item)
{
    return item.isNumeric() ? CodeType::Number : CodeType::Text;
}

/// A code in its canonical spelling, which is the same for all equal codes.
///
/// A code that is compared as a number has no surrounding blanks, leading zeros, trailing zeros of decimals or plus
/// sign, and a point as decimal mark; a text that is not a plain number only loses its surrounding blanks. Any other
/// code has no trailing blanks, because codes are padded to the length of the item.
QString canonicalCode(const QString &code, CodeType type);

/// The code or range of one entry in canonical spelling; equal for entries that represent the same values.
struct CodeKey {
    QString from;
    QString to;          ///< empty for one code
    bool hasCode = true; ///< false for a value without any code, which differs from a blank code

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
    const Range *range = nullptr; ///< as written in the file; null for a value without codes
};

/// The key of a value without codes; that of "not applicable" is a blank code.
CodeKey keyWithoutCode(const Value &value);
/// The key of a range of a value; the code of "not applicable" is blank, whatever the file states.
CodeKey keyOf(const Value &value, const Range &range, CodeType type);

/// A code or range for people: "1", "5 to 9", "(blank)" for a code of blanks, "(no code)" for none.
QString describeCode(const CodeKey &key);

} // namespace vanlayout

#endif
