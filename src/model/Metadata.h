#ifndef MODEL_METADATA_H
#define MODEL_METADATA_H

#include "model_vanadmin_export.h"

#include <QList>
#include <QString>
#include <QStringList>

class Datasource;
class LookupDictionary;
class MetadataDataSource;
class MetadataDictionary;
class Range;
class TVpEntity;

// Records that describe where the data of a dictionary comes from. The library only holds them.

// clang-format off
/// Names one lookup file.
///
/// Different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT LookupDictionary
{
public:
    LookupDictionary();
    LookupDictionary(const LookupDictionary &other);
    LookupDictionary &operator=(const LookupDictionary &other);
    /// Takes nothing from its argument: a default object.
    LookupDictionary(LookupDictionary &&other);
    ~LookupDictionary();

    QString getName() const;       void setName(const QString &newValue);
    QString getLabel() const;      void setLabel(const QString &newValue);
    QString getFile() const;       void setFile(const QString &newValue);
    QString getSeparator() const;  void setSeparator(const QString &newValue);

private:
    friend struct TestAccess;

    QString name;
    QString label;
    QString file; ///< read as set
    QString separator;
};

/// Settings for reading delimited text. Fields are stored without a check for duplicates.
///
/// Different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT MetadataDataSource
{
public:
    MetadataDataSource();
    MetadataDataSource(const MetadataDataSource &other);
    MetadataDataSource &operator=(const MetadataDataSource &other);
    /// Takes nothing from its argument: a default object.
    MetadataDataSource(MetadataDataSource &&other);
    ~MetadataDataSource();

    bool getCsvHasHeader() const;      void setCsvHasHeader(bool newValue);
    QString getCsvSeparator() const;   void setCsvSeparator(QString newValue);
    QStringList getCsvFields() const;  void setCsvFields(const QStringList &newValue); void addCsvFields(QString &added);

private:
    friend struct TestAccess;

    bool csvHasHeader = false;
    QString csvSeparator;
    QStringList csvFields;
};

/// Source of the data. `getFile` returns native separators; the text is stored as it was set.
///
/// Different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT Datasource
{
public:
    /// Has new metadata.
    Datasource();
    /// Copies share the metadata.
    Datasource(const Datasource &other);
    Datasource &operator=(const Datasource &other);
    /// Takes nothing from its argument: no texts, and a null pointer.
    Datasource(Datasource &&other);
    ~Datasource();

    QString getType() const;                            void setType(const QString &newValue);
    QString getFile() const;                            void setFile(const QString &newValue);
    MetadataDataSource *getMetadataDataSource() const;  void setMetadataDataSource(MetadataDataSource *newValue);

private:
    friend struct TestAccess;

    QString type;
    QString file;                                     ///< as set; read in native separators
    MetadataDataSource *metadataDataSource = nullptr; ///< not released
};

/// Position of a variable in its source. The list belongs to the caller.
///
/// Different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT MetadataVariables
{
public:
    /// Has a new empty list of ranges.
    MetadataVariables();
    /// Copies share the list.
    MetadataVariables(const MetadataVariables &other);
    MetadataVariables &operator=(const MetadataVariables &other);
    /// Takes nothing from its argument: the defaults, and no list until something is appended.
    MetadataVariables(MetadataVariables &&other);
    ~MetadataVariables();

    QString getRecord() const;         void setRecord(const QString &newValue);
    QString getField() const;          void setField(const QString &newValue);
    int getStart() const;              void setStart(int newValue);
    int getLength() const;             void setLength(int newValue);
    bool getLookup() const;            void setLookup(bool newValue);
    QList<Range *> *getRange() const;  void setRange(QList<Range *> *newValue); void addItemRange(Range *added);

private:
    friend struct TestAccess;

    QString record;
    QString field;
    int start = 0;                   ///< 0 until set
    int length = 0;                  ///< 0 until set
    bool lookup = false;
    QList<Range *> *range = nullptr; ///< not released
};

/// The data source and the lookup files of a dictionary. The objects that the members point to belong to the caller.
///
/// Different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT MetadataDictionary
{
public:
    /// Has a new data source and a new empty list.
    MetadataDictionary();
    /// Copies share the objects that the members point to.
    MetadataDictionary(const MetadataDictionary &other);
    MetadataDictionary &operator=(const MetadataDictionary &other);
    /// Takes nothing from its argument: null pointers, and no list until something is appended.
    MetadataDictionary(MetadataDictionary &&other);

    Datasource *getDatasource() const;             void setDatasource(Datasource *newValue);
    QList<LookupDictionary *> *getLookUp() const;  void setLookUp(QList<LookupDictionary *> *newValue); void addLookUp(LookupDictionary *added);

private:
    friend struct TestAccess;

    Datasource *datasource = nullptr;            ///< not released
    QList<LookupDictionary *> *lookUp = nullptr; ///< not released
};

/// A root entity and the source of its data. The objects that the members point to belong to the caller.
///
/// Different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT Dictionary
{
public:
    /// Has a new root and new metadata.
    Dictionary();
    /// Copies share the objects that the members point to.
    Dictionary(const Dictionary &other);
    Dictionary &operator=(const Dictionary &other);
    /// Takes nothing from its argument: null pointers.
    Dictionary(Dictionary &&other);

    TVpEntity *getRoot() const;                         void setRoot(TVpEntity *newValue);
    MetadataDictionary *getMetadataDictionary() const;  void setMetadataDictionary(MetadataDictionary *newValue);

private:
    friend struct TestAccess;

    TVpEntity *root = nullptr;                        ///< not released
    MetadataDictionary *metadataDictionary = nullptr; ///< not released
};
// clang-format on

#endif
