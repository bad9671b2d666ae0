#include "model/Metadata.h"

#include "model/Append_p.h"
#include "model/Entity.h"

#include <QDir>

Dictionary::Dictionary()
    : root(new TVpEntity)
    , metadataDictionary(new MetadataDictionary)
{
}

MetadataDictionary::MetadataDictionary()
    : datasource(new Datasource)
    , lookUp(new QList<LookupDictionary *>)
{
}

Datasource::Datasource()
    : metadataDataSource(new MetadataDataSource)
{
}

MetadataVariables::MetadataVariables()
    : range(new QList<Range *>)
{
}

// clang-format off
Dictionary::Dictionary(const Dictionary &other) = default;
Dictionary &Dictionary::operator=(const Dictionary &other) = default;
Dictionary::Dictionary(Dictionary && /*other*/) { }

MetadataDictionary::MetadataDictionary(const MetadataDictionary &other) = default;
MetadataDictionary &MetadataDictionary::operator=(const MetadataDictionary &other) = default;
MetadataDictionary::MetadataDictionary(MetadataDictionary && /*other*/) { }

Datasource::Datasource(const Datasource &other) = default;
Datasource &Datasource::operator=(const Datasource &other) = default;
Datasource::~Datasource() = default;
Datasource::Datasource(Datasource && /*other*/) { }

MetadataDataSource::MetadataDataSource() = default;
MetadataDataSource::MetadataDataSource(const MetadataDataSource &other) = default;
MetadataDataSource &MetadataDataSource::operator=(const MetadataDataSource &other) = default;
MetadataDataSource::~MetadataDataSource() = default;
MetadataDataSource::MetadataDataSource(MetadataDataSource && /*other*/) { }

MetadataVariables::MetadataVariables(const MetadataVariables &other) = default;
MetadataVariables &MetadataVariables::operator=(const MetadataVariables &other) = default;
MetadataVariables::~MetadataVariables() = default;
MetadataVariables::MetadataVariables(MetadataVariables && /*other*/) { }

LookupDictionary::LookupDictionary() = default;
LookupDictionary::LookupDictionary(const LookupDictionary &other) = default;
LookupDictionary &LookupDictionary::operator=(const LookupDictionary &other) = default;
LookupDictionary::~LookupDictionary() = default;
LookupDictionary::LookupDictionary(LookupDictionary && /*other*/) { }

TVpEntity *Dictionary::getRoot() const { return root; }
void Dictionary::setRoot(TVpEntity *newValue) { root = newValue; }
MetadataDictionary *Dictionary::getMetadataDictionary() const { return metadataDictionary; }
void Dictionary::setMetadataDictionary(MetadataDictionary *newValue) { metadataDictionary = newValue; }

Datasource *MetadataDictionary::getDatasource() const { return datasource; }
void MetadataDictionary::setDatasource(Datasource *newValue) { datasource = newValue; }
QList<LookupDictionary *> *MetadataDictionary::getLookUp() const { return lookUp; }
void MetadataDictionary::setLookUp(QList<LookupDictionary *> *newValue) { lookUp = newValue; }
void MetadataDictionary::addLookUp(LookupDictionary *added) { append(lookUp, added); }

QString Datasource::getType() const { return type; }
void Datasource::setType(const QString &newValue) { type = newValue; }
QString Datasource::getFile() const { return QDir::toNativeSeparators(file); }
void Datasource::setFile(const QString &newValue) { file = newValue; }
MetadataDataSource *Datasource::getMetadataDataSource() const { return metadataDataSource; }
void Datasource::setMetadataDataSource(MetadataDataSource *newValue) { metadataDataSource = newValue; }

bool MetadataDataSource::getCsvHasHeader() const { return csvHasHeader; }
void MetadataDataSource::setCsvHasHeader(bool newValue) { csvHasHeader = newValue; }
QString MetadataDataSource::getCsvSeparator() const { return csvSeparator; }
void MetadataDataSource::setCsvSeparator(QString newValue) { csvSeparator = std::move(newValue); }
QStringList MetadataDataSource::getCsvFields() const { return csvFields; }
void MetadataDataSource::setCsvFields(const QStringList &newValue) { csvFields = newValue; }
void MetadataDataSource::addCsvFields(QString &added) { csvFields.append(added); }

QString MetadataVariables::getRecord() const { return record; }
void MetadataVariables::setRecord(const QString &newValue) { record = newValue; }
QString MetadataVariables::getField() const { return field; }
void MetadataVariables::setField(const QString &newValue) { field = newValue; }
int MetadataVariables::getStart() const { return start; }
void MetadataVariables::setStart(int newValue) { start = newValue; }
int MetadataVariables::getLength() const { return length; }
void MetadataVariables::setLength(int newValue) { length = newValue; }
bool MetadataVariables::getLookup() const { return lookup; }
void MetadataVariables::setLookup(bool newValue) { lookup = newValue; }
QList<Range *> *MetadataVariables::getRange() const { return range; }
void MetadataVariables::setRange(QList<Range *> *newValue) { range = newValue; }
void MetadataVariables::addItemRange(Range *added) { append(range, added); }

QString LookupDictionary::getName() const { return name; }
void LookupDictionary::setName(const QString &newValue) { name = newValue; }
QString LookupDictionary::getLabel() const { return label; }
void LookupDictionary::setLabel(const QString &newValue) { label = newValue; }
QString LookupDictionary::getFile() const { return file; }
void LookupDictionary::setFile(const QString &newValue) { file = newValue; }
QString LookupDictionary::getSeparator() const { return separator; }
void LookupDictionary::setSeparator(const QString &newValue) { separator = newValue; }
// clang-format on
