#include "cspro/CSPro_p.h"

#include "cspro/CSProNotes_p.h"
#include "cspro/DecimalQuestion_p.h"
#include "cspro/ValueSet_p.h"
#include "import/Constants.h"
#include "util/FileReading_p.h"
#include "util/TextFile_p.h"

#include <algorithm>
#include <array>
#include <new>
#include <utility>

namespace
{

enum DecimalAnswerKind { askAlways = 0, yesToAll = 1, noToAll = 2, askAgain = 3 };

void addValue(TCSProValueSet &set, const QString &code, const QString &label)
{
    auto item = std::make_unique<TValueSetItem>();
    item->code = code;
    item->name = label;
    set.addItem(item.release());
}

// Whether a line begins with an ASCII word in either case; the word is given in lower case.
bool beginsWith(QStringView line, QLatin1String word)
{
    const auto equalsLower = [](QChar unit, char lower) {
        const ushort code = unit.unicode();
        return (code >= 'A' && code <= 'Z' ? code + ('a' - 'A') : code) == ushort(lower);
    };
    return line.size() >= word.size()
        && std::equal(line.begin(), line.begin() + word.size(), word.begin(), equalsLower);
}

// The opening apostrophe goes and the closing one stays: a file's 'A' is the code A'.
bool unquote(QString &code)
{
    if (!code.startsWith(QLatin1Char('\'')))
        return false;
    code.remove(0, 1);
    return true;
}

// Turns each colon, together with the character in front of it, into a blank, so that the last character of a lower
// bound is lost. The text shrinks meanwhile, so the character behind such a colon is passed over; and a colon in front
// doubles the text first. A later colon then cuts it to one character more than there were.
QString withoutColons(const QString &code)
{
    const int count = code.size();
    QString text = code.startsWith(QLatin1Char(':')) ? code + QLatin1Char(' ') + code.mid(1) : code;
    QChar *characters = text.data();
    int read = 0; // the next character of the old text
    int end = text.size();
    int written = 0; // the new text so far: never more than what was read
    const auto keepNext = [&] {
        if (read < end)
            characters[written++] = characters[read++];
    };
    for (int i = 0; i < count; ++i) {
        if (i > 0 && read < end && characters[read] == QLatin1Char(':')) {
            characters[written - 1] = QLatin1Char(' ');
            ++read;
            end = std::min(end, read + count + 1 - i);
        }
        keepNext();
    }
    while (read < end)
        keepNext();
    text.truncate(written);
    return text;
}

} // namespace

// The value lines and name lines of one value set. What a line leaves in `code` and `label` stays for the lines behind
// it: some shapes of line use it.
class TCSPro::ValueLines
{
public:
    ValueLines(TCSPro &valueReader, TCSProItem &valueItem, TCSProValueSet &valueSet)
        : reader(valueReader)
        , item(valueItem)
        , set(valueSet)
    {
    }

    /// Reads a line, if it is one of a value or a name; \a number is the one it has in the file.
    bool readLine(QStringView line, int number)
    {
        const QLatin1String valueKey("value=");
        const QLatin1String nameKey("name=");
        currentLine = number;
        if (beginsWith(line, valueKey))
            readValue(line.mid(valueKey.size()));
        else if (pending && beginsWith(line, nameKey)) // before the first value: the set's own name
            readMark(line.mid(nameKey.size()));
        else
            return false;
        if (reader.report)
            noteLines(number);
        return true;
    }

    // The last value is added as it stands, whatever its code holds; no other escapes the test for several ranges.
    void finish()
    {
        if (pending && !pending->special) {
            keepRange();
            set.addItem(pending.release());
        }
        if (reader.report)
            noteLines(pendingLine);
    }

    /// What is known at the end of the set alone: its marks, and, where the set is kept, its ranges. No further set can
    /// be the item's then.
    void tellAtEnd(bool isKept)
    {
        for (Mark &mark : marks) {
            mark.isRange = mark.isRange && isKept;
            reader.marks.push_back(mark);
        }
        if (!isKept)
            return;
        reader.tellOfMarks();
        for (const ReadNote &range : ranges)
            add(range);
    }

