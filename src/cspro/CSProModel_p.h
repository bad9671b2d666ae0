#ifndef CSPRO_CSPROMODEL_P_H
#define CSPRO_CSPROMODEL_P_H

#include "cspro/DecimalQuestion.h"
#include "util/DebugLog_p.h"
#include "import/ErrorManager.h"
#include "util/EmptyText_p.h"
#include "util/NumberCharacter_p.h"
#include "util/TextCache_p.h"

#include <QList>
#include <QObject>
#include <QString>

#include <map>
#include <memory>
#include <stdexcept>

class TCSProItem;
class TCSProValueSet;

namespace cspro
{

constexpr int codeNoList = 101;
constexpr int codeBadIndex = 211;

// A numeric item without decimals is an integer up to this length.
constexpr int longestInteger = 9;

template <typename T> const QList<T *> &listBehind(const QList<T *> *list)
{
    if (!list)
        throw std::invalid_argument("no list");
    return *list;
}

// Logs the failure of an accessor. Does nothing without an operation, for an accessor that logs no failures.
void logFailure(const char *operation, const QString &classTag, int code);

/// The size of \a list. If reading it throws, as it does without a list, logs the failure of \a operation (unless that
/// is null) and throws a `VpErrorManager *` with code 101 under \a classTag.
template <typename T> int sizeOf(const QList<T *> *list, const QString &classTag, const char *operation = nullptr)
{
    try {
        return listBehind(list).size();
    } catch (...) {
        logFailure(operation, classTag, codeNoList);
        throw new VpErrorManager(classTag, codeNoList);
    }
}

/// The element of \a list at \a index; null outside of the list, which is no failure. Fails like sizeOf(), with code
/// 211 and a text of one character whose code is the index.
template <typename T>
T *elementOf(const QList<T *> *list, int index, const QString &classTag, const char *operation = nullptr)
{
    try {
        return listBehind(list).value(index, nullptr);
    } catch (...) {
        logFailure(operation, classTag, codeBadIndex);
        throw new VpErrorManager(classTag, codeBadIndex, QString(numberCharacter(index)));
    }
}

} // namespace cspro

/// A record of a dictionary. It keeps no list of its items: the link runs from the item to the record alone. No text of
/// a record, of an item or of a dictionary is null.
struct TCSProRecord {
    void addItem(TCSProItem *item); ///< does nothing

    QString label = emptyText();
    QString name = emptyText();
    QString recordType = emptyText(); ///< the record-type value, without quotes
    QString required = emptyText();   ///< as text
    int maxRecords = 100;
    int recordLen = 0;
};

/// An item of a dictionary, or one occurrence of an item that occurs several times.
///
/// A subitem is an item like any other, with its own place in the line. Fields point at items, so these stay alive
/// until freeContents().
class TCSProItem : public QObject
{
public:
    TCSProItem();
    ~TCSProItem() override;

    /// The number of value sets. Throws a `VpErrorManager *` with code 101 where there is no list.
    int getValueSetsCount();
    bool hasValueSets() const;
    /// The value set at an index from 0; null outside of the list. Throws a `VpErrorManager *` with code 211 where
    /// there is no list.
    TCSProValueSet *getValueSet(int index) const;
    /// Appends only if the item has no value set yet: the first one stays.
    void addValueSet(TCSProValueSet *valueSet);

    int valueSetsCount = 0; ///< written by getValueSetsCount()
    QString label = emptyText();
    QString missingValue = emptyText();  ///< code of the value marked as missing
    QString name = emptyText();          ///< with the occurrence's suffix on copies
    QString notApplicable = emptyText(); ///< code of the value marked as not applicable
    int dataType = 0;                    ///< 1 alphanumeric, 0 numeric
    int decimals = 0;
    int subItem = 0;     ///< 1 for a subitem; recorded, acted on by nothing
    int length = 0;      ///< characters
    int occurrences = 1; ///< 1 on every stored item
    int start = 1;       ///< column, from 1
    bool decimalChar = false;
    bool zeroFill = false;
    bool isFurtherOccurrence = false; ///< a copy after the first one of its item
    int firstOccurrence = 0;          ///< 0 for a plain item; on copies the number of items before the first copy
    TCSProRecord *record = nullptr;
    QList<TCSProValueSet *> *valueSets;
};

