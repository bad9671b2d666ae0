#include "cspro/CSProDataImport.h"

#include "cspro/CSProImportBody_p.h"
#include "cspro/CSPro_p.h"
#include "cspro/GroupValue_p.h"
#include "import/Constants.h"
#include "util/DebugLog_p.h"
#include "import/LayoutNotes_p.h"
#include "util/EmptyText_p.h"

namespace
{

const QLatin1String providerType("CSPRO");

} // namespace

TCSProDataImport::TCSProDataImport(QString fileName)
    : TDataImport(std::move(fileName))
    , groupList(kept->make<QStringList>())
    , layoutPending(true)
    , text1(emptyText())
{
    debugLine("TCSProDataImport Constructor");
    initDataImport();
}

TCSProDataImport::TCSProDataImport() = default;
TCSProDataImport::TCSProDataImport(const TCSProDataImport &other) = default;
TCSProDataImport &TCSProDataImport::operator=(const TCSProDataImport &other) = default;

TCSProDataImport::TCSProDataImport(TCSProDataImport && /*other*/)
    : TCSProDataImport()
{
}

TCSProDataImport::~TCSProDataImport() = default;

QString TCSProDataImport::getDataProviderId()
{
    return providerType + Vocabulary::Underscore + sourceName;
}

QString TCSProDataImport::getDataProviderType()
{
    return providerType;
}

bool TCSProDataImport::openFile()
{
    openState = 1;
    stateValue = 1.0;
    openDataImport();
    openRead(getSourceName());
    return true;
}

QStringList *TCSProDataImport::selectLayoutSource()
{
    debugLine("TCSProDataImport - selectLayoutSource");
    return TDataImport::selectLayoutSource();
}

bool TCSProDataImport::isMultiple()
{
    return getRecordTypeSize() > 0;
}

int TCSProDataImport::getGroupCount()
{
    return groupList ? groupList->size() : 0;
}

QString TCSProDataImport::getGroupName(int index)
{
    return cspro::groupAt(groupList, index, isOutsideOfGroups);
}

QString TCSProDataImport::getGroupValue(int index)
{
    isOutsideOfGroups = false;
    const QString text = getGroupName(index); // may be null in a subclass, and then counts as ""
    const bool isNone = !groupList || (text.isNull() && isOutsideOfGroups);
    return isNone ? emptyText() : cspro::groupValue(*groupList, index, text);
}

int TCSProDataImport::getRecordTypeIndex(QString value)
{
    return cspro::lastRecordOfType(dictionary, value);
}

int TCSProDataImport::getRecordTypeIndex() const
{
    return cspro::firstRecordOfType(dictionary, currentRecordType);
}

int TCSProDataImport::getRecordTypeStart()
{
    return recordTypeStart;
}

int TCSProDataImport::getRecordTypeSize()
{
    return recordTypeLen;
}

// The former dictionary stays alive: fields point at its items.
void TCSProDataImport::renewDictionary()
{
    dictionary = cspro::newDictionary<TCSPro>(*kept);
}

void TCSProDataImport::releaseContents()
{
    groupList = nullptr;
    dictionary = nullptr;
    recordTypeStart = 0;
    recordTypeLen = 0;
    openState = 0;
    TDataImport::releaseContents();
}

void TCSProDataImport::openRead(QString fileName)
{
    renewDictionary();
    cspro::readDictionary(*dictionary, std::move(fileName), report, readProblem);
    recordTypeStart = dictionary->recordTypeStart;
    recordTypeLen = dictionary->recordTypeLen;
    cspro::listGroups(*dictionary, groupList, *kept);
    layoutPending = false;
    copyDataFromDictionary();
    if (report) {
        cspro::tellOfLayout(*report, *dictionary, groupList);
        reportRepeatedNames(*report, fields, fieldsByName.size());
    }
}

void TCSProDataImport::copyDataFromDictionary()
{
    if (dictionary)
        cspro::makeFields<TCSProVariable>(*dictionary, this, report, [this](TGenericField *field) { addField(field); });
}

void TCSProDataImport::getNotApplicable(TGenericField *field) const
{
    if (const TCSProItem *item = cspro::itemBehind<TCSProVariable>(field))
        field->notApplicable = item->notApplicable;
}

void TCSProDataImport::getVarMissingValue(TGenericField *field) const
{
    if (const TCSProItem *item = cspro::itemBehind<TCSProVariable>(field))
        field->missingValue = item->missingValue;
}

QString TCSProDataImport::StringOfChar(char c, int count) const
{
    return cspro::stringOfChar(QLatin1Char(c), count);
}

TCSProVariable::TCSProVariable(TDataImport *importer, TCSProItem *sourceItem)
    : TGenericField(importer)
    , group(emptyText())
    , item(sourceItem)
    , optionalAtStart(optional)
{
}

TCSProVariable::~TCSProVariable() = default;

bool TCSProVariable::isMissing()
{
    return cspro::isMissing(*this, item);
}

bool TCSProVariable::isNotApplicable()
{
    return cspro::isNotApplicable(*this, item);
}

bool TCSProVariable::isBlank()
{
    return cspro::isBlank(*this);
}

QString TCSProVariable::getGroup()
{
    return group;
}
