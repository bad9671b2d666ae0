#ifndef RECORD_RECORD_H
#define RECORD_RECORD_H

#include "model_vanadmin_export.h"

#include <QList>
#include <QString>

#include <functional>

class TQuestIndex;

/// A reference of a record. The library holds references by pointer alone; whoever needs them defines the class.
class TVpRecordReference;

/// The record-type code of a record, as it stands in a questionnaire line.
struct TVpRecordType {
    QString code;
};

/// A node in the tree of record definitions of a questionnaire: it knows its first child, its parent and its next
/// brother.
///
/// A node owns nothing through its links: whoever builds a tree frees it. Copies point at the same neighbours and share
/// the list of references, and the neighbours still point at the source. A tree must not change during a walk.
/// Everything runs on the caller's thread; nothing is locked.
class MODEL_VANADMIN_EXPORT TVpRecord
{
public:
    /// Its texts are empty and not null, but for one of those that are carried for callers.
    TVpRecord();
    TVpRecord(const TVpRecord &other);
    TVpRecord &operator=(const TVpRecord &other);
    /// Takes nothing from its argument: texts null, numbers 0, pointers null.
    TVpRecord(TVpRecord &&other);
    virtual ~TVpRecord();

    /// The first record named \a wanted, case-sensitively, in this node, below it, and in and below its later brothers;
    /// null if there is none. "Common" also finds a record named "COMMON"; "COMMON" does not find "Common".
    TVpRecord *retrieveRecord(QString wanted);
    /// The node after this one in a walk from the root: children first, then brothers; null at the end.
    TVpRecord *preOrderNext() const;
    /// "name (caption)", or the name alone where there is no caption.
    QString nodeCaption() const;

    QString typeCode() const; ///< the text that `TVpDataProvider::getRecordType` compares
    int typeNumber() const;   ///< the number whose low byte is the current record type there

private:
    friend struct TestAccess;
    friend class TVpDataProvider;

    /// Appends \a record as the last brother in this node's chain, with the parent of the chain. Its own brother stays.
    void addBrother(TVpRecord *record);
    /// Appends \a record as the last child.
    void addChild(TVpRecord *record);
    /// Puts \a newRecord in front of the child \a before; at the end for null. Nothing is done for another node.
    void insertChild(TVpRecord *before, TVpRecord *newRecord);
    /// Unlinks the direct child \a childName: it is not freed and keeps its parent. Nothing is done for another node.
    /// The flag has no effect.
    void deleteChild(QString childName, bool flag);
    /// The next brother of this node or of the nearest ancestor that has one; null at the top.
    TVpRecord *preOrderNextBrother() const;
    void addRecordReferenceToList(TVpRecordReference *reference);
    void removeRecordReferenceFromList(TVpRecordReference *reference); ///< the first entry for it
    QString getKeyValue(QString line) const;                           ///< "": keys play no part
    QString getParentKeyValue(QString line) const;                     ///< "": keys play no part
    /// Counts, for each reference, the lines without a type; more than one sets `status` of \a index to 4. Always "".
    QString assembleRecord(TQuestIndex *index) const;
    QString assembleRecord(TQuestIndex *index, QString key) const; ///< the text of \a index
    /// Checks a questionnaire from this record down: one text of \a index, ended by CR LF, for each line that belongs
    /// to this record or one below it, in tree order. The brothers of this record are not visited.
    ///
    /// "" where a text is empty, or where an occurrence is not found again, which sets `status` of \a index to 6.
    QString checkQuestionnaire(TQuestIndex *index);
    /// The same for a record below the first and for its later brothers. A line of a child matches under every line of
    /// its parent.
    QString checkQuestionnaire(TQuestIndex *index, QString parentKey);
    QString typeOfRecord() const;
    /// What frees \a record and the list of references that it has now, whatever is assigned to it later; no neighbour.
    static std::function<void()> freeingOf(TVpRecord *record);
    TVpRecord *previousOf(const TVpRecord *record) const;

    // Members without a comment are carried and copied for callers; nothing here reads them.
    // clang-format off
    QString name; ///< key of every search
    QString caption; ///< shown beside the name
    QString text1; ///< see typeCode()
    int numbers1[4] = {-1, 0, 0, 0}; ///< for the first see typeNumber()
    bool flag1 = false;
    QString text2;
    QString text3;
    int numbers2[3] = {};
    TVpRecord *child = nullptr; ///< first child
    TVpRecord *parent = nullptr;
    TVpRecord *brother = nullptr; ///< next sibling
    QList<TVpRecordReference *> *references; ///< a list of the record's own; shared by copies; no destructor releases it
    int number1 = 0;
    bool flag2 = false;
    QString text4;
    TVpRecordType *recordType = nullptr; ///< the record-type code, not owned; null counts as an empty code
    // clang-format on
};

#endif
