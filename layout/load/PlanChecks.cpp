#include "PlanChecks_p.h"

#include "LinePieces_p.h"
#include "PlanLists_p.h"
#include "write/Columns_p.h"
#include "write/Exportable.h"

#include <algorithm>
#include <limits>

namespace vanlayout
{

namespace
{

constexpr int maxMarkLength = 1000;   // characters of a record type
constexpr int maxNumberLength = 1000; // characters
constexpr int maxDecimals = 100;

QString problemWithLanguage(const Layout &layout, const QString &wanted)
{
    if (wanted.isEmpty() || !languageOf(layout, wanted).isEmpty())
        return QString();
    QStringList names;
    for (const Language &language : layout.languages)
        names.append(language.name);
    if (names.isEmpty())
        return QStringLiteral("has no language %1; it declares no languages").arg(wanted);
    return QStringLiteral("has no language %1; it has %2").arg(wanted, names.join(QLatin1String(", ")));
}

QString problemWithRecords(const Layout &layout, const QStringList &wanted)
{
    constexpr int longList = 12;
    QStringList names;
    KeyedSet<QString> known;
    for (const Level &level : layout.levels) {
        for (const Record &record : level.records) {
            names.append(record.name);
            known.insert(record.name);
        }
    }
    if (names.isEmpty())
        return QStringLiteral("has no records");
    const auto isUnknown = [&](const QString &name) { return known.find(name) == known.end(); };
    const QStringList::const_iterator unknown = std::find_if(wanted.begin(), wanted.end(), isUnknown);
    if (unknown == wanted.end())
        return QString();
    const QString problem = QStringLiteral("has no record %1").arg(*unknown);
    return names.size() > longList ? problem : problem + QLatin1String("; it has ") + names.join(QLatin1String(", "));
}

// Lines have no type if the columns of the record type are absent or empty.
QString problemWithRecordType(const Layout &layout)
{
    const RecordTypeColumns columns = layout.recordType.value_or(RecordTypeColumns());
    if (columns.length > maxMarkLength)
        return QStringLiteral("has a record type of %1 characters; at most %2 can be loaded")
            .arg(columns.length)
            .arg(maxMarkLength);
    if (columns.length > 0 && columns.start < 1)
        return QStringLiteral("has no start for the columns of the record type");
    if (columns.length > 0 && columns.start >= std::numeric_limits<int>::max() - columns.length)
        return QStringLiteral("has a record type with columns beyond any line");
    KeyedMap<QString, QString> known;
    for (const Level &level : layout.levels) {
        for (const Record &record : level.records) {
            const QString mark = columns.length > 0 ? paddedMark(record.recordType, columns.length) : QString();
            const auto [other, isNew] = known.try_emplace(mark, record.name);
            if (!isNew && layout.format == Format::Ddi && columns.length <= 0)
                return QStringLiteral("describes lines of several kinds that have no record type: %1 and %2; make a "
                                      "document for each")
                    .arg(other->second, record.name);
            if (!isNew)
                return QStringLiteral("has two records with the record type '%1': %2 and %3")
                    .arg(mark, other->second, record.name);
        }
    }
    return QString();
}

QString problemWithItem(const Item &item)
{
    if (kindOf(item) == ValueKind::Binary)
        return QString();
    if (item.start < 1 || item.length < 1)
        return QStringLiteral("has an item without columns: %1").arg(item.name);
    if (item.isNumeric() && item.length > maxNumberLength)
        return QStringLiteral("has a number of more than %1 characters: %2").arg(maxNumberLength).arg(item.name);
    if (item.decimals > maxDecimals)
        return QStringLiteral("has an item with more than %1 decimals: %2").arg(maxDecimals).arg(item.name);
    return QString();
}

// The last column of an item, in the last occurrence of the item that it is a part of.
qint64 lastColumnOfItem(const Item &item, const Item &outer)
{
    constexpr int overflow = std::numeric_limits<int>::max();
    const auto shift = [](const Item &each) { return qint64(std::max(each.occurrences, 1) - 1) * each.length; };
    const qint64 outerShift = item.isSubitem ? std::min(shift(outer), qint64(overflow)) : 0;
    return qint64(item.start) - 1 + item.length + std::min(shift(item), qint64(overflow)) + outerShift;
}

QString problemWithItems(const QVector<Item> &items)
{
    for (const Item &item : items) {
        QString problem = problemWithItem(item);
        if (!problem.isEmpty())
            return problem;
    }
    return QString();
}

// Columns are numbers of the type int.
QString problemWithFarItems(const QVector<Item> &items)
{
    const Item *outer = nullptr;
    for (const Item &item : items) {
        if (!item.isSubitem || !outer)
            outer = &item;
        if (kindOf(item) != ValueKind::Binary && lastColumnOfItem(item, *outer) >= std::numeric_limits<int>::max())
            return QStringLiteral("has an item with columns beyond any line: %1").arg(item.name);
    }
    return QString();
}

QString problemWithIds(const QVector<Item> &ids)
{
    const auto repeats = [](const Item &id) { return id.occurrences > 1; };
    const QVector<Item>::const_iterator repeated = std::find_if(ids.begin(), ids.end(), repeats);
    if (repeated != ids.end())
        return QStringLiteral("has an id item that repeats: %1").arg(repeated->name);
    return problemWithItems(ids);
}

using ItemsCheck = QString (*)(const QVector<Item> &items);

QString problemWithLevels(const Layout &layout, const RecordSelection &loaded, ItemsCheck ofIds, ItemsCheck ofItems)
{
    for (const Level &level : layout.levels) {
        QString problem = ofIds(level.ids);
        for (const Record &record : level.records) {
            if (problem.isEmpty() && loaded.holds(record))
                problem = ofItems(record.items);
        }
        if (!problem.isEmpty())
            return problem;
    }
    return QString();
}

// The ids are columns of each record, so that a few items and records can make any number of columns.
QString problemWithSize(const Layout &layout, const RecordSelection &loaded)
{
    qint64 ids = 0;
    qint64 idColumns = 0;
    for (const Level &level : layout.levels) {
        ids += level.ids.size();
        idColumns += ids * std::count_if(level.records.begin(), level.records.end(), [&](const Record &record) {
                         return loaded.holds(record);
                     });
    }
    if (idColumns > maxExportColumns)
        return QStringLiteral("has more than %1 columns, counting the ids of each record").arg(maxExportColumns);
    return exportProblem(layout);
}

QString problemWithLabels(const LoadPlan &plan)
{
    qint64 labels = 0;
    for (const CodeList &codes : plan.codes)
        labels += codes.labels.size();
    for (const PlannedTable &table : plan.tables) {
        for (const PlannedColumn &column : table.columns)
            labels += column.codes < 0 ? 0 : plan.codes.at(column.codes).rows.size();
    }
    if (labels > maxExportValues)
        return QStringLiteral("has more than %1 value labels, counting those of each column").arg(maxExportValues);
    return QString();
}

QString problemWithTable(const PlannedTable &table, const TargetRules &rules)
{
    if (table.columns.isEmpty())
        return QStringLiteral("has a record without items: %1; name the others with --records").arg(table.original);
    if (rules.maxColumns > 0 && table.columns.size() > rules.maxColumns)
        return QStringLiteral("has %1 columns in the table %2, and %3 holds %4; use --occurrences long, or leave the "
                              "record out with --records")
            .arg(QString::number(table.columns.size()), table.original, QLatin1String(rules.word),
                 QString::number(rules.maxColumns));
    return QString();
}

// An occurrence of an item table has to be in one piece of a line that is read in pieces.
bool isInPieces(const PlannedTable &table, const LinePieces &pieces)
{
    for (int k = 0; table.isItemTable() && k < table.occurrences; ++k) {
        if (pieces.lengthInPiece(table.start + k * table.step, table.length) < table.length)
            return false;
    }
    return true;
}

QString problemWithLongOccurrences(const LoadPlan &plan, const TargetRules &rules)
{
    if (rules.target != LoadTarget::Spss && rules.target != LoadTarget::Sas)
        return QString();
    const LinePieces pieces(plan);
    for (const PlannedTable &table : plan.tables) {
        if (!isInPieces(table, pieces))
            return QStringLiteral("has %1 characters in an occurrence of the table %2, of which %3 reads a part; use "
                                  "--occurrences wide")
                .arg(QString::number(table.length), table.original, QLatin1String(rules.word));
    }
    return QString();
}

} // namespace

QString paddedMark(const QString &recordType, int length)
{
    const auto isSecondHalf = [](QChar unit) { return unit.isLowSurrogate(); };
    const int pairs = int(std::count_if(recordType.begin(), recordType.end(), isSecondHalf));
    return recordType.leftJustified(length + pairs, QLatin1Char(' '));
}

QString languageOf(const Layout &layout, const QString &wanted)
{
    if (wanted.isEmpty())
        return layout.languages.isEmpty() ? QString() : layout.languages.constFirst().name;
    const auto isWanted
        = [&](const Language &language) { return language.name.compare(wanted, Qt::CaseInsensitive) == 0; };
    const QVector<Language>::const_iterator found
        = std::find_if(layout.languages.begin(), layout.languages.end(), isWanted);
    return found != layout.languages.end() ? found->name : QString();
}

QString problemWithLayout(const Layout &layout, const LoadOptions &options)
{
    if (const Problem *error = layout.error())
        return error->message;
    if (holdsData(layout.format))
        return QStringLiteral("already holds its data");
    QString problem = problemWithLanguage(layout, options.language);
    if (problem.isEmpty())
        problem = problemWithRecords(layout, options.records);
    if (problem.isEmpty())
        problem = problemWithRecordType(layout);
    const RecordSelection loaded(options.records);
    if (problem.isEmpty())
        problem = problemWithLevels(layout, loaded, problemWithIds, problemWithItems);
    if (problem.isEmpty())
        problem = problemWithSize(layout, loaded);
    if (problem.isEmpty())
        problem = problemWithLevels(layout, loaded, problemWithFarItems, problemWithFarItems);
    return problem;
}

QString problemWithPlan(const LoadPlan &plan, const TargetRules &rules)
{
    if (rules.target == LoadTarget::Spss && plan.options.data.endsWith(QLatin1Char('|')))
        return QStringLiteral(
            "needs another name of the data file: PSPP would run a path with | at its end as a command");
    QString problem = problemWithLabels(plan);
    if (problem.isEmpty() && rules.maxLine > 0 && lastColumnOf(plan) > rules.maxLine)
        problem
            = QStringLiteral("has lines of %1 characters, and %2 reads at most %3; leave records out with --records")
                  .arg(QString::number(lastColumnOf(plan)), QLatin1String(rules.word), QString::number(rules.maxLine));
    if (problem.isEmpty())
        problem = problemWithLongOccurrences(plan, rules);
    for (const PlannedTable &table : plan.tables) {
        if (problem.isEmpty())
            problem = problemWithTable(table, rules);
    }
    return problem;
}

} // namespace vanlayout
