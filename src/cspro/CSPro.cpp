#include "cspro/CSPro_p.h"

#include "cspro/DecimalQuestion_p.h"
#include "cspro/TextFileReader_p.h"
#include "cspro/ValueSetNotes_p.h"
#include "cspro/ValueSetReader_p.h"
#include "import/Constants.h"
#include "util/FileReading_p.h"
#include "util/NumberCharacter_p.h"
#include "util/Numbers_p.h"

#include <QScopeGuard>

#include <algorithm>
#include <iterator>
#include <new>

using cspro::KeyType;

namespace
{

constexpr int codeInvalidContents = 242;

bool equalsUpper(const QString &text, const QString &upper)
{
    return text.size() == upper.size() && text.toUpper() == upper;
}

VpErrorManager *invalidContents(int index)
{
    return new VpErrorManager(ClassTag::CSPro, codeInvalidContents, QString(numberCharacter(index)));
}

// Returns the cause of the current exception, as one line for a person; null if the error that follows is clear enough.
QString causeOfException()
{
    try {
        throw;
    } catch (const ReadingGivenUp &cause) {
        return cause.problem();
    } catch (const std::bad_alloc &) {
        return QStringLiteral("not enough memory");
    } catch (...) {
        return QString();
    }
}

} // namespace

void cspro::logException(const std::exception &error)
{
    const char *words = error.what();
    debugLine(words && *words ? words : "Unknown exception");
}

TCSPro::TCSPro()
    : notes(*this)
{
}

TCSPro::~TCSPro() = default;

void TCSPro::readFile(QString fileName)
{
    int lineCount = 0;
    try {
        TextFileReader file(fileName);
        readProblem = file.problem();
        notes.fileOpened(file);
        QString text;
        while (file.readBlock(text)) {
            lineCount += parseTextLines(TextLines::ofText(text), lineCount);
        }
        notes.linesEnded();
    } catch (const std::bad_alloc &) {
        readProblem = causeOfException();
        notes.readingFailed(readProblem, lineCount);
        throw invalidContents(lineCount);
    }
}

void TCSPro::parseLines(QStringList *lines)
{
    parseTextLines(lines, 0);
    notes.linesEnded();
}

int TCSPro::parseTextLines(const TextLines &lines, int linesBefore)
{
    int index = 0;
    notes.setFirstLine(linesBefore + 1);
    try {
        for (; lines.has(index); ++index) {
            const QStringView line = lines.at(index).trimmed();
            if (line.size() > 1 && cspro::isHeader(line)) {
                const int kind = sectionKind(line);
                notes.headerRead(line, cspro::SectionKind(kind), index);
                readSection(kind, lines, index);
            } else {
                notes.lineSkipped(line, index);
            }
        }
    } catch (...) {
        readProblem = causeOfException();
        notes.readingFailed(lines, index);
        throw invalidContents(linesBefore + index);
    }
    return index;
}

int TCSPro::sectionKind(QStringView line)
{
    const struct {
        const QString &name;
        int kind;
    } sections[] = {
        { CSProKeyword::SectionItem, cspro::itemSection },
        { CSProKeyword::SectionValueSet, cspro::valueSetSection },
        { CSProKeyword::SectionRecord, cspro::recordSection },
        { CSProKeyword::SectionDictionary, cspro::dictionarySection },
    };
    const QString sectionName = cspro::sectionName(line);
    for (const auto &section : sections) {
        if (sectionName == section.name)
            return section.kind;
    }
    currentRecord = commonRecord;
    return cspro::otherSection;
}

SectionLines TCSPro::sectionLines(const TextLines &lines, int &index) const
{
    constexpr int usualSectionSize = 16;
    SectionLines section;
    section.reserve(usualSectionSize);
    int next = index + 1;
    // The line is not trimmed here: a header after blanks ends no section but is read as a line of this one.
    for (; lines.has(next) && !cspro::isHeader(lines.at(next)); ++next) {
        const QStringView line = lines.at(next).trimmed();
        if (line.isEmpty())
            continue;
        section.append(line);
        notes.numberLine(section, next);
    }
    index = next - 1;
    return section;
}

