#ifndef LAYOUT_WRITE_DDIVARIABLEWRITER_P_H
#define LAYOUT_WRITE_DDIVARIABLEWRITER_P_H

#include "Columns_p.h"
#include "Ddi.h"
#include "DdiVariables_p.h"
#include "XmlStream_p.h"

namespace vanlayout
{

/// Writes the elements `var` of a DDI document.
class DdiVariableWriter
{
public:
    DdiVariableWriter(XmlStream &stream, const Layout &source, DdiProfile wantedProfile)
        : xml(stream)
        , layout(source)
        , profile(wantedProfile)
    {
    }

    /// Writes the element of a variable. \a recordTypes are the types of the records with the variable, separated by
    /// blanks.
    void write(const DdiVariable &variable, const QString &recordTypes);

private:
    void writeAttributes(const DdiVariable &variable, const QString &recordTypes);
    void writeDecimals(const Item &item);
    void writeMeasure(Measure measure);
    void writeLabels(const Column &column);
    void writeValidValues(const Item &item);
    void writeMissingValues(const Item &item);
    void writeRanges(const Item &item, const QVector<Range> &ranges);
    void writeRange(const Range &range);
    void writeText(const Item &item);
    void writeCategories(const Item &item);
    void writeCategoriesOf(const Item &item, const Value &value);
    void writeCategory(const Value &value, const QString &missingKind, const QString *code, const QString &text);
    void writeFormat(const Item &item);
    void writeFormatName(const Item &item);
    void writeSchema(const QString &schema);
    void writeNotes(const Item &item);
    void writeValueSet(const ValueSet &set, bool hasValues, bool isOneOfSeveral);

    bool isForIpums() const { return profile == DdiProfile::Ipums; }

    XmlStream &xml;
    const Layout &layout;
    DdiProfile profile;
};

} // namespace vanlayout

#endif
