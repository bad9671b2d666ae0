#ifndef LAYOUT_WRITE_MARKDOWN_H
#define LAYOUT_WRITE_MARKDOWN_H

#include "model/Layout.h"
#include "vanlayout_export.h"

#include <QString>

class QIODevice;

namespace vanlayout
{

/// Settings for writeMarkdown().
struct VANLAYOUT_EXPORT MarkdownOptions {
    QString title;    ///< title of the document; empty for the label of the layout, or its name
    QString language; ///< code of the language of the labels; empty for the primary one
};

/// Writes a codebook as Markdown with tables in GitHub's syntax, in UTF-8: title, facts of the file, and for the ids of
/// each level and for each record a table of items, followed by notes, occurrence labels and value sets.
///
/// Empty columns of a table are omitted. Texts of the file are never interpreted: characters with a meaning in Markdown
/// or HTML are escaped, a line break is `<br>`, and a control character is its picture (U+2400 and following).
///
/// Streams onto \a device, which must be open for writing. Returns false if the device did not accept all bytes; its
/// error string gives the reason.
VANLAYOUT_EXPORT bool writeMarkdown(const Layout &layout, QIODevice &device, const MarkdownOptions &options = {});

} // namespace vanlayout

#endif
