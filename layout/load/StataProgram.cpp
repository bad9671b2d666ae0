#include "StataProgram_p.h"

#include "Head_p.h"
#include "PlanTexts_p.h"
#include "ProgramText_p.h"
#include "StataTexts_p.h"

#include <algorithm>
#include <vector>

namespace vanlayout
{

namespace
{

constexpr int maxLabel = 80; // characters of the label of a variable or of the data

constexpr int maxTextBytes = 2045;   // of a variable that is not a strL
constexpr int usualVariables = 2000; // that each edition of Stata holds
constexpr int markBytes = 3;         // of a byte-order mark
constexpr CommentStyle commentStyle = { "* ", "", "*/" };

QByteArray number(int value)
{
    return QByteArray::number(value);
}

/// A variable of a dictionary: a text of certain columns.
struct RawVariable {
    QByteArray name;
    int start;
    int length;
};

/// The value label for columns with the same codes, and the index of the first, after which it is named.
struct ValueLabel {
    int column = -1;
    QByteArray commands;
};

QByteArray indented(const QByteArray &command)
{
    return "    " + command + '\n';
}

// The number of variables that hold a field, of which none may be longer than a text.
int piecesOf(int length)
{
    return (length - 1) / maxTextBytes + 1;
}

RawVariable pieceOf(const QByteArray &name, int start, int length, int piece)
{
    const int skipped = piece * maxTextBytes;
    return { name, start + skipped, std::min(maxTextBytes, length - skipped) };
}

// The parts with an operator between them, in lines of a few hundred bytes.
QByteArray joined(const QVector<QByteArray> &parts, const QByteArray &between)
{
    constexpr int longLine = 200; // bytes
    QByteArray text;
    int start = 0;
    for (const QByteArray &part : parts) {
        text += text.isEmpty() ? QByteArray() : between;
        if (text.size() - start > longLine) {
            text += "///\n        ";
            start = text.size();
        }
        text += part;
    }
    return text;
}

// True for lines with a record type, of which each character is a variable.
QByteArray hasMark(const QString &mark, const QByteArray &name)
{
    QVector<QByteArray> conditions;
    for (int i = 0; i < mark.size(); ++i) {
        const QByteArray character = name + number(i + 1);
        const bool isBlank = mark.at(i) == QLatin1Char(' ');
        conditions.append(isBlank ? "rtrim(" + character + ") == \"\""
                                  : character + " == " + stataCharacter(mark.at(i)));
    }
    return joined(conditions, " & ");
}

// Texts of 2,045 bytes put together; infix takes blanks at their end off.
QByteArray joinedTexts(const QVector<QByteArray> &names)
{
    QVector<QByteArray> parts;
    for (int i = 0; i < names.size(); ++i) {
        const bool isLast = i + 1 == names.size();
        const QByteArray width = number(maxTextBytes);
        parts.append(isLast ? names.at(i) : "substr(" + names.at(i) + " + " + width + " * \" \", 1, " + width + ')');
    }
    return joined(parts, " + ");
}

/// Writes the two files of one table.
class StataTable
{
public:
    StataTable(const LoadPlan &loadPlan, const PlannedTable &plannedTable)
        : plan(loadPlan)
        , table(plannedTable)
        , prefix("_van_")
    {
        const auto isUsed = [&](const PlannedColumn &column) { return column.name.startsWith(QLatin1String(prefix)); };
        while (std::any_of(table.columns.begin(), table.columns.end(), isUsed))
            prefix += '_';
        addRaw();
        addValueLabels();
    }

    QByteArray dictionary() const
    {
        QByteArray text = "infix dictionary {\n";
        for (const RawVariable &variable : raw)
            text += "    str " + variable.name + ' ' + number(variable.start) + '-'
                + number(variable.start + variable.length - 1) + '\n';
        return text + "}\n";
    }

    QByteArray commands() const
    {
        QByteArray text = indented("clear");
        if (raw.size() > usualVariables)
            text += indented("set maxvar " + number(raw.size() + usualVariables));
        text += indented("infix using " + quotedFile(".dct") + ", using(`\"`macval(data)'\"')");
        text += indented("generate long " + prefix + "number = _n") + firstLine() + selection();
        text += columns(ColumnRole::Id) + occurrenceNumbers();
        if (table.isItemTable())
            text += occurrences();
        text += indented("noisily display as text \"" + table.name.toUtf8() + ": \" %1.0f _N \" rows\"");
        text += columns(ColumnRole::Item);
        text += indented("drop " + prefix + '*');
        return text + tableLabel();
    }

