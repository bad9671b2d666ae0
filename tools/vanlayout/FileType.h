#ifndef VANLAYOUT_FILETYPE_H
#define VANLAYOUT_FILETYPE_H

#include "import/DataImport.h"

#include <QByteArray>
#include <QString>

#include <memory>

/// One format that can be asked for.
struct FileType {
    const char *name;    ///< as --type takes it
    const char *article; ///< of the title
    const char *title;   ///< for a person
    std::unique_ptr<TDataImport> (*makeImporter)(const QString &file);
    bool (*recognises)(const QByteArray &head); ///< by the first bytes of a file
    bool canBePiped;                            ///< read from begin to end, once
};

/// The type that --type names, or null.
const FileType *fileTypeNamed(const std::string &name);

/// The type of a file that begins with \a head (16 bytes, or fewer in a shorter file). What nothing recognises is a
/// CSPro text dictionary.
const FileType &fileTypeOf(const QByteArray &head);

#endif
