#include "cspro/CSProNotes_p.h"

#include "cspro/GroupValue_p.h"
#include "cspro/ValueSet_p.h"
#include "import/Constants.h"
#include "import/LayoutNotes_p.h"
#include "util/KeyedHash_p.h"
#include "util/Numbers_p.h"
#include "util/TextFile_p.h"

#include <algorithm>
#include <bitset>
#include <limits>
#include <map>
#include <vector>

namespace cspro
{

namespace
{

// How far what a key says gets.
enum class KeyUse {
    nowhere, // into no field and no group: nothing is told of it
    layout,  // into a field, a group, or what is told of them
    needed,  // the same, and without the key a default is taken that is hardly meant
};

struct Key {
    QString name;
    KeyUse use;
};
using Keys = std::vector<Key>;

// The keys that are read of a section.
const Keys &keysOf(Section kind)
{
    static const Keys dictionary = {
        { QStringLiteral("Version"), KeyUse::nowhere },  { CSProKeyword::Label, KeyUse::nowhere },
        { CSProKeyword::Name, KeyUse::nowhere },         { CSProKeyword::RecordTypeStart, KeyUse::layout },
        { CSProKeyword::RecordTypeLen, KeyUse::needed }, { CSProKeyword::Positions, KeyUse::nowhere },
        { CSProKeyword::ZeroFill, KeyUse::nowhere },     { CSProKeyword::DecimalChar, KeyUse::nowhere },
    };
    static const Keys record = {
        { CSProKeyword::Label, KeyUse::nowhere },          { CSProKeyword::Name, KeyUse::needed },
        { CSProKeyword::RecordTypeValue, KeyUse::layout }, { CSProKeyword::Required, KeyUse::nowhere },
        { CSProKeyword::MaxRecords, KeyUse::nowhere },     { CSProKeyword::RecordLen, KeyUse::nowhere },
    };
    static const Keys item = {
        { CSProKeyword::Label, KeyUse::layout },       { CSProKeyword::Name, KeyUse::needed },
        { CSProKeyword::Start, KeyUse::needed },       { CSProKeyword::Len, KeyUse::needed },
        { CSProKeyword::DataType, KeyUse::layout },    { CSProKeyword::ItemType, KeyUse::layout },
        { CSProKeyword::Occurrences, KeyUse::layout }, { CSProKeyword::Decimal, KeyUse::layout },
        { CSProKeyword::DecimalChar, KeyUse::layout }, { CSProKeyword::ZeroFill, KeyUse::nowhere },
    };
    static const Keys valueSet = {
        { CSProKeyword::Label, KeyUse::nowhere },
        { CSProKeyword::Name, KeyUse::nowhere },
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

Keys::const_iterator find(const Keys &keys, QStringView name)
{
    return std::find_if(keys.cbegin(), keys.cend(), [name](const Key &key) { return name == key.name; });
}

bool reachesLayout(const Keys &keys, QStringView name)
{
    const auto key = find(keys, name);
    return key != keys.cend() && key->use != KeyUse::nowhere;
}

// The key of a line as a person reads it: what stands in front of its first "=".
QStringView keyOf(QStringView line)
{
    const int equals = textfile::indexOf(line, '=');
    return equals < 0 ? line : line.left(equals).trimmed();
}

bool holdsNumber(QStringView line)
{
    bool isNumber = false;
    const int equals = textfile::indexOf(line, '=');
    if (equals >= 0)
        numbers::toInt(line.mid(equals + 1), &isNumber);
    return isNumber;
}

bool hasKey(const SectionLines &lines, const QString &key)
{
    return std::any_of(lines.begin(), lines.end(), [&](QStringView line) { return keyOf(line) == key; });
}

/// The keys of a section's lines that are read of it, from the first line on. Asked in the order of the lines, it looks
/// at each once.
class KeysSoFar
{
public:
    KeysSoFar(const SectionLines &sectionLines, const Keys &readKeys)
        : lines(sectionLines)
        , keys(readKeys)
    {
    }

    /// Whether a line in front of the one at \a index has \a key, which is one of those that are read.
    bool has(QStringView key, size_t index)
    {
        for (; next < index; ++next) {
            stands.set(placeOf(keyOf(lines.at(next))));
        }
        return stands.test(placeOf(key));
    }

private:
    size_t placeOf(QStringView key) const { return size_t(find(keys, key) - keys.cbegin()); }

    const SectionLines &lines;
    const Keys &keys;
    std::bitset<64> stands; ///< by the place of a key; what is read of no section stands behind them
    size_t next = 0;
};

void tellOfUnusedLine(ReadReport &report, const SectionLines &lines, size_t index, const Keys &keys,
                      KeysSoFar &keysBefore)
{
    const QStringView line = lines.at(index);
    const QStringView key = keyOf(line);
    const auto tell = [&](NoteKind noteKind) { report.add(noteKind, line.toString(), lines.numberOf(index)); };
    if (line.front() == QLatin1Char('['))
        tell(NoteKind::swallowedHeader);
    else if (find(keys, key) != keys.cend()) {
        if (reachesLayout(keys, key) && keysBefore.has(key, index)) // else another line was taken for it, told there
            tell(NoteKind::repeatedKey);
    } else if (key != QLatin1String("SecurityOptions")) // says nothing of the layout
        tell(NoteKind::unknownKey);
}

} // namespace

bool isKeyOfLevel(QStringView line)
{
    const QStringView key = keyOf(line);
    return key == CSProKeyword::Name || key == CSProKeyword::Label || key == CSProKeyword::Note;
}

void SectionNotes::begin(Section sectionKind, size_t lineCount)
{
    kind = sectionKind;
    isUsed.assign(lineCount, false);
    absentKeys.clear();
}

void SectionNotes::useKey(ReadReport &report, const SectionLines &lines, size_t index, const QString &key,
                          bool isNumber)
{
    if (isNumber && index < lines.size() && !holdsNumber(lines.at(index)) && !hasKey(lines, key))
        index = lines.size();
    lastLine = index;
    lastKey = key;
    if (index == lines.size()) {
        absentKeys.push_back(key);
        return;
    }
    const QStringView line = lines.at(index);
    const int equals = textfile::indexOf(line, '=');
    const auto tell = [&](NoteKind noteKind) {
        if (reachesLayout(keysOf(kind), key))
            report.add(noteKind, key + QLatin1String(": ") + line.toString(), lines.numberOf(index));
    };
    if (equals >= 0 && line.left(equals).trimmed() == key)
        use(index);
    else
        tell(equals < 0 ? NoteKind::keyWithoutEquals : NoteKind::keyBySubstring);
    if (equals >= 0 && textfile::indexOf(line, '=', equals + 1) >= 0)
        tell(NoteKind::secondEquals);
}

void SectionNotes::failToConvert(ReadReport &report, const SectionLines &lines) const
{
    tellOfLast(report, lines, NoteKind::numberNotConverted);
}

void SectionNotes::tellOfWord(ReadReport &report, const SectionLines &lines) const
{
    tellOfLast(report, lines, NoteKind::wordNotRecognised);
}

void SectionNotes::tellOfLast(ReadReport &report, const SectionLines &lines, NoteKind noteKind) const
{
    if (lastLine < lines.size() && reachesLayout(keysOf(kind), lastKey))
        report.add(noteKind, lines.at(lastLine).toString(), lines.numberOf(lastLine));
}

bool SectionNotes::isAbsent(const QString &key) const
{
    return std::find(absentKeys.cbegin(), absentKeys.cend(), key) != absentKeys.cend();
}

void SectionNotes::end(ReadReport &report, const SectionLines &lines, int headerLine) const
{
    const Keys &keys = keysOf(kind);
    for (const Key &key : keys) {
        if (key.use == KeyUse::needed && isAbsent(key.name))
            report.add(NoteKind::missingKey, key.name, headerLine);
    }
    KeysSoFar keysBefore(lines, keys);
    for (size_t i = 0; i < isUsed.size(); ++i) {
        if (!isUsed[i])
            tellOfUnusedLine(report, lines, i, keys, keysBefore);
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
    const auto isSame = [&](const QString &a, const QString &b) {
        bool areNumbers[2] = {};
        return a == b
            || (set.isNumeric && numbers::toInt(a, &areNumbers[0]) == numbers::toInt(b, &areNumbers[1]) && areNumbers[0]
                && areNumbers[1]);
    };
    for (int i = 1; i < set.items->size(); ++i) {
        const TValueSetItem &value = *set.items->at(i);
        if (isSame(value.code, set.items->at(i - 1)->code))
            report.add(NoteKind::duplicateCode, value.code + QLatin1Char(' ') + value.name, 0, variable);
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
                                       [](const Span &a, const Span &b) { return a.end <= b.begin; });
    // The last span that begins in front of this one's end is the one that may reach into it.
    return next != spans.cbegin() && std::prev(next)->end > span.begin;
}

Span spanOf(const TCSProItem &item)
{
    return { item.start, qint64(item.start) + item.length };
}

void tellOfOverlaps(ReadReport &report, std::vector<const TCSProItem *> items, const std::vector<Span> &everyLine)
{
    const auto before = [](const TCSProItem *a, const TCSProItem *b) { return a->start < b->start; };
    if (!std::is_sorted(items.cbegin(), items.cend(), before))
        std::stable_sort(items.begin(), items.end(), before);
    qint64 taken = std::numeric_limits<qint64>::min(); // the column behind those of the items so far
    for (const TCSProItem *item : items) {
        const Span span = spanOf(*item);
        if (span.begin < taken || meets(everyLine, span)) {
            report.add(NoteKind::overlappingPositions,
                       QStringLiteral("columns %1 to %2").arg(span.begin).arg(span.end - 1), 0, item->name);
        }
        taken = std::max(taken, span.end);
    }
}

// Of the items of one record, or of the record type and the id items, that stand on the same columns.
void tellOfPositions(ReadReport &report, const CSProDictionary &dictionary)
{
    std::map<const TCSProRecord *, std::vector<const TCSProItem *>> itemsOf;
    for (const TCSProItem *item : qAsConst(*dictionary.items)) {
        if (item->subItem == 0 && item->length > 0)
            itemsOf[item->record].push_back(item);
    }
    std::vector<Span> recordType; // means nothing where there is no record
    if (dictionary.recordTypeLen > 0 && !dictionary.records->isEmpty())
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

// Of groups whose value is that of another one.
void tellOfGroups(ReadReport &report, const QStringList *groups)
{
    if (!groups)
        return;
    for (int i = 0; i < groups->size(); ++i) {
        const QString &group = groups->at(i);
        if (groupValue(*groups, i, group) != group)
            report.add(NoteKind::groupValueOfAnother, group);
    }
}

// Of records that share a name or a record type.
void tellOfRecords(ReadReport &report, const CSProDictionary &dictionary)
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
    CodeNotes(ReadReport &toldReport, const TGenericField &describedField)
        : report(toldReport)
        , field(describedField)
    {
    }

    void lookAt(const TValueSetItem &value)
    {
        if (isParted(value))
            tell(NoteKind::labelEntryParted, value.code + QLatin1Char(' ') + value.name);
        // Few codes are longer than what is kept of every number.
        constexpr int keptDigits = 6;
        if (field.type == vtString || value.code.size() <= keptDigits)
            return;
        const double number = numbers::toDouble(value.code);
        if (number == 0 || isWrittenInFull(number))
            return;
        if (field.type == vtInteger)
            tell(NoteKind::codeRounded, value.code);
        if (!lowest.value || number < lowest.number)
            lowest = { &value, number };
        if (!highest.value || number > highest.number)
            highest = { &value, number };
    }

    /// Behind the last value: of the bounds, each once.
    void tellOfBounds() const
    {
        const bool isMinimum = lowest.value && numbers::toText(lowest.number) == field.minimum;
        const bool isMaximum = highest.value && numbers::toText(highest.number) == field.maximum;
        if (isMinimum)
            tell(NoteKind::boundRounded, lowest.value->code);
        if (isMaximum && !(isMinimum && highest.number == lowest.number))
            tell(NoteKind::boundRounded, highest.value->code);
    }

private:
    struct Rounded {
        const TValueSetItem *value = nullptr;
        double number = 0;
    };

    void tell(NoteKind kind, const QString &text) const { report.add(kind, text, 0, field.name); }

    // Whoever reads a label takes a line feed for the tab at its end.
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

void tellOfDescription(ReadReport &report, const TCSProItem &item, const TCSProItem *before, const TGenericField &field)
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
            if (value && !value->special)
                codes.lookAt(*value);
        }
    }
    codes.tellOfBounds();
}

void tellOfLayout(ReadReport &report, const CSProDictionary &dictionary, const QStringList *groups)
{
    tellOfPositions(report, dictionary);
    tellOfGroups(report, groups);
    tellOfRecords(report, dictionary);
}

} // namespace cspro
