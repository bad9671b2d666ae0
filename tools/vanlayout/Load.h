#ifndef VANLAYOUT_LOADCOMMAND_H
#define VANLAYOUT_LOADCOMMAND_H

#include <string>
#include <vector>

/// Options of `vanlayout load`. Texts are in the encoding of the system.
struct LoadCall {
    std::string target;               ///< one of loadTargetWords()
    std::string data;                 ///< path of the data file for the program; empty for the default
    std::string encoding = "utf-8";   ///< utf-8 or windows-1252
    std::string language;             ///< code of the language of the labels; empty for the primary one
    std::string occurrences = "wide"; ///< wide or long
    std::string specials = "missing"; ///< missing or keep
    std::vector<std::string> records; ///< names of records; empty for all
    std::string output = "-";         ///< directory to write into; - is standard output
    std::string file;                 ///< `-` is standard input
};

/// The valid values of `--to`.
std::vector<std::string> loadTargetWords();

/// Writes the program that loads the data file of a dictionary. The data file itself is not opened. Returns the exit
/// status.
int writeLoadProgram(const LoadCall &call);

#endif
