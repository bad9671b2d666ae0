#ifndef LAYOUT_CONVERT_STATISTICALTYPES_P_H
#define LAYOUT_CONVERT_STATISTICALTYPES_P_H

#include "convert/StatisticalFile.h"

#include <readstat.h>

#include <cstddef>

namespace vanlayout
{

/// The value set whose labels are written: the first one with values; null if there is none.
const ValueSet *labelledSetOf(const Item &item);

/// The type, the width and the format of the variables of a statistical file.
class StatisticalTypes
{
public:
    /// \a sourceFormat is that of the layout; a file of the same program keeps its formats.
    StatisticalTypes(StatisticalFormat target, Format sourceFormat);

    readstat_type_t typeOf(const Item &item) const;
    /// Bytes of a text; 0 for a long text (strL) of Stata.
    size_t widthOfText(const Item &item) const;
    /// The format in the spelling of the program, such as "F8.2" or "%8.2f".
    QString formatOf(const Item &item) const;
    /// Whether the written format shows values as that of the source does, such as "%8.2f" and "F8.2".
    bool keepsFormat(const Item &item) const;
    /// Whether a text is shorter than in the source, or one of them has no stated length.
    bool changesLength(const Item &item) const;
    /// Whether a number has fewer digits than in the source.
    bool cutsNumber(const Item &item) const;
    /// Whether the width in the written format of a number or text is its display width.
    bool showsWidth(const Item &item) const;

private:
    QString formatOfText(const Item &item) const;
    QString formatOfNumber(const Item &item) const;
    struct Digits {
        int width;
        int decimals;
    };
    Digits digitsOf(const Item &item) const;
    bool isLongText(const Item &item) const;

    bool isSav;
    bool isOwnForm;
    bool hasData; // whether the source is a statistical file
};

} // namespace vanlayout

#endif
