#ifndef LAYOUT_CHECK_LINTSARIF_H
#define LAYOUT_CHECK_LINTSARIF_H

#include "check/LintJson.h"

namespace vanlayout
{

/// Writes the findings of files as one document in SARIF 2.1.0, the form that code hosting sites and editors show next
/// to the lines of a file.
///
/// All rules are listed. The severities error, warning and info are the levels error, warning and note. A file that
/// could not be read is a notification of the invocation. The URI of a file is its path as given, percent-encoded;
/// an absolute path gets the scheme `file`.
///
/// Returns false if the device did not accept all bytes; its error string gives the reason.
VANLAYOUT_EXPORT bool writeLintSarif(const QVector<LintedFile> &files, QIODevice &device,
                                     JsonStyle style = JsonStyle::Pretty);

} // namespace vanlayout

#endif
