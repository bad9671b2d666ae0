#ifndef IMPORT_DATAPROVIDER_H
#define IMPORT_DATAPROVIDER_H

#include "import/Constants.h"
#include "util/ValuePointer.h"
#include "model_vanadmin_export.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <utility>

class KeptObjects;
class TDataImport;
class TGenericField;
class TVpRecord;
class TVpSourceField;

/// Describes one data source: id, type, file names, source fields and a record tree.
///
/// It reads no file: an importer reads, and genericGetFieldsFrom() copies the importer's results. The data flow is:
/// create the importer with the path of the file, call its selectLayoutSource(), pass it to genericGetFieldsFrom(), and
/// get the fields from getField() and getFieldFromRecord().
///
/// A provider owns nothing: its source fields, their list, its record tree and its importer outlive it. Only
/// releaseContents() frees the objects that the provider has made. Copies share all of these. All calls are made on the
/// caller's thread; nothing is locked.
class MODEL_VANADMIN_EXPORT TVpDataProvider
{
public:
    /// All texts are empty and not null, except two of the texts that are carried for callers: those are null.
    TVpDataProvider();
    TVpDataProvider(const TVpDataProvider &other);
    TVpDataProvider &operator=(const TVpDataProvider &other);
    /// Takes nothing from its argument: all texts are null, numbers 0 and pointers null.
    TVpDataProvider(TVpDataProvider &&other);
    virtual ~TVpDataProvider();

    /// Copies the id, the type (if the provider knows it), the source fields, the position of the record type and the
    /// file names from \a importer. Makes a new record tree. Returns true; for a null importer does nothing and returns
    /// false.
    ///
    /// It does not open the importer: an importer that was never opened yields an empty list. A second call replaces
    /// the list and the tree. The old list object is freed unless a copy of this provider shares it; its source fields
    /// and the old tree stay alive. An exception from the importer reaches the caller.
    bool genericGetFieldsFrom(TDataImport *importer);
    /// Returns whether a data file name is known. Opens no file. Resets the number of the current data record, which is
    /// one number for the whole process.
    bool openDataProvider();
    bool closeDataProvider(); ///< does nothing and returns false
    /// Frees everything that this provider and its copies have made each time they were filled: source fields with
    /// their type names, their lists, the roots of the record trees, the lists of type names. The importer stays alive.
    ///
    /// Call it when none of these objects is used any more, nor a copy of a source field or of a root, which shares its
    /// lists. A caller who frees them itself must not call it. It may be called before or after the importer releases
    /// its own contents. Afterwards the provider has no fields and no record tree, keeps its texts and numbers, and can
    /// be filled again. A copy of it may only be destroyed or assigned to until its own contents are released, which
    /// frees nothing twice. A provider that was assigned to still frees the objects that it made before the assignment,
    /// unless one of its copies frees them. From then on the source of the assignment counts as a copy of it. Nodes
    /// that a caller has put below a root stay the caller's.
    void releaseContents();

    TDataImport *getImportData() const;
    void setImportData(TDataImport *value);

    /// Returns the source fields in file order, or null before the first genericGetFieldsFrom(). The next call of
    /// genericGetFieldsFrom() frees the list, unless a copy of this provider shares it.
    const QList<TVpSourceField *> *getFields() const;
    /// Returns the first field of exactly this name, or null.
    TVpSourceField *getField(QString name) const;
    /// Returns the first field of exactly this name whose group is empty or equals \a recordName, regardless of case.
    /// Null if there is none.
    TVpSourceField *getFieldFromRecord(QString name, QString recordName) const;
    QString getFieldName(QString name) const; ///< the name of the field that getField() returns; "" for null
    /// Looks up \a name1, then \a name2, in the importer that the format registry has for this provider's type.
    ///
    /// There is no registry, so this throws a `VpErrorManager *` with code 106 for all arguments.
    TGenericField *findField(QString name1, QString name2);
    /// Returns the record of that name in the tree (see `TVpRecord::retrieveRecord`), or null.
    TVpRecord *getRecord(QString name) const;

