#ifndef LAYOUT_MODEL_PROBLEM_H
#define LAYOUT_MODEL_PROBLEM_H

#include "vanlayout_export.h"

#include <QString>

namespace vanlayout
{

/// The severity of a problem.
enum class Severity {
    Error,   ///< there is no layout at all
    Warning, ///< part of the file is unusable, such as an item without a length
    Info,    ///< unusual but complete, such as a key that occurs twice
};

/// "error", "warning" or "info".
VANLAYOUT_EXPORT QString wordOf(Severity severity);

/// One finding about a file: something wrong or unusual in it, and its place.
struct VANLAYOUT_EXPORT Problem {
    Severity severity = Severity::Warning;
    QString id;   ///< stable word of letters a to z, digits and hyphens
    int line = 0; ///< 1-based line of a text file; 0 if there is none
    /// The element by its name: `LEVEL/RECORD/ITEM/VALUESET/#value`, where `#value` is 1-based and the record of id
    /// items is `(ids)`, or `relations/NAME`; `//ITEM` in a statistical file. Names of a dictionary are truncated to
    /// 200 characters. Empty for the file as a whole.
    QString path;
    QString message; ///< one line: the fact, then how to correct it if that helps
};

VANLAYOUT_EXPORT bool operator==(const Problem &left, const Problem &right);
inline bool operator!=(const Problem &left, const Problem &right)
{
    return !(left == right);
}

} // namespace vanlayout

Q_DECLARE_TYPEINFO(vanlayout::Problem, Q_MOVABLE_TYPE);

#endif
