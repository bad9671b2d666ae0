#ifndef LAYOUT_LOAD_DUCKDBPROGRAM_P_H
#define LAYOUT_LOAD_DUCKDBPROGRAM_P_H

#include "load/Plan_p.h"

namespace vanlayout
{

/// The program for DuckDB: statements for its command line or any client.
///
/// The lines become a temporary table, which goes to the disk if memory is small; each table is one query on it. All is
/// one transaction. The variable `parquet` turns tables into files: a client has no other way to choose, because DuckDB
/// has no conditional statement.
QVector<LoadFile> duckdbProgram(const LoadPlan &plan);

} // namespace vanlayout

#endif
