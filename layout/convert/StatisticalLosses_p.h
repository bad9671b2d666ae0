#ifndef LAYOUT_CONVERT_STATISTICALLOSSES_P_H
#define LAYOUT_CONVERT_STATISTICALLOSSES_P_H

#include "convert/LossesByKind_p.h"
#include "convert/StatisticalTypes_p.h"
#include "write/Columns_p.h"

namespace vanlayout
{

/// The statements of a layout for which a statistical file has no place at all.
class StatisticalLosses
{
public:
    StatisticalLosses(const Layout &source, StatisticalFormat target, const StatisticalTypes &targetTypes)
        : layout(source)
        , isSav(target == StatisticalFormat::Sav)
        , types(targetTypes)
    {
    }

    /// Adds those of a variable.
    void addVariable(const Column &column);
    /// Adds a kind of statement of a variable.
    void add(const QString &what, const QString &variable) { byKind.add(what, variable); }
    /// Appends those that were added, then those of the records and of the file.
    void appendTo(Losses &losses);

private:
    void addSets(const Item &item, const QString &name);
    void addValues(const ValueSet &set, const QString &name);
    void addTypes(const Item &item, const QString &name);
    void appendElements(Losses &losses) const;
    void appendFile(Losses &losses) const;

    const Layout &layout;
    bool isSav;
    const StatisticalTypes &types;
    LossesByKind byKind;
};

} // namespace vanlayout

#endif
