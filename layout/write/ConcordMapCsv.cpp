#include "write/ConcordMapCsv.h"

#include "compare/RoundNames.h"
#include "util/KeyedHash_p.h"
#include "write/ConcordTexts_p.h"
#include "write/CsvStream_p.h"

#include <vector>

namespace vanlayout
{

namespace
{

using Place = ConcordDecision::Place;

bool isSameName(const QString &wanted, const QString &name)
{
    return wanted.isEmpty() || wanted.compare(name, Qt::CaseInsensitive) == 0;
}

/// The decisions by one of their items.
class DecisionIndex
{
public:
    explicit DecisionIndex(const QVector<ConcordDecision> &list)
        : decisions(list)
        , isTaken(size_t(list.size()))
    {
        for (int i = 0; i < list.size(); ++i) {
            indexes[keyOf(list.at(i).one.round, list.at(i).one.item)].append(i);
            indexes[keyOf(list.at(i).other.round, list.at(i).other.item)].append(i);
        }
    }

    /// The word of the last decision on two items, which are marked as written; empty if there is none.
    QString take(int round, const ConcordCell &cell, int otherRound, const ConcordCell &other)
    {
        QString word;
        const auto found = indexes.find(keyOf(round, cell.item));
        if (found == indexes.end())
            return word;
        for (const int index : qAsConst(found->second)) {
            const ConcordDecision &decision = decisions.at(index);
            if ((names(decision.one, round, cell) && names(decision.other, otherRound, other))
                || (names(decision.other, round, cell) && names(decision.one, otherRound, other))) {
                isTaken[size_t(index)] = true;
                word = wordFor(decision);
            }
        }
        return word;
    }
    QVector<ConcordDecision> rest() const
    {
        QVector<ConcordDecision> others;
        for (int i = 0; i < decisions.size(); ++i) {
            if (!isTaken[size_t(i)])
                others.append(decisions.at(i));
        }
        return others;
    }
    static QString wordFor(const ConcordDecision &decision)
    {
        return decision.isSame ? QStringLiteral("same") : QStringLiteral("different");
    }
    static QString keyOf(int round, const QString &item)
    {
        return QString::number(round) + QLatin1Char(' ') + item.toLower();
    }

private:
    static bool names(const Place &place, int round, const ConcordCell &cell)
    {
        return place.round == round && place.item.compare(cell.item, Qt::CaseInsensitive) == 0
            && isSameName(place.level, cell.level) && isSameName(place.record, cell.record);
    }

    const QVector<ConcordDecision> &decisions;
    std::vector<bool> isTaken;
    KeyedMap<QString, QVector<int>> indexes;
};

/// Writes the rows of a map.
class MapWriter
{
public:
    MapWriter(const Concordance &source, const QVector<ConcordDecision> &decisions, QIODevice &device)
        : concordance(source)
        , csv(device, CsvStream::Reader::Spreadsheet)
        , rounds(roundNames(source.rounds))
        , index(decisions)
    {
    }

    bool write()
    {
        for (const char *head : { "decision", "concord", "changes", "round", "level", "record", "item", "label",
                                  "other_round", "other_level", "other_record", "other_item", "other_label" })
            add(QLatin1String(head));
        csv.endLine();
        for (const ConcordVariable &variable : concordance.variables)
            writeVariable(variable);
        const QVector<ConcordDecision> rest = index.rest();
        for (const ConcordDecision &decision : rest)
            writeDecision(decision);
        return csv.end();
    }

private:
    void add(const QString &text) { csv.add(csv.cell(text)); }

    void writeVariable(const ConcordVariable &variable)
    {
        int earlier = -1;
        for (int round = 0; round < variable.cells.size(); ++round) {
            const std::optional<ConcordCell> &cell = variable.cells.at(round);
            if (cell && round > 0)
                writePair(round, *cell, earlier, earlier < 0 ? ConcordCell() : *variable.cells.at(earlier));
            earlier = cell ? round : earlier;
        }
    }
    void writePair(int round, const ConcordCell &cell, int otherRound, const ConcordCell &other)
    {
        const bool isNew = otherRound < 0;
        add(isNew ? QString() : index.take(round, cell, otherRound, other));
        add(isNew ? QStringLiteral("new") : QStringLiteral("same"));
        add(wordsOf(cell.changes).join(QLatin1Char(' ')));
        addItem(rounds.at(round), cell);
        addItem(isNew ? QString() : rounds.at(otherRound), other);
        csv.endLine();
    }
    void addItem(const QString &round, const ConcordCell &cell)
    {
        for (const QString &text : { round, cell.level, cell.record, cell.item, cell.label })
            add(text);
    }
    void writeDecision(const ConcordDecision &decision)
    {
        add(DecisionIndex::wordFor(decision));
        add(QStringLiteral("different"));
        add(QString());
        addPlace(decision.one);
        addPlace(decision.other);
        csv.endLine();
    }
    void addPlace(const Place &place)
    {
        addItem(rounds.value(place.round), { place.level, place.record, place.item, labelOf(place), {} });
    }
    QString labelOf(const Place &place)
    {
        if (labels.empty())
            collectLabels();
        const auto found = labels.find(DecisionIndex::keyOf(place.round, place.item));
        return found == labels.end() ? QString() : found->second;
    }
    void collectLabels()
    {
        for (const ConcordVariable &variable : concordance.variables) {
            for (int round = 0; round < variable.cells.size(); ++round) {
                if (const std::optional<ConcordCell> &cell = variable.cells.at(round))
                    labels.emplace(DecisionIndex::keyOf(round, cell->item), cell->label);
            }
        }
    }

    const Concordance &concordance;
    CsvStream csv;
    QStringList rounds;
    DecisionIndex index;
    KeyedMap<QString, QString> labels; // made when the first decision needs one
};

} // namespace

bool writeConcordMap(const Concordance &concordance, const QVector<ConcordDecision> &decisions, QIODevice &device)
{
    return MapWriter(concordance, decisions, device).write();
}

} // namespace vanlayout
