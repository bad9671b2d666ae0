#ifndef VANLAYOUT_CONCORD_H
#define VANLAYOUT_CONCORD_H

#include <optional>
#include <string>
#include <vector>

/// Options of `vanlayout concord`. Texts are in the encoding of the system.
struct ConcordCall {
    std::string format = "table";   ///< table, csv, json, html or recodeflow
    std::string table;              ///< for CSV: variables or codes; empty for variables, or for both in a directory
    bool showsAll = false;          ///< for a table: also what is the same in all rounds
    bool isForExcel = false;        ///< for CSV
    std::string language;           ///< code of the language of the labels; empty for the primary one
    std::string output = "-";       ///< file or directory to write; - is standard output
    std::optional<std::string> map; ///< file with decisions
    std::optional<std::string> writtenMap; ///< file to write the map to; - is standard output
    std::vector<std::string> files;        ///< in the order of the rounds; `-` is standard input
};

/// Compares the exact layouts of several rounds of a survey and writes the concordance. Returns the exit status.
int concordLayouts(const ConcordCall &call);

#endif
