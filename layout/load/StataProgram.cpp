#include "StataProgram_p.h"

#include "Head_p.h"
#include "PlanLists_p.h"
#include "ProgramText_p.h"
#include "StataTable_p.h"
#include "StataTexts_p.h"

#include <algorithm>
#include <vector>

namespace vanlayout
{

namespace
{

constexpr int markBytes = 3;                  // of a byte-order mark
constexpr int variablesOfSmallEdition = 2000; // and a few more
constexpr CommentStyle commentStyle = { "* ", "", "*/" };

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
            text += '\n' + harmless(tableTitle(table, commentStyle)) + "tempfile " + file + "\nquietly {\n";
            text += writer.commands();
            text += stataLine("save \"`" + file + "'\"") + "}\n";
            saved += stataLine("use \"`" + file + "'\", clear")
                + stataLine("save " + writer.quotedFile(".dta") + ", replace");
            dictionaries.append({ table.file + QLatin1String(".dct"), writer.variables().dictionary() });
        }
        QVector<LoadFile> made = { { plan.name + QLatin1String(".do"), text += saved + "}\n" } };
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
        texts.needs = QStringList(QStringLiteral(
            "It needs Stata 13 or later. Stata itself was not run: programs of this form were tested with an "
            "interpreter of the commands that they use, written from Stata's manual."));
        texts.needs.append(
            isAscii ? QStringLiteral("infix counts bytes, so the program stops at data that are not ASCII.")
                    : QStringLiteral(
                        "The data file is read as windows-1252. Stata 13 shows texts in the encoding of the system."));
        if (variablesAtOnce() > variablesOfSmallEdition)
            texts.needs.append(QStringLiteral("A table needs %1 variables. Stata/BE and Stata/IC hold 2,048, Stata/SE "
                                              "32,767, and Stata/MP of release 15 or later 120,000.")
                                   .arg(variablesAtOnce()));
        LoadPlan described = plan;
        described.remarks += rangeRemarks(plan) + textRemarks() + textSpecialRemarks(plan)
            + longCodeRemarks(plan, maxExactDigits, maxExactDigits);
        const QStringList names = textsWithoutBlanks();
        if (!names.isEmpty())
            described.remarks.append(QLatin1String("These texts lose blanks before them if infix takes them off: ")
                                     + names.join(QLatin1String(", ")));
        return harmless(programHead(described, commentStyle, texts));
    }

    QStringList textRemarks() const
    {
        QStringList remarks;
        forEachCodeList(plan, [&](const PlannedTable &table, const PlannedColumn &column) {
            const QStringList codes = stataUnlabelled(plan.codes.at(column.codes), column.type == CellType::Text);
            if (!codes.isEmpty())
                remarks.append(QStringLiteral("%1.%2: Stata has no labels for %3")
                                   .arg(table.name, column.name, codes.join(QLatin1String(", "))));
        });
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

    QByteArray lines() const
    {
        const QVector<StataVariable> raw = lineVariables();
        QByteArray pieces;
        QByteArray marked;
        QVector<QByteArray> names;
        for (const StataVariable &variable : raw) {
            pieces += pieces.isEmpty() ? "" : " ///\n        ";
            pieces += variable.declaration();
            marked += variable.firstLine("in 1");
            if (variable.name.startsWith("_line"))
                names.append(variable.name);
        }
        QVector<QByteArray> first;
        for (const QByteArray &name : names)
            first.append(name + "[1]");
        return programPart("stata/lines.do",
                           { { "path", stataPath() },
                             { "pieces", pieces },
                             { "lost", lostBlanks(names.size()) },
                             { "marked", marked },
                             { "first", stataJoinedTexts(first) },
                             { "check", asciiCheck(names) },
                             { "blank", stataAreBlank(names) },
                             { "known", plan.recordType ? "0" : "1" },
                             { "types", types() } });
    }

    int variablesAtOnce() const
    {
        int largest = 0;
        for (const StataTable &table : tables)
            largest = std::max(largest, table.variablesAtOnce());
        return largest;
    }

    QByteArray stataPath() const { return stataMacro("data", safePath(plan.options.data)); }

    QVector<StataVariable> lineVariables() const
    {
        QVector<StataVariable> raw = { { "_start", 1, 1 } };
        int last = 1;
        for (int i = 0; plan.recordType && i < plan.recordType->length; ++i)
            raw.append({ "_type" + number(i + 1), plan.recordType->start + i, 1 });
        for (const StataTable &table : tables) {
            for (const StataVariable &variable : table.variables().all())
                last = std::max(last, variable.start - 1 + variable.length);
        }
        last = std::max(last, raw.constLast().start) + markBytes;
        for (int piece = 0; piece < stataPieces(last); ++piece) {
            raw.append(stataPiece("_line" + number(piece + 1), 1, last, piece));
            if (piece > 0)
                raw.append({ "_begin" + number(piece + 1), raw.constLast().start, 1 });
        }
        return raw;
    }

    // A part of the first line that begins with a blank is known by the first character, which is a variable as well.
    static QByteArray lostBlanks(int pieces)
    {
        QVector<QByteArray> conditions;
        for (int piece = 2; piece <= pieces; ++piece) {
            const QByteArray line = "_line" + number(piece) + "[1]";
            conditions.append("(rtrim(_begin" + number(piece) + "[1]) == \"\" & " + line + " != \"\" & substr(" + line
                              + ", 1, 1) != \" \")");
        }
        return conditions.isEmpty()
            ? QByteArray()
            : programPart("stata/lost-blanks.do", { { "lost", stataJoined(conditions, " | ") } });
    }

    QStringList textsWithoutBlanks() const
    {
        QStringList names;
        for (int i = 0; i < plan.tables.size(); ++i) {
            const PlannedTable &table = plan.tables.at(i);
            for (const PlannedColumn &column : table.columns) {
                const bool isText = column.item && column.type == CellType::Text;
                if (isText && !tables.at(size_t(i)).variables().isInLine(column))
                    names.append(table.name + QLatin1Char('.') + column.name);
            }
        }
        return names;
    }

    QByteArray asciiCheck(const QVector<QByteArray> &names) const
    {
        if (!isAscii)
            return QByteArray();
        QVector<QByteArray> wide;
        for (const QByteArray &name : names)
            wide.append("regexm(" + name + ", \"[^\" + char(1) + \"-\" + char(127) + \"]\")");
        return programPart("stata/ascii.do", { { "wide", stataJoined(wide, " | ") } });
    }

    QByteArray types() const
    {
        QByteArray text;
        for (const QString &mark : plan.knownMarks)
            text += stataLine("replace _known = 1 if " + stataHasMark(mark, plan.recordType->length, "_type"));
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
