#ifndef SUPPORT_THROWN_H
#define SUPPORT_THROWN_H

#include "import/ErrorManager.h"

#include <memory>

/// Runs \a work and returns the error of the library that it threw, or null if it threw none.
template <typename Work> std::unique_ptr<VpErrorManager> thrownBy(Work work)
{
    try {
        work();
    } catch (VpErrorManager *error) {
        return std::unique_ptr<VpErrorManager>(error);
    }
    return nullptr;
}

#endif
