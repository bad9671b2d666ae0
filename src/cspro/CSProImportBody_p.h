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

/// Code that the importers of both CSPro dictionary forms share.
namespace cspro
{

/// Makes a dictionary of class \a Dictionary. \a kept frees it with its contents.
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

/// Reads the file at \a path into \a dictionary. Adds the notes to \a report unless it is null. Sets \a problem if the
/// system fails to read the file.
template <typename Dictionary>
void readDictionary(Dictionary &dictionary, QString path, ReadReport *report, QString &problem)
{
    // Reading may throw.
    const auto atEnd = qScopeGuard([&] {
        dictionary.setReport(nullptr);
        problem = dictionary.readProblem;
    });
    if (report && !reportMissingFile(*report, path))
        dictionary.setReport(report);
    dictionary.readFile(std::move(path));
}

/// Turns items into fields. Neighbours with the same value labels, such as the occurrences of an item, share them.
class ItemDescriber
{
public:
    ItemDescriber();

    /// Fills the description of \a field from \a item, except the group.
    void describe(const TCSProItem &item, TGenericField &field);

private:
    struct Labels {
        QString text;
        QString minimum;
        QString maximum; ///< null if the bound for an item without a value set applies
    };

    QString maximumWithoutValues(const TCSProItem &item);
    /// Returns the labels of an item with a value set: those of the item before it if both have the same.
    const Labels &labelsOf(const TCSProItem &item, eVanVarType type);
    bool hasLabelsOf(const TCSProItem &item, eVanVarType type) const;
    Labels makeLabels(const TCSProItem &item, eVanVarType type);

    Nines nines;
    Labels labels;
    QString labelsBuffer;                      ///< keeps its memory from one item to the next
    const TCSProValueSet *labelsSet = nullptr; ///< the value set that `labels` were made from
    eVanVarType labelsType = vtNone;
};

} // namespace cspro

#endif