    /// The lines that the values of the set stand in, where there is a report.
    const std::vector<int> &lines() const { return valueLines; }

private:
    void noteLines(int number) { valueLines.resize(size_t(set.items->size()), number); }

    void tell(NoteKind kind, QStringView text) const
    {
        if (reader.report)
            reader.report->add(kind, text.toString(), currentLine, reader.toldName());
    }

    void add(const ReadNote &note) const { reader.report->add(note.kind, note.text, note.line, note.variable); }

    // What was written into the item stays there, though a later line makes the value an ordinary one again.
    void keepMark(int type)
    {
        if (!reader.report || std::exchange(isMarked[size_t(type)], true))
            return;
        const QString words = pending->code + QLatin1Char(' ') + pending->name;
        marks.push_back({ type, !rangeText.isNull(), { NoteKind::markedValue, currentLine, item.name, words } });
    }

    // A range whose upper bound is no ordinary value does not stand in the set as two.
    void keepRange()
    {
        if (reader.report && !rangeText.isNull() && !isTold)
            ranges.push_back({ NoteKind::rangeAsEndPoints, pendingLine, reader.toldName(), rangeText });
    }

    void readValue(QStringView line)
    {
        flush();
        if (reader.report)
            noteNewValue();
        pending = std::make_unique<TValueSetItem>();
        readShape(line);
        pending->code = code;
        pending->name = label;
    }

    void noteNewValue()
    {
        noteLines(pendingLine);
        pendingLine = currentLine;
        rangeText.clear();
        isTold = false;
        isMarked = {};
    }

    static bool holdsSeveral(const QString &text)
    {
        return textfile::indexOf(text, ' ') >= 0 && textfile::indexOf(text, ':') >= 0;
    }

    // A special value is dropped: its code lives on in the item alone.
    void flush()
    {
        if (!pending || pending->special)
            return;
        if (holdsSeveral(pending->code)) {
            debugLine("PROCESAR OTROS RANGOS");
            splitPending();
        } else {
            keepRange();
            set.addItem(pending.release());
        }
    }

    // No line behind this one is read where it fails.
    void splitPending()
    {
        try {
            reader.splitOtherRanges(&set, pending.get());
        } catch (const std::bad_alloc &) {
            if (reader.report) {
                add({ NoteKind::layoutGivenUp, pendingLine, reader.toldName(), rangeText });
                reader.isEndTold = true;
            }
            throw;
        }
    }

    void readShape(QStringView line)
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

    void readValueWithLabel(QStringView line, int semicolon)
    {
        code = text(line.left(semicolon));
        label = text(line.mid(semicolon + 1));
        takeQuoteFrom(line);
    }

    void readValueWithoutLabel(QStringView line)
    {
        label = emptyText();
        code = text(line);
        takeQuoteFrom(line);
        tell(line.startsWith(QLatin1Char(';')) ? NoteKind::labelAsCode : NoteKind::valueWithoutLabel, line);
    }

    void takeQuoteFrom(QStringView line)
    {
        if (unquote(code))
            tell(NoteKind::keptApostrophe, line);
    }

    void takeRange(QStringView line)
    {
        if (reader.report)
            rangeText = line.toString();
    }

    void tellOfRange(NoteKind kind, QStringView line)
    {
        tell(kind, line);
        isTold = true;
    }

    static bool looksLikeSeveral(const QString &upperBound)
    {
        const QString bound = upperBound.trimmed();
        return textfile::indexOf(bound, ' ') >= 0 || textfile::indexOf(bound, ':') >= 0;
    }

