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
    QString title;    ///< of the document; empty for the label of the layout, or its name
    QString language; ///< of the labels; empty for the primary one
};

/// Writes a code book as Markdown with the tables of GitHub, in UTF-8: title, facts of the file, and for the ids of
/// each level and each record a table of its items, with notes, occurrence labels and value sets below.
///
/// A column of a table that no item fills is left out. Texts of the file stay texts: what Markdown or HTML would act on
/// is escaped, a line break is `<br>`, and a control character is its picture (U+2400 and following).
///
/// Streams onto \a device, which is open for writing. False if the device did not take all bytes; its error string says
/// why.
VANLAYOUT_EXPORT bool writeMarkdown(const Layout &layout, QIODevice &device, const MarkdownOptions &options = {});

} // namespace vanlayout

#endif
