#include "import/DataImport.h"

#include "import/KeptObjects_p.h"
#include "import/SourceField.h"
#include "util/DebugLog_p.h"
#include "util/EmptyText_p.h"
#include "util/Numbers_p.h"

#include <QFile>
#include <QFileInfo>

#include <memory>

namespace
{

// A field without a type leaves the name unchanged.
void setTypeName(QString &typeName, eVanVarType type)
{
    switch (type) {
    case vtInteger:
        typeName = QStringLiteral("INTEGER");
        break;
    case vtReal:
        typeName = QStringLiteral("REAL");
        break;
    case vtString:
        typeName = QStringLiteral("STRING");
        break;
    default:
        break;
    }
}

std::unique_ptr<TVpSourceField> makeSourceField(const TGenericField &field, const QString &typeName)
{
    auto source = std::make_unique<TVpSourceField>();
    source->fieldName = field.name;
    source->label = field.label;
    bool isNumber = false;
    source->decimals = numbers::toInt(field.decimals, &isNumber); // 0 if it does not convert
    source->start = field.start;
    source->setFieldType(typeName);
    source->length = field.length;
    return source;
}

void logSourceField(const TVpSourceField &source)
{
    debugLine("getDictionary FIELDS");
    debugLine("mySF->fieldName", source.fieldName);
    debugLine("mySF->FieldType", source.FieldType);
    debugLine("mySF->DataProviderType", source.DataProviderType);
}

void setValues(TVpSourceField &source, const TGenericField &field)
{
    source.valueLabels = field.valueLabels;
    source.minimum = field.minimum;
    source.maximum = field.maximum;
    source.notApplicable = field.notApplicable;
    source.missingValue = field.missingValue;
}

} // namespace

TDataImport::TDataImport()
    : TDataImport(QString())
{
}

TDataImport::TDataImport(QString name)
    : sourceName(std::move(name))
{
    fields = kept->make<QList<TGenericField *>>();
}

TDataImport::TDataImport(const TDataImport &other) = default;
TDataImport &TDataImport::operator=(const TDataImport &other) = default;

TDataImport::TDataImport(TDataImport && /*other*/) { }

TDataImport::~TDataImport() = default;

bool TDataImport::openFile()
{
    return false;
}

void TDataImport::getDictionary(QList<TVpSourceField *> * /*target*/, QStringList * /*recordTypeNames*/) { }

QStringList *TDataImport::selectLayoutSource()
{
    debugLine("DataImport - selectLayoutSource");
    auto names = std::make_unique<QStringList>();
    openFile();
    if (fields) {
        names->reserve(fields->size());
        for (const TGenericField *field : qAsConst(*fields)) {
            if (field)
                names->append(field->name);
        }
    }
    return names.release();
}

bool TDataImport::isMultiple()
{
    return false;
}

int TDataImport::getGroupCount()
{
    return 0;
}

QString TDataImport::getGroupName(int /*index*/)
{
    return emptyText();
}

QString TDataImport::getGroupValue(int /*index*/)
{
    return emptyText();
}

int TDataImport::getRecordTypeIndex(QString /*value*/)
{
    return -1;
}

QString TDataImport::getRecordTypeCurrent()
{
    return emptyText();
}

QStringList *TDataImport::getLayoutSource()
{
    return new QStringList;
}

int TDataImport::getRecordTypeStart()
{
    return 0;
}

int TDataImport::getRecordTypeSize()
{
    return 0;
}

void TDataImport::releaseContents()
{
    fields = nullptr;
    fieldsByName.clear();
    readProblem.clear();
    stateValue = 0;
    kept->freeAll();
}

QString TDataImport::getSourceName() const
{
    return sourceName;
}

QString TDataImport::getDataSourceName() const
{
    return dataSourceName;
}

void TDataImport::setSourceName(QString name)
{
    const QString path = QFileInfo(name).absoluteFilePath();
    sourceName = QFile::exists(path) ? path : emptyText();
}

void TDataImport::setDataSourceName(QString name)
{
    dataSourceName = QFileInfo(name).absoluteFilePath();
    if (QFile::exists(dataSourceName))
        return;
    // There is no separator between directory and file name, so the candidate normally does not exist.
    const QString candidate = QFileInfo(sourceName).absolutePath() + QFileInfo(name).fileName();
    if (QFile::exists(candidate))
        dataSourceName = candidate;
}

void TDataImport::getDictionary(QList<TVpSourceField *> *target)
{
    if (!fields || !target)
        return;
    const int count = fields->size();
    target->reserve(target->size() + count);
    // The id is queried for each field. Equal ids share one text.
    QString providerId;
    // Kept across the loop: a field without a type takes the type name of the field before it.
    QString typeName = emptyText();
    for (int index = 0; index < count; ++index) {
        TGenericField *field = getField(index);
        if (!field)
            continue;
        setTypeName(typeName, field->type);
        auto source = makeSourceField(*field, typeName);
        const QString id = getDataProviderId();
        if (providerId.isNull() || id != providerId)
            providerId = id;
        source->providerId = providerId;
        source->setDataProviderType(getDataProviderType());
        source->group = field->getGroup();
        logSourceField(*source);
        setValues(*source, *field);
        debugLine("\n\n\n");
        target->append(source.release());
    }
}

TGenericField *TDataImport::fieldByName(QString name) const
{
    const auto found = fieldsByName.find(name);
    return found != fieldsByName.end() ? found->second : nullptr;
}

void TDataImport::registerIOFormat() { }

void TDataImport::setReadReport(ReadReport *newReport)
{
    report = newReport;
}

ReadReport *TDataImport::getReadReport() const
{
    return report;
}

QString TDataImport::getReadProblem() const
{
    return readProblem;
}

void TDataImport::addField(TGenericField *field)
{
    if (!field)
        return;
    if (!fields)
        fields = kept->make<QList<TGenericField *>>();
    kept->addField(field);
    fields->append(field);
    // The hint makes names cheap that are added in their order, as numbered names are.
    fieldsByName.insert_or_assign(fieldsByName.end(), field->name, field);
}

TGenericField *TDataImport::getField(int index) const
{
    return fields ? fields->value(index, nullptr) : nullptr;
}

void TDataImport::initDataImport()
{
    getDataProviderType();
}

void TDataImport::openDataImport()
{
    if (!fields)
        fields = kept->make<QList<TGenericField *>>();
    fields->clear();
    fieldsByName.clear();
    readProblem.clear();
}

bool TDataImport::closeDataImport()
{
    return true;
}
