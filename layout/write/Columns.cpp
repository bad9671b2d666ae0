#include "Columns_p.h"

#include "Exportable.h"
#include "UniqueNames_p.h"

#include <algorithm>
#include <numeric>

namespace vanlayout
{

namespace
{

QString numbered(const QString &name, int number)
{
    return number > 0 ? name + QLatin1Char('_') + QString::number(number) : name;
}

/// Appends the columns of items, in their order.
class ColumnMaker
{
public:
    explicit ColumnMaker(QVector<Column> &columnList)
        : columns(columnList)
    {
    }

    void add(const QVector<Item> &items, bool areIds)
    {
        isId = areIds;
        for (int first = 0; first < items.size();) {
            int end = first + 1;
            while (end < items.size() && items.at(end).isSubitem)
                ++end;
            addGroup(items, first, end);
            first = end;
        }
    }
    void nameColumns()
    {
        UniqueNames names;
        for (Column &column : columns)
            column.name = names.give(column.name);
    }

private:
    // An item and its subitems. Subitems without an item in front stand by themselves.
    void addGroup(const QVector<Item> &items, int first, int end)
    {
        const Item &head = items.at(first);
        const Item *parent = head.isSubitem ? nullptr : &head;
        const bool repeatsWhole = parent && head.occurrences > 1 && end > first + 1;
        const int rounds = repeatsWhole ? head.occurrences : 1;
        for (int round = 1; round <= rounds; ++round) {
            for (int i = first; i < end; ++i) {
                const Item &item = items.at(i);
                const Item *holder = &item == parent ? nullptr : parent;
                addItem(item, holder, i + 1, repeatsWhole ? round : 0);
            }
        }
    }

    void addItem(const Item &item, const Item *parent, int position, int round)
    {
        const QString name = item.name.isEmpty() ? QLatin1Char('V') + QString::number(position) : item.name;
        const bool repeatsItself = item.occurrences > 1 && (parent || round == 0);
        const int count = repeatsItself ? item.occurrences : 1;
        for (int k = 1; k <= count; ++k) {
            Column column;
            column.item = &item;
            column.parent = parent;
            column.isId = isId;
            column.occurrence = round > 0 ? round : repeatsItself ? k : 0;
            column.subOccurrence = round > 0 && repeatsItself ? k : 0;
            column.name = numbered(numbered(name, column.occurrence), column.subOccurrence);
            column.start = startOf(column);
            columns.append(column);
        }
    }

    static int startOf(const Column &column)
    {
        const Item *stepper
            = column.subOccurrence > 0 || (column.parent && column.parent->occurrences > 1) ? column.parent : nullptr;
        const int start = vanlayout::startOf(*column.item, std::max(column.occurrence, 1), stepper);
        if (column.subOccurrence < 2 || start == 0)
            return start;
        Item shifted = *column.item;
        shifted.start = start;
        return vanlayout::startOf(shifted, column.subOccurrence);
    }

    QVector<Column> &columns;
    bool isId = false;
};

QString occurrenceText(const Item &item, int occurrence, const QString &language)
{
    const auto *const label
        = std::find_if(item.occurrenceLabels.begin(), item.occurrenceLabels.end(),
                       [&](const OccurrenceLabel &entry) { return entry.occurrence == occurrence; });
    const QString text = label == item.occurrenceLabels.end() ? QString() : label->labels.in(language);
    return text.isEmpty() ? QString::number(occurrence) : text;
}

} // namespace

QVector<Column> columnsOf(const Layout &layout, int level, const Record &record)
{
    QVector<Column> columns;
    ColumnMaker maker(columns);
    for (int i = 0; i <= level && i < layout.levels.size(); ++i)
        maker.add(layout.levels.at(i).ids, true);
    maker.add(record.items, false);
    maker.nameColumns();
    return columns;
}

QVector<Column> idColumnsOf(const Level &level)
{
    QVector<Column> columns;
    ColumnMaker maker(columns);
    maker.add(level.ids, true);
    maker.nameColumns();
    return columns;
}

Labels labelsOf(const Column &column)
{
    Labels labels = column.item->labels;
    if (column.occurrence == 0)
        return labels;
    const Item &repeated = column.parent && column.parent->occurrences > 1 ? *column.parent : *column.item;
    for (Label &label : labels.parts) {
        label.text += QLatin1String(" (") + occurrenceText(repeated, column.occurrence, label.language);
        if (column.subOccurrence > 0)
            label.text += QLatin1String(", ") + occurrenceText(*column.item, column.subOccurrence, label.language);
        label.text += QLatin1Char(')');
    }
    return labels;
}

ValueKind kindOf(const Item &item)
{
    if (item.isAlpha() || item.storage == Storage::String)
        return ValueKind::Text;
    if (!item.isNumeric())
        return ValueKind::Binary;
    if (item.storage == Storage::Float || item.storage == Storage::Double)
        return ValueKind::Number;
    return item.decimals > 0 ? ValueKind::Number : ValueKind::Whole;
}

namespace
{

// A form may have a label for each code and language of a value.
qint64 labelCount(const Value &value)
{
    return qint64(std::max(value.ranges.size(), 1)) * std::max(value.labels.parts.size(), 1);
}

qint64 labelCount(const ValueSet &set)
{
    return std::accumulate(set.values.begin(), set.values.end(), qint64(0),
                           [](qint64 count, const Value &value) { return count + labelCount(value); });
}

} // namespace

QString exportProblem(const Layout &layout)
{
    qint64 columns = 0;
    qint64 values = 0;
    const auto count = [&](const QVector<Item> &items) {
        qint64 parentTimes = 1;
        for (const Item &item : items) {
            const qint64 own = std::max(item.occurrences, 1);
            parentTimes = item.isSubitem ? parentTimes : own;
            const qint64 times = item.isSubitem ? std::min(parentTimes * own, maxExportColumns + 1) : own;
            columns = std::min(columns + times, maxExportColumns + 1);
            for (const ValueSet &set : item.valueSets)
                values = std::min(values + times * std::min(labelCount(set), maxExportValues + 1), maxExportValues + 1);
        }
    };
    for (const Level &level : layout.levels) {
        count(level.ids);
        for (const Record &record : level.records)
            count(record.items);
    }
    if (columns > maxExportColumns)
        return QStringLiteral("has more than %1 variables, counting each occurrence").arg(maxExportColumns);
    if (values > maxExportValues)
        return QStringLiteral("has more than %1 value labels, counting those of each occurrence, code and language")
            .arg(maxExportValues);
    return QString();
}

} // namespace vanlayout
