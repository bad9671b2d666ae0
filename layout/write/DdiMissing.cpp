#include "DdiMissing_p.h"

#include "Codes_p.h"
#include "Wording_p.h"
#include "util/KeyedHash_p.h"

#include <cmath>

namespace vanlayout
{

namespace
{

QString userMissing()
{
    return QStringLiteral("user-missing");
}

} // namespace

QString missingKindOf(const Item &item, const Value &value, const Range &range)
{
    if (value.special != Special::None || !isMissing(item, value, range))
        return describeSpecial(value.special);
    if (range.from == QLatin1String("."))
        return QStringLiteral("system missing");
    const bool isTag = range.from.startsWith(QLatin1Char('.')) && item.isNumeric() && std::isnan(valueOf(range.from));
    return isTag ? QStringLiteral("extended missing") : userMissing();
}

QVector<Range> missingRangesOf(const Item &item)
{
    QVector<Range> ranges = item.missing;
    KeyedSet<QString> known;
    for (const ValueSet &set : item.valueSets) {
        for (const Value &value : set.values) {
            for (const Range &range : value.ranges) {
                const QString kind = missingKindOf(item, value, range);
                if (!kind.isEmpty() && kind != userMissing() && known.insert(range.from + QChar(0) + range.to).second)
                    ranges.append(range);
            }
        }
    }
    return ranges;
}

} // namespace vanlayout