    const QVector<RawVariable> &variables() const { return raw; }

    QByteArray quotedFile(const char *extension) const { return '"' + table.file.toUtf8() + extension + '"'; }

private:
    QByteArray own(const char *name) const { return prefix + name; }

    // --- dictionary

    void addRaw()
    {
        raw.append({ own("start"), 1, 1 });
        const int typeLength = plan.recordType ? plan.recordType->length : 0;
        for (int i = 0; i < typeLength; ++i)
            raw.append({ own("type") + number(i + 1), plan.recordType->start + i, 1 });
        if (table.mark.trimmed().isEmpty())
            addLine();
        addLineOfTexts();
        for (int i = 0; i < table.columns.size(); ++i)
            addColumn(i);
        const bool hasParts = table.isItemTable() && !partsAreInLine();
        for (int piece = 0; hasParts && piece < piecesOf(table.length); ++piece) {
            for (int k = 0; k < table.occurrences; ++k)
                raw.append(pieceOf(partName(piece) + number(k + 1), table.start + k * table.step, table.length, piece));
        }
    }

    QByteArray partName(int piece) const { return own("part") + number(piece + 1) + '_'; }

    // The whole line, for records that lines of blanks look like.
    void addLine()
    {
        int last = 1;
        for (const PlannedColumn &column : table.columns)
            last = std::max(last, column.start - 1 + column.length);
        for (int piece = 0; piece < piecesOf(last); ++piece)
            raw.append(pieceOf(own("all") + number(piece + 1), 1, last, piece));
    }

    void addColumn(int index)
    {
        const PlannedColumn &column = table.columns.at(index);
        if (column.isMade() || isInLine(column))
            return;
        if (!isOfOccurrence(column)) {
            addField(column, index, QByteArray(), column.start);
            return;
        }
        for (int k = 0; k < table.occurrences; ++k)
            addField(column, index, '_' + number(k + 1), column.start + k * table.step);
    }

    bool isOfOccurrence(const PlannedColumn &column) const
    {
        return table.isItemTable() && column.role == ColumnRole::Item;
    }

    void addField(const PlannedColumn &column, int index, const QByteArray &occurrence, int start)
    {
        for (int piece = 0; piece < piecesOf(column.length); ++piece)
            raw.append(pieceOf(rawName(index, piece) + occurrence, start, column.length, piece));
    }

    // infix may remove blanks at the beginning of a text. A variable that begins at the record type has none, so texts
    // are parts of one, if the record type precedes them.
    bool isInLine(int start, int length) const
    {
        if (!plan.recordType || table.mark.startsWith(QLatin1Char(' ')))
            return false;
        const int type = plan.recordType->start;
        return type < start && start + length - type <= maxTextBytes;
    }

    // The column after the last occurrence of a field.
    int endOf(const PlannedColumn &column) const
    {
        return column.start + column.length + (isOfOccurrence(column) ? (table.occurrences - 1) * table.step : 0);
    }

    bool isInLine(const PlannedColumn &column) const
    {
        const bool isRead = column.isNumber() && !isOfOccurrence(column);
        return !column.isMade() && !isRead && isInLine(column.start, endOf(column) - column.start);
    }

    bool partsAreInLine() const { return isInLine(table.start, (table.occurrences - 1) * table.step + table.length); }

    void addLineOfTexts()
    {
        int end = table.isItemTable() && partsAreInLine()
            ? table.start + (table.occurrences - 1) * table.step + table.length
            : 0;
        for (const PlannedColumn &column : table.columns)
            end = std::max(end, isInLine(column) ? endOf(column) : 0);
        if (end > 0)
            raw.append({ own("line"), plan.recordType->start, end - plan.recordType->start });
    }

