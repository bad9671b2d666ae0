#ifndef MODEL_CONFIG_H
#define MODEL_CONFIG_H

#include "model_vanadmin_export.h"

#include <QList>
#include <QString>

class ConfigDb;
class ConfigEntities;
class ConfigOptions;
class TVpEntity;

// Records that the calling application fills for one run. The library only holds them.

// clang-format off
/// Settings of the database that is generated.
///
/// `getFolder` and `getSourceFile` return native separators; the texts are stored as they were set.
///
/// Different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT ConfigDb
{
public:
    ConfigDb();
    ConfigDb(const ConfigDb &other);
    ConfigDb &operator=(const ConfigDb &other);
    /// Takes nothing from its argument: a default object.
    ConfigDb(ConfigDb &&other);
    ~ConfigDb();

    QString getName() const;                 void setName(const QString &newValue);
    QString getFolder() const;               void setFolder(const QString &newValue);
    QString getSourceFile() const;           void setSourceFile(const QString &newValue);
    QString getLabel() const;                void setLabel(const QString &newValue);
    QString getAuthor() const;               void setAuthor(const QString &newValue);
    QString getPassword() const;             void setPassword(const QString &newValue);
    QString getProject() const;              void setProject(const QString &newValue);
    QString getGenerationType() const;       void setGenerationType(const QString &newValue);
    const QString &getFileFilter() const;    void setFileFilter(const QString &newValue);
    const QString &getSelectFilter() const;  void setSelectFilter(const QString &newValue);
    const QString &getFilter() const;        void setFilter(const QString &newValue);

private:
    friend struct TestAccess;

    QString name;
    QString folder;     ///< as set; read in native separators
    QString sourceFile; ///< as set; read in native separators
    QString label;
    QString author;
    QString password;   ///< plain text
    QString project;
    QString generationType;
    QString fileFilter;
    QString selectFilter;
    QString filter;
};

/// Options of the generation.
///
/// Different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT ConfigOptions
{
public:
    ConfigOptions();
    ConfigOptions(const ConfigOptions &other);
    ConfigOptions &operator=(const ConfigOptions &other);
    /// Takes nothing from its argument: a default object.
    ConfigOptions(ConfigOptions &&other);
    ~ConfigOptions(); // NOLINT(performance-trivially-destructible): exported, as the destructors of all records are

    bool getCreateNotAppMissingInRange() const;  void setCreateNotAppMissingInRange(bool newValue);
    bool getCreateNoRanges() const;              void setCreateNoRanges(bool newValue);

private:
    friend struct TestAccess;

    bool createNotAppMissingInRange = false;
    bool createNoRanges = false;
};

/// The parts of one entity that are included. The list of variables belongs to the caller.
///
/// Different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT ConfigEntities
{
public:
    /// Has a new empty list of variables.
    ConfigEntities();
    /// Copies share the list.
    ConfigEntities(const ConfigEntities &other);
    ConfigEntities &operator=(const ConfigEntities &other);
    /// Takes nothing from its argument: the defaults, and no list until something is appended.
    ConfigEntities(ConfigEntities &&other);
    ~ConfigEntities();

    QString getName() const;               void setName(const QString &newValue);
    QString getRecType() const;            void setRecType(const QString &newValue);
    bool getAllVariables() const;          void setAllVariables(bool newValue);
    bool getCheckSequence() const;         void setCheckSequence(bool newValue);
    bool getCreateSDC() const;             void setCreateSDC(bool newValue);
    bool getCheckDelete() const;           void setCheckDelete(bool newValue);
    bool getCheckSelectable() const;       void setCheckSelectable(bool newValue);
    QList<QString> *getVariables() const;  void setVariables(QList<QString> *newValue); void addVariables(QString added);

private:
    friend struct TestAccess;

    QString name;
    QString recType;
    bool flag1 = false;                  ///< carried; never read
    bool allVariables = false;           ///< false until set
    bool checkSequence = false;          ///< false until set
    bool createSDC = false;
    bool checkDelete = false;
    bool checkSelectable = false;
    QList<QString> *variables = nullptr; ///< names of variables; not released
};

