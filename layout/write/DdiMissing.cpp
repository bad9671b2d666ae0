#include "DdiMissing_p.h"

#include "Wording_p.h"
#include "util/KeyedHash_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

bool isExtendedMissing(const QString &code)
{
    return code.size() == 2 && code.at(0) == QLatin1Char('.')
        && ((code.at(1) >= QLatin1Char('a') && code.at(1) <= QLatin1Char('z')) || code.at(1) == QLatin1Char('_'));
}

bool isWithin(const QString &code, const Range &missing)
{
    bool isNumber = false;
    const double number = code.toDouble(&isNumber);
    if (!isNumber || missing.to.isEmpty())
        return false;
    return missing.from.toDouble() <= number && number <= missing.to.toDouble();
}

bool isUserMissing(const Item &item, const QString &code)
{
    return std::any_of(item.missing.begin(), item.missing.end(),
                       [&](const Range &missing) { return code == missing.from || isWithin(code, missing); });
}

QString statisticalKind(const Item &item, const QString &code)
{
    if (isUserMissing(item, code))
        return QStringLiteral("user-missing");
    if (item.storage == Storage::None || !item.isNumeric())
        return QString();
    if (code == QLatin1String("."))
        return QStringLiteral("system missing");
    return isExtendedMissing(code) ? QStringLiteral("extended missing") : QString();
}

} // namespace

QString missingKindOf(const Item &item, const Value &value, const Range &range)
{
    const QString special = describeSpecial(value.special);
    return special.isEmpty() && range.to.isEmpty() ? statisticalKind(item, range.from) : special;
}

QVector<Range> missingRangesOf(const Item &item)
{
    QVector<Range> ranges = item.missing;
    KeyedSet<QString> known;
    for (const ValueSet &set : item.valueSets) {
        for (const Value &value : set.values) {
            for (const Range &range : value.ranges) {
                const bool isNew = !missingKindOf(item, value, range).isEmpty() && !isUserMissing(item, range.from)
                    && known.insert(range.from + QChar(0) + range.to).second;
                if (isNew)
                    ranges.append(range);
            }
        }
    }
    return ranges;
}

QStringList unlabelledMissingCodes(const Item &item, const QVector<Value> &values)
{
    QStringList codes;
    for (const Range &missing : item.missing) {
        const auto hasCode = [&](const Value &value) { return value.ranges.contains({ missing.from, QString() }); };
        if (missing.to.isEmpty() && std::none_of(values.begin(), values.end(), hasCode))
            codes.append(missing.from);
    }
    return codes;
}

} // namespace vanlayout
