#include "lookup/Reports.h"

#include "util/EmptyText_p.h"

namespace
{

LookupReportTexts usualTexts()
{
    LookupReportTexts texts;
    texts.title = QObject::tr("VanX Lookup Checking");
    texts.idCaption = QObject::tr("Lookup Identification");
    texts.labelCaption = QObject::tr("Lookup Label");
    texts.fileCaption = QObject::tr("Lookup File");
    return texts;
}

// Captions that are empty, and not null.
LookupReportTexts withoutCaptions()
{
    LookupReportTexts texts;
    texts.title = emptyText();
    texts.idCaption = emptyText();
    texts.labelCaption = emptyText();
    texts.fileCaption = emptyText();
    return texts;
}

} // namespace

ReportLookup::ReportLookup()
    : texts(usualTexts())
{
}

ReportLookup::ReportLookup(ReportLookup && /*other*/)
    : texts(withoutCaptions())
{
}

ReportLookup::~ReportLookup() = default;

QString ReportLookup::titleReport() const
{
    return texts.title;
}

QString ReportLookup::idLabel() const
{
    return texts.idCaption;
}

QString ReportLookup::labelLabel() const
{
    return texts.labelCaption;
}

QString ReportLookup::getLabelLabel() const
{
    return texts.labelCaption;
}

QString ReportLookup::dataFileLabel() const
{
    return texts.fileCaption;
}

QString ReportLookup::idValue() const
{
    return texts.id;
}

void ReportLookup::setIdValue(const QString &value)
{
    texts.id = value;
}

QString ReportLookup::labelValue() const
{
    return texts.label;
}

void ReportLookup::setLabelValue(const QString &value)
{
    texts.label = value;
}

QString ReportLookup::dataFileValue() const
{
    return texts.file;
}

void ReportLookup::setDataFileValue(const QString &value)
{
    texts.file = value;
}

std::map<QString, int *> ReportLookup::frequenciesTree() const
{
    return frequencies;
}

void ReportLookup::setFrequenciesTree(const std::map<QString, int *> &newFrequencies)
{
    frequencies = newFrequencies;
}

QStringList *ReportLookup::errorMessages() const
{
    return errorList;
}

void ReportLookup::setErrorMessages(QStringList *messages)
{
    errorList = messages;
}

econsistencyCheck ReportLookup::getConsistency() const
{
    return consistency;
}

void ReportLookup::setConsistency(const econsistencyCheck &mode)
{
    consistency = mode;
}

DtoReportRunCreation::DtoReportRunCreation()
    : texts(usualTexts())
{
}

DtoReportRunCreation::DtoReportRunCreation(DtoReportRunCreation && /*other*/)
    : texts(withoutCaptions())
{
}

DtoReportRunCreation::~DtoReportRunCreation() = default;

QString DtoReportRunCreation::titleReport() const
{
    return texts.title;
}

void DtoReportRunCreation::setTitleReport(const QString &title)
{
    texts.title = title;
}

QString DtoReportRunCreation::idLabel() const
{
    return texts.idCaption;
}

void DtoReportRunCreation::setIdLabel(const QString &caption)
{
    texts.idCaption = caption;
}

QString DtoReportRunCreation::labelLabel() const
{
    return texts.labelCaption;
}

void DtoReportRunCreation::setLabelLabel(const QString &caption)
{
    texts.labelCaption = caption;
}

QString DtoReportRunCreation::dataFileLabel() const
{
    return texts.fileCaption;
}

void DtoReportRunCreation::setDataFileLabel(const QString &caption)
{
    texts.fileCaption = caption;
}

QString DtoReportRunCreation::idValue() const
{
    return texts.id;
}

void DtoReportRunCreation::setIdValue(const QString &value)
{
    texts.id = value;
}

QString DtoReportRunCreation::labelValue() const
{
    return texts.label;
}

void DtoReportRunCreation::setLabelValue(const QString &value)
{
    texts.label = value;
}

QString DtoReportRunCreation::dataFileValue() const
{
    return texts.file;
}

void DtoReportRunCreation::setDataFileValue(const QString &value)
{
    texts.file = value;
}

QStringList *DtoReportRunCreation::errorMessages() const
{
    return errorList;
}

void DtoReportRunCreation::setErrorMessages(QStringList *messages)
{
    errorList = messages;
}

std::shared_ptr<TVanDataset> DtoReportRunCreation::getReport() const
{
    return report;
}

void DtoReportRunCreation::setReport(const std::shared_ptr<TVanDataset> &dataset)
{
    report = dataset;
}

std::shared_ptr<TVanDictionary> DtoReportRunCreation::getDic() const
{
    return dictionary;
}

void DtoReportRunCreation::setDic(const std::shared_ptr<TVanDictionary> &newDictionary)
{
    dictionary = newDictionary;
}

std::shared_ptr<TVanDatabaseCreationInfo> DtoReportRunCreation::getInfo() const
{
    return info;
}

void DtoReportRunCreation::setInfo(const std::shared_ptr<TVanDatabaseCreationInfo> &newInfo)
{
    info = newInfo;
}
