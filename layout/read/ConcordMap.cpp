#include "read/ConcordMap.h"

#include "compare/RoundNames.h"
#include "read/CsvTable_p.h"

#include <QIODevice>

#include <array>

namespace vanlayout
{

namespace
{

using Place = ConcordDecision::Place;

// A spreadsheet file has an apostrophe before a text that looks like a formula.
QString withoutGuard(const QString &text)
{
    static const QString signs = QString::fromUtf8("=+-@\uFF1D\uFF0B\uFF0D\uFF20");
    const bool isGuarded = text.size() > 1 && text.at(0) == QLatin1Char('\'') && signs.contains(text.at(1));
    return isGuarded ? text.mid(1) : text;
}

/// Finds rounds by their names.
class RoundFinder
{
public:
    explicit RoundFinder(const QStringList &paths)
        : files(paths)
        , names(roundNames(paths))
    {
    }

    static constexpr int none = -1;

    /// The index of the round with a name; none if no round, or more than one, has it.
    int find(const QString &name) const
    {
        const int index = names.indexOf(name);
        if (index >= 0)
            return index;
        const QString end = QLatin1Char('/') + name;
        int found = none;
        for (int i = 0; i < files.size(); ++i) {
            if (files.at(i) != name && !files.at(i).endsWith(end))
                continue;
            if (found != none)
                return none;
            found = i;
        }
        return found;
    }

private:
    QStringList files;
    QStringList names;
};

/// Reads the rows of a map.
class MapReader
{
public:
    explicit MapReader(const QStringList &files)
        : finder(files)
    {
    }

    ConcordMap read(const CsvTable &table)
    {
        if (!table.problem.isEmpty())
            fail(table.line, table.problem);
        else if (table.rows.isEmpty())
            fail(1, QStringLiteral("the map has no line of heads"));
        else if (readHeads(table.rows.constFirst()))
            readRows(table);
        return map;
    }

private:
    enum Column {
        DecisionColumn,
        RoundColumn,
        LevelColumn,
        RecordColumn,
        ItemColumn,
        OtherRoundColumn,
        OtherLevelColumn,
        OtherRecordColumn,
        OtherItemColumn,
        columnCount
    };

    void fail(int line, const QString &message) { map.problems.append({ line, message }); }

    bool readHeads(const CsvRow &row)
    {
        static const std::array<const char *, columnCount> heads
            = { "decision",    "round",       "level",        "record",    "item",
                "other_round", "other_level", "other_record", "other_item" };
        for (int column = 0; column < columnCount; ++column) {
            const QString head = QLatin1String(heads.at(size_t(column)));
            indexes[size_t(column)] = -1;
            for (int i = 0; i < row.cells.size() && indexes[size_t(column)] < 0; ++i) {
                if (row.cells.at(i).trimmed().compare(head, Qt::CaseInsensitive) == 0)
                    indexes[size_t(column)] = i;
            }
            if (indexes[size_t(column)] < 0 && !isOptional(Column(column)))
                fail(row.line, QStringLiteral("the map has no column %1").arg(head));
        }
        width = int(row.cells.size());
        return map.problems.isEmpty();
    }
    static bool isOptional(Column column)
    {
        return column == LevelColumn || column == RecordColumn || column == OtherLevelColumn
            || column == OtherRecordColumn;
    }

    void readRows(const CsvTable &table)
    {
        for (int i = 1; i < table.rows.size(); ++i) {
            const QString problem = readRow(table.rows.at(i));
            if (!problem.isEmpty())
                fail(table.rows.at(i).line, problem);
        }
    }
    // Returns the problem with the row; empty if there is none.
    QString readRow(const CsvRow &row)
    {
        if (row.cells.size() > width)
            return QStringLiteral("the row has %1 cells, the line of heads %2").arg(row.cells.size()).arg(width);
        const QString word = cellOf(row, DecisionColumn).toLower();
        if (word.isEmpty())
            return QString();
        if (word != QLatin1String("same") && word != QLatin1String("different"))
            return QStringLiteral("the decision is %1; write same or different").arg(word);
        ConcordDecision decision;
        decision.isSame = word == QLatin1String("same");
        QString problem;
        decision.one = placeOf(row, RoundColumn, problem);
        decision.other = placeOf(row, OtherRoundColumn, problem);
        if (problem.isEmpty() && decision.one.round == decision.other.round)
            problem = QStringLiteral("both items are of the same round");
        if (problem.isEmpty()) {
            map.decisions.append(decision);
            map.lines.append(row.line);
        }
        return problem;
    }
    QString cellOf(const CsvRow &row, int column) const
    {
        return withoutGuard(row.cells.value(indexes[size_t(column)]).trimmed());
    }
    // The item whose columns begin with this one. Only the first problem of a row is kept.
    Place placeOf(const CsvRow &row, Column first, QString &problem) const
    {
        const QString round = cellOf(row, first);
        Place wanted
            = { finder.find(round), cellOf(row, first + LevelColumn - RoundColumn),
                cellOf(row, first + RecordColumn - RoundColumn), cellOf(row, first + ItemColumn - RoundColumn) };
        if (!problem.isEmpty())
            return wanted;
        const char *const prefix = first == RoundColumn ? "" : "other_";
        if (round.isEmpty())
            problem = QStringLiteral("%1round is empty; name the file of the round").arg(QLatin1String(prefix));
        else if (wanted.round == RoundFinder::none)
            problem = QStringLiteral("%1 names none or several of the files").arg(round);
        else if (wanted.item.isEmpty())
            problem = QStringLiteral("%1item is empty; name an item").arg(QLatin1String(prefix));
        return wanted;
    }

    RoundFinder finder;
    std::array<int, columnCount> indexes = {};
    int width = 0;
    ConcordMap map;
};

} // namespace

ConcordMap readConcordMap(QIODevice &device, const QStringList &files)
{
    constexpr qint64 pieceSize = 1 << 16;
    QByteArray bytes;
    for (QByteArray piece = device.read(pieceSize); !piece.isEmpty(); piece = device.read(pieceSize)) {
        bytes += piece;
        if (bytes.size() > maxConcordMapSize) {
            ConcordMap map;
            map.problems.append({ 0, QStringLiteral("a map can have at most 256 MiB") });
            return map;
        }
    }
    return MapReader(files).read(readCsvTable(bytes));
}

} // namespace vanlayout
