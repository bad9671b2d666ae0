#ifndef CSPRO_CSPROIMPORTBODY_P_H
#define CSPRO_CSPROIMPORTBODY_P_H

#include "cspro/CSProModel_p.h"
#include "cspro/CSProNotes_p.h"
#include "import/DataImport.h"
#include "import/GenericField.h"
#include "import/KeptObjects_p.h"
#include "import/LayoutNotes_p.h"
#include "util/Nines_p.h"

#include <QScopeGuard>
#include <QString>
#include <QStringList>

#include <memory>
#include <utility>

/// What the importers of the two CSPro dictionary forms do alike.
namespace cspro
{

/// A new dictionary of class \a Dictionary, kept with all that hangs on it.
template <typename Dictionary> Dictionary *newDictionary(KeptObjects &kept)
{
    auto made = std::make_unique<Dictionary>();
    Dictionary *dictionary = made.get();
    kept.add(dictionary, [dictionary] {
        freeContents(*dictionary);
        delete dictionary;
    });
    return made.release();
}

/// Reads the file at \a path into \a dictionary; \a report, where there is one, hears of it meanwhile. Sets \a problem
/// to why the file could not be read.
template <typename Dictionary>
void readDictionary(Dictionary &dictionary, QString path, ReadReport *report, QString &problem)
{
    // Reading may throw.
    const auto atEnd = qScopeGuard([&] {
        dictionary.report = nullptr;
        problem = dictionary.readProblem;
    });
    if (report && !reportMissingFile(*report, path))
        dictionary.report = report;
    dictionary.readFile(std::move(path));
}

/// Empties \a groups, made and kept first where it is null, and appends "name=type" for each record.
void listGroups(CSProDictionary &dictionary, QStringList *&groups, KeptObjects &kept);
/// The entry at \a index, or a null text outside of the list, which \a isOutside then says.
QString groupAt(const QStringList *groups, int index, bool &isOutside);
/// The index of the last record of type \a value, or of the first; -1 if there is none.
int lastRecordOfType(const CSProDictionary *dictionary, const QString &value);
int firstRecordOfType(const CSProDictionary *dictionary, const QString &value);
/// \a count copies of \a character; "" for none or fewer.
QString stringOfChar(QChar character, int count);

/// Whether the field's current value is its item's missing code, or is unset.
bool isMissing(const TGenericField &field, const TCSProItem *item);
/// Whether the field's current value is its item's not-applicable code.
bool isNotApplicable(const TGenericField &field, const TCSProItem *item);
/// Whether the field's current value is nothing but white space.
bool isBlank(const TGenericField &field);

/// Turns items into fields. What neighbours have in common, such as the value labels of the occurrences of an item, is
/// made once and shared.
class ItemDescriber
{
public:
    ItemDescriber();

    /// Fills the description of \a field from \a item: everything but the group.
    void describe(const TCSProItem &item, TGenericField &field);

private:
    struct Labels {
        QString text;
        QString minimum;
        QString maximum; ///< null where the bound without a value set holds
    };

    QString maximumWithoutValues(const TCSProItem &item);
    const Labels &labelsOf(const TCSProItem &item, eVanVarType type);

    Nines nines;
    Labels labels;
    QString labelsBuffer;                      ///< keeps its room from one item to the next
    const TCSProValueSet *labelsSet = nullptr; ///< the value set that `labels` were made from
    eVanVarType labelsType = vtNone;
};

/// Makes one field of class \a Variable for each item of \a dictionary and hands it to \a add, which keeps it. Where
/// \a importer is multiple, the field's group is the name of its item's record. \a report, where there is one, hears of
/// fields that differ from their items.
template <typename Variable, typename Add>
void makeFields(const CSProDictionary &dictionary, TDataImport *importer, ReadReport *report, Add add)
{
    ItemDescriber describer;
    const bool hasGroups = importer->isMultiple();
    const int count = dictionary.getItemsCount();
    for (int i = 0; i < count; ++i) {
        TCSProItem *item = dictionary.getItem(i);
        auto field = std::make_unique<Variable>(importer, item);
        if (hasGroups && item->record)
            field->group = item->record->name;
        describer.describe(*item, *field);
        if (report)
            tellOfDescription(*report, *item, dictionary.getItem(i - 1), *field);
        add(field.release());
    }
}

/// The item behind a field of class \a Variable; null for any other field.
template <typename Variable> const TCSProItem *itemBehind(TGenericField *field)
{
    const auto *variable = dynamic_cast<Variable *>(field);
    return variable ? variable->item : nullptr;
}

} // namespace cspro

#endif
