#include "model/Config.h"

#include "model/Append_p.h"
#include "model/Entity.h"

#include <QDir>

#include <utility>

// The objects are made in this order, which differs from that of the members.
Config::Config()
{
    options = new ConfigOptions;
    dataBase = new ConfigDb;
    entities = new QList<ConfigEntities *>;
}

ConfigEntities::ConfigEntities()
    : variables(new QList<QString>)
{
}

ConfigToolsSplit::ConfigToolsSplit()
    : entitySelect(new TVpEntity)
    , entitySampling(new TVpEntity)
    , entityRestartSampling(new TVpEntity)
{
}

ConfigToolsExtend::ConfigToolsExtend(ConfigToolsExtend &&other)
    : urlPrimaryBd(std::exchange(other.urlPrimaryBd, QString()))
    , urlSecondaryBd(std::exchange(other.urlSecondaryBd, QString()))
{
}

ConfigToolsExtend &ConfigToolsExtend::operator=(ConfigToolsExtend &&other)
{
    urlPrimaryBd = std::exchange(other.urlPrimaryBd, QString());
    urlSecondaryBd = std::exchange(other.urlSecondaryBd, QString());
    return *this;
}

ConfigToolsSplit::ConfigToolsSplit(ConfigToolsSplit &&other)
    : fileName(std::exchange(other.fileName, QString()))
    , folder(std::exchange(other.folder, QString()))
    , optionDownload(other.optionDownload)
    , entitySelect(other.entitySelect)
    , optionSampling(other.optionSampling)
    , factor(other.factor)
    , radioOutEveryX(other.radioOutEveryX)
    , chkRestartSampling(other.chkRestartSampling)
    , entitySampling(other.entitySampling)
    , entityRestartSampling(other.entityRestartSampling)
    , chkMultidiciplinaryEntities(other.chkMultidiciplinaryEntities)
{
}

ConfigToolsSplit &ConfigToolsSplit::operator=(ConfigToolsSplit &&other)
{
    fileName = std::exchange(other.fileName, QString());
    folder = std::exchange(other.folder, QString());
    optionDownload = other.optionDownload;
    entitySelect = other.entitySelect;
    optionSampling = other.optionSampling;
    factor = other.factor;
    radioOutEveryX = other.radioOutEveryX;
    chkRestartSampling = other.chkRestartSampling;
    entitySampling = other.entitySampling;
    entityRestartSampling = other.entityRestartSampling;
    chkMultidiciplinaryEntities = other.chkMultidiciplinaryEntities;
    return *this;
}

// clang-format off
Config::Config(const Config &other) = default;
Config &Config::operator=(const Config &other) = default;
Config::~Config() = default;
Config::Config(Config && /*other*/) { }

ConfigDb::ConfigDb() = default;
ConfigDb::ConfigDb(const ConfigDb &other) = default;
ConfigDb &ConfigDb::operator=(const ConfigDb &other) = default;
ConfigDb::~ConfigDb() = default;
ConfigDb::ConfigDb(ConfigDb && /*other*/) { }

ConfigOptions::ConfigOptions() = default;
ConfigOptions::ConfigOptions(const ConfigOptions &other) = default;
ConfigOptions &ConfigOptions::operator=(const ConfigOptions &other) = default;
ConfigOptions::~ConfigOptions() = default;
ConfigOptions::ConfigOptions(ConfigOptions && /*other*/) { }

ConfigEntities::ConfigEntities(const ConfigEntities &other) = default;
ConfigEntities &ConfigEntities::operator=(const ConfigEntities &other) = default;
ConfigEntities::~ConfigEntities() = default;
ConfigEntities::ConfigEntities(ConfigEntities && /*other*/) { }

ConfigToolsExtend::ConfigToolsExtend() = default;
ConfigToolsExtend::ConfigToolsExtend(const ConfigToolsExtend &other) = default;
ConfigToolsExtend &ConfigToolsExtend::operator=(const ConfigToolsExtend &other) = default;
ConfigToolsExtend::~ConfigToolsExtend() = default;

