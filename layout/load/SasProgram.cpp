#include "SasProgram_p.h"

#include "Head_p.h"
#include "PlanLists_p.h"
#include "PlanTexts_p.h"
#include "ProgramText_p.h"
#include "SasFormats_p.h"
#include "SasLines_p.h"
#include "SasTable_p.h"
#include "SasTexts_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

constexpr CommentStyle commentStyle = { "/* ", " */", "*/" };
/// Writes the program.
class SasWriter
{
public:
    explicit SasWriter(const LoadPlan &loadPlan)
        : plan(loadPlan)
        , lines(loadPlan)
        , formats(sasFormats(loadPlan))
        , p(lines.prefix())
    {
    }

    QByteArray program() const
    {
        QByteArray text = head() + '\n' + setup() + formatStep() + otherLines();
        for (int i = 0; i < plan.tables.size(); ++i) {
            text += '\n' + tableTitle(plan.tables.at(i), commentStyle);
            text += SasTable(plan, lines, formats, i).steps();
        }
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
        described.remarks += textSpecialRemarks(plan) + longCodeRemarks(plan, maxExactDigits, maxExactDigits);
        for (const PlannedTable &table : plan.tables)
            described.remarks += lines.divided().cutTextRemarks(table);
        return programHead(described, commentStyle, texts);
    }

    QStringList needs() const
    {
        QStringList needs(QStringLiteral(
            "It needs SAS 9.4, and a session in UTF-8 for texts and labels that are not ASCII. SAS itself was not run: "
            "programs of this form were tested with an interpreter of the statements that they use, written from the "
            "manual of SAS."));
        needs.append(QStringLiteral("The formats are in WORK."));
        if (!lines.divided().countCharacters())
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

    QByteArray formatStep() const
    {
        QByteArray text;
        for (const SasFormat &format : formats)
            text += format.statement;
        return text.isEmpty() ? text : "\nproc format;\n" + text + "run;\n";
    }

    QByteArray otherLines() const
    {
        QByteArray text = "\n/* Lines that are in no table. */\ndata _null_;\n" + lines.read() + "  if "
            + lines.isBlank() + " then " + p + "blank + 1;\n  else if " + isUnknown() + " then " + p + "unknown + 1;\n";
        text += badBytes();
        text += "  if " + p + "last then do;\n    if " + p + "unknown > 0 then put " + p
            + "unknown 'lines of no known record type';\n    if " + p + "blank > 0 then put " + p
            + "blank 'blank lines';\n  end;\n  return;\n";
        return text + lines.readLabel() + "run;\n";
    }

    // Lines that are read in pieces are not exact if they are not ASCII, and only counted.
    QByteArray badBytes() const
    {
        if (!lines.divided().countCharacters())
            return wideLines();
        if (plan.options.encoding != DataEncoding::Utf8)
            return QByteArray();
        return programPart("sas/utf-8.sas", { { "p", p }, { "length", number(LinePieces::length) } });
    }

    QByteArray wideLines() const
    {
        return "  if " + lines.isWide() + " then " + p + "wide + 1;\n  if " + p + "last and " + p + "wide > 0 then put "
            + p + "wide 'lines are not ASCII';\n";
    }

    QByteArray isUnknown() const
    {
        QByteArray isErased = lines.first() + " = '~'";
        if (!plan.recordType)
            return isErased;
        QByteArray marks;
        for (const QString &mark : plan.knownMarks)
            marks += (marks.isEmpty() ? "\n    " : ",\n    ") + sasQuoted(mark);
        return isErased + "\n    or " + lines.recordType() + " not in (" + marks + ")";
    }

    QByteArray copied(int index) const
    {
        constexpr LengthLimit limit = { 256, LengthUnit::Bytes };
        const PlannedTable &table = plan.tables.at(index);
        const QByteArray label
            = table.label.isEmpty() ? QByteArray() : " (label=" + sasQuoted(cutTo(table.label, limit)) + ')';
        return "data vanout." + table.name.toLatin1() + label + ";\n  set " + lines.dataSet(index) + ";\n  drop " + p
            + ":;\nrun;\n";
    }

    const LoadPlan &plan;
    SasLines lines;
    QVector<SasFormat> formats; ///< by the index of the codes
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
