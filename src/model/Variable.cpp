#include "model/Variable.h"

#include "model/Append_p.h"
#include "model/Metadata.h"

TVpVariable::TVpVariable()
    : range(new QList<Range *>)
    , valueLabelElementList(new QList<ValueLabelElement *>)
    , metadataVariables(new MetadataVariables)
{
}

// clang-format off
TVpVariable::TVpVariable(const TVpVariable &other) = default;
TVpVariable &TVpVariable::operator=(const TVpVariable &other) = default;
TVpVariable::~TVpVariable() = default;
TVpVariable::TVpVariable(TVpVariable && /*other*/) { }

Range::Range() = default;
Range::Range(Range && /*other*/) { }

ValueLabelElement::ValueLabelElement() = default;
ValueLabelElement::ValueLabelElement(const ValueLabelElement &other) = default;
ValueLabelElement &ValueLabelElement::operator=(const ValueLabelElement &other) = default;
ValueLabelElement::~ValueLabelElement() = default;
ValueLabelElement::ValueLabelElement(ValueLabelElement && /*other*/) { }

VarWipChoice::VarWipChoice() = default;
VarWipChoice::VarWipChoice(const VarWipChoice &other) = default;
VarWipChoice &VarWipChoice::operator=(const VarWipChoice &other) = default;
VarWipChoice::~VarWipChoice() = default;
VarWipChoice::VarWipChoice(VarWipChoice && /*other*/) { }

