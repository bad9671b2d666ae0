#include "record/Record.h"

#include "record/QuestIndex.h"
#include "util/EmptyText_p.h"
#include "util/PreOrderWalk_p.h"

namespace
{

enum CheckStatus { checkSeveralLines = 4, checkNotFoundAgain = 6 };

// Ends each piece of the assembled text.
const QLatin1String pieceEnd("\r\n");

} // namespace

/// The tree of records from one record on: its children, its later brothers and their children.
struct TVpRecord::RecordTree {
    using Node = TVpRecord *;
    static Node firstBelow(Node record) { return record->child; }
    static Node after(Node record) { return record->brother; }
};

/// A line of a questionnaire that belongs to a record. Without a record it is no line.
struct TVpRecord::RecordLine {
    const TVpRecord *record = nullptr;
    int line = 0; ///< from 0
    QString parentKey;
    QString key;

    explicit operator bool() const { return record; }
};

/// The lines of a questionnaire as a tree: below a line of a record are the lines of its children. After the last line
/// of a record come those of its next brother, unless it is the root.
class TVpRecord::RecordLines
{
public:
    using Node = RecordLine;

    /// \a rootRecord is the record whose brothers do not belong to the tree; null if there is none.
    RecordLines(TQuestIndex &index, const TVpRecord *rootRecord)
        : questionnaire(index)
        , root(rootRecord)
        , lines(index.lines ? *index.lines : QStringList())
    {
    }

    /// Returns the texts of all lines of the tree, from the first line of \a record on.
    QString assemble(const TVpRecord *record, const QString &parentKey)
    {
        QString gathered = emptyText();
        for (PreOrderWalk walk(*this, first(record, 0, parentKey)); !walk.isOver(); walk.advance()) {
            const RecordLine &line = walk.node();
            const QString piece = line.record->assembleRecord(&questionnaire, line.key);
            // Every line has the same text. If it is empty, nothing has been gathered and nothing will be.
            if (piece.isEmpty())
                return emptyText();
            gathered += piece + pieceEnd;
        }
        return gathered;
    }

    RecordLine firstBelow(const RecordLine &above) const { return first(above.record->child, 0, above.key); }
    RecordLine after(const RecordLine &former) const { return first(former.record, former.line + 1, former.parentKey); }

private:
    // Returns the first line of \a record from line number \a line on, or else the first line of a later brother.
    RecordLine first(const TVpRecord *record, int line, const QString &parentKey) const
    {
        for (; record; record = record == root ? nullptr : record->brother, line = 0) {
            for (; line < lines.size(); ++line) {
                if (belongs(lines.at(line), record, parentKey))
                    return { record, line, parentKey, record->getKeyValue(lines.at(line)) };
            }
        }
        return {};
    }

    bool belongs(const QString &line, const TVpRecord *record, const QString &parentKey) const
    {
        return questionnaire.typeOf(line) == record->typeOfRecord() && record->getParentKeyValue(line) == parentKey;
    }

    TQuestIndex &questionnaire;
    const TVpRecord *const root;
    const QStringList lines;
};

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
    // The alias works in one direction only: "COMMON" does not find "Common".
    const bool aliasAllowed = wanted == QLatin1String("Common");
    RecordTree tree;
    for (PreOrderWalk walk(tree, this); !walk.isOver(); walk.advance()) {
        const QString &found = walk.node()->name;
        if (found == wanted || (aliasAllowed && found == QLatin1String("COMMON")))
            return walk.node();
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
    if (!record || record == last) // a cyclic chain of brothers could not be walked
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
    // Every reference counts the same lines, those of an empty type, since the content of a reference is not read. One
    // count is enough.
    const bool hasReferences = references && !references->isEmpty();
    if (index && hasReferences && index->countRecords(QString()) > 1)
        index->status = checkSeveralLines;
    return emptyText();
}

QString TVpRecord::assembleRecord(TQuestIndex *index, QString /*key*/) const
{
    return index ? index->text : emptyText();
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
    if (!index)
        return emptyText();
    // Every counted occurrence is found again under its own type. Only an empty type is not: its code is empty.
    const QString type = typeOfRecord();
    if (type.isEmpty() && index->countRecords(type) > 0) {
        index->status = checkNotFoundAgain;
        return emptyText();
    }
    return RecordLines(*index, this).assemble(this, emptyText());
}

QString TVpRecord::checkQuestionnaire(TQuestIndex *index, QString parentKey)
{
    return index ? RecordLines(*index, nullptr).assemble(this, parentKey) : emptyText();
}