    // A part of the line as an expression; in an item table that of the occurrence.
    QByteArray partOfLine(int start, int length, bool isShifted) const
    {
        const QByteArray first = number(start - plan.recordType->start + 1);
        const QByteArray place = isShifted ? first + " + (item_occ - 1) * " + number(table.step) : first;
        return "substr(" + own("line") + ", " + place + ", " + number(length) + ')';
    }

    // In the dictionary a column of a record has its own name.
    QByteArray rawName(int index, int piece) const
    {
        const PlannedColumn &column = table.columns.at(index);
        if (!isOfOccurrence(column) && column.length <= maxTextBytes)
            return column.name.toLatin1();
        return own("raw") + number(index + 1) + 'p' + number(piece + 1);
    }

    // --- rows

    QByteArray firstLine() const
    {
        QByteArray text = "    if scalar(van_mark) {\n";
        for (const RawVariable &variable : raw)
            text += "        replace " + variable.name + " = substr(scalar(van_first), " + number(variable.start) + ", "
                + number(variable.length) + ") if " + own("number") + " == 1\n";
        return text + "    }\n";
    }

    QByteArray selection() const
    {
        QByteArray text;
        if (plan.recordType)
            text += indented("keep if " + hasMark(table.mark, own("type")));
        return text + notBlank() + indented("drop if " + own("start") + " == \"~\"");
    }

    QByteArray notBlank() const
    {
        QVector<QByteArray> blank;
        for (const RawVariable &variable : raw) {
            if (variable.name.startsWith(own("all")))
                blank.append("rtrim(" + variable.name + ") == \"\"");
        }
        return blank.isEmpty() ? QByteArray() : indented("drop if " + joined(blank, " & "));
    }

    // Missing values with different reasons are one case.
    QByteArray occurrenceNumbers() const
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
            const QByteArray key = hasReasons ? own("key") + number(i) : name;
            if (hasReasons)
                text += indented("generate double " + key + " = " + name)
                    + indented("replace " + key + " = . if " + name + " >= .");
            keys += key + ' ';
        }
        const QByteArray line = own("number");
        text += keys.isEmpty()
            ? indented("generate long occ = _n")
            : indented("bysort " + keys + '(' + line + "): generate long occ = _n") + indented("sort " + line);
        return text + labelVariable(QStringLiteral("occ"), labelOfMade(ColumnRole::Occurrence));
    }

    QString labelOfMade(ColumnRole role) const
    {
        const auto hasRole = [&](const PlannedColumn &column) { return column.role == role; };
        return std::find_if(table.columns.begin(), table.columns.end(), hasRole)->label;
    }

    // One row for each occurrence that is not blank.
    QByteArray occurrences() const
    {
        const QByteArray line = own("number");
        QByteArray text = indented("expand " + number(table.occurrences))
            + indented("bysort " + line + ": generate int item_occ = _n");
        text += labelVariable(QStringLiteral("item_occ"), labelOfMade(ColumnRole::ItemOccurrence));
        if (partsAreInLine())
            return text + indented("drop if rtrim(" + partOfLine(table.start, table.length, true) + ") == \"\"")
                + indented("sort " + line + " item_occ");
        QVector<QByteArray> blank;
        for (int piece = 0; piece < piecesOf(table.length); ++piece) {
            const QByteArray name = own("text") + number(piece + 1);
            text += chosen(name, partName(piece));
            blank.append("rtrim(" + name + ") == \"\"");
        }
        return text + indented("drop if " + joined(blank, " & ")) + indented("drop " + own("text") + '*')
            + indented("sort " + line + " item_occ");
    }

    // Sets a text to that of the occurrence; the texts of the occurrences are named by their numbers.
    QByteArray chosen(const QByteArray &name, const QByteArray &source) const
    {
        QByteArray text = indented("generate str1 " + name + " = \"\"");
        for (int k = 1; k <= table.occurrences; ++k)
            text += indented("replace " + name + " = " + source + number(k) + " if item_occ == " + number(k));
        return text;
    }

    // --- columns

    QByteArray columns(ColumnRole role) const
    {
        QByteArray text;
        for (int i = 0; i < table.columns.size(); ++i) {
            const PlannedColumn &column = table.columns.at(i);
            if (column.role == role)
                text += '\n' + (column.isNumber() ? numberColumn(i) : textColumn(i))
                    + labelVariable(column.name, column.label);
        }
        return text;
    }

