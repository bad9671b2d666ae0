#ifndef UTIL_TEXTCACHE_P_H
#define UTIL_TEXTCACHE_P_H

#include <QHash>
#include <QString>

#include <array>

/// Makes texts of views and hands out the same text again for an equal view, as long as its place is not taken by
/// another. Codes and labels of value sets repeat a lot: they then share their memory.
class TextCache
{
public:
    QString text(QStringView view)
    {
        if (view.isEmpty() || view.size() > longestKept)
            return view.toString();
        QString &place = places[qHash(view) % places.size()];
        if (place != view)
            place = view.toString();
        return place;
    }

private:
    static constexpr qsizetype longestKept = 64;

    std::array<QString, 2048> places;
};

#endif
