#include "SasProgram_p.h"

#include "Head_p.h"
#include "PlanTexts_p.h"
#include "ProgramText_p.h"
#include "SasTexts_p.h"

#include <algorithm>
#include <utility>

namespace vanlayout
{

namespace
{

constexpr CommentStyle commentStyle = { "/* ", " */", "*/" };
constexpr int maxTextBytes = 32767;   // of a variable
constexpr int maxInformatDigits = 32; // that an informat reads
constexpr int pieceStep = 16000;      // bytes from the start of one piece of a line to that of the next
constexpr int pieceLength = 2 * pieceStep;
constexpr int utf8Bytes = 4;        // of a character, at most
constexpr int windows1252Bytes = 3; // of a character of windows-1252 in UTF-8, at most

QByteArray statement(const QByteArray &text)
{
    return "    " + text + ";\n";
}

/// The format of the columns that share codes; without a name if no code has a label.
struct SasFormat {
    QByteArray name;
    QByteArray statement; ///< of PROC FORMAT
};

/// Names and forms that all data steps share.
struct SasForms {
    explicit SasForms(const LoadPlan &plan);

    /// The expression for a field of a line.
    QByteArray field(int start, int length) const;
    int bytesOf(int characters) const
    {
        return int(std::min(qint64(characters) * bytesOfCharacter, qint64(maxTextBytes)));
    }
    QByteArray data(int table) const { return "work." + prefix + number(table + 1); }
    static SasFormat formatOf(const LoadPlan &plan, const PlannedColumn &column);
    bool countsCharacters() const { return pieces.size() == 1; }

    QByteArray prefix; ///< of names that no table and no column begins with
    int bytesOfCharacter;
    QVector<QByteArray> pieces; ///< variables that hold the line
    QVector<SasFormat> formats; ///< by the index of the codes
};

int lastColumnOf(const PlannedTable &table)
{
    int last = table.isItemTable() ? table.start - 1 + (table.occurrences - 1) * table.step + table.length : 0;
    for (const PlannedColumn &column : table.columns) {
        const int shift
            = table.isItemTable() && column.role == ColumnRole::Item ? (table.occurrences - 1) * table.step : 0;
        last = std::max(last, column.isMade() ? 0 : column.start - 1 + column.length + shift);
    }
    return last;
}

SasForms::SasForms(const LoadPlan &plan)
    : prefix("_van_")
    , bytesOfCharacter(plan.options.encoding == DataEncoding::Utf8 ? utf8Bytes : windows1252Bytes)
{
    int last = plan.recordType ? plan.recordType->start - 1 + plan.recordType->length : 1;
    QStringList names;
    for (const PlannedTable &table : plan.tables) {
        last = std::max(last, lastColumnOf(table));
        names.append(table.name);
        for (const PlannedColumn &column : table.columns)
            names.append(column.name);
    }
    const auto isUsed
        = [&](const QString &name) { return name.startsWith(QLatin1String(prefix), Qt::CaseInsensitive); };
    while (std::any_of(names.begin(), names.end(), isUsed))
        prefix += '_';
    const int count = qint64(last) * bytesOfCharacter <= pieceLength ? 1 : std::max(2, (last - 1) / pieceStep + 1);
    for (int i = 0; i < count; ++i)
        pieces.append(prefix + "line" + number(i + 1));
    formats.resize(plan.codes.size());
    QVector<bool> isDone(plan.codes.size());
    for (const PlannedTable &table : plan.tables) {
        for (const PlannedColumn &column : table.columns) {
            if (column.codes < 0 || std::exchange(isDone[column.codes], true))
                continue;
            formats[column.codes] = formatOf(plan, column);
        }
    }
}

QByteArray SasForms::field(int start, int length) const
{
    if (countsCharacters())
        return "ksubstr(" + pieces.at(0) + ", " + number(start) + ", " + number(length) + ')';
    const int piece = (start - 1) / pieceStep;
    return "substr(" + pieces.at(piece) + ", " + number(start - piece * pieceStep) + ", " + number(length) + ')';
}

// The name is none of SAS's own formats, and does not end with a digit.
SasFormat SasForms::formatOf(const LoadPlan &plan, const PlannedColumn &column)
{
    constexpr int maxName = 20;
    const bool isText = column.type == CellType::Text;
    const QByteArray name
        = (isText ? "$" : "") + column.name.left(maxName).toLatin1() + '_' + number(column.codes + 1) + '_';
    const QByteArray statement = sasFormat(name, plan.codes.at(column.codes), isText, plan.options.specials);
    return { statement.isEmpty() ? QByteArray() : name, statement };
}

/// Writes the data steps of one table.
class SasTable
{
public:
    SasTable(const LoadPlan &loadPlan, const SasForms &sasForms, int tableIndex)
        : plan(loadPlan)
        , forms(sasForms)
        , table(loadPlan.tables.at(tableIndex))
        , index(tableIndex)
        , p(sasForms.prefix)
    {
    }

