#ifndef LAYOUT_READ_READER_H
#define LAYOUT_READ_READER_H

#include "model/Layout.h"
#include "read/ElementLines.h"
#include "vanlayout_export.h"

#include <QString>

class QIODevice;

namespace vanlayout
{

/// Options of one reading.
struct VANLAYOUT_EXPORT ReadOptions {
    /// Path of a SAS catalog (`.sas7bcat`) with the label sets for a SAS data set or transport file; empty for none. A
    /// catalog that cannot be read is a problem of severity warning; one for a file of another format is an info.
    QString catalog;
    /// Receives the lines of the elements of a CSPro dictionary; null if they are not wanted. It must be empty, and
    /// stays empty for a file of another format and for the dictionary within a data file. If it is wanted, the
    /// problems of a dictionary in JSON form have a line too.
    ElementLines *lines = nullptr;
};

/// Reads the exact layout of a file: a CSPro dictionary in text or JSON form, a CSPro data file (`.csdb`) with its
/// dictionary, a DDI Codebook document, an SPSS (`.sav`, `.zsav`, `.por`), Stata (`.dta`) or SAS file (`.sas7bdat`,
/// `.xpt`).
///
/// The format is determined by the content, never by the name. Reading is lenient: errors in a file are reported in
/// `Layout::problems`, and reading continues with as much as possible kept. A file without a layout has one problem of
/// severity error (see `Layout::error()`), with the reason. Throws only `std::bad_alloc`. There is no global state:
/// files may be read on several threads at once.
///
/// `Layout::file` is \a path, unchanged. Data rows are never read.
VANLAYOUT_EXPORT Layout readLayout(const QString &path, const ReadOptions &options = {});

/// Reads the layout from \a device, which must be open for reading, from its current position to its end. A sequential
/// device, such as a pipe, is read into memory completely, up to 1 GiB. \a name becomes `Layout::file`; messages do not
/// contain it.
VANLAYOUT_EXPORT Layout readLayout(QIODevice &device, const QString &name, const ReadOptions &options = {});

} // namespace vanlayout

#endif
