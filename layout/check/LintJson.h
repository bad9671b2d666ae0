#ifndef LAYOUT_CHECK_LINTJSON_H
#define LAYOUT_CHECK_LINTJSON_H

#include "check/Lint.h"
#include "vanlayout_export.h"
#include "write/LayoutJson.h"

class QIODevice;

namespace vanlayout
{

/// The findings of one file.
struct VANLAYOUT_EXPORT LintedFile {
    QString file; ///< path as given
    Format format = Format::None;
    QVector<LintFinding> findings;
    QString problem; ///< one line: why the file could not be read; empty if it was

    int countOf(Severity severity) const;
};

/// Writes the findings of a file as one JSON object and a line feed: `file`, `format`, the counts `errors`, `warnings`
/// and `infos`, and `findings` with `rule`, `severity`, `line`, `path` and `message`; `line` is absent if it is
/// unknown, `path` for the file as a whole. A file that could not be read has only `file` and `problem`.
///
/// Returns false if the device did not accept all bytes; its error string gives the reason.
VANLAYOUT_EXPORT bool writeLintJson(const LintedFile &file, QIODevice &device, JsonStyle style = JsonStyle::Compact);

} // namespace vanlayout

Q_DECLARE_TYPEINFO(vanlayout::LintedFile, Q_MOVABLE_TYPE);

#endif
