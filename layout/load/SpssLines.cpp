#include "SpssLines_p.h"

#include "ProgramText_p.h"
#include "SpssMissing_p.h"

#include <algorithm>

namespace vanlayout
{

SpssLines::SpssLines(const LoadPlan &loadPlan)
    : plan(loadPlan)
    , isUtf8(loadPlan.options.encoding == DataEncoding::Utf8)
    , division(loadPlan)
{
    pieces.append(QStringLiteral("@line"));
    for (int i = 2; i <= division.count(); ++i)
        pieces.append(QStringLiteral("@line%1").arg(i));
}

QByteArray SpssLines::read() const
{
    const int markLength = isUtf8 ? 3 : 6;
    const qint64 recordLength = findsCharacters() ? qint64(bytesOfShortLine()) : division.bytesOfLine();
    QByteArray text = programPart("spss/read.sps",
                                  { { "path", spssQuoted(safePath(plan.options.data)).toUtf8() },
                                    { "encoding", isUtf8 ? "UTF-8" : "ISO-8859-1" },
                                    { "recordLength", QByteArray::number(recordLength) },
                                    { "lines", lineColumns() },
                                    { "pieces", pieces.join(QLatin1Char(' ')).toUtf8() },
                                    { "mark", isUtf8 ? "X'EFBBBF'" : "X'C3AFC2BBC2BF'" },
                                    { "markLength", QByteArray::number(markLength) },
                                    { "afterMark", QByteArray::number(markLength + 1) } });
    if (findsCharacters() && !isUtf8)
        text += programPart("spss/windows-1252.sps");
    return text + records();
}

// The bytes of a line that is one variable. A byte-order mark has at most 6.
int SpssLines::bytesOfShortLine() const
{
    return std::max(division.bytesOf(division.lastColumn()), 6);
}

QByteArray SpssLines::lineColumns() const
{
    if (findsCharacters())
        return "@line 1-" + QByteArray::number(bytesOfShortLine()) + " (A)";
    QStringList words;
    for (int i = 0; i < pieces.size(); ++i) {
        const int start = i * LinePieces::step;
        words.append(QStringLiteral("%1 %2-%3 (A)").arg(pieces.at(i)).arg(start + 1).arg(start + LinePieces::length));
    }
    return wordLines(words);
}

QByteArray SpssLines::records() const
{
    QStringList blank;
    for (const QString &piece : pieces)
        blank.append((blank.isEmpty() ? QString() : QStringLiteral("AND ")) + piece + QLatin1String(" EQ ' '"));
    QByteArray counts
        = spssCount("#unknown", "", "lines of no known record type") + spssCount("#blank", "", "blank lines");
    if (!findsCharacters())
        counts += spssCount("#wide", "", "lines are not ASCII");
    return programPart("spss/records.sps",
                       { { "recordType", recordNumber() }, { "isBlank", wordLines(blank) }, { "counts", counts } });
}

QByteArray SpssLines::recordNumber() const
{
    if (!plan.recordType)
        return "COMPUTE @record=1.\n";
    QStringList words;
    for (int i = 0; i < plan.knownMarks.size(); ++i)
        words.append(QLatin1Char('(') + spssQuoted(plan.knownMarks.at(i)) + QLatin1Char('=') + QString::number(i + 1)
                     + QLatin1Char(')'));
    words.append(QStringLiteral("(ELSE=0)"));
    const int length = plan.recordType->length;
    return positions(plan.recordType->start + length) + "STRING @type (A" + QByteArray::number(division.bytesOf(length))
        + ").\n" + typeField() + "RECODE @type " + wordLines(words) + " INTO @record.\n";
}

QByteArray SpssLines::typeField() const
{
    const int start = plan.recordType->start;
    const int length = plan.recordType->length;
    if (findsCharacters())
        return "COMPUTE #from=#at(" + QByteArray::number(start) + ").\nCOMPUTE #size=#at("
            + QByteArray::number(start + length) + ")-#from.\nCOMPUTE @type=SUBSTR(@line,#from,#size).\n";
    return "COMPUTE @type=SUBSTR(" + pieceAt(start).toUtf8() + ',' + QByteArray::number(division.columnInPiece(start))
        + ',' + QByteArray::number(length) + ").\n";
}

QByteArray SpssLines::positions(int columns) const
{
    if (!findsCharacters())
        return QByteArray();
    return programPart("spss/positions.sps", { { "columns", QByteArray::number(columns) } });
}

QByteArray spssCount(const QByteArray &count, const QByteArray &before, const QByteArray &after)
{
    return programPart("spss/count.sps", { { "count", count }, { "before", before }, { "after", after } });
}

} // namespace vanlayout