    QByteArray ownText(int index) const
    {
        const PlannedColumn &column = table.columns.at(index);
        if (isInLine(column))
            return indented("generate str" + number(column.length) + ' ' + own("text") + " = "
                            + partOfLine(column.start, column.length, isOfOccurrence(column)));
        if (isOfOccurrence(column))
            return chosen(own("text"), rawName(index, 0) + '_');
        return indented("rename " + column.name.toLatin1() + ' ' + own("text"));
    }

    QByteArray numberColumn(int index) const
    {
        static const QByteArray part = readPart("stata/number.do");
        const PlannedColumn &column = table.columns.at(index);
        const QByteArray name = column.name.toLatin1();
        const QByteArray scale = column.decimals == 0 ? QByteArray() : " / 10^" + number(column.decimals);
        const QByteArray text = ownText(index)
            + filledPart(part,
                         { { "name", name },
                           { "text", own("text") },
                           { "type", stataTypeOf(column) },
                           { "scale", scale },
                           { "marked", markedNumber(column) },
                           { "counted", countOf(column) } });
        return column.codes < 0 ? text : text + stataSpecials(name, plan.codes.at(column.codes)) + valueLabel(index);
    }

    // Numbers with a written mark.
    QByteArray markedNumber(const PlannedColumn &column) const
    {
        static const QByteArray part = readPart("stata/marked-number.do");
        if (column.decimals == 0)
            return QByteArray();
        return filledPart(part,
                          { { "name", column.name.toLatin1() }, { "text", own("text") }, { "mark", own("mark") } });
    }

    // The texts that are no numbers. The ids of an item table are counted with its record.
    QByteArray countOf(const PlannedColumn &column) const
    {
        static const QByteArray part = readPart("stata/count.do");
        if (table.isItemTable() && column.role != ColumnRole::Item)
            return QByteArray();
        return filledPart(
            part, { { "name", column.name.toLatin1() }, { "text", own("text") }, { "table", table.name.toLatin1() } });
    }

    // Occurrences share the value label of the first column with their codes.
    QByteArray valueLabel(int index) const
    {
        const PlannedColumn &column = table.columns.at(index);
        const ValueLabel &label = valueLabels.at(column.codes);
        if (label.commands.isEmpty())
            return QByteArray();
        const QByteArray name = table.columns.at(label.column).name.toLatin1();
        return (label.column == index ? label.commands : QByteArray())
            + indented("label values " + column.name.toLatin1() + ' ' + name);
    }

    void addValueLabels()
    {
        valueLabels.resize(plan.codes.size());
        for (int i = 0; i < table.columns.size(); ++i) {
            const PlannedColumn &column = table.columns.at(i);
            if (!column.isNumber() || column.codes < 0 || valueLabels.at(column.codes).column >= 0)
                continue;
            valueLabels[column.codes] = { i, stataValueLabel(column.name.toLatin1(), plan.codes.at(column.codes)) };
        }
    }

    QByteArray textColumn(int index) const
    {
        const PlannedColumn &column = table.columns.at(index);
        const QByteArray name = column.name.toLatin1();
        QByteArray text;
        if (column.length > maxTextBytes) {
            text = longText(index);
        } else {
            text = ownText(index)
                + indented("generate str" + number(column.length) + ' ' + name + " = rtrim(" + own("text") + ')')
                + indented("drop " + own("text"));
        }
        if (plan.options.encoding == DataEncoding::Windows1252)
            text += "    if c(stata_version) >= 14 {\n        replace " + name + " = ustrfrom(" + name
                + ", \"windows-1252\", 1)\n    }\n";
        return text;
    }

    QByteArray longText(int index) const
    {
        const PlannedColumn &column = table.columns.at(index);
        const bool isChosen = isOfOccurrence(column);
        QByteArray text;
        QVector<QByteArray> names;
        for (int piece = 0; piece < piecesOf(column.length); ++piece) {
            names.append(isChosen ? own("text") + number(piece + 1) : rawName(index, piece));
            if (isChosen)
                text += chosen(names.constLast(), rawName(index, piece) + '_');
        }
        text += indented("generate strL " + column.name.toLatin1() + " = rtrim(" + joinedTexts(names) + ')');
        return isChosen ? text + indented("drop " + own("text") + '*') : text;
    }

