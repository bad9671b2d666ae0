#ifndef VANLAYOUT_FIND_H
#define VANLAYOUT_FIND_H

#include <string>
#include <vector>

/// Options of `vanlayout find`. Texts are in the encoding of the system.
struct FindCall {
    std::vector<std::string> arguments; ///< words, then files and directories; - is standard input
    std::vector<std::string> words;     ///< of `--word`; if there are any, all arguments are paths
    std::vector<std::string> codes;
    std::vector<std::string> places; ///< name, label, value or note; empty for all
    bool isAny = false;              ///< one word or code is enough
    bool isPattern = false;          ///< words are regular expressions
    bool listsSets = false;          ///< lists identical value sets; there are no words
    std::string language;            ///< code of the language of shown labels; empty for the primary one
    std::string format = "table";    ///< table, csv or json
    std::string output = "-";        ///< file to write; - is standard output
};

/// Searches the exact layouts of files on all processors, and writes the hits in the order of the files. Returns the
/// exit status: statusFinding if nothing was found, statusNoAnswer if a file could not be read.
int findVariables(const FindCall &call);

#endif
