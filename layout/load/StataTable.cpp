#include "StataTable_p.h"

#include "ProgramText_p.h"
#include "StataTexts_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

constexpr int maxLabel = 80;         // characters of the label of a variable or of the data
constexpr int usualVariables = 2000; // that each edition of Stata holds
constexpr int minMaxvar = 2048;

QByteArray labelVariable(const QByteArray &name, const QString &label)
{
    return label.isEmpty() ? QByteArray() : stataLabelCommand("label variable " + name, label, maxLabel);
}

} // namespace

StataTable::StataTable(const LoadPlan &loadPlan, const PlannedTable &plannedTable)
    : plan(loadPlan)
    , table(plannedTable)
    , raw(loadPlan, plannedTable)
{
    for (int i = 0; i < table.columns.size(); ++i) {
        const PlannedColumn &column = table.columns.at(i);
        if (column.isNumber() && column.codes >= 0)
            firstColumns.try_emplace(column.codes, i);
    }
}

QByteArray StataTable::commands() const
{
    QByteArray text = stataLine("clear");
    if (variablesAtOnce() > usualVariables)
        text += stataLine("set maxvar " + number(std::max(variablesAtOnce(), minMaxvar)));
    text += stataLine("infix using " + quotedFile(".dct") + ", using(`\"`macval(data)'\"')");
    text += stataLine("generate long " + own("number") + " = _n");
    text += firstLine();
    text += selection();
    text += columns(ColumnRole::Id);
    text += occurrenceNumbers();
    if (table.isItemTable())
        text += occurrences();
    text += stataLine("noisily display as text \"" + table.name.toUtf8() + ": \" %1.0f _N \" rows\"");
    text += columns(ColumnRole::Item);
    text += stataLine("drop " + own("") + '*');
    if (!table.label.isEmpty())
        text += stataLabelCommand("label data", table.label, maxLabel);
    return text;
}

// The variables that infix reads, those that are made of parts of them, and a few that the program drops.
int StataTable::variablesAtOnce() const
{
    constexpr int dropped = 40;
    const auto isAdded = [&](const PlannedColumn &column) {
        return column.isMade() || column.role == ColumnRole::Id || raw.isInLine(column) || table.isOfOccurrence(column)
            || column.length > maxStataText;
    };
    return raw.all().size() + dropped + int(std::count_if(table.columns.begin(), table.columns.end(), isAdded));
}

QByteArray StataTable::quotedFile(const char *extension) const
{
    return '"' + table.file.toUtf8() + extension + '"';
}

// --- rows

QByteArray StataTable::firstLine() const
{
    const QByteArray condition = "if " + own("number") + " == 1";
    QByteArray text = "    if scalar(van_mark) {\n";
    for (const StataVariable &variable : raw.all())
        text += variable.firstLine(condition);
    return text + "    }\n";
}

QByteArray StataTable::selection() const
{
    QByteArray text;
    if (plan.recordType)
        text = stataLine("keep if " + stataHasMark(table.mark, plan.recordType->length, own("type")));
    const QVector<QByteArray> wholeLine = raw.namesOfWholeLine();
    if (!wholeLine.isEmpty())
        text += stataLine("drop if " + stataAreBlank(wholeLine));
    return text + stataLine("drop if " + own("start") + " == \"~\"");
}

// Missing values with different reasons are one case.
QByteArray StataTable::occurrenceNumbers() const
{
    if (!table.hasOccurrence)
        return QByteArray();
    QByteArray text;
    QByteArray keys;
    for (int i = 0; i < table.columns.size(); ++i) {
        const PlannedColumn &column = table.columns.at(i);
        if (column.role != ColumnRole::Id)
            continue;
        const QByteArray name = column.name.toLatin1();
        const bool hasReasons
            = column.isNumber() && column.codes >= 0 && !plan.codes.at(column.codes).specials.isEmpty();
        const QByteArray key = hasReasons ? QByteArray(own("key") + number(i)) : name;
        if (hasReasons) {
            text += stataLine("generate double " + key + " = " + name);
            text += stataLine("replace " + key + " = . if " + name + " >= .");
        }
        keys += key;
        keys += ' ';
    }
    const QByteArray line = own("number");
    if (keys.isEmpty()) {
        text += stataLine("generate long occ = _n");
    } else {
        text += stataLine("bysort " + keys + '(' + line + "): generate long occ = _n");
        text += stataLine("sort " + line);
    }
    return text + labelVariable("occ", labelOfMade(ColumnRole::Occurrence));
}

QString StataTable::labelOfMade(ColumnRole role) const
{
    const auto hasRole = [&](const PlannedColumn &column) { return column.role == role; };
    return std::find_if(table.columns.begin(), table.columns.end(), hasRole)->label;
}

// One row for each occurrence that is not blank.
QByteArray StataTable::occurrences() const
{
    const QByteArray line = own("number");
    QByteArray text = stataLine("expand " + number(table.occurrences));
    text += stataLine("bysort " + line + ": generate long item_occ = _n");
    text += labelVariable("item_occ", labelOfMade(ColumnRole::ItemOccurrence));
    const QByteArray sorted = stataLine("sort " + line + " item_occ");
    if (raw.occurrencesAreInLine())
        return text + stataLine("drop if " + stataAreBlank({ raw.partOfLine(table.start, table.length, true) }))
            + sorted;
    QVector<QByteArray> names;
    for (int piece = 0; piece < stataPieces(table.length); ++piece) {
        names.append(own("text") + number(piece + 1));
        text += chosen(names.constLast(), raw.nameOfOccurrence(piece));
    }
    return text + stataLine("drop if " + stataAreBlank(names)) + stataLine("drop " + own("text") + '*') + sorted;
}

