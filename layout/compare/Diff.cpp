#include "compare/Diff.h"

#include "compare/DiffChanges_p.h"
#include "compare/DiffItems_p.h"
#include "compare/DiffLabels_p.h"
#include "compare/DiffMatching_p.h"
#include "compare/DiffScope_p.h"
#include "compare/DiffValues_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

QString describeColumns(const std::optional<RecordTypeColumns> &columns)
{
    if (!columns)
        return QString();
    return columns->length == 1
        ? QString::number(columns->start)
        : QStringLiteral("%1 to %2").arg(columns->start).arg(qint64(columns->start) + columns->length - 1);
}

QString describeRelation(const Relation &relation)
{
    const auto linked = [](const QString &element, const QString &link) {
        return link.isEmpty() ? element : element + QLatin1Char('.') + link;
    };
    QStringList links;
    for (const RelationLink &link : relation.links)
        links.append(linked(relation.primary, link.primaryLink) + QLatin1String(" = ")
                     + linked(link.secondary, link.secondaryLink));
    const QString text = links.isEmpty() ? relation.primary : links.join(QLatin1String(", "));
    return relation.aliases.isEmpty() ? text : text + QLatin1String("; aliases ") + comparableAliases(relation.aliases);
}

// The name of the item that contains a subitem, or "(no item)" if none does; empty for an item.
QString describeParent(const Item &item)
{
    return item.isSubitem && item.subitemOf.isEmpty() ? QStringLiteral("(no item)") : item.subitemOf;
}

int itemCountOf(const Layout &layout)
{
    int count = 0;
    for (const Level &level : layout.levels) {
        count += level.ids.size();
        for (const Record &record : level.records)
            count += record.items.size();
    }
    return count;
}

/// The languages with a code that a layout declares, by code ignoring case.
class LanguageNames
{
public:
    explicit LanguageNames(const Layout &layout)
    {
        for (const Language &language : layout.languages) {
            if (!language.name.isEmpty() && names.emplace(language.name.toCaseFolded(), language.label).second)
                list.append(language.name);
        }
    }

    /// Codes in the order of the layout, each once.
    const QStringList &codes() const { return list; }
    bool declares(const QString &code) const { return names.count(code.toCaseFolded()) > 0; }
    QString nameOf(const QString &code) const
    {
        const auto found = names.find(code.toCaseFolded());
        return found != names.end() ? found->second : QString();
    }
    /// Adds the codes that \a other does not declare to \a missing, unless it has them already. They can be absent from
    /// it because labels of the other layout use an undeclared language.
    void addUndeclared(const LanguageNames &other, QStringList &missing) const
    {
        KeyedSet<QString> known;
        for (const QString &code : qAsConst(missing))
            known.insert(code.toCaseFolded());
        for (const QString &code : list) {
            if (!other.declares(code) && known.insert(code.toCaseFolded()).second)
                missing.append(code);
        }
    }

private:
    KeyedMap<QString, QString> names;
    QStringList list;
};

// The codes of languages except those in \a left, separated by commas.
QString listWithout(QStringList codes, const QStringList &left)
{
    KeyedSet<QString> out;
    for (const QString &code : left)
        out.insert(code.toCaseFolded());
    const auto isOut = [&](const QString &code) { return out.count(code.toCaseFolded()) > 0; };
    codes.erase(std::remove_if(codes.begin(), codes.end(), isOut), codes.end());
    return codes.join(QLatin1String(", "));
}

/// One comparison of two layouts.
class LayoutComparison
{
public:
    LayoutComparison(const Layout &beforeLayout, const Layout &afterLayout, const DiffOptions &options)
        : before(beforeLayout)
        , after(afterLayout)
        , scope(before, after)
        , labels(before, after, options.language,
                 scope.isOneFormat() ? LabelComparison::Strictness::Exact : LabelComparison::Strictness::Lenient)
        , values(scope, labels)
        , itemsBefore(before, scope)
        , itemsAfter(after, scope)
        , matching(itemsBefore, itemsAfter, scope, labels, values)
        , changes(options)
    {
    }

