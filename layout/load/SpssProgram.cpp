#include "SpssProgram_p.h"

#include "Head_p.h"
#include "PlanLists_p.h"
#include "PlanTexts_p.h"
#include "ProgramText_p.h"
#include "SpssFields_p.h"
#include "SpssLines_p.h"
#include "SpssMissing_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

constexpr CommentStyle commentStyle = { "/* ", " */", "*/" };
constexpr int maxNumberWidth = 40;    // of the format F
constexpr int maxNumberDecimals = 16; // of the format F

QByteArray setOf(int table)
{
    return "table" + QByteArray::number(table + 1);
}

QByteArray copyOf(const QByteArray &source, int table)
{
    return "DATASET ACTIVATE " + source + ".\nDATASET COPY " + setOf(table) + ".\nDATASET ACTIVATE " + setOf(table)
        + ".\n";
}

// Calls the function with the names of adjacent columns that have the same codes, and with the index of these.
template <typename Function> void forEachCodeList(const PlannedTable &table, Function function)
{
    for (int i = 0; i < table.columns.size();) {
        const PlannedColumn &first = table.columns.at(i);
        QStringList names;
        while (i < table.columns.size() && table.columns.at(i).codes == first.codes)
            names.append(table.columns.at(i++).name);
        if (first.codes >= 0)
            function(names, first);
    }
}

QStringList namesOf(const PlannedTable &table, ColumnRole role)
{
    QStringList names;
    for (const PlannedColumn &column : table.columns) {
        if (column.role == role)
            names.append(column.name);
    }
    return names;
}

QByteArray quoted(const QString &text)
{
    return spssQuoted(text).toUtf8();
}

/// Writes the program of one plan.
class SpssWriter
{
public:
    explicit SpssWriter(const LoadPlan &loadPlan)
        : plan(loadPlan)
        , lines(loadPlan)
    {
        missing.resize(plan.codes.size());
        for (const PlannedTable &table : plan.tables)
            findMissing(table);
    }

    QByteArray program() const
    {
        QByteArray text = head() + '\n' + lines.read();
        for (int i = 0; i < plan.tables.size(); ++i)
            text += '\n' + (plan.tables.at(i).isItemTable() ? itemTable(i) : recordTable(i));
        text += "\n/* All tables are made: they are saved. */\n";
        for (int i = 0; i < plan.tables.size(); ++i)
            text += savedTable(i);
        return text + "DATASET CLOSE ALL.\n" + erasedFiles();
    }

private:
    void findMissing(const PlannedTable &table)
    {
        forEachCodeList(table, [&](const QStringList &names, const PlannedColumn &column) {
            SpssMissing &found = missing[column.codes];
            if (!found.isEmpty())
                return;
            const CodeList &codes = plan.codes.at(column.codes);
            found = column.type == CellType::Text ? spssMissingOfText(codes, lines.divided().bytesOf(column.length))
                                                  : spssMissingOf(codes);
            if (!found.leftOver.isEmpty())
                remarks.append(
                    QStringLiteral("%1.%2: there is no place for more missing values, so these stay valid: %3.")
                        .arg(table.name, names.constFirst(), found.leftOver.join(QLatin1String(", "))));
        });
        remarks += lines.divided().cutTextRemarks(table);
    }

    QByteArray head() const
    {
        HeadTexts texts;
        texts.target = QStringLiteral("SPSS or PSPP");
        texts.run = QStringList(QStringLiteral("pspp %1.sps").arg(plan.name));
        texts.change = QStringList(QStringLiteral(
            "The first command has the path of the data file; change it there. Each table is saved as a file "
            "TABLE.sav in the working directory."));
        texts.needs = needs();
        LoadPlan described = plan;
        described.remarks += remarks + rangeRemarks(plan) + longCodeRemarks(plan, maxExactDigits, maxExactDigits);
        return programHead(described, commentStyle, texts);
    }

    QStringList needs() const
    {
        QStringList needs(
            QStringLiteral("The program was tested with PSPP 1.6.2. SPSS itself was not run: it needs Unicode "
                           "mode, and the lines with TABWIDTH and SET LOCALE have to be deleted there."));
        if (plan.options.encoding == DataEncoding::Utf8)
            needs.append(
                QStringLiteral("Neither program stops at bytes that are not valid UTF-8. If texts look wrong, make "
                               "this program with --encoding windows-1252."));
        if (!lines.findsCharacters())
            needs.append(
                QStringLiteral("The lines are so long that their columns are counted in bytes. That is exact for "
                               "ASCII data; the listing says how many lines are not ASCII."));
        return needs;
    }

