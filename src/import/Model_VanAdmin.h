#ifndef IMPORT_MODEL_VANADMIN_H
#define IMPORT_MODEL_VANADMIN_H

#include "model_vanadmin_export.h"

/// The marker of the library: no fields, nothing to do.
/// May be used on any thread.
class MODEL_VANADMIN_EXPORT Model_VanAdmin
{
public:
    Model_VanAdmin();
};

#endif
