#include "read/DdiValueSets_p.h"

#include "read/DdiElements_p.h"
#include "read/DdiValueLines_p.h"

#include <algorithm>

namespace vanlayout::ddi
{

namespace
{

const QLatin1String ofSet("value set");
const QLatin1String ofSetNote("note of the value set");
const QLatin1String ofSetAliases("aliases of the value set");

QString keyOf(const Range &range)
{
    return range.from + QChar(0) + range.to;
}

/// The notes about one value set.
struct SetNotes {
    QString name;
    QVector<Note> texts; ///< labels and values, one for each language
    QString note;
    QStringList aliases;
    bool isClosed = false; ///< whether another note of type `value set` belongs to the next one
};

/// Makes the value sets of one variable.
class ValueSetsMaker
{
public:
    explicit ValueSetsMaker(Variable &described)
        : variable(described)
    {
    }

    QVector<ValueSet> make()
    {
        gatherNotes();
        const QVector<Category> &categories = variable.categories;
        if (all.isEmpty() && !std::all_of(categories.begin(), categories.end(), isOnlyMissing))
            all.append(SetNotes());
        hasBlank = std::any_of(variable.invalid.begin(), variable.invalid.end(),
                               [](const Range &range) { return range.from.isEmpty() && range.to.isEmpty(); });
        for (int i = 0; i < all.size(); ++i)
            addSet(all.at(i), i == 0);
        markUsed();
        return sets;
    }

private:
    // The notes of a set follow each other, those of its values and labels first.
    void gatherNotes()
    {
        for (const Note &note : qAsConst(variable.notes)) {
            if (!isOfValueSet(note))
                continue;
            const bool isNew = all.isEmpty()
                || (note.type == ofSet && (all.constLast().isClosed || all.constLast().name != note.subject));
            if (isNew)
                all.append({ note.subject, {}, QString(), {}, false });
            SetNotes &set = all.last();
            set.isClosed = note.type != ofSet;
            if (note.type == ofSet)
                set.texts.append(note);
            else if (note.type == ofSetNote)
                set.note = note.text;
            else
                set.aliases = aliasesOf(note.text);
        }
    }

    void addSet(const SetNotes &notes, bool isFirst)
    {
        ValueSet set;
        set.name = notes.name;
        set.note = notes.note;
        set.aliases = notes.aliases;
        ValueLines lines(validOf(notes.name), hasBlank);
        KeyedMap<QString, int> places;
        ValueSet listed = set;
        for (const Note &note : notes.texts)
            addText(listed, note, lines, places);
        if (!isFirst || lines.isComplete())
            set = listed;
        else
            addLabels(set, notes.texts);
        if (isFirst && set.values.isEmpty())
            set.values = valuesOfCategories();
        sets.append(set);
    }

    // A document with one value set does not name its ranges. Each of several sets with one name has its own.
    QVector<Range> validOf(const QString &name)
    {
        const QVector<ValidRanges> &valid = variable.valid;
        if (all.size() == 1 && valid.size() == 1)
            return valid.constFirst().ranges;
        if (validByName.empty()) {
            for (int i = valid.size() - 1; i >= 0; --i)
                validByName[valid.at(i).set].append(i);
        }
        const auto named = validByName.find(name);
        return named != validByName.end() && !named->second.isEmpty() ? valid.at(named->second.takeLast()).ranges
                                                                      : QVector<Range>();
    }

    // The first set has values in its notes only if all of them are there.
    static void addLabels(ValueSet &set, const QVector<Note> &notes)
    {
        for (const Note &note : notes) {
            if (!note.text.isEmpty())
                set.labels.parts.append({ note.language, note.text });
        }
    }

    // Lines before the first value are the label of the set, and lines that are no values continue the label before.
    static void addText(ValueSet &set, const Note &note, ValueLines &lines, KeyedMap<QString, int> &places)
    {
        lines.restart();
        QVector<ValueLine> values;
        QString label;
        bool hasLabel = false;
        const QStringList texts = note.text.isEmpty() ? QStringList() : note.text.split(QLatin1Char('\n'));
        for (const QString &line : texts) {
            if (const std::optional<ValueLine> value = lines.next(line)) {
                values.append(*value);
                continue;
            }
            QString &open = values.isEmpty() ? label : values.last().label;
            open += (values.isEmpty() && !hasLabel ? QString() : QString(QLatin1Char('\n'))) + line;
            hasLabel = true;
        }
        if (!label.isEmpty())
            set.labels.parts.append({ note.language, label });
        addValues(set.values, values, note.language, places);
    }

    // The values of a further language are those of the first with other labels. The places are those of the values
    // that have another language.
    static void addValues(QVector<Value> &values, const QVector<ValueLine> &lines, const QString &language,
                          KeyedMap<QString, int> &places)
    {
        QVector<int> added;
        for (const ValueLine &line : lines) {
            const auto place = places.find(keyOf(line.ranges, line.special));
            const int index = place != places.end() ? place->second : values.size();
            if (index == values.size()) {
                Value value;
                value.ranges = line.ranges;
                value.special = line.special;
                values.append(value);
                added.append(index);
            }
            if (!line.label.isEmpty())
                values[index].labels.parts.append({ language, line.label });
        }
        for (const int index : qAsConst(added))
            places.try_emplace(keyOf(values.at(index).ranges, values.at(index).special), index);
    }