    QByteArray recordTable(int index) const
    {
        const PlannedTable &table = plan.tables.at(index);
        const SpssFields fields(lines, table);
        const int number = plan.recordType ? int(plan.knownMarks.indexOf(table.mark)) + 1 : 1;
        QByteArray text = tableTitle(table, commentStyle) + copyOf("lines", index);
        text += "SELECT IF @record EQ " + QByteArray::number(number) + " OR @end EQ 1.\n";
        text += declarations(table) + fields.declarations() + fields.constantColumns() + recodes(table);
        text += "\nNUMERIC @row (F12).\nCOMPUTE #row=#row+1.\nCOMPUTE @row=#row.\n" + fields.counts("#row-1");
        return text + occurrenceNumbers(table) + "EXECUTE.\n" + labels(table);
    }

    // The table is made of its record's table, which has the line and the number of each record.
    QByteArray itemTable(int index) const
    {
        const PlannedTable &table = plan.tables.at(index);
        const SpssFields fields(lines, table);
        const QByteArray file = temporaryFile(table);
        QStringList kept = lines.allPieces();
        kept.append({ QStringLiteral("@wide"), QStringLiteral("@end") });
        kept += namesOf(table, ColumnRole::Occurrence);
        QByteArray text = tableTitle(table, commentStyle) + copyOf(setOf(table.recordTable), index)
            + "MATCH FILES /FILE=*\n  /KEEP=" + wordLines(kept) + ".\n" + declarations(table) + fields.declarations()
            + fields.constantColumns();
        text += programPart("spss/item-occurrences.sps",
                            { { "occurrences", QByteArray::number(table.occurrences) },
                              { "field", fields.occurrence() },
                              { "source", fields.occurrenceSource() },
                              { "fields", fields.occurrenceColumns() + recodes(table) },
                              { "file", file },
                              { "columns", wordLines(columnNames(table)) } });
        return text + fields.counts("#rows") + "EXECUTE.\nGET FILE=" + file + ".\nDATASET NAME " + setOf(index) + ".\n"
            + labels(table);
    }

    // SPSS reads a file until its data set is closed.
    QByteArray erasedFiles() const
    {
        QByteArray text;
        for (const PlannedTable &table : plan.tables) {
            if (table.isItemTable())
                text += "ERASE FILE=" + temporaryFile(table) + ".\n";
        }
        return text.isEmpty() ? text : "NEW FILE.\n" + text;
    }

    static QByteArray temporaryFile(const PlannedTable &table) { return quoted(table.file + QLatin1String(".tmp")); }

    QByteArray occurrenceNumbers(const PlannedTable &table) const
    {
        if (!table.hasOccurrence)
            return QByteArray();
        const QStringList ids = namesOf(table, ColumnRole::Id);
        return ids.isEmpty() ? "COMPUTE occ=@row.\n" : programPart("spss/occ.sps", { { "ids", wordLines(ids) } });
    }

    // The variables in the order of the table. An item table has `occ` from its record.
    QByteArray declarations(const PlannedTable &table) const
    {
        QByteArray text;
        for (int i = 0; i < table.columns.size();) {
            const QString format = formatOf(table.columns.at(i));
            QStringList names;
            for (; i < table.columns.size() && formatOf(table.columns.at(i)) == format; ++i) {
                if (!table.isItemTable() || table.columns.at(i).role != ColumnRole::Occurrence)
                    names.append(table.columns.at(i).name);
            }
            const QByteArray command = format.startsWith(QLatin1Char('A')) ? "STRING " : "NUMERIC ";
            if (!names.isEmpty())
                text += command + wordLines(names) + " (" + format.toLatin1() + ").\n";
        }
        return text;
    }

