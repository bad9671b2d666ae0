#include "read/CSProJsonFindings_p.h"

#include "read/CSProCommon_p.h"

#include <tuple>

namespace vanlayout
{

namespace
{

const Item &itemAt(const Level &level, const ElementAddress &address)
{
    return address.isInIds() ? level.ids.at(address.item) : level.records.at(address.record).items.at(address.item);
}

// `LEVEL`, `LEVEL/RECORD` or `LEVEL/(ids)`.
QString recordPath(const Level &level, const ElementAddress &address)
{
    const QString path = cspro::nameInPath(level.name);
    if (address.isInIds())
        return cspro::childPath(path, cspro::idsName());
    return address.record < 0 ? path : cspro::childPath(path, level.records.at(address.record).name);
}

QString itemPath(const Level &level, const ElementAddress &address)
{
    const Item &item = itemAt(level, address);
    QString path = cspro::childPath(recordPath(level, address), item.name);
    if (address.valueSet < 0)
        return path;
    const QString setPath = cspro::childPath(path, item.valueSets.at(address.valueSet).name);
    return address.value < 0 ? setPath : cspro::valuePath(setPath, address.value + 1);
}

QString madePath(const Layout &layout, const ElementAddress &address)
{
    if (address.relation >= 0)
        return cspro::relationPath(layout.relations.at(address.relation).name);
    if (address.level < 0)
        return QString();
    const Level &level = layout.levels.at(address.level);
    return address.item < 0 ? recordPath(level, address) : itemPath(level, address);
}

bool isSame(const ElementAddress &left, const ElementAddress &right)
{
    const auto tied = [](const ElementAddress &address) {
        return std::tie(address.level, address.record, address.item, address.valueSet, address.value, address.relation);
    };
    return tied(left) == tied(right);
}

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
        if (!isSame(address, last)) {
            path = madePath(layout, address);
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

CSProJsonFindings::CSProJsonFindings(Layout &target, Diagnostics &list)
    : layout(target)
    , diagnostics(list)
    , firstProblem(target.problems.size())
    , firstExtra(target.extras.size())
{
}

void CSProJsonFindings::warn(const char *id, const QString &message, const ElementAddress &address)
{
    diagnostics.warn(id, message);
    addressLastProblem(address);
}

void CSProJsonFindings::inform(const char *id, const QString &message, const ElementAddress &address)
{
    diagnostics.inform(id, message);
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

void CSProJsonFindings::addressLastProblem(const ElementAddress &address)
{
    if (size_t(layout.problems.size() - firstProblem) > ofProblems.size())
        ofProblems.push_back(address);
}

} // namespace vanlayout
