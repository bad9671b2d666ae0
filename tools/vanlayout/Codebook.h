#ifndef VANLAYOUT_CODEBOOK_H
#define VANLAYOUT_CODEBOOK_H

#include "LayoutOutput.h"

/// Options of `vanlayout codebook`.
struct CodebookOptions {
    LayoutOutput output;
    bool hasNoProblems = false; ///< whether the pages omit the problems of the files
    bool isOpened = false;      ///< whether the page, or the index, is opened in a browser
};

/// Writes the codebook of each file as one self-contained HTML page, and an index if the pages are written into a
/// directory. Returns the worst status.
///
/// If pages are opened and no output is named, they are written into a new temporary directory, which only the user can
/// read. It remains for the browser, but is removed if no page is opened.
int writeCodebookPages(const CodebookOptions &options);

#endif
