#include "model/Entity.h"

#include "model/Append_p.h"
#include "util/PreOrderWalk_p.h"

#include <QSet>

namespace
{

const QString nullEntityName = QStringLiteral("nullEntity");

TVpEntity *newNullEntity()
{
    auto *entity = new TVpEntity;
    entity->setName(nullEntityName);
    return entity;
}

// An entity as an entry of its parent's list of children.
struct Place {
    TVpEntity *entity = nullptr;
    const QList<TVpEntity *> *siblings = nullptr; ///< null for the entity that the search starts at
    int number = 0;                               ///< its index in that list

    explicit operator bool() const { return entity; }
};

// An entity and everything below it. Null entries are skipped, and so is an entity that is its own ancestor.
class Hierarchy
{
public:
    using Node = Place;

    Place firstBelow(const Place &place)
    {
        ancestors.insert(place.entity);
        return firstOf(place.entity->getChildren(), 0);
    }
    Place after(const Place &place)
    {
        ancestors.remove(place.entity);
        return firstOf(place.siblings, place.number + 1);
    }

private:
    // The first entry to visit from that number on.
    Place firstOf(const QList<TVpEntity *> *entities, int number) const
    {
        for (; entities && number < entities->size(); ++number) {
            if (entities->at(number) && !ancestors.contains(entities->at(number)))
                return { entities->at(number), entities, number };
        }
        return {};
    }

    QSet<const TVpEntity *> ancestors;
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

TVpEntity *TVpEntity::findEntity(QString wanted)
{
    // One entity is made for each that is visited, before the names are compared.
    TVpEntity *const ofThisEntity = newNullEntity();
    TVpEntity *made = ofThisEntity;
    Hierarchy hierarchy;
    PreOrderWalk walk(hierarchy, Place{ this });
    while (walk.node().entity->name != wanted) {
        if (!walk.goBelow()) {
            // A search for the name "nullEntity" finds the entity that is made when the first search below ends.
            if (wanted == nullEntityName)
                return made;
            if (!walk.goOn())
                return ofThisEntity;
        }
        made = newNullEntity();
    }
    return walk.node().entity;
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
// Objects that belong to the entity.
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
