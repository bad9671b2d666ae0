#ifndef LAYOUT_LOAD_TARGETRULES_P_H
#define LAYOUT_LOAD_TARGETRULES_P_H

#include "load/LoadOptions.h"

#include <QString>
#include <QVector>

namespace vanlayout
{

struct LoadPlan;

/// The unit of a limit of length.
enum class LengthUnit { Characters, Bytes };

/// A limit of length; 0 for none.
struct LengthLimit {
    int max = 0;
    LengthUnit unit = LengthUnit::Characters;
};

/// The characters of a name that are kept. Others become `_`.
enum class NameCharacters {
    All,   ///< names are texts, or are quoted; only line ends and control characters are replaced
    Plain, ///< ASCII letters, digits and `_`
};

/// The first character of a name that is not allowed gets a `V` before it.
enum class NameStart {
    Any,
    LetterOrUnderscore, ///< not a digit
    Letter              ///< neither a digit nor `_`
};

enum class NameCase { Exact, Ignored, Lower };

/// The rules of one target: its names, its limits, and its writer. A new target is one such row.
struct TargetRules {
    LoadTarget target;
    const char *word; ///< value of `--to`
    NameCharacters characters;
    NameStart start;
    NameCase nameCase; ///< how names are compared; Lower also turns them into lower case
    LengthLimit name;
    LengthLimit variableLabel;
    LengthLimit valueLabel;
    /// True for names that cannot be used even in quotes, compared in the way of the target.
    bool (*isReservedColumn)(const QString &name);
    bool (*isReservedTable)(const QString &name);
    QVector<LoadFile> (*write)(const LoadPlan &plan);
    int maxColumns; ///< of a table; 0 for any number
    int maxLine;    ///< characters of a line of the data file; 0 for any number
};

} // namespace vanlayout

#endif