SectionLines TCSPro::beginSection(cspro::SectionKind kind, const TextLines &lines, int &index) const
{
    const int header = index;
    SectionLines section = sectionLines(lines, index);
    notes.sectionBegun(kind, section, header);
    return section;
}

// The key is found anywhere in a line, by substring and in file order: a line that merely contains it wins if it is the
// first. A line with a second "=" has no value.
std::optional<QStringView> TCSPro::findValue(const SectionLines &lines, const QString &key, KeyType type) const
{
    const auto line
        = std::find_if(lines.begin(), lines.end(), [&key](QStringView text) { return cspro::containsKey(text, key); });
    notes.keyRead(lines, size_t(line - lines.begin()), key, type);
    return line == lines.end() ? std::nullopt : cspro::valueIn(*line);
}

QString TCSPro::getStringValue(const SectionLines &lines, const QString &key) const
{
    QString result = emptyText();
    cspro::ignoreExceptions([&] {
        if (const auto value = findValue(lines, key, KeyType::text))
            result = texts.text(*value);
    });
    return result;
}

int TCSPro::getIntValue(const SectionLines &lines, const QString &key, int defaultValue) const
{
    int result = defaultValue;
    cspro::ignoreExceptions([&] {
        bool ok = false;
        const auto value = findValue(lines, key, KeyType::number);
        const int number = value ? numbers::toInt(*value, &ok) : 0;
        if (ok)
            result = number;
        else if (value)
            notes.numberNotConverted(lines);
    });
    return result;
}

void TCSPro::readSection(int kind, const TextLines &lines, int &index)
{
    switch (kind) {
    case cspro::dictionarySection:
        return readDictionary(lines, index);
    case cspro::recordSection:
        return readRecord(lines, index);
    case cspro::itemSection:
        return readItem(lines, index);
    case cspro::valueSetSection:
        return readValueSet(lines, index);
    default: // the lines of any other section are skipped one by one
        return;
    }
}

void TCSPro::readDictionary(const TextLines &lines, int &index)
{
    const SectionLines section = beginSection(cspro::dictionarySection, lines, index);
    version = getStringValue(section, QStringLiteral("Version"));
    label = getStringValue(section, CSProKeyword::Label);
    name = getStringValue(section, CSProKeyword::Name);
    recordTypeStart = getIntValue(section, CSProKeyword::RecordTypeStart, 1);
    recordTypeLen = getIntValue(section, CSProKeyword::RecordTypeLen, 1);
    positions = getStringValue(section, CSProKeyword::Positions);
    zeroFill = getStringValue(section, CSProKeyword::ZeroFill);
    decimalChar = getStringValue(section, CSProKeyword::DecimalChar);
    notes.dictionaryRead(section);
}

void TCSPro::readRecord(const TextLines &lines, int &index)
{
    const SectionLines section = beginSection(cspro::recordSection, lines, index);
    auto record = std::make_unique<TCSProRecord>();
    record->label = getStringValue(section, CSProKeyword::Label);
    record->name = getStringValue(section, CSProKeyword::Name);
    record->recordType = getStringValue(section, CSProKeyword::RecordTypeValue);
    record->required = getStringValue(section, CSProKeyword::Required);
    record->maxRecords = getIntValue(section, CSProKeyword::MaxRecords, 100);
    record->recordLen = getIntValue(section, CSProKeyword::RecordLen, 0);
    notes.recordRead(*record, section);
    // Removes the first and the last character, whether they are quotes or not.
    if (!record->recordType.isEmpty()) {
        record->recordType.chop(1);
        record->recordType.remove(0, 1);
    }
    records->append(record.get());
    currentRecord = record.release();
    recordMap[currentRecord->recordType] = currentRecord;
}

bool TCSPro::readWord(const SectionLines &lines, const QString &key, const QString &word, QLatin1String other) const
{
    const QString text = getStringValue(lines, key);
    const bool isWord = equalsUpper(text, word);
    if (!isWord)
        notes.wordNotFound(lines, text, other);
    return isWord;
}