    static QString keyOf(const QVector<Range> &ranges, Special special)
    {
        return textOf(ranges) + QChar(0) + wordOf(special);
    }

    QVector<Value> valuesOfCategories()
    {
        gatherRanges();
        QVector<Value> values;
        values.reserve(variable.categories.size());
        for (int i = 0; i < variable.categories.size(); ++i) {
            Category &category = variable.categories[i];
            if (isOnlyMissing(category))
                continue;
            setSpecial(category, i + 1);
            setTexts(category);
            values.append(category.value);
        }
        return values;
    }

    // A user-missing code without a label is no value.
    static bool isOnlyMissing(const Category &category)
    {
        return category.missingKind == QLatin1String("user-missing") && category.hasCode
            && category.value.labels.isEmpty() && category.texts.isEmpty();
    }

    void setSpecial(Category &category, int number)
    {
        const QString &kind = category.missingKind;
        category.value.special = specialOf(kind);
        const bool isKnown = category.value.special != Special::None || kind == QLatin1String("user-missing")
            || kind == QLatin1String("system missing") || kind == QLatin1String("extended missing");
        if (category.isMissing && !isKnown)
            category.value.special = Special::Missing;
        if (!kind.isEmpty() && !isKnown)
            variable.statements.append({ QStringLiteral("catgry@missType"), kind, variable.line, number });
    }

    // The first text of a category without a code describes its ranges, and the last text of any can name an image.
    void setTexts(Category &category)
    {
        const QLatin1String ofImage("Image: ");
        QStringList texts = category.texts;
        if (!category.hasCode && !texts.isEmpty()) {
            category.value.ranges = knownRangesIn(texts.constFirst());
            if (!category.value.ranges.isEmpty())
                texts.removeFirst();
        }
        if (!texts.isEmpty() && texts.constLast().startsWith(ofImage))
            category.value.image = texts.takeLast().mid(ofImage.size());
        category.value.note = texts.join(QLatin1Char('\n'));
    }

    void gatherRanges()
    {
        const auto gather = [this](const QVector<Range> &ranges) {
            for (const Range &range : ranges) {
                if (!range.to.isEmpty())
                    known.try_emplace(textOf(range), range);
            }
        };
        for (const ValidRanges &valid : qAsConst(variable.valid))
            gather(valid.ranges);
        gather(variable.invalid);
    }

    // The ranges that a text consists of; none if it has anything else. An end of a range can contain a comma.
    QVector<Range> knownRangesIn(const QString &text) const
    {
        constexpr int maxPieces = 8;
        const QStringList pieces = text.split(QLatin1String(", "));
        QVector<Range> ranges;
        for (int first = 0; first < pieces.size();) {
            int count = 1;
            auto found = known.end();
            for (; count <= maxPieces && first + count <= pieces.size(); ++count) {
                found = known.find(pieces.mid(first, count).join(QLatin1String(", ")));
                if (found != known.end())
                    break;
            }
            if (found == known.end())
                return {};
            ranges.append(found->second);
            first += count;
        }
        return ranges;
    }

    void markUsed()
    {
        KeyedSet<QString> values;
        for (const ValueSet &set : qAsConst(sets)) {
            for (const Value &value : set.values) {
                for (const Range &range : value.ranges)
                    values.insert(ddi::keyOf(range));
            }
        }
        for (ValidRanges &valid : variable.valid) {
            valid.isUsed = std::all_of(valid.ranges.begin(), valid.ranges.end(), [&](const Range &range) {
                return values.find(ddi::keyOf(range)) != values.end();
            });
        }
    }

    Variable &variable;
    QVector<SetNotes> all;
    QVector<ValueSet> sets;
    bool hasBlank = false;                       ///< whether an empty code is not valid
    KeyedMap<QString, Range> known;              ///< ranges by their text
    KeyedMap<QString, QVector<int>> validByName; ///< valid ranges that no set has yet, the first at the end
};

} // namespace

QVector<ValueSet> valueSetsOf(Variable &variable)
{
    return ValueSetsMaker(variable).make();
}

QVector<Range> missingOf(const Variable &variable)
{
    KeyedSet<QString> known;
    for (const ValueSet &set : variable.item.valueSets) {
        for (const Value &value : set.values) {
            for (const Range &range : value.ranges) {
                if (value.special != Special::None)
                    known.insert(keyOf(range));
            }
        }
    }
    for (const Category &category : variable.categories) {
        if (category.hasCode
            && (category.missingKind == QLatin1String("system missing")
                || category.missingKind == QLatin1String("extended missing")))
            known.insert(keyOf(category.value.ranges.constFirst()));
    }
    QVector<Range> missing;
    for (const Range &range : variable.invalid) {
        if (known.insert(keyOf(range)).second)
            missing.append(range);
    }
    return missing;
}

bool isOfValueSet(const Note &note)
{
    return note.type == ofSet || note.type == ofSetNote || note.type == ofSetAliases;
}

QString textOf(const QVector<Range> &ranges)
{
    QStringList texts;
    for (const Range &range : ranges)
        texts.append(textOf(range));
    return texts.join(QLatin1String(", "));
}

} // namespace vanlayout::ddi
