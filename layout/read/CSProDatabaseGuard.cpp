#include "read/CSProDatabaseGuard_p.h"

#include <sqlite3.h>

#include <QByteArray>

namespace vanlayout::csprodatabase
{

namespace
{

// Allows reading the table. All actions of a view or a trigger are refused; \a inner is its name.
int authorize(void * /*context*/, int action, const char *first, const char * /*second*/, const char * /*database*/,
              const char *inner)
{
    const bool isQuery = action == SQLITE_SELECT || (action == SQLITE_READ && qstricmp(first, table) == 0);
    return isQuery && !inner ? SQLITE_OK : SQLITE_DENY;
}

int stop(void * /*context*/)
{
    return 1;
}

} // namespace

void restrict(sqlite3 *connection)
{
    for (const int unwanted : { SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, SQLITE_DBCONFIG_TRUSTED_SCHEMA,
                                SQLITE_DBCONFIG_ENABLE_VIEW, SQLITE_DBCONFIG_ENABLE_TRIGGER })
        sqlite3_db_config(connection, unwanted, 0, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_limit(connection, SQLITE_LIMIT_LENGTH, maxDictionarySize);
    sqlite3_limit(connection, SQLITE_LIMIT_ATTACHED, 0);
    sqlite3_limit(connection, SQLITE_LIMIT_WORKER_THREADS, 0);
    sqlite3_set_authorizer(connection, authorize, nullptr);
    sqlite3_progress_handler(connection, maxSteps, stop, nullptr);
}

} // namespace vanlayout::csprodatabase
