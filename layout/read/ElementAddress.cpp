#include "read/ElementAddress_p.h"

#include "read/CSProCommon_p.h"

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

} // namespace

QString pathOf(const Layout &layout, const ElementAddress &address)
{
    if (address.relation >= 0)
        return cspro::relationPath(layout.relations.at(address.relation).name);
    if (address.level < 0)
        return QString();
    const Level &level = layout.levels.at(address.level);
    return address.item < 0 ? recordPath(level, address) : itemPath(level, address);
}

} // namespace vanlayout
