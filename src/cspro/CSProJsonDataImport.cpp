#include "cspro/CSProJsonDataImport.h"

#include "cspro/CSProImportBody_p.h"
#include "cspro/CSProJson_p.h"
#include "import/Constants.h"
#include "util/DebugLog_p.h"

namespace
{

const QLatin1String providerType("CSPRO8");

} // namespace

TCSProJsonDataImport::TCSProJsonDataImport(QString fileName)
    : TCSProImportBase(std::move(fileName))
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

void TCSProJsonDataImport::releaseContents()
{
    dictionary = nullptr;
    TCSProImportBase::releaseContents();
}

QString TCSProJsonDataImport::getDataProviderId()
{
    return providerType + Vocabulary::Underscore + sourceName;
}

QString TCSProJsonDataImport::getDataProviderType()
{
    return providerType;
}

QStringList *TCSProJsonDataImport::selectLayoutSource()
{
    debugLine("TCSProJsonImport - selectLayoutSource");
    return TDataImport::selectLayoutSource();
}

CSProDictionary *TCSProJsonDataImport::currentDictionary() const
{
    return dictionary;
}

void TCSProJsonDataImport::readNewDictionary(QString fileName)
{
    renewDictionary();
    cspro::readDictionary(*dictionary, std::move(fileName), report, readProblem);
}

TCSProFieldBase *TCSProJsonDataImport::newField(TCSProItem *item)
{
    return new TCSProJsonVariable(this, item);
}

const TCSProItem *TCSProJsonDataImport::itemOf(TGenericField *field) const
{
    const auto *variable = dynamic_cast<TCSProJsonVariable *>(field);
    return variable ? variable->item : nullptr;
}

// The former dictionary stays alive: fields point to its items.
void TCSProJsonDataImport::renewDictionary()
{
    dictionary = cspro::newDictionary<TCSProJson>(*kept);
}

TCSProJsonVariable::TCSProJsonVariable(TDataImport *importer, TCSProItem *sourceItem)
    : TCSProFieldBase(importer, sourceItem)
{
}

TCSProJsonVariable::~TCSProJsonVariable() = default;
