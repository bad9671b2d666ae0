#include "LinePieces_p.h"

#include "PlanLists_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

constexpr int utf8Bytes = 4;        // of a character, at most
constexpr int windows1252Bytes = 3; // of a character of windows-1252 in UTF-8, at most

} // namespace

LinePieces::LinePieces(const LoadPlan &plan)
    : bytesOfCharacter(plan.options.encoding == DataEncoding::Utf8 ? utf8Bytes : windows1252Bytes)
    , last(lastColumnOf(plan))
    , pieces(qint64(last) * bytesOfCharacter <= length ? 1 : std::max(2, (last - 1) / step + 1))
{
}

int LinePieces::lengthInPiece(int column, int fieldLength) const
{
    return countCharacters() ? fieldLength : std::min(fieldLength, length - columnInPiece(column) + 1);
}

QStringList LinePieces::cutTextRemarks(const PlannedTable &table) const
{
    QStringList remarks;
    for (const PlannedColumn &column : table.columns) {
        const int held = lengthInPiece(column.start, std::min(column.length, maxText));
        if (column.type == CellType::Text && column.length > held)
            remarks.append(QStringLiteral("%1.%2 is cut to %3 bytes.").arg(table.name, column.name).arg(held));
    }
    return remarks;
}

int LinePieces::bytesOf(int characters) const
{
    return int(std::min(qint64(characters) * bytesOfCharacter, qint64(maxText)));
}

} // namespace vanlayout
