#include "model/Selection.h"

#include "model/Append_p.h"

namespace
{

// Returns the value of a member, which is empty afterwards.
template <typename Value> Value taken(Value &from)
{
    return std::exchange(from, Value());
}

} // namespace

SelectionTreeUnit::SelectionTreeUnit()
    : children(new QList<SelectionTreeUnit *>)
{
}

SelectionTreeUnit::SelectionTreeUnit(SelectionTreeUnit &&other)
    : children(other.children)
    , infoProperties(taken(other.infoProperties))
    , childAreas(taken(other.childAreas))
    , area(taken(other.area))
    , child(other.child)
    , parent(other.parent)
    , code(taken(other.code))
    , codeEntity(taken(other.codeEntity))
    , name(taken(other.name))
    , level(other.level)
    , counter(other.counter)
    , unitState(other.unitState)
    , unitView(other.unitView)
    , expanded(other.expanded)
    , index(other.index)
{
}

SelectionTreeUnit &SelectionTreeUnit::operator=(SelectionTreeUnit &&other)
{
    children = other.children;
    infoProperties = taken(other.infoProperties);
    childAreas = taken(other.childAreas);
    area = taken(other.area);
    child = other.child;
    parent = other.parent;
    code = taken(other.code);
    codeEntity = taken(other.codeEntity);
    name = taken(other.name);
    level = other.level;
    counter = other.counter;
    unitState = other.unitState;
    unitView = other.unitView;
    expanded = other.expanded;
    index = other.index;
    return *this;
}

StructVariableItem::StructVariableItem()
    : children(new QList<StructVariableItem *>)
{
}

// clang-format off
SelectionTreeUnit::SelectionTreeUnit(const SelectionTreeUnit &other) = default;
SelectionTreeUnit &SelectionTreeUnit::operator=(const SelectionTreeUnit &other) = default;
SelectionTreeUnit::~SelectionTreeUnit() = default;

StructVariableItem::StructVariableItem(const StructVariableItem &other) = default;
StructVariableItem &StructVariableItem::operator=(const StructVariableItem &other) = default;
StructVariableItem::~StructVariableItem() = default;
StructVariableItem::StructVariableItem(StructVariableItem && /*other*/) { }

QList<SelectionTreeUnit *> *SelectionTreeUnit::getChildren() const { return children; }
void SelectionTreeUnit::setChildren(QList<SelectionTreeUnit *> *newValue) { children = newValue; }
void SelectionTreeUnit::addChildren(SelectionTreeUnit *added) { append(children, added); }
QList<QPair<QString, int>> SelectionTreeUnit::getInfoProperties() const { return infoProperties; }
void SelectionTreeUnit::setInfoProperties(const QList<QPair<QString, int>> &newValue) { infoProperties = newValue; }
std::vector<std::pair<std::string, std::string>> SelectionTreeUnit::getChildAreas() const { return childAreas; }
void SelectionTreeUnit::setChildAreas(std::vector<std::pair<std::string, std::string>> newValue) { childAreas = std::move(newValue); }
std::pair<std::string, std::string> SelectionTreeUnit::getArea() const { return area; }
void SelectionTreeUnit::setArea(std::pair<std::string, std::string> newValue) { area = std::move(newValue); }
TVanEntity *SelectionTreeUnit::getChild() const { return child; }
void SelectionTreeUnit::setChild(TVanEntity *newValue) { child = newValue; }
TVanEntity *SelectionTreeUnit::getParent() const { return parent; }
void SelectionTreeUnit::setParent(TVanEntity *newValue) { parent = newValue; }
QString SelectionTreeUnit::getCode() const { return code; }
void SelectionTreeUnit::setCode(const QString &newValue) { code = newValue; }
QString SelectionTreeUnit::getCodeEntity() const { return codeEntity; }
void SelectionTreeUnit::setCodeEntity(const QString &newValue) { codeEntity = newValue; }
QString SelectionTreeUnit::getName() const { return name; }
void SelectionTreeUnit::setName(const QString &newValue) { name = newValue; }
int SelectionTreeUnit::getLevel() const { return level; }
void SelectionTreeUnit::setLevel(int newValue) { level = newValue; }
int SelectionTreeUnit::getCounter() const { return counter; }
void SelectionTreeUnit::setCounter(int newValue) { counter = newValue; }
Qt::CheckState SelectionTreeUnit::getUnitState() const { return unitState; }
void SelectionTreeUnit::setUnitState(const Qt::CheckState &newValue) { unitState = newValue; }
eSelectionView SelectionTreeUnit::getUnitView() const { return unitView; }
void SelectionTreeUnit::setUnitView(const eSelectionView &newValue) { unitView = newValue; }
bool SelectionTreeUnit::getExpanded() const { return expanded; }
void SelectionTreeUnit::setExpanded(bool newValue) { expanded = newValue; }
QModelIndex SelectionTreeUnit::getIndex() const { return index; }
void SelectionTreeUnit::setIndex(const QModelIndex &newValue) { index = newValue; }

int StructVariableItem::getLevel() const { return level; }
void StructVariableItem::setLevel(int newValue) { level = newValue; }
bool StructVariableItem::getChecked() const { return checked; }
void StructVariableItem::setChecked(bool newValue) { checked = newValue; }
TVpVariable StructVariableItem::getData() const { return data; }
void StructVariableItem::setData(const TVpVariable &newValue) { data = newValue; }
QList<StructVariableItem *> *StructVariableItem::getChildren() const { return children; }
void StructVariableItem::setChildren(QList<StructVariableItem *> *newValue) { children = newValue; }
void StructVariableItem::addChildren(StructVariableItem *&added) { append(children, added); }
// clang-format on
