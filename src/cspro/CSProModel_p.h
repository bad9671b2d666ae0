#ifndef CSPRO_CSPROMODEL_P_H
#define CSPRO_CSPROMODEL_P_H

#include "cspro/DecimalQuestion.h"
#include "util/DebugLog_p.h"
#include "import/ErrorManager.h"
#include "util/EmptyText_p.h"
#include "util/TextCache_p.h"

#include <QList>
#include <QObject>
#include <QString>

#include <map>
#include <memory>

class TCSProItem;
class TCSProValueSet;

namespace cspro
{

// A numeric item without decimals is an integer up to this length.
constexpr int longestInteger = 9;

} // namespace cspro

/// A record of a dictionary. It keeps no list of its items: only the item points to its record. No text of a record, of
/// an item or of a dictionary is null.
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
/// A subitem is an item like any other, with its own place in the line. Fields point to items, so these stay alive
/// until freeContents().
class TCSProItem : public QObject
{
public:
    TCSProItem();
    ~TCSProItem() override;

    /// Returns the number of value sets. Throws a `VpErrorManager *` with code 101 if there is no list.
    int getValueSetsCount();
    bool hasValueSets() const;
    /// Returns the value set at a 0-based index; null outside of the list. Throws a `VpErrorManager *` with code 211 if
    /// there is no list.
    TCSProValueSet *getValueSet(int index) const;
    /// Appends only if the item has no value set yet: the first one stays.
    void addValueSet(TCSProValueSet *valueSet);

    int valueSetsCount = 0; ///< written by getValueSetsCount()
    QString label = emptyText();
    QString missingValue = emptyText();  ///< code of the value marked as missing
    QString name = emptyText();          ///< copies have the suffix of their occurrence
    QString notApplicable = emptyText(); ///< code of the value marked as not applicable
    int dataType = 0;                    ///< 1 alphanumeric, 0 numeric
    int decimals = 0;
    int subItem = 0;     ///< 1 for a subitem; stored, has no effect
    int length = 0;      ///< characters
    int occurrences = 1; ///< 1 in every stored item
    int start = 1;       ///< column, from 1
    bool decimalChar = false;
    bool zeroFill = false;
    bool isFurtherOccurrence = false; ///< a copy after the first one of its item
    int firstOccurrence = 0;          ///< 0 for a plain item; for copies the number of items before the first copy
    TCSProRecord *record = nullptr;
    QList<TCSProValueSet *> *valueSets;
};

/// Base class of both dictionary readers. It holds what they read: settings, records, and all items in one list.
///
/// Destroying a dictionary frees no record, item or value set, because the fields made from it point to them;
/// freeContents() frees them.
class CSProDictionary : public QObject
{
public:
    /// Bounds of a dictionary: items, characters in the names of occurrences, and values of repeated items, counting
    /// each occurrence. A few bytes of a file can demand any number of them.
#ifdef FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION // small bounds let a fuzzer reach them often
    static constexpr int maxItems = 1000;
    static constexpr qint64 maxNameCharacters = 250000;
    static constexpr qint64 maxRepeatedValues = 4000;
#else
    static constexpr int maxItems = 1000000;
    static constexpr qint64 maxNameCharacters = 250000000;
    static constexpr qint64 maxRepeatedValues = 4000000;
#endif

    /// The answer to a question on decimal codes that holds for further questions of the same dictionary.
    enum KeptAnswer { askAlways = 0, yesToAll = 1, noToAll = 2, askAgain = 3 };

    CSProDictionary();
    ~CSProDictionary() override;

    /// Returns the item at a 0-based index; null outside of the list. If there is no list, throws a `VpErrorManager *`
    /// with code 211, after logging "TCSPro::getItem ERROR ", class tag and code. The other accessors do the same; the
    /// counts throw code 101.
    TCSProItem *getItem(int index) const;
    int getItemsCount() const;
    TCSProRecord *getRecord(int index) const;
    int getRecordsCount();

    int recordTypeStart = 1;                 ///< column of the record type in a data line, from 1
    int recordTypeLen = 1;                   ///< width of the record type; 0 for a dictionary without record types
    std::unique_ptr<QMessageBox> messageBox; ///< made when the question on decimal codes is first asked
    DecimalAnswerFunction ownAnswer;         ///< answers that question; if empty, the function of the process does
    int recordsCount = 0;                    ///< written by getRecordsCount()
    int decimalAnswer = askAlways;           ///< a KeptAnswer, or another number, which does not ask
    int lastButton = 0;                      ///< the last DecimalAnswer; 0 before the first question
    QString version = emptyText();
    QString label = emptyText();
    QString name = emptyText();
    QString positions = emptyText();   ///< kept as text; has no effect
    QString zeroFill = emptyText();    ///< kept as text; no default for the items
    QString decimalChar = emptyText(); ///< kept as text; no default for the items
    TCSProRecord *commonRecord;        ///< the implicit record "Common" of type "_COMMON_"; not among the records
    QList<TCSProRecord *> *records;    ///< in file order
    std::map<QString, TCSProRecord *> recordMap; ///< by record type; a later record of a type replaces an earlier one
    QList<TCSProItem *> *items;                  ///< in file order, occurrences expanded
    TCSProItem *currentItem = nullptr;           ///< the item that a following value set describes
    TCSProRecord *currentRecord;                 ///< the record that a following item belongs to
    bool currentIsNumeric = false;               ///< whether the item read last is numeric
    QList<void *> list1;                         ///< stays empty
    QList<void *> list2;                         ///< stays empty
    QString readProblem; ///< reason why the file could not be read, as one line for a person; null if it could

protected:
    /// Returns whether the dictionary can grow within its bounds by these numbers of items and of characters in the
    /// names of occurrences. Counts the characters.
    bool hasRoom(qint64 itemsToCome, qint64 nameCharactersToCome);
    /// Returns whether this number of occurrences can have this number of values each within the bound. Counts the
    /// values, unless the item occurs once.
    bool hasRoomForValues(qint64 occurrences, qint64 valuesOfEach);

    mutable TextCache texts; ///< shares repeated texts

private:
    qint64 nameCharacters = 0; ///< number of characters in the names of all occurrences so far
    qint64 repeatedValues = 0; ///< of all occurrences so far
};

namespace cspro
{

/// Frees the records, items, value sets and values of a dictionary with their lists. Afterwards the dictionary has no
/// lists.
void freeContents(CSProDictionary &dictionary);

} // namespace cspro

#endif
