#ifndef LAYOUT_LOAD_LOAD_H
#define LAYOUT_LOAD_LOAD_H

#include "load/LoadOptions.h"
#include "model/Layout.h"

#include <QStringList>
#include <QVector>

#include <optional>

namespace vanlayout
{

/// The files of a load program, or the reason why there are none.
struct VANLAYOUT_EXPORT LoadProgram {
    QVector<LoadFile> files; ///< the file to run is the first
    QString problem;         ///< predicate without the name of the dictionary; empty if the program was made
};

/// The words for the targets, in the order of LoadTarget: "sqlite", "postgresql" ...
VANLAYOUT_EXPORT QStringList loadTargets();

/// The target with this word; none for another word.
VANLAYOUT_EXPORT std::optional<LoadTarget> loadTargetOf(const QString &word);

/// Makes the program that loads a data file with this layout into a target. The data file itself is not opened.
///
/// All targets make the same tables, with the same cells: one table for each record type, with the ids, the number of
/// the record within its case if the record repeats, and the items. A layout of a statistical file has no program,
/// because such a file holds its data.
VANLAYOUT_EXPORT LoadProgram makeLoadProgram(const Layout &layout, LoadTarget target, const LoadOptions &options = {});

} // namespace vanlayout

#endif
