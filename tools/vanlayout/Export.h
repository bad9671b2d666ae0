#ifndef VANLAYOUT_EXPORTCOMMAND_H
#define VANLAYOUT_EXPORTCOMMAND_H

#include "LayoutOutput.h"

#include <string>
#include <vector>

/// Options of `vanlayout export`.
struct ExportOptions {
    LayoutOutput output;
    std::string target;  ///< one of exportTargets()
    std::string title;   ///< title of the study; empty for that of the file
    std::string profile; ///< for DDI: plain or ipums; empty for plain
    bool isForExcel = false;
};

/// The valid values of `--to`.
std::vector<std::string> exportTargets();

/// Writes each layout in the given form, and returns the exit status.
int exportLayouts(ExportOptions options);

#endif
