#include "read/CSProJsonFindings_p.h"

namespace vanlayout
{

namespace
{

// Makes paths. Successive entries of the same element share the memory of their path.
class Paths
{
public:
    explicit Paths(const Layout &source)
        : layout(source)
    {
    }

    QString of(const ElementAddress &address)
    {
        if (!(address == last)) {
            path = pathOf(layout, address);
            last = address;
        }
        return path;
    }

private:
    const Layout &layout;
    ElementAddress last; // initially that of the file, whose path is empty
    QString path;
};

} // namespace

CSProJsonFindings::CSProJsonFindings(Layout &target, Diagnostics &list, const ElementLines *elementLines)
    : layout(target)
    , diagnostics(list)
    , lines(elementLines)
    , firstProblem(target.problems.size())
    , firstExtra(target.extras.size())
{
}

void CSProJsonFindings::warn(const char *id, const QString &message, const ElementAddress &address)
{
    diagnostics.warn(id, message, placeOf(address));
    addressLastProblem(address);
}

void CSProJsonFindings::inform(const char *id, const QString &message, const ElementAddress &address)
{
    diagnostics.inform(id, message, placeOf(address));
    addressLastProblem(address);
}

void CSProJsonFindings::addExtra(const QString &key, const QString &value, const ElementAddress &address)
{
    diagnostics.addExtra({}, key, value);
    if (size_t(layout.extras.size() - firstExtra) > ofExtras.size())
        ofExtras.push_back(address);
    else
        addressLastProblem(address); // the problem that there are too many extras
}

void CSProJsonFindings::dropExtrasFrom(size_t count)
{
    ofExtras.resize(count);
    layout.extras.resize(firstExtra + int(count));
}

void CSProJsonFindings::resolvePaths()
{
    Paths paths(layout);
    for (size_t index = 0; index < ofProblems.size(); ++index)
        layout.problems[firstProblem + int(index)].path = paths.of(ofProblems[index]);
    for (size_t index = 0; index < ofExtras.size(); ++index)
        layout.extras[firstExtra + int(index)].path = paths.of(ofExtras[index]);
}

// The path is set when all names are known.
Place CSProJsonFindings::placeOf(const ElementAddress &address) const
{
    if (!lines)
        return {};
    return { line > 0 ? line : lineOf(*lines, address), QString() };
}

void CSProJsonFindings::addressLastProblem(const ElementAddress &address)
{
    if (size_t(layout.problems.size() - firstProblem) > ofProblems.size())
        ofProblems.push_back(address);
}

} // namespace vanlayout
