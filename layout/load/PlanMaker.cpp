#include "PlanMaker_p.h"

#include "PlanChecks_p.h"
#include "PlanCodes_p.h"
#include "PlanNames_p.h"
#include "PlanTexts_p.h"
#include "write/Columns_p.h"
#include "write/Wording_p.h"

#include <QFileInfo>

#include <algorithm>
#include <unordered_map>

namespace vanlayout
{

namespace
{

// Names of files: one rule for all targets.
bool isNoName(const QString & /*name*/)
{
    return false;
}

TargetRules fileRules()
{
    TargetRules rules = {};
    rules.characters = NameCharacters::Plain;
    rules.nameCase = NameCase::Ignored;
    rules.name = { 100, LengthUnit::Characters };
    rules.isReservedColumn = isNoName;
    rules.isReservedTable = isNoName;
    return rules;
}

QString plainName(const QString &name)
{
    QString plain;
    for (const QChar character : name) {
        const bool isKept
            = character.unicode() < 0x80 && (character.isLetterOrNumber() || character == QLatin1Char('_'));
        plain += isKept ? character : QLatin1Char('_');
    }
    return plain;
}

// The name of a DDI document is that of its data file, with a suffix.
bool isNamedAfterData(const Layout &layout)
{
    return layout.format == Format::Ddi && !QFileInfo(layout.name).suffix().isEmpty();
}

QString programName(const Layout &layout)
{
    if (!layout.name.isEmpty())
        return plainName(isNamedAfterData(layout) ? QFileInfo(layout.name).completeBaseName() : layout.name);
    const QString stem = layout.file == QLatin1String("-") ? QString() : QFileInfo(layout.file).completeBaseName();
    return stem.isEmpty() ? QStringLiteral("layout") : plainName(stem);
}

QString padded(int number, int max)
{
    return QString::number(number).rightJustified(QString::number(max).size(), QLatin1Char('0'));
}

// The item that repeats with the outer number of a column.
const Item &outerItemOf(const Column &column)
{
    return column.parent && column.parent->occurrences > 1 ? *column.parent : *column.item;
}

CellType cellTypeOf(const Item &item)
{
    if (!item.isNumeric())
        return CellType::Text;
    return item.decimals > 0 ? CellType::Decimal : CellType::Integer;
}

PlannedColumn madeColumn(ColumnRole role, const char *name, const char *label)
{
    PlannedColumn column;
    column.role = role;
    column.name = QString::fromLatin1(name);
    column.original = column.name;
    column.label = QString::fromLatin1(label);
    return column;
}

/// Makes the plan of one layout that has no problems.
class PlanMaker
{
public:
    PlanMaker(const Layout &planned, const TargetRules &targetRules, const LoadOptions &options)
        : layout(planned)
        , rules(targetRules)
        , loaded(options.records)
        , tableNames(targetRules, PlanNames::Tables)
        , fileNames(filesRules, PlanNames::Tables)
    {
        plan.options = options;
        plan.codesName = QStringLiteral("codes");
        tableNames.take(plan.codesName);
        fileNames.take(plan.codesName);
    }

    LoadPlan make()
    {
        describe();
        for (int level = 0; level < layout.levels.size(); ++level) {
            for (const Record &record : layout.levels.at(level).records)
                addRecord(level, record);
        }
        for (ItemTable &table : itemTables)
            addItemTable(table);
        return std::move(plan);
    }

private:
    /// The columns of an item table, until all records have their names.
    struct ItemTable {
        int recordTable;
        QVector<Column> columns; ///< of the first occurrence
    };

    void describe()
    {
        LoadOptions &options = plan.options;
        plan.name = programName(layout);
        plan.dictionary = oneLine(layout.name);
        options.language = languageOf(layout, options.language);
        plan.label = oneLine(layout.labels.in(options.language));
        plan.dataKind
            = layout.format == Format::Ddi ? QStringLiteral("a data file") : QStringLiteral("a CSPro data file");
        plan.version = oneLine(describeFormat(layout));
        if (options.data.isEmpty())
            options.data
                = isNamedAfterData(layout) ? QFileInfo(layout.name).fileName() : plan.name + QLatin1String(".dat");
        if (layout.recordType && layout.recordType->length > 0)
            plan.recordType = layout.recordType;
    }

    QString markOf(const Record &record) const
    {
        return plan.recordType ? paddedMark(record.recordType, plan.recordType->length) : QString();
    }

