#include "cspro/CSProJsonDataImport.h"

#include "cspro/CSProImportBody_p.h"
#include "cspro/CSProJson_p.h"
#include "cspro/GroupValue_p.h"
#include "import/Constants.h"
#include "util/DebugLog_p.h"
#include "import/LayoutNotes_p.h"
#include "util/EmptyText_p.h"

namespace
{

const QLatin1String providerType("CSPRO8");

} // namespace

TCSProJsonDataImport::TCSProJsonDataImport(QString fileName)
    : TDataImport(std::move(fileName))
    , groupList(kept->make<QStringList>())
    , layoutPending(true)
    , text1(emptyText())
{
    debugLine("TCSProJsonImport Constructor");
    initDataImport();
}

TCSProJsonDataImport::TCSProJsonDataImport() = default;
TCSProJsonDataImport::TCSProJsonDataImport(const TCSProJsonDataImport &other) = default;
TCSProJsonDataImport &TCSProJsonDataImport::operator=(const TCSProJsonDataImport &other) = default;

TCSProJsonDataImport::TCSProJsonDataImport(TCSProJsonDataImport && /*other*/)
    : TCSProJsonDataImport()
{
}

TCSProJsonDataImport::~TCSProJsonDataImport() = default;

QString TCSProJsonDataImport::getDataProviderId()
{
    return providerType + Vocabulary::Underscore + sourceName;
}

QString TCSProJsonDataImport::getDataProviderType()
{
    return providerType;
}

bool TCSProJsonDataImport::openFile()
{
    openState = 1;
    stateValue = 1.0;
    openDataImport();
    openRead(getSourceName());
    return true;
}

QStringList *TCSProJsonDataImport::selectLayoutSource()
{
    debugLine("TCSProJsonImport - selectLayoutSource");
    return TDataImport::selectLayoutSource();
}

bool TCSProJsonDataImport::isMultiple()
{
    return getRecordTypeSize() > 0;
}

int TCSProJsonDataImport::getGroupCount()
{
    return groupList ? groupList->size() : 0;
}

QString TCSProJsonDataImport::getGroupName(int index)
{
    return cspro::groupAt(groupList, index, isOutsideOfGroups);
}

QString TCSProJsonDataImport::getGroupValue(int index)
{
    isOutsideOfGroups = false;
    const QString text = getGroupName(index); // may be null in a subclass, and then counts as ""
    const bool isNone = !groupList || (text.isNull() && isOutsideOfGroups);
    return isNone ? emptyText() : cspro::groupValue(*groupList, index, text);
}

int TCSProJsonDataImport::getRecordTypeIndex(QString value)
{
    return cspro::lastRecordOfType(dictionary, value);
}

int TCSProJsonDataImport::getRecordTypeIndex() const
{
    return cspro::firstRecordOfType(dictionary, currentRecordType);
}

int TCSProJsonDataImport::getRecordTypeStart()
{
    return recordTypeStart;
}

int TCSProJsonDataImport::getRecordTypeSize()
{
    return recordTypeLen;
}

// The former dictionary stays alive: fields point at its items.
void TCSProJsonDataImport::renewDictionary()
{
    dictionary = cspro::newDictionary<TCSProJson>(*kept);
}

void TCSProJsonDataImport::releaseContents()
{
    groupList = nullptr;
    dictionary = nullptr;
    recordTypeStart = 0;
    recordTypeLen = 0;
    openState = 0;
    TDataImport::releaseContents();
}

void TCSProJsonDataImport::openRead(QString fileName)
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

void TCSProJsonDataImport::copyDataFromDictionary()
{
    if (dictionary)
        cspro::makeFields<TCSProJsonVariable>(*dictionary, this, report,
                                              [this](TGenericField *field) { addField(field); });
}

void TCSProJsonDataImport::getNotApplicable(TGenericField *field) const
{
    if (const TCSProItem *item = cspro::itemBehind<TCSProJsonVariable>(field))
        field->notApplicable = item->notApplicable;
}

void TCSProJsonDataImport::getVarMissingValue(TGenericField *field) const
{
    if (const TCSProItem *item = cspro::itemBehind<TCSProJsonVariable>(field))
        field->missingValue = item->missingValue;
}

QString TCSProJsonDataImport::StringOfChar(char c, int count) const
{
    return cspro::stringOfChar(QLatin1Char(c), count);
}

TCSProJsonVariable::TCSProJsonVariable(TDataImport *importer, TCSProItem *sourceItem)
    : TGenericField(importer)
    , group(emptyText())
    , item(sourceItem)
    , optionalAtStart(optional)
{
}

TCSProJsonVariable::~TCSProJsonVariable() = default;

bool TCSProJsonVariable::isMissing()
{
    return cspro::isMissing(*this, item);
}

bool TCSProJsonVariable::isNotApplicable()
{
    return cspro::isNotApplicable(*this, item);
}

bool TCSProJsonVariable::isBlank()
{
    return cspro::isBlank(*this);
}

QString TCSProJsonVariable::getGroup()
{
    return group;
}
