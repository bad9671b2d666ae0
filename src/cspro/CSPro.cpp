#include "cspro/CSPro_p.h"

#include "cspro/CSProNotes_p.h"
#include "cspro/TextFileReader_p.h"
#include "import/Constants.h"
#include "util/FileReading_p.h"
#include "util/NumberCharacter_p.h"
#include "util/Numbers_p.h"
#include "util/TextFile_p.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace
{

constexpr int codeInvalidContents = 242;

// Few characters of a line are the first of a key, so this looks for that one first.
bool containsKey(QStringView line, QStringView key)
{
    if (key.isEmpty())
        return true;
    const auto *first = line.begin();
    while ((first = std::find(first, line.end(), key.front())) != line.end()) {
        if (QStringView(first, line.end()).startsWith(key))
            return true;
        ++first;
    }
    return false;
}

bool isHeader(QStringView line)
{
    return !line.isEmpty() && line.front() == QLatin1Char('[');
}

bool equalsUpper(const QString &text, const QString &upper)
{
    return text.size() == upper.size() && text.toUpper() == upper;
}

// The name of a section in capitals; without a closing bracket all of the rest is the name.
QString sectionWord(QStringView line)
{
    const int bracket = textfile::indexOf(line, ']', 1);
    return line.mid(1, (bracket < 0 ? line.size() : bracket) - 1).toString().toUpper();
}

// What stands behind the "=" of a line; nothing where there is not exactly one.
std::optional<QStringView> valueIn(QStringView line)
{
    const int equals = textfile::indexOf(line, '=');
    if (equals < 0 || textfile::indexOf(line, '=', equals + 1) >= 0)
        return std::nullopt;
    return line.mid(equals + 1);
}

VpErrorManager *invalidContents(int index)
{
    return new VpErrorManager(ClassTag::CSPro, codeInvalidContents, QString(numberCharacter(index)));
}

// A line for a person on the exception in hand; null where the error's own text says enough.
QString problemInHand()
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

TCSPro::TCSPro() = default;
TCSPro::~TCSPro() = default;

void TCSPro::readFile(QString fileName)
{
    int lineCount = 0;
    try {
        TextFileReader file(fileName);
        readProblem = file.problem();
        if (report)
            reportFile(file);
        QString text;
        while (file.readBlock(text)) {
            lineCount += parseTextLines(TextLines::ofText(text), lineCount);
        }
        if (report)
            tellOfMarks();
    } catch (const std::bad_alloc &) {
        readProblem = problemInHand();
        if (report)
            report->add(NoteKind::layoutGivenUp, readProblem, lineCount);
        throw invalidContents(lineCount);
    }
}

void TCSPro::parseLines(QStringList *lines)
{
    parseTextLines(lines, 0);
    if (report)
        tellOfMarks();
}

int TCSPro::parseTextLines(const TextLines &lines, int linesBefore)
{
    int index = 0;
    firstLine = linesBefore + 1;
    try {
        for (; lines.has(index); ++index) {
            const QStringView line = lines.at(index).trimmed();
            if (line.size() > 1 && isHeader(line)) {
                const int kind = sectionKind(line);
                if (report)
                    tellOfHeader(line, kind, index);
                readSection(kind, lines, index);
            } else if (report && !line.isEmpty()) {
                tellOfLineOutside(line, index);
            }
        }
    } catch (...) {
        readProblem = problemInHand();
        if (report && !std::exchange(isEndTold, false))
            report->add(NoteKind::layoutGivenUp, lines.has(index) ? lines.at(index).toString() : QString(),
                        firstLine + index);
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
        { CSProKeyword::SectionItem, itemSection },
        { CSProKeyword::SectionValueSet, valueSetSection },
        { CSProKeyword::SectionRecord, recordSection },
        { CSProKeyword::SectionDictionary, dictionarySection },
    };
    const QString word = sectionWord(line);
    for (const auto &section : sections) {
        if (word == section.name)
            return section.kind;
    }
    currentRecord = commonRecord;
    return otherSection;
}

SectionLines TCSPro::sectionLines(const TextLines &lines, int &index) const
{
    constexpr int usualSectionSize = 16;
    SectionLines section;
    section.reserve(usualSectionSize);
    int next = index + 1;
    // The line is not trimmed here: a header behind blanks ends no section, it is swallowed as a line of this one.
    for (; lines.has(next) && !isHeader(lines.at(next)); ++next) {
        const QStringView line = lines.at(next).trimmed();
        if (line.isEmpty())
            continue;
        section.append(line);
        if (report)
            section.numberLast(firstLine + next);
    }
    index = next - 1;
    return section;
}

SectionLines TCSPro::beginSection(cspro::Section kind, const TextLines &lines, int &index) const
{
    SectionLines section = sectionLines(lines, index);
    if (report)
        sectionNotes.begin(kind, section.size());
    return section;
}

// What stands behind "=" in the first line that contains the key. The key is found anywhere in the line, by substring
// and in file order: a line that merely contains it wins if it stands first. A second "=" spoils the line.
std::optional<QStringView> TCSPro::findValue(const SectionLines &lines, const QString &key, bool isNumber) const
{
    const auto line
        = std::find_if(lines.begin(), lines.end(), [&key](QStringView text) { return containsKey(text, key); });
    if (report)
        sectionNotes.useKey(*report, lines, size_t(line - lines.begin()), key, isNumber);
    return line == lines.end() ? std::nullopt : valueIn(*line);
}

QString TCSPro::getStringValue(const SectionLines &lines, const QString &key) const
{
    QString result = emptyText();
    cspro::passOverExceptions([&] {
        if (const auto value = findValue(lines, key))
            result = texts.text(*value);
    });
    return result;
}

int TCSPro::getIntValue(const SectionLines &lines, const QString &key, int defaultValue) const
{
    int result = defaultValue;
    cspro::passOverExceptions([&] {
        bool ok = false;
        const auto value = findValue(lines, key, true);
        const int number = value ? numbers::toInt(*value, &ok) : 0;
        if (ok)
            result = number;
        else if (value && report)
            sectionNotes.failToConvert(*report, lines);
    });
    return result;
}

void TCSPro::readSection(int kind, const TextLines &lines, int &index)
{
    switch (kind) {
    case dictionarySection:
        return readDictionary(lines, index);
    case recordSection:
        return readRecord(lines, index);
    case itemSection:
        return readItem(lines, index);
    case valueSetSection:
        return readValueSet(lines, index);
    default: // the lines of any other section are walked over one by one
        return;
    }
}

void TCSPro::readDictionary(const TextLines &lines, int &index)
{
    const int header = firstLine + index;
    const SectionLines section = beginSection(cspro::Section::dictionary, lines, index);
    version = getStringValue(section, QStringLiteral("Version"));
    label = getStringValue(section, CSProKeyword::Label);
    name = getStringValue(section, CSProKeyword::Name);
    recordTypeStart = getIntValue(section, CSProKeyword::RecordTypeStart, 1);
    recordTypeLen = getIntValue(section, CSProKeyword::RecordTypeLen, 1);
    positions = getStringValue(section, CSProKeyword::Positions);
    zeroFill = getStringValue(section, CSProKeyword::ZeroFill);
    decimalChar = getStringValue(section, CSProKeyword::DecimalChar);
    if (report)
        tellOfDictionary(section, header);
}

void TCSPro::readRecord(const TextLines &lines, int &index)
{
    const int header = firstLine + index;
    const SectionLines section = beginSection(cspro::Section::record, lines, index);
    auto record = std::make_unique<TCSProRecord>();
    record->label = getStringValue(section, CSProKeyword::Label);
    record->name = getStringValue(section, CSProKeyword::Name);
    record->recordType = getStringValue(section, CSProKeyword::RecordTypeValue);
    record->required = getStringValue(section, CSProKeyword::Required);
    record->maxRecords = getIntValue(section, CSProKeyword::MaxRecords, 100);
    record->recordLen = getIntValue(section, CSProKeyword::RecordLen, 0);
    if (report)
        tellOfRecord(*record, section, header);
    // The first and the last character go, whether they are quotes or not.
    if (!record->recordType.isEmpty()) {
        record->recordType.chop(1);
        record->recordType.remove(0, 1);
    }
    records->append(record.get());
    currentRecord = record.release();
    recordMap[currentRecord->recordType] = currentRecord;
}

bool TCSPro::readWord(const SectionLines &lines, const QString &key, const QString &word, const char *other) const
{
    const QString text = getStringValue(lines, key);
    const bool isWord = equalsUpper(text, word);
    if (report && !isWord && !text.isEmpty() && text.compare(QLatin1String(other), Qt::CaseInsensitive) != 0)
        sectionNotes.tellOfWord(*report, lines);
    return isWord;
}

bool TCSPro::readFlag(const SectionLines &lines, const QString &key) const
{
    return readWord(lines, key, Vocabulary::Yes, "NO");
}

void TCSPro::readItem(const TextLines &lines, int &index)
{
    const int header = firstLine + index;
    const size_t firstNote = report ? report->size() : 0;
    const SectionLines section = beginSection(cspro::Section::item, lines, index);
    auto item = std::make_unique<TCSProItem>();
    item->label = getStringValue(section, CSProKeyword::Label);
    item->name = getStringValue(section, CSProKeyword::Name);
    item->start = getIntValue(section, CSProKeyword::Start, 1);
    item->length = getIntValue(section, CSProKeyword::Len, 0);
    item->dataType = readWord(section, CSProKeyword::DataType, QStringLiteral("ALPHA"), "NUMERIC");
    currentIsNumeric = item->dataType == 0;
    item->subItem = readWord(section, CSProKeyword::ItemType, QStringLiteral("SUBITEM"), "ITEM");
    item->occurrences = getIntValue(section, CSProKeyword::Occurrences, 1);
    item->decimals = getIntValue(section, CSProKeyword::Decimal, 0);
    item->decimalChar = readFlag(section, CSProKeyword::DecimalChar);
    item->zeroFill = readFlag(section, CSProKeyword::ZeroFill);
    if (report)
        tellOfItem(*item, section, header, firstNote);
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

// Stores one copy of an item for each occurrence, side by side; none where it occurs less than once. The item itself is
// stored nowhere.
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

// Gives out before memory does.
void TCSPro::requireRoom(qint64 itemsToCome, qint64 nameCharactersToCome)
{
    if (!hasRoom(itemsToCome, nameCharactersToCome))
        throw ReadingGivenUp(QStringLiteral("asks for more than %1 items, or %2 characters in the names of occurrences")
                                 .arg(mostItems)
                                 .arg(mostNameCharacters));
}

void TCSPro::reportFile(const TextFileReader &file)
{
    if (!file.problem().isEmpty())
        report->add(NoteKind::readFailed, file.problem());
    if (file.isEncodingGuessed())
        report->add(NoteKind::encodingGuessed, QString());
    file.forEachBrokenLine(
        [this](int number, const QString &line) { report->add(NoteKind::unreadableLetters, line, number); });
}

void TCSPro::tellOfHeader(QStringView line, int kind, int index)
{
    const int number = firstLine + index;
    isOutsideTold = false;
    walkedSection = WalkedSection::told;
    const int bracket = textfile::indexOf(line, ']');
    if (bracket < 0)
        report->add(NoteKind::unclosedHeader, line.toString(), number);
    else if (bracket + 1 < line.size())
        report->add(NoteKind::textBehindHeader, line.toString(), number);
    if (kind == dictionarySection && std::exchange(hasDictionary, true))
        report->add(NoteKind::furtherDictionary, line.toString(), number);
    if (kind != otherSection)
        return;
    const QString word = sectionWord(line);
    // Id items are meant to stand in the record Common.
    isCommonMeant = word == QLatin1String("IDITEMS");
    const bool isLevel = word == QLatin1String("LEVEL");
    if (isCommonMeant)
        walkedSection = WalkedSection::none;
    else if (isLevel)
        walkedSection = WalkedSection::level;
    if (isLevel && std::exchange(hasLevel, true))
        report->add(NoteKind::furtherLevel, line.toString(), number);
    else if (!isLevel && !isCommonMeant)
        report->add(NoteKind::unknownSection, line.toString(), number);
}

// Of lines that are walked over the first is told for all up to the next header: a file that is no dictionary has
// nothing else. A bracket alone ends a section and begins none.
void TCSPro::tellOfLineOutside(QStringView line, int index)
{
    if (isHeader(line)) {
        walkedSection = WalkedSection::none;
        isOutsideTold = false;
    }
    const bool isLost
        = walkedSection == WalkedSection::none || (walkedSection == WalkedSection::level && !cspro::isKeyOfLevel(line));
    if (isLost && !std::exchange(isOutsideTold, true))
        report->add(NoteKind::lineOutsideSection, line.toString(), firstLine + index);
}

void TCSPro::tellOfDictionary(const SectionLines &section, int header)
{
    sectionNotes.end(*report, section, header);
    if (recordTypeLen > 0 && sectionNotes.isAbsent(CSProKeyword::RecordTypeStart))
        report->add(NoteKind::missingKey, CSProKeyword::RecordTypeStart, header);
}

void TCSPro::tellOfRecord(const TCSProRecord &record, const SectionLines &section, int header)
{
    sectionNotes.end(*report, section, header);
    if (recordTypeLen > 0 && sectionNotes.isAbsent(CSProKeyword::RecordTypeValue))
        report->add(NoteKind::missingKey, CSProKeyword::RecordTypeValue, header);
    tellOfName(record.name, header);
    const QString &type = record.recordType;
    const auto isQuote
        = [](QChar character) { return character == QLatin1Char('\'') || character == QLatin1Char('"'); };
    if (!type.isEmpty() && (type.size() < 2 || !isQuote(type.front()) || type.front() != type.back()))
        report->add(NoteKind::recordTypeCut, type, header);
}

void TCSPro::tellOfName(const QString &sectionName, int header)
{
    if (!sectionName.isEmpty() && sectionName.front().isSpace())
        report->add(NoteKind::blankInName, QStringLiteral("Name=") + sectionName, header);
}

void TCSPro::tellOfItem(const TCSProItem &item, const SectionLines &section, int header, size_t firstNote)
{
    isItemAbsent = item.occurrences < 1;
    absentItem = item.name;
    sectionNotes.end(*report, section, header);
    tellOfName(item.name, header);
    if (currentRecord == commonRecord && !isCommonMeant)
        report->add(NoteKind::itemOutsideRecord, item.name, header);
    if (isItemAbsent)
        report->add(NoteKind::noOccurrences, item.name, header);
    if (item.occurrences > 1)
        report->add(NoteKind::occurrenceNames, item.name, header);
    if (item.subItem)
        report->add(NoteKind::subitem, item.name, header);
    // The first occurrence stands for all.
    report->nameVariable(firstNote, item.occurrences > 1 ? nameOfOccurrence(item, 1) : item.name);
    if (!isItemAbsent)
        tellOfMarks();
}

// The name alone is read of the section, up to the next line that the reader takes for a header. The lines are a copy:
// going back in those of the reader would begin anew at the first of them.
void TCSPro::tellOfUnusedValueSet(TextLines lines, int index)
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
    if (currentItem && !isItemAbsent)
        report->add(NoteKind::furtherValueSet, setName, header, toldName());
    else
        report->add(NoteKind::valueSetWithoutItem, setName, header, isItemAbsent ? absentItem : QString());
}

// Which marks count is known once no further value set can be the item's.
void TCSPro::tellOfMarks()
{
    const Mark *last[3] = {}; // by the type of the mark
    for (const Mark &mark : marks)
        last[mark.type] = &mark;
    for (const Mark &mark : marks) {
        const ReadNote &note = mark.note;
        const bool isLast = last[mark.type] == &mark;
        const auto tell = [&](NoteKind kind) { report->add(kind, note.text, note.line, note.variable); };
        tell(isLast ? NoteKind::markedValue : NoteKind::furtherMark);
        if (mark.isRange)
            tell(NoteKind::markedRange);
        if (isLast && currentOccurrences > 1)
            tell(NoteKind::markOfLastOccurrence);
    }
    marks.clear();
}
