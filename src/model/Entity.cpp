#include "model/Entity.h"

#include "model/Append_p.h"

#include <QSet>

#include <vector>

namespace
{

const QString nullEntityName = QStringLiteral("nullEntity");

TVpEntity *newNullEntity()
{
    auto *entity = new TVpEntity;
    entity->setName(nullEntityName);
    return entity;
}

// An entity on the way down to the one that is looked at.
struct Step {
    TVpEntity *entity;
    TVpEntity *fallback; ///< the result where neither it nor anything below it has the name
    int nextChild;
    bool hasEnteredChild;
};

} // namespace

TVpEntity::TVpEntity()
    : children(new QList<TVpEntity *>)
    , variables(new QList<TVpVariable *>)
{
}

TVpEntity::TVpEntity(const TVpEntity &other) = default;
TVpEntity &TVpEntity::operator=(const TVpEntity &other) = default;
TVpEntity::TVpEntity(TVpEntity && /*other*/) { }
TVpEntity::~TVpEntity() = default;

std::string TVpEntity::toString()
{
    return name.toStdString();
}

// A walk without recursion: hierarchies can be deep.
TVpEntity *TVpEntity::findEntity(QString wanted)
{
    std::vector<Step> way;
    QSet<const TVpEntity *> ancestors;
    TVpEntity *entity = this;
    TVpEntity *result = nullptr;
    while (true) {
        if (entity) {
            // Made for each entity that is looked at, found or not.
            way.push_back({ entity, newNullEntity(), 0, false });
            if (entity->name == wanted)
                return entity;
            ancestors.insert(entity);
        }
        Step &step = way.back();
        const QList<TVpEntity *> *list = step.entity->children;
        if (list && step.nextChild < list->size()) {
            entity = list->at(step.nextChild++);
            if (ancestors.contains(entity))
                entity = nullptr;
            step.hasEnteredChild |= entity != nullptr;
            continue;
        }
        // Who looks for the name of a failure finds the first one that a search below ends in.
        if (!step.hasEnteredChild && wanted == nullEntityName)
            return step.fallback;
        result = step.fallback;
        ancestors.remove(step.entity);
        way.pop_back();
        if (way.empty())
            return result;
        entity = nullptr;
    }
}

// clang-format off
// names and labels
QString TVpEntity::getName() const { return name; }
void TVpEntity::setName(const QString &newValue) { name = newValue; }
void TVpEntity::setQStrName(const QString &newValue) { setName(newValue); }
QString TVpEntity::getAlias() const { return alias; }
void TVpEntity::setAlias(const QString &newValue) { alias = newValue; }
void TVpEntity::setQStrAlias(const QString &newValue) { setAlias(newValue); }
QString TVpEntity::getLabel() const { return label; }
void TVpEntity::setLabel(const QString &newValue) { label = newValue; }
void TVpEntity::setQStrLabel(const QString &newValue) { setLabel(newValue); }
bool TVpEntity::getSelectable() const { return selectable; }
void TVpEntity::setSelectable(bool newValue) { selectable = newValue; }
QString TVpEntity::getRefCode() const { return refCode; }
void TVpEntity::setRefCode(const QString &newValue) { refCode = newValue; }
QString TVpEntity::getRefLabel() const { return refLabel; }
void TVpEntity::setRefLabel(const QString &newValue) { refLabel = newValue; }
int TVpEntity::getTag() const { return tag; }
void TVpEntity::setTag(int newValue) { tag = newValue; }
QString TVpEntity::getParent() const { return parent; }
void TVpEntity::setParent(QString newValue) { parent = std::move(newValue); }
QString TVpEntity::getFileName() const { return fileName; }
void TVpEntity::setFileName(const QString &newValue) { fileName = newValue; }
void TVpEntity::setQStrFileName(const QString &newValue) { setFileName(newValue); }
// what hangs on it
QList<TVpEntity *> *TVpEntity::getChildren() const { return children; }
void TVpEntity::setChildren(QList<TVpEntity *> *newValue) { children = newValue; }
void TVpEntity::addChildren(TVpEntity *added) { append(children, added); }
QList<TVpVariable *> *TVpEntity::getVariables() const { return variables; }
void TVpEntity::setVariables(QList<TVpVariable *> *newValue) { variables = newValue; }
void TVpEntity::addVariables(TVpVariable *added) { append(variables, added); }
// size and kind
int TVpEntity::getLevel() const { return level; }
void TVpEntity::setLevel(int newValue) { level = newValue; }
qint32 TVpEntity::getNrElements() const { return nrElements; }
void TVpEntity::setNrElements(qint32 newValue) { nrElements = newValue; }
bool TVpEntity::getSequence() const { return sequence; }
void TVpEntity::setSequence(bool newValue) { sequence = newValue; }
bool TVpEntity::getSdc() const { return sdc; }
void TVpEntity::setSdc(bool newValue) { sdc = newValue; }
QString TVpEntity::getRecType() const { return recType; }
void TVpEntity::setRecType(const QString &newValue) { recType = newValue; }
QString TVpEntity::getDocumentationEntity() const { return documentationEntity; }
void TVpEntity::setDocumentationEntity(const QString &newValue) { documentationEntity = newValue; }
void TVpEntity::setQStrDocumentation(const QString &newValue) { setDocumentationEntity(newValue); }
QString TVpEntity::getWeightVariable() const { return weightVariable; }
void TVpEntity::setWeightVariable(const QString &newValue) { weightVariable = newValue; }
bool TVpEntity::getSensitiveEntity() const { return sensitiveEntity; }
void TVpEntity::setSensitiveEntity(bool newValue) { sensitiveEntity = newValue; }
bool TVpEntity::getIsvirtual() const { return isvirtual; }
void TVpEntity::setIsvirtual(bool newValue) { isvirtual = newValue; }
bool TVpEntity::getCheckDelete() const { return checkDelete; }
void TVpEntity::setCheckDelete(bool newValue) { checkDelete = newValue; }
QString TVpEntity::getPath() const { return path; }
void TVpEntity::setPath(const QString &newValue) { path = newValue; }
QList<QList<QPair<QString, QString>> *> *TVpEntity::getChildAreas() const { return childAreas; }
void TVpEntity::setChildAreas(QList<QList<QPair<QString, QString>> *> *newValue) { childAreas = newValue; }
// clang-format on
