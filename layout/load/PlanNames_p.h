#ifndef LAYOUT_LOAD_PLANNAMES_P_H
#define LAYOUT_LOAD_PLANNAMES_P_H

#include "load/TargetRules_p.h"
#include "util/KeyedHash_p.h"

#include <QString>

#include <utility>

namespace vanlayout
{

/// The names of the tables of a program, or of the columns of one table: legal in the target and unique.
class PlanNames
{
public:
    enum Kind { Tables, Columns };

    PlanNames(const TargetRules &targetRules, Kind kindOfNames)
        : rules(targetRules)
        , kind(kindOfNames)
    {
    }

    /// Uses a made name such as `occ` unchanged.
    void take(const QString &name) { isTaken(name); }

    /// Returns the legal form of a name, or the first free one of `NAME_2`, `NAME_3` ..., and marks it as used. If
    /// the length is limited, the name is cut, so that the number fits.
    QString give(const QString &original);

private:
    bool isTaken(const QString &name);
    bool isReserved(const QString &name) const;
    QString legal(const QString &original) const;
    QString numbered(const QString &wanted);
    QString keyOf(const QString &name) const;

    const TargetRules &rules;
    Kind kind;
    KeyedSet<QString> used;      ///< keys of the names in use
    KeyedMap<QString, int> next; ///< number to try next, by the key of the name before it
};

} // namespace vanlayout

#endif
