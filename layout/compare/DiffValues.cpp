#include "compare/DiffValues_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

// A code as written in the file; blanks before a text are part of the code, those around a number are not.
QString spelledCode(const QString &key, const QString &code)
{
    return canonicalCode(code, CodeType::Text) == key ? key : code.trimmed();
}

// The code or range of an entry for people, as written in the file.
QString codeOf(const CodeEntry &entry)
{
    if (!entry.range || entry.value->special == Special::NotApplicable)
        return describeCode(entry.key);
    return describeCode({ spelledCode(entry.key.from, entry.range->from),
                          entry.key.to.isEmpty() ? QString() : spelledCode(entry.key.to, entry.range->to), true });
}

// The codes of the entries from \a begin to \a end - 1, separated by commas.
QString codesOf(const QVector<CodeEntry> &entries, int begin, int end)
{
    QString codes = codeOf(entries.at(begin));
    for (int i = begin + 1; i < end; ++i)
        codes += QLatin1String(", ") + codeOf(entries.at(i));
    return codes;
}

// The index after the entries that belong to the same two values as the one at \a begin. They are one difference.
int endOfValues(const QVector<CodeEntry> &before, const QVector<CodeEntry> &after, const Pairing &pairing, int begin)
{
    const Value *const other = after.at(pairing.partnerOfBefore(begin)).value;
    int end = begin + 1;
    while (end < before.size() && before.at(end).value == before.at(begin).value
           && pairing.partnerOfBefore(end) != Pairing::none && after.at(pairing.partnerOfBefore(end)).value == other)
        ++end;
    return end;
}

// The path of an image in the spelling of CSPro 8.
QString imagePath(const QString &image)
{
    QString path = image;
    path.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return path.startsWith(QLatin1String("./")) ? path.mid(2) : path;
}

// The name that a value set of the earlier layout has after its item was renamed: sets are named after their item.
QString nameAfter(const QString &set, const Item &before, const Item &after)
{
    return before.name != after.name && set.startsWith(before.name) ? after.name + set.mid(before.name.size()) : set;
}

} // namespace

bool ValueSetComparison::hasEntry(const ValueSet &set, CodeType type) const
{
    return std::any_of(set.values.begin(), set.values.end(), [&](const Value &value) {
        return std::any_of(value.ranges.begin(), value.ranges.end(),
                           [&](const Range &range) { return scope.holdsCode(type, range); });
    });
}

ValueSetComparison::Sets ValueSetComparison::setsOf(const Item &item, CodeType type) const
{
    Sets sets;
    for (const ValueSet &set : item.valueSets) {
        if (scope.isOneFamily() || (sets.isEmpty() && hasEntry(set, type)))
            sets.append(&set);
    }
    return sets;
}

void ValueSetComparison::compare(const Item &before, const Item &after, const Change &place, ChangeCollector &changes)
{
    if (!scope.comparesValueSets() || (before.valueSets.isEmpty() && after.valueSets.isEmpty()))
        return;
    const CodeType type = before.isNumeric() && after.isNumeric() ? CodeType::Number : CodeType::Text;
    const Sets ofBefore = setsOf(before, type);
    const Sets ofAfter = setsOf(after, type);
    const Pairing pairing = pairSets(before, ofBefore, after, ofAfter, type);
    Change ofSet = place;
    for (int i = 0; i < ofBefore.size(); ++i) {
        const int partner = pairing.partnerOfBefore(i);
        ofSet.valueSet = ofBefore.at(i)->name;
        if (partner == Pairing::none)
            changes.add(ofSet, DiffKind::ValueSetRemoved, labels.text(ofBefore.at(i)->labels, LabelComparison::Before),
                        QString());
        else
            compareSets(*ofBefore.at(i), *ofAfter.at(partner), before, after, type, ofSet, changes);
    }
    for (int i = 0; i < ofAfter.size(); ++i) {
        ofSet.valueSet = ofAfter.at(i)->name;
        if (pairing.partnerOfAfter(i) == Pairing::none)
            changes.add(ofSet, DiffKind::ValueSetAdded, QString(),
                        labels.text(ofAfter.at(i)->labels, LabelComparison::After));
    }
}

Pairing ValueSetComparison::pairSets(const Item &before, const Sets &ofBefore, const Item &after, const Sets &ofAfter,
                                     CodeType type)
{
    Pairing pairing(ofBefore.size(), ofAfter.size());
    if (!scope.namesValueSets()) {
        for (int i = 0; i < std::min(ofBefore.size(), ofAfter.size()); ++i)
            pairing.pair(i, i);
        return pairing;
    }
    const bool haveOne = ofBefore.size() == 1 && ofAfter.size() == 1;
    if (haveOne && ofBefore.constFirst()->name == ofAfter.constFirst()->name) {
        pairing.pair(0, 0);
        return pairing;
    }
    pairSetsByName(before, ofBefore, after, ofAfter, pairing);
    pairSetsByContent(ofBefore, ofAfter, type, pairing);
    return pairing;
}