    QByteArray steps() const
    {
        QByteArray text = "data " + forms.data(index) + ";\n" + lengths() + readLine(plan, forms);
        text += "  if " + isRecord() + " then do;\n" + columns(ColumnRole::Id) + statement(p + "number = _n_") + keys();
        text += table.isItemTable() ? occurrences() : columns(ColumnRole::Item) + statement("output");
        text += "  end;\n" + counts() + "  keep" + kept() + ";\n" + labels() + "  return;\n" + readLabel(forms)
            + numberLabel() + "run;\n";
        if (table.hasOccurrence)
            text += table.isItemTable() ? recordNumbers() : occurrenceNumbers();
        return text + rows();
    }

    /// The beginning of a step that reads all lines.
    static QByteArray readLine(const LoadPlan &plan, const SasForms &forms)
    {
        const bool isUtf8 = plan.options.encoding == DataEncoding::Utf8;
        const int length = (forms.pieces.size() - 1) * pieceStep + pieceLength;
        QByteArray text;
        QByteArray fields;
        for (int i = 0; i < forms.pieces.size(); ++i) {
            text += "  length " + forms.pieces.at(i) + " $ " + number(pieceLength) + ";\n";
            fields += "\n    @" + number(i * pieceStep + 1) + ' ' + forms.pieces.at(i) + " $char" + number(pieceLength)
                + '.';
        }
        return text + "  infile vanraw lrecl=" + number(length) + " truncover termstr=lf encoding='"
            + (isUtf8 ? "utf-8" : "wlatin1") + "' end=" + forms.prefix + "last;\n  input" + fields + ";\n  link "
            + forms.prefix + "read;\n";
    }

    static QByteArray readLabel(const SasForms &forms)
    {
        QByteArray text = '\n' + forms.prefix
            + "read:\n  /* A byte-order mark, as the encodings of SAS have it, and the first half of a line end are no "
              "part of a line. */\n"
              "  if _n_ = 1 then do;\n    "
            + forms.prefix + "mark = 1;\n    if substr(" + forms.pieces.at(0) + ", 1, 3) = 'EFBBBF'x then "
            + forms.prefix + "mark = 4;\n    if substr(" + forms.pieces.at(0) + ", 1, 6) = 'C3AFC2BBC2BF'x then "
            + forms.prefix + "mark = 7;\n";
        for (const QByteArray &piece : forms.pieces)
            text += "    " + piece + " = substr(" + piece + ", " + forms.prefix + "mark);\n";
        text += "  end;\n";
        for (const QByteArray &piece : forms.pieces)
            text += "  if " + piece + " ne ' ' then do;\n    if substr(" + piece + ", lengthn(" + piece
                + "), 1) = '0D'x then substr(" + piece + ", lengthn(" + piece + "), 1) = ' ';\n  end;\n";
        return text + "return;\n";
    }

    static QByteArray isBlank(const SasForms &forms)
    {
        QByteArray text;
        for (const QByteArray &piece : forms.pieces)
            text += (text.isEmpty() ? "" : " and ") + piece + " = ' '";
        return text;
    }

private:
    QByteArray lengths() const
    {
        QByteArray text;
        int longest = 1;
        for (const PlannedColumn &column : table.columns) {
            const bool isText = column.type == CellType::Text;
            text += "  length " + column.name.toLatin1()
                + (isText ? " $ " + number(forms.bytesOf(column.length)) : QByteArray(" 8")) + ";\n";
            longest = std::max(longest, column.length);
        }
        longest = std::max(longest, table.length);
        if (table.isItemTable() && !forms.countsCharacters())
            text += "  length " + p + "part $ " + number(pieceLength) + ";\n";
        return text + "  length " + p + "text $ " + number(forms.bytesOf(longest)) + ";\n";
    }

    QByteArray isRecord() const
    {
        QByteArray text = "not (" + isBlank(forms) + ") and substr(" + forms.pieces.at(0) + ", 1, 1) ne '~'";
        if (plan.recordType)
            text += "\n    and " + forms.field(plan.recordType->start, plan.recordType->length) + " = "
                + sasQuoted(table.mark);
        return text;
    }

