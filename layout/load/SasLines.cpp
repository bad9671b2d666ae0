#include "SasLines_p.h"

#include "PlanLists_p.h"
#include "ProgramText_p.h"

namespace vanlayout
{

namespace
{

QStringList allNames(const LoadPlan &plan)
{
    QStringList names;
    for (const PlannedTable &table : plan.tables) {
        names.append(table.name);
        names += columnNames(table);
    }
    return names;
}

} // namespace

SasLines::SasLines(const LoadPlan &loadPlan)
    : plan(loadPlan)
    , division(loadPlan)
    , p(freePrefix(allNames(loadPlan), Qt::CaseInsensitive))
{
    for (int i = 0; i < division.count(); ++i)
        names.append(p + "line" + number(i + 1));
}

QByteArray SasLines::dataSet(int table) const
{
    return "work." + p + number(table + 1);
}

QByteArray SasLines::read() const
{
    const bool isUtf8 = plan.options.encoding == DataEncoding::Utf8;
    const QByteArray length = number(LinePieces::length);
    QByteArray text;
    QByteArray fields;
    for (int i = 0; i < names.size(); ++i) {
        text += "  length " + names.at(i) + " $ " + length + ";\n";
        fields += "\n    @" + number(i * LinePieces::step + 1) + ' ' + names.at(i) + " $char" + length + '.';
    }
    return text + "  infile vanraw lrecl=" + QByteArray::number(division.bytesOfLine())
        + " truncover termstr=lf encoding='" + (isUtf8 ? "utf-8" : "wlatin1") + "' end=" + p + "last;\n  input" + fields
        + ";\n  link " + p + "read;\n";
}

QByteArray SasLines::readLabel() const
{
    const QByteArray first = "substr(" + names.at(0) + ", 1, ";
    QByteArray text = '\n' + p
        + "read:\n  /* A byte-order mark, as the encodings of SAS have it, and the first half of a line end are no "
          "part of a line. */\n"
          "  if _n_ = 1 then do;\n    "
        + p + "mark = 1;\n    if " + first + "3) = 'EFBBBF'x then " + p + "mark = 4;\n    if " + first
        + "6) = 'C3AFC2BBC2BF'x then " + p + "mark = 7;\n";
    for (const QByteArray &piece : names)
        text += "    " + piece + " = substr(" + piece + ", " + p + "mark);\n";
    text += "  end;\n";
    for (const QByteArray &piece : names)
        text += "  if " + piece + " ne ' ' then do;\n    if substr(" + piece + ", lengthn(" + piece
            + "), 1) = '0D'x then substr(" + piece + ", lengthn(" + piece + "), 1) = ' ';\n  end;\n";
    return text + "return;\n";
}

QByteArray SasLines::field(int start, int length) const
{
    const QByteArray place
        = number(division.columnInPiece(start)) + ", " + number(division.lengthInPiece(start, length)) + ')';
    return (division.countCharacters() ? "ksubstr(" : "substr(") + names.at(division.indexAt(start)) + ", " + place;
}

QByteArray SasLines::recordType() const
{
    return field(plan.recordType->start, plan.recordType->length);
}

QByteArray SasLines::first() const
{
    return "substr(" + names.at(0) + ", 1, 1)";
}

QByteArray SasLines::isBlank() const
{
    QByteArray text;
    for (const QByteArray &piece : names)
        text += (text.isEmpty() ? "" : " and ") + piece + " = ' '";
    return text;
}

QByteArray SasLines::isWide() const
{
    QByteArray text;
    for (const QByteArray &piece : names)
        text += (text.isEmpty() ? "" : " or ") + QByteArray("prxmatch('/[^\\x01-\\x7F]/', ") + piece + ')';
    return text;
}

} // namespace vanlayout
