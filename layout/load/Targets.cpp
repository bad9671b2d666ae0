#include "Targets_p.h"

#include "DaskProgram_p.h"
#include "DuckdbProgram_p.h"
#include "PandasProgram_p.h"
#include "PostgresqlProgram_p.h"
#include "RProgram_p.h"
#include "SasProgram_p.h"
#include "SpssProgram_p.h"
#include "SqliteProgram_p.h"
#include "StataProgram_p.h"

namespace vanlayout
{

namespace
{

constexpr int maxStataVariables = 120000;   // of Stata/MP; other editions have fewer
constexpr int maxStatisticalLine = 1000000; // a line is a few variables, and a data set of Stata has 1,048,576 bytes

bool isNeverReserved(const QString & /*name*/)
{
    return false;
}

// Names in Python and R are texts: every name is legal, and no length is limited.
TargetRules script(LoadTarget target, const char *word, QVector<LoadFile> (*write)(const LoadPlan &plan))
{
    return { target, word, NameCharacters::All, NameStart::Any,  NameCase::Exact, {},
             {},     {},   isNeverReserved,     isNeverReserved, write,           0,
             0 };
}

} // namespace

const QVector<TargetRules> &targetRules()
{
    static const QVector<TargetRules> rules = {
        { LoadTarget::Sqlite,
          "sqlite",
          NameCharacters::All,
          NameStart::Any,
          NameCase::Ignored,
          {},
          {},
          {},
          isNeverReserved,
          isReservedInSqlite,
          sqliteProgram,
          1900,
          0 },
        { LoadTarget::Postgresql,
          "postgresql",
          NameCharacters::All,
          NameStart::Any,
          NameCase::Lower,
          { 63, LengthUnit::Bytes },
          {},
          {},
          isReservedInPostgresql,
          isNeverReserved,
          postgresqlProgram,
          1600,
          0 },
        { LoadTarget::Duckdb,
          "duckdb",
          NameCharacters::All,
          NameStart::Any,
          NameCase::Ignored,
          {},
          {},
          {},
          isNeverReserved,
          isNeverReserved,
          duckdbProgram,
          0,
          0 },
        script(LoadTarget::Dask, "dask", daskProgram),
        script(LoadTarget::R, "r", rProgram),
        script(LoadTarget::Pandas, "pandas", pandasProgram),
        { LoadTarget::Spss,
          "spss",
          NameCharacters::Plain,
          NameStart::Letter,
          NameCase::Ignored,
          { 64, LengthUnit::Bytes },
          { 255, LengthUnit::Bytes },
          { 120, LengthUnit::Bytes },
          isReservedInSpss,
          isNeverReserved,
          spssProgram,
          0,
          maxStatisticalLine },
        { LoadTarget::Stata,
          "stata",
          NameCharacters::Plain,
          NameStart::LetterOrUnderscore,
          NameCase::Exact,
          { 32, LengthUnit::Characters },
          { 80, LengthUnit::Characters },
          { 32000, LengthUnit::Characters },
          isReservedInStata,
          isNeverReserved,
          stataProgram,
          maxStataVariables,
          maxStatisticalLine },
        { LoadTarget::Sas,
          "sas",
          NameCharacters::Plain,
          NameStart::LetterOrUnderscore,
          NameCase::Ignored,
          { 32, LengthUnit::Characters },
          { 256, LengthUnit::Characters },
          { 32767, LengthUnit::Bytes },
          isReservedInSas,
          isReservedDataSet,
          sasProgram,
          0,
          maxStatisticalLine },
    };
    return rules;
}

} // namespace vanlayout
