#ifndef CSPRO_CSPROIMPORTBASE_H
#define CSPRO_CSPROIMPORTBASE_H

#include "import/DataImport.h"
#include "model_vanadmin_export.h"

class CSProDictionary;
class TCSProItem;

/// Base class of the fields of both CSPro dictionary forms. A field points to its item without owning it. It is used by
/// the thread that uses its importer.
class MODEL_VANADMIN_EXPORT TCSProFieldBase : public TGenericField
{
public:
    ~TCSProFieldBase() override;

    bool isMissing() override;       ///< whether it is unset, or its current text is the item's missing code
    bool isNotApplicable() override; ///< whether the current text is the item's not-applicable code
    bool isBlank() override;         ///< whether the current text is white space
    QString getGroup() override;     ///< name of the item's record if the dictionary has record types, else ""

    QString group;
    TCSProItem *item; ///< not owned; null counts as an item without codes

protected:
    TCSProFieldBase(TDataImport *importer, TCSProItem *sourceItem);

private:
    friend struct TestAccess;

    bool optionalAtStart; ///< carried; never read
};

/// Base class of the importers of both CSPro dictionary forms, `TCSProDataImport` and `TCSProJsonDataImport`: one field
/// for each item and occurrence, one group for each record. A subclass supplies the reader of its form and its class of
/// fields.
///
/// The dictionary, the list of groups and the fields outlive the importer; releaseContents() frees them. Copies share
/// all of them. Call the operations through a `TDataImport` pointer or reference.
class MODEL_VANADMIN_EXPORT TCSProImportBase : public TDataImport
{
public:
    ~TCSProImportBase() override;

    int getGroupCount() override;    ///< number of records; the common record is not among them
    void releaseContents() override; ///< frees the list of groups too

protected:
    friend struct TestAccess;

    /// Keeps the path, unchanged; reads nothing yet.
    explicit TCSProImportBase(QString fileName);
    /// Makes an empty importer: no path and no list of groups.
    TCSProImportBase();
    TCSProImportBase(const TCSProImportBase &other);
    TCSProImportBase &operator=(const TCSProImportBase &other);

    /// Reads the dictionary anew and leaves the former one alive. Always returns true.
    bool openFile() override;
    bool isMultiple() override;               ///< whether the record type has a width above 0
    QString getGroupName(int index) override; ///< "name=type", the whole entry; null outside of the list
    /// Returns the first entry that contains the text of getGroupName(). This is the same whole entry, unless an
    /// earlier one contains it too. Returns "" outside of the list. A null text from getGroupName() of a subclass
    /// counts as "", which every entry contains. The search for an entry ends at a limit, which lists of up to 3,000
    /// names of 40 characters never reach; the result is then the entry itself.
    QString getGroupValue(int index) override;
    int getRecordTypeIndex(QString value) override; ///< 0-based index of the last record of this type, or -1
    int getRecordTypeStart() override;              ///< column of the record type, from 1
    int getRecordTypeSize() override;               ///< width of the record type

    void openRead(QString fileName);
    void copyDataFromDictionary();
    /// Returns the 0-based index of the first record of the current record type; -1 if there is none.
    int getRecordTypeIndex() const;
    // Both copy a code of the field's item into the field. They do nothing for another importer's field.
    void getNotApplicable(TGenericField *field) const;
    void getVarMissingValue(TGenericField *field) const;

private:
    // The subclass for a form of dictionary supplies these operations.
    virtual CSProDictionary *currentDictionary() const = 0; ///< the dictionary read last; null before the first reading
    virtual void readNewDictionary(QString fileName) = 0;   ///< reads into a new dictionary; the former one stays alive
    virtual TCSProFieldBase *newField(TCSProItem *item) = 0;
    virtual const TCSProItem *itemOf(TGenericField *field) const = 0; ///< null for a field of another class

    void listGroups();
    void reportLayout();
    QString StringOfChar(char c, int count) const; ///< "" if \a count is 0 or less

    QStringList *groupList = nullptr; ///< one entry "name=type" for each record; kept until releaseContents()
    bool layoutPending = false;       ///< true until the first read; nothing reads it
    int recordTypeStart = 0;
    int recordTypeLen = 0;
    QString currentRecordType;      ///< the type that getRecordTypeIndex() looks for; nothing sets it
    int number1 = 0;                ///< carried; never read
    QString text1;                  ///< carried; never read
    int openState = 0;              ///< 1 once opened; nothing reads it
    void *pointer1 = nullptr;       ///< carried; never read
    void *pointer2 = nullptr;       ///< carried; never read
    QString text2;                  ///< carried; never read
    bool isOutsideOfGroups = false; ///< whether the index of the last getGroupName() was outside of the list
};

#endif
