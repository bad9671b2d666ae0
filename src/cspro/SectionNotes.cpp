#include "cspro/SectionNotes_p.h"

#include "import/Constants.h"
#include "util/Numbers_p.h"

#include <algorithm>
#include <bitset>

namespace cspro
{

namespace
{

// The part of the result that the value of a key affects.
enum class KeyUse {
    nowhere, // no field and no group: it gets no notes
    layout,  // a field, a group, or the diagnostics on them
    needed,  // the same, and the default that is taken without the key is rarely meant
};

struct Key {
    QString name;
    KeyUse use;
};
using Keys = std::vector<Key>;

// The keys of a section that are read.
const Keys &keysOf(SectionKind kind)
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
    case dictionarySection:
        return dictionary;
    case recordSection:
        return record;
    case itemSection:
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

/// The keys that the lines of a section have, collected from the first line on. If the calls are in the order of the
/// lines, each line is examined once.
class KeysSoFar
{
public:
    KeysSoFar(const SectionLines &sectionLines, const Keys &readKeys)
        : lines(sectionLines)
        , keys(readKeys)
    {
    }

    /// Returns whether a line before the one at \a index has \a key, which must be one of the keys that are read.
    bool has(QStringView key, size_t index)
    {
        for (; next < index; ++next) {
            found.set(placeOf(keyOf(lines.at(next))));
        }
        return found.test(placeOf(key));
    }

private:
    size_t placeOf(QStringView key) const { return size_t(find(keys, key) - keys.cbegin()); }

    const SectionLines &lines;
    const Keys &keys;
    std::bitset<64> found; ///< one bit for each key that is read; all other keys share the bit after them
    size_t next = 0;
};

} // namespace

void SectionNotes::begin(SectionKind sectionKind, int headerNumber, size_t lineCount)
{
    kind = sectionKind;
    header = headerNumber;
    open = true;
    gathered.clear();
    isUsed.assign(lineCount, false);
    absentKeys.clear();
}

void SectionNotes::useKey(const SectionLines &lines, size_t index, const QString &key, KeyType type)
{
    if (type == KeyType::number && index < lines.size() && !holdsNumber(lines.at(index)) && !hasKey(lines, key))
        index = lines.size();
    lastLine = index;
    lastKey = key;
    if (index == lines.size()) {
        absentKeys.push_back(key);
        return;
    }
    const QStringView line = lines.at(index);
    const int equals = textfile::indexOf(line, '=');
    const auto addForKey = [&](NoteKind noteKind) {
        if (reachesLayout(keysOf(kind), key))
            add({ noteKind, lines.numberOf(index), QString(), key + QLatin1String(": ") + line.toString() });
    };
    if (equals >= 0 && line.left(equals).trimmed() == key)
        useLine(index);
    else
        addForKey(equals < 0 ? NoteKind::keyWithoutEquals : NoteKind::keyBySubstring);
    if (equals >= 0 && textfile::indexOf(line, '=', equals + 1) >= 0)
        addForKey(NoteKind::secondEquals);
}

void SectionNotes::addForLastKey(const SectionLines &lines, NoteKind noteKind)
{
    if (lastLine < lines.size() && reachesLayout(keysOf(kind), lastKey))
        add({ noteKind, lines.numberOf(lastLine), QString(), lines.at(lastLine).toString() });
}

bool SectionNotes::isAbsent(const QString &key) const
{
    return std::find(absentKeys.cbegin(), absentKeys.cend(), key) != absentKeys.cend();
}

void SectionNotes::addUnused(const SectionLines &lines)
{
    const Keys &keys = keysOf(kind);
    for (const Key &key : keys) {
        if (key.use == KeyUse::needed && isAbsent(key.name))
            add({ NoteKind::missingKey, header, QString(), key.name });
    }
    KeysSoFar keysBefore(lines, keys);
    const auto addForLine = [&](NoteKind noteKind, size_t index) {
        add({ noteKind, lines.numberOf(index), QString(), lines.at(index).toString() });
    };
    for (size_t i = 0; i < isUsed.size(); ++i) {
        if (isUsed[i])
            continue;
        const QStringView key = keyOf(lines.at(i));
        if (isHeader(lines.at(i)))
            addForLine(NoteKind::swallowedHeader, i);
        else if (find(keys, key) != keys.cend()) {
            // Otherwise another line is the source of the key, and that line has a note.
            if (reachesLayout(keys, key) && keysBefore.has(key, i))
                addForLine(NoteKind::repeatedKey, i);
        } else if (key != QLatin1String("SecurityOptions")) // does not concern the layout
            addForLine(NoteKind::unknownKey, i);
    }
}

void SectionNotes::end(ReadReport &report, const QString &variable)
{
    open = false;
    for (const ReadNote &note : gathered)
        report.add(note.kind, note.text, note.line, note.variable.isEmpty() ? variable : note.variable);
    gathered.clear();
}

} // namespace cspro
