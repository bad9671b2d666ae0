#ifndef CSPRO_CSPRODATAIMPORT_H
#define CSPRO_CSPRODATAIMPORT_H

#include "import/DataImport.h"
#include "model_vanadmin_export.h"

class TCSPro;
class TCSProItem;

/// Reads the layout of a CSPro text dictionary: one field for each item and occurrence, one group for each record.
///
/// It reads no data. Columns count from 1, lengths are in characters. A file that cannot be read gives an open importer
/// with no groups and no fields. Reading may ask about decimal codes (see `setDecimalAnswer`), so it must run on the
/// thread that may show widgets. A dictionary that cannot be read to its end ends in a thrown `VpErrorManager *` with
/// code 242.
///
/// The dictionary and the list of groups outlive the importer, as the fields do. Copies share all of them. Call the
/// operations through a `TDataImport` pointer or reference.
class MODEL_VANADMIN_EXPORT TCSProDataImport : public TDataImport
{
public:
    /// Keeps the path, unchanged; reads nothing yet. Logs "TCSProDataImport Constructor".
    explicit TCSProDataImport(QString fileName);
    /// Empty: no path and no list of groups.
    TCSProDataImport();
    TCSProDataImport(const TCSProDataImport &other);
    TCSProDataImport &operator=(const TCSProDataImport &other);
    /// Takes nothing from its argument: the same as the default constructor.
    TCSProDataImport(TCSProDataImport &&other);
    ~TCSProDataImport() override;

    int getGroupCount() override;    ///< number of records; the common record is not among them
    void releaseContents() override; ///< groups and dictionary included

protected:
    friend struct TestAccess;

    QString getDataProviderId() override;   ///< "CSPRO_" and the source name
    QString getDataProviderType() override; ///< "CSPRO"
    /// Reads the dictionary anew, leaving the former one alive. Always true.
    bool openFile() override;
    /// As the base, after the line "TCSProDataImport - selectLayoutSource" in the log.
    QStringList *selectLayoutSource() override;
    bool isMultiple() override;               ///< whether the record type has a width above 0
    QString getGroupName(int index) override; ///< "name=type", the whole entry; null outside of the list
    /// The first entry that contains the text of getGroupName(): the same whole entry, unless an earlier one holds it
    /// too. "" outside of the list. A null text from an heir's getGroupName() counts as "", which every entry contains.
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
    void renewDictionary();
    QString StringOfChar(char c, int count) const; ///< "" for no copy or fewer

    QStringList *groupList = nullptr; ///< one entry "name=type" for each record; kept
    bool layoutPending = false;       ///< true until the first read; nothing reads it
    int recordTypeStart = 0;
    int recordTypeLen = 0;
    TCSPro *dictionary = nullptr;   ///< kept: the fields point at its items
    QString currentRecordType;      ///< what getRecordTypeIndex() looks for; nothing sets it
    int number1 = 0;                ///< carried
    QString text1;                  ///< carried
    int openState = 0;              ///< 1 once opened; nothing reads it
    void *pointer1 = nullptr;       ///< carried
    void *pointer2 = nullptr;       ///< carried
    QString text2;                  ///< carried
    bool isOutsideOfGroups = false; ///< whether getGroupName() was last asked outside of the list
};

/// The field of a CSPro text dictionary. It points at its item without owning it.
class MODEL_VANADMIN_EXPORT TCSProVariable : public TGenericField
{
public:
    TCSProVariable(TDataImport *importer, TCSProItem *sourceItem);
    ~TCSProVariable() override;

    bool isMissing() override;       ///< unset, or the current text is the item's missing code
    bool isNotApplicable() override; ///< the current text is the item's not-applicable code
    bool isBlank() override;         ///< the current text is white space
    QString getGroup() override;     ///< name of the item's record where the dictionary has record types, else ""

    QString group;
    TCSProItem *item; ///< not owned; null counts as an item without codes

private:
    friend struct TestAccess;

    bool optionalAtStart; ///< carried
};

#endif
