#include "Columns_p.h"

#include "Exportable.h"
#include "UniqueNames_p.h"
#include "util/KeyedHash_p.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace vanlayout
{

namespace
{

QString numbered(const QString &name, int number)
{
    return number > 0 ? name + QLatin1Char('_') + QString::number(number) : name;
}

// The labels of the occurrences of an item by number; the first label of an occurrence counts.
using OccurrenceLabels = KeyedMap<quint64, const OccurrenceLabel *>;

OccurrenceLabels labelsByOccurrence(const Item &item)
{
    OccurrenceLabels labels;
    if (item.occurrences > 1) {
        for (const OccurrenceLabel &label : item.occurrenceLabels)
            labels.emplace(quint64(label.occurrence), &label);
    }
    return labels;
}

const OccurrenceLabel *labelOf(const OccurrenceLabels &labels, int occurrence)
{
    if (occurrence < 1 || labels.empty())
        return nullptr;
    const auto label = labels.find(quint64(occurrence));
    return label != labels.end() ? label->second : nullptr;
}

/// Appends the columns of items, in their order.
class ColumnMaker
{
public:
    explicit ColumnMaker(QVector<Column> &columnList)
        : columns(columnList)
    {
    }

    void addIds(const QVector<Item> &items)
    {
        isId = true;
        add(items);
    }
    void addItems(const QVector<Item> &items)
    {
        isId = false;
        add(items);
    }
    void nameColumns()
    {
        UniqueNames names;
        for (Column &column : columns)
            column.name = names.give(column.name);
    }

private:
    void add(const QVector<Item> &items)
    {
        for (int first = 0; first < items.size();) {
            int end = first + 1;
            while (end < items.size() && items.at(end).isSubitem)
                ++end;
            addGroup(items, first, end);
            first = end;
        }
    }

    // Adds an item and its subitems. Subitems without an item before them are separate items.
    void addGroup(const QVector<Item> &items, int first, int end)
    {
        const Item &head = items.at(first);
        const Item *parent = head.isSubitem ? nullptr : &head;
        const bool repeatsWhole = parent && head.occurrences > 1 && end > first + 1;
        const int rounds = repeatsWhole ? head.occurrences : 1;
        std::vector<OccurrenceLabels> labels; // of each item of the group
        for (int i = first; i < end; ++i)
            labels.push_back(labelsByOccurrence(items.at(i)));
        for (int round = 1; round <= rounds; ++round) {
            for (int i = first; i < end; ++i) {
                const Item &item = items.at(i);
                const Item *holder = &item == parent ? nullptr : parent;
                const OccurrenceLabels &own = labels.at(size_t(i) - size_t(first));
                const int added = columns.size();
                addItem(item, holder, i + 1, repeatsWhole ? round : 0);
                label(added, repeatsWhole ? labels.front() : own, own);
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

    // Sets the labels of the columns from `added` on.
    void label(int added, const OccurrenceLabels &labels, const OccurrenceLabels &subLabels)
    {
        for (int i = added; i < columns.size(); ++i) {
            columns[i].label = labelOf(labels, columns.at(i).occurrence);
            columns[i].subLabel = labelOf(subLabels, columns.at(i).subOccurrence);
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

QString occurrenceText(const OccurrenceLabel *label, int occurrence, const QString &language)
{
    const QString text = label ? label->labels.in(language) : QString();
    return text.isEmpty() ? QString::number(occurrence) : text;
}

} // namespace

QVector<Column> columnsOf(const Layout &layout, int level, const Record &record)
{
    QVector<Column> columns;
    ColumnMaker maker(columns);
    for (int i = 0; i <= level && i < layout.levels.size(); ++i)
        maker.addIds(layout.levels.at(i).ids);
    maker.addItems(record.items);
    maker.nameColumns();
    return columns;
}

QVector<Column> idColumnsOf(const Level &level)
{
    QVector<Column> columns;
    ColumnMaker maker(columns);
    maker.addIds(level.ids);
    maker.nameColumns();
    return columns;
}

Labels labelsOf(const Column &column)
{
    Labels labels = column.item->labels;
    if (column.occurrence == 0)
        return labels;
    for (Label &label : labels.parts) {
        label.text += QLatin1String(" (") + occurrenceText(column.label, column.occurrence, label.language);
        if (column.subOccurrence > 0)
            label.text += QLatin1String(", ") + occurrenceText(column.subLabel, column.subOccurrence, label.language);
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

// The max number of labels in a form: it may have one for each code and language of a value.
qint64 labelCount(const Value &value)
{
    return qint64(std::max(int(value.ranges.size()), 1)) * std::max(int(value.labels.parts.size()), 1);
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
