// Loaded before all other libraries of a tool that a test runs: the disk fails as the environment says.

#include "support/FailingRead.h"

namespace
{

[[maybe_unused]] const bool isPrepared = [] {
    const char *const name = std::getenv("FAILING_FILE");
    const char *const bytes = std::getenv("FAILING_BEHIND");
    if (name && bytes) {
        failingread::goodBytes = std::atol(bytes);
        failingread::fileName = name;
    }
    return true;
}();

} // namespace
