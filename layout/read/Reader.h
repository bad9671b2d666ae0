#ifndef LAYOUT_READ_READER_H
#define LAYOUT_READ_READER_H

#include "model/Layout.h"
#include "vanlayout_export.h"

#include <QString>

class QIODevice;

namespace vanlayout
{

/// Options of one reading.
struct VANLAYOUT_EXPORT ReadOptions {
    /// Path of a SAS catalog (`.sas7bcat`) with the label sets for a SAS data set; empty for none.
    QString catalog;
};

/// Reads the exact layout of a file: a CSPro dictionary in text or JSON form, a CSPro data file (`.csdb`) with its
/// dictionary, an SPSS (`.sav`, `.zsav`, `.por`), Stata (`.dta`) or SAS file (`.sas7bdat`, `.xpt`).
///
/// The content decides on the format, never the name. Reading is lenient: what is wrong is kept where it can be and
/// reported in `Layout::problems`, and reading goes on. A file that gives no layout at all has one problem of severity
/// error (see `Layout::error()`), with its reason. Only `std::bad_alloc` is raised. Nothing is global: files may be
/// read on several threads at once.
///
/// \a path is kept as it is in `Layout::file`. Data rows are never read.
VANLAYOUT_EXPORT Layout readLayout(const QString &path, const ReadOptions &options = {});

/// Reads the layout from \a device, which is open for reading, from its current position to its end. A sequential
/// device, such as a pipe, is read into memory whole. \a name is put into `Layout::file` and names the file in
/// messages.
VANLAYOUT_EXPORT Layout readLayout(QIODevice &device, const QString &name, const ReadOptions &options = {});

} // namespace vanlayout

#endif