    QByteArray labelVariable(const QString &name, const QString &label) const
    {
        return label.isEmpty() ? QByteArray() : stataLabelCommand("label variable " + name.toLatin1(), label, maxLabel);
    }

    QByteArray tableLabel() const
    {
        return table.label.isEmpty() ? QByteArray() : stataLabelCommand("label data", table.label, maxLabel);
    }

    const LoadPlan &plan;
    const PlannedTable &table;
    QByteArray prefix;
    QVector<RawVariable> raw;
    QVector<ValueLabel> valueLabels; ///< by the index of the codes
};

/// Writes the do-file.
class StataWriter
{
public:
    explicit StataWriter(const LoadPlan &loadPlan)
        : plan(loadPlan)
        , isAscii(loadPlan.options.encoding == DataEncoding::Utf8)
    {
        tables.reserve(size_t(plan.tables.size()));
        for (const PlannedTable &table : plan.tables)
            tables.emplace_back(plan, table);
    }

    QVector<LoadFile> files() const
    {
        QByteArray text = head() + '\n' + lines();
        QByteArray saved = "\n* All tables are made: they are saved.\nquietly {\n";
        QVector<LoadFile> dictionaries;
        for (int i = 0; i < plan.tables.size(); ++i) {
            const PlannedTable &table = plan.tables.at(i);
            const StataTable &writer = tables.at(size_t(i));
            const QByteArray file = "table" + number(i + 1);
            text += '\n' + title(table) + "tempfile " + file + "\nquietly {\n" + writer.commands()
                + indented("save \"`" + file + "'\"") + "}\n";
            saved += indented("use \"`" + file + "'\", clear")
                + indented("save " + writer.quotedFile(".dta") + ", replace");
            dictionaries.append({ table.file + QLatin1String(".dct"), writer.dictionary() });
        }
        QVector<LoadFile> made = { { plan.name + QLatin1String(".do"), text + saved + "}\n" } };
        return made + dictionaries;
    }

private:
    QByteArray head() const
    {
        HeadTexts texts;
        texts.target = QStringLiteral("Stata");
        texts.run = QStringList(QStringLiteral("do %1.do [DATA]").arg(plan.name));
        texts.change = QStringList(
            QStringLiteral("Run it in the directory of this file and of the dictionaries (.dct). Each table is "
                           "saved there as TABLE.dta. DATA is the path of the data file."));
        texts.needs = QStringList(
            QStringLiteral("It needs Stata 13 or later. It was not run in Stata itself: an interpreter of the commands "
                           "that it uses, written from Stata's manual, made the expected tables."));
        texts.needs.append(
            isAscii ? QStringLiteral("infix counts bytes, so the program stops at data that are not ASCII.")
                    : QStringLiteral(
                        "The data file is read as windows-1252. Stata 13 shows texts in the encoding of the system."));
        if (!plan.recordType)
            texts.needs.append(QStringLiteral("A text loses blanks before it if infix takes them off."));
        LoadPlan described = plan;
        described.remarks += rangeRemarks(plan) + textRemarks();
        return harmless(programHead(described, commentStyle, texts));
    }

    QStringList textRemarks() const
    {
        QStringList remarks;
        QVector<bool> isDone(plan.codes.size());
        for (const PlannedTable &table : plan.tables) {
            for (const PlannedColumn &column : table.columns) {
                if (column.codes < 0 || isDone.at(column.codes))
                    continue;
                isDone[column.codes] = true;
                const QStringList codes = stataUnlabelled(plan.codes.at(column.codes), column.type == CellType::Text);
                if (!codes.isEmpty())
                    remarks.append(QStringLiteral("%1.%2: Stata has no labels for %3")
                                       .arg(table.name, column.name, codes.join(QLatin1String(", "))));
            }
        }
        return remarks;
    }

    // Within a comment as well, Stata begins comments and expands macros.
    static QByteArray harmless(QByteArray head)
    {
        head.replace("//", "/ /");
        head.replace("/*", "/ *");
        head.replace('`', '\'');
        return head;
    }

    QByteArray title(const PlannedTable &table) const
    {
        return harmless(comment({ table.label.isEmpty() ? table.name : table.name + QLatin1String(": ") + table.label },
                                commentStyle));
    }

