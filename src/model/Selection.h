#ifndef MODEL_SELECTION_H
#define MODEL_SELECTION_H

#include "import/Constants.h"
#include "model/Variable.h"
#include "model_vanadmin_export.h"

#include <QList>
#include <QModelIndex>
#include <QPair>
#include <QString>

#include <string>
#include <utility>
#include <vector>

/// An entity of the caller's layer; the library only passes pointers to it.
class TVanEntity;

// clang-format off
/// A node of the tree of areas by which part of a database is selected.
///
/// The caller that builds a tree frees it: this class frees neither the list of children nor the children.
///
/// Different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT SelectionTreeUnit
{
public:
    /// Has a new empty list of children.
    SelectionTreeUnit();
    /// Copies share the list of children.
    SelectionTreeUnit(const SelectionTreeUnit &other);
    SelectionTreeUnit &operator=(const SelectionTreeUnit &other);
    /// A true move: the argument loses its texts, areas and properties. The list of children is shared.
    SelectionTreeUnit(SelectionTreeUnit &&other);
    SelectionTreeUnit &operator=(SelectionTreeUnit &&other);
    ~SelectionTreeUnit();

    QList<SelectionTreeUnit *> *getChildren() const;                         void setChildren(QList<SelectionTreeUnit *> *newValue); void addChildren(SelectionTreeUnit *added);
    QList<QPair<QString, int>> getInfoProperties() const;                    void setInfoProperties(const QList<QPair<QString, int>> &newValue);
    std::vector<std::pair<std::string, std::string>> getChildAreas() const;  void setChildAreas(std::vector<std::pair<std::string, std::string>> newValue);
    std::pair<std::string, std::string> getArea() const;                     void setArea(std::pair<std::string, std::string> newValue);
    TVanEntity *getChild() const;                                            void setChild(TVanEntity *newValue);
    TVanEntity *getParent() const;                                           void setParent(TVanEntity *newValue);
    QString getCode() const;                                                 void setCode(const QString &newValue);
    QString getCodeEntity() const;                                           void setCodeEntity(const QString &newValue);
    QString getName() const;                                                 void setName(const QString &newValue);
    int getLevel() const;                                                    void setLevel(int newValue);
    int getCounter() const;                                                  void setCounter(int newValue);
    Qt::CheckState getUnitState() const;                                     void setUnitState(const Qt::CheckState &newValue);
    eSelectionView getUnitView() const;                                      void setUnitView(const eSelectionView &newValue);
    bool getExpanded() const;                                                void setExpanded(bool newValue);
    QModelIndex getIndex() const;                                            void setIndex(const QModelIndex &newValue);

private:
    friend struct TestAccess;

    QList<SelectionTreeUnit *> *children = nullptr;              ///< not released
    QList<QPair<QString, int>> infoProperties;                   ///< name and number pairs that are shown
    std::vector<std::pair<std::string, std::string>> childAreas; ///< the areas below
    std::pair<std::string, std::string> area;                    ///< the unit's own area
    TVanEntity *child = nullptr;                                 ///< null until set; not owned
    TVanEntity *parent = nullptr;                                ///< null until set; not owned
    QString code;
    QString codeEntity;                                          ///< code of the entity
    QString name;
    int level = 0;
    int counter = 1;
    Qt::CheckState unitState = Qt::Unchecked;                    ///< stored only: no other unit changes with it
    eSelectionView unitView = svDefault;
    bool expanded = false;
    QModelIndex index;
};

/// A node of the tree of variables with check marks.
///
/// The caller that builds a tree frees it: this class frees neither the list of children nor the children.
///
/// Different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT StructVariableItem
{
public:
    /// Has a new empty list of children.
    StructVariableItem();
    /// Copies share the list of children.
    StructVariableItem(const StructVariableItem &other);
    StructVariableItem &operator=(const StructVariableItem &other);
    /// Takes nothing from its argument: a default variable, and no list until something is appended.
    StructVariableItem(StructVariableItem &&other);
    ~StructVariableItem();

    int getLevel() const;                              void setLevel(int newValue);
    bool getChecked() const;                           void setChecked(bool newValue);
    TVpVariable getData() const;                       void setData(const TVpVariable &newValue);
    QList<StructVariableItem *> *getChildren() const;  void setChildren(QList<StructVariableItem *> *newValue); void addChildren(StructVariableItem *&added);

private:
    friend struct TestAccess;

    int level = 0;                                   ///< 0 until set
    bool checked = false;                            ///< false until set
    TVpVariable data;
    QList<StructVariableItem *> *children = nullptr; ///< not released
};
// clang-format on

#endif
