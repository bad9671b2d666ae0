#include "check/LintFindings_p.h"
#include "check/RecordLengths_p.h"
#include "write/CSProForms_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

constexpr int maxLevels = 3;
constexpr int maxRecordTypeLength = 9;
constexpr int maxColumn = 32000;
constexpr int maxOccurrences = 9999;
constexpr int maxDigits = 15;
constexpr int maxCharacters = 999;
constexpr int maxDecimals = 9;
constexpr int maxNote = 32000;

/// Checks numbers against the limits of CSPro (CSPro dictionary format, text form, section 14.2).
class LimitCheck
{
public:
    explicit LimitCheck(LintFindings &list)
        : findings(list)
    {
    }

    void check(const ElementAddress &address, const char *what, qint64 number, int min, int max)
    {
        if (number < min || number > max)
            findings.add(LintRule::Limit, address,
                         QStringLiteral("%1 is %2, but CSPro allows %3 to %4; change it")
                             .arg(QLatin1String(what))
                             .arg(number)
                             .arg(min)
                             .arg(max));
    }
    void checkNote(const ElementAddress &address, const QString &note)
    {
        check(address, "the number of characters of the note", note.size(), 0, maxNote);
    }

private:
    LintFindings &findings;
};

void lintLimits(const Layout &layout, LintFindings &findings)
{
    LimitCheck limits(findings);
    const RecordLengths lengths(layout);
    const ElementAddress file;
    limits.check(file, "the number of levels", layout.levels.size(), 0, maxLevels);
    limits.checkNote(file, layout.note);
    if (layout.recordType) {
        limits.check(file, "the start of the record type", layout.recordType->start, 1, maxColumn);
        limits.check(file, "the length of the record type", layout.recordType->length, 1, maxRecordTypeLength);
    }
    forEachItemList(layout, [&](const QVector<Item> & /*items*/, const ElementAddress &address, const Record *record) {
        if (!record) {
            ElementAddress level;
            level.level = address.level;
            limits.checkNote(level, layout.levels.at(address.level).note);
            return;
        }
        limits.check(address, "the maximum number of records", record->maximum, 1, maxOccurrences);
        limits.check(address, "the length of the record", lengths.of(*record), 1, maxColumn);
        limits.checkNote(address, record->note);
    });
    forEachItem(layout, [&](const LintItem &place) {
        const Item &item = place.item;
        if (item.start >= 1)
            limits.check(place.address, "the start", item.start, 1, maxColumn);
        if (item.length >= 1 && !csproforms::isBinary(item))
            limits.check(place.address, "the length", item.length, 1, item.isNumeric() ? maxDigits : maxCharacters);
        limits.check(place.address, "the number of occurrences", item.occurrences, 1, maxOccurrences);
        limits.check(place.address, "the number of decimals", item.decimals, 0, maxDecimals);
        limits.checkNote(place.address, item.note);
    });
    forEachValueSet(layout, [&](const ValueSet &set, const Item & /*item*/, const ElementAddress &address) {
        limits.checkNote(address, set.note);
        for (int index = 0; index < set.values.size(); ++index)
            limits.checkNote(valueAddress(address, index), set.values.at(index).note);
    });
}

QString problemWithDecimals(const Item &item)
{
    if (item.decimals < 1)
        return QString();
    if (!item.isNumeric())
        return QStringLiteral("the item has decimals, but is not numeric; remove them, or make it numeric");
    if (item.length >= 1 && item.decimals + (item.decimalMark ? 1 : 0) > item.length)
        return QStringLiteral(
                   "the item has %1 decimals%2, but its length is %3; make it longer, or reduce the decimals")
            .arg(item.decimals)
            .arg(item.decimalMark ? QStringLiteral(" and a decimal mark") : QString())
            .arg(item.length);
    return QString();
}

QString problemWithId(const Item &item)
{
    if (item.isSubitem)
        return QStringLiteral("an id item is a subitem; make it an item");
    if (item.occurrences > 1)
        return QStringLiteral("an id item has %1 occurrences; ids cannot repeat").arg(item.occurrences);
    if (item.decimals > 0)
        return QStringLiteral("an id item has decimals; ids are integers or texts");
    if (csproforms::isBinary(item))
        return QStringLiteral("an id item has the type %1; use numeric or alpha").arg(inMessage(item.type));
    return QString();
}

} // namespace

void lintItems(const Layout &layout, LintFindings &findings)
{
    lintLimits(layout, findings);
    forEachItem(layout, [&](const LintItem &place) {
        const QString decimals = problemWithDecimals(place.item);
        if (!decimals.isEmpty())
            findings.add(LintRule::Decimals, place.address, decimals);
        const bool isInLevel
            = !layout.levels.at(place.address.level).name.isEmpty(); // else the level is what is missing
        const QString id = place.isId() && isInLevel ? problemWithId(place.item) : QString();
        if (!id.isEmpty())
            findings.add(LintRule::IdItem, place.address, id);
    });
}

} // namespace vanlayout
