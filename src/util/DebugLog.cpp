#include "util/DebugLog_p.h"

#include <QLoggingCategory>

bool isDebugLogOn()
{
    return QLoggingCategory::defaultCategory()->isDebugEnabled();
}
