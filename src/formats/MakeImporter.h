#ifndef FORMATS_MAKEIMPORTER_H
#define FORMATS_MAKEIMPORTER_H

#include "import/DataImport.h"
#include "model_vanadmin_export.h"

#include <QByteArray>
#include <QString>

#include <memory>

/// Formats that have an importer.
enum class ImportFormat { CSPro, CSPro8, Stata, Spss };

/// Number of bytes at the beginning of a file that importFormatOf() examines.
constexpr int importHeadSize = 16;

/// Returns the format of a file that begins with \a head (`importHeadSize` bytes, or all of a shorter file): JSON if
/// the first byte that is not white space is `{`, SPSS if it begins with `$FL2` or `$FL3`, Stata if it begins with
/// `<stata_dta>` or with a version byte from 104 to 115 and a byte order of 1 or 2, and otherwise a CSPro text
/// dictionary.
MODEL_VANADMIN_EXPORT ImportFormat importFormatOf(const QByteArray &head);

/// Makes an importer of this format for the file, and does not open it. The importers of Stata and SPSS files have
/// buffered reading on.
MODEL_VANADMIN_EXPORT std::unique_ptr<TDataImport> makeImporter(ImportFormat format, const QString &path);

/// Makes an importer for the file, of the format that its content indicates. It is never null. A file that cannot be
/// opened gets the importer of CSPro text dictionaries, which then finds no field.
///
/// Only a regular file is examined, since a pipe can be read only once.
MODEL_VANADMIN_EXPORT std::unique_ptr<TDataImport> makeImporter(const QString &path);

#endif
