#include "PlanLists_p.h"

#include <QChar>

#include <algorithm>

namespace vanlayout
{

namespace
{

int digitsOf(const QString &number)
{
    return int(std::count_if(number.begin(), number.end(), [](QChar character) { return character.isDigit(); }));
}

} // namespace

QStringList columnNames(const PlannedTable &table)
{
    QStringList names;
    names.reserve(table.columns.size());
    for (const PlannedColumn &column : table.columns)
        names.append(column.name);
    return names;
}

int lastColumnOf(const PlannedTable &table)
{
    const int shift = (table.occurrences - 1) * table.step;
    int last = table.isItemTable() ? table.start - 1 + shift + table.length : 0;
    for (const PlannedColumn &column : table.columns) {
        if (!column.isMade())
            last = std::max(last, column.start - 1 + column.length + (table.isOfOccurrence(column) ? shift : 0));
    }
    return last;
}

int lastColumnOf(const LoadPlan &plan)
{
    int last = plan.recordType ? plan.recordType->start - 1 + plan.recordType->length : 1;
    for (const PlannedTable &table : plan.tables)
        last = std::max(last, lastColumnOf(table));
    return last;
}

QByteArray freePrefix(const QStringList &names, Qt::CaseSensitivity sensitivity)
{
    QByteArray prefix = "_van_";
    const auto isUsed = [&](const QString &name) { return name.startsWith(QLatin1String(prefix), sensitivity); };
    while (std::any_of(names.begin(), names.end(), isUsed))
        prefix += '_';
    return prefix;
}

QByteArray missingValueOf(CellOutcome outcome)
{
    switch (outcome) {
    case CellOutcome::Value:
        return QByteArray();
    case CellOutcome::Missing:
        return ".";
    case CellOutcome::NoAnswer:
        return ".m";
    case CellOutcome::Refused:
        return ".r";
    }
    return QByteArray();
}

QStringList textSpecialRemarks(const LoadPlan &plan)
{
    QStringList remarks;
    forEachCodeList(plan, [&](const PlannedTable &table, const PlannedColumn &column) {
        QStringList codes;
        const QVector<SpecialRule> &specials = plan.codes.at(column.codes).specials;
        for (const SpecialRule &rule : specials) {
            const QString code = QLatin1Char('"') + rule.low + QLatin1Char('"');
            if (rule.outcome != CellOutcome::Value && !codes.contains(code))
                codes.append(code);
        }
        if (column.type == CellType::Text && !codes.isEmpty())
            remarks.append(QStringLiteral("%1.%2: texts with these special codes stay as they are: %3")
                               .arg(table.name, column.name, codes.join(QLatin1String(", "))));
    });
    return remarks;
}

QStringList longCodeRemarks(const LoadPlan &plan, int maxWhole, int maxDecimal)
{
    const auto isLong
        = [](const SpecialRule &rule) { return std::max(digitsOf(rule.low), digitsOf(rule.high)) > maxExactDigits; };
    QStringList remarks;
    forEachCodeList(plan, [&](const PlannedTable &table, const PlannedColumn &column) {
        const QVector<SpecialRule> &specials = plan.codes.at(column.codes).specials;
        if (column.isNumber() && column.length > (column.type == CellType::Decimal ? maxDecimal : maxWhole)
            && std::any_of(specials.begin(), specials.end(), isLong))
            remarks.append(
                QStringLiteral("%1.%2 has special codes of more than 15 digits. They are compared as doubles, "
                               "so that the numbers next to them become missing too.")
                    .arg(table.name, column.name));
    });
    return remarks;
}

} // namespace vanlayout