    LayoutDiff compare()
    {
        compareDictionaries();
        compareLanguages();
        if (scope.areDictionaries()) {
            compareRelations();
            compareLevels();
        }
        gatherAddedItems();
        for (int i = 0; i < itemsBefore.containers().size(); ++i)
            compareContainer(i);
        for (int i = 0; i < itemsAfter.containers().size(); ++i)
            addContainer(i);
        LayoutDiff diff = { factsOf(before, LabelComparison::Before), factsOf(after, LabelComparison::After),
                            changes.all(), scope.notCompared() };
        addToNotCompared(diff.notCompared);
        return diff;
    }

private:
    ComparedLayout factsOf(const Layout &layout, LabelComparison::Side side) const
    {
        return { layout.file,          layout.format, layout.container,
                 layout.formatVersion, layout.name,   labels.text(layout.labels, side),
                 itemCountOf(layout) };
    }

    void addToNotCompared(QVector<NotCompared> &list) const
    {
        if (changes.isIncomplete())
            list.append({ QStringLiteral("further differences"),
                          QStringLiteral("there are more than %1").arg(ChangeCollector::maxChanges) });
    }

    void compareDictionaries()
    {
        const Change place;
        if (scope.isOneFamily() && before.name != after.name && !isSameName(before.name, after.name))
            changes.add(place, DiffKind::DictionaryName, before.name, after.name);
        compareLabels(before.labels, after.labels, place, DiffKind::DictionaryLabel, scope.maxItemLabel(), labels,
                      changes);
        if (!scope.isOneFamily())
            return;
        compareNotes(before.note, after.note, place, DiffKind::DictionaryNote);
        changes.addAliases(place, DiffKind::DictionaryAliases, before.aliases, after.aliases);
        changes.addIfDifferent(place, DiffKind::RecordTypeColumns, describeColumns(before.recordType),
                               describeColumns(after.recordType));
        changes.addIfDifferent(place, DiffKind::WeightVariable, before.weight, after.weight);
    }
    bool isSameName(const QString &one, const QString &other) const
    {
        return one == other || (scope.foldsNames() && one.compare(other, Qt::CaseInsensitive) == 0);
    }
    void compareNotes(const QString &one, const QString &other, const Change &place, DiffKind kind)
    {
        if (one != other && comparableNote(one) != comparableNote(other))
            changes.add(place, kind, one, other);
    }

    void compareLanguages()
    {
        if (!scope.areDictionaries())
            return;
        const LanguageNames namesBefore(before);
        const LanguageNames namesAfter(after);
        QStringList removed = labels.removed();
        QStringList added = labels.added();
        if (!namesBefore.codes().isEmpty() && !namesAfter.codes().isEmpty()) {
            namesBefore.addUndeclared(namesAfter, removed);
            namesAfter.addUndeclared(namesBefore, added);
        }
        for (const QString &code : qAsConst(removed))
            changes.add(placeOf(code), DiffKind::LanguageRemoved, namesBefore.nameOf(code), QString());
        for (const QString &code : qAsConst(added))
            changes.add(placeOf(code), DiffKind::LanguageAdded, QString(), namesAfter.nameOf(code));
        for (const QString &code : namesBefore.codes()) {
            if (namesAfter.declares(code) && !scope.areOfTwoDictionaryFormats())
                changes.addIfDifferent(placeOf(code), DiffKind::LanguageName, namesBefore.nameOf(code),
                                       namesAfter.nameOf(code));
        }
        const QStringList ofOne = removed + added;
        changes.addIfDifferent(Change(), DiffKind::LanguageOrder, listWithout(labels.sharedBefore(), ofOne),
                               listWithout(labels.sharedAfter(), ofOne));
    }
    static Change placeOf(const QString &language)
    {
        Change place;
        place.language = language;
        return place;
    }

    void compareRelations()
    {
        using Name = std::optional<QString>;
        Pairing pairing(before.relations.size(), after.relations.size());
        pairing.inOrder([&](int i) { return Name(before.relations.at(i).name.toCaseFolded()); },
                        [&](int i) { return Name(after.relations.at(i).name.toCaseFolded()); });
        Change place;
        for (int i = 0; i < before.relations.size(); ++i) {
            const int partner = pairing.partnerOfBefore(i);
            const QString text = describeRelation(before.relations.at(i));
            place.code = before.relations.at(i).name;
            if (partner == Pairing::none) {
                changes.add(place, DiffKind::RelationRemoved, text, QString());
                continue;
            }
            const QString other = describeRelation(after.relations.at(partner));
            if (text.compare(other, Qt::CaseInsensitive) != 0)
                changes.add(place, DiffKind::RelationChanged, text, other);
        }
        for (int i = 0; i < after.relations.size(); ++i) {
            place.code = after.relations.at(i).name;
            if (pairing.partnerOfAfter(i) == Pairing::none)
                changes.add(place, DiffKind::RelationAdded, QString(), describeRelation(after.relations.at(i)));
        }
    }

