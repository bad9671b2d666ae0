#ifndef VANLAYOUT_DIFFCOMMAND_H
#define VANLAYOUT_DIFFCOMMAND_H

#include <string>

/// What `vanlayout diff` was asked for.
struct DiffOptions {
    std::string format = "table"; ///< table or json
    std::string oldType = "auto"; ///< auto, or the name of a file type
    std::string newType = "auto"; ///< the same
    std::string decimals = "no";  ///< yes or no
    std::string oldFile;          ///< in the encoding of the system
    std::string newFile;          ///< the same
};

/// Compares two layouts, prints what differs and answers the status: a finding where anything does.
int diffLayouts(const DiffOptions &options);

#endif
