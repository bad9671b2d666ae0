#ifndef LAYOUT_COMPARE_DIFFSCOPE_P_H
#define LAYOUT_COMPARE_DIFFSCOPE_P_H

#include "compare/DiffCodes_p.h"
#include "compare/Diff.h"

namespace vanlayout
{

/// Determines which properties are compared: those that the formats of both layouts can hold.
class DiffScope
{
public:
    DiffScope(const Layout &before, const Layout &after);

    /// Both are CSPro dictionaries or DDI documents: levels, records, columns and occurrences are compared.
    bool areDictionaries() const { return isDictionary(before.format) && isDictionary(after.format); }
    /// One is a CSPro dictionary and the other a DDI document.
    bool areOfTwoDictionaryFormats() const
    {
        return areDictionaries() && isCSPro(before.format) != isCSPro(after.format);
    }
    /// Both have the same format, so texts are compared exactly.
    bool isOneFormat() const { return before.format == after.format; }
    /// Both formats hold the same facts about a variable: the two CSPro forms, .sav and .por, or .sas7bdat and .xpt.
    bool isOneFamily() const;
    bool areStatistical() const { return !isDictionary(before.format) && !isDictionary(after.format); }
    /// Whether names that differ only in case are the same, because one of the formats has only upper case.
    bool foldsNames() const { return hasOnlyUpperCase(before.format) || hasOnlyUpperCase(after.format); }
    /// Whether value sets are compared: SAS keeps them in catalogs, so a data set without its catalog has none.
    bool comparesValueSets() const { return hasKnownValueSets; }
    /// Whether the names of value sets are stated by both files, so that they are compared.
    bool namesValueSets() const { return areDictionaries() || (isOneFamily() && !isSpss(before.format)); }
    /// Max characters of an item's label that both formats can hold; 0 for no bound.
    int maxItemLabel() const;
    /// Whether both formats can hold an item of this type.
    bool holdsType(const Item &item) const { return areDictionaries() || item.isNumeric() || item.isAlpha(); }
    /// Whether both formats can hold a label for a code or range of a numeric item, or of a text.
    bool holdsCode(CodeType type, const Range &range) const;

    /// The properties that are not compared, each with the reason.
    QVector<NotCompared> notCompared() const;

private:
    static bool isDictionary(Format format) { return format != Format::None && !holdsData(format); }
    static bool isCSPro(Format format) { return format == Format::CSProText || format == Format::CSProJson; }
    static bool isSpss(Format format) { return format == Format::Spss || format == Format::SpssPortable; }
    static bool isSas(Format format) { return format == Format::Sas || format == Format::SasXport; }
    static bool hasOnlyUpperCase(Format format)
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
