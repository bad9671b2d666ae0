// A library that is loaded before all others of a tool that a test runs. It makes the disk fail as environment
// variables state.

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
