#ifndef RECORD_RECORD_H
#define RECORD_RECORD_H

#include "model_vanadmin_export.h"

#include <QList>
#include <QString>

#include <functional>

class TQuestIndex;

/// A reference that belongs to a record. The library only holds pointers to references; a caller that uses them defines
/// the class.
class TVpRecordReference;

/// The record-type code of a record, as written in a questionnaire line.
struct TVpRecordType {
    QString code;
};

/// A node in the tree of record definitions of a questionnaire, with links to its first child, its parent and its next
/// brother.
///
/// A node owns nothing through its links: the builder of a tree frees it. Copies point to the same neighbours and share
/// the list of references; the neighbours still point to the original. A tree must not change during a walk. Every walk
/// is safe in a tree of any depth. Everything runs on the caller's thread; nothing is locked.
class MODEL_VANADMIN_EXPORT TVpRecord
{
public:
    /// The texts of a new record are empty and not null. One of the texts that are carried for callers is null.
    TVpRecord();
    TVpRecord(const TVpRecord &other);
    TVpRecord &operator=(const TVpRecord &other);
    /// Takes nothing from its argument: all texts are null, numbers 0 and pointers null.
    TVpRecord(TVpRecord &&other);
    virtual ~TVpRecord();

    /// Returns the first record named \a wanted, compared case-sensitively, in this node, below it, and in and below
    /// its later brothers; null if there is none. "Common" also finds a record named "COMMON"; "COMMON" does not find
    /// "Common".
    TVpRecord *retrieveRecord(QString wanted);
    /// Returns the node after this one in a walk from the root, which visits children before brothers; null at the end.
    TVpRecord *preOrderNext() const;
    /// Returns "name (caption)", or only the name if the caption is empty.
    QString nodeCaption() const;

    QString typeCode() const; ///< the text that `TVpDataProvider::getRecordType` compares
    int typeNumber() const;   ///< the number whose low byte is the current record type there

private:
    friend struct TestAccess;
    friend class TVpDataProvider;

    struct RecordTree;
    struct RecordLine;
    class RecordLines;

    /// Appends \a record to this node's brothers and gives it their parent. The brother of \a record does not change.
    void addBrother(TVpRecord *record);
    /// Appends \a record as the last child.
    void addChild(TVpRecord *record);
    /// Inserts \a newRecord before the child \a before, or at the end if \a before is null. Does nothing if \a before
    /// is not a child of this node.
    void insertChild(TVpRecord *before, TVpRecord *newRecord);
    /// Unlinks the direct child \a childName. It is not freed and keeps its parent. Does nothing if there is no such
    /// child. The flag has no effect.
    void deleteChild(QString childName, bool flag);
    /// Returns the next brother of this node, or that of the nearest ancestor that has one; null if none has one.
    TVpRecord *preOrderNextBrother() const;
    void addRecordReferenceToList(TVpRecordReference *reference);
    void removeRecordReferenceFromList(TVpRecordReference *reference); ///< removes the first entry of \a reference
    QString getKeyValue(QString line) const;                           ///< always "": records have no keys yet
    QString getParentKeyValue(QString line) const;                     ///< always "": records have no keys yet
    /// Counts the lines without a type once for each reference. More than one such line sets `status` of \a index to 4.
    /// The result is always empty; a null \a index is not counted.
    QString assembleRecord(TQuestIndex *index) const;
    QString assembleRecord(TQuestIndex *index, QString key) const; ///< the text of \a index; "" for a null one
    /// Checks a questionnaire from this record down. Returns one copy of the text of \a index, ended by CR LF, for each
    /// line that belongs to this record or to one below it, in tree order. The brothers of this record are not visited.
    ///
    /// Returns "" if \a index is null, if its text is empty, or if an occurrence is not found again; the last case sets
    /// `status` of \a index to 6.
    QString checkQuestionnaire(TQuestIndex *index);
    /// Does the same for a record below the first and for its later brothers. A line of a child matches under every
    /// line of its parent.
    QString checkQuestionnaire(TQuestIndex *index, QString parentKey);
    QString typeOfRecord() const;
    /// Returns an operation that frees \a record and its current list of references, even if another list is assigned
    /// to it later. The operation frees no neighbour.
    static std::function<void()> freeingOf(TVpRecord *record);
    TVpRecord *previousOf(const TVpRecord *record) const;

    // Members without a comment are carried and copied for callers; nothing in the library reads them.
    // clang-format off
    QString name; ///< every search compares it
    QString caption; ///< shown in parentheses after the name
    QString text1; ///< typeCode() returns it
    int numbers1[4] = {-1, 0, 0, 0}; ///< typeNumber() returns the first
    bool flag1 = false;
    QString text2;
    QString text3;
    int numbers2[3] = {};
    TVpRecord *child = nullptr; ///< first child
    TVpRecord *parent = nullptr;
    TVpRecord *brother = nullptr; ///< next brother
    QList<TVpRecordReference *> *references; ///< the record's own list; shared by copies; no destructor releases it
    int number1 = 0;
    bool flag2 = false;
    QString text4;
    TVpRecordType *recordType = nullptr; ///< the record-type code, not owned; null counts as an empty code
    // clang-format on
};

#endif
