#include "Tables_p.h"

#include "write/Columns_p.h"
#include "write/UniqueNames_p.h"

#include <algorithm>
#include <array>

namespace vanlayout
{

namespace
{

bool isSafe(QChar character)
{
    const ushort unit = character.unicode();
    return (unit >= 'a' && unit <= 'z') || (unit >= 'A' && unit <= 'Z') || (unit >= '0' && unit <= '9') || unit == '_'
        || unit == '-';
}

// Whether a name is that of a device, which a file cannot have on Windows.
bool isDevice(const QString &name)
{
    static const std::array<const char *, 4> devices = { "con", "prn", "aux", "nul" };
    const QString lower = name.toLower();
    const bool isNumbered = lower.size() == 4 && lower.at(3).isDigit()
        && (lower.startsWith(QLatin1String("com")) || lower.startsWith(QLatin1String("lpt")));
    const auto isIt = [&](const char *device) { return lower == QLatin1String(device); };
    return isNumbered || std::any_of(devices.begin(), devices.end(), isIt);
}

QString safeName(const QString &name)
{
    if (name.isEmpty())
        return QStringLiteral("data");
    QString safe = name;
    std::replace_if(
        safe.begin(), safe.end(), [](QChar character) { return !isSafe(character); }, QLatin1Char('_'));
    return isDevice(safe) || safe.startsWith(QLatin1Char('-')) ? QLatin1Char('_') + safe : safe;
}

// The name, or the first of `NAME_2`, `NAME_3` ... that differs from all others even if case is ignored.
QString uniqueName(UniqueNames &names, const QString &wanted)
{
    return wanted + names.give(wanted.toLower()).mid(wanted.size());
}

// Whether ids identify cases and the entries of their lower levels: each level down to this one has ids.
bool hasIds(const Layout &layout, int level)
{
    return std::all_of(layout.levels.begin(), layout.levels.begin() + level + 1,
                       [](const Level &entry) { return !entry.ids.isEmpty(); });
}

bool isOnce(const Record &record)
{
    return record.maximum == 1;
}

// Sets the heads of the tables from `first` on, which are those of one level. Returns the head for the level below.
int setHeads(QVector<Table> &tables, int first, int headAbove)
{
    const auto isHead = [](const Table &table) { return table.isKeyed && table.record->required; };
    const QVector<Table>::const_iterator found = std::find_if(tables.cbegin() + first, tables.cend(), isHead);
    const int head = found == tables.cend() ? headAbove : int(found - tables.cbegin());
    for (int i = first; i < tables.size(); ++i)
        tables[i].head = i == head ? headAbove : head;
    return head;
}

} // namespace

QVector<Table> tablesOf(const Layout &layout)
{
    static const Record onlyIds;
    QVector<Table> tables;
    UniqueNames names;
    int head = -1;
    for (int index = 0; index < layout.levels.size(); ++index) {
        const Level &level = layout.levels.at(index);
        const int first = tables.size();
        for (const Record &record : level.records) {
            const bool isKeyed = isOnce(record) && hasIds(layout, index);
            tables.append({ index, &record, uniqueName(names, safeName(record.name)), isKeyed, -1 });
        }
        if (level.records.isEmpty() && !level.ids.isEmpty())
            tables.append({ index, &onlyIds, uniqueName(names, safeName(level.name)), hasIds(layout, index), -1 });
        head = setHeads(tables, first, head);
    }
    return tables;
}

QStringList idNamesOf(const Layout &layout, int level)
{
    QStringList names;
    const QVector<Column> columns = columnsOf(layout, level, Record());
    for (const Column &column : columns)
        names.append(column.name);
    return names;
}

QString titleOf(const Layout &layout, const QString &given, const QString &language)
{
    if (!given.isEmpty())
        return given;
    const QString label = layout.labels.in(language);
    return label.isEmpty() ? layout.name : label;
}

} // namespace vanlayout
