#include "LayoutText.h"

using vanlayout::Item;
using vanlayout::Layout;
using vanlayout::Level;
using vanlayout::Record;

QString countOf(qint64 count, const QString &noun)
{
    return QString::number(count) + QLatin1Char(' ') + noun + (count == 1 ? QLatin1String("") : QLatin1String("s"));
}

void forEachItem(const Layout &layout, const std::function<void(const Level &, const Record *, const Item &)> &visit)
{
    for (const Level &level : layout.levels) {
        for (const Item &item : level.ids)
            visit(level, nullptr, item);
        for (const Record &record : level.records) {
            for (const Item &item : record.items)
                visit(level, &record, item);
        }
    }
}
