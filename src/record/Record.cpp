#include "record/Record.h"

#include "record/QuestIndex.h"
#include "util/EmptyText_p.h"

#include <vector>

namespace
{

// Ends each record of the assembled text.
const QLatin1String lineBreak("\r\n");

enum CheckStatus { checkSeveralLines = 4, checkNotFoundAgain = 6 };

} // namespace

TVpRecord::TVpRecord()
    : name(emptyText())
    , caption(emptyText())
    , text1(emptyText())
    , text2(emptyText())
    , references(new QList<TVpRecordReference *>)
    , text4(emptyText())
{
}

TVpRecord::TVpRecord(const TVpRecord &other) = default;
TVpRecord &TVpRecord::operator=(const TVpRecord &other) = default;

TVpRecord::TVpRecord(TVpRecord && /*other*/)
    : numbers1{}
    , references(nullptr)
{
}

TVpRecord::~TVpRecord() = default;

TVpRecord *TVpRecord::retrieveRecord(QString wanted)
{
    // The alias goes one way: "COMMON" does not find "Common".
    const bool aliasAllowed = wanted == QLatin1String("Common");
    std::vector<TVpRecord *> pending = { this };
    while (!pending.empty()) {
        TVpRecord *node = pending.back();
        pending.pop_back();
        if (node->name == wanted || (aliasAllowed && node->name == QLatin1String("COMMON")))
            return node;
        if (node->brother)
            pending.push_back(node->brother);
        if (node->child)
            pending.push_back(node->child);
    }
    return nullptr;
}

TVpRecord *TVpRecord::preOrderNext() const
{
    if (child)
        return child;
    if (brother)
        return brother;
    if (!parent)
        return nullptr;
    if (parent->brother)
        return parent->brother;
    return parent->parent ? parent->parent->preOrderNextBrother() : nullptr;
}

TVpRecord *TVpRecord::preOrderNextBrother() const
{
    const TVpRecord *node = this;
    while (node && !node->brother)
        node = node->parent;
    return node ? node->brother : nullptr;
}

QString TVpRecord::nodeCaption() const
{
    return caption.isEmpty() ? name : name + QLatin1String(" (") + caption + QLatin1Char(')');
}

QString TVpRecord::typeCode() const
{
    return text1;
}

int TVpRecord::typeNumber() const
{
    return numbers1[0];
}

void TVpRecord::addBrother(TVpRecord *record)
{
    TVpRecord *last = this;
    while (last->brother && last != record)
        last = last->brother;
    if (!record || record == last) // a chain that runs back into itself could not be walked
        return;
    last->brother = record;
    record->parent = last->parent;
}

void TVpRecord::addChild(TVpRecord *record)
{
    if (child) {
        child->addBrother(record);
    } else if (record) {
        child = record;
        record->parent = this;
    }
}

// The child whose brother is the given one; null if there is none.
TVpRecord *TVpRecord::previousOf(const TVpRecord *record) const
{
    TVpRecord *node = child;
    while (node && node->brother != record)
        node = node->brother;
    return node;
}

void TVpRecord::insertChild(TVpRecord *before, TVpRecord *newRecord)
{
    TVpRecord *previous = previousOf(before);
    if (!newRecord || newRecord == before || (child != before && !previous))
        return;
    newRecord->parent = this;
    newRecord->brother = before;
    if (child == before)
        child = newRecord;
    else
        previous->brother = newRecord;
}

void TVpRecord::deleteChild(QString childName, bool /*flag*/)
{
    TVpRecord *record = retrieveRecord(std::move(childName));
    if (!record)
        return;
    if (record == child)
        child = record->brother;
    else if (TVpRecord *previous = previousOf(record))
        previous->brother = record->brother;
    else
        return;
    record->brother = nullptr;
}

void TVpRecord::addRecordReferenceToList(TVpRecordReference *reference)
{
    if (!references)
        references = new QList<TVpRecordReference *>;
    references->append(reference);
}

void TVpRecord::removeRecordReferenceFromList(TVpRecordReference *reference)
{
    if (references)
        references->removeOne(reference);
}

QString TVpRecord::getKeyValue(QString /*line*/) const
{
    return emptyText();
}

QString TVpRecord::getParentKeyValue(QString /*line*/) const
{
    return emptyText();
}

QString TVpRecord::assembleRecord(TQuestIndex *index) const
{
    // What a reference says is not consulted: each of them counts the lines of an empty type.
    const int count = references ? references->size() : 0;
    for (int i = 0; i < count; ++i) {
        if (index->countRecords(QString()) > 1) {
            index->status = checkSeveralLines;
            break;
        }
    }
    return emptyText();
}

QString TVpRecord::assembleRecord(TQuestIndex *index, QString /*key*/) const
{
    return index->text;
}

std::function<void()> TVpRecord::freeingOf(TVpRecord *record)
{
    return [record, list = record->references] {
        delete list;
        delete record;
    };
}

QString TVpRecord::typeOfRecord() const
{
    return recordType ? recordType->code : QString();
}

QString TVpRecord::checkQuestionnaire(TQuestIndex *index)
{
    const QString type = typeOfRecord();
    const int count = index->countRecords(type);
    // Every occurrence that was counted is found again, as its own type; an empty type is found as nothing.
    if (count > 0 && type.isEmpty()) {
        index->status = checkNotFoundAgain;
        return emptyText();
    }
    QString gathered = emptyText();
    for (int occurrence = 0; occurrence < count; ++occurrence) {
        const QString key = getKeyValue(type);
        const QString piece = assembleRecord(index, key);
        if (piece.isEmpty())
            return emptyText();
        gathered += piece + lineBreak;
        if (child)
            gathered += child->checkQuestionnaire(index, key);
    }
    return gathered;
}

QString TVpRecord::checkQuestionnaire(TQuestIndex *index, QString parentKey)
{
    // A record and its later brothers, with the line that is next and what was gathered before the record. The levels
    // of the tree stand in a list: a deep tree needs no stack.
    struct Level {
        TVpRecord *record;
        QString parentKey;
        int line;
        int sizeBefore;
    };
    const QStringList lines = index->lines ? *index->lines : QStringList();
    QString gathered = emptyText();
    std::vector<Level> levels = { { this, parentKey, 0, 0 } };
    while (!levels.empty()) {
        Level &level = levels.back();
        TVpRecord *record = level.record;
        if (level.line == lines.size()) {
            level = { record->brother, level.parentKey, 0, gathered.size() };
            if (!level.record)
                levels.pop_back();
            continue;
        }
        const QString &line = lines.at(level.line++);
        if (index->typeOf(line) != record->typeOfRecord() || getParentKeyValue(line) != level.parentKey)
            continue;
        const QString key = getKeyValue(line);
        const QString piece = assembleRecord(index, key);
        if (piece.isEmpty()) {
            // What this record had gathered is dropped, and its later brothers are not visited.
            gathered.truncate(level.sizeBefore);
            levels.pop_back();
            continue;
        }
        gathered += piece + lineBreak;
        if (record->child)
            levels.push_back({ record->child, key, 0, gathered.size() });
    }
    return gathered;
}