ConfigToolsSplit::ConfigToolsSplit(const ConfigToolsSplit &other) = default;
ConfigToolsSplit &ConfigToolsSplit::operator=(const ConfigToolsSplit &other) = default;
ConfigToolsSplit::~ConfigToolsSplit() = default;

ConfigWipxToJson::ConfigWipxToJson() = default;
ConfigWipxToJson::ConfigWipxToJson(const ConfigWipxToJson &other) = default;
ConfigWipxToJson &ConfigWipxToJson::operator=(const ConfigWipxToJson &other) = default;
ConfigWipxToJson::~ConfigWipxToJson() = default;
ConfigWipxToJson::ConfigWipxToJson(ConfigWipxToJson && /*other*/) { }

ConfigDb *Config::getDataBase() const { return dataBase; }
void Config::setDataBase(ConfigDb *newValue) { dataBase = newValue; }
ConfigOptions *Config::getOptions() const { return options; }
void Config::setOptions(ConfigOptions *newValue) { options = newValue; }
QList<ConfigEntities *> *Config::getEntities() const { return entities; }
void Config::setEntities(QList<ConfigEntities *> *newValue) { entities = newValue; }
void Config::addEntities(ConfigEntities *added) { append(entities, added); }
QString Config::getPath() { return path; }
void Config::setPath(QString newValue) { path = std::move(newValue); }

QString ConfigDb::getName() const { return name; }
void ConfigDb::setName(const QString &newValue) { name = newValue; }
QString ConfigDb::getFolder() const { return QDir::toNativeSeparators(folder); }
void ConfigDb::setFolder(const QString &newValue) { folder = newValue; }
QString ConfigDb::getSourceFile() const { return QDir::toNativeSeparators(sourceFile); }
void ConfigDb::setSourceFile(const QString &newValue) { sourceFile = newValue; }
QString ConfigDb::getLabel() const { return label; }
void ConfigDb::setLabel(const QString &newValue) { label = newValue; }
QString ConfigDb::getAuthor() const { return author; }
void ConfigDb::setAuthor(const QString &newValue) { author = newValue; }
QString ConfigDb::getPassword() const { return password; }
void ConfigDb::setPassword(const QString &newValue) { password = newValue; }
QString ConfigDb::getProject() const { return project; }
void ConfigDb::setProject(const QString &newValue) { project = newValue; }
QString ConfigDb::getGenerationType() const { return generationType; }
void ConfigDb::setGenerationType(const QString &newValue) { generationType = newValue; }
const QString &ConfigDb::getFileFilter() const { return fileFilter; }
void ConfigDb::setFileFilter(const QString &newValue) { fileFilter = newValue; }
const QString &ConfigDb::getSelectFilter() const { return selectFilter; }
void ConfigDb::setSelectFilter(const QString &newValue) { selectFilter = newValue; }
const QString &ConfigDb::getFilter() const { return filter; }
void ConfigDb::setFilter(const QString &newValue) { filter = newValue; }

bool ConfigOptions::getCreateNotAppMissingInRange() const { return createNotAppMissingInRange; }
void ConfigOptions::setCreateNotAppMissingInRange(bool newValue) { createNotAppMissingInRange = newValue; }
bool ConfigOptions::getCreateNoRanges() const { return createNoRanges; }
void ConfigOptions::setCreateNoRanges(bool newValue) { createNoRanges = newValue; }