    // The lower bound is added now, the upper one is what is pending.
    void readRangeWithLabel(QStringView line, int colon)
    {
        const QStringView upper = line.mid(colon + 1);
        const int semicolon = textfile::indexOf(upper, ';');
        // A semicolon right behind the colon stays in the code, and the label is the one of an earlier line.
        code = text(semicolon > 0 ? upper.left(semicolon) : upper);
        if (semicolon > 0)
            label = text(upper.mid(semicolon + 1));
        addValue(set, text(line.left(colon)), label);
        takeRange(line);
        if (semicolon <= 0)
            tellOfRange(NoteKind::rangeWithoutUpper, line);
        else if (reader.report && looksLikeSeveral(code))
            tellOfRange(NoteKind::severalInALine, line);
    }

    // The upper bound keeps its colon, so the set of a numeric item is lost; the label, where there is one, keeps its
    // semicolon, and is else the one of an earlier line.
    void readRangeWithoutLabel(QStringView line, int colon)
    {
        const QStringView upper = line.mid(colon);
        const int semicolon = textfile::indexOf(upper, ';');
        code = text(semicolon > 0 ? upper.left(semicolon) : upper);
        if (semicolon > 0)
            label = text(upper.mid(semicolon));
        addValue(set, text(line.left(colon)), label);
        takeRange(line);
        tellOfRange(NoteKind::rangeWithoutLabel, line);
    }