bool TCSPro::readFlag(const SectionLines &lines, const QString &key) const
{
    return readWord(lines, key, Vocabulary::Yes, QLatin1String("NO"));
}

void TCSPro::readItem(const TextLines &lines, int &index)
{
    const SectionLines section = beginSection(cspro::itemSection, lines, index);
    auto item = std::make_unique<TCSProItem>();
    item->label = getStringValue(section, CSProKeyword::Label);
    item->name = getStringValue(section, CSProKeyword::Name);
    item->start = getIntValue(section, CSProKeyword::Start, 1);
    item->length = getIntValue(section, CSProKeyword::Len, 0);
    item->dataType = readWord(section, CSProKeyword::DataType, QStringLiteral("ALPHA"), QLatin1String("NUMERIC"));
    currentIsNumeric = item->dataType == 0;
    item->subItem = readWord(section, CSProKeyword::ItemType, QStringLiteral("SUBITEM"), QLatin1String("ITEM"));
    item->occurrences = getIntValue(section, CSProKeyword::Occurrences, 1);
    item->decimals = getIntValue(section, CSProKeyword::Decimal, 0);
    item->decimalChar = readFlag(section, CSProKeyword::DecimalChar);
    item->zeroFill = readFlag(section, CSProKeyword::ZeroFill);
    notes.itemRead(*item, item->occurrences > 1 ? nameOfOccurrence(*item, 1) : item->name, section);
    if (item->occurrences != 1) {
        addOccurrences(*item);
        return;
    }
    requireRoom(1, 0);
    currentOccurrences = 1;
    storeItem(item.release());
}

// The suffix is the character with that code, not a digit: the first copy of X is "X_" and U+0001.
QString TCSPro::nameOfOccurrence(const TCSProItem &item, int occurrence)
{
    return item.name + QLatin1Char('_') + numberCharacter(occurrence);
}

// Stores one copy of an item for each occurrence, one after the other; none if it occurs less than once. The item
// itself is not stored.
void TCSPro::addOccurrences(const TCSProItem &item)
{
    if (item.occurrences < 1)
        return;
    requireRoom(item.occurrences, qint64(item.occurrences) * (item.name.size() + 2));
    currentOccurrences = item.occurrences;
    const int first = items->size();
    for (int occurrence = 1; occurrence <= item.occurrences; ++occurrence) {
        auto copy = std::make_unique<TCSProItem>();
        copy->label = item.label;
        copy->name = nameOfOccurrence(item, occurrence);
        copy->start = numbers::clamped(qint64(occurrence - 1) * item.length + item.start);
        copy->length = item.length;
        copy->dataType = item.dataType;
        copy->subItem = item.subItem;
        copy->decimals = item.decimals;
        copy->decimalChar = item.decimalChar;
        copy->firstOccurrence = first;
        copy->isFurtherOccurrence = occurrence > 1;
        // zeroFill is not carried over to a copy, unlike decimalChar.
        storeItem(copy.release());
    }
}

void TCSPro::storeItem(TCSProItem *item)
{
    currentRecord->addItem(item);
    currentItem = item;
    item->record = currentRecord;
    items->append(item);
}

void TCSPro::readValueSet(const TextLines &lines, int &index)
{
    // Only the first value set of an item is read. A value set before the first item describes nothing.
    if (!currentItem || currentItem->hasValueSets()) {
        notes.valueSetSkipped(lines, index);
        return;
    }
    const SectionLines section = beginSection(cspro::valueSetSection, lines, index);
    cspro::ParsedValueSet parsed = { OwnedValueSet(new TCSProValueSet), {}, {} };
    TCSProValueSet &set = *parsed.set;
    set.label = getStringValue(section, CSProKeyword::Label);
    set.name = getStringValue(section, CSProKeyword::Name);
    set.isNumeric = currentIsNumeric;
    cspro::ValueSetNotes setNotes(notes, set);
    readValues(section, parsed, setNotes);
    setNotes.sectionRead(section);
    if (!acceptCodes(set, setNotes))
        return setNotes.setDropped();
    set.sortItems();
    setNotes.setKept();
    requireRoomFor(set);
    attachValueSet(parsed.set.release());
}

