#include "PandasProgram_p.h"

#include "Head_p.h"
#include "ProgramText_p.h"
#include "ScriptText_p.h"

namespace vanlayout
{

namespace
{

constexpr int maxInt64Digits = 18;

QByteArray text(const QString &text)
{
    return literal(text, python());
}

// The type in pandas of a column, or of the codes of an item.
const char *typeOf(CellType type, int length)
{
    if (type == CellType::Text)
        return "string";
    return type == CellType::Integer && length <= maxInt64Digits ? "Int64" : "Float64";
}

QByteArray typeOf(const PlannedColumn &column)
{
    return text(QLatin1String(column.isMade() ? "Int64" : typeOf(column.type, column.length)));
}

QByteArray columnOf(const PlannedColumn &column)
{
    QByteArrayList arguments = { text(column.name), roleLiteral(column.role, python()), typeOf(column) };
    if (!column.isMade()) {
        arguments += { number(column.start), number(column.length), number(column.decimals),
                       column.codes < 0 ? QByteArrayLiteral("None") : number(column.codes) };
    }
    if (!column.isMade() && !column.label.isEmpty())
        arguments += text(column.label);
    return "Column(" + argumentLines(arguments, QByteArray(15, ' ')) + ')';
}

QByteArray columnsOf(const PlannedTable &table)
{
    QByteArrayList columns;
    for (const PlannedColumn &column : table.columns)
        columns.append(columnOf(column));
    return '[' + elementLines(columns, QByteArray(8, ' ')) + ']';
}

QByteArray tableOf(const PlannedTable &table)
{
    QByteArrayList arguments = { text(table.name), text(table.file), text(table.label), text(table.mark) };
    QByteArray program = "Table(" + argumentLines(arguments, QByteArray(10, ' ')) + ", " + columnsOf(table);
    if (table.isItemTable()) {
        program += ", record=" + number(table.recordTable) + ", occurrences=" + number(table.occurrences)
            + ", step=" + number(table.step) + ", first=" + number(table.start) + ", length=" + number(table.length);
    }
    return program + ')';
}

QByteArray tablesOf(const LoadPlan &plan)
{
    QByteArrayList tables;
    for (const PlannedTable &table : plan.tables)
        tables.append(tableOf(table));
    return "TABLES = [" + elementLines(tables, "    ") + ']';
}

QByteArray tuple(const QByteArrayList &members)
{
    return '(' + argumentLines(members, QByteArray(9, ' ')) + ')';
}

// A code as a value of the column: a whole number, a number with a decimal point, or a text.
QByteArray codeOf(const QString &code, CellType type)
{
    if (type == CellType::Text)
        return text(code);
    const bool needsPoint = type == CellType::Decimal && !code.contains(QLatin1Char('.'));
    return code.toLatin1() + (needsPoint ? ".0" : "");
}

QByteArray rowsOf(const CodeList &codes)
{
    QByteArrayList rows;
    for (const CodeRow &row : codes.rows) {
        rows.append(tuple(codeLiterals(row, python())));
    }
    return elementLines(rows, QByteArray(8, ' '));
}

QByteArray valuesOf(const CodeList &codes, CellType type)
{
    QByteArrayList values;
    for (const CodeLabel &label : codes.labels)
        values.append(codeOf(label.code, type) + ": " + text(label.text));
    return elementLines(values, QByteArray(8, ' '));
}

QByteArray rangesOf(const CodeList &codes, CellType type)
{
    QByteArrayList ranges;
    for (const CodeRow &range : codes.rangeLabels) {
        const bool isNumber = !range.low.isNull() && !range.high.isNull();
        const CellType written = isNumber ? type : CellType::Text;
        ranges.append(tuple({ codeOf(isNumber ? range.low : range.from, written),
                              codeOf(isNumber ? range.high : range.to, written), text(range.label) }));
    }
    return elementLines(ranges, QByteArray(8, ' '));
}

QByteArray specialsOf(const CodeList &codes)
{
    QByteArrayList specials;
    for (const SpecialRule &rule : codes.specials) {
        const QByteArray isMissing = rule.outcome == CellOutcome::Value ? "False" : "True";
        specials.append(tuple({ text(rule.low), text(rule.high), isMissing }));
    }
    return elementLines(specials, QByteArray(8, ' '));
}

QByteArray codesOf(const LoadPlan &plan)
{
    const QVector<CellType> types = typesOfCodes(plan);
    QByteArray program = "CODES = [";
    for (int i = 0; i < plan.codes.size(); ++i) {
        const CodeList &codes = plan.codes.at(i);
        program += i > 0 ? ",\n    Codes([" : "\n    Codes([";
        program += rowsOf(codes);
        program += "], {" + valuesOf(codes, types.at(i)) + "}, [" + rangesOf(codes, types.at(i)) + "], ["
            + specialsOf(codes) + "])";
    }
    return program += ']';
}

QByteArray recordTypeOf(const LoadPlan &plan)
{
    if (!plan.recordType)
        return "None";
    return '(' + number(plan.recordType->start) + ", " + number(plan.recordType->length) + ')';
}

QByteArray settingsOf(const LoadPlan &plan)
{
    const bool isUtf8 = plan.options.encoding == DataEncoding::Utf8;
    return settingsComment() + "DATA = " + text(plan.options.data)
        + "\nENCODING = " + (isUtf8 ? "'utf-8'" : "'windows-1252'") + "\nRECORD_TYPE = " + recordTypeOf(plan)
        + "\nKNOWN_TYPES = [" + argumentLines(literals(plan.knownMarks, python()), QByteArray(15, ' ')) + ']';
}

HeadTexts headTexts(const LoadPlan &plan)
{
    return { QStringLiteral("pandas"),
             { QStringLiteral("python3 %1.py DATA OUT").arg(pythonModule(plan)) },
             { QStringLiteral("Needs Python 3.9 and pandas 1.5, or later releases.") },
             { QStringLiteral("The run reads the file DATA and writes the files TABLE.csv and TABLE.pkl of each table "
                              "into the directory OUT. Without arguments it reads the data file above and writes into "
                              "the working directory."),
               QStringLiteral("In a program of your own, import this file and call load(DATA): it returns a dictionary "
                              "with a DataFrame for each table. Labels are in the attribute attrs of each DataFrame "
                              "and in the table codes. The pickle keeps attrs; the CSV does not.") } };
}

} // namespace

QString pythonModule(const LoadPlan &plan)
{
    const QByteArrayList names = readPart("python-names.txt").simplified().split(' ');
    return names.contains(plan.name.toLatin1()) ? plan.name + QLatin1String("_2") : plan.name;
}

QVector<LoadFile> pandasProgram(const LoadPlan &plan)
{
    const QByteArray program = programPart("pandas.py",
                                           { { "head", programHead(plan, { "# ", "", "" }, headTexts(plan)) },
                                             { "settings", settingsOf(plan) },
                                             { "codes", codesOf(plan) },
                                             { "tables", tablesOf(plan) } });
    return { { pythonModule(plan) + QLatin1String(".py"), program } };
}

} // namespace vanlayout
