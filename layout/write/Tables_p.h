#ifndef LAYOUT_WRITE_TABLES_P_H
#define LAYOUT_WRITE_TABLES_P_H

#include "model/Layout.h"

#include <QVector>

/// The tables that the data of a layout are in other programs: one a record type.
namespace vanlayout
{

/// The table of a record type.
struct Table {
    int level = 0;                  ///< index into the layout's levels
    const Record *record = nullptr; ///< points into the layout; to an empty one for a level without records
    QString name;                   ///< letters of ASCII, digits, `_` and `-`; unique without regard to case
    bool isKeyed = false; ///< whether the ids are a key: there are some, and a case has one such record at most
    int head = -1;        ///< index of the table that each row belongs to one row of; -1 where there is none
};

/// The tables of all record types, in the order of the file.
///
/// The name is the record's; one that a file or a web address could not bear has `_` in place of each other character,
/// and a number behind it where it is taken. A record without a name is `data`.
/// A level that has ids and no records has a table of the ids, with the name of the level.
///
/// The head of a level is its first record that is required and occurs once: a row of it exists for each case. All
/// other records of the level belong to it; it belongs to the head of the nearest level above that has one.
QVector<Table> tablesOf(const Layout &layout);

/// The names of the columns of all ids of a level and of those above, as columnsOf() has them.
QStringList idNamesOf(const Layout &layout, int level);

/// The title of a layout in a language: \a given where it is not empty, else the label, else the name.
QString titleOf(const Layout &layout, const QString &given, const QString &language);

} // namespace vanlayout

#endif
