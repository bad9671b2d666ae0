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

/// The way by which every outside format enters: one subclass a format reads the layout of a file into a list of
/// fields.
///
/// What a format supplies, in the order of the calls that it receives:
/// 1. a constructor with a `QString` that hands the path on to `TDataImport(QString)` and calls initDataImport();
/// 2. getDataProviderId(): type text, "_" and source name; getDataProviderType(): the type text;
/// 3. openFile(): calls openDataImport(), sets `stateValue` to 1.0, reads the file `sourceName`, makes fields of
///    its own class with `this` as owner, fills them, hands each to addField() in file order and returns true;
/// 4. selectLayoutSource(), which may log a line of its own and must end in the base operation;
/// 5. isMultiple() and what follows it, as far as the format has records and groups.
///
/// An importer owns nothing: destroying or reopening it leaves the fields and their list alive, until releaseContents()
/// gives them back. Everything runs on the caller's thread; nothing is locked. Importers that are no copies of each
/// other share nothing, so they may be used in turn, and on different threads.
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

    // virtual operations, in slot order
    virtual ~TDataImport();
    virtual QString getDataProviderId() = 0;   ///< type text, "_", source name
    virtual QString getDataProviderType() = 0; ///< type text, such as "CSPRO"
    virtual bool openFile();                   ///< false; a format reads its file here and answers true
    /// Does nothing: the place where a format with a dictionary of its own fills \a target and the record type names.
    /// It makes its source fields with `new`, with lists of type names of their own, for this one call: the owner of
    /// \a target frees both.
    virtual void getDictionary(QList<TVpSourceField *> *target, QStringList *recordTypeNames);
    /// Opens the importer and hands back the names of its fields in order, in a new list that the caller owns. Logs
    /// "DataImport - selectLayoutSource".
    virtual QStringList *selectLayoutSource();
    virtual bool isMultiple();                     ///< whether records have types; false
    virtual int getGroupCount();                   ///< number of groups (record types); 0
    virtual QString getGroupName(int index);       ///< of the group at an index from 0; ""
    virtual QString getGroupValue(int index);      ///< of the group at an index from 0; ""
    virtual int getRecordTypeIndex(QString value); ///< index from 0 of a record type; -1
    virtual QString getRecordTypeCurrent();        ///< ""
    virtual QStringList *getLayoutSource();        ///< a new empty list, which the caller owns
    virtual int getRecordTypeStart();              ///< column of the record type as the source states it; 0
    virtual int getRecordTypeSize();               ///< its width in characters; 0
    /// Frees everything that this importer and its copies have made in all their openings: the fields handed to
    /// addField(), which must have been made with `new`, their list, and what a format of the library keeps besides. An
    /// importer that was assigned to still frees what it had made before, unless a copy of its does, and its source is
    /// a copy of it from then on.
    ///
    /// To be called once nobody uses any of these any more, nor a copy of a field, which points at what its field
    /// pointed at; a caller who frees fields itself must not call it. A provider filled from this importer points at
    /// nothing that goes. The importer then has no fields, as before its first opening, and can be opened again. A copy
    /// of it may from then on be destroyed or assigned to; giving back its contents too, which frees nothing again,
    /// makes it usable. A format that holds pointers of its own to any of this overrides the operation, forgets them,
    /// and ends in the base operation; so does one that must not give out numbers of its former opening.
    virtual void releaseContents();

    QString getSourceName() const;
    QString getDataSourceName() const;
    /// Takes the absolute path of \a name if such a file exists; otherwise the source name becomes "".
    void setSourceName(QString name);
    /// Takes the absolute path of \a name, unless no such file exists and one stands beside the source.
    ///
    /// The candidate beside the source is the source's folder directly followed by the file name, with no separator, so
    /// it is normally no existing path.
    void setDataSourceName(QString name);

    /// Appends one new source field to \a target for each field, in order; the owner of \a target owns them.
    ///
    /// A field of no type takes over the type text of the field before it. A `decimals` text that is no number gives 0.
    /// Logs five lines a field: "getDictionary FIELDS", "mySF->fieldName", "mySF->FieldType" and
    /// "mySF->DataProviderType" with their values, and three line feeds.
    void getDictionary(QList<TVpSourceField *> *target);
    /// The field added last under exactly this name, or null.
    TGenericField *fieldByName(QString name) const;
    void registerIOFormat(); ///< does nothing: formats are not registered

    /// Has readings from now on tell \a report where the layout is not what the file says; null, as in a new importer,
    /// tells nobody and costs nothing. Not owned: it must outlive the readings. Copies tell the same report.
    void setReadReport(ReadReport *newReport);
    ReadReport *getReadReport() const;

    /// The reason why the last opening could not read the file, as one line for a person, such as "cannot be read:
    /// Input/output error" or "not enough memory"; null where nothing went wrong, and before the first opening. A file
    /// whose contents are not understood has no such line: the report says what became of them.
    QString getReadProblem() const;

protected:
    friend struct TestAccess;

    /// Appends \a field, and makes it the one that its name finds; any number of times. The field stays the caller's
    /// until releaseContents() frees it, so only this importer and its copies may be handed it.
    void addField(TGenericField *field);
    /// The field at \a index from 0; null outside of the list.
    TGenericField *getField(int index) const;
    void initDataImport(); ///< asks getDataProviderType() and drops the answer
    /// Empties the list of fields, made where there is none, and the names; fields stay alive. Forgets the read
    /// problem.
    void openDataImport();
    bool closeDataImport(); ///< true

    QString baseText;                                ///< carried; never read
    QString sourceName;                              ///< the layout file, such as a dictionary
    qint64 state1 = 0;                               ///< carried; never read
    double stateValue = 0;                           ///< 1.0 once a format has opened; never read
    bool stateFlag1 = false;                         ///< carried; never read
    QList<TGenericField *> *fields = nullptr;        ///< in the order of addField(); kept; null once given back
    QString dataSourceName;                          ///< the data file
    qint64 state2 = 0;                               ///< carried; never read
    bool stateFlag2 = false;                         ///< carried; never read
    qint64 state3 = 0;                               ///< carried; never read
    std::map<QString, TGenericField *> fieldsByName; ///< the same fields by exact name
    bool stateFlag3 = false;                         ///< carried; never read
    QStringList stateList;                           ///< carried; never read
    ReadReport *report = nullptr;                    ///< hears of what is lost or changed; null for nobody
    QString readProblem;                             ///< see getReadProblem(); set by a format
    ValuePointer<KeptObjects> kept;                  ///< what releaseContents() frees; shared by copies
};

#endif