    bool isOfOccurrence(const PlannedColumn &column) const
    {
        return table.isItemTable() && column.role == ColumnRole::Item;
    }

    // A field, or its place in an occurrence: in the line, or in the piece of it that holds the occurrence.
    QByteArray fieldOf(int start, int length, bool isShifted) const
    {
        if (!isShifted)
            return forms.field(start, length);
        if (forms.countsCharacters())
            return "ksubstr(" + forms.pieces.at(0) + ", " + number(start) + " + (item_occ - 1) * " + number(table.step)
                + ", " + number(length) + ')';
        return "substr(" + p + "part, " + p + "first + " + number(start - table.start) + ", " + number(length) + ')';
    }

    // The piece of the line that holds an occurrence, and where it begins there.
    QByteArray partOfOccurrence() const
    {
        if (forms.countsCharacters())
            return QByteArray();
        QByteArray text = statement(p + "first = " + number(table.start) + " + (item_occ - 1) * " + number(table.step))
            + statement(p + "piece = floor((" + p + "first - 1) / " + number(pieceStep) + ')');
        for (int i = 0; i < forms.pieces.size(); ++i)
            text += statement("if " + p + "piece = " + number(i) + " then " + p + "part = " + forms.pieces.at(i));
        return text + statement(p + "first = " + p + "first - " + p + "piece * " + number(pieceStep));
    }

    QByteArray columns(ColumnRole role) const
    {
        QByteArray text;
        for (int i = 0; i < table.columns.size(); ++i) {
            const PlannedColumn &column = table.columns.at(i);
            if (column.role == role)
                text += column.isNumber() ? numberColumn(i) : textColumn(column);
        }
        return text;
    }

    QByteArray textColumn(const PlannedColumn &column) const
    {
        return statement(column.name.toLatin1() + " = " + fieldOf(column.start, column.length, isOfOccurrence(column)));
    }

    QByteArray numberColumn(int column) const
    {
        const PlannedColumn &planned = table.columns.at(column);
        const QByteArray name = planned.name.toLatin1();
        QByteArray text = statement(p + "text = " + fieldOf(planned.start, planned.length, isOfOccurrence(planned)))
            + statement(p + "decimals = " + number(planned.decimals)) + statement("link " + p + "parse")
            + statement(name + " = " + p + "value");
        if (isCounted(planned))
            text += statement(p + "wrong" + number(column + 1) + " + " + p + "wrong");
        return planned.codes < 0 ? text : text + sasSpecials(name, plan.codes.at(planned.codes));
    }

    // The ids of an item table are counted with its record.
    bool isCounted(const PlannedColumn &column) const
    {
        return column.isNumber() && (!table.isItemTable() || column.role == ColumnRole::Item);
    }

    // The ids that make a case. Missing values with different reasons are the same value.
    QVector<QByteArray> keyNames() const
    {
        QVector<QByteArray> names;
        for (int i = 0; i < table.columns.size(); ++i) {
            const PlannedColumn &column = table.columns.at(i);
            if (column.role == ColumnRole::Id)
                names.append(column.isNumber() ? p + "key" + number(i + 1) : column.name.toLatin1());
        }
        return names;
    }

    bool needsKeys() const { return table.hasOccurrence && !table.isItemTable(); }

    QByteArray keys() const
    {
        QByteArray text;
        for (int i = 0; needsKeys() && i < table.columns.size(); ++i) {
            const PlannedColumn &column = table.columns.at(i);
            if (column.role == ColumnRole::Id && column.isNumber())
                text += statement(p + "key" + number(i + 1) + " = " + column.name.toLatin1() + " + 0");
        }
        return text;
    }

    QByteArray occurrences() const
    {
        return "    do item_occ = 1 to " + number(table.occurrences) + ";\n" + partOfOccurrence()
            + statement(p + "text = " + fieldOf(table.start, table.length, true)) + "    if " + p
            + "text ne ' ' then do;\n" + columns(ColumnRole::Item) + statement("output") + "    end;\n    end;\n";
    }

    QByteArray counts() const
    {
        QByteArray text;
        for (int i = 0; i < table.columns.size(); ++i) {
            if (!isCounted(table.columns.at(i)))
                continue;
            const QByteArray count = p + "wrong" + number(i + 1);
            text += "    if " + count + " > 0 then put '" + table.name.toLatin1() + '.'
                + table.columns.at(i).name.toLatin1() + ": ' " + count + " 'values are no numbers';\n";
        }
        return text.isEmpty() ? text : "  if " + p + "last then do;\n" + text + "  end;\n";
    }

