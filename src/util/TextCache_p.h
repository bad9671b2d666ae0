#ifndef UTIL_TEXTCACHE_P_H
#define UTIL_TEXTCACHE_P_H

#include <QString>

#include <algorithm>
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
        QString &place = places[hashOf(view) % places.size()];
        if (place.size() != view.size() || !std::equal(view.begin(), view.end(), place.cbegin()))
            place = view.toString();
        return place;
    }

private:
    static constexpr qsizetype longestKept = 64;

    // For short texts quicker than Qt's hash.
    static size_t hashOf(QStringView view)
    {
        size_t hash = 0;
        for (const QChar unit : view)
            hash = hash * 31 + unit.unicode();
        return hash;
    }

    std::array<QString, 2048> places;
};

#endif
