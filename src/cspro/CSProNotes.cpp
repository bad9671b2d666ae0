#include "cspro/CSProNotes_p.h"

#include "cspro/GroupSearch_p.h"
#include "cspro/ValueSet_p.h"
#include "import/Constants.h"
#include "import/LayoutNotes_p.h"
#include "util/Numbers_p.h"

#include <QSet>

#include <algorithm>
#include <map>
#include <vector>

namespace cspro
{

namespace
{

enum KeyUse { textKey, neededKey, numberKey, neededNumberKey };

struct Key {
    QString name;
    KeyUse use;
};
using Keys = std::vector<Key>;

const Keys &keysOf(Section kind)
{
    static const Keys dictionary = {
        { QStringLiteral("Version"), textKey },
        { CSProKeyword::Label, textKey },
        { CSProKeyword::Name, textKey },
        { CSProKeyword::RecordTypeStart, numberKey },
        { CSProKeyword::RecordTypeLen, numberKey },
        { CSProKeyword::Positions, textKey },
        { CSProKeyword::ZeroFill, textKey },
        { CSProKeyword::DecimalChar, textKey },
    };
    static const Keys record = {
        { CSProKeyword::Label, textKey },           { CSProKeyword::Name, neededKey },
        { CSProKeyword::RecordTypeValue, textKey }, { CSProKeyword::Required, textKey },
        { CSProKeyword::MaxRecords, numberKey },    { CSProKeyword::RecordLen, numberKey },
    };
    static const Keys item = {
        { CSProKeyword::Label, textKey },         { CSProKeyword::Name, neededKey },
        { CSProKeyword::Start, neededNumberKey }, { CSProKeyword::Len, neededNumberKey },
        { CSProKeyword::DataType, textKey },      { CSProKeyword::ItemType, textKey },
        { CSProKeyword::Occurrences, numberKey }, { CSProKeyword::Decimal, numberKey },
        { CSProKeyword::DecimalChar, textKey },   { CSProKeyword::ZeroFill, textKey },
    };
    static const Keys valueSet = {
        { CSProKeyword::Label, textKey },
        { CSProKeyword::Name, textKey },
    };
    switch (kind) {
    case Section::dictionary:
        return dictionary;
    case Section::record:
        return record;
    case Section::item:
        return item;
    default:
        return valueSet;
    }
}

// The key of a line as a person reads it: what stands in front of its first "=".
QStringView keyOf(QStringView line)
{
    const int equals = textfile::indexOf(line, '=');
    return equals < 0 ? line : line.left(equals).trimmed();
}

bool isAmong(const Keys &keys, QStringView name)
{
    return std::any_of(keys.cbegin(), keys.cend(), [name](const Key &key) { return name == key.name; });
}

bool needsANumber(KeyUse use)
{
    return use == numberKey || use == neededNumberKey;
}

// The line from which a key is taken, by substring, as the reader takes it.
void tellOfKey(ReadReport &report, const Key &key, const SectionLines &lines, int headerLine)
{
    const auto found
        = std::find_if(lines.begin(), lines.end(), [&key](QStringView line) { return line.contains(key.name); });
    if (found == lines.end()) {
        if (key.use == neededKey || key.use == neededNumberKey)
            report.add(NoteKind::missingKey, key.name, headerLine);
        return;
    }
    const QStringView line = *found;
    const int number = lines.numberOf(size_t(found - lines.begin()));
    const QString text = key.name + QLatin1String(": ") + line.toString();
    const int equals = textfile::indexOf(line, '=');
    if (equals < 0)
        return report.add(NoteKind::keyWithoutEquals, text, number);
    if (keyOf(line) != key.name)
        report.add(NoteKind::keyBySubstring, text, number);
    if (textfile::indexOf(line, '=', equals + 1) >= 0)
        return report.add(NoteKind::secondEquals, text, number);
    bool isNumber = true;
    if (needsANumber(key.use))
        numbers::toInt(line.mid(equals + 1), &isNumber);
    if (!isNumber)
        report.add(NoteKind::numberNotConverted, line.toString(), number);
}

bool isValueLine(QStringView line)
{
    return line.startsWith(QLatin1String("value="), Qt::CaseInsensitive)
        || line.startsWith(QLatin1String("name="), Qt::CaseInsensitive);
}

} // namespace

void tellOfSection(ReadReport &report, Section kind, const SectionLines &lines, int headerLine)
{
    const Keys &keys = keysOf(kind);
    for (const Key &key : keys)
        tellOfKey(report, key, lines, headerLine);
    std::vector<QStringView> seen; // few: keys that are read
    for (size_t i = 0; i < lines.size(); ++i) {
        const QStringView line = lines.at(i);
        const QStringView key = keyOf(line);
        if (line.front() == QLatin1Char('[')) {
            report.add(NoteKind::swallowedHeader, line.toString(), lines.numberOf(i));
        } else if (kind == Section::valueSet && isValueLine(line)) {
            continue;                                                                // told by the reader of values
        } else if (!isAmong(keys, key) && key != QLatin1String("SecurityOptions")) { // which says nothing of the layout
            report.add(NoteKind::unknownKey, line.toString(), lines.numberOf(i));
        } else if (std::find(seen.cbegin(), seen.cend(), key) != seen.cend()) {
            report.add(NoteKind::repeatedKey, line.toString(), lines.numberOf(i));
        } else {
            seen.push_back(key);
        }
    }
}

void tellOfDecimalCodes(ReadReport &report, const TCSProValueSet &set, const std::vector<int> &lines,
                        bool becomesInteger)
{
    for (int i = 0; i < set.items->size(); ++i) {
        const QString &code = set.items->at(i)->code;
        const int line = size_t(i) < lines.size() ? lines[size_t(i)] : 0;
        if (becomesInteger && !IsIntegerCode(code)) {
            report.add(NoteKind::codeToZero, code, line);
        } else if (!becomesInteger && IsDecimalCode(code)) {
            report.add(NoteKind::decimalsDropped, code, line);
            return;
        }
    }
}

void tellOfDroppedSet(ReadReport &report, const TCSProValueSet &set, const std::vector<int> &lines)
{
    for (int i = 0; i < set.items->size(); ++i) {
        const QString &code = set.items->at(i)->code;
        if (!IsIntegerCode(code))
            return report.add(NoteKind::valueSetDropped, code, size_t(i) < lines.size() ? lines[size_t(i)] : 0);
    }
}

void tellOfRepeatedCodes(ReadReport &report, const TCSProValueSet &set, const QString &variable)
{
    QSet<QString> codes;
    for (const TValueSetItem *value : qAsConst(*set.items)) {
        const int before = codes.size();
        codes.insert(value->code);
        if (!value->special && codes.size() == before)
            report.add(NoteKind::duplicateCode, value->code + QLatin1Char(' ') + value->name, 0, variable);
    }
}

namespace
{

struct Span {
    qint64 begin; // column, from 1
    qint64 end;   // behind the last
};

// The columns that every line has: those of the record type and of the id items.
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
                                       [](const Span &a, const Span &b) { return a.begin < b.end; });
    // The last span that begins in front of this one's end is the one that may reach into it.
    return next != spans.cbegin() && std::prev(next)->end > span.begin;
}

