#ifndef LAYOUT_READ_CSPROJSONFINDINGS_P_H
#define LAYOUT_READ_CSPROJSONFINDINGS_P_H

#include "read/Diagnostics_p.h"

#include <vector>

namespace vanlayout
{

/// An element of a layout by its 0-based indexes, -1 for none. Unlike its path, it is known before the names are,
/// because the keys of a JSON object have no order.
struct ElementAddress {
    static constexpr int ids = -2; ///< value of `record` for the id items

    int level = -1;
    int record = -1;
    int item = -1;
    int valueSet = -1;
    int value = -1;
    int relation = -1;

    bool isInIds() const { return record == ids; }
};

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