void ValueSetComparison::pairSetsByName(const Item &before, const Sets &ofBefore, const Item &after,
                                        const Sets &ofAfter, Pairing &pairing) const
{
    using Name = std::optional<QString>;
    pairing.inOrder([&](int i) { return Name(ofBefore.at(i)->name); },
                    [&](int i) { return Name(ofAfter.at(i)->name); });
    pairing.inOrder([&](int i) { return Name(nameAfter(ofBefore.at(i)->name, before, after).toCaseFolded()); },
                    [&](int i) { return Name(ofAfter.at(i)->name.toCaseFolded()); });
}

void ValueSetComparison::pairSetsByContent(const Sets &ofBefore, const Sets &ofAfter, CodeType type, Pairing &pairing)
{
    using Key = std::optional<quint64>;
    const auto key = [&](const ValueSet &set, Side side, quint64 Content::*part) {
        return set.values.isEmpty() ? Key() : Key(contentOf(set.values, type, side).*part);
    };
    for (const auto part : { &Content::labelled, &Content::codes })
        pairing.inOrder([&](int i) { return key(*ofBefore.at(i), LabelComparison::Before, part); },
                        [&](int i) { return key(*ofAfter.at(i), LabelComparison::After, part); });
    if (ofBefore.size() != 1 || ofAfter.size() != 1 || pairing.partnerOfBefore(0) != Pairing::none)
        return;
    // If each item has only one set, these are the same if they have a code in common, even if names and values differ.
    // A long list is not searched to its end, because many items can share it.
    constexpr int maxValues = 1000;
    const QVector<Value> valuesBefore = ofBefore.constFirst()->values.mid(0, maxValues);
    const QVector<Value> valuesAfter = ofAfter.constFirst()->values.mid(0, maxValues);
    const QVector<CodeEntry> before = entriesOf(valuesBefore, type);
    const Pairing entries = pairEntries(before, entriesOf(valuesAfter, type));
    for (int i = 0; i < before.size(); ++i) {
        if (entries.partnerOfBefore(i) != Pairing::none)
            pairing.pair(0, 0);
    }
}

void ValueSetComparison::compareSets(const ValueSet &before, const ValueSet &after, const Item &itemBefore,
                                     const Item &itemAfter, CodeType type, Change place, ChangeCollector &changes)
{
    if (scope.namesValueSets()) {
        const QString expected = nameAfter(before.name, itemBefore, itemAfter);
        const bool isSame = before.name == after.name || expected == after.name
            || (scope.foldsNames() && expected.compare(after.name, Qt::CaseInsensitive) == 0);
        if (!isSame)
            changes.add(place, DiffKind::ValueSetRenamed, before.name, after.name);
    }
    if (scope.areDictionaries()) {
        labels.compare(before.labels, after.labels, 0,
                       [&](const QString &language, const QString &textBefore, const QString &textAfter) {
                           Change inLanguage = place;
                           inLanguage.language = language;
                           changes.add(inLanguage, DiffKind::ValueSetLabel, textBefore, textAfter);
                       });
        if (comparableNote(before.note) != comparableNote(after.note))
            changes.add(place, DiffKind::ValueSetNote, before.note, after.note);
        changes.addAliases(place, DiffKind::ValueSetAliases, before.aliases, after.aliases);
    }
    if (!changes.takesValues())
        return;
    const Differences &differences = differencesOf(before.values, after.values, type);
    for (const Difference &difference : differences) {
        place.code = difference.code;
        place.language = difference.language;
        changes.add(place, difference.kind, difference.before, difference.after);
    }
}

QVector<CodeEntry> ValueSetComparison::entriesOf(const QVector<Value> &values, CodeType type) const
{
    QVector<CodeEntry> entries;
    entries.reserve(values.size());
    for (const Value &value : values) {
        if (value.ranges.isEmpty() && scope.isOneFamily())
            entries.append({ keyWithoutCode(value), &value, nullptr });
        for (const Range &range : value.ranges) {
            if (scope.holdsCode(type, range))
                entries.append({ keyOf(value, range, type), &value, &range });
        }
    }
    return entries;
}

