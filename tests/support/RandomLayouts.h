#ifndef SUPPORT_RANDOMLAYOUTS_H
#define SUPPORT_RANDOMLAYOUTS_H

#include "support/Sanitizer.h"

#include <QtGlobal>

/// The number of random layouts that a test makes: the environment variable VAN_RANDOM_LAYOUTS if it is a positive
/// number, otherwise \a usual, or a tenth of it under a sanitizer and with Qt 6, which repeat the tests.
inline quint32 randomLayoutCount(quint32 usual)
{
    constexpr bool isRepeated = sanitizesMemory || QT_VERSION >= QT_VERSION_CHECK(6, 0, 0);
    const int wanted = qEnvironmentVariableIntValue("VAN_RANDOM_LAYOUTS");
    if (wanted > 0)
        return quint32(wanted);
    return isRepeated ? usual / 10 : usual;
}

#endif