    QString formatOf(const PlannedColumn &column) const
    {
        if (column.isMade())
            return QStringLiteral("F8");
        if (column.type == CellType::Text)
            return QLatin1Char('A') + QString::number(lines.divided().bytesOf(column.length));
        if (column.decimals == 0)
            return QLatin1Char('F') + QString::number(std::min(column.length, maxNumberWidth));
        const int decimals = std::min(column.decimals, maxNumberDecimals);
        const int width = std::max(column.length + 1, decimals + 2);
        return QStringLiteral("F%1.%2").arg(std::min(width, maxNumberWidth)).arg(decimals);
    }

    QByteArray recodes(const PlannedTable &table) const
    {
        QByteArray text;
        forEachCodeList(table, [&](const QStringList &names, const PlannedColumn &column) {
            const QStringList &codes = missing.at(column.codes).recodes;
            if (!codes.isEmpty())
                text += "RECODE " + wordLines(names) + "\n    " + wordLines(codes) + ".\n";
        });
        return text.isEmpty() ? text : "\n/* Codes that mean that there is no value. */\n" + text;
    }

    // --- labels

    QByteArray labels(const PlannedTable &table) const
    {
        QByteArray text;
        for (const PlannedColumn &column : table.columns) {
            if (!column.label.isEmpty())
                text += (text.isEmpty() ? "\n  " : "\n  /") + column.name.toUtf8() + ' ' + quoted(column.label);
        }
        if (!text.isEmpty())
            text = "\nVARIABLE LABELS" + text + ".\n";
        return text + valueLabels(table) + missingValues(table) + fileLabel(table);
    }

    static QByteArray fileLabel(const PlannedTable &table)
    {
        constexpr LengthLimit limit = { 60, LengthUnit::Bytes };
        return table.label.isEmpty() ? QByteArray() : "FILE LABEL " + quoted(cutTo(table.label, limit)) + ".\n";
    }

    QByteArray valueLabels(const PlannedTable &table) const
    {
        QByteArray text;
        forEachCodeList(table, [&](const QStringList &names, const PlannedColumn &column) {
            const bool isText = column.type == CellType::Text;
            QByteArray list;
            for (const CodeLabel &label : plan.codes.at(column.codes).labels) {
                if (!isText || label.code.size() <= column.length)
                    list += "\n    " + (isText ? quoted(label.code) : label.code.toUtf8()) + ' ' + quoted(label.text);
            }
            if (!list.isEmpty())
                text += "VALUE LABELS " + wordLines(names) + list + ".\n";
        });
        return text;
    }

    QByteArray missingValues(const PlannedTable &table) const
    {
        QByteArray text;
        forEachCodeList(table, [&](const QStringList &names, const PlannedColumn &column) {
            const QStringList &values = missing.at(column.codes).values;
            if (!values.isEmpty())
                text
                    += "MISSING VALUES " + wordLines(names) + " (" + values.join(QLatin1String(", ")).toUtf8() + ").\n";
        });
        return text;
    }

    QByteArray savedTable(int index) const
    {
        const PlannedTable &table = plan.tables.at(index);
        const QStringList names = columnNames(table);
        QByteArray columns = names.constFirst().toUtf8();
        if (names.size() > 1)
            columns += " TO " + names.constLast().toUtf8();
        QByteArray text = "DATASET ACTIVATE " + setOf(index) + ".\n";
        if (!table.isItemTable())
            text += "SELECT IF @end EQ 0.\n";
        return text + "SAVE OUTFILE=" + quoted(table.file + QLatin1String(".sav")) + " /KEEP=" + columns + ".\n";
    }

    const LoadPlan &plan;
    SpssLines lines;
    QVector<SpssMissing> missing; ///< by the index of the codes
    QStringList remarks;
};

} // namespace

QVector<LoadFile> spssProgram(const LoadPlan &plan)
{
    return { { plan.name + QLatin1String(".sps"), SpssWriter(plan).program() } };
}

bool isReservedInSpss(const QString &name)
{
    static const QStringList words
        = { QStringLiteral("ALL"), QStringLiteral("AND"), QStringLiteral("BY"), QStringLiteral("EQ"),
            QStringLiteral("GE"),  QStringLiteral("GT"),  QStringLiteral("LE"), QStringLiteral("LT"),
            QStringLiteral("NE"),  QStringLiteral("NOT"), QStringLiteral("OR"), QStringLiteral("TO"),
            QStringLiteral("WITH") };
    return words.contains(name, Qt::CaseInsensitive);
}

} // namespace vanlayout
