#include "import/DataProvider.h"

#include "import/KeptObjects_p.h"

#include "import/DataImport.h"
#include "import/DataProvider_p.h"
#include "import/LoaderManager_p.h"
#include "import/SourceField.h"
#include "record/Record.h"
#include "util/EmptyText_p.h"

#include <algorithm>
#include <utility>
#include <vector>

int currentRecordNumber = 0;

namespace
{

// The only provider type whose importer fills the list of fields itself.
const QLatin1String csvType("CSV");

// The current record type if no record of the tree has it.
constexpr QChar noRecordType(0xFF);

constexpr int referencesIndex = 4;

// Source fields, with the lists of type names that they had when they were made: an assignment between fields changes
// the list that a field points to.
struct MadeFields {
    std::vector<TVpSourceField *> fields;
    std::vector<QStringList *> typeNames;

    explicit MadeFields(const QList<TVpSourceField *> &list)
        : fields(list.cbegin(), list.cend())
    {
        typeNames.reserve(fields.size());
        for (const TVpSourceField *field : fields) {
            if (field)
                typeNames.push_back(field->typeNames);
        }
    }

    // A field may be in the list several times.
    void free()
    {
        freeEach(fields);
        freeEach(typeNames);
    }

    template <typename T> static void freeEach(std::vector<T *> &pointers)
    {
        std::sort(pointers.begin(), pointers.end());
        pointers.erase(std::unique(pointers.begin(), pointers.end()), pointers.end());
        qDeleteAll(pointers);
    }
};

} // namespace

TVpDataProvider::TVpDataProvider()
    : recordTypeValue(emptyText())
    , text1(emptyText())
    , currentLine(emptyText())
    , currentRecordType(emptyText())
    , text2(emptyText())
    , text3(emptyText())
    , fallbackFileName(emptyText())
    , dataProviderId(emptyText())
    , dataProviderLabel(emptyText())
    , dataProviderType(emptyText())
    , layoutFileName(emptyText())
    , dataFileName(emptyText())
    , text5(emptyText())
    , text6(emptyText())
    , text7(emptyText())
{
    makeLists();
}

TVpDataProvider::TVpDataProvider(const TVpDataProvider &other) = default;
TVpDataProvider &TVpDataProvider::operator=(const TVpDataProvider &other) = default;

TVpDataProvider::TVpDataProvider(TVpDataProvider && /*other*/)
    : number5(0)
    , number6(0)
{
}

TVpDataProvider::~TVpDataProvider() = default;

bool TVpDataProvider::genericGetFieldsFrom(TDataImport *importer)
{
    if (!importer)
        return false;
    dataProviderId = importer->getDataProviderId();
    setDataProviderType(importer->getDataProviderType());
    importData = importer;
    renewFields();
    if (dataProviderType == csvType) {
        importer->getDictionary(fields, recordTypeNames);
        kept->add(nullptr, [made = MadeFields(*fields)]() mutable { made.free(); });
    } else {
        takeFieldsOf(*importer);
    }
    recordTypeStart = importer->getRecordTypeStart();
    recordTypeSize = importer->getRecordTypeSize();
    renewRecord();
    setLayoutFileName(importer->getSourceName());
    setDataFileName(importer->getDataSourceName());
    return true;
}

// If memory runs out, the fields made so far are not kept yet and are freed here. They are new, so each has its own
// list.
void TVpDataProvider::takeFieldsOf(TDataImport &importer)
{
    try {
        importer.getDictionary(fields);
        kept->add(nullptr, [made = MadeFields(*fields)]() mutable { made.free(); });
    } catch (...) {
        for (const TVpSourceField *field : qAsConst(*fields)) {
            delete field->typeNames;
            delete field;
        }
        fields->clear();
        throw;
    }
}

// The old list is freed, unless a copy of this provider shares it. Its source fields stay alive.
void TVpDataProvider::renewFields()
{
    if (fields && fieldsUse.use_count() == 1) {
        kept->forget(fields);
        delete std::exchange(fields, nullptr);
    }
    fields = kept->make<QList<TVpSourceField *>>();
    fieldsUse = std::make_shared<int>();
}

// The old tree stays alive.
void TVpDataProvider::renewRecord()
{
    auto made = std::make_unique<TVpRecord>();
    kept->add(made.get(), TVpRecord::freeingOf(made.get()));
    record = made.release();
}

void TVpDataProvider::makeLists()
{
    recordTypeNames = kept->make<QStringList>();
    typeNames = kept->make<QStringList>();
    *typeNames << QStringLiteral("NONE") << QStringLiteral("CSPRO") << QStringLiteral("CSV");
    isReleased = false;
}

void TVpDataProvider::releaseContents()
{
    fields = nullptr;
    fieldsUse.reset();
    record = nullptr;
    recordTypeNames = nullptr;
    typeNames = nullptr;
    isReleased = true; // the lists are made again when they are needed
    kept->freeAll();
}

bool TVpDataProvider::openDataProvider()
{
    currentRecordNumber = 0;
    return !dataFileName.isEmpty() || !fallbackFileName.isEmpty();
}

