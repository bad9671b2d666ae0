#ifndef MODEL_ENTITY_H
#define MODEL_ENTITY_H

#include "model_vanadmin_export.h"

#include <QList>
#include <QPair>
#include <QString>

#include <string>

class TVpVariable;

#ifdef __GNUC__
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

// clang-format off
/// One node of the hierarchy of a census or survey, such as a household, as the calling application describes it.
///
/// The library only stores it: no field has an effect. Lists and their entries belong to the caller; no destructor
/// frees them. Null pointers are stored like any other pointer and never followed. Each `setQStr` operation does the
/// same as the setter next to it. The `add` operations append one entry; they make the list if there is none.
///
/// Different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT TVpEntity
{
public:
    /// Has new empty lists of children and variables.
    TVpEntity();
    /// Copies share the lists.
    TVpEntity(const TVpEntity &other);
    TVpEntity &operator=(const TVpEntity &other);
    /// Takes nothing from its argument: the defaults, and no list until something is appended.
    TVpEntity(TVpEntity &&other);
    // Not virtual, although the class has a virtual operation.
    ~TVpEntity();

    // Virtual operations, in slot order.
    virtual std::string toString(); ///< the name, UTF-8

    /// Returns the first entity of this name, which may be this entity or one below it. Parents come before their
    /// children. The search is case-sensitive.
    ///
    /// The result is never null: a failed search returns a new entity named "nullEntity". One such entity is made for
    /// each entity that is visited, even if the search succeeds, and stays alive. The returned entity belongs to the
    /// caller. An entity that is its own ancestor is visited once.
    TVpEntity *findEntity(QString wanted);

    // names and labels
    QString getName() const;                                         void setName(const QString &newValue); void setQStrName(const QString &newValue);
    QString getAlias() const;                                        void setAlias(const QString &newValue); void setQStrAlias(const QString &newValue);
    QString getLabel() const;                                        void setLabel(const QString &newValue); void setQStrLabel(const QString &newValue);
    bool getSelectable() const;                                      void setSelectable(bool newValue);
    QString getRefCode() const;                                      void setRefCode(const QString &newValue);
    QString getRefLabel() const;                                     void setRefLabel(const QString &newValue);
    int getTag() const;                                              void setTag(int newValue);
    QString getParent() const;                                       void setParent(QString newValue);
    QString getFileName() const;                                     void setFileName(const QString &newValue); void setQStrFileName(const QString &newValue);
    // Objects that belong to the entity.
    QList<TVpEntity *> *getChildren() const;                         void setChildren(QList<TVpEntity *> *newValue); void addChildren(TVpEntity *added);
    QList<TVpVariable *> *getVariables() const;                      void setVariables(QList<TVpVariable *> *newValue); void addVariables(TVpVariable *added);
    // size and kind
    int getLevel() const;                                            void setLevel(int newValue);
    qint32 getNrElements() const;                                    void setNrElements(qint32 newValue);
    bool getSequence() const;                                        void setSequence(bool newValue);
    bool getSdc() const;                                             void setSdc(bool newValue);
    QString getRecType() const;                                      void setRecType(const QString &newValue);
    QString getDocumentationEntity() const;                          void setDocumentationEntity(const QString &newValue); void setQStrDocumentation(const QString &newValue);
    QString getWeightVariable() const;                               void setWeightVariable(const QString &newValue);
    bool getSensitiveEntity() const;                                 void setSensitiveEntity(bool newValue);
    bool getIsvirtual() const;                                       void setIsvirtual(bool newValue);
    bool getCheckDelete() const;                                     void setCheckDelete(bool newValue);
    QString getPath() const;                                         void setPath(const QString &newValue);
    QList<QList<QPair<QString, QString>> *> *getChildAreas() const;  void setChildAreas(QList<QList<QPair<QString, QString>> *> *newValue);

private:
    friend struct TestAccess;

    QString name;
    QString alias;
    QString label;
    bool selectable = false;
    QString refCode;
    QString refLabel;
    int tag = 0;
    QString parent;                                                ///< the parent's name, not a pointer
    QString fileName;
    QList<TVpEntity *> *children = nullptr;                        ///< not released
    QList<TVpVariable *> *variables = nullptr;                     ///< not released
    int level = 0;                                                 ///< 0 until set
    qint32 nrElements = 0;                                         ///< number of elements; 0 until set
    bool flag1 = false;                                            ///< carried; never read
    bool sequence = false;
    bool sdc = false;
    QString recType;                                               ///< record type
    QString documentationEntity;
    QString weightVariable;
    bool sensitiveEntity = false;
    bool isvirtual = false;
    bool checkDelete = false;
    QString path;
    QList<QList<QPair<QString, QString>> *> *childAreas = nullptr; ///< null until set; not released
};
// clang-format on

#ifdef __GNUC__
#pragma GCC diagnostic pop
#endif

#endif
