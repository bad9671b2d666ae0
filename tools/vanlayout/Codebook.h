#ifndef VANLAYOUT_CODEBOOK_H
#define VANLAYOUT_CODEBOOK_H

#include "LayoutOutput.h"

/// Options of `vanlayout codebook`.
struct CodebookOptions {
    LayoutOutput output;
    bool hasNoProblems = false; ///< whether the pages leave out the problems of the files
    bool isOpened = false;      ///< whether the page, or the index, is opened in a browser
};

/// Writes the codebook of each file as one HTML page that needs nothing beside it, and an index where they are written
/// into a directory. Returns the worst status.
///
/// A page that is opened without an output is written into a new directory for temporary files, which only the user can
/// read. It stays there for the browser; where no page is opened, the directory is removed.
int writeCodebookPages(const CodebookOptions &options);

#endif