/// Base class of both dictionary readers, with what they read: settings, records, and all items in one list.
///
/// Destroying a dictionary frees no record, item or value set, because the fields made from it point at them;
/// freeContents() frees them.
class CSProDictionary : public QObject
{
public:
    /// Bounds of a dictionary: items, characters in the names of occurrences, and values of repeated items, counting
    /// each occurrence. A few bytes of a file can ask for any number of them.
#ifdef FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION // small bounds let a fuzzer reach them often
    static constexpr int maxItems = 1000;
    static constexpr qint64 maxNameCharacters = 250000;
    static constexpr qint64 maxRepeatedValues = 4000;
#else
    static constexpr int maxItems = 1000000;
    static constexpr qint64 maxNameCharacters = 250000000;
    static constexpr qint64 maxRepeatedValues = 4000000;
#endif

    CSProDictionary();
    ~CSProDictionary() override;

    /// The item at an index from 0; null outside of the list. Where there is no list: logs "TCSPro::getItem ERROR ",
    /// class tag and code, and throws a `VpErrorManager *` with code 211. The other accessors behave alike, the counts
    /// with code 101.
    TCSProItem *getItem(int index) const;
    int getItemsCount() const;
    TCSProRecord *getRecord(int index) const;
    int getRecordsCount();

    int recordTypeStart = 1;                 ///< column of the record type in a data line, from 1
    int recordTypeLen = 1;                   ///< width of the record type; 0 for a dictionary without record types
    std::unique_ptr<QMessageBox> messageBox; ///< made when the question on decimal codes is first asked
    DecimalAnswerFunction ownAnswer;         ///< answers that question; empty for the function of the process
    int recordsCount = 0;                    ///< written by getRecordsCount()
    int decimalAnswer = 0;                   ///< sticky answer to that question: 0 and 3 ask, 1 Yes to All, 2 No to All
    int lastButton = 0;                      ///< last button pressed in it
    QString version = emptyText();
    QString label = emptyText();
    QString name = emptyText();
    QString positions = emptyText();   ///< kept as text, acted on by nothing
    QString zeroFill = emptyText();    ///< kept as text; no default for the items
    QString decimalChar = emptyText(); ///< kept as text; no default for the items
    TCSProRecord *commonRecord;        ///< the implicit record "Common" of type "_COMMON_"; not among the records
    QList<TCSProRecord *> *records;    ///< in file order
    std::map<QString, TCSProRecord *> recordMap; ///< by record type; a later record takes the entry
    QList<TCSProItem *> *items;                  ///< in file order, occurrences expanded
    TCSProItem *currentItem = nullptr;           ///< the item that a following value set describes
    TCSProRecord *currentRecord;                 ///< the record that a following item belongs to
    bool currentIsNumeric = false;               ///< whether the item read last is numeric
    QList<void *> list1;                         ///< stays empty
    QList<void *> list2;                         ///< stays empty
    QString readProblem; ///< why the file could not be read, as one line for a person; null where it could

protected:
    /// True if the dictionary can grow by these numbers of items and of characters in the names of occurrences within
    /// its bounds. Counts the characters.
    bool hasRoom(qint64 itemsToCome, qint64 nameCharactersToCome);
    /// True if so many occurrences can have so many values each within the bound. Counts the values, unless the item
    /// occurs once.
    bool hasRoomForValues(qint64 occurrences, qint64 valuesOfEach);

    mutable TextCache texts; ///< shares texts that repeat

private:
    qint64 nameCharacters = 0; ///< in the names of all occurrences so far
    qint64 repeatedValues = 0; ///< of all occurrences so far
};

namespace cspro
{

/// Frees the records, items, value sets and values of a dictionary with their lists; the dictionary has no lists then.
void freeContents(CSProDictionary &dictionary);

} // namespace cspro

#endif
