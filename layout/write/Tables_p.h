#ifndef LAYOUT_WRITE_TABLES_P_H
#define LAYOUT_WRITE_TABLES_P_H

#include "model/Layout.h"

#include <QVector>

/// The tables that the data of a layout have in other programs: one per record type.
namespace vanlayout
{

/// The table of a record type.
struct Table {
    int level = 0;                  ///< index into the layout's levels
    const Record *record = nullptr; ///< points into the layout, or to an empty record for a level without records
    QString name;                   ///< ASCII letters, digits, `_` and `-`; unique, ignoring case
    bool isKeyed = false; ///< whether the ids are a key: there are some, and a case has at most one such record
    int head = -1;        ///< index of the table to one row of which each row belongs; -1 if there is none
};

/// The tables of all record types, in the order of the file.
///
/// The name is the record's, with `_` for characters that are not allowed in file names or URLs, and followed by a
/// number if it is taken. A record without a name is `data`. A level that has ids and no records has a table of the
/// ids, with the name of the level.
///
/// The head of a level is its first record that is required and occurs once: a row of it exists for each case. All
/// other records of the level belong to it; it belongs to the head of the nearest level above that has one.
QVector<Table> tablesOf(const Layout &layout);

/// The column names of all ids of a level and of those above, as in columnsOf().
QStringList idNamesOf(const Layout &layout, int level);

/// The title of a layout in a language: \a given unless it is empty, else the label, else the name.
QString titleOf(const Layout &layout, const QString &given, const QString &language);

} // namespace vanlayout

#endif
