#include "import/DebugLog_p.h"

#include <QLoggingCategory>

bool isDebugLogOn()
{
    return QLoggingCategory::defaultCategory()->isDebugEnabled();
}