const ValueSetComparison::Content &ValueSetComparison::contentOf(const QVector<Value> &values, CodeType type, Side side)
{
    const auto [found, isNew] = contents.emplace(std::make_tuple(values.constData(), type, side), Content());
    if (!isNew)
        return found->second;
    const KeyedHash hash;
    const QVector<CodeEntry> entries = entriesOf(values, type);
    for (const CodeEntry &entry : entries) {
        const quint64 code = CodeKeyHash()(entry.key);
        found->second.codes += hash(code);
        found->second.labelled += hash({ code, hash(labels.keyText(entry.value->labels, side)) });
    }
    return found->second;
}

quint64 ValueSetComparison::contentOf(const Item &item, Side side, ContentPart part)
{
    const auto member = part == ContentPart::CodesAndLabels ? &Content::labelled : &Content::codes;
    quint64 content = 0;
    const Sets sets = setsOf(item, codeTypeOf(item));
    for (const ValueSet *set : sets)
        content += contentOf(set->values, codeTypeOf(item), side).*member;
    return content;
}

const ValueSetComparison::Differences &ValueSetComparison::differencesOf(const QVector<Value> &before,
                                                                         const QVector<Value> &after, CodeType type)
{
    if (knownCount > ChangeCollector::maxChanges) {
        known.clear();
        knownCount = 0;
    }
    const auto [found, isNew]
        = known.emplace(std::make_tuple(before.constData(), after.constData(), type), Differences());
    if (isNew) {
        found->second = compareEntries(entriesOf(before, type), entriesOf(after, type));
        knownCount += found->second.size();
    }
    return found->second;
}

Pairing ValueSetComparison::pairEntries(const QVector<CodeEntry> &before, const QVector<CodeEntry> &after)
{
    Pairing pairing(before.size(), after.size());
    int common = 0; // number of entries at the beginning that are the same in both lists
    while (common < std::min(before.size(), after.size()) && before.at(common).key == after.at(common).key) {
        pairing.pair(common, common);
        ++common;
    }
    if (common == before.size() || common == after.size())
        return pairing;
    using Key = std::optional<CodeKey>;
    pairing.inOrder<CodeKeyHash>([&](int i) { return Key(before.at(i).key); },
                                 [&](int i) { return Key(after.at(i).key); });
    return pairing;
}

ValueSetComparison::Differences ValueSetComparison::compareEntries(const QVector<CodeEntry> &before,
                                                                   const QVector<CodeEntry> &after) const
{
    Differences differences;
    const Pairing pairing = pairEntries(before, after);
    for (int i = 0; i < before.size();) {
        const CodeEntry &entry = before.at(i);
        const int partner = pairing.partnerOfBefore(i);
        if (partner == Pairing::none) {
            differences.append({ DiffKind::ValueRemoved, codeOf(entry), QString(),
                                 labels.text(entry.value->labels, LabelComparison::Before), QString() });
            ++i;
            continue;
        }
        const int end = endOfValues(before, after, pairing, i);
        const int count = differences.size();
        compareValues(*entry.value, *after.at(partner).value, differences);
        if (differences.size() > count) {
            const QString code = codesOf(before, i, end);
            std::for_each(differences.begin() + count, differences.end(),
                          [&](Difference &difference) { difference.code = code; });
        }
        i = end;
    }
    for (int i = 0; i < after.size(); ++i) {
        if (pairing.partnerOfAfter(i) == Pairing::none)
            differences.append({ DiffKind::ValueAdded, codeOf(after.at(i)), QString(), QString(),
                                 labels.text(after.at(i).value->labels, LabelComparison::After) });
    }
    return differences;
}

void ValueSetComparison::compareValues(const Value &one, const Value &other, Differences &differences) const
{
    labels.compare(one.labels, other.labels, 0,
                   [&](const QString &language, const QString &textBefore, const QString &textAfter) {
                       differences.append({ DiffKind::ValueLabel, QString(), language, textBefore, textAfter });
                   });
    if (!scope.areDictionaries())
        return;
    const auto add = [&](DiffKind kind, const QString &textBefore, const QString &textAfter) {
        differences.append({ kind, QString(), QString(), textBefore, textAfter });
    };
    if (one.note != other.note && comparableNote(one.note) != comparableNote(other.note))
        add(DiffKind::ValueNote, one.note, other.note);
    if (one.special != other.special)
        add(DiffKind::ValueSpecial, wordOf(one.special), wordOf(other.special));
    if (one.image != other.image && imagePath(one.image) != imagePath(other.image))
        add(DiffKind::ValueImage, one.image, other.image);
    if (!scope.areOfTwoDictionaryFormats() && one.textColor.compare(other.textColor, Qt::CaseInsensitive) != 0)
        add(DiffKind::ValueColor, one.textColor, other.textColor);
}

} // namespace vanlayout
