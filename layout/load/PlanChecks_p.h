#ifndef LAYOUT_LOAD_PLANCHECKS_P_H
#define LAYOUT_LOAD_PLANCHECKS_P_H

#include "load/Plan_p.h"
#include "load/TargetRules_p.h"
#include "util/KeyedHash_p.h"

/// The reasons why a layout has no load program, as predicates without the name of the dictionary.
namespace vanlayout
{

/// The mark of a record, padded with blanks to the length of the record type.
QString paddedMark(const QString &recordType, int length);

/// The declared spelling of the language with this code; the primary language if \a wanted is empty. Empty if the
/// dictionary declares no languages.
QString languageOf(const Layout &layout, const QString &wanted);

/// The records that are loaded.
class RecordSelection
{
public:
    /// \a records are names; empty for all records.
    explicit RecordSelection(const QStringList &records)
        : names(records.begin(), records.end())
    {
    }

    bool holds(const Record &record) const { return names.empty() || names.find(record.name) != names.end(); }

private:
    KeyedSet<QString> names;
};

/// The reason why no plan can be made; empty if one can.
QString problemWithLayout(const Layout &layout, const LoadOptions &options);

/// The reason why a plan is too large for its target; empty if it is not.
QString problemWithPlan(const LoadPlan &plan, const TargetRules &rules);

} // namespace vanlayout

#endif
