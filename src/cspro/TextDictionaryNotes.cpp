#include "cspro/TextDictionaryNotes_p.h"

#include "cspro/TextFileReader_p.h"
#include "cspro/ValueSet_p.h"
#include "import/Constants.h"

#include <utility>

namespace cspro
{

namespace
{

// Returns whether a line of a level has one of the keys that no layout has a place for: its name, its label or a note.
bool isKeyOfLevel(QStringView line)
{
    const QStringView key = keyOf(line);
    return key == CSProKeyword::Name || key == CSProKeyword::Label || key == CSProKeyword::Note;
}

bool isInQuotes(const QString &text)
{
    return text.size() >= 2 && (text.front() == QLatin1Char('\'') || text.front() == QLatin1Char('"'))
        && text.front() == text.back();
}

} // namespace

void TextDictionaryNotes::add(NoteKind kind, const QString &text, int line, const QString &variable)
{
    if (section.isOpen())
        section.add({ kind, line, variable, text });
    else
        report->add(kind, text, line, variable);
}

void TextDictionaryNotes::addFile(const TextFileReader &file)
{
    if (!file.problem().isEmpty())
        add(NoteKind::readFailed, file.problem());
    if (file.isEncodingGuessed())
        add(NoteKind::encodingGuessed, QString());
    file.forEachBrokenLine([this](int number, const QString &line) { add(NoteKind::unreadableLetters, line, number); });
}

void TextDictionaryNotes::addHeader(QStringView line, SectionKind kind, int number)
{
    isSkippedLineNoted = false;
    skippedSection = SkippedSection::noted;
    const int bracket = textfile::indexOf(line, ']');
    if (bracket < 0)
        add(NoteKind::unclosedHeader, line.toString(), number);
    else if (bracket + 1 < line.size())
        add(NoteKind::textBehindHeader, line.toString(), number);
    if (kind == dictionarySection && std::exchange(hasDictionary, true))
        add(NoteKind::furtherDictionary, line.toString(), number);
    if (kind == otherSection)
        addOtherHeader(line, number);
}

void TextDictionaryNotes::addOtherHeader(QStringView line, int number)
{
    const QString name = sectionName(line);
    // Id items are supposed to be in the record Common.
    isCommonMeant = name == QLatin1String("IDITEMS");
    if (isCommonMeant) {
        skippedSection = SkippedSection::none;
    } else if (name != QLatin1String("LEVEL")) {
        add(NoteKind::unknownSection, line.toString(), number);
    } else {
        skippedSection = SkippedSection::level;
        if (std::exchange(hasLevel, true))
            add(NoteKind::furtherLevel, line.toString(), number);
    }
}

// One note for all lines up to the next header: a file that is not a dictionary consists of such lines. A line of only
// a bracket ends a section and begins none.
void TextDictionaryNotes::addSkippedLine(QStringView line, int number)
{
    if (isHeader(line)) {
        skippedSection = SkippedSection::none;
        isSkippedLineNoted = false;
    }
    const bool isLost
        = skippedSection == SkippedSection::none || (skippedSection == SkippedSection::level && !isKeyOfLevel(line));
    if (isLost && !std::exchange(isSkippedLineNoted, true))
        add(NoteKind::lineOutsideSection, line.toString(), number);
}

// Only the name of the section is read, up to the next line that the reader treats as a header. The lines are a copy:
// going back in the reader's own lines would start again at the first line.
void TextDictionaryNotes::addSkippedValueSet(TextLines lines, int index)
{
    const int header = firstLine + index;
    QString setName;
    for (++index; lines.has(index); ++index) {
        const QStringView line = lines.at(index).trimmed();
        const bool isName = containsKey(line, CSProKeyword::Name);
        if (isName)
            setName = valueIn(line).value_or(QStringView()).toString();
        if (isName || isHeader(line))
            break;
    }
    if (dictionary.currentItem && !isItemAbsent)
        add(NoteKind::furtherValueSet, setName, header, variableName());
    else
        add(NoteKind::valueSetWithoutItem, setName, header, isItemAbsent ? absentItem : QString());
}

void TextDictionaryNotes::addValueSetOfOneCopy(const TCSProValueSet &set)
{
    const TCSProItem &item = *dictionary.currentItem;
    if (item.isFurtherOccurrence)
        add(NoteKind::onlyLastOccurrence, set.name, 0, item.name);
}

// The marks that count are known once the item cannot get another value set.
void TextDictionaryNotes::addMarks()
{
    const Mark *last[3] = {}; // by the type of the mark
    for (const Mark &mark : marks)
        last[mark.type] = &mark;
    for (const Mark &mark : marks) {
        const bool isLast = last[mark.type] == &mark;
        const auto addForMark = [&](NoteKind kind) { add(kind, mark.note.text, mark.note.line, mark.note.variable); };
        addForMark(isLast ? NoteKind::markedValue : NoteKind::furtherMark);
        if (mark.isRange)
            addForMark(NoteKind::markedRange);
        if (isLast && dictionary.currentItem->isFurtherOccurrence)
            addForMark(NoteKind::markOfLastOccurrence);
    }
    marks.clear();
}

void TextDictionaryNotes::addFailure(const QString &text, int number)
{
    if (section.isOpen())
        endSection(QString());
    if (!std::exchange(isFailureNoted, false))
        add(NoteKind::layoutGivenUp, text, number);
}

void TextDictionaryNotes::addName(const QString &sectionName)
{
    if (!sectionName.isEmpty() && sectionName.front().isSpace())
        add(NoteKind::blankInName, QStringLiteral("Name=") + sectionName, section.headerLine());
}

void TextDictionaryNotes::endDictionary(const SectionLines &lines)
{
    section.addUnused(lines);
    if (dictionary.recordTypeLen > 0 && section.isAbsent(CSProKeyword::RecordTypeStart))
        add(NoteKind::missingKey, CSProKeyword::RecordTypeStart, section.headerLine());
    endSection(QString());
}

void TextDictionaryNotes::endRecord(const TCSProRecord &record, const SectionLines &lines)
{
    section.addUnused(lines);
    if (dictionary.recordTypeLen > 0 && section.isAbsent(CSProKeyword::RecordTypeValue))
        add(NoteKind::missingKey, CSProKeyword::RecordTypeValue, section.headerLine());
    addName(record.name);
    if (!record.recordType.isEmpty() && !isInQuotes(record.recordType))
        add(NoteKind::recordTypeCut, record.recordType, section.headerLine());
    endSection(QString());
}

void TextDictionaryNotes::endItem(const TCSProItem &item, const QString &variable, const SectionLines &lines)
{
    isItemAbsent = item.occurrences < 1;
    absentItem = item.name;
    section.addUnused(lines);
    addName(item.name);
    const auto addForItem = [&](NoteKind kind) { add(kind, item.name, section.headerLine()); };
    if (dictionary.currentRecord == dictionary.commonRecord && !isCommonMeant)
        addForItem(NoteKind::itemOutsideRecord);
    if (isItemAbsent)
        addForItem(NoteKind::noOccurrences);
    if (item.occurrences > 1)
        addForItem(NoteKind::occurrenceNames);
    if (item.subItem)
        addForItem(NoteKind::subitem);
    endSection(variable);
    if (!isItemAbsent)
        addMarks();
}

const QString &TextDictionaryNotes::variableName() const
{
    const TCSProItem &item = *dictionary.currentItem;
    const int first = item.firstOccurrence;
    return first > 0 && first < dictionary.items->size() ? dictionary.items->at(first)->name : item.name;
}

} // namespace cspro
