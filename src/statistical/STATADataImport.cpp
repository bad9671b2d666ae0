#include "statistical/STATADataImport.h"

#include "import/Constants.h"
#include "util/DebugLog_p.h"
#include "statistical/StatisticalImport_p.h"

namespace
{

const QLatin1String providerType("STATA");

using Common = statistical::CommonImport<TSTATADataImport>;

} // namespace

TSTATADataImport::TSTATADataImport(QString fileName)
    : TDataImport(std::move(fileName))
{
    initDataImport();
}

TSTATADataImport::TSTATADataImport() = default;
TSTATADataImport::TSTATADataImport(const TSTATADataImport &other) = default;
TSTATADataImport &TSTATADataImport::operator=(const TSTATADataImport &other) = default;

TSTATADataImport::TSTATADataImport(TSTATADataImport && /*other*/)
    : TSTATADataImport()
{
}

TSTATADataImport::~TSTATADataImport() = default;

bool TSTATADataImport::isReadingBuffered() const
{
    return readsBuffered;
}

void TSTATADataImport::setReadingBuffered(bool on)
{
    readsBuffered = on;
}

void TSTATADataImport::setErrorStream(std::FILE *stream)
{
    errorStream = stream;
}

QString TSTATADataImport::getDataProviderId()
{
    return providerType + Vocabulary::Underscore + sourceName;
}

QString TSTATADataImport::getDataProviderType()
{
    return providerType;
}

void TSTATADataImport::releaseContents()
{
    Common::forget(this);
    TDataImport::releaseContents();
}

bool TSTATADataImport::openFile()
{
    openDataImport();
    variables.clear();
    variablesByName.clear();
    stateValue = 1.0;
    openRead(getSourceName());
    return true;
}

QStringList *TSTATADataImport::selectLayoutSource()
{
    debugLine("TSTATADataImport - selectLayoutSource");
    return TDataImport::selectLayoutSource();
}

void TSTATADataImport::openRead(QString path)
{
    const bool isBuffered = readsBuffered || report;
    statistical::Reading file(statistical::stata, path,
                              isBuffered ? statistical::Buffering::on : statistical::Buffering::off);
    const readstat_error_t result = Common::read(this, file);
    if (result != READSTAT_OK && errorStream)
        std::fprintf(errorStream, "Error processing %s: %d\n", file.path().constData(), int(result));
}

statistical::HandlerRunner *TSTATADataImport::outsideParse()
{
    static statistical::SingleCalls calls(statistical::stata);
    return &calls;
}

int TSTATADataImport::handleValueLabel(const char *labelSet, readstat_value_s value, const char *label, void *context)
{
    if (!statistical::isSupported(value))
        statistical::endAtUnsupportedType("STATADataImport", __LINE__);
    return Common::handleValueLabel(static_cast<TSTATADataImport *>(context), labelSet, value, label);
}

int TSTATADataImport::handleVariable(int /*index*/, readstat_variable_s *variable, const char *labelSet, void *context)
{
    return Common::handleVariable(static_cast<TSTATADataImport *>(context), variable, labelSet);
}

TSTATAVariable::TSTATAVariable(TDataImport *importer)
    : TGenericField(importer)
{
}

TSTATAVariable::~TSTATAVariable() = default;

bool TSTATAVariable::isMissing()
{
    return missing;
}

bool TSTATAVariable::isNotApplicable()
{
    return false;
}

bool TSTATAVariable::isBlank()
{
    return statistical::isBlank(*this);
}
