#ifndef LAYOUT_WRITE_UNIQUENAMES_P_H
#define LAYOUT_WRITE_UNIQUENAMES_P_H

#include "util/KeyedHash_p.h"

#include <QString>

namespace vanlayout
{

/// The names in use, and for each the suffix to try next.
class UniqueNames
{
public:
    /// Returns the wanted name, or the first free one of `NAME_2`, `NAME_3` ..., and marks it as used.
    QString give(const QString &wanted)
    {
        if (next.try_emplace(wanted, 2).second)
            return wanted;
        for (int &suffix = next[wanted];; ++suffix) {
            const QString name = wanted + QLatin1Char('_') + QString::number(suffix);
            if (next.find(name) == next.end()) {
                ++suffix;
                next.emplace(name, 2);
                return name;
            }
        }
    }

private:
    KeyedMap<QString, int> next;
};

} // namespace vanlayout

#endif
