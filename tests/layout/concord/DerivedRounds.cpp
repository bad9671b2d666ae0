#include "layout/concord/DerivedRounds.h"

#include <QMap>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <random>

using namespace vanlayout;

namespace derived
{

namespace
{

struct Synonym {
    const char *word;
    const char *other;
};

// clang-format off
constexpr Synonym synonyms[] = {
    { "number", "no." }, { "household", "HH" }, { "household", "family" }, { "main", "principal" }, { "highest", "maximum" },
    { "school", "educational institution" }, { "attended", "went to" }, { "job", "work" }, { "occupation", "job" },
    { "children", "kids" }, { "sex", "gender" }, { "religion", "religious affiliation" }, { "mother", "biological mother" },
    { "age", "age in years" }, { "date", "day" }, { "total", "overall" }, { "amount", "value" }, { "type", "kind" },
    { "material", "construction material" }, { "source", "origin" }, { "water", "drinking water" }, { "currently", "at present" },
    { "month", "mth" }, { "year", "yr" }, { "result", "outcome" }, { "interview", "visit" }, { "person", "individual" },
    { "nombre", "nb" }, { "ménage", "foyer" }, { "principal", "premier" }, { "numéro", "no" }, { "enfants", "enfants nés" },
    { "âge", "âge en années" }, { "lieu", "endroit" }, { "type", "genre" }, { "quantité", "qté" }, { "activité", "travail" },
    { "superficie", "surface" }, { "province", "région" }, { "école", "établissement" }, { "raison", "motif" },
};
constexpr const char *beginnings[] = { "What is the ", "Please state: ", "Q. ", "Indicate the ", "Quel est ", "Current " };
constexpr const char *endings[] = { " of household member", " (specify)", " of (NAME)", " in the last 12 months", " (all)", " du ménage", "?" };
// clang-format on

/// Changes one round into the next one. Each item has its identity as note.
class Deriver
{
public:
    Deriver(const Changes &ofChanges, const Layout &ofDonor, unsigned seed)
        : changes(ofChanges)
        , random(seed)
    {
        for (const Level &level : ofDonor.levels) {
            for (const Record &record : level.records)
                donors += record.items;
        }
    }

    void identify(Layout &layout)
    {
        each(layout, [&](QVector<Item> &items) {
            for (Item &item : items)
                item.note = nextIdentity();
        });
    }

    void change(Layout &layout)
    {
        QVector<Item> leaving;
        for (Level &level : layout.levels) {
            for (Record &record : level.records)
                changeQuestions(record.items, leaving);
            for (const Item &item : qAsConst(leaving)) {
                QVector<Item> &items = level.records[below(level.records.size())].items;
                items.insert(below(items.size() + 1), item);
            }
            leaving.clear();
            for (Record &record : level.records)
                changeNames(record.items);
        }
        makeNamesUnique(layout);
        each(layout, [&](QVector<Item> &items) {
            for (Item &item : items)
                changeTexts(item);
        });
    }

private:
    template <typename Visit> static void each(Layout &layout, Visit visit)
    {
        for (Level &level : layout.levels) {
            visit(level.ids);
            for (Record &record : level.records)
                visit(record.items);
        }
    }

    QString nextIdentity() { return QString::number(++identities); }
    bool happens(double probability) { return double(random()) / double(std::mt19937::max()) < probability; }
    int below(int bound) { return int(random() % unsigned(qMax(bound, 1))); }

    void changeQuestions(QVector<Item> &items, QVector<Item> &leaving)
    {
        QVector<Item> result;
        QVector<Item> moving;
        for (const Item &item : qAsConst(items)) {
            if (!item.isSubitem && happens(changes.added) && !donors.isEmpty()) {
                Item added = donors.takeAt(below(donors.size()));
                added.note = nextIdentity();
                added.isSubitem = false;
                added.subitemOf.clear();
                isNew.insert(added.note);
                result.append(added);
            }
            if (happens(changes.removed))
                continue;
            if (!item.isSubitem && happens(changes.moved))
                moving.append(item);
            else if (!item.isSubitem && happens(changes.otherRecord))
                leaving.append(item);
            else
                result.append(item);
        }
        for (const Item &item : qAsConst(moving))
            result.insert(below(result.size() + 1), item);
        items = result;
    }

