#include "cspro/ValueSetNotes_p.h"

#include "util/Numbers_p.h"
#include "util/TextFile_p.h"

#include <algorithm>
#include <utility>

namespace cspro
{

namespace
{

bool looksLikeSeveral(const QString &upperBound)
{
    const QString bound = upperBound.trimmed();
    return textfile::indexOf(bound, ' ') >= 0 || textfile::indexOf(bound, ':') >= 0;
}

bool areSameNumber(const QString &a, const QString &b)
{
    bool areNumbers[2] = {};
    return numbers::toInt(a, &areNumbers[0]) == numbers::toInt(b, &areNumbers[1]) && areNumbers[0] && areNumbers[1];
}

} // namespace

void ValueSetNotes::beginValue()
{
    setLineOfNewValues(pendingLine);
    pendingLine = currentLine;
    rangeText.clear();
    isRangeNoted = false;
    isMarked = {};
}

void ValueSetNotes::endLine(size_t index)
{
    setLineOfNewValues(currentLine);
    notes.section.useLine(index);
}

void ValueSetNotes::takeRange(QStringView line, const QString &upper)
{
    rangeText = line.toString();
    if (looksLikeSeveral(upper))
        takeUnusualRange(NoteKind::severalInALine, line);
}

void ValueSetNotes::takeUnusualRange(NoteKind kind, QStringView line)
{
    rangeText = line.toString();
    add(kind, currentLine, rangeText);
    isRangeNoted = true;
}

// The item keeps the code that is written into it, even if a later line makes the value an ordinary one again.
void ValueSetNotes::addMark(ValueMark mark, const TValueSetItem &value)
{
    if (std::exchange(isMarked[size_t(mark)], true))
        return;
    const QString words = value.code + QLatin1Char(' ') + value.name;
    marks.push_back({ int(mark),
                      !rangeText.isNull(),
                      { NoteKind::markedValue, currentLine, notes.dictionary.currentItem->name, words } });
}

// A range whose upper bound is not an ordinary value is not in the set as two values.
void ValueSetNotes::keepRange()
{
    if (!rangeText.isNull() && !isRangeNoted)
        ranges.push_back({ NoteKind::rangeAsEndPoints, pendingLine, notes.variableName(), rangeText });
}

void ValueSetNotes::addFailure()
{
    add(NoteKind::layoutGivenUp, pendingLine, rangeText);
    notes.isFailureNoted = true;
}

void ValueSetNotes::addSection(const SectionLines &section)
{
    notes.section.addUnused(section);
    if (notes.isItemAbsent)
        notes.add(NoteKind::valueSetMisplaced, set.name, notes.section.headerLine());
}

void ValueSetNotes::addCode(NoteKind kind, int index) const
{
    notes.add(kind, set.items->at(index)->code, lineOfValue[size_t(index)]);
}

void ValueSetNotes::addCodesThatBecomeZero() const
{
    for (int i = 0; i < set.items->size(); ++i) {
        if (!IsIntegerCode(set.items->at(i)->code))
            addCode(NoteKind::codeToZero, i);
    }
}

template <typename IsWanted> void ValueSetNotes::addFirstCode(NoteKind kind, IsWanted isWanted) const
{
    const auto value = std::find_if(set.items->cbegin(), set.items->cend(),
                                    [&](const TValueSetItem *item) { return isWanted(item->code); });
    if (value != set.items->cend())
        addCode(kind, int(value - set.items->cbegin()));
}

void ValueSetNotes::addDecimalCode() const
{
    addFirstCode(NoteKind::decimalsDropped, IsDecimalCode);
}

void ValueSetNotes::addRefusedCode() const
{
    addFirstCode(NoteKind::valueSetDropped, [](const QString &code) { return !IsIntegerCode(code); });
}

// Equal codes are adjacent in a sorted set.
void ValueSetNotes::addRepeatedCodes() const
{
    for (int i = 1; i < set.items->size(); ++i) {
        const TValueSetItem &value = *set.items->at(i);
        const QString &codeBefore = set.items->at(i - 1)->code;
        if (value.code == codeBefore || (set.isNumeric && areSameNumber(value.code, codeBefore)))
            add(NoteKind::duplicateCode, 0, value.code + QLatin1Char(' ') + value.name);
    }
}

// The item cannot get another set, so its marks are final.
void ValueSetNotes::endKept()
{
    notes.marks.insert(notes.marks.end(), marks.cbegin(), marks.cend());
    notes.addMarks();
    for (const ReadNote &range : ranges)
        notes.section.add(range);
    addRepeatedCodes();
    notes.endSection(notes.variableName());
}

// The lower bound of a marked range is lost with the set.
void ValueSetNotes::endDropped()
{
    for (TextDictionaryNotes::Mark &mark : marks) {
        mark.isRange = false;
        notes.marks.push_back(mark);
    }
    notes.endSection(notes.variableName());
}

} // namespace cspro
