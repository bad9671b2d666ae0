#ifndef LAYOUT_WRITE_DDIVARIABLES_P_H
#define LAYOUT_WRITE_DDIVARIABLES_P_H

#include "Columns_p.h"
#include "UniqueNames_p.h"

namespace vanlayout
{

/// A variable of a DDI document, with the attribute `ID` of its element.
struct DdiVariable {
    Column column;
    QString id;
};

/// Positions from first to end - 1 in a list.
struct DdiSpan {
    int first = 0;
    int end = 0;
    int size() const { return end - first; }
};

/// A record and its variables, without ids. It points into the layout.
struct DdiRecord {
    const Record *record = nullptr;
    int level = 0;
    DdiSpan variables;
};

/// A level, its ids, and its records.
struct DdiLevel {
    const Level *level = nullptr;
    DdiSpan ids;
    DdiSpan records;
};

/// The variables of a layout in their order: for each level its ids, then the items of each of its records. The object
/// points into the layout, which must outlive it.
struct DdiVariables {
    explicit DdiVariables(const Layout &layout);

    QVector<DdiVariable> all;
    QVector<DdiRecord> records;
    QVector<DdiLevel> levels;
    QString recordTypeId; ///< unique ID and name of the variable for the type of a record

private:
    void addLevel(const Layout &layout, int number);
    void add(const Column &column);
    int end() const { return all.size(); }

    UniqueNames ids;
};

/// Whether the lines of the data have columns for the type of their record.
inline bool hasRecordTypes(const Layout &layout)
{
    return layout.recordType && layout.recordType->start > 0 && layout.recordType->length > 0;
}

/// Whether the layout is that of a statistical file, which contains its data and has no columns, or of a DDI document
/// about one.
inline bool isStatistical(const Layout &layout)
{
    if (layout.format != Format::Ddi || layout.levels.isEmpty() || layout.levels.constFirst().records.isEmpty())
        return holdsData(layout.format);
    const QVector<Item> &items = layout.levels.constFirst().records.constFirst().items;
    return !items.isEmpty() && items.constFirst().storage != Storage::None;
}

} // namespace vanlayout

#endif
