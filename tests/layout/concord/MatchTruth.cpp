#include "layout/concord/MatchTruth.h"

#include <QFile>
#include <QMap>
#include <QSet>

#include <functional>

using namespace vanlayout;

namespace truth
{

namespace
{

struct Place {
    QString text;
    QString name;  // with case folded
    QString label; // likewise, without blanks at its ends
};

QVector<Place> placesOf(const Layout &layout)
{
    QVector<Place> places;
    const auto add = [&](const QString &record, const QVector<Item> &items) {
        for (const Item &item : items)
            places.append({ placeOf(record, item.name), item.name.toCaseFolded(),
                            item.labels.primary().simplified().toCaseFolded() });
    };
    for (const Level &level : layout.levels) {
        add(QStringLiteral("(ids)"), level.ids);
        for (const Record &record : level.records)
            add(record.name, record.items);
    }
    return places;
}

QSet<QString> pairsOf(const Table &table)
{
    QSet<QString> pairs;
    for (const QStringList &row : table) {
        for (int one = 0; one < row.size(); ++one) {
            for (int other = one + 1; other < row.size(); ++other) {
                if (!row.at(one).isEmpty() && !row.at(other).isEmpty())
                    pairs.insert(
                        QStringLiteral("%1 %2 | %3 %4").arg(one).arg(row.at(one)).arg(other).arg(row.at(other)));
            }
        }
    }
    return pairs;
}

/// Chains rounds: each item gets the first free variable whose latest item has the same key.
class Chain
{
public:
    using Key = std::function<QString(const Place &place)>;
    using Permits = std::function<bool(const Place &one, const Place &other)>;

    explicit Chain(int roundCount)
        : count(roundCount)
    {
    }

    void match(int round, const QVector<Place> &places, const Key &key, const Permits &permits)
    {
        QMultiMap<QString, int> variables;
        for (int i = latest.size() - 1; i >= 0; --i)
            variables.insert(key(latest.at(i)), i);
        for (const Place &place : places) {
            const QString wanted = key(place);
            if (done.contains(place.text) || wanted.isEmpty())
                continue;
            const QList<int> found = variables.values(wanted);
            for (const int variable : found) {
                if (table.at(variable).at(round).isEmpty() && permits(latest.at(variable), place)) {
                    set(variable, round, place);
                    break;
                }
            }
        }
    }
    void end(int round, const QVector<Place> &places)
    {
        for (const Place &place : places) {
            if (done.contains(place.text))
                continue;
            QStringList row;
            for (int i = 0; i < count; ++i)
                row.append(QString());
            table.append(row);
            latest.append(place);
            set(table.size() - 1, round, place);
        }
        for (int i = 0; i < next.size(); ++i)
            latest[next.at(i).first] = next.at(i).second;
        next.clear();
        done.clear();
    }
    const Table &rows() const { return table; }

private:
    void set(int variable, int round, const Place &place)
    {
        table[variable][round] = place.text;
        next.append({ variable, place });
        done.insert(place.text);
    }

    int count;
    Table table;
    QVector<Place> latest;
    QVector<QPair<int, Place>> next;
    QSet<QString> done;
};

bool haveWordInCommon(const Place &one, const Place &other)
{
    const QStringList words = one.label.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const QStringList others = other.label.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    int common = 0;
    for (const QString &word : words)
        common += others.contains(word) ? 1 : 0;
    return words.isEmpty() || others.isEmpty() || common * 2 >= qMin(words.size(), others.size());
}

} // namespace

QString placeOf(const QString &record, const QString &item)
{
    return record + QLatin1Char('.') + item;
}

Truth Truth::read(const QString &path)
{
    Truth truth;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return truth;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (line.trimmed().isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        if (truth.files.isEmpty())
            truth.files = line.trimmed().split(QLatin1Char(','));
        else
            truth.variables.append(line.trimmed().split(QLatin1Char(',')));
    }
    return truth;
}

Table tableOf(const Concordance &concordance)
{
    Table table;
    for (const ConcordVariable &variable : concordance.variables) {
        QStringList row;
        for (const std::optional<ConcordCell> &cell : variable.cells)
            row.append(cell ? placeOf(cell->record, cell->item) : QString());
        table.append(row);
    }
    return table;
}

Quality compare(const Table &found, const Truth &truth, QStringList *wrong, QStringList *missing)
{
    const QSet<QString> ofFound = pairsOf(found);
    const QSet<QString> ofTruth = pairsOf(truth.variables);
    Quality quality;
    quality.found = ofFound.size();
    quality.known = ofTruth.size();
    quality.correct = QSet<QString>(ofFound).intersect(ofTruth).size();
    const auto list = [](const QSet<QString> &pairs, const QSet<QString> &without, QStringList *result) {
        if (!result)
            return;
        *result = QSet<QString>(pairs).subtract(without).values();
        result->sort();
    };
    list(ofFound, ofTruth, wrong);
    list(ofTruth, ofFound, missing);
    return quality;
}

Table byName(const QVector<Layout> &rounds)
{
    Chain chain(rounds.size());
    for (int round = 0; round < rounds.size(); ++round) {
        const QVector<Place> places = placesOf(rounds.at(round));
        chain.match(
            round, places, [](const Place &place) { return place.name; },
            [](const Place &, const Place &) { return true; });
        chain.end(round, places);
    }
    return chain.rows();
}

Table byNameThenLabel(const QVector<Layout> &rounds)
{
    Chain chain(rounds.size());
    for (int round = 0; round < rounds.size(); ++round) {
        const QVector<Place> places = placesOf(rounds.at(round));
        chain.match(
            round, places, [](const Place &place) { return place.name; }, haveWordInCommon);
        chain.match(
            round, places, [](const Place &place) { return place.label; },
            [](const Place &, const Place &) { return true; });
        chain.end(round, places);
    }
    return chain.rows();
}

} // namespace truth
