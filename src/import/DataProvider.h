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

/// What the tool holds of one data source: id, type, file names, source fields and a record tree.
///
/// It reads no file itself: an importer reads, and genericGetFieldsFrom() takes over the importer's answers. The road:
/// create the importer with the file's path, call its selectLayoutSource(), hand it to genericGetFieldsFrom(), read the
/// fields through getField() and getFieldFromRecord().
///
/// A provider owns nothing: source fields, their list, record tree and importer outlive it, until releaseContents()
/// gives back what it has made. Copies share all of these. Everything runs on the caller's thread; nothing is locked.
class MODEL_VANADMIN_EXPORT TVpDataProvider
{
public:
    /// Its texts are empty and not null; two of those that are carried for callers are null.
    TVpDataProvider();
    TVpDataProvider(const TVpDataProvider &other);
    TVpDataProvider &operator=(const TVpDataProvider &other);
    /// Takes nothing from its argument: texts null, numbers 0, pointers null.
    TVpDataProvider(TVpDataProvider &&other);
    virtual ~TVpDataProvider();

    /// Takes over what \a importer answers: id, type (if the provider knows it), source fields, position of the record
    /// type and file names; makes a new record tree. Always true; false and nothing done for a null importer.
    ///
    /// It does not open the importer: one that was never opened gives an empty list. A second call replaces list and
    /// tree; the old list object goes unless a copy of this provider shares it, its source fields and the old tree stay
    /// alive. What the importer throws reaches the caller.
    bool genericGetFieldsFrom(TDataImport *importer);
    /// Whether a data file name is known. Opens nothing; resets the number of the current data
    /// record, which is one for the process.
    bool openDataProvider();
    bool closeDataProvider(); ///< does nothing; false
    /// Frees everything that this provider has made in all its fillings, and its copies with it: source fields with
    /// their type names, their lists, the record trees' roots, the lists of type names. The importer stays.
    ///
    /// To be called once nobody uses any of these any more, nor a copy of a source field or of a root, which shares its
    /// lists; a caller who frees them itself must not call it. It may be called before or after the importer gives back
    /// its own contents. The provider then has no fields and no record tree, keeps its texts and numbers, and can be
    /// filled again. A copy of it may from then on be destroyed or assigned to; giving back its contents too, which
    /// frees nothing again, makes it usable. A provider that was assigned to still frees what it had made before,
    /// unless a copy of its does, and its source is a copy of it from then on. Nodes that a caller has put below a root
    /// stay the caller's.
    void releaseContents();

    TDataImport *getImportData() const;
    void setImportData(TDataImport *value);

    /// The source fields in file order, or null before the first genericGetFieldsFrom(). The next one ends the list,
    /// unless a copy of this provider shares it.
    const QList<TVpSourceField *> *getFields() const;
    /// The first field of exactly this name, or null.
    TVpSourceField *getField(QString name) const;
    /// The first field of exactly this name whose group is empty or equals \a recordName without regard to case, or
    /// null.
    TVpSourceField *getFieldFromRecord(QString name, QString recordName) const;
    QString getFieldName(QString name) const; ///< the name of getField(), "" if there is none
    /// Asks the format registry for the importer of this provider's type and looks up one name, then the other, in it.
    ///
    /// There is no registry, so this throws a `VpErrorManager *` with code 106 whatever the arguments.
    TGenericField *findField(QString name1, QString name2);
    /// The record of that name in the tree (see `TVpRecord::retrieveRecord`), or null.
    TVpRecord *getRecord(QString name) const;

    QString getDataFileName() const;
    void setDataFileName(QString value);
    QString getLayoutFileName() const;
    void setLayoutFileName(QString value);
    QString getDataProviderId() const;
    void setDataProviderId(QString value);
    QString getDataProviderType() const;
    /// Takes over \a type and its position among "NONE", "CSPRO" and "CSV". Any other text, and "NONE", change nothing,
    /// so the provider of a "CSPRO8", "STATA" or "SPSS" importer keeps its former type.
    void setDataProviderType(QString type);
    int getRecordTypeStart() const; ///< column of the record type as the source states it; CSPro counts from 1
    int getRecordTypeSize() const;  ///< its width in characters
    /// The record type in the current line; "" if the line is empty or too short.
    ///
    /// The test of the length counts the start from 1, the cut counts it from 0: a start of 1 reads from the second
    /// character.
    QString getRecordTypeValue() const;

private:
    friend struct TestAccess;

    QString getDataProviderLabel() const;
    void setDataProviderLabel(QString value);
    eDataProviderType getDataProviderTypeIndex() const;
    /// Sets `recordTypeValue` from the current line, and `currentRecordType` to the low byte of the number of the
    /// record in the tree that has this type, as a character; U+00FF if none has.
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

    // Members without a comment are carried and copied for callers; nothing here reads them.
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
    bool hasGivenBack = false; ///< there are no lists since releaseContents()
    int number5 = 3;
    int number6 = -1;
    QString text8;
    QStringList *recordTypeNames = nullptr; ///< second argument of the virtual `getDictionary`
    QStringList *typeNames = nullptr; ///< "NONE", "CSPRO", "CSV"
    std::shared_ptr<int> fieldsUse; ///< counts the providers that share `fields`
    ValuePointer<KeptObjects> kept; ///< what releaseContents() frees; shared by copies
    // clang-format on
};

#endif
