#include "record/Record.h"

#include "import/Constants.h"
#include "record/QuestIndex.h"

#include <vector>

namespace
{

enum CheckStatus { checkSeveralLines = 4, checkNotFoundAgain = 6 };

} // namespace

TVpRecord::TVpRecord()
    : references(new QList<TVpRecordReference *>)
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
    while (last->brother)
        last = last->brother;
    if (!record || record == last) // a chain that ends in itself could not be walked
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
    if (!newRecord || (child != before && !previous))
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
    return QString();
}

QString TVpRecord::getParentKeyValue(QString /*line*/) const
{
    return QString();
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
    return QString();
}

QString TVpRecord::assembleRecord(TQuestIndex *index, QString /*key*/) const
{
    return index->text;
}

QString TVpRecord::typeOfRecord() const
{
    return recordType ? recordType->code : QString();
}

// Adds this record's piece for one line, and what the records below it give for it; false if the piece is empty.
bool TVpRecord::addPiece(TQuestIndex *index, const QString &key, QString &gathered)
{
    const QString piece = assembleRecord(index, key);
    if (piece.isEmpty())
        return false;
    gathered += piece + Vocabulary::LineBreak;
    if (child)
        gathered += child->checkQuestionnaire(index, key);
    return true;
}

QString TVpRecord::checkQuestionnaire(TQuestIndex *index)
{
    const QString type = typeOfRecord();
    const int count = index->countRecords(type);
    QString gathered;
    for (int occurrence = 0; occurrence < count; ++occurrence) {
        const QString code = index->findRecord(type, occurrence);
        if (code.isEmpty()) {
            index->status = checkNotFoundAgain;
            return QString();
        }
        if (!addPiece(index, getKeyValue(code), gathered))
            return QString();
    }
    return gathered;
}

// This record's own part of a check below the first record; false where a piece is empty.
bool TVpRecord::gatherLines(TQuestIndex *index, const QString &parentKey, QString &gathered)
{
    const QString type = typeOfRecord();
    if (!index->lines)
        return true;
    for (const QString &line : qAsConst(*index->lines)) {
        if (index->typeOf(line) != type || getParentKeyValue(line) != parentKey)
            continue;
        if (!addPiece(index, getKeyValue(line), gathered))
            return false;
    }
    return true;
}

QString TVpRecord::checkQuestionnaire(TQuestIndex *index, QString parentKey)
{
    QString result;
    // An empty piece drops what its record had gathered, and the brothers behind it are not visited.
    for (TVpRecord *record = this; record; record = record->brother) {
        QString gathered;
        if (!record->gatherLines(index, parentKey, gathered))
            break;
        result += gathered;
    }
    return result;
}