    void addRecord(int level, const Record &record)
    {
        if (plan.recordType)
            plan.knownMarks.append(markOf(record));
        if (!loaded.holds(record))
            return;
        const bool isUnnamed = layout.format == Format::Ddi && record.name.isEmpty();
        PlannedTable table = namedTable(isUnnamed ? plan.name : record.name);
        table.label = oneLine(record.labels.in(plan.options.language));
        table.level = level;
        table.record = &record;
        table.mark = markOf(record);
        table.hasOccurrence = record.maximum > 1;
        const QVector<Column> columns = columnsOf(layout, level, record);
        plan.tables.append(table);
        setColumns(plan.tables.size() - 1, split(columns));
    }

    PlannedTable namedTable(const QString &original)
    {
        PlannedTable table;
        table.original = original;
        // `CODES` is renamed in each target, because tables may become files.
        const bool isCodes = original.compare(plan.codesName, Qt::CaseInsensitive) == 0;
        table.name = tableNames.give(isCodes ? original + QLatin1String("_2") : original);
        table.file = fileNames.give(table.name);
        if (isRenamed(original, table.name))
            plan.renames.append({ original, table.name });
        return table;
    }

    bool isRenamed(const QString &original, const QString &name) const
    {
        return name != (rules.nameCase == NameCase::Lower ? original.toLower() : original);
    }

    // Leaves the columns of the table of the record; in the long form the others get tables of their own. Binary items
    // have no column anywhere, so they get no table.
    QVector<Column> split(const QVector<Column> &columns)
    {
        QVector<Column> kept;
        const bool isLong = plan.options.occurrences == OccurrenceForm::Long;
        const Item *owner = nullptr;
        for (const Column &column : columns) {
            const bool isBinary = kindOf(*column.item) == ValueKind::Binary;
            if (!isLong || column.occurrence == 0 || isBinary) {
                kept.append(column);
                continue;
            }
            if (column.occurrence > 1)
                continue;
            if (&outerItemOf(column) != owner)
                itemTables.append({ int(plan.tables.size()) - 1, idsOf(columns) });
            owner = &outerItemOf(column);
            itemTables.last().columns.append(column);
        }
        return kept;
    }

    static QVector<Column> idsOf(const QVector<Column> &columns)
    {
        const auto isItem = [](const Column &column) { return !column.isId; };
        QVector<Column> ids;
        std::copy(columns.begin(), std::find_if(columns.begin(), columns.end(), isItem), std::back_inserter(ids));
        return ids;
    }

    void addItemTable(const ItemTable &made)
    {
        const PlannedTable record = plan.tables.at(made.recordTable);
        const auto isOwn = [](const Column &column) { return !column.isId; };
        const Column &first = *std::find_if(made.columns.begin(), made.columns.end(), isOwn);
        const Item &item = outerItemOf(first);
        PlannedTable table = namedTable(record.original + QLatin1Char('_') + nameOf(item, *record.record));
        table.label = oneLine(item.labels.in(plan.options.language));
        table.level = record.level;
        table.record = record.record;
        table.mark = record.mark;
        table.hasOccurrence = record.hasOccurrence;
        table.recordTable = made.recordTable;
        table.occurrences = item.occurrences;
        table.step = item.length;
        table.start = item.start;
        table.length = item.length;
        plan.tables.append(table);
        setColumns(plan.tables.size() - 1, made.columns);
    }

    // The made columns keep their names, whatever the dictionary has.
    void setColumns(int index, const QVector<Column> &columns)
    {
        PlannedTable &table = plan.tables[index];
        PlanNames names(rules, PlanNames::Columns);
        QVector<PlannedColumn> madeColumns;
        if (table.hasOccurrence)
            madeColumns.append(madeColumn(ColumnRole::Occurrence, "occ", "Number of the record within its case"));
        if (table.isItemTable())
            madeColumns.append(madeColumn(ColumnRole::ItemOccurrence, "item_occ", "Number of the occurrence"));
        for (const PlannedColumn &column : qAsConst(madeColumns))
            names.take(column.name);
        table.columns.reserve(columns.size() + madeColumns.size());
        bool isAfterIds = false;
        for (const Column &column : columns) {
            if (!column.isId && !isAfterIds)
                table.columns += madeColumns;
            isAfterIds = isAfterIds || !column.isId;
            if (!isLeftOut(table, column))
                table.columns.append(planned(table, column, names));
        }
        if (!isAfterIds)
            table.columns += madeColumns;
    }

    // Documents, images and the like are not in a text file.
    bool isLeftOut(const PlannedTable &table, const Column &column)
    {
        if (kindOf(*column.item) != ValueKind::Binary)
            return false;
        if (column.occurrence <= 1 && column.subOccurrence <= 1)
            plan.remarks.append(oneLine(QStringLiteral("%1.%2 has no column: its content (%3) is not in a text file.")
                                            .arg(table.record->name, column.item->name, column.item->type)));
        return true;
    }

