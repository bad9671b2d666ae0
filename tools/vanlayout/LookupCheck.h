#ifndef VANLAYOUT_LOOKUPCHECK_H
#define VANLAYOUT_LOOKUPCHECK_H

#include <limits>
#include <string>

/// Options of `vanlayout lookup`.
struct LookupOptions {
    std::string format = "table";                      ///< table or json
    std::string separator = "space";                   ///< space, tab, comma, semicolon or colon
    std::string mode = "both";                         ///< count, errors or both
    int maxMessages = std::numeric_limits<int>::max(); ///< max number of messages; no limit by default
    std::string file;                                  ///< in the encoding of the system
};

/// The number of a separator in the library.
int separatorNumber(const std::string &name);

/// Checks the lookup file and prints the report. Returns the exit status: statusFinding if there are error lines.
int checkLookup(const LookupOptions &options);

#endif
