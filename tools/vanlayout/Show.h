#ifndef VANLAYOUT_SHOW_H
#define VANLAYOUT_SHOW_H

#include <string>
#include <vector>

/// Options of `vanlayout show`. Texts are in the encoding of the system.
struct ShowOptions {
    std::string format = "table";       ///< table, json or csv
    std::string language;               ///< code of the language of labels; empty for the primary one
    std::string catalog;                ///< SAS catalog with label sets; empty for none
    std::vector<std::string> variables; ///< names of the items to show, `*` and `?` are wildcards; empty for all
    bool listsLanguages = false;        ///< the languages of each file instead of its layout
    bool listsProblems = false;         ///< the problems of each file instead of its layout
    bool showsValues = false;           ///< value labels below each item of the table
    bool showsCodes = false;            ///< CSV with one line per code instead of one per item
    bool isPretty = false;              ///< indented JSON
    bool isQuiet = false;               ///< no line on standard error about warnings
    std::vector<std::string> files;     ///< `-` is standard input
};

/// Prints the exact layout of each file and returns the worst status.
int show(const ShowOptions &options);

#endif
