#ifndef UTIL_NINES_P_H
#define UTIL_NINES_P_H

#include "util/EmptyText_p.h"

#include <QHash>
#include <QString>

#include <algorithm>

/// Upper bounds of nothing but nines, one text for each width.
class Nines
{
public:
    /// Bounds end here: no number of a dictionary is wider.
    static constexpr int most = 10000;

    /// \a count nines; "" for none or fewer.
    QString operator()(qint64 count)
    {
        const int width = int(std::clamp<qint64>(count, 0, most));
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
