#ifndef LAYOUT_READ_CSPROJSONFINDINGS_P_H
#define LAYOUT_READ_CSPROJSONFINDINGS_P_H

#include "read/Diagnostics_p.h"
#include "read/ElementAddress_p.h"

#include <vector>

namespace vanlayout
{

/// Collects problems and extra statements of the JSON form, each with the address of its element. Problems have a line
/// if the lines of the elements are wanted.
class CSProJsonFindings
{
public:
    /// \a elementLines are the lines of the elements that were read so far; null if they are not wanted.
    CSProJsonFindings(Layout &target, Diagnostics &list, const ElementLines *elementLines);

    /// Sets the line of the following problems; 0 for that of their element.
    void setLine(int number) { line = number; }

    void warn(const char *id, const QString &message, const ElementAddress &address);
    void inform(const char *id, const QString &message, const ElementAddress &address);
    void addExtra(const QString &key, const QString &value, const ElementAddress &address);

    size_t extraCount() const { return ofExtras.size(); }
    /// Removes all extras except the first \a count.
    void dropExtrasFrom(size_t count);

    /// Sets the path of each entry; to be called when all elements are in the layout.
    void resolvePaths();

private:
    Place placeOf(const ElementAddress &address) const;
    void addressLastProblem(const ElementAddress &address);

    Layout &layout;
    Diagnostics &diagnostics;
    const ElementLines *const lines;
    int line = 0;
    const int firstProblem;
    const int firstExtra;
    std::vector<ElementAddress> ofProblems;
    std::vector<ElementAddress> ofExtras;
};

} // namespace vanlayout

#endif
