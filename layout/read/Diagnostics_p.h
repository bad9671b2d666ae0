#ifndef LAYOUT_READ_DIAGNOSTICS_P_H
#define LAYOUT_READ_DIAGNOSTICS_P_H

#include "model/Layout.h"

namespace vanlayout
{

/// The place of a problem or an extra statement.
struct Place {
    int line = 0; ///< 1-based; 0 if there is none
    QString path; ///< as in Problem
};

/// Collects the problems that a reader finds, and the statements for which the layout has no member.
///
/// Both lists are limited, so that a hostile file costs no more than a real one; instead of the first entry beyond a
/// bound, one problem reports that there are too many (`too-many-problems`, `too-many-extras`).
class Diagnostics
{
public:
    static constexpr int maxProblems = 100'000;
    static constexpr int maxExtras = 1'000'000;

    explicit Diagnostics(Layout &target)
        : layout(target)
    {
    }

    void warn(const char *id, const QString &message, const Place &place = {});
    void inform(const char *id, const QString &message, const Place &place = {});
    /// Ends reading without a layout: everything that was read is discarded, and this is the only problem.
    void fail(const char *id, const QString &message, int line = 0);
    void addExtra(const Place &place, const QString &key, const QString &value);

private:
    void add(Severity severity, const char *id, const QString &message, const Place &place);

    Layout &layout;
    bool hasTooManyExtras = false;
};

} // namespace vanlayout

#endif
