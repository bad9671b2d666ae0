#ifndef VANLAYOUT_FILETYPE_H
#define VANLAYOUT_FILETYPE_H

#include "formats/MakeImporter.h"

#include <string>

/// One format that can be asked for.
struct FileType {
    const char *name;    ///< as --type takes it
    const char *article; ///< of the title
    const char *title;   ///< for a person
    ImportFormat format;
    bool canBePiped; ///< read from begin to end, once
};

/// The type that --type names, or null.
const FileType *fileTypeNamed(const std::string &name);

/// The type of a file that begins with \a head.
const FileType &fileTypeOf(const QByteArray &head);

#endif
