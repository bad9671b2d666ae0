#ifndef LAYOUT_CONVERT_STATISTICALNAMES_P_H
#define LAYOUT_CONVERT_STATISTICALNAMES_P_H

#include "convert/StatisticalFile.h"
#include "load/PlanNames_p.h"

namespace vanlayout
{

/// The names of variables, or of label sets, of a statistical file: legal in its program and unique.
class StatisticalNames
{
public:
    explicit StatisticalNames(StatisticalFormat target);

    /// Returns the name unchanged if the program allows it and it is not in use. Otherwise it is changed as in the load
    /// program for the same program.
    QString give(const QString &original);

private:
    bool isLegal(const QString &name) const;

    StatisticalFormat format;
    const TargetRules &rules;
    PlanNames changed;
    KeyedSet<QString> used; // in the case in which names are compared
};

} // namespace vanlayout

#endif
