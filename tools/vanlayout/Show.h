#ifndef VANLAYOUT_SHOW_H
#define VANLAYOUT_SHOW_H

#include <string>
#include <vector>

/// What `vanlayout show` was asked for.
struct ShowOptions {
    std::string format = "table";   ///< table, json or csv
    std::string type = "auto";      ///< auto, or the name of a file type
    std::string decimals = "no";    ///< ask, yes or no
    std::vector<std::string> files; ///< in the encoding of the system
};

/// Shows each file and answers the worst status.
int show(const ShowOptions &options);

#endif