/// All settings of the calling application for one generation of a database.
///
/// The objects that the members point to belong to the caller; the destructor frees nothing.
///
/// Different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT Config
{
public:
    /// Has new options, a new database and a new empty list.
    Config();
    /// Copies share the objects that the members point to.
    Config(const Config &other);
    Config &operator=(const Config &other);
    /// Takes nothing from its argument: no path, and null pointers.
    Config(Config &&other);
    ~Config();

    ConfigDb *getDataBase() const;                 void setDataBase(ConfigDb *newValue);
    ConfigOptions *getOptions() const;             void setOptions(ConfigOptions *newValue);
    QList<ConfigEntities *> *getEntities() const;  void setEntities(QList<ConfigEntities *> *newValue); void addEntities(ConfigEntities *added);
    QString getPath();                             void setPath(QString newValue);

private:
    friend struct TestAccess;

    ConfigDb *dataBase = nullptr;                ///< not released
    ConfigOptions *options = nullptr;            ///< not released
    QList<ConfigEntities *> *entities = nullptr; ///< not released
    QString path;
};

/// Settings for extending a database by another.
///
/// Different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT ConfigToolsExtend
{
public:
    ConfigToolsExtend();
    ConfigToolsExtend(const ConfigToolsExtend &other);
    ConfigToolsExtend &operator=(const ConfigToolsExtend &other);
    /// A true move: the argument loses its texts.
    ConfigToolsExtend(ConfigToolsExtend &&other);
    ConfigToolsExtend &operator=(ConfigToolsExtend &&other);
    ~ConfigToolsExtend();

    const QString &getUrlPrimaryBd() const;    void setUrlPrimaryBd(const QString &newValue);
    const QString &getUrlSecondaryBd() const;  void setUrlSecondaryBd(const QString &newValue);

private:
    friend struct TestAccess;

    QString urlPrimaryBd;
    QString urlSecondaryBd;
};

/// Settings for splitting and sampling. The entities belong to the caller.
///
/// Different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT ConfigToolsSplit
{
public:
    /// Has three new entities.
    ConfigToolsSplit();
    /// Copies share the entities.
    ConfigToolsSplit(const ConfigToolsSplit &other);
    ConfigToolsSplit &operator=(const ConfigToolsSplit &other);
    /// A true move of the texts, which the argument loses; the rest is copied.
    ConfigToolsSplit(ConfigToolsSplit &&other);
    ConfigToolsSplit &operator=(ConfigToolsSplit &&other);
    ~ConfigToolsSplit();

    const QString &getFileName() const;           void setFileName(const QString &newValue);
    const QString &getFolder() const;             void setFolder(const QString &newValue);
    bool getOptionDownload() const;               void setOptionDownload(bool newValue);
    TVpEntity *getEntitySelect() const;           void setEntitySelect(TVpEntity *newValue);
    bool getOptionSampling() const;               void setOptionSampling(bool newValue);
    double getFactor() const;                     void setFactor(double newValue);
    bool getRadioOutEveryX() const;               void setRadioOutEveryX(bool newValue);
    bool getChkRestartSampling() const;           void setChkRestartSampling(bool newValue);
    TVpEntity *getEntitySampling() const;         void setEntitySampling(TVpEntity *newValue);
    TVpEntity *getEntityRestartSampling() const;  void setEntityRestartSampling(TVpEntity *newValue);
    bool getChkMultidiciplinaryEntities() const;  void setChkMultidiciplinaryEntities(bool newValue);

private:
    friend struct TestAccess;

    QString fileName;
    QString folder;
    bool optionDownload = false;
    TVpEntity *entitySelect = nullptr;          ///< not released
    bool optionSampling = false;
    double factor = 0;
    bool radioOutEveryX = false;
    bool chkRestartSampling = false;
    TVpEntity *entitySampling = nullptr;        ///< not released
    TVpEntity *entityRestartSampling = nullptr; ///< not released
    bool chkMultidiciplinaryEntities = false;
};

/// Settings for the conversion to JSON.
///
/// Different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT ConfigWipxToJson
{
public:
    ConfigWipxToJson();
    ConfigWipxToJson(const ConfigWipxToJson &other);
    ConfigWipxToJson &operator=(const ConfigWipxToJson &other);
    /// Takes nothing from its argument: a default object.
    ConfigWipxToJson(ConfigWipxToJson &&other);
    ~ConfigWipxToJson();

    const QString &getInputFile() const;   void setInputFile(const QString &newValue);
    const QString &getOutputFile() const;  void setOutputFile(const QString &newValue);

private:
    friend struct TestAccess;

    QString inputFile;
    QString outputFile;
};
// clang-format on

#endif