// The item gets the marked codes, even if reading fails after them or the set is dropped.
void TCSPro::readValues(const SectionLines &section, cspro::ParsedValueSet &parsed, cspro::ValueSetNotes &setNotes)
{
    const auto takeMarks = qScopeGuard([&] {
        if (parsed.missing)
            currentItem->missingValue = *parsed.missing;
        if (parsed.notApplicable)
            currentItem->notApplicable = *parsed.notApplicable;
    });
    cspro::ValueSetReader(parsed, texts, setNotes).read(section);
}

void TCSPro::splitOtherRanges(TCSProValueSet *set, const TValueSetItem *pending) const
{
    cspro::ValueSetReader::splitOtherRanges(*set, *pending);
}

bool TCSPro::acceptCodes(TCSProValueSet &set, cspro::ValueSetNotes &setNotes)
{
    if (!acceptDecimalCodes(set, setNotes))
        return false;
    // If a code does not convert, the whole set is lost, and only a report states this.
    const bool areIntegers = set.checkCodes(TCSProValueSet::modeAllIntegers);
    if (!areIntegers)
        setNotes.codesRefused();
    return areIntegers;
}

// Asks about decimal codes, unless an answer applies to all sets of the dictionary. Returns false if the set is to be
// dropped.
bool TCSPro::acceptDecimalCodes(TCSProValueSet &set, cspro::ValueSetNotes &setNotes)
{
    if (set.checkCodes(TCSProValueSet::modeNoDecimal))
        return true;
    if (decimalAnswer == askAlways || decimalAnswer == askAgain) {
        lastButton
            = askDecimal(tr("<b>A decimal number was found</b>"),
                         tr("Would you like to convert it to an integer number?"), tr("Caution"), QMessageBox::Warning);
    }
    const auto answer = DecimalAnswer(lastButton);
    if (answer == DecimalAnswer::yesToAll)
        decimalAnswer = yesToAll;
    else if (answer == DecimalAnswer::noToAll)
        decimalAnswer = noToAll;
    if (answer != DecimalAnswer::yesToAll && answer != DecimalAnswer::yes) {
        setNotes.decimalsRefused();
        return false;
    }
    setNotes.codesBecomeZero();
    set.convertToInteger();
    return true;
}

int TCSPro::askDecimal(QString text, QString informativeText, QString title, QMessageBox::Icon icon)
{
    return int(cspro::answerDecimalQuestion({ text, informativeText, title, icon }, ownAnswer, messageBox));
}

// All copies of an item that occurs several times share the set, unless they are the first items of the dictionary:
// then only the last copy has it.
void TCSPro::attachValueSet(TCSProValueSet *set)
{
    const int group = currentItem->firstOccurrence;
    if (group == 0) {
        notes.valueSetOfOneCopy(*set);
        currentItem->addValueSet(set);
        return;
    }
    for (auto item = items->crbegin(); item != items->crend() && (*item)->firstOccurrence == group; ++item)
        (*item)->addValueSet(set);
}

// Ends the reading before memory runs out.
void TCSPro::requireRoom(qint64 newItems, qint64 newNameCharacters)
{
    if (!hasRoom(newItems, newNameCharacters))
        throw ReadingGivenUp(QStringLiteral("has more than %1 items, or %2 characters in the names of occurrences")
                                 .arg(maxItems)
                                 .arg(maxNameCharacters));
}

// The copies share a set, but a caller that copies their labels has them once for each copy.
void TCSPro::requireRoomFor(const TCSProValueSet &set)
{
    const int copies = currentItem->firstOccurrence == 0 ? 1 : currentOccurrences;
    if (!hasRoomForValues(copies, set.Count()))
        throw ReadingGivenUp(
            QStringLiteral("has more than %1 value labels in the occurrences of items").arg(maxRepeatedValues));
}