    QByteArray kept() const
    {
        QByteArray text;
        for (const PlannedColumn &column : table.columns)
            text += "\n    " + column.name.toLatin1();
        text += "\n    " + p + "number";
        if (needsKeys()) {
            const QVector<QByteArray> keys = keyNames();
            for (const QByteArray &key : keys)
                text += key.startsWith(p) ? ' ' + key : QByteArray();
        }
        return text;
    }

    QByteArray labels() const
    {
        QByteArray text;
        for (const PlannedColumn &column : table.columns) {
            const QByteArray name = column.name.toLatin1();
            if (!column.label.isEmpty())
                text += "  label " + name + " = " + sasQuoted(column.label) + ";\n";
            if (column.codes >= 0 && !forms.formats.at(column.codes).name.isEmpty())
                text += "  format " + name + ' ' + forms.formats.at(column.codes).name + ".;\n";
        }
        return text;
    }

    QByteArray numberLabel() const
    {
        const auto isLong
            = [](const PlannedColumn &column) { return column.isNumber() && column.length > maxInformatDigits; };
        const bool hasLong = std::any_of(table.columns.begin(), table.columns.end(), isLong);
        return programPart(hasLong ? "sas/long-number.sas" : "sas/number.sas", { { "p", p } });
    }

    QByteArray occurrenceNumbers() const
    {
        QByteArray list;
        const QVector<QByteArray> names = keyNames();
        for (const QByteArray &key : names)
            list += key + ' ';
        QByteArray by;
        if (!names.isEmpty())
            by = "  by " + list + ";\n  if first." + names.constLast() + " then " + p + "occ = 0;\n";
        return programPart("sas/occ.sas",
                           { { "table", forms.data(index) }, { "keys", list }, { "by", by }, { "p", p } });
    }

    // An item table has `occ` from its record.
    QByteArray recordNumbers() const
    {
        return "\ndata " + forms.data(index) + ";\n  merge " + forms.data(index) + " (in=" + p + "own) "
            + forms.data(table.recordTable) + " (keep=" + p + "number occ rename=(occ=" + p + "occ));\n  by " + p
            + "number;\n  if " + p + "own;\n  occ = " + p + "occ;\n  drop " + p + "occ;\nrun;\n";
    }

    QByteArray rows() const
    {
        return "data _null_;\n  if 0 then set " + forms.data(index) + " nobs=" + p + "rows;\n  put '"
            + table.name.toLatin1() + ": ' " + p + "rows 'rows';\n  stop;\nrun;\n";
    }

    const LoadPlan &plan;
    const SasForms &forms;
    const PlannedTable &table;
    int index;
    const QByteArray &p;
};

/// Writes the program.
class SasWriter
{
public:
    explicit SasWriter(const LoadPlan &loadPlan)
        : plan(loadPlan)
        , forms(loadPlan)
        , p(forms.prefix)
    {
    }

    QByteArray program() const
    {
        QByteArray text = head() + '\n' + setup() + formats() + otherLines();
        for (int i = 0; i < plan.tables.size(); ++i)
            text += '\n' + title(plan.tables.at(i)) + SasTable(plan, forms, i).steps();
        text += "\n/* All tables are made: they are copied to their library. */\n";
        for (int i = 0; i < plan.tables.size(); ++i)
            text += copied(i);
        return text;
    }

private:
    QByteArray head() const
    {
        HeadTexts texts;
        texts.target = QStringLiteral("SAS");
        texts.run = QStringList(QStringLiteral("sas -encoding utf-8 %1.sas").arg(plan.name));
        texts.change = QStringList(
            QStringLiteral("Below, `data` is the path of the data file, and `out` the directory of the tables."));
        texts.needs = needs();
        LoadPlan described = plan;
        for (const PlannedTable &table : plan.tables) {
            for (const PlannedColumn &column : table.columns) {
                if (column.type == CellType::Text && column.length > maxTextBytes)
                    described.remarks.append(
                        QStringLiteral("%1.%2 is cut to %3 bytes.").arg(table.name, column.name).arg(maxTextBytes));
            }
        }
        return programHead(described, commentStyle, texts);
    }

    QStringList needs() const
    {
        QStringList needs(QStringLiteral(
            "It needs SAS 9.4, and a session in UTF-8 for texts and labels that are not ASCII. It was not run in SAS "
            "itself: an interpreter of the statements that it uses, written from the manual of SAS, made the expected "
            "tables."));
        needs.append(QStringLiteral("The formats are in WORK. Texts with a special code stay as they are."));
        if (!forms.countsCharacters())
            needs.append(QStringLiteral("The lines are so long that their columns are counted in bytes. That is exact "
                                        "for ASCII data; the log says "
                                        "how many lines are not ASCII."));
        return needs;
    }

