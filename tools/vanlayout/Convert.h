#ifndef VANLAYOUT_CONVERT_H
#define VANLAYOUT_CONVERT_H

#include <string>
#include <vector>

/// Options of `vanlayout convert`. Texts are in the encoding of the system.
struct ConvertCall {
    std::string target;   ///< one of convertTargets()
    std::string language; ///< code of the language of labels, for files that have one; empty for the primary one
    std::vector<std::string> ids; ///< names of the variables that become id items of a dictionary
    std::string output = "-";     ///< file to write; - is standard output
    std::string file;             ///< `-` is standard input
};

/// The valid values of `--to`.
std::vector<std::string> convertTargets();

/// Writes the layout of a file as a file of another format. Each statement that the format cannot hold is one line on
/// standard error. Returns the exit status, which is statusFinding if there is such a line.
int convertFile(const ConvertCall &call);

#endif
