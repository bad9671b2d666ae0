#include "read/ElementAddress_p.h"

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

} // namespace

bool operator==(const ElementAddress &left, const ElementAddress &right)
{
    const auto tied = [](const ElementAddress &address) {
        return std::tie(address.level, address.record, address.item, address.valueSet, address.value, address.relation);
    };
    return tied(left) == tied(right);
}

QString pathOf(const Layout &layout, const ElementAddress &address)
{
    if (address.relation >= 0)
        return cspro::relationPath(layout.relations.at(address.relation).name);
    if (address.level < 0)
        return QString();
    const Level &level = layout.levels.at(address.level);
    return address.item < 0 ? recordPath(level, address) : itemPath(level, address);
}

namespace
{

template <typename Lines> typename Lines::value_type &entryOf(Lines &lines, int index)
{
    if (lines.size() <= size_t(index))
        lines.resize(size_t(index) + 1);
    return lines[size_t(index)];
}

void setLine(ElementLines::Element &lines, const ElementAddress &address, int line)
{
    if (address.valueSet < 0) {
        lines.line = line;
        return;
    }
    ElementLines::Set &set = entryOf(lines.valueSets, address.valueSet);
    (address.value < 0 ? set.line : entryOf(set.values, address.value)) = line;
}

void setLine(ElementLines::Level &lines, const ElementAddress &address, int line)
{
    if (address.isInIds()) {
        if (address.item >= 0)
            setLine(entryOf(lines.ids, address.item), address, line);
    } else if (address.record < 0) {
        lines.line = line;
    } else if (address.item < 0) {
        entryOf(lines.records, address.record).line = line;
    } else {
        setLine(entryOf(entryOf(lines.records, address.record).items, address.item), address, line);
    }
}

template <typename Lines> bool has(const Lines &lines, int index)
{
    return index >= 0 && size_t(index) < lines.size();
}

int lineOf(const ElementLines::Element &element, const ElementAddress &address)
{
    if (!has(element.valueSets, address.valueSet))
        return element.line;
    const ElementLines::Set &set = element.valueSets[size_t(address.valueSet)];
    return has(set.values, address.value) ? set.values[size_t(address.value)] : set.line;
}

int lineOf(const ElementLines::Level &level, const ElementAddress &address)
{
    if (address.isInIds())
        return has(level.ids, address.item) ? lineOf(level.ids[size_t(address.item)], address) : level.line;
    if (!has(level.records, address.record))
        return level.line;
    const ElementLines::Record &record = level.records[size_t(address.record)];
    return has(record.items, address.item) ? lineOf(record.items[size_t(address.item)], address) : record.line;
}

} // namespace

void setLine(ElementLines &lines, const ElementAddress &address, int line)
{
    if (address.relation >= 0)
        entryOf(lines.relations, address.relation) = line;
    else if (address.level >= 0)
        setLine(entryOf(lines.levels, address.level), address, line);
    else
        lines.dictionary = line;
}

int lineOf(const ElementLines &lines, const ElementAddress &address)
{
    if (has(lines.relations, address.relation))
        return lines.relations[size_t(address.relation)];
    if (!has(lines.levels, address.level))
        return lines.dictionary;
    return lineOf(lines.levels[size_t(address.level)], address);
}

} // namespace vanlayout