    void compareLevels()
    {
        const int common = std::min(before.levels.size(), after.levels.size());
        Change place;
        for (int i = 0; i < common; ++i)
            compareLevels(before.levels.at(i), after.levels.at(i));
        for (int i = common; i < before.levels.size(); ++i) {
            place.level = before.levels.at(i).name;
            changes.add(place, DiffKind::LevelRemoved, labels.text(before.levels.at(i).labels, LabelComparison::Before),
                        QString());
        }
        for (int i = common; i < after.levels.size(); ++i) {
            place.level = after.levels.at(i).name;
            changes.add(place, DiffKind::LevelAdded, QString(),
                        labels.text(after.levels.at(i).labels, LabelComparison::After));
        }
    }
    void compareLevels(const Level &one, const Level &other)
    {
        Change place;
        place.level = one.name;
        if (!isSameName(one.name, other.name))
            changes.add(place, DiffKind::LevelName, one.name, other.name);
        compareLabels(one.labels, other.labels, place, DiffKind::LevelLabel, 0, labels, changes);
        compareNotes(one.note, other.note, place, DiffKind::LevelNote);
        changes.addAliases(place, DiffKind::LevelAliases, one.aliases, other.aliases);
    }

    static Change placeOf(const ItemContainer &container)
    {
        Change place;
        place.level = container.level ? container.level->name : QString();
        place.record = container.name();
        return place;
    }

    // The new items of the later layout, by the record of the earlier layout in which they are reported.
    void gatherAddedItems()
    {
        addedTo.resize(size_t(itemsBefore.containers().size()));
        for (int i = 0; i < itemsAfter.items().size(); ++i) {
            const int record = matching.records().partnerOfAfter(itemsAfter.items().at(i).container);
            const bool isNew = matching.items().partnerOfAfter(i) == Pairing::none
                && !matching.isFurtherOccurrence(LabelComparison::After, i);
            if (record != Pairing::none && isNew)
                addedTo[size_t(record)].append(i);
        }
    }

    void compareContainer(int index)
    {
        const ItemContainer &container = itemsBefore.containers().at(index);
        const int partner = matching.records().partnerOfBefore(index);
        const Change place = placeOf(container);
        if (partner != Pairing::none && container.record)
            compareRecords(container, itemsAfter.containers().at(partner), place);
        else if (container.record)
            changes.add(place, DiffKind::RecordRemoved, labels.text(container.record->labels, LabelComparison::Before),
                        QString());
        for (int i = container.firstItem; i < container.firstItem + container.itemCount; ++i)
            compareItem(i, place);
        for (const int item : qAsConst(addedTo[size_t(index)]))
            addItem(item, place);
    }
    void addContainer(int index)
    {
        if (matching.records().partnerOfAfter(index) != Pairing::none)
            return;
        const ItemContainer &container = itemsAfter.containers().at(index);
        const Change place = placeOf(container);
        if (container.record)
            changes.add(place, DiffKind::RecordAdded, QString(),
                        labels.text(container.record->labels, LabelComparison::After));
        for (int i = container.firstItem; i < container.firstItem + container.itemCount; ++i) {
            if (matching.items().partnerOfAfter(i) == Pairing::none)
                addItem(i, place);
        }
    }
    void addItem(int index, Change place)
    {
        const Item &item = *itemsAfter.items().at(index).item;
        place.item = item.name;
        changes.add(place, DiffKind::ItemAdded, QString(), labels.text(item.labels, LabelComparison::After));
    }

    void compareRecords(const ItemContainer &one, const ItemContainer &other, Change place)
    {
        const Record &earlier = *one.record;
        const Record &later = *other.record;
        if (!isSameName(earlier.name, later.name)) {
            place.otherName = later.name;
            changes.add(place, DiffKind::RecordRenamed, earlier.name, later.name);
        }
        if (one.depth != other.depth)
            changes.add(place, DiffKind::RecordMoved, one.level->name, other.level->name);
        compareLabels(earlier.labels, later.labels, place, DiffKind::RecordLabel, 0, labels, changes);
        if (before.recordType || after.recordType)
            changes.addIfDifferent(place, DiffKind::RecordType, earlier.recordType, later.recordType);
        compareOccurrences(earlier, later, place);
        if (scope.isOneFormat() && earlier.length && later.length)
            changes.addIfDifferent(place, DiffKind::RecordLength, QString::number(*earlier.length),
                                   QString::number(*later.length));
        compareOccurrenceLabels(earlier.occurrenceLabels, later.occurrenceLabels, place,
                                DiffKind::RecordOccurrenceLabel, labels, changes);
        compareNotes(earlier.note, later.note, place, DiffKind::RecordNote);
        changes.addAliases(place, DiffKind::RecordAliases, earlier.aliases, later.aliases);
    }

