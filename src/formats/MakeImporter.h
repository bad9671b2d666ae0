#ifndef FORMATS_MAKEIMPORTER_H
#define FORMATS_MAKEIMPORTER_H

#include "import/DataImport.h"
#include "model_vanadmin_export.h"

#include <QByteArray>
#include <QString>

#include <memory>

/// The formats that have an importer.
enum class ImportFormat { CSPro, CSPro8, Stata, Spss };

/// The number of bytes from the beginning of a file that importFormatOf() looks at.
constexpr int importHeadSize = 16;

/// The format of a file that begins with \a head (`importHeadSize` bytes, or all of a shorter file): JSON where the
/// first byte that is not white space is `{`, SPSS where it begins with `$FL2` or `$FL3`, Stata where it begins with
/// `<stata_dta>` or with a version byte from 104 to 115 and a byte order of 1 or 2, and otherwise a CSPro text
/// dictionary.
MODEL_VANADMIN_EXPORT ImportFormat importFormatOf(const QByteArray &head);

/// A new importer of this format for the file, which is not opened yet. Those of Stata and SPSS files read buffered.
MODEL_VANADMIN_EXPORT std::unique_ptr<TDataImport> makeImporter(ImportFormat format, const QString &path);

/// A new importer for the file, of the format that its content indicates; never null. A file that cannot be opened gets
/// the importer of CSPro text dictionaries, whose opening then finds no field.
///
/// Only a regular file is looked at: a pipe could be read just once.
MODEL_VANADMIN_EXPORT std::unique_ptr<TDataImport> makeImporter(const QString &path);

#endif