    // A path that %let would expand, or at which it would end, is a text of the step.
    QByteArray setup() const
    {
        const QString path = safePath(plan.options.data);
        const QByteArray plainCharacters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_./\\:-";
        const auto isPlain = [&](QChar character) {
            return character.unicode() < 0x80 && plainCharacters.contains(character.toLatin1());
        };
        constexpr int maxSimple = 500; // characters on one line
        const bool isSimple = path.size() < maxSimple && std::all_of(path.begin(), path.end(), isPlain);
        const QByteArray byDefault = "  if path = ' ' then path = " + sasQuoted(path) + ";\n";
        return programPart("sas/setup.sas",
                           { { "data", isSimple ? path.toLatin1() : QByteArray() },
                             { "default", isSimple ? QByteArray() : byDefault } });
    }

    QByteArray formats() const
    {
        QByteArray text;
        for (const SasFormat &format : forms.formats)
            text += format.statement;
        return text.isEmpty() ? text : "\nproc format;\n" + text + "run;\n";
    }

    QByteArray otherLines() const
    {
        QByteArray text = "\n/* Lines that are in no table. */\ndata _null_;\n" + SasTable::readLine(plan, forms)
            + "  if " + SasTable::isBlank(forms) + " then " + p + "blank + 1;\n  else if " + isUnknown() + " then " + p
            + "unknown + 1;\n";
        if (!forms.countsCharacters())
            text += wideLines();
        text += "  if " + p + "last then do;\n    if " + p + "unknown > 0 then put " + p
            + "unknown 'lines of no known record type';\n    if " + p + "blank > 0 then put " + p
            + "blank 'blank lines';\n  end;\n  return;\n";
        return text + SasTable::readLabel(forms) + "run;\n";
    }

    QByteArray wideLines() const
    {
        QByteArray condition;
        for (const QByteArray &piece : forms.pieces)
            condition
                += (condition.isEmpty() ? "" : " or ") + QByteArray("prxmatch('/[^\\x01-\\x7F]/', ") + piece + ')';
        return "  if " + condition + " then " + p + "wide + 1;\n  if " + p + "last and " + p + "wide > 0 then put " + p
            + "wide 'lines are not ASCII';\n";
    }

    QByteArray isUnknown() const
    {
        const QByteArray isErased = "substr(" + forms.pieces.at(0) + ", 1, 1) = '~'";
        if (!plan.recordType)
            return isErased;
        QByteArray marks;
        for (const QString &mark : plan.knownMarks)
            marks += (marks.isEmpty() ? "\n    " : ",\n    ") + sasQuoted(mark);
        return isErased + "\n    or " + forms.field(plan.recordType->start, plan.recordType->length) + " not in ("
            + marks + ")";
    }

    QByteArray title(const PlannedTable &table) const
    {
        return comment({ table.label.isEmpty() ? table.name : table.name + QLatin1String(": ") + table.label },
                       commentStyle);
    }

    QByteArray copied(int index) const
    {
        constexpr LengthLimit limit = { 256, LengthUnit::Bytes };
        const PlannedTable &table = plan.tables.at(index);
        const QByteArray label
            = table.label.isEmpty() ? QByteArray() : " (label=" + sasQuoted(cutTo(table.label, limit)) + ')';
        return "data vanout." + table.name.toLatin1() + label + ";\n  set " + forms.data(index) + ";\n  drop " + p
            + ":;\nrun;\n";
    }

    const LoadPlan &plan;
    SasForms forms;
    const QByteArray &p;
};

} // namespace

QVector<LoadFile> sasProgram(const LoadPlan &plan)
{
    return { { plan.name + QLatin1String(".sas"), SasWriter(plan).program() } };
}

bool isReservedInSas(const QString &name)
{
    static const QStringList words = { QStringLiteral("_N_"), QStringLiteral("_ERROR_"), QStringLiteral("_NUMERIC_"),
                                       QStringLiteral("_CHARACTER_"), QStringLiteral("_ALL_") };
    return words.contains(name, Qt::CaseInsensitive);
}

bool isReservedDataSet(const QString &name)
{
    static const QStringList words = { QStringLiteral("_NULL_"), QStringLiteral("_DATA_"), QStringLiteral("_LAST_") };
    return words.contains(name, Qt::CaseInsensitive);
}

} // namespace vanlayout
