#include "cspro/CSProNotes_p.h"

#include "cspro/GroupValue_p.h"
#include "cspro/ValueSet_p.h"
#include "import/Constants.h"
#include "import/LayoutNotes_p.h"
#include "util/KeyedHash_p.h"
#include "util/Numbers_p.h"

#include <algorithm>
#include <limits>
#include <map>
#include <vector>

namespace cspro
{

namespace
{

struct Span {
    qint64 begin; // column, from 1
    qint64 end;   // one after the last
};

// Ordered spans without overlaps.
std::vector<Span> merged(std::vector<Span> spans)
{
    std::sort(spans.begin(), spans.end(), [](const Span &a, const Span &b) { return a.begin < b.begin; });
    std::vector<Span> result;
    for (const Span &span : spans) {
        if (!result.empty() && span.begin <= result.back().end)
            result.back().end = std::max(result.back().end, span.end);
        else
            result.push_back(span);
    }
    return result;
}

bool meets(const std::vector<Span> &spans, const Span &span)
{
    const auto next = std::upper_bound(spans.cbegin(), spans.cend(), span,
                                       [](const Span &a, const Span &b) { return a.end <= b.begin; });
    // Only the last span that begins before the end of this one can overlap it.
    return next != spans.cbegin() && std::prev(next)->end > span.begin;
}

Span spanOf(const TCSProItem &item)
{
    return { item.start, qint64(item.start) + item.length };
}

void reportOverlaps(ReadReport &report, std::vector<const TCSProItem *> items, const std::vector<Span> &everyLine)
{
    const auto before = [](const TCSProItem *a, const TCSProItem *b) { return a->start < b->start; };
    if (!std::is_sorted(items.cbegin(), items.cend(), before))
        std::stable_sort(items.begin(), items.end(), before);
    qint64 taken = std::numeric_limits<qint64>::min(); // the column after those of the items so far
    for (const TCSProItem *item : items) {
        const Span span = spanOf(*item);
        if (span.begin < taken || meets(everyLine, span)) {
            report.add(NoteKind::overlappingPositions,
                       QStringLiteral("columns %1 to %2").arg(span.begin).arg(span.end - 1), 0, item->name);
        }
        taken = std::max(taken, span.end);
    }
}

// Adds notes on items that share columns: with other items of their record, with the record type, or with id items.
void reportPositions(ReadReport &report, const CSProDictionary &dictionary)
{
    std::map<const TCSProRecord *, std::vector<const TCSProItem *>> itemsOf;
    for (const TCSProItem *item : qAsConst(*dictionary.items)) {
        if (item->subItem == 0 && item->length > 0)
            itemsOf[item->record].push_back(item);
    }
    std::vector<Span> recordType; // empty if there is no record
    if (dictionary.recordTypeLen > 0 && !dictionary.records->isEmpty())
        recordType.push_back(
            { dictionary.recordTypeStart, qint64(dictionary.recordTypeStart) + dictionary.recordTypeLen });
    std::vector<Span> everyLine = recordType;
    for (const TCSProItem *item : itemsOf[dictionary.commonRecord])
        everyLine.push_back(spanOf(*item));
    everyLine = merged(std::move(everyLine));
    reportOverlaps(report, std::move(itemsOf[dictionary.commonRecord]), recordType);
    for (const TCSProRecord *record : qAsConst(*dictionary.records))
        reportOverlaps(report, std::move(itemsOf[record]), everyLine);
}

// Adds notes on groups whose value is another group.
void reportGroups(ReadReport &report, const QStringList *groups)
{
    if (!groups)
        return; // LCOV_EXCL_LINE: the importers list the groups before this is called
    for (int i = 0; i < groups->size(); ++i) {
        const QString &group = groups->at(i);
        if (groupValue(*groups, i, group) != group)
            report.add(NoteKind::groupValueOfAnother, group);
    }
}

// Adds notes on records that share a name or a record type.
void reportRecords(ReadReport &report, const CSProDictionary &dictionary)
{
    KeyedSet<QString> names = { dictionary.commonRecord->name };
    KeyedSet<QString> types;
    for (const TCSProRecord *record : qAsConst(*dictionary.records)) {
        const bool isNewName = names.insert(record->name).second;
        const bool isNewType = dictionary.recordTypeLen <= 0 || types.insert(record->recordType).second;
        if (!isNewName || !isNewType)
            report.add(NoteKind::duplicateRecord, record->name + QLatin1Char('=') + record->recordType);
    }
}

/// Looks for codes that the description of a field does not show as they are.
class CodeNotes
{
public:
    CodeNotes(ReadReport &usedReport, const TGenericField &describedField)
        : report(usedReport)
        , field(describedField)
    {
    }

