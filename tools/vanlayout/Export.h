#ifndef VANLAYOUT_EXPORTCOMMAND_H
#define VANLAYOUT_EXPORTCOMMAND_H

#include "LayoutOutput.h"

#include <string>
#include <vector>

/// What `vanlayout export` was asked for.
struct ExportOptions {
    LayoutOutput output;
    std::string target;  ///< one of exportTargets()
    std::string title;   ///< of the whole; empty for what the file says
    std::string profile; ///< of DDI: plain or ipums; empty for plain
    bool isForExcel = false;
};

/// The forms that `--to` takes.
std::vector<std::string> exportTargets();

/// Writes each layout in the form that was asked for, and answers the status.
int exportLayouts(ExportOptions options);

#endif