    QString getDataFileName() const;
    void setDataFileName(QString value);
    QString getLayoutFileName() const;
    void setLayoutFileName(QString value);
    QString getDataProviderId() const;
    void setDataProviderId(QString value);
    QString getDataProviderType() const;
    /// Sets the type to \a type, and its index to the position among "NONE", "CSPRO" and "CSV". "NONE" and all other
    /// texts change nothing, so the provider of a "CSPRO8", "STATA" or "SPSS" importer keeps its former type.
    void setDataProviderType(QString type);
    int getRecordTypeStart() const; ///< column of the record type as the source states it; CSPro counts from 1
    int getRecordTypeSize() const;  ///< its width in characters
    /// Returns the record type in the current line; "" if the line is empty or too short.
    ///
    /// The test of the length uses the start as 1-based, and the cut uses it as 0-based, so a start of 1 reads from the
    /// second character. This is intended.
    QString getRecordTypeValue() const;

private:
    friend struct TestAccess;

    QString getDataProviderLabel() const;
    void setDataProviderLabel(QString value);
    eDataProviderType getDataProviderTypeIndex() const;
    /// Sets `recordTypeValue` from the current line. Sets `currentRecordType` to one character: the low byte of the
    /// number of the first record in the tree that has this type, or U+00FF if there is none.
    void getRecordType();
    QStringList *getRecordTypeList() const;
    int getRecordTypes() const;
    void setRecordTypes(int value); ///< does nothing
    int getReferences() const;
    void setReferences(int value);
    void setRecordTypeStart(int value);
    void setRecordTypeSize(int value);

    void renewFields();
    void takeFieldsOf(TDataImport &importer);
    void renewRecord();
    void makeLists();

    // Members without a comment are carried and copied for callers; this class does not read them.
    // clang-format off
    TDataImport *importData = nullptr; ///< the importer, not owned
    int counter = 0;
    QString recordTypeValue; ///< written by getRecordType()
    QString text1;
    qint64 pointer1 = 0;
    QString currentLine; ///< the line from which the record type is cut
    QString currentRecordType; ///< one character, written by getRecordType()
    bool flag1 = false;
    int number1 = 0;
    QString text2;
    int number2 = 0;
    QString text3;
    struct Block1 { qint64 words[2]; int number; bool flag; } block1 = {};
    QString fallbackFileName; ///< second choice of openDataProvider()
    QString text4;
    TVpRecord *record = nullptr; ///< root of the record tree, not owned
    QList<TVpSourceField *> *fields = nullptr; ///< the source fields, not owned
    QString dataProviderId;
    QString dataProviderLabel;
    eDataProviderType dataProviderTypeIndex = dpNone; ///< position of the type text
    QString dataProviderType; ///< the type text
    int recordTypeStart = 0; ///< column as the source states it; used as an index from 0
    int recordTypeSize = 0; ///< width of the record type
    QString layoutFileName;
    QString dataFileName;
    QString text5;
    QString text6;
    int recordTypes = 0;
    int number3 = 0;
    int number4 = 0;
    bool flag2 = false;
    bool flag3 = false;
    QString text7;
    int numbers1[6] = {}; ///< the fifth is `references`
    bool flag4 = false;
    int numbers2[7] = {};
    std::pair<int, int> table1[256] = {};
    QStringList *recordTypeList = nullptr;
    qint64 block2[5] = {};
    bool flag5 = false;
    bool flag6 = false;
    bool isReleased = false; ///< whether there are no lists, since releaseContents() freed them
    int number5 = 3;
    int number6 = -1;
    QString text8;
    QStringList *recordTypeNames = nullptr; ///< second argument of the virtual `getDictionary`
    QStringList *typeNames = nullptr; ///< "NONE", "CSPRO", "CSV"
    std::shared_ptr<int> fieldsUse; ///< counts the providers that share `fields`
    ValuePointer<KeptObjects> kept; ///< the objects that releaseContents() frees; shared by copies
    // clang-format on
};

#endif
