#include "check/LintFindings_p.h"
#include "check/LintSets_p.h"

#include <algorithm>
#include <iterator>

namespace vanlayout
{

namespace
{

// The characters of the bytes 80 to 9F in Windows-1252; 0 where it has none.
constexpr char16_t upperControls[] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,
};

// The byte of a character in Windows-1252; -1 if it has none.
int byteOf(QChar character)
{
    const char16_t unit = character.unicode();
    if (unit <= 0xFF)
        return unit;
    const auto *const found = std::find(std::begin(upperControls), std::end(upperControls), unit);
    return found != std::end(upperControls) ? 0x80 + int(found - std::begin(upperControls)) : -1;
}

// The number of bytes of a character in UTF-8 that begins with this byte; 0 if none of several bytes does.
int sizeFrom(int byte)
{
    if (byte >= 0xC2 && byte <= 0xDF)
        return 2;
    if (byte >= 0xE0 && byte <= 0xEF)
        return 3;
    return byte >= 0xF0 && byte <= 0xF4 ? 4 : 0;
}

// Quotation marks, dashes and an ellipsis may follow a capital letter such as \u00C3 at the end of a word.
bool isPunctuation(QChar character)
{
    return character.unicode() >= 0x2010 && character.unicode() <= 0x2026;
}

/// A character of UTF-8 that was read as Windows-1252.
struct Misreading {
    QString text;
    QString meant;

    QString shown() const { return QStringLiteral("\"%1\", which is \"%2\" in UTF-8").arg(text, meant); }
};

// The misread character at an index of a text; empty if there is none. Hangul is not expected: its bytes are also those
// of a letter with quotation marks.
Misreading misreadingAt(const QString &text, int index)
{
    constexpr char16_t firstUnlikely = 0xA000;
    const int size = sizeFrom(byteOf(text.at(index)));
    if (size == 0 || index + size > text.size() || (size == 2 && isPunctuation(text.at(index + 1))))
        return {};
    QByteArray bytes;
    for (int next = index; next < index + size; ++next) {
        const int byte = byteOf(text.at(next));
        if (next > index && (byte < 0x80 || byte > 0xBF))
            return {};
        bytes.append(char(byte));
    }
    const QString meant = QString::fromUtf8(bytes);
    if (size == 3 && meant.at(0).unicode() >= firstUnlikely)
        return {};
    return { text.mid(index, size), meant };
}

// The first misread character of a text; empty if there is none.
Misreading misreadingIn(const QString &text)
{
    constexpr char16_t lowestBegin = 0xC2;
    for (int index = 0; index < text.size(); ++index) {
        if (text.at(index).unicode() < lowestBegin)
            continue;
        Misreading found = misreadingAt(text, index);
        if (!found.text.isEmpty())
            return found;
    }
    return {};
}

/// Finds labels in UTF-8 that were read, or saved earlier, as Windows-1252. A file that mixes both is not valid UTF-8,
/// so that its parts in UTF-8 are read like this.
class EncodingCheck
{
public:
    explicit EncodingCheck(LintFindings &list)
        : findings(list)
    {
    }

    void check(const Labels &labels, const ElementAddress &address)
    {
        for (const Label &part : labels.parts) {
            const Misreading found = misreadingIn(part.text);
            if (found.text.isEmpty())
                continue;
            findings.add(LintRule::MixedEncodings, address,
                         QStringLiteral("the label has %1; save the file in one encoding, such as UTF-8")
                             .arg(inMessage(found.shown())));
            return;
        }
    }

private:
    LintFindings &findings;
};

} // namespace

void lintEncoding(const Layout &layout, LintFindings &findings)
{
    if (!findings.wants(LintRule::MixedEncodings))
        return;
    EncodingCheck labels(findings);
    labels.check(layout.labels, ElementAddress());
    forEachItemList(layout, [&](const QVector<Item> &items, const ElementAddress &address, const Record *record) {
        ElementAddress level;
        level.level = address.level;
        if (record)
            labels.check(record->labels, address);
        else
            labels.check(layout.levels.at(address.level).labels, level);
        forEachItem(items, address, [&](const LintItem &place) { labels.check(place.item.labels, place.address); });
    });
    CheckedSets sets(layout);
    forEachValueSet(layout, [&](const ValueSet &set, const Item &item, const ElementAddress &address) {
        labels.check(set.labels, address);
        if (!sets.isNew(set, item))
            return;
        for (int index = 0; index < set.values.size(); ++index)
            labels.check(set.values.at(index).labels, valueAddress(address, index));
    });
}

} // namespace vanlayout
