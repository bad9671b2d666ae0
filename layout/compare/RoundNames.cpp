#include "compare/RoundNames.h"

#include "util/KeyedHash_p.h"

#include <QVector>

#include <algorithm>

namespace vanlayout
{

namespace
{

/// The end of a path: its last parts.
struct PathEnd {
    QString path;
    int begin = 0;

    QString text() const { return path.mid(begin); }
    bool isWhole() const { return begin == 0; }
    void lengthen()
    {
        // The part that precedes the slash at begin - 1; a slash at the beginning is kept with it.
        begin = begin < 2 ? 0 : int(path.lastIndexOf(QLatin1Char('/'), begin - 2)) + 1;
    }
};

PathEnd lastPartOf(const QString &path)
{
    return { path, int(path.lastIndexOf(QLatin1Char('/'))) + 1 };
}

KeyedMap<QString, int> countsOf(const QVector<PathEnd> &ends)
{
    KeyedMap<QString, int> counts;
    for (const PathEnd &end : ends)
        ++counts[end.text()];
    return counts;
}

// Lengthens the ends that are equal; false if there is none that can be lengthened.
bool lengthenEqual(QVector<PathEnd> &ends)
{
    const KeyedMap<QString, int> counts = countsOf(ends);
    bool isChanged = false;
    for (PathEnd &end : ends) {
        if (!end.isWhole() && counts.at(end.text()) > 1) {
            end.lengthen();
            isChanged = true;
        }
    }
    return isChanged;
}

} // namespace

QStringList roundNames(const QStringList &files)
{
    QVector<PathEnd> ends;
    ends.reserve(files.size());
    std::transform(files.begin(), files.end(), std::back_inserter(ends), lastPartOf);
    while (lengthenEqual(ends)) { }
    QStringList names;
    KeyedMap<QString, int> times;
    for (const PathEnd &end : qAsConst(ends)) {
        const QString name = end.text();
        const int time = ++times[name];
        names.append(time == 1 ? name : name + QLatin1Char('#') + QString::number(time));
    }
    return names;
}

} // namespace vanlayout