QString ConfigEntities::getName() const { return name; }
void ConfigEntities::setName(const QString &newValue) { name = newValue; }
QString ConfigEntities::getRecType() const { return recType; }
void ConfigEntities::setRecType(const QString &newValue) { recType = newValue; }
bool ConfigEntities::getAllVariables() const { return allVariables; }
void ConfigEntities::setAllVariables(bool newValue) { allVariables = newValue; }
bool ConfigEntities::getCheckSequence() const { return checkSequence; }
void ConfigEntities::setCheckSequence(bool newValue) { checkSequence = newValue; }
bool ConfigEntities::getCreateSDC() const { return createSDC; }
void ConfigEntities::setCreateSDC(bool newValue) { createSDC = newValue; }
bool ConfigEntities::getCheckDelete() const { return checkDelete; }
void ConfigEntities::setCheckDelete(bool newValue) { checkDelete = newValue; }
bool ConfigEntities::getCheckSelectable() const { return checkSelectable; }
void ConfigEntities::setCheckSelectable(bool newValue) { checkSelectable = newValue; }
QList<QString> *ConfigEntities::getVariables() const { return variables; }
void ConfigEntities::setVariables(QList<QString> *newValue) { variables = newValue; }
void ConfigEntities::addVariables(QString added) { append(variables, added); }

const QString &ConfigToolsExtend::getUrlPrimaryBd() const { return urlPrimaryBd; }
void ConfigToolsExtend::setUrlPrimaryBd(const QString &newValue) { urlPrimaryBd = newValue; }
const QString &ConfigToolsExtend::getUrlSecondaryBd() const { return urlSecondaryBd; }
void ConfigToolsExtend::setUrlSecondaryBd(const QString &newValue) { urlSecondaryBd = newValue; }

const QString &ConfigToolsSplit::getFileName() const { return fileName; }
void ConfigToolsSplit::setFileName(const QString &newValue) { fileName = newValue; }
const QString &ConfigToolsSplit::getFolder() const { return folder; }
void ConfigToolsSplit::setFolder(const QString &newValue) { folder = newValue; }
bool ConfigToolsSplit::getOptionDownload() const { return optionDownload; }
void ConfigToolsSplit::setOptionDownload(bool newValue) { optionDownload = newValue; }
TVpEntity *ConfigToolsSplit::getEntitySelect() const { return entitySelect; }
void ConfigToolsSplit::setEntitySelect(TVpEntity *newValue) { entitySelect = newValue; }
bool ConfigToolsSplit::getOptionSampling() const { return optionSampling; }
void ConfigToolsSplit::setOptionSampling(bool newValue) { optionSampling = newValue; }
double ConfigToolsSplit::getFactor() const { return factor; }
void ConfigToolsSplit::setFactor(double newValue) { factor = newValue; }
bool ConfigToolsSplit::getRadioOutEveryX() const { return radioOutEveryX; }
void ConfigToolsSplit::setRadioOutEveryX(bool newValue) { radioOutEveryX = newValue; }
bool ConfigToolsSplit::getChkRestartSampling() const { return chkRestartSampling; }
void ConfigToolsSplit::setChkRestartSampling(bool newValue) { chkRestartSampling = newValue; }
TVpEntity *ConfigToolsSplit::getEntitySampling() const { return entitySampling; }
void ConfigToolsSplit::setEntitySampling(TVpEntity *newValue) { entitySampling = newValue; }
TVpEntity *ConfigToolsSplit::getEntityRestartSampling() const { return entityRestartSampling; }
void ConfigToolsSplit::setEntityRestartSampling(TVpEntity *newValue) { entityRestartSampling = newValue; }
bool ConfigToolsSplit::getChkMultidiciplinaryEntities() const { return chkMultidiciplinaryEntities; }
void ConfigToolsSplit::setChkMultidiciplinaryEntities(bool newValue) { chkMultidiciplinaryEntities = newValue; }

const QString &ConfigWipxToJson::getInputFile() const { return inputFile; }
void ConfigWipxToJson::setInputFile(const QString &newValue) { inputFile = newValue; }
const QString &ConfigWipxToJson::getOutputFile() const { return outputFile; }
void ConfigWipxToJson::setOutputFile(const QString &newValue) { outputFile = newValue; }
// clang-format on