Span spanOf(const TCSProItem &item)
{
    return { item.start, qint64(item.start) + item.length };
}

void tellOfOverlaps(ReadReport &report, std::vector<const TCSProItem *> items, const std::vector<Span> &everyLine)
{
    std::stable_sort(items.begin(), items.end(),
                     [](const TCSProItem *a, const TCSProItem *b) { return a->start < b->start; });
    qint64 taken = 0; // the column behind those of the items so far
    for (const TCSProItem *item : items) {
        const Span span = spanOf(*item);
        if (span.begin < taken || meets(everyLine, span)) {
            report.add(NoteKind::overlappingPositions,
                       QStringLiteral("columns %1 to %2").arg(span.begin).arg(span.end - 1), 0, item->name);
        }
        taken = std::max(taken, span.end);
    }
}

} // namespace

void tellOfPositions(ReadReport &report, const CSProDictionary &dictionary)
{
    std::map<const TCSProRecord *, std::vector<const TCSProItem *>> itemsOf;
    for (const TCSProItem *item : qAsConst(*dictionary.items)) {
        if (item->subItem == 0 && item->length > 0)
            itemsOf[item->record].push_back(item);
    }
    std::vector<Span> recordType;
    if (dictionary.recordTypeLen > 0)
        recordType.push_back(
            { dictionary.recordTypeStart, qint64(dictionary.recordTypeStart) + dictionary.recordTypeLen });
    std::vector<Span> everyLine = recordType;
    for (const TCSProItem *item : itemsOf[dictionary.commonRecord])
        everyLine.push_back(spanOf(*item));
    everyLine = merged(std::move(everyLine));
    tellOfOverlaps(report, std::move(itemsOf[dictionary.commonRecord]), recordType);
    for (const TCSProRecord *record : qAsConst(*dictionary.records))
        tellOfOverlaps(report, std::move(itemsOf[record]), everyLine);
}

void tellOfDigits(ReadReport &report, const TCSProItem &item, const TGenericField &field)
{
    if (item.decimals > 0 && item.dataType == 0)
        report.add(NoteKind::decimalsLost, QString::number(item.decimals), 0, field.name);
    if (field.type != vtInteger && field.type != vtReal)
        return;
    const auto isRounded = [](double number) { return numbers::toDouble(numbers::toText(number)) != number; };
    const auto tell = [&](NoteKind kind, const QString &text) { report.add(kind, text, 0, field.name); };
    QString roundedBound;
    for (const TCSProValueSet *set : qAsConst(*item.valueSets)) {
        for (const TValueSetItem *value : qAsConst(*set->items)) {
            const double number = numbers::toDouble(value->code);
            if (value->special || !isRounded(number))
                continue;
            if (field.type == vtInteger)
                tell(NoteKind::codeRounded, value->code);
            const QString text = numbers::toText(number);
            if (text == field.minimum || text == field.maximum)
                roundedBound = value->code;
        }
    }
    if (!roundedBound.isNull())
        tell(NoteKind::boundRounded, roundedBound);
}

void tellOfGroups(ReadReport &report, const QStringList *groups)
{
    if (!groups)
        return;
    const GroupSearch search(*groups);
    for (const QString &group : qAsConst(*groups)) {
        if (search.firstWith(group) != group)
            report.add(NoteKind::groupValueOfAnother, group);
    }
}

void tellOfLayout(ReadReport &report, const CSProDictionary &dictionary, const QStringList *groups,
                  const QList<TGenericField *> *fields)
{
    tellOfPositions(report, dictionary);
    tellOfGroups(report, groups);
    tellOfRepeatedNames(report, fields);
}

} // namespace cspro
