#ifndef SUPPORT_RANDOMLAYOUTS_H
#define SUPPORT_RANDOMLAYOUTS_H

#include "support/Sanitizer.h"

#include <QtGlobal>

/// The number of random layouts that a test makes: the environment variable VAN_RANDOM_LAYOUTS if it is a positive
/// number, otherwise \a usual, or a tenth of it under a sanitizer.
inline quint32 randomLayoutCount(quint32 usual)
{
    const int wanted = qEnvironmentVariableIntValue("VAN_RANDOM_LAYOUTS");
    return wanted > 0 ? quint32(wanted) : sanitizesMemory ? usual / 10 : usual;
}

#endif
