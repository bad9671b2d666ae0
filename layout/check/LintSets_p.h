#ifndef LAYOUT_CHECK_LINTSETS_P_H
#define LAYOUT_CHECK_LINTSETS_P_H

#include "model/Layout.h"
#include "util/KeyedHash_p.h"

namespace vanlayout
{

/// The value sets that have been checked. Sets that share a link, and the label sets of a statistical file with the
/// same name, have the same values; they are checked once for all items of the same type, length and decimals.
class CheckedSets
{
public:
    explicit CheckedSets(const Layout &source)
        : layout(source)
    {
    }

    /// Whether the values of \a set have not been checked for an item like \a item.
    bool isNew(const ValueSet &set, const Item &item)
    {
        const bool isDictionary = layout.format == Format::CSProText || layout.format == Format::CSProJson;
        const QString &shared = isDictionary ? set.link : set.name;
        if (shared.isEmpty())
            return true;
        const QString key = QStringLiteral("%1 %2 %3 %4 ")
                                .arg(item.length)
                                .arg(item.decimals)
                                .arg(int(item.storage))
                                .arg(item.decimalMark ? 1 : 0)
            + item.type + QLatin1Char(' ') + shared;
        const auto [known, isFirst] = checked.emplace(key, set.values);
        return isFirst || known->second != set.values;
    }

private:
    const Layout &layout;
    KeyedMap<QString, QVector<Value>> checked;
};

} // namespace vanlayout

#endif