    // Those that one of the layouts does not state are not compared.
    void compareOccurrences(const Record &earlier, const Record &later, const Change &place)
    {
        if (!statesOccurrences(before, earlier) || !statesOccurrences(after, later))
            return;
        changes.addIfDifferent(place, DiffKind::RecordRequired, yesOrNo(earlier.required), yesOrNo(later.required));
        changes.addIfDifferent(place, DiffKind::RecordMaximum, QString::number(earlier.maximum),
                               QString::number(later.maximum));
    }

    void compareItem(int index, Change place)
    {
        const ItemPlace &earlier = itemsBefore.items().at(index);
        const int partner = matching.items().partnerOfBefore(index);
        place.item = earlier.item->name;
        if (matching.isFurtherOccurrence(LabelComparison::Before, index))
            return;
        if (partner == Pairing::none) {
            changes.add(place, DiffKind::ItemRemoved, labels.text(earlier.item->labels, LabelComparison::Before),
                        QString());
            return;
        }
        const ItemPlace &later = itemsAfter.items().at(partner);
        if (!areNamedAlike(*earlier.item, *later.item)) {
            place.otherName = later.item->name;
            changes.add(place, DiffKind::ItemRenamed, earlier.item->name, later.item->name);
        }
        if (matching.records().partnerOfBefore(earlier.container) != later.container)
            addMove(itemsBefore.containerOf(index), itemsAfter.containerOf(partner), place);
        if (scope.areDictionaries())
            compareParents(earlier, later, place);
        compareItems(*earlier.item, *later.item, place, scope, labels, changes);
        values.compare(*earlier.item, *later.item, place, changes);
    }
    // Records of the same name, such as the id items of all levels, are distinguished by their levels.
    void addMove(const ItemContainer &from, const ItemContainer &to, const Change &place)
    {
        const bool isName = from.name() != to.name();
        changes.add(place, DiffKind::ItemMoved,
                    isName ? from.name() : from.level->name + QLatin1Char('/') + from.name(),
                    isName ? to.name() : to.level->name + QLatin1Char('/') + to.name());
    }
    bool areNamedAlike(const Item &earlier, const Item &later) const
    {
        if (isSameName(earlier.name, later.name))
            return true;
        return !scope.areDictionaries() && !scope.areStatistical()
            && (ItemMatching::areItemAndOccurrence(earlier.name, later.name)
                || ItemMatching::areItemAndOccurrence(later.name, earlier.name));
    }
    // An item that contains subitems may have a different name in each layout, so the pairing is compared, not the
    // name.
    void compareParents(const ItemPlace &earlier, const ItemPlace &later, const Change &place)
    {
        const bool hasParent = earlier.parent != Pairing::none;
        const int parent = hasParent ? matching.items().partnerOfBefore(earlier.parent) : Pairing::none;
        const bool isSame
            = hasParent ? parent != Pairing::none && parent == later.parent : later.parent == Pairing::none;
        if (!isSame || earlier.item->isSubitem != later.item->isSubitem)
            changes.add(place, DiffKind::ItemParent, describeParent(*earlier.item), describeParent(*later.item));
    }

    const Layout &before;
    const Layout &after;
    const DiffScope scope;
    const LabelComparison labels;
    ValueSetComparison values;
    const ItemList itemsBefore;
    const ItemList itemsAfter;
    const ItemMatching matching;
    ChangeCollector changes;
    std::vector<QVector<int>> addedTo;
};

} // namespace

QVector<KindCount> LayoutDiff::counts() const
{
    QVector<int> counts(diffKinds().size(), 0);
    for (const Change &change : changes)
        ++counts[int(change.kind)];
    QVector<KindCount> present;
    for (const DiffKindInfo &info : diffKinds()) {
        if (counts.at(int(info.kind)) > 0)
            present.append({ info.kind, counts.at(int(info.kind)) });
    }
    return present;
}

LayoutDiff compare(const Layout &before, const Layout &after, const DiffOptions &options)
{
    return LayoutComparison(before, after, options).compare();
}

} // namespace vanlayout
