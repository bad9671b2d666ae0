#ifndef CSPRO_CSPROIMPORTBASE_H
#define CSPRO_CSPROIMPORTBASE_H

#include "import/DataImport.h"
#include "model_vanadmin_export.h"

class CSProDictionary;
class TCSProItem;

/// Base class of the fields of both CSPro dictionary forms. A field points at its item without owning it.
/// Used by the thread that uses its importer.
class MODEL_VANADMIN_EXPORT TCSProFieldBase : public TGenericField
{
public:
    ~TCSProFieldBase() override;

    bool isMissing() override;       ///< unset, or the current text is the item's missing code
    bool isNotApplicable() override; ///< the current text is the item's not-applicable code
    bool isBlank() override;         ///< the current text is white space
    QString getGroup() override;     ///< name of the item's record where the dictionary has record types, else ""

    QString group;
    TCSProItem *item; ///< not owned; null counts as an item without codes

protected:
    TCSProFieldBase(TDataImport *importer, TCSProItem *sourceItem);

private:
    friend struct TestAccess;

    bool optionalAtStart; ///< carried
};

/// Base class of the importers of both CSPro dictionary forms, `TCSProDataImport` and `TCSProJsonDataImport`: one field
/// for each item and occurrence, one group for each record. A form supplies its reader and its class of fields.
///
/// The dictionary and the list of groups outlive the importer, as the fields do. Copies share all of them. Call the
/// operations through a `TDataImport` pointer or reference.
class MODEL_VANADMIN_EXPORT TCSProImportBase : public TDataImport
{
public:
    ~TCSProImportBase() override;

    int getGroupCount() override;    ///< number of records; the common record is not among them
    void releaseContents() override; ///< groups included

protected:
    friend struct TestAccess;

    /// Keeps the path, unchanged; reads nothing yet.
    explicit TCSProImportBase(QString fileName);
    /// Empty: no path and no list of groups.
    TCSProImportBase();
    TCSProImportBase(const TCSProImportBase &other);
    TCSProImportBase &operator=(const TCSProImportBase &other);

    /// Reads the dictionary anew, leaving the former one alive. Always true.
    bool openFile() override;
    bool isMultiple() override;               ///< whether the record type has a width above 0
    QString getGroupName(int index) override; ///< "name=type", the whole entry; null outside of the list
    /// The first entry that contains the text of getGroupName(): the same whole entry, unless an earlier one contains
    /// it too. "" outside of the list. A null text from getGroupName() of a subclass counts as "", which every entry
    /// contains. The search for an entry is bounded: after the first 200 or more it is its own value.
    QString getGroupValue(int index) override;
    int getRecordTypeIndex(QString value) override; ///< of the last record of this type, from 0; -1 if there is none
    int getRecordTypeStart() override;              ///< column of the record type, from 1
    int getRecordTypeSize() override;               ///< width of the record type

    void openRead(QString fileName);
    void copyDataFromDictionary();
    int getRecordTypeIndex() const; ///< of the first record of the current record type; -1 if there is none
    // Both copy a code of the field's item into the field; nothing is done for another importer's field.
    void getNotApplicable(TGenericField *field) const;
    void getVarMissingValue(TGenericField *field) const;

private:
    // A form of dictionary supplies these.
    virtual CSProDictionary *currentDictionary() const = 0; ///< the one read last; null before the first reading
    virtual void readNewDictionary(QString fileName) = 0;   ///< replaces the dictionary; the former one stays alive
    virtual TCSProFieldBase *newField(TCSProItem *item) = 0;
    virtual const TCSProItem *itemOf(TGenericField *field) const = 0; ///< null for a field of another class

    void listGroups();
    void reportLayout();
    QString StringOfChar(char c, int count) const; ///< "" for no copy or fewer

    QStringList *groupList = nullptr; ///< one entry "name=type" for each record; kept
    bool layoutPending = false;       ///< true until the first read; nothing reads it
    int recordTypeStart = 0;
    int recordTypeLen = 0;
    QString currentRecordType;      ///< the type that getRecordTypeIndex() looks for; nothing sets it
    int number1 = 0;                ///< carried
    QString text1;                  ///< carried
    int openState = 0;              ///< 1 once opened; nothing reads it
    void *pointer1 = nullptr;       ///< carried
    void *pointer2 = nullptr;       ///< carried
    QString text2;                  ///< carried
    bool isOutsideOfGroups = false; ///< whether getGroupName() was last asked outside of the list
};

#endif