    // Names of letters and a number are numbered in their order, and added questions get names of that pattern.
    void changeNames(QVector<Item> &items)
    {
        static const QRegularExpression pattern(QStringLiteral("^([A-Za-z_]+)([0-9]+)([A-Za-z]?)$"));
        const QString other = happens(changes.prefixes) ? QStringLiteral("N") : QString();
        QMap<QString, int> numbers;
        QString lastPrefix;
        int width = 3;
        for (Item &item : items) {
            const bool wasAdded = isNew.contains(item.note);
            const QRegularExpressionMatch match = pattern.match(item.name);
            if (wasAdded && !lastPrefix.isEmpty() && changes.isRenumbered) {
                item.name = lastPrefix + QStringLiteral("%1").arg(++numbers[lastPrefix], width, 10, QLatin1Char('0'));
                continue;
            }
            if (!match.hasMatch()) {
                if (happens(changes.renamed))
                    item.name
                        = item.name.left(qMax(3, item.name.size() - 3)) + QStringLiteral("_") + QChar('A' + below(26));
                continue;
            }
            const QString prefix = match.captured(1);
            const int number = match.captured(2).toInt();
            width = match.captured(2).size();
            if (changes.isRenumbered) {
                int &last = numbers[prefix];
                last = last == 0 ? number : qMax(last + 1, number / 100 > last / 100 ? number : last + 1);
                item.name
                    = other + prefix + QStringLiteral("%1").arg(last, width, 10, QLatin1Char('0')) + match.captured(3);
            } else if (!other.isEmpty()) {
                item.name = other + item.name;
            } else if (happens(changes.renamed)) {
                item.name = prefix + QString::number(900 + below(99));
            }
            lastPrefix = other + prefix;
        }
    }

    static void makeNamesUnique(Layout &layout)
    {
        QSet<QString> names;
        each(layout, [&](QVector<Item> &items) {
            for (Item &item : items) {
                const QString name = item.name;
                for (int i = 1; names.contains(item.name); ++i)
                    item.name = name + QStringLiteral("_%1").arg(i);
                names.insert(item.name);
            }
        });
    }

    void changeTexts(Item &item)
    {
        if (happens(changes.widened))
            item.length += 1;
        for (Label &label : item.labels.parts) {
            if (happens(changes.reworded))
                label.text = reworded(label.text);
        }
        for (ValueSet &set : item.valueSets) {
            if (happens(changes.recoded))
                recode(set);
            for (Value &value : set.values) {
                for (Label &label : value.labels.parts) {
                    if (happens(changes.relabelled))
                        label.text = misspelt(label.text);
                }
            }
        }
    }

    void recode(ValueSet &set)
    {
        if (set.values.isEmpty())
            return;
        const int kind = below(4);
        if (kind == 0 && set.values.size() > 2)
            set.values.remove(below(set.values.size()));
        if (kind == 1) {
            Value value = set.values.constLast();
            value.labels.parts = { { QString(), QStringLiteral("Other thing %1").arg(below(9)) } };
            if (!value.ranges.isEmpty())
                value.ranges[0].from += QLatin1Char('7');
            set.values.append(value);
        }
        for (Value &value : set.values) {
            if (kind == 2 && !value.ranges.isEmpty() && value.ranges.at(0).from.size() == 1
                && value.ranges.at(0).to.isEmpty() && value.ranges.at(0).from >= QStringLiteral("8"))
                value.ranges[0].from.prepend(QLatin1Char('9'));
            if (kind == 3 && !value.ranges.isEmpty() && value.ranges.at(0).to.isEmpty())
                value.ranges[0].from = QString::number(value.ranges.at(0).from.toInt() + 1);
        }
    }

    QString misspelt(const QString &text)
    {
        QString changed = text;
        const int kind = below(4);
        if (kind == 0)
            changed = changed.toUpper();
        if (kind == 1 && changed.size() > 5) {
            const int place = 1 + below(changed.size() - 3);
            changed = changed.left(place) + changed.at(place + 1) + changed.at(place) + changed.mid(place + 2);
        }
        if (kind == 2)
            changed.replace(QLatin1Char('/'), QStringLiteral(" or "));
        if (kind == 3)
            changed += QLatin1Char('s');
        return changed;
    }

