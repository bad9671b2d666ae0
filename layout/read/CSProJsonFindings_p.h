#ifndef LAYOUT_READ_CSPROJSONFINDINGS_P_H
#define LAYOUT_READ_CSPROJSONFINDINGS_P_H

#include "read/Diagnostics_p.h"
#include "read/ElementAddress_p.h"

#include <vector>

namespace vanlayout
{

/// Collects problems and extra statements of the JSON form, each with the address of its element.
class CSProJsonFindings
{
public:
    CSProJsonFindings(Layout &target, Diagnostics &list);

    void warn(const char *id, const QString &message, const ElementAddress &address);
    void inform(const char *id, const QString &message, const ElementAddress &address);
    void addExtra(const QString &key, const QString &value, const ElementAddress &address);

    size_t extraCount() const { return ofExtras.size(); }
    /// Removes all extras except the first \a count.
    void dropExtrasFrom(size_t count);

    /// Sets the path of each entry; to be called when all elements are in the layout.
    void resolvePaths();

private:
    void addressLastProblem(const ElementAddress &address);

    Layout &layout;
    Diagnostics &diagnostics;
    const int firstProblem;
    const int firstExtra;
    std::vector<ElementAddress> ofProblems;
    std::vector<ElementAddress> ofExtras;
};

} // namespace vanlayout

#endif
