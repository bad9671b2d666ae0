#ifndef LAYOUT_LOAD_SPSSMISSING_P_H
#define LAYOUT_LOAD_SPSSMISSING_P_H

#include "load/Plan_p.h"

#include <QStringList>

namespace vanlayout
{

/// The special codes of a column as SPSS declares them. A variable has at most three missing values, or one range and
/// one value. A missing text has at most 8 bytes. A text variable of more than 8 bytes has at most one, because
/// ReadStat, and with it R and Python, does not read a file in which such a variable has several.
struct SpssMissing {
    QStringList values;   ///< for MISSING VALUES: `9`, `97 THRU 99`, `'ZZ'`
    QStringList recodes;  ///< for RECODE, in this order: `(9=COPY)`, `(88 THRU 90=SYSMIS)`
    QStringList leftOver; ///< codes that stay valid, because there is no place for them

    bool isEmpty() const { return values.isEmpty() && recodes.isEmpty() && leftOver.isEmpty(); }
};

/// The missing values of a numeric column; or of a text with this number of bytes.
SpssMissing spssMissingOf(const CodeList &codes);
SpssMissing spssMissingOfText(const CodeList &codes, int bytes);

/// A text in quotes. It has no characters that could end it; control characters are written by their code.
QString spssQuoted(const QString &text);

} // namespace vanlayout

#endif
