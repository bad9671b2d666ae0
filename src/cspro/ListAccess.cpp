#include "cspro/ListAccess_p.h"

#include "util/DebugLog_p.h"

namespace cspro
{

void logFailure(const char *operation, const QString &classTag, int code)
{
    if (operation)
        debugLine(QLatin1String(operation) + QLatin1String(" ERROR ") + classTag + QLatin1Char(' ')
                  + numberCharacter(code));
}

} // namespace cspro