    QString reworded(const QString &text)
    {
        QString changed = text;
        const int kind = below(8);
        if (kind <= 2) {
            for (const Synonym &synonym : synonyms) {
                const QRegularExpression word(QStringLiteral("\\b%1\\b").arg(QString::fromUtf8(synonym.word)),
                                              QRegularExpression::CaseInsensitiveOption
                                                  | QRegularExpression::UseUnicodePropertiesOption);
                if (happens(0.5))
                    changed.replace(word, QString::fromUtf8(synonym.other));
            }
        }
        QStringList words = changed.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (kind == 3 && words.size() > 2)
            words.append(words.takeFirst());
        if (kind == 4 && words.size() > 3)
            words.removeAt(below(words.size()));
        for (QString &word : words) {
            if (kind == 5 && word.size() > 6)
                word = word.left(4) + QLatin1Char('.');
        }
        changed = words.join(QLatin1Char(' '));
        if (kind == 6)
            changed = QString::fromUtf8(beginnings[below(int(std::size(beginnings)))]) + changed.toLower();
        if (kind == 7)
            changed += QString::fromUtf8(endings[below(int(std::size(endings)))]);
        return happens(0.2) ? misspelt(changed) : changed;
    }

    const Changes &changes;
    std::mt19937 random;
    QVector<Item> donors;
    QSet<QString> isNew;
    int identities = 0;
};

} // namespace

Changes mild()
{
    Changes changes;
    changes.removed = 0.02;
    changes.added = 0.02;
    changes.isRenumbered = false;
    changes.reworded = 0.05;
    return changes;
}

Changes usual()
{
    return {};
}

Changes harsh()
{
    Changes changes;
    changes.removed = 0.12;
    changes.added = 0.12;
    changes.renamed = 0.1;
    changes.prefixes = 0.3;
    changes.reworded = 0.4;
    changes.relabelled = 0.2;
    changes.recoded = 0.2;
    changes.widened = 0.1;
    changes.moved = 0.06;
    changes.otherRecord = 0.03;
    return changes;
}

Changes extreme()
{
    Changes changes = harsh();
    changes.prefixes = 0.5;
    changes.reworded = 0.8;
    changes.relabelled = 0.4;
    changes.recoded = 0.4;
    changes.moved = 0.1;
    return changes;
}

Rounds derive(const Layout &first, const Layout &donor, int count, const Changes &changes, unsigned seed)
{
    Rounds rounds;
    Deriver deriver(changes, donor, seed);
    Layout layout = first;
    deriver.identify(layout);
    QMap<QString, QStringList> variables;
    for (int round = 0; round < count; ++round) {
        if (round > 0)
            deriver.change(layout);
        Layout result = layout;
        result.file = QStringLiteral("round%1").arg(round + 1);
        const auto take = [&](const QString &record, QVector<Item> &items) {
            for (Item &item : items) {
                QStringList &row = variables[item.note.rightJustified(9, QLatin1Char('0'))];
                while (row.size() < count)
                    row.append(QString());
                row[round] = truth::placeOf(record, item.name);
                item.note.clear();
            }
        };
        for (Level &level : result.levels) {
            take(QStringLiteral("(ids)"), level.ids);
            for (Record &record : level.records)
                take(record.name, record.items);
        }
        rounds.layouts.append(result);
    }
    for (const QStringList &row : qAsConst(variables))
        rounds.truth.variables.append(row);
    return rounds;
}

Rounds asStatistical(const Rounds &rounds)
{
    Rounds result;
    const QString record = QStringLiteral("data");
    bool isCut = false;
    for (const Layout &layout : rounds.layouts) {
        Record all;
        all.name = record;
        for (const Level &level : layout.levels) {
            all.items += level.ids;
            for (const Record &of : level.records)
                all.items += of.items;
        }
        for (Item &item : all.items) {
            item.name = item.name.toLower();
            item.isSubitem = false;
            for (Label &label : item.labels.parts)
                label.text = isCut ? label.text.left(40) : label.text;
        }
        isCut = !isCut;
        Layout flat;
        flat.file = layout.file;
        flat.format = Format::Stata;
        flat.levels.append(Level());
        flat.levels[0].records = { all };
        result.layouts.append(flat);
    }
    for (QStringList row : rounds.truth.variables) {
        for (QString &place : row)
            place = place.isEmpty() ? place : truth::placeOf(record, place.section(QLatin1Char('.'), 1).toLower());
        result.truth.variables.append(row);
    }
    return result;
}

namespace
{

template <typename Change> Rounds changed(Rounds rounds, Change change)
{
    for (Layout &layout : rounds.layouts) {
        for (Level &level : layout.levels) {
            for (Record &record : level.records)
                std::for_each(record.items.begin(), record.items.end(), change);
        }
    }
    return rounds;
}

} // namespace

Rounds withoutValues(const Rounds &rounds)
{
    return changed(rounds, [](Item &item) { item.valueSets.clear(); });
}

Rounds withoutLabels(const Rounds &rounds)
{
    return changed(rounds, [](Item &item) { item.labels.parts.clear(); });
}

} // namespace derived
