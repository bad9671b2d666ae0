#ifndef VANLAYOUT_FIELDS_H
#define VANLAYOUT_FIELDS_H

#include <string>
#include <vector>

/// Options of `vanlayout fields`.
struct FieldsOptions {
    std::string format = "table";   ///< table, json or csv
    std::string type = "auto";      ///< auto, or the name of a file type
    std::string decimals = "no";    ///< ask, yes or no
    std::vector<std::string> files; ///< in the encoding of the system
};

/// Prints the importers' list of fields of each file and returns the worst status.
int showFields(const FieldsOptions &options);

#endif