// Sets a text to that of the occurrence; the texts of the occurrences are named by their numbers.
QByteArray StataTable::chosen(const QByteArray &name, const QByteArray &source) const
{
    QByteArray text = stataLine("generate str1 " + name + " = \"\"");
    for (int k = 1; k <= table.occurrences; ++k)
        text += stataLine("replace " + name + " = " + source + number(k) + " if item_occ == " + number(k));
    return text;
}

// --- columns

QByteArray StataTable::columns(ColumnRole role) const
{
    QByteArray text;
    for (int i = 0; i < table.columns.size(); ++i) {
        const PlannedColumn &column = table.columns.at(i);
        if (column.role != role)
            continue;
        text += '\n';
        text += column.isNumber() ? numberColumn(i) : textColumn(i);
        text += labelVariable(column.name.toLatin1(), column.label);
    }
    return text;
}

QByteArray StataTable::ownText(int index) const
{
    const PlannedColumn &column = table.columns.at(index);
    if (raw.isInLine(column))
        return stataLine("generate str" + number(column.length) + ' ' + own("text") + " = "
                         + raw.partOfLine(column.start, column.length, table.isOfOccurrence(column)));
    if (table.isOfOccurrence(column))
        return chosen(own("text"), raw.nameOf(index, 0) + '_');
    return stataLine("rename " + column.name.toLatin1() + ' ' + own("text"));
}

QByteArray StataTable::numberColumn(int index) const
{
    static const QByteArray part = readPart("stata/number.do");
    const PlannedColumn &column = table.columns.at(index);
    const QByteArray name = column.name.toLatin1();
    const QByteArray scale = column.decimals == 0 ? QByteArray() : QByteArray(" / 10^" + number(column.decimals));
    QByteArray text = ownText(index);
    text += filledPart(part,
                       { { "name", name },
                         { "text", own("text") },
                         { "type", stataTypeOf(column) },
                         { "scale", scale },
                         { "marked", markedNumber(column) },
                         { "counted", countOf(column) } });
    if (column.codes >= 0) {
        text += stataSpecials(name, plan.codes.at(column.codes));
        text += valueLabel(index);
    }
    return text;
}

// Numbers with a written mark.
QByteArray StataTable::markedNumber(const PlannedColumn &column) const
{
    static const QByteArray part = readPart("stata/marked-number.do");
    if (column.decimals == 0)
        return QByteArray();
    return filledPart(part, { { "name", column.name.toLatin1() }, { "text", own("text") }, { "mark", own("mark") } });
}

// The texts that are no numbers.
QByteArray StataTable::countOf(const PlannedColumn &column) const
{
    static const QByteArray part = readPart("stata/count.do");
    if (!table.counts(column))
        return QByteArray();
    return filledPart(
        part, { { "name", column.name.toLatin1() }, { "text", own("text") }, { "table", table.name.toLatin1() } });
}

// Occurrences share the value label of the first column with their codes.
QByteArray StataTable::valueLabel(int index) const
{
    const PlannedColumn &column = table.columns.at(index);
    const CodeList &codes = plan.codes.at(column.codes);
    if (!stataHasValueLabel(codes))
        return QByteArray();
    const int first = firstColumns.at(column.codes);
    const QByteArray name = table.columns.at(first).name.toLatin1();
    return (first == index ? stataValueLabel(name, codes) : QByteArray())
        + stataLine("label values " + column.name.toLatin1() + ' ' + name);
}

QByteArray StataTable::textColumn(int index) const
{
    const PlannedColumn &column = table.columns.at(index);
    const QByteArray name = column.name.toLatin1();
    QByteArray text;
    if (column.length > maxStataText) {
        text = longText(index);
    } else {
        text = ownText(index);
        text += stataLine("generate str" + number(column.length) + ' ' + name + " = rtrim(" + own("text") + ')');
        text += stataLine("drop " + own("text"));
    }
    if (plan.options.encoding != DataEncoding::Windows1252)
        return text;
    return text + "    if c(stata_version) >= 14 {\n        replace " + name + " = ustrfrom(" + name
        + ", \"windows-1252\", 1)\n    }\n";
}

QByteArray StataTable::longText(int index) const
{
    const PlannedColumn &column = table.columns.at(index);
    const bool isChosen = table.isOfOccurrence(column);
    QByteArray text;
    QVector<QByteArray> names;
    for (int piece = 0; piece < stataPieces(column.length); ++piece) {
        names.append(isChosen ? QByteArray(own("text") + number(piece + 1)) : raw.nameOf(index, piece));
        if (isChosen)
            text += chosen(names.constLast(), raw.nameOf(index, piece) + '_');
    }
    text += stataLine("generate strL " + column.name.toLatin1() + " = rtrim(" + stataJoinedTexts(names) + ')');
    if (isChosen)
        text += stataLine("drop " + own("text") + '*');
    return text;
}

} // namespace vanlayout