bool TVpDataProvider::closeDataProvider()
{
    return false;
}

TDataImport *TVpDataProvider::getImportData() const
{
    return importData;
}

void TVpDataProvider::setImportData(TDataImport *value)
{
    importData = value;
}

const QList<TVpSourceField *> *TVpDataProvider::getFields() const
{
    return fields;
}

TVpSourceField *TVpDataProvider::getField(QString name) const
{
    if (!fields)
        return nullptr;
    const auto found = std::find_if(fields->cbegin(), fields->cend(),
                                    [&name](const TVpSourceField *field) { return field->fieldName == name; });
    return found != fields->cend() ? *found : nullptr;
}

TVpSourceField *TVpDataProvider::getFieldFromRecord(QString name, QString recordName) const
{
    if (!fields)
        return nullptr;
    // In upper case, the implicit record "Common" of a CSPro dictionary is found as "COMMON".
    const QString wantedGroup = recordName.toUpper();
    const auto matches = [&](const TVpSourceField *field) {
        return field->fieldName == name && (field->group.isEmpty() || field->group.toUpper() == wantedGroup);
    };
    const auto found = std::find_if(fields->cbegin(), fields->cend(), matches);
    return found != fields->cend() ? *found : nullptr;
}

QString TVpDataProvider::getFieldName(QString name) const
{
    const TVpSourceField *field = getField(std::move(name));
    return field ? field->fieldName : emptyText();
}

TGenericField *TVpDataProvider::findField(QString name1, QString name2)
{
    if (!IsFormatRegistered(dataProviderType))
        return nullptr;
    const TDataImport *importer = GetDataClassLoader(dataProviderType);
    // LCOV_EXCL_START: the registry is replaced by an empty one, so the call above throws for every format
    if (!importer)
        return nullptr;
    TGenericField *field = importer->fieldByName(name1);
    return field ? field : importer->fieldByName(name2);
    // LCOV_EXCL_STOP
}

TVpRecord *TVpDataProvider::getRecord(QString name) const
{
    return record ? record->retrieveRecord(std::move(name)) : nullptr;
}

QString TVpDataProvider::getDataFileName() const
{
    return dataFileName;
}

void TVpDataProvider::setDataFileName(QString value)
{
    if (dataFileName != value)
        dataFileName = std::move(value);
}

QString TVpDataProvider::getLayoutFileName() const
{
    return layoutFileName;
}

void TVpDataProvider::setLayoutFileName(QString value)
{
    if (layoutFileName != value)
        layoutFileName = std::move(value);
}

QString TVpDataProvider::getDataProviderId() const
{
    return dataProviderId;
}

void TVpDataProvider::setDataProviderId(QString value)
{
    dataProviderId = std::move(value);
}

QString TVpDataProvider::getDataProviderType() const
{
    return dataProviderType;
}

void TVpDataProvider::setDataProviderType(QString type)
{
    if (isReleased)
        makeLists();
    const int position = typeNames ? typeNames->indexOf(type) : -1;
    if (position < 1)
        return;
    dataProviderTypeIndex = eDataProviderType(position);
    dataProviderType = std::move(type);
}

int TVpDataProvider::getRecordTypeStart() const
{
    return recordTypeStart;
}

int TVpDataProvider::getRecordTypeSize() const
{
    return recordTypeSize;
}

QString TVpDataProvider::getRecordTypeValue() const
{
    // The bound uses the start as 1-based, and the cut uses it as 0-based. Both are intended.
    if (currentLine.isEmpty() || currentLine.size() < qint64(recordTypeStart) + recordTypeSize - 1)
        return emptyText();
    return currentLine.mid(recordTypeStart, recordTypeSize);
}

QString TVpDataProvider::getDataProviderLabel() const
{
    return dataProviderLabel;
}

void TVpDataProvider::setDataProviderLabel(QString value)
{
    dataProviderLabel = std::move(value);
}

eDataProviderType TVpDataProvider::getDataProviderTypeIndex() const
{
    return dataProviderTypeIndex;
}

void TVpDataProvider::getRecordType()
{
    currentRecordType = noRecordType;
    recordTypeValue = getRecordTypeValue();
    for (TVpRecord *node = record; node; node = node->preOrderNext()) {
        if (node->typeCode() == recordTypeValue) {
            currentRecordType = QChar(uchar(node->typeNumber()));
            return;
        }
    }
}

QStringList *TVpDataProvider::getRecordTypeList() const
{
    return recordTypeList;
}

int TVpDataProvider::getRecordTypes() const
{
    return recordTypes;
}

void TVpDataProvider::setRecordTypes(int /*value*/) { }

int TVpDataProvider::getReferences() const
{
    return numbers1[referencesIndex];
}

void TVpDataProvider::setReferences(int value)
{
    numbers1[referencesIndex] = value;
}

void TVpDataProvider::setRecordTypeStart(int value)
{
    recordTypeStart = value;
}

void TVpDataProvider::setRecordTypeSize(int value)
{
    recordTypeSize = value;
}
