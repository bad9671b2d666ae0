#ifndef LOAD_LOADABLELAYOUT_H
#define LOAD_LOADABLELAYOUT_H

#include "layout/MadeLayout.h"
#include "load/Load.h"

#include <QByteArray>

/// Short functions that make load programs for tests.
namespace made
{

/// A dictionary D with the id ID in columns 1 and 2, and one record R of these items.
inline Layout loadable(const QVector<Item> &items)
{
    Layout made = layout(items);
    made.format = Format::CSProText;
    made.name = QStringLiteral("D");
    made.levels[0].ids[0].start = 1;
    return made;
}

/// The item, after the columns of the id.
inline Item placed(Item item)
{
    item.start = 3;
    return item;
}

/// The file to run, or the reason why there is none.
inline QByteArray program(const Layout &layout, LoadTarget target, const LoadOptions &options = {})
{
    const LoadProgram made = makeLoadProgram(layout, target, options);
    return made.files.isEmpty() ? made.problem.toUtf8() : made.files.constFirst().text;
}

} // namespace made

#endif
