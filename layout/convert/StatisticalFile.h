#ifndef LAYOUT_CONVERT_STATISTICALFILE_H
#define LAYOUT_CONVERT_STATISTICALFILE_H

#include "model/Layout.h"
#include "vanlayout_export.h"
#include "write/Loss.h"

#include <QByteArray>
#include <QString>

namespace vanlayout
{

/// The kinds of statistical files that can be written.
enum class StatisticalFormat { Sav, Dta };

/// A statistical file without rows.
struct VANLAYOUT_EXPORT StatisticalFile {
    QByteArray bytes;
    Losses losses;   ///< the statements of the layout that the file cannot hold
    QString problem; ///< why there is no file, as a predicate without the name of the file; empty if there is one
};

/// Writes an empty SPSS (`.sav`) or Stata (`.dta`, version 118) file with the variables of a layout: names, labels,
/// formats, value labels, user-missing values, level of measurement, alignment and display width.
///
/// The variables are the ids of all levels, then the items of all records, each occurrence of a repeating item as
/// `NAME_k`. A name that the program does not allow is changed, which is a loss, and so is the later of two equal
/// names. Labels are in \a language; empty for the primary one. A text of a dictionary has as many bytes as it has
/// characters.
///
/// The value labels are those of the first value set with values. SPSS has at most three user-missing codes, or one
/// range and one code, and Stata has none.
VANLAYOUT_EXPORT StatisticalFile makeStatisticalFile(const Layout &layout, StatisticalFormat format,
                                                     const QString &language);

} // namespace vanlayout

#endif