    void lookAt(const TValueSetItem &value)
    {
        if (isParted(value))
            note(NoteKind::labelEntryParted, value.code + QLatin1Char(' ') + value.name);
        // Few codes have more digits than every double keeps.
        constexpr int keptDigits = 6;
        if (field.type == vtString || value.code.size() <= keptDigits)
            return;
        const double number = numbers::toDouble(value.code);
        if (number == 0 || isWrittenInFull(number))
            return;
        if (field.type == vtInteger)
            note(NoteKind::codeRounded, value.code);
        if (!lowest.value || number < lowest.number)
            lowest = { &value, number };
        if (!highest.value || number > highest.number)
            highest = { &value, number };
    }

    /// Called after the last value. Adds notes on the bounds, each bound once.
    void reportBounds() const
    {
        const bool isMinimum = lowest.value && numbers::toText(lowest.number) == field.minimum;
        const bool isMaximum = highest.value && numbers::toText(highest.number) == field.maximum;
        if (isMinimum)
            note(NoteKind::boundRounded, lowest.value->code);
        if (isMaximum && !(isMinimum && highest.number == lowest.number))
            note(NoteKind::boundRounded, highest.value->code);
    }

private:
    struct Rounded {
        const TValueSetItem *value = nullptr;
        double number = 0;
    };

    void note(NoteKind kind, const QString &text) const { report.add(kind, text, 0, field.name); }

    // A reader of a label treats a line feed as the tab at the end of the label.
    bool isParted(const TValueSetItem &value) const
    {
        const auto endsEntry = [](QChar character) { return character == u'\t' || character == u'\n'; };
        const auto endsCode = [&](QChar character) { return character == u' ' || endsEntry(character); };
        return std::any_of(value.name.cbegin(), value.name.cend(), endsEntry)
            || (field.type != vtInteger && std::any_of(value.code.cbegin(), value.code.cend(), endsCode));
    }

    ReadReport &report;
    const TGenericField &field;
    Rounded lowest;
    Rounded highest;
};

} // namespace

void reportDescription(ReadReport &report, const TCSProItem &item, const TCSProItem *before, const TGenericField &field)
{
    const bool isFurther = item.isFurtherOccurrence && before;
    if (!isFurther && item.decimals > 0 && item.dataType == 0)
        report.add(NoteKind::decimalsLost, QString::number(item.decimals), 0, field.name);
    if (isFurther && item.hasValueSets() == before->hasValueSets())
        return;
    CodeNotes codes(report, field);
    for (const TCSProValueSet *set : qAsConst(*item.valueSets)) {
        if (!set)
            continue;
        for (const TValueSetItem *value : set->values()) {
            if (value && !value->special) // LCOV_EXCL_BR_LINE: the readers put no special value into a set
                codes.lookAt(*value);
        }
    }
    codes.reportBounds();
}

void reportLayout(ReadReport &report, const CSProDictionary &dictionary, const QStringList *groups)
{
    reportPositions(report, dictionary);
    reportGroups(report, groups);
    reportRecords(report, dictionary);
}

} // namespace cspro