// place in the hierarchy
QString TVpVariable::getEntity() const { return entity; }
void TVpVariable::setEntity(const QString &newValue) { entity = newValue; }
void TVpVariable::setQStrEntity(const QString &newValue) { setEntity(newValue); }
TVpEntity *TVpVariable::getParent() const { return parent; }
void TVpVariable::setParent(TVpEntity *newValue) { parent = newValue; }
QString TVpVariable::getPath() const { return path; }
void TVpVariable::setPath(const QString &newValue) { path = newValue; }
void TVpVariable::setQStrPath(const QString &newValue) { setPath(newValue); }
QString TVpVariable::getStorage() const { return storage; }
void TVpVariable::setStorage(const QString &newValue) { storage = newValue; }
void TVpVariable::setQStrStorage(const QString &newValue) { setStorage(newValue); }
QString TVpVariable::getFullName() const { return fullName; }
void TVpVariable::setFullName(const QString &newValue) { fullName = newValue; }
void TVpVariable::setQStrFullName(const QString &newValue) { setFullName(newValue); }
// names and labels
QString TVpVariable::getName() const { return name; }
void TVpVariable::setName(const QString &newValue) { name = newValue; }
void TVpVariable::setQStrName(const QString &newValue) { setName(newValue); }
QString TVpVariable::getAlias() const { return alias; }
void TVpVariable::setAlias(const QString &newValue) { alias = newValue; }
void TVpVariable::setQStrAlias(const QString &newValue) { setAlias(newValue); }
QString TVpVariable::getLabel() const { return label; }
void TVpVariable::setLabel(const QString &newValue) { label = newValue; }
void TVpVariable::setQStrLabel(const QString &newValue) { setLabel(newValue); }
QString TVpVariable::getGroup() const { return group; }
void TVpVariable::setGroup(const QString &newValue) { group = newValue; }
void TVpVariable::setQStrGroup(const QString &newValue) { setGroup(newValue); }
QString TVpVariable::getVarType() const { return varType; }
void TVpVariable::setVarType(const QString &newValue) { varType = newValue; }
void TVpVariable::setQStrVarType(const QString &newValue) { setVarType(newValue); }
QString TVpVariable::getDocumentation() const { return documentation; }
void TVpVariable::setDocumentation(const QString &newValue) { documentation = newValue; }
void TVpVariable::setQStrDocumentation(const QString &newValue) { setDocumentation(newValue); }
// place in the source
QString TVpVariable::getRecType() const { return recType; }
void TVpVariable::setRecType(const QString &newValue) { recType = newValue; }
void TVpVariable::setQStrRecType(const QString &newValue) { setRecType(newValue); }
QString TVpVariable::getField() const { return field; }
void TVpVariable::setField(const QString &newValue) { field = newValue; }
void TVpVariable::setQStrField(const QString &newValue) { setField(newValue); }
int TVpVariable::getStart() const { return start; }
void TVpVariable::setStart(int newValue) { start = newValue; }
QString TVpVariable::getDataProvider() const { return dataProvider; }
void TVpVariable::setDataProvider(const QString &newValue) { dataProvider = newValue; }
void TVpVariable::setQStrDataProvider(const QString &newValue) { setDataProvider(newValue); }
int TVpVariable::getTag() const { return tag; }
void TVpVariable::setTag(int newValue) { tag = newValue; }
int TVpVariable::getNotappl() const { return notappl; }
void TVpVariable::setNotappl(int newValue) { notappl = newValue; }
int TVpVariable::getMissing() const { return missing; }
int TVpVariable::getTvpMissing() const { return getMissing(); }
void TVpVariable::setMissing(int newValue) { missing = newValue; }
int TVpVariable::getDecimals() const { return decimals; }
void TVpVariable::setDecimals(int newValue) { decimals = newValue; }
int TVpVariable::getSize() const { return size; }
void TVpVariable::setSize(int newValue) { size = newValue; }
int TVpVariable::getFieldSize() const { return fieldSize; }
void TVpVariable::setFieldSize(int newValue) { fieldSize = newValue; }
int TVpVariable::getFieldRelativePosition() const { return fieldRelativePosition; }
void TVpVariable::setFieldRelativePosition(int newValue) { fieldRelativePosition = newValue; }
QString TVpVariable::getDatasetID() const { return datasetID; }
void TVpVariable::setDatasetID(const QString &newValue) { datasetID = newValue; }
void TVpVariable::setQStrDatasetID(const QString &newValue) { setDatasetID(newValue); }
QString TVpVariable::getFileName() const { return fileName; }
void TVpVariable::setFileName(const QString &newValue) { fileName = newValue; }
void TVpVariable::setQStrFileName(const QString &newValue) { setFileName(newValue); }
// values
QList<Range *> *TVpVariable::getRange() const { return range; }
void TVpVariable::setRange(QList<Range *> *newValue) { range = newValue; }
void TVpVariable::addItemRange(Range *added) { append(range, added); }
QList<ValueLabelElement *> *TVpVariable::getValueLabelElementList() const { return valueLabelElementList; }
void TVpVariable::setValueLabelElementList(QList<ValueLabelElement *> *newValue) { valueLabelElementList = newValue; }
void TVpVariable::addValueLabelElement(ValueLabelElement *added) { append(valueLabelElementList, added); }
VarWipChoice TVpVariable::getVarWipChoice() const { return varWipChoice; }
void TVpVariable::setVarWipChoice(const VarWipChoice &newValue) { varWipChoice = newValue; }
MetadataVariables *TVpVariable::getMetadataVariables() const { return metadataVariables; }
void TVpVariable::setMetadataVariables(MetadataVariables *newValue) { metadataVariables = newValue; }
int TVpVariable::getLevel() const { return level; }
void TVpVariable::setLevel(int newValue) { level = newValue; }
int TVpVariable::getChecked() const { return checked ? 1 : 0; }
void TVpVariable::setChecked(int newValue) { checked = newValue != 0; }
bool TVpVariable::getLocal() const { return local; }
void TVpVariable::setLocal(bool newValue) { local = newValue; }
bool TVpVariable::getConsistency() const { return consistency; }
void TVpVariable::setConsistency(bool newValue) { consistency = newValue; }

double Range::getRangeMin() const { return rangeMin; }
void Range::setRangeMin(double newValue) { rangeMin = newValue; }
double Range::getRangeMax() const { return rangeMax; }
void Range::setRangeMax(double newValue) { rangeMax = newValue; }

QString ValueLabelElement::getValue() const { return value; }
void ValueLabelElement::setValue(QString newValue) { value = std::move(newValue); }
QString ValueLabelElement::getLabel() const { return label; }
void ValueLabelElement::setLabel(const QString &newValue) { label = newValue; }

QString VarWipChoice::getRecType() const { return recType; }
void VarWipChoice::setRecType(const QString &newValue) { recType = newValue; }
QString VarWipChoice::getField() const { return field; }
void VarWipChoice::setField(const QString &newValue) { field = newValue; }
QString VarWipChoice::getDataProvider() const { return dataProvider; }
void VarWipChoice::setDataProvider(const QString &newValue) { dataProvider = newValue; }
int VarWipChoice::getStart() const { return start; }
void VarWipChoice::setStart(int newValue) { start = newValue; }
QString VarWipChoice::getFormat() const { return format; }
void VarWipChoice::setFormat(const QString &newValue) { format = newValue; }
// clang-format on
