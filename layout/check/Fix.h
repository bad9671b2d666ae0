#ifndef LAYOUT_CHECK_FIX_H
#define LAYOUT_CHECK_FIX_H

#include "model/Layout.h"
#include "vanlayout_export.h"
#include "write/CSProText.h"

#include <QByteArray>

namespace vanlayout
{

/// A dictionary after the corrections that have only one right result.
struct VANLAYOUT_EXPORT FixedDictionary {
    Layout layout;
    QByteArray bytes; ///< the dictionary in its form
    QString problem;  ///< one line: why it cannot be corrected, the other members are then empty; empty if it can
};

/// Corrects a CSPro dictionary in text or JSON form, and writes it as CSPro does: sections and keys in the order of
/// CSPro.
///
/// A stated record length becomes the last column of the record. A record type that consists of digits and is shorter
/// than its columns gets zeros before it, unless another record has that type. Nothing else changes.
///
/// Fails if the layout is not that of such a file, or if the file has statements that CSPro does not know or that could
/// not be read: writing it anew would lose them. The result is read again and compared with the corrected layout.
VANLAYOUT_EXPORT FixedDictionary fixDictionary(const Layout &layout, const CSProTextStyle &style = {});

} // namespace vanlayout

#endif
