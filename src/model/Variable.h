#ifndef MODEL_VARIABLE_H
#define MODEL_VARIABLE_H

#include "model_vanadmin_export.h"

#include <QList>
#include <QString>

class MetadataVariables;
class TVpEntity;

// clang-format off
/// A range of values, both bounds included.
///
/// Different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT Range
{
public:
    Range();
    Range(const Range &other) = default;
    Range &operator=(const Range &other) = default;
    /// Takes nothing from its argument: a default object.
    Range(Range &&other);
    ~Range() = default;

    double getRangeMin() const;  void setRangeMin(double newValue);
    double getRangeMax() const;  void setRangeMax(double newValue);

private:
    friend struct TestAccess;

    double rangeMin = 0;
    double rangeMax = 0;
};

/// A value of a variable with its label.
///
/// Different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT ValueLabelElement
{
public:
    ValueLabelElement();
    ValueLabelElement(const ValueLabelElement &other);
    ValueLabelElement &operator=(const ValueLabelElement &other);
    /// Takes nothing from its argument: a default object.
    ValueLabelElement(ValueLabelElement &&other);
    ~ValueLabelElement();

    QString getValue() const;  void setValue(QString newValue);
    QString getLabel() const;  void setLabel(const QString &newValue);

private:
    friend struct TestAccess;

    QString value; ///< text, not a number
    QString label;
};

/// The source of the value of a variable.
///
/// Different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT VarWipChoice
{
public:
    VarWipChoice();
    VarWipChoice(const VarWipChoice &other);
    VarWipChoice &operator=(const VarWipChoice &other);
    /// Takes nothing from its argument: a default object.
    VarWipChoice(VarWipChoice &&other);
    ~VarWipChoice();

    QString getRecType() const;       void setRecType(const QString &newValue);
    QString getField() const;         void setField(const QString &newValue);
    QString getDataProvider() const;  void setDataProvider(const QString &newValue);
    int getStart() const;             void setStart(int newValue);
    QString getFormat() const;        void setFormat(const QString &newValue);

private:
    friend struct TestAccess;

    QString recType;
    QString field;
    QString dataProvider;
    int start = 0;
    QString format;
};

/// One variable of an entity, as the calling application describes it.
///
/// The library only stores it. Lists, their entries, and `metadataVariables` belong to the caller; the destructor frees
/// none of them. Each `setQStr` operation does the same as the setter next to it, and getTvpMissing() the same as
/// getMissing(). The `add` operations append one entry; they make the list if there is none.
///
/// Different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT TVpVariable
{
public:
    /// Has new empty lists and new metadata.
    TVpVariable();
    /// Copies share the lists and the metadata.
    TVpVariable(const TVpVariable &other);
    TVpVariable &operator=(const TVpVariable &other);
    /// Takes nothing from its argument: the defaults, no metadata, and no list until something is appended.
    TVpVariable(TVpVariable &&other);
    ~TVpVariable();

    // place in the hierarchy
    QString getEntity() const;                                     void setEntity(const QString &newValue); void setQStrEntity(const QString &newValue);
    TVpEntity *getParent() const;                                  void setParent(TVpEntity *newValue);
    QString getPath() const;                                       void setPath(const QString &newValue); void setQStrPath(const QString &newValue);
    QString getStorage() const;                                    void setStorage(const QString &newValue); void setQStrStorage(const QString &newValue);
    QString getFullName() const;                                   void setFullName(const QString &newValue); void setQStrFullName(const QString &newValue);
    // names and labels
    QString getName() const;                                       void setName(const QString &newValue); void setQStrName(const QString &newValue);
    QString getAlias() const;                                      void setAlias(const QString &newValue); void setQStrAlias(const QString &newValue);
    QString getLabel() const;                                      void setLabel(const QString &newValue); void setQStrLabel(const QString &newValue);
    QString getGroup() const;                                      void setGroup(const QString &newValue); void setQStrGroup(const QString &newValue);
    QString getVarType() const;                                    void setVarType(const QString &newValue); void setQStrVarType(const QString &newValue);
    QString getDocumentation() const;                              void setDocumentation(const QString &newValue); void setQStrDocumentation(const QString &newValue);
    // place in the source
    QString getRecType() const;                                    void setRecType(const QString &newValue); void setQStrRecType(const QString &newValue);
    QString getField() const;                                      void setField(const QString &newValue); void setQStrField(const QString &newValue);
    int getStart() const;                                          void setStart(int newValue);
    QString getDataProvider() const;                               void setDataProvider(const QString &newValue); void setQStrDataProvider(const QString &newValue);
    int getTag() const;                                            void setTag(int newValue);
    int getNotappl() const;                                        void setNotappl(int newValue);
    int getMissing() const; int getTvpMissing() const;             void setMissing(int newValue);
    int getDecimals() const;                                       void setDecimals(int newValue);
    int getSize() const;                                           void setSize(int newValue);
    int getFieldSize() const;                                      void setFieldSize(int newValue);
    int getFieldRelativePosition() const;                          void setFieldRelativePosition(int newValue);
    QString getDatasetID() const;                                  void setDatasetID(const QString &newValue); void setQStrDatasetID(const QString &newValue);
    QString getFileName() const;                                   void setFileName(const QString &newValue); void setQStrFileName(const QString &newValue);
    // values
    QList<Range *> *getRange() const;                              void setRange(QList<Range *> *newValue); void addItemRange(Range *added);
    QList<ValueLabelElement *> *getValueLabelElementList() const;  void setValueLabelElementList(QList<ValueLabelElement *> *newValue); void addValueLabelElement(ValueLabelElement *added);
    VarWipChoice getVarWipChoice() const;                          void setVarWipChoice(const VarWipChoice &newValue);
    MetadataVariables *getMetadataVariables() const;               void setMetadataVariables(MetadataVariables *newValue);
    int getLevel() const;                                          void setLevel(int newValue);
    int getChecked() const;                                        void setChecked(int newValue);
    bool getLocal() const;                                         void setLocal(bool newValue);
    bool getConsistency() const;                                   void setConsistency(bool newValue);

private:
    friend struct TestAccess;

    QString entity;                                              ///< name of the owning entity
    TVpEntity *parent = nullptr;                                 ///< null until set; not owned
    QString path;
    QString storage;
    QString fullName;
    QString name;
    QString alias;
    QString label;
    QString group;
    QString varType;
    QString documentation;
    QString recType;
    QString field;
    int start = 0;
    QString dataProvider;
    int tag = 0;
    int notappl = 0;                                             ///< code that stands for not applicable
    int missing = 0;                                             ///< code that stands for missing
    int decimals = 0;
    int size = 0;
    int fieldSize = 0;
    int fieldRelativePosition = 0;
    QString datasetID;
    QString fileName;
    QList<Range *> *range = nullptr;                             ///< not released
    QList<ValueLabelElement *> *valueLabelElementList = nullptr; ///< not released
    VarWipChoice varWipChoice;
    MetadataVariables *metadataVariables = nullptr;              ///< not released
    int level = 1;
    bool checked = false;                                        ///< a number other than 0 sets it; read as 0 or 1
    bool local = false;
    bool consistency = false;
};
// clang-format on

#endif
