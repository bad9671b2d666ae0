#ifndef VANLAYOUT_FILETYPE_H
#define VANLAYOUT_FILETYPE_H

#include "formats/MakeImporter.h"

#include <string>

/// One format that `--type` accepts.
struct FileType {
    const char *name;    ///< value of --type
    const char *article; ///< of the title
    const char *title;   ///< in messages
    ImportFormat format;
    bool canBePiped; ///< is read sequentially, once
};

/// The type with this name, or null.
const FileType *fileTypeNamed(const std::string &name);

/// The type of a file whose first bytes are \a head.
const FileType &fileTypeOf(const QByteArray &head);

#endif
