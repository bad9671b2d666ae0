#ifndef LAYOUT_LOAD_SASTEXTS_P_H
#define LAYOUT_LOAD_SASTEXTS_P_H

#include "load/Plan_p.h"

#include <QByteArray>
#include <QString>

namespace vanlayout
{

/// A text in single quotes, within which SAS expands nothing. A long one has several lines, of which SAS makes one.
QByteArray sasQuoted(const QString &text);

/// The statements that turn special codes into missing values. The first rule that matches counts.
QByteArray sasSpecials(const QByteArray &name, const CodeList &codes);

} // namespace vanlayout

#endif
