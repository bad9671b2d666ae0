#include "RProgram_p.h"

#include "Head_p.h"
#include "ProgramText_p.h"
#include "ScriptText_p.h"

namespace vanlayout
{

namespace
{

QByteArray text(const QString &text)
{
    return literal(text, r());
}

// Positions in R begin at 1.
QByteArray positionOf(int index)
{
    return index < 0 ? QByteArrayLiteral("NA") : number(index + 1);
}

QByteArray outcomeOf(CellOutcome outcome)
{
    switch (outcome) {
    case CellOutcome::Value:
        return "\"value\"";
    case CellOutcome::NoAnswer:
        return "\"m\"";
    case CellOutcome::Refused:
        return "\"r\"";
    case CellOutcome::Missing:
        break;
    }
    return "\"missing\"";
}

QByteArray columnOf(const PlannedColumn &column)
{
    QByteArrayList arguments = { text(column.name), roleLiteral(column.role, r()) };
    if (!column.isMade()) {
        arguments += { column.isNumber() ? "\"number\"" : "\"text\"", number(column.start), number(column.length),
                       number(column.decimals), positionOf(column.codes) };
    }
    if (!column.isMade() && !column.label.isEmpty())
        arguments += text(column.label);
    return "column(" + argumentLines(arguments, QByteArray(11, ' ')) + ')';
}

// A statement for each element of a list. Rscript needs far more time for one statement with all of them.
QByteArray listOf(const char *name, const QByteArrayList &elements)
{
    QByteArray statements = QByteArray(name) + " <- list()\n";
    const QByteArray beginning = QByteArray(name) + "[[";
    for (int i = 0; i < elements.size(); ++i) {
        statements += beginning + number(i + 1) + "]] <- ";
        statements += elements.at(i);
        statements += '\n';
    }
    return statements;
}

QByteArray columnsOf(const PlannedTable &table)
{
    QByteArrayList columns;
    for (const PlannedColumn &column : table.columns)
        columns.append(columnOf(column));
    return listOf("COLUMNS", columns);
}

QByteArray tableOf(const PlannedTable &table)
{
    const QByteArrayList arguments = { text(table.name), text(table.file), text(table.label), text(table.mark) };
    QByteArray program = "table_of(" + argumentLines(arguments, QByteArray(11, ' ')) + ", COLUMNS";
    if (table.isItemTable()) {
        program += ", record = " + positionOf(table.recordTable) + ", occurrences = " + number(table.occurrences)
            + ", step = " + number(table.step) + ", first = " + number(table.start)
            + ", length = " + number(table.length);
    }
    return program + ')';
}

QByteArray tablesOf(const LoadPlan &plan)
{
    QByteArray program = "TABLES <- list()\n";
    for (int i = 0; i < plan.tables.size(); ++i) {
        program += '\n';
        program += columnsOf(plan.tables.at(i));
        program += "TABLES[[" + number(i + 1) + "]] <- " + tableOf(plan.tables.at(i)) + '\n';
    }
    return program;
}

QByteArray row(const QByteArrayList &members)
{
    return argumentLines(members, QByteArray(4, ' '));
}

QByteArray rowsOf(const CodeList &codes)
{
    QByteArrayList rows;
    for (const CodeRow &code : codes.rows) {
        rows.append(row(codeLiterals(code, r())));
    }
    return "c(" + elementLines(rows, "  ") + ')';
}

QByteArray labelsOf(const CodeList &codes)
{
    QByteArrayList labels;
    for (const CodeLabel &label : codes.labels)
        labels.append(row({ text(label.code), text(label.text), outcomeOf(label.outcome) }));
    return "c(" + elementLines(labels, "  ") + ')';
}

QByteArray specialsOf(const CodeList &codes)
{
    QByteArrayList specials;
    for (const SpecialRule &rule : codes.specials)
        specials.append(row({ text(rule.low), text(rule.high), outcomeOf(rule.outcome) }));
    return "c(" + elementLines(specials, "  ") + ')';
}

QByteArray codesOf(const LoadPlan &plan)
{
    QByteArrayList lists;
    for (const CodeList &codes : plan.codes)
        lists.append("codes_of(" + rowsOf(codes) + ", " + labelsOf(codes) + ", " + specialsOf(codes) + ')');
    return listOf("CODES", lists);
}

QByteArray settingsOf(const LoadPlan &plan)
{
    QByteArrayList recordType;
    if (plan.recordType)
        recordType = { number(plan.recordType->start), number(plan.recordType->length) };
    const bool isUtf8 = plan.options.encoding == DataEncoding::Utf8;
    return settingsComment() + "DATA <- " + text(safePath(plan.options.data)) + "\nENCODING <- "
        + (isUtf8 ? "\"utf-8\"" : "\"windows-1252\"") + "\nRECORD_TYPE <- c(" + recordType.join(", ")
        + ")\nKNOWN_TYPES <- c(" + argumentLines(literals(plan.knownMarks, r()), QByteArray(17, ' ')) + ')';
}

HeadTexts headTexts(const QString &file)
{
    return { QStringLiteral("R"),
             { QStringLiteral("Rscript %1 DATA OUT").arg(file) },
             { QStringLiteral("Needs R 4 with the package haven. The tables are in memory as a whole.") },
             { QStringLiteral("The run reads the file DATA and writes the file TABLE.rds of each table into the "
                              "directory OUT. Without arguments it reads the data file above and writes into the "
                              "working directory."),
               QStringLiteral("In a program of your own, source() this file and call load_data(DATA): it returns a "
                              "list with a data frame for each table. Labels are in the attributes label and labels "
                              "of the columns, and in the table codes. The codes \"missing\" and \"refused\" are the "
                              "tagged missing values \"m\" and \"r\" of haven.") } };
}

// The ranges that have no label at each code, which only the table `codes` has.
QByteArray rangesOf(const LoadPlan &plan)
{
    const QStringList remarks = rangeRemarks(plan);
    if (remarks.isEmpty())
        return QByteArray();
    return "#\n"
        + comment(QStringList{ QStringLiteral("Ranges of codes with a label, which are in the table codes "
                                              "alone:") }
                      + remarks,
                  { "# ", "", "" });
}

} // namespace

QVector<LoadFile> rProgram(const LoadPlan &plan)
{
    const QString file = plan.name + QLatin1String(".R");
    const QByteArray head = programHead(plan, { "# ", "", "" }, headTexts(file)) + rangesOf(plan);
    const QByteArray program = programPart("load.R",
                                           { { "head", head },
                                             { "settings", settingsOf(plan) },
                                             { "codes", codesOf(plan) },
                                             { "tables", tablesOf(plan) } });
    return { { file, program } };
}

} // namespace vanlayout
