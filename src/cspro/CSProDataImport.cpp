#include "cspro/CSProDataImport.h"

#include "cspro/CSProImportBody_p.h"
#include "cspro/CSPro_p.h"
#include "import/Constants.h"
#include "util/DebugLog_p.h"

namespace
{

const QLatin1String providerType("CSPRO");

} // namespace

TCSProDataImport::TCSProDataImport(QString fileName)
    : TCSProImportBase(std::move(fileName))
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

void TCSProDataImport::setDecimalAnswer(DecimalAnswerFunction answer)
{
    decimalAnswer = std::move(answer);
}

void TCSProDataImport::releaseContents()
{
    dictionary = nullptr;
    TCSProImportBase::releaseContents();
}

QString TCSProDataImport::getDataProviderId()
{
    return providerType + Vocabulary::Underscore + sourceName;
}

QString TCSProDataImport::getDataProviderType()
{
    return providerType;
}

QStringList *TCSProDataImport::selectLayoutSource()
{
    debugLine("TCSProDataImport - selectLayoutSource");
    return TDataImport::selectLayoutSource();
}

CSProDictionary *TCSProDataImport::currentDictionary() const
{
    return dictionary;
}

void TCSProDataImport::readNewDictionary(QString fileName)
{
    renewDictionary();
    dictionary->ownAnswer = decimalAnswer;
    const auto atEnd = qScopeGuard([read = dictionary] { read->ownAnswer = nullptr; });
    cspro::readDictionary(*dictionary, std::move(fileName), report, readProblem);
}

TCSProFieldBase *TCSProDataImport::newField(TCSProItem *item)
{
    return new TCSProVariable(this, item);
}

const TCSProItem *TCSProDataImport::itemOf(TGenericField *field) const
{
    const auto *variable = dynamic_cast<TCSProVariable *>(field);
    return variable ? variable->item : nullptr;
}

// The former dictionary stays alive: fields point to its items.
void TCSProDataImport::renewDictionary()
{
    dictionary = cspro::newDictionary<TCSPro>(*kept);
}

TCSProVariable::TCSProVariable(TDataImport *importer, TCSProItem *sourceItem)
    : TCSProFieldBase(importer, sourceItem)
{
}

TCSProVariable::~TCSProVariable() = default;
