#include "import/Model_VanAdmin.h"

Model_VanAdmin::Model_VanAdmin() = default;
