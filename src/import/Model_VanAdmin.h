#ifndef IMPORT_MODEL_VANADMIN_H
#define IMPORT_MODEL_VANADMIN_H

#include "model_vanadmin_export.h"

/// Marker class of the library. It has no fields and does nothing. It may be used on any thread.
class MODEL_VANADMIN_EXPORT Model_VanAdmin
{
public:
    Model_VanAdmin();
};

#endif
