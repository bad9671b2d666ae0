#ifndef LAYOUT_COMPARE_DIFFSCOPE_P_H
#define LAYOUT_COMPARE_DIFFSCOPE_P_H

#include "compare/Diff.h"

namespace vanlayout
{

/// Knows what the formats of two layouts can both hold.
class DiffScope
{
public:
    DiffScope(const Layout &before, const Layout &after);

    /// Both are CSPro dictionaries: levels, records, columns, occurrences and everything else of the forms is compared.
    bool areCSPro() const { return isCSPro(before.format) && isCSPro(after.format); }
    /// Both are of one format, so that texts are compared as they are.
    bool isOneFormat() const { return before.format == after.format; }
    /// Both are of programs that hold the same facts of a variable: .sav and .por, or .sas7bdat and .xpt.
    bool isOneFamily() const;
    bool areStatistical() const { return !isCSPro(before.format) && !isCSPro(after.format); }
    /// Whether a name that differs in case alone is the same name, because a format has upper case alone.
    bool foldsNames() const { return hasUpperCaseAlone(before.format) || hasUpperCaseAlone(after.format); }
    /// Whether value sets are compared: SAS keeps them in catalogs, so that a data set alone says nothing of them.
    bool comparesValueSets() const { return hasKnownValueSets; }
    /// Whether the names of value sets are those of the survey in both layouts.
    bool namesValueSets() const { return areCSPro() || (isOneFamily() && !isSpss(before.format)); }
    /// Characters of an item's label that both can hold; 0 for no bound.
    int maxItemLabel() const;
    /// Whether both can hold an item of this type.
    bool holdsType(const Item &item) const { return areCSPro() || item.isNumeric() || item.isAlpha(); }
    /// Whether both can hold a label for these codes of a numeric item, or of a text.
    bool holdsCode(bool isNumeric, const Range &range) const;

    /// The statements of the two layouts that this scope leaves out.
    QVector<NotCompared> notCompared() const;

private:
    static bool isCSPro(Format format) { return format == Format::CSProText || format == Format::CSProJson; }
    static bool isSpss(Format format) { return format == Format::Spss || format == Format::SpssPortable; }
    static bool isSas(Format format) { return format == Format::Sas || format == Format::SasXport; }
    static bool hasUpperCaseAlone(Format format)
    {
        return isCSPro(format) || format == Format::SpssPortable || format == Format::SasXport;
    }
    bool isAny(Format format) const { return before.format == format || after.format == format; }
    static bool knowsValueSets(const Layout &layout);
    void addFacts(QVector<NotCompared> &list) const;

    const Layout &before;
    const Layout &after;
    bool hasKnownValueSets;
};

} // namespace vanlayout

#endif
