#ifndef LAYOUT_LOAD_POSTGRESQLPROGRAM_P_H
#define LAYOUT_LOAD_POSTGRESQLPROGRAM_P_H

#include "load/Plan_p.h"

namespace vanlayout
{

/// The program for PostgreSQL: a script for psql.
///
/// The file goes to the server as a large object, because `\copy` reads neither a file with both kinds of line ends nor
/// a line `\.`. Its lines become a temporary table; each table is one INSERT from it. All is one transaction.
QVector<LoadFile> postgresqlProgram(const LoadPlan &plan);

/// The system columns: a table with one of their names cannot be created, even in quotation marks.
bool isReservedInPostgresql(const QString &name);

} // namespace vanlayout

#endif
