#ifndef IMPORT_DATAIMPORT_H
#define IMPORT_DATAIMPORT_H

#include "import/GenericField.h"
#include "util/ValuePointer.h"
#include "model_vanadmin_export.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <map>

class KeptObjects;
class ReadReport;
class TVpSourceField;

/// Base class of all importers. A subclass reads the layout of one file format into a list of fields.
///
/// A subclass supplies, in the order of the calls that it receives:
/// 1. a constructor with a `QString` that passes the path to `TDataImport(QString)` and calls initDataImport();
/// 2. getDataProviderId(): type text, "_" and source name; getDataProviderType(): the type text;
/// 3. openFile(): calls openDataImport(), sets `stateValue` to 1.0, reads the file `sourceName`, makes fields of
///    its own class with `this` as owner, fills them, passes each to addField() in file order and returns true;
/// 4. selectLayoutSource(), which may log its own line and must end with a call of the base operation;
/// 5. isMultiple() and the operations after it, if the format has records and groups.
///
/// An importer owns nothing: destroying or reopening it leaves the fields and their list alive. Only releaseContents()
/// frees them. All calls are made on the caller's thread; nothing is locked. Importers that are not copies of each
/// other share nothing, so they may be used on different threads.
class MODEL_VANADMIN_EXPORT TDataImport
{
public:
    TDataImport();
    /// Keeps \a name, unchanged, as the source name; no file is opened.
    explicit TDataImport(QString name);
    /// Copies share the list of fields and the fields themselves: reopening one empties the other.
    TDataImport(const TDataImport &other);
    TDataImport &operator=(const TDataImport &other);
    /// Takes nothing from its argument: an empty importer, without a list of fields until it is opened or one is added.
    TDataImport(TDataImport &&other);

    // Virtual operations, in slot order. The comments state the results of the base class.
    virtual ~TDataImport();
    virtual QString getDataProviderId() = 0;   ///< type text, "_", source name
    virtual QString getDataProviderType() = 0; ///< type text, such as "CSPRO"
    virtual bool openFile();                   ///< false; a format reads its file here and returns true
    /// Does nothing. A format that has its own dictionary fills \a target and the record type names here. It makes the
    /// source fields, and a list of type names for each, with `new` in every call: the owner of \a target frees both.
    virtual void getDictionary(QList<TVpSourceField *> *target, QStringList *recordTypeNames);
    /// Opens the importer and returns the names of its fields in order, in a new list that the caller owns. Logs
    /// "DataImport - selectLayoutSource".
    virtual QStringList *selectLayoutSource();
    virtual bool isMultiple();                     ///< whether records have types; false
    virtual int getGroupCount();                   ///< number of groups (record types); 0
    virtual QString getGroupName(int index);       ///< name of the group at a 0-based index; ""
    virtual QString getGroupValue(int index);      ///< value of the group at a 0-based index; ""
    virtual int getRecordTypeIndex(QString value); ///< 0-based index of a record type; -1
    virtual QString getRecordTypeCurrent();        ///< current record type; ""
    virtual QStringList *getLayoutSource();        ///< a new list that the caller owns; empty
    virtual int getRecordTypeStart();              ///< column of the record type as the source states it; 0
    virtual int getRecordTypeSize();               ///< its width in characters; 0
    /// Frees everything that this importer and its copies have made in all their openings: the fields passed to
    /// addField(), which must have been made with `new`, their list, and any further objects that a format of the
    /// library keeps. An importer that was assigned to still frees the objects that it made before the assignment,
    /// unless one of its copies frees them. From then on the source of the assignment counts as a copy of it.
    ///
    /// Call it when none of these objects is used any more, nor a copy of a field, which points to the same objects as
    /// the field. A caller who frees fields itself must not call it. A provider that was filled from this importer
    /// points to none of the freed objects. Afterwards the importer has no fields, as before its first opening, and can
    /// be opened again. A copy of it may only be destroyed or assigned to until its own contents are released, which
    /// frees nothing twice. A format that holds further pointers to these objects, or numbers of its last opening,
    /// overrides the operation, resets them, and ends with a call of the base operation.
    virtual void releaseContents();

    QString getSourceName() const;
    QString getDataSourceName() const;
    /// Takes the absolute path of \a name if such a file exists; otherwise the source name becomes "".
    void setSourceName(QString name);
    /// Takes the absolute path of \a name if such a file exists. Otherwise takes the path next to the source if that
    /// exists, and the absolute path of \a name if it does not.
    ///
    /// The path next to the source is the directory of the source directly followed by the file name, without a
    /// separator. It normally does not exist. This is intended.
    void setDataSourceName(QString name);

    /// Appends one new source field to \a target for each field, in order; the owner of \a target owns them.
    ///
    /// A field without a type takes the type text of the field before it. A `decimals` text that is not a number counts
    /// as 0. Logs five lines for each field: "getDictionary FIELDS", "mySF->fieldName", "mySF->FieldType" and
    /// "mySF->DataProviderType" with their values, and three line feeds.
    void getDictionary(QList<TVpSourceField *> *target);
    /// Returns the field that was added last under exactly this name, or null.
    TGenericField *fieldByName(QString name) const;
    void registerIOFormat(); ///< does nothing: formats are not registered

    /// Makes later readings report each place where the layout differs from the file to \a newReport. It is not owned
    /// and must outlive the readings; copies of this importer report to it too. Null, as in a new importer, turns
    /// reporting off; readings then take no time for it.
    void setReadReport(ReadReport *newReport);
    ReadReport *getReadReport() const;

    /// Returns the reason why the last opening could not read the file, as one line for a person, for example "cannot
    /// be read: Input/output error" or "not enough memory". Null if the file could be read, and before the first
    /// opening. A file whose contents are not understood has no such line: the report describes them.
    QString getReadProblem() const;

protected:
    friend struct TestAccess;

    /// Appends \a field, which may be added any number of times. A search by its name finds it from then on. Only this
    /// importer and its copies may be given the field, since releaseContents() frees it.
    void addField(TGenericField *field);
    /// Returns the field at a 0-based index; null outside the list.
    TGenericField *getField(int index) const;
    void initDataImport(); ///< calls getDataProviderType() and ignores the result
    /// Empties the list of fields and their names, and makes the list if there is none. The fields stay alive. Resets
    /// the read problem.
    void openDataImport();
    bool closeDataImport(); ///< returns true

    QString baseText;                                ///< carried; never read
    QString sourceName;                              ///< the layout file, such as a dictionary
    qint64 state1 = 0;                               ///< carried; never read
    double stateValue = 0;                           ///< 1.0 once a format has opened; never read
    bool stateFlag1 = false;                         ///< carried; never read
    QList<TGenericField *> *fields = nullptr;        ///< in the order of addField(); kept; null once released
    QString dataSourceName;                          ///< the data file
    qint64 state2 = 0;                               ///< carried; never read
    bool stateFlag2 = false;                         ///< carried; never read
    qint64 state3 = 0;                               ///< carried; never read
    std::map<QString, TGenericField *> fieldsByName; ///< the same fields by exact name
    bool stateFlag3 = false;                         ///< carried; never read
    QStringList stateList;                           ///< carried; never read
    ReadReport *report = nullptr;                    ///< see setReadReport(); not owned
    QString readProblem;                             ///< see getReadProblem(); set by a format
    ValuePointer<KeptObjects> kept;                  ///< the objects that releaseContents() frees; shared by copies
};

#endif
