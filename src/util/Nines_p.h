#ifndef UTIL_NINES_P_H
#define UTIL_NINES_P_H

#include "util/EmptyText_p.h"

#include <QHash>
#include <QString>

#include <algorithm>

/// Makes upper bounds that consist of nines. Equal widths share one text.
class Nines
{
public:
    /// Max width of a bound. No number of a dictionary is wider.
    static constexpr int maxWidth = 10000;

    /// Returns \a count nines; "" if \a count is 0 or less.
    QString operator()(qint64 count)
    {
        const int width = int(std::clamp<qint64>(count, 0, maxWidth));
        if (width == 0)
            return emptyText();
        QString &nines = byWidth[width];
        if (nines.size() != width)
            nines = QString(width, QLatin1Char('9'));
        return nines;
    }

private:
    QHash<int, QString> byWidth;
};

#endif