    QByteArray lines() const
    {
        const QVector<RawVariable> raw = lineVariables();
        QByteArray pieces;
        QByteArray marked;
        QVector<QByteArray> names;
        for (const RawVariable &variable : raw) {
            pieces += (pieces.isEmpty() ? "" : " ///\n        ") + QByteArray("str ") + variable.name + ' '
                + number(variable.start) + '-' + number(variable.start + variable.length - 1);
            marked += "        replace " + variable.name + " = substr(scalar(van_first), " + number(variable.start)
                + ", " + number(variable.length) + ") in 1\n";
            if (variable.name.startsWith("_line"))
                names.append(variable.name);
        }
        QVector<QByteArray> first;
        for (const QByteArray &name : names)
            first.append(name + "[1]");
        return programPart("stata/lines.do",
                           { { "path", stataPath() },
                             { "pieces", pieces },
                             { "marked", marked },
                             { "first", joinedTexts(first) },
                             { "check", asciiCheck(names) },
                             { "blank", eachIsBlank(names) },
                             { "known", plan.recordType ? "0" : "1" },
                             { "types", types() } });
    }

    QByteArray stataPath() const { return "local data = " + stataExpression(safePath(plan.options.data)); }

    QVector<RawVariable> lineVariables() const
    {
        QVector<RawVariable> raw = { { "_start", 1, 1 } };
        int last = 1;
        for (int i = 0; plan.recordType && i < plan.recordType->length; ++i)
            raw.append({ "_type" + number(i + 1), plan.recordType->start + i, 1 });
        for (const StataTable &table : tables) {
            for (const RawVariable &variable : table.variables())
                last = std::max(last, variable.start - 1 + variable.length);
        }
        last = std::max(last, raw.constLast().start) + markBytes;
        for (int piece = 0; piece < piecesOf(last); ++piece)
            raw.append(pieceOf("_line" + number(piece + 1), 1, last, piece));
        return raw;
    }

    static QByteArray eachIsBlank(const QVector<QByteArray> &names)
    {
        QVector<QByteArray> blank;
        for (const QByteArray &name : names)
            blank.append("rtrim(" + name + ") == \"\"");
        return joined(blank, " & ");
    }

    QByteArray asciiCheck(const QVector<QByteArray> &names) const
    {
        if (!isAscii)
            return QByteArray();
        QVector<QByteArray> wide;
        for (const QByteArray &name : names)
            wide.append("regexm(" + name + ", \"[^\" + char(1) + \"-\" + char(127) + \"]\")");
        return programPart("stata/ascii.do", { { "wide", joined(wide, " | ") } });
    }

    QByteArray types() const
    {
        QByteArray text;
        for (const QString &mark : plan.knownMarks)
            text += indented("replace _known = 1 if " + hasMark(mark, "_type"));
        return text;
    }

    const LoadPlan &plan;
    bool isAscii; ///< whether the program stops at data that are not ASCII
    std::vector<StataTable> tables;
};

} // namespace

QVector<LoadFile> stataProgram(const LoadPlan &plan)
{
    return StataWriter(plan).files();
}

bool isReservedInStata(const QString &name)
{
    static const QStringList words = {
        QStringLiteral("_all"),  QStringLiteral("_b"),     QStringLiteral("byte"),  QStringLiteral("_coef"),
        QStringLiteral("_cons"), QStringLiteral("double"), QStringLiteral("float"), QStringLiteral("if"),
        QStringLiteral("in"),    QStringLiteral("int"),    QStringLiteral("long"),  QStringLiteral("_n"),
        QStringLiteral("_N"),    QStringLiteral("_pi"),    QStringLiteral("_pred"), QStringLiteral("_rc"),
        QStringLiteral("_skip"), QStringLiteral("strL"),   QStringLiteral("using"), QStringLiteral("with"),
    };
    const auto isDigit = [](QChar character) { return character >= QLatin1Char('0') && character <= QLatin1Char('9'); };
    const bool isTextType = name.startsWith(QLatin1String("str")) && name.size() > 3
        && std::all_of(name.begin() + 3, name.end(), isDigit);
    return isTextType || words.contains(name);
}

} // namespace vanlayout
