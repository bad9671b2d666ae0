#ifndef VANLAYOUT_CODEBOOK_H
#define VANLAYOUT_CODEBOOK_H

#include <string>

/// What `vanlayout codebook` was asked for.
struct CodebookOptions {
    std::string type = "auto";   ///< auto, or the name of a file type
    std::string decimals = "no"; ///< yes or no
    std::string file;            ///< in the encoding of the system
    std::string output;          ///< likewise; "-" is standard output
};

/// Writes the codebook of the file: one HTML page that needs nothing beside it. Answers the status; without an answer
/// no page is written, and one that stood there stays as it was.
int writeCodebook(const CodebookOptions &options);

#endif
