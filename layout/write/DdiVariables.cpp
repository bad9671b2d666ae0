#include "DdiVariables_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

bool isAsciiLetter(QChar unit)
{
    return (unit >= QLatin1Char('A') && unit <= QLatin1Char('Z'))
        || (unit >= QLatin1Char('a') && unit <= QLatin1Char('z'));
}

bool isInId(QChar unit)
{
    return isAsciiLetter(unit) || unit == QLatin1Char('_') || unit == QLatin1Char('.')
        || (unit >= QLatin1Char('0') && unit <= QLatin1Char('9'));
}

// Whether a name can be an ID. IDs of other elements have a hyphen, which those of variables do not have.
bool isId(const QString &name)
{
    return !name.isEmpty() && (isAsciiLetter(name.at(0)) || name.at(0) == QLatin1Char('_'))
        && std::all_of(name.begin(), name.end(), isInId);
}

} // namespace

DdiVariables::DdiVariables(const Layout &layout)
{
    for (int i = 0; i < layout.levels.size(); ++i)
        addLevel(layout, i);
    recordTypeId = ids.give(QStringLiteral("RECTYPE"));
}

// The ids of the levels above have already been added.
void DdiVariables::addLevel(const Layout &layout, int number)
{
    DdiLevel level{ &layout.levels.at(number), { end(), 0 }, { int(records.size()), 0 } };
    int idsAbove = 0;
    for (const DdiLevel &above : qAsConst(levels))
        idsAbove += above.ids.size();
    const QVector<Column> idColumns = columnsOf(layout, number, Record());
    std::for_each(idColumns.begin() + idsAbove, idColumns.end(), [this](const Column &column) { add(column); });
    level.ids.end = end();
    for (const Record &record : level.level->records) {
        DdiRecord entry{ &record, number, { end(), 0 } };
        const QVector<Column> columns = columnsOf(layout, number, record);
        std::for_each(columns.begin() + idColumns.size(), columns.end(), [this](const Column &column) { add(column); });
        entry.variables.end = end();
        records.append(entry);
    }
    level.records.end = records.size();
    levels.append(level);
}

void DdiVariables::add(const Column &column)
{
    const QString wanted = isId(column.name) ? column.name : QLatin1Char('V') + QString::number(all.size() + 1);
    all.append({ column, ids.give(wanted) });
}

} // namespace vanlayout