    PlannedColumn planned(const PlannedTable &table, const Column &column, PlanNames &names)
    {
        PlannedColumn result;
        result.role = column.isId ? ColumnRole::Id : ColumnRole::Item;
        result.item = column.item;
        result.original = originalNameOf(table, column);
        result.name = names.give(result.original);
        result.type = cellTypeOf(*column.item);
        result.start = column.start;
        result.length = column.item->length;
        result.decimals = result.type == CellType::Decimal ? column.item->decimals : 0;
        result.label = cutTo(labelOf(table, column), rules.variableLabel);
        result.codes = codesOf(table, *column.item);
        if (isRenamed(result.original, result.name))
            plan.renames.append({ table.original + QLatin1Char('.') + result.original, result.name });
        return result;
    }

    QString originalNameOf(const PlannedTable &table, const Column &column) const
    {
        QString name = nameOf(*column.item, *table.record);
        if (column.occurrence > 0 && !table.isItemTable())
            name += QLatin1Char('_') + padded(column.occurrence, outerItemOf(column).occurrences);
        if (column.subOccurrence > 0)
            name += QLatin1Char('_') + padded(column.subOccurrence, column.item->occurrences);
        return name;
    }

    // An item without a name is named by its position in its list.
    QString nameOf(const Item &item, const Record &record) const
    {
        if (!item.name.isEmpty())
            return item.name;
        const QVector<Item> *list = &record.items;
        for (const Level &level : layout.levels) {
            if (std::any_of(level.ids.begin(), level.ids.end(), [&](const Item &id) { return &id == &item; }))
                list = &level.ids;
        }
        return QLatin1Char('V') + QString::number(&item - list->constData() + 1);
    }

    QString labelOf(const PlannedTable &table, const Column &column) const
    {
        QString label = oneLine(column.item->labels.in(plan.options.language));
        QStringList numbers;
        if (column.occurrence > 0 && !table.isItemTable())
            numbers.append(occurrenceText(column.label, column.occurrence));
        if (column.subOccurrence > 0)
            numbers.append(occurrenceText(column.subLabel, column.subOccurrence));
        if (label.isEmpty() || numbers.isEmpty())
            return label;
        return label + QLatin1String(" (") + numbers.join(QLatin1String(", ")) + QLatin1Char(')');
    }

    QString occurrenceText(const OccurrenceLabel *label, int occurrence) const
    {
        const QString text = label ? oneLine(label->labels.in(plan.options.language)) : QString();
        return text.isEmpty() ? QString::number(occurrence) : text;
    }

    // The index of the codes of an item, which its columns share; -1 if it has none.
    int codesOf(const PlannedTable &table, const Item &item)
    {
        if (item.valueSets.isEmpty() && item.missing.isEmpty())
            return -1;
        const auto [known, isNew] = codesOfItems.try_emplace(&item, plan.codes.size());
        if (isNew) {
            plan.codes.append(codeListOf(item, plan.options, rules.valueLabel));
            noteOtherValueSets(table, item);
        }
        return known->second;
    }

    void noteOtherValueSets(const PlannedTable &table, const Item &item)
    {
        if (item.valueSets.size() < 2)
            return;
        QStringList others;
        std::transform(item.valueSets.begin() + 1, item.valueSets.end(), std::back_inserter(others),
                       [](const ValueSet &set) { return set.name; });
        plan.remarks.append(oneLine(QStringLiteral("%1.%2 has the labels of its first value set, %3. Not used: %4.")
                                        .arg(table.record->name, nameOf(item, *table.record),
                                             item.valueSets.constFirst().name, others.join(QLatin1String(", ")))));
    }

    const Layout &layout;
    const TargetRules &rules;
    const TargetRules filesRules = fileRules();
    RecordSelection loaded;
    LoadPlan plan;
    PlanNames tableNames;
    PlanNames fileNames;
    QVector<ItemTable> itemTables;
    std::unordered_map<const Item *, int> codesOfItems;
};

} // namespace

LoadPlan makeLoadPlan(const Layout &layout, const TargetRules &rules, const LoadOptions &options)
{
    LoadPlan plan;
    plan.problem = problemWithLayout(layout, options);
    if (plan.problem.isEmpty()) {
        plan = PlanMaker(layout, rules, options).make();
        plan.problem = problemWithPlan(plan, rules);
    }
    return plan;
}

} // namespace vanlayout
