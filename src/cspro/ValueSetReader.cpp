#include "cspro/ValueSetReader_p.h"

#include "util/DebugLog_p.h"
#include "util/FileReading_p.h"
#include "util/TextFile_p.h"

#include <algorithm>
#include <new>

namespace cspro
{

namespace
{

void addValue(TCSProValueSet &set, const QString &code, const QString &label)
{
    auto item = std::make_unique<TValueSetItem>();
    item->code = code;
    item->name = label;
    set.addItem(item.release());
}

// Returns whether a line begins with an ASCII word in either case. The word must be in lower case.
bool beginsWith(QStringView line, QLatin1String word)
{
    const auto equalsLower = [](QChar unit, char lower) {
        const ushort code = unit.unicode();
        return (code >= 'A' && code <= 'Z' ? code + ('a' - 'A') : code) == ushort(lower);
    };
    return line.size() >= word.size()
        && std::equal(line.begin(), line.begin() + word.size(), word.begin(), equalsLower);
}

bool holdsSeveral(const QString &code)
{
    return textfile::indexOf(code, ' ') >= 0 && textfile::indexOf(code, ':') >= 0;
}

bool isBlank(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar character) { return character.isSpace(); });
}

// Returns whether only blanks are left of a code when its colons are replaced.
//
// Every place of the code is tested once, from the first to the last. A colon and the character before it become one
// blank. The text is then one character shorter: the character after the colon moves to the place of the colon, and is
// not tested. A colon at the first place has no character before it: the whole code is then inserted before the blank,
// so that the text has the code twice, and the next colon shortens the text after it.
bool colonsLeaveOnlyBlanks(const QString &code)
{
    const QLatin1Char colon(':');
    const QString text = code.startsWith(colon) ? code + QLatin1Char(' ') + code.mid(1) : code;
    const int places = code.size();
    int next = 0; // index of the character that is now at the place
    int end = text.size();
    bool isBlankBefore = true; // about the character before the place; all characters before that are blanks
    for (int place = 0; place < places && next < end; ++place) {
        if (place > 0 && text.at(next) == colon) {
            isBlankBefore = true;
            ++next;
            end = std::min(end, next + places + 1 - place);
        } else if (!isBlankBefore) {
            return false; // no colon follows that would replace it
        }
        if (next < end)
            isBlankBefore = text.at(next++).isSpace();
    }
    return isBlankBefore && isBlank(QStringView(text).mid(next, end - next));
}

} // namespace

ValueSetReader::ValueSetReader(ParsedValueSet &parsedSet, TextCache &textCache, ValueSetNotes &setNotes)
    : parsed(parsedSet)
    , set(*parsedSet.set)
    , texts(textCache)
    , notes(setNotes)
{
}

void ValueSetReader::read(const SectionLines &section)
{
    for (size_t i = 0; i < section.size(); ++i) {
        notes.lineBegun(section.numberOf(i));
        if (readLine(section.at(i)))
            notes.lineRead(i);
    }
    // The last value is added unchanged, whatever its code holds. Only this value is not tested for several ranges.
    if (pending && !pending->special)
        keepPending();
    notes.linesEnded();
}

// Returns whether the line is that of a value or a name.
bool ValueSetReader::readLine(QStringView line)
{
    const QLatin1String valueKey("value=");
    const QLatin1String nameKey("name=");
    if (beginsWith(line, valueKey))
        readValue(line.mid(valueKey.size()));
    else if (pending && beginsWith(line, nameKey)) // before the first value it is the name of the set
        readMark(line.mid(nameKey.size()));
    else
        return false;
    return true;
}

void ValueSetReader::readValue(QStringView line)
{
    flushPending();
    notes.valueBegun();
    pending = std::make_unique<TValueSetItem>();
    readShape(line);
    pending->code = code;
    pending->name = label;
}

// A special value is dropped: only the item keeps its code.
void ValueSetReader::flushPending()
{
    if (!pending || pending->special)
        return;
    if (holdsSeveral(pending->code)) {
        debugLine("PROCESAR OTROS RANGOS");
        splitPending();
    } else {
        keepPending();
    }
}

void ValueSetReader::splitPending()
{
    try {
        splitOtherRanges(set, *pending);
    } catch (const std::bad_alloc &) {
        notes.splitFailed();
        throw;
    }
}

void ValueSetReader::keepPending()
{
    notes.valueKept();
    set.addItem(pending.release());
}