    // Several values and ranges with one label: every piece but the first keeps the blank or colon in front of it.
    void readSeveral(QStringView line, int semicolon)
    {
        takeRange(line);
        tellOfRange(NoteKind::severalInALine, line);
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

    // A mark is recognised where exactly one more character stands between the word and the comma: the word is what
    // stands before the comma less its last character.
    void readMark(QStringView line)
    {
        pending->type = 0;
        const int comma = textfile::indexOf(line, ',');
        if (comma <= 0)
            return tell(NoteKind::markNotRecognised, line);
        code = line.left(comma - 1).toString().toUpper();
        label = line.mid(comma).toString().toUpper();
        // Never true, as the label begins with the comma: the word behind it has no effect.
        pending->special = label == QLatin1String("SPECIAL");
        if (code == QLatin1String("MISSING"))
            mark(1, item.missingValue);
        else if (code == QLatin1String("NOTAPPL"))
            mark(2, item.notApplicable);
        if (pending->type == 0)
            tell(NoteKind::markNotRecognised, line);
    }

    void mark(int type, QString &itemCode)
    {
        pending->type = type;
        pending->special = true;
        itemCode = pending->code;
        keepMark(type);
    }

    QString text(QStringView view) const { return reader.texts.text(view); }

    TCSPro &reader;
    TCSProItem &item;
    TCSProValueSet &set;
    QString code;  ///< null before the first value line
    QString label; ///< null before the first line with a label, or without a range
    std::unique_ptr<TValueSetItem> pending;
    int currentLine = 0;
    int pendingLine = 0;
    // What a report hears; filled where there is one.
    std::vector<int> valueLines; ///< parallel to the values of the set
    std::vector<Mark> marks;
    std::vector<ReadNote> ranges;
    QString rangeText;                 ///< the line of the pending value, where it is a range; else null
    bool isTold = false;               ///< that range is more than two end points
    std::array<bool, 3> isMarked = {}; ///< the pending value, by the type of the mark
};

void TCSPro::readValueSet(const TextLines &lines, int &index)
{
    // Only the first value set of an item counts; one before any item describes nothing.
    if (!currentItem || currentItem->hasValueSets()) {
        if (report)
            tellOfUnusedValueSet(lines, index);
        return;
    }
    const int header = firstLine + index;
    const size_t firstNote = report ? report->size() : 0;
    const SectionLines section = beginSection(cspro::Section::valueSet, lines, index);
    OwnedValueSet set(new TCSProValueSet);
    set->label = getStringValue(section, CSProKeyword::Label);
    set->name = getStringValue(section, CSProKeyword::Name);
    set->isNumeric = currentIsNumeric;

    ValueLines values(*this, *currentItem, *set);
    for (size_t i = 0; i < section.size(); ++i) {
        if (values.readLine(section.at(i), section.numberOf(i)) && report)
            sectionNotes.use(i);
    }
    values.finish();
    if (report)
        tellOfValueSet(*set, section, header);

    const bool isAccepted = acceptCodes(set.get(), values.lines());
    if (isAccepted)
        set->sortItems();
    if (report)
        values.tellAtEnd(isAccepted);
    if (report && isAccepted)
        cspro::tellOfRepeatedCodes(*report, *set, toldName());
    if (report)
        report->nameVariable(firstNote, toldName());
    if (!isAccepted)
        return;
    requireRoomFor(*set);
    attachValueSet(set.release());
}

void TCSPro::tellOfValueSet(const TCSProValueSet &set, const SectionLines &section, int header)
{
    sectionNotes.end(*report, section, header);
    if (isItemAbsent)
        report->add(NoteKind::valueSetMisplaced, set.name, header);
}

const QString &TCSPro::toldName() const
{
    const int first = currentItem->firstOccurrence;
    return first > 0 && first < items->size() ? items->at(first)->name : currentItem->name;
}

void TCSPro::splitOtherRanges(TCSProValueSet *set, const TValueSetItem *pending) const
{
    const QString text = withoutColons(pending->code).trimmed();
    // The last code of such a text would be added again and again until memory gave out.
    if (!text.isEmpty())
        throw ReadingGivenUp(QString());
    addValue(*set, text, pending->name);
}

bool TCSPro::acceptCodes(TCSProValueSet *set, const std::vector<int> &lines)
{
    if (!acceptDecimalCodes(set, lines))
        return false;
    // A code that did not convert loses the whole set, without a word but to a report.
    const bool areIntegers = set->checkCodes(TCSProValueSet::modeAllIntegers);
    if (report && !areIntegers)
        cspro::tellOfDroppedSet(*report, *set, lines);
    return areIntegers;
}

// Asks about decimal codes, unless an answer holds for all sets of the dictionary; false if the set is to be dropped.
bool TCSPro::acceptDecimalCodes(TCSProValueSet *set, const std::vector<int> &lines)
{
    if (set->checkCodes(TCSProValueSet::modeNoDecimal))
        return true;
    if (decimalAnswer == askAlways || decimalAnswer == askAgain) {
        lastButton
            = askDecimal(tr("<b>A decimal number was found</b>"),
                         tr("Would you like to convert it to an integer number?"), tr("Caution"), QMessageBox::Warning);
    }
    const bool becomesInteger = lastButton == QMessageBox::YesToAll || lastButton == QMessageBox::Yes;
    if (lastButton == QMessageBox::YesToAll)
        decimalAnswer = yesToAll;
    else if (lastButton == QMessageBox::NoToAll)
        decimalAnswer = noToAll;
    if (report)
        cspro::tellOfDecimalCodes(*report, *set, lines, becomesInteger);
    if (becomesInteger)
        set->convertToInteger();
    return becomesInteger;
}

int TCSPro::askDecimal(QString text, QString informativeText, QString title, QMessageBox::Icon icon)
{
    return int(cspro::answerDecimalQuestion({ text, informativeText, title, icon }, ownAnswer, messageBox));
}

// The copies share a set, but whoever writes their labels out has them once for each copy.
void TCSPro::requireRoomFor(const TCSProValueSet &set)
{
    const int copies = currentItem->firstOccurrence == 0 ? 1 : currentOccurrences;
    if (!hasRoomForValues(copies, set.Count()))
        throw ReadingGivenUp(
            QStringLiteral("asks for more than %1 value labels in the occurrences of items").arg(mostRepeatedValues));
}

// All copies of an occurring item share the set, unless they began the dictionary: then only the last copy has it.
void TCSPro::attachValueSet(TCSProValueSet *set)
{
    const int group = currentItem->firstOccurrence;
    if (group == 0) {
        if (report && currentOccurrences > 1)
            report->add(NoteKind::onlyLastOccurrence, set->name, 0, currentItem->name);
        currentItem->addValueSet(set);
        return;
    }
    for (auto item = items->crbegin(); item != items->crend() && (*item)->firstOccurrence == group; ++item)
        (*item)->addValueSet(set);
}
