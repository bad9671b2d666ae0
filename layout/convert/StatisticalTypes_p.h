#ifndef LAYOUT_CONVERT_STATISTICALTYPES_P_H
#define LAYOUT_CONVERT_STATISTICALTYPES_P_H

#include "convert/StatisticalFile.h"

#include <readstat.h>

#include <cstddef>

namespace vanlayout
{

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

private:
    QString formatOfText(const Item &item) const;
    QString formatOfNumber(const Item &item) const;
    bool isLongText(const Item &item) const;

    bool isSav;
    bool isOwnForm;
};

} // namespace vanlayout

#endif
