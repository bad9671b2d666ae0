#include "cspro/CSProImportBase.h"

#include "cspro/CSProImportBody_p.h"
#include "cspro/GroupValue_p.h"
#include "import/Constants.h"
#include "import/LayoutNotes_p.h"
#include "util/EmptyText_p.h"

#include <algorithm>

namespace
{

bool isCurrentValue(const TGenericField &field, const QString &code)
{
    return !code.isEmpty() && field.currentText() == code;
}

} // namespace

TCSProFieldBase::TCSProFieldBase(TDataImport *importer, TCSProItem *sourceItem)
    : TGenericField(importer)
    , group(emptyText())
    , item(sourceItem)
    , optionalAtStart(optional)
{
}

TCSProFieldBase::~TCSProFieldBase() = default;

bool TCSProFieldBase::isMissing()
{
    return isUnset || (item && isCurrentValue(*this, item->missingValue));
}

bool TCSProFieldBase::isNotApplicable()
{
    return item && isCurrentValue(*this, item->notApplicable);
}

bool TCSProFieldBase::isBlank()
{
    return currentText().trimmed().isEmpty();
}

QString TCSProFieldBase::getGroup()
{
    return group;
}

TCSProImportBase::TCSProImportBase(QString fileName)
    : TDataImport(std::move(fileName))
    , groupList(kept->make<QStringList>())
    , layoutPending(true)
    , text1(emptyText())
{
}

TCSProImportBase::TCSProImportBase() = default;
TCSProImportBase::TCSProImportBase(const TCSProImportBase &other) = default;
TCSProImportBase &TCSProImportBase::operator=(const TCSProImportBase &other) = default;
TCSProImportBase::~TCSProImportBase() = default;

bool TCSProImportBase::openFile()
{
    openState = 1;
    stateValue = 1.0;
    openDataImport();
    openRead(getSourceName());
    return true;
}

bool TCSProImportBase::isMultiple()
{
    return getRecordTypeSize() > 0;
}

int TCSProImportBase::getGroupCount()
{
    return groupList ? groupList->size() : 0;
}

QString TCSProImportBase::getGroupName(int index)
{
    isOutsideOfGroups = !groupList || index < 0 || index >= groupList->size();
    return isOutsideOfGroups ? QString() : groupList->at(index);
}

QString TCSProImportBase::getGroupValue(int index)
{
    isOutsideOfGroups = false;
    const QString text = getGroupName(index); // may be null in a subclass, and then counts as ""
    const bool isNone = !groupList || (text.isNull() && isOutsideOfGroups);
    return isNone ? emptyText() : cspro::groupValue(*groupList, index, text);
}

int TCSProImportBase::getRecordTypeIndex(QString value)
{
    const CSProDictionary *dictionary = currentDictionary();
    int index = dictionary ? dictionary->records->size() - 1 : -1;
    while (index >= 0 && dictionary->records->at(index)->recordType != value)
        --index;
    return index;
}

int TCSProImportBase::getRecordTypeIndex() const
{
    const CSProDictionary *dictionary = currentDictionary();
    if (!dictionary)
        return -1;
    const auto &records = *dictionary->records;
    const auto found = std::find_if(records.cbegin(), records.cend(), [this](const TCSProRecord *record) {
        return record->recordType == currentRecordType;
    });
    return found != records.cend() ? int(found - records.cbegin()) : -1;
}

int TCSProImportBase::getRecordTypeStart()
{
    return recordTypeStart;
}

int TCSProImportBase::getRecordTypeSize()
{
    return recordTypeLen;
}

void TCSProImportBase::releaseContents()
{
    groupList = nullptr;
    recordTypeStart = 0;
    recordTypeLen = 0;
    openState = 0;
    TDataImport::releaseContents();
}

void TCSProImportBase::openRead(QString fileName)
{
    readNewDictionary(std::move(fileName));
    recordTypeStart = currentDictionary()->recordTypeStart;
    recordTypeLen = currentDictionary()->recordTypeLen;
    listGroups();
    layoutPending = false;
    copyDataFromDictionary();
    reportLayout();
}

// One entry "name=type" for each record.
void TCSProImportBase::listGroups()
{
    CSProDictionary &dictionary = *currentDictionary();
    const int count = dictionary.getRecordsCount();
    if (!groupList)
        groupList = kept->make<QStringList>();
    groupList->clear();
    groupList->reserve(count);
    for (int i = 0; i < count; ++i) {
        const TCSProRecord *record = dictionary.getRecord(i);
        groupList->append(record->name + Vocabulary::Equals + record->recordType);
    }
}

void TCSProImportBase::reportLayout()
{
    if (!report)
        return;
    cspro::reportLayout(*report, *currentDictionary(), groupList);
    reportRepeatedNames(*report, fields, fieldsByName.size());
}

void TCSProImportBase::copyDataFromDictionary()
{
    const CSProDictionary *dictionary = currentDictionary();
    if (!dictionary)
        return;
    cspro::ItemDescriber describer;
    const bool hasGroups = isMultiple();
    const int count = dictionary->getItemsCount();
    for (int i = 0; i < count; ++i) {
        TCSProItem *item = dictionary->getItem(i);
        std::unique_ptr<TCSProFieldBase> field(newField(item));
        if (hasGroups && item->record)
            field->group = item->record->name;
        describer.describe(*item, *field);
        if (report)
            cspro::reportDescription(*report, *item, dictionary->getItem(i - 1), *field);
        addField(field.release());
    }
}

void TCSProImportBase::getNotApplicable(TGenericField *field) const
{
    if (const TCSProItem *item = itemOf(field))
        field->notApplicable = item->notApplicable;
}

void TCSProImportBase::getVarMissingValue(TGenericField *field) const
{
    if (const TCSProItem *item = itemOf(field))
        field->missingValue = item->missingValue;
}

QString TCSProImportBase::StringOfChar(char c, int count) const
{
    return QString(std::max(count, 0), QLatin1Char(c));
}
