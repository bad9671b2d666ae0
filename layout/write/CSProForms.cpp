#include "write/CSProForms_p.h"

#include "read/CSProCommon_p.h"
#include "util/Numbers_p.h"

#include <algorithm>

namespace vanlayout
{

namespace csproforms
{

namespace
{

// The last column of all occurrences; 0 for a subitem, which is within its item.
qint64 endOf(const Item &item)
{
    if (item.isSubitem || item.start < 1)
        return 0;
    return qint64(item.start) + qint64(std::max(item.length, 0)) * std::max(item.occurrences, 1) - 1;
}

qint64 endOf(const QVector<Item> &items)
{
    qint64 end = 0;
    for (const Item &item : items)
        end = std::max(end, endOf(item));
    return end;
}

} // namespace

bool isBinary(const Item &item)
{
    return item.type == QLatin1String("document") || item.type == QLatin1String("audio")
        || item.type == QLatin1String("image") || item.type == QLatin1String("geometry");
}

int recordLength(const Layout &layout, const Record &record)
{
    qint64 length = std::max(qint64(1), endOf(record.items));
    if (layout.recordType)
        length = std::max(length, qint64(layout.recordType->start) + layout.recordType->length - 1);
    for (const Level &level : layout.levels)
        length = std::max(length, endOf(level.ids));
    return numbers::clamped(length);
}

const Extra *renamedSecurityWord(const Layout &layout)
{
    for (const Extra &extra : layout.extras) {
        const bool isBoolean = extra.value == QLatin1String("true") || extra.value == QLatin1String("false");
        if (isBoolean && extra.path.isEmpty() && extra.key == QLatin1String("security.allowDataManagerModifications"))
            return &extra;
    }
    return nullptr;
}

QString lossOf(const Extra &extra)
{
    return QStringLiteral("the unknown statement %1").arg(cspro::quoted(extra.key));
}

} // namespace csproforms

bool LinkedValueSets::isCopy(const ValueSet &set)
{
    if (set.link.isEmpty() || set.values.isEmpty())
        return false;
    const auto [known, isFirst] = written.emplace(set.link, set.values);
    return !isFirst && known->second == set.values;
}

} // namespace vanlayout
