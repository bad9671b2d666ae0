#ifndef LAYOUT_LOAD_SQLITEPROGRAM_P_H
#define LAYOUT_LOAD_SQLITEPROGRAM_P_H

#include "load/Plan_p.h"

namespace vanlayout
{

/// The program for SQLite's command line: one script.
///
/// The lines are imported unchanged. For each table, all cells are cut from the lines at once; the few texts that are
/// not simply digits are then read one by one, so that the rules for numbers cost nothing for the others.
QVector<LoadFile> sqliteProgram(const LoadPlan &plan);

/// True for names that tables of users cannot have: SQLite's own begin with `sqlite_`.
bool isReservedInSqlite(const QString &name);

} // namespace vanlayout

#endif
