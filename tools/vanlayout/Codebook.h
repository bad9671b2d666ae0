#ifndef VANLAYOUT_CODEBOOK_H
#define VANLAYOUT_CODEBOOK_H

#include "LayoutOutput.h"

/// Options of `vanlayout codebook`.
struct CodebookOptions {
    LayoutOutput output;
    bool hasNoProblems = false; ///< whether the pages leave out the problems of the files
};

/// Writes the codebook of each file as one HTML page that needs nothing beside it, and an index where they are written
/// into a folder. Returns the worst status.
int writeCodebookPages(const CodebookOptions &options);

#endif
