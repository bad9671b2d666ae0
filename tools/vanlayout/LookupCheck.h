#ifndef VANLAYOUT_LOOKUPCHECK_H
#define VANLAYOUT_LOOKUPCHECK_H

#include <limits>
#include <string>

/// What `vanlayout lookup` was asked for.
struct LookupOptions {
    std::string format = "table";                      ///< table or json
    std::string separator = "space";                   ///< space, tab, comma, semicolon or colon
    std::string mode = "both";                         ///< count, errors or both
    int maxMessages = std::numeric_limits<int>::max(); ///< no limit that is reached
    std::string file;                                  ///< in the encoding of the system
};

/// The number by which the library knows a separator.
int separatorNumber(const std::string &name);

/// Checks the lookup file, prints the report and answers the status: a finding where there are error lines.
int checkLookup(const LookupOptions &options);

#endif
