#ifndef VANLAYOUT_LINT_H
#define VANLAYOUT_LINT_H

#include <string>
#include <vector>

/// Options of `vanlayout lint`. Texts are in the encoding of the system.
struct LintCall {
    std::string format = "table"; ///< table, json or sarif
    bool isPretty = false;        ///< for JSON: indented
    bool showsAll = false;        ///< for a table: all findings of a rule, not only the first ten
    bool listsRules = false;
    bool isFixed = false;
    bool walksDirectories = false;
    std::vector<std::string> only;     ///< ids of rules; empty for those of the settings file, or all
    std::vector<std::string> disabled; ///< ids of rules
    std::string output = "-";          ///< file for the findings, or for the corrected dictionary
    std::vector<std::string> files;    ///< `-` is standard input
};

/// Prints the findings of files, or corrects one. Returns the exit status: statusFinding if there is an error,
/// statusNoAnswer if a file or a settings file cannot be read.
int lintFiles(const LintCall &call);

#endif