void ValueSetReader::readShape(QStringView line)
{
    const int semicolon = textfile::indexOf(line, ';');
    const int colon = textfile::indexOf(line, ':');
    if (semicolon <= 0 && colon <= 0)
        readValueWithoutLabel(line);
    else if (semicolon <= 0)
        readRangeWithoutLabel(line, colon);
    else if (colon <= 0 || colon >= semicolon)
        readValueWithLabel(line, semicolon);
    else if (line.left(colon).contains(QLatin1Char(' ')))
        readSeveral(line, semicolon);
    else
        readRangeWithLabel(line, colon);
}

void ValueSetReader::readValueWithLabel(QStringView line, int semicolon)
{
    code = text(line.left(semicolon));
    label = text(line.mid(semicolon + 1));
    unquoteCode(line);
}

void ValueSetReader::readValueWithoutLabel(QStringView line)
{
    label = emptyText();
    code = text(line);
    unquoteCode(line);
    notes.unusualLine(line.startsWith(QLatin1Char(';')) ? NoteKind::labelAsCode : NoteKind::valueWithoutLabel, line);
}

// Removes an apostrophe before the code. The one after it stays: 'A' in the file is the code A'.
void ValueSetReader::unquoteCode(QStringView line)
{
    if (!code.startsWith(QLatin1Char('\'')))
        return;
    code.remove(0, 1);
    notes.unusualLine(NoteKind::keptApostrophe, line);
}

// Adds the lower bound; the upper bound becomes the pending value.
void ValueSetReader::readRangeWithLabel(QStringView line, int colon)
{
    const QStringView upper = line.mid(colon + 1);
    const int semicolon = textfile::indexOf(upper, ';');
    // A semicolon right after the colon stays in the code, and the label is that of an earlier line.
    code = text(semicolon > 0 ? upper.left(semicolon) : upper);
    if (semicolon > 0)
        label = text(upper.mid(semicolon + 1));
    addValue(set, text(line.left(colon)), label);
    if (semicolon > 0)
        notes.rangeRead(line, code);
    else
        notes.unusualRange(NoteKind::rangeWithoutUpper, line);
}

// The upper bound keeps its colon, so the set of a numeric item is lost. A label keeps its semicolon; without one it is
// the label of an earlier line.
void ValueSetReader::readRangeWithoutLabel(QStringView line, int colon)
{
    const QStringView upper = line.mid(colon);
    const int semicolon = textfile::indexOf(upper, ';');
    code = text(semicolon > 0 ? upper.left(semicolon) : upper);
    if (semicolon > 0)
        label = text(upper.mid(semicolon));
    addValue(set, text(line.left(colon)), label);
    notes.unusualRange(NoteKind::rangeWithoutLabel, line);
}

// Several values and ranges with one label: every piece except the first keeps the blank or colon before it.
void ValueSetReader::readSeveral(QStringView line, int semicolon)
{
    notes.unusualRange(NoteKind::severalInALine, line);
    label = text(line.mid(semicolon + 1));
    QStringView rest = line.left(semicolon);
    int cut = textfile::indexOf(rest, ' ');
    while (cut > 0) {
        addValue(set, text(rest.left(cut)), label);
        rest = rest.mid(cut);
        cut = textfile::indexOf(rest, ':');
        if (cut <= 0)
            cut = textfile::indexOf(rest, ' ');
    }
    code = text(rest);
}

// A mark is recognised if there is exactly one more character between the word and the comma: the word is the text
// before the comma without its last character.
void ValueSetReader::readMark(QStringView line)
{
    pending->type = 0;
    const int comma = textfile::indexOf(line, ',');
    if (comma <= 0)
        return notes.unusualLine(NoteKind::markNotRecognised, line);
    code = line.left(comma - 1).toString().toUpper();
    label = line.mid(comma).toString().toUpper();
    // Never true, as the label begins with the comma: the word after it has no effect.
    pending->special = label == QLatin1String("SPECIAL");
    if (code == QLatin1String("MISSING"))
        mark(ValueMark::missing, parsed.missing);
    else if (code == QLatin1String("NOTAPPL"))
        mark(ValueMark::notApplicable, parsed.notApplicable);
    if (pending->type == 0)
        notes.unusualLine(NoteKind::markNotRecognised, line);
}

void ValueSetReader::mark(ValueMark mark, std::optional<QString> &markedCode)
{
    pending->type = int(mark);
    pending->special = true;
    markedCode = pending->code;
    notes.marked(mark, *pending);
}

void ValueSetReader::splitOtherRanges(TCSProValueSet &set, const TValueSetItem &pending)
{
    // The last code of any other text would be added again and again until memory runs out.
    if (!colonsLeaveOnlyBlanks(pending.code))
        throw ReadingGivenUp(QString());
    addValue(set, emptyText(), pending.name);
}

} // namespace cspro
