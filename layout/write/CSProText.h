#ifndef LAYOUT_WRITE_CSPROTEXT_H
#define LAYOUT_WRITE_CSPROTEXT_H

#include "model/Layout.h"
#include "vanlayout_export.h"
#include "write/Loss.h"

class QIODevice;

namespace vanlayout
{

/// The bytes of a text dictionary that have no meaning in it.
struct VANLAYOUT_EXPORT CSProTextStyle {
    /// How lines end; CSPro writes CR LF.
    enum class LineEnd { CrLf, Lf };
    /// Whether the file begins with the byte-order mark of UTF-8. CSPro writes it from version 5.0 on. A file in
    /// windows-1252 never has one.
    enum class Mark { OfVersion, Absent, Present };

    LineEnd lineEnd = LineEnd::CrLf;
    Mark mark = Mark::OfVersion;
};

/// Writes a CSPro dictionary in text form, as CSPro 7.7 does: the same sections, the same order of keys, an empty line
/// before each section (CSPro dictionary format, text form).
///
/// A layout that was read from a text form keeps its version; versions before 7.7 write `DataType` only for texts that
/// are not numeric, and a version before 5.0 whose encoding is windows-1252 is written in it. Any other layout becomes
/// version 7.7. The layout must be one of a CSPro dictionary (`Format::CSProText` or `Format::CSProJson`).
///
/// The record length is computed if the layout does not state it. Values of linked sets are written once, with the
/// first set. A code of a text is padded with blanks to the length of its item, and a code that means a blank field is
/// as many blanks. A part of a label is at the place of its language; if only the first one is absent, it is the text
/// that stands for it.
///
/// The text form cannot hold: line breaks and `|` in labels, blanks around them, `;` in codes, items of the types
/// document, audio, image and geometry (they are omitted), `readOptimization`, `enableBinaryItems`, and date formats of
/// items that are not captured as dates. These, and statements that CSPro does not know, are appended to \a losses,
/// which may be null. The security settings in words are no loss if there are the encrypted ones: these say the same,
/// and CSPro does not read the words.
///
/// Streams onto \a device, which must be open for writing. Returns false if the device did not accept all bytes; its
/// error string gives the reason.
VANLAYOUT_EXPORT bool writeCSProText(const Layout &layout, QIODevice &device, const CSProTextStyle &style = {},
                                     Losses *losses = nullptr);

} // namespace vanlayout

#endif
