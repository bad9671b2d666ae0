#ifndef VANLAYOUT_DIFF_H
#define VANLAYOUT_DIFF_H

#include <string>
#include <vector>

/// Options of `vanlayout diff`. Texts are in the encoding of the system.
struct DiffCall {
    std::string format = "table";     ///< table, json or html
    bool isSummary = false;           ///< for a table: counts by kind instead of the changes
    std::vector<std::string> only;    ///< known words of the kinds to show; empty for all
    std::vector<std::string> ignored; ///< known words of the kinds to leave out
    std::string language;             ///< code of the language whose labels are compared; empty for all
    std::string output = "-";         ///< file to write; - is standard output
    std::string oldFile;              ///< `-` is standard input
    std::string newFile;              ///< `-` is standard input
};

/// The words of all kinds of differences.
std::vector<std::string> diffKindWords();

/// Compares the exact layouts of two files and writes the differences. Returns the exit status: statusFinding if there
/// are differences.
int diffLayouts(const DiffCall &call);

#endif
