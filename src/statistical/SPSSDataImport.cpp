#include "statistical/SPSSDataImport.h"

#include "import/Constants.h"
#include "statistical/StatisticalImport_p.h"

namespace
{

const QLatin1String providerType("SPSS");

using Common = statistical::CommonImport<TSPSSDataImport>;

} // namespace

TSPSSDataImport::TSPSSDataImport(QString fileName)
    : TDataImport(std::move(fileName))
{
    initDataImport();
}

TSPSSDataImport::TSPSSDataImport() = default;
TSPSSDataImport::TSPSSDataImport(const TSPSSDataImport &other) = default;
TSPSSDataImport &TSPSSDataImport::operator=(const TSPSSDataImport &other) = default;

TSPSSDataImport::TSPSSDataImport(TSPSSDataImport && /*other*/)
    : TSPSSDataImport()
{
}

TSPSSDataImport::~TSPSSDataImport() = default;

bool TSPSSDataImport::isReadingBuffered() const
{
    return readsBuffered;
}

void TSPSSDataImport::setReadingBuffered(bool on)
{
    readsBuffered = on;
}

QString TSPSSDataImport::getDataProviderId()
{
    return providerType + Vocabulary::Underscore + sourceName;
}

QString TSPSSDataImport::getDataProviderType()
{
    return providerType;
}

void TSPSSDataImport::releaseContents()
{
    Common::forget(this);
    TDataImport::releaseContents();
}

bool TSPSSDataImport::openFile()
{
    // The variables of a former opening stay, so every field occurs twice after a second opening.
    openDataImport();
    stateValue = 1.0;
    openRead(getSourceName());
    return true;
}

QStringList *TSPSSDataImport::selectLayoutSource()
{
    return TDataImport::selectLayoutSource();
}

void TSPSSDataImport::openRead(QString path)
{
    const bool isBuffered = readsBuffered || report;
    statistical::Reading file(statistical::spss, path,
                              isBuffered ? statistical::Buffering::on : statistical::Buffering::off);
    Common::read(this, file); // a failure is silent
}

statistical::HandlerRunner *TSPSSDataImport::outsideParse()
{
    static statistical::SingleCalls calls(statistical::spss);
    return &calls;
}

int TSPSSDataImport::handleValueLabel(const char *labelSet, readstat_value_s value, const char *label, void *context)
{
    if (!statistical::isSupported(value))
        statistical::endAtUnsupportedType("SPSSDataImport", __LINE__);
    return Common::handleValueLabel(static_cast<TSPSSDataImport *>(context), labelSet, value, label);
}

int TSPSSDataImport::handleVariable(int /*index*/, readstat_variable_s *variable, const char *labelSet, void *context)
{
    return Common::handleVariable(static_cast<TSPSSDataImport *>(context), variable, labelSet);
}

TSPSSVariable::TSPSSVariable(TDataImport *importer)
    : TGenericField(importer)
{
}

TSPSSVariable::~TSPSSVariable() = default;

bool TSPSSVariable::isMissing()
{
    return true;
}

bool TSPSSVariable::isNotApplicable()
{
    return false;
}

bool TSPSSVariable::isBlank()
{
    return statistical::isBlank(*this);
}
