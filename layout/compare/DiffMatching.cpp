#include "compare/DiffMatching_p.h"

#include "util/Numbers_p.h"

namespace vanlayout
{

namespace
{

/// The two passes of matching by name: names as they are, then names with case folded.
enum class NameCase { Exact, Folded };
constexpr NameCase nameCases[] = { NameCase::Exact, NameCase::Folded };

QString inCase(const QString &name, NameCase nameCase)
{
    return nameCase == NameCase::Folded ? name.toCaseFolded() : name;
}

/// A name within a record.
struct NameKey {
    quint64 record = 0;
    QString name;

    bool operator==(const NameKey &other) const { return record == other.record && name == other.name; }
};

struct NameKeyHash {
    size_t operator()(const NameKey &key) const
    {
        const KeyedHash hash;
        return hash({ key.record, hash(key.name) });
    }
};

/// The traits that must be equal if an item was renamed. A trait that a rule does not use is 0 or empty.
struct Traits {
    quint64 record = 0;
    int start = 0;
    int length = 0;
    bool isSubitem = false;
    QString type;
    QString label;
    quint64 values = 0;

    bool operator==(const Traits &other) const
    {
        return record == other.record && start == other.start && length == other.length && isSubitem == other.isSubitem
            && values == other.values && type == other.type && label == other.label;
    }
};

struct TraitsHash {
    size_t operator()(const Traits &traits) const
    {
        const KeyedHash hash;
        return hash({ traits.record, quint64(traits.start), quint64(traits.length), quint64(traits.isSubitem),
                      hash(traits.type), hash(traits.label), traits.values });
    }
};

/// The traits that a rule uses.
struct RenamingRule {
    enum Trait { Start = 1, Length = 2, Values = 4 };
    enum LabelRule { SameOrNoLabel, SameLabel, SimilarLabel };

    int traits; // of Trait, combined by |
    LabelRule label;

    bool uses(Trait trait) const { return (traits & trait) != 0; }
};

// The rules are applied in this order: same columns and texts; same start and label, but another length or other
// values; same texts at other columns; same columns and codes, but a similar label.
constexpr RenamingRule renamingRules[] = {
    { RenamingRule::Start | RenamingRule::Length | RenamingRule::Values, RenamingRule::SameOrNoLabel },
    { RenamingRule::Start, RenamingRule::SameLabel },
    { RenamingRule::Length | RenamingRule::Values, RenamingRule::SameLabel },
    { RenamingRule::Start | RenamingRule::Length | RenamingRule::Values, RenamingRule::SimilarLabel },
};

/// The parts of the name of an occurrence in a statistical file, such as "X_2".
struct OccurrenceName {
    QString item; // with case folded; empty for any other name
    int number = 0;
};

OccurrenceName occurrenceNameOf(const QString &name)
{
    const int mark = name.lastIndexOf(QLatin1Char('_'));
    bool isNumber = false;
    const int number = numbers::toInt(QStringView(name).mid(mark + 1), &isNumber);
    return mark > 0 && isNumber ? OccurrenceName{ name.left(mark).toCaseFolded(), number } : OccurrenceName();
}

// The number of occurrences. A subitem also repeats with its item.
int occurrencesOf(const ItemList &list, int index)
{
    const ItemPlace &place = list.items().at(index);
    const int ofItem = place.item->occurrences;
    return place.parent == Pairing::none ? ofItem : std::max(ofItem, list.items().at(place.parent).item->occurrences);
}

// Whether all words of one label are in the other one, or more than half of the words of both are the same.
bool areSimilar(const QString &one, const QString &other)
{
    const auto wordsOf = [](const QString &label) {
        const QStringList words = label.toCaseFolded().split(QLatin1Char(' '), Qt::SkipEmptyParts);
        return KeyedSet<QString>(words.begin(), words.end());
    };
    const KeyedSet<QString> ofOne = wordsOf(one);
    const KeyedSet<QString> ofOther = wordsOf(other);
    const auto common = size_t(
        std::count_if(ofOne.begin(), ofOne.end(), [&](const QString &word) { return ofOther.count(word) > 0; }));
    return common > 0
        && (common == std::min(ofOne.size(), ofOther.size()) || common * 2 > std::max(ofOne.size(), ofOther.size()));
}

// Whether two records are the same: at least half of the items of the larger one have a name in common.
bool areMost(int common, int itemsOfOne, int itemsOfOther)
{
    return common * 2 >= std::max(itemsOfOne, itemsOfOther) && common > 0;
}

} // namespace

QString ItemContainer::name() const
{
    if (record)
        return record->name;
    return level ? QStringLiteral("(ids)") : QString();
}

ItemList::ItemList(const Layout &layout, const DiffScope &scope)
{
    const bool hasRecords = scope.areDictionaries();
    if (!hasRecords)
        begin(nullptr, nullptr, 0);
    for (int depth = 0; depth < layout.levels.size(); ++depth) {
        const Level &level = layout.levels.at(depth);
        if (hasRecords)
            begin(&level, nullptr, depth);
        append(level.ids, scope);
        for (const Record &record : level.records) {
            if (hasRecords)
                begin(&level, &record, depth);
            append(record.items, scope);
        }
    }
}

void ItemList::begin(const Level *level, const Record *record, int depth)
{
    containerList.append({ level, record, depth, int(itemList.size()), 0 });
}

void ItemList::append(const QVector<Item> &items, const DiffScope &scope)
{
    int parent = Pairing::none;
    for (const Item &item : items) {
        if (!item.isSubitem)
            parent = itemList.size();
        if (!scope.holdsType(item))
            continue;
        itemList.append({ &item, item.isSubitem ? parent : Pairing::none, int(containerList.size()) - 1 });
        ++containerList.last().itemCount;
    }
}

ItemMatching::ItemMatching(const ItemList &beforeItems, const ItemList &afterItems, const DiffScope &scope,
                           const LabelComparison &labelComparison, ValueSetComparison &valueSets)
    : before(beforeItems)
    , after(afterItems)
    , labels(labelComparison)
    , values(valueSets)
    , recordPairing(before.containers().size(), after.containers().size())
    , itemPairing(before.items().size(), after.items().size())
{
    matchRecords(scope.areDictionaries());
    matchItems();
    matchItemsElsewhere();
    isFurther[LabelComparison::Before].fill(false, before.items().size());
    isFurther[LabelComparison::After].fill(false, after.items().size());
    if (!scope.areDictionaries() && !scope.areStatistical()) {
        matchOccurrences(LabelComparison::Before);
        matchOccurrences(LabelComparison::After);
    }
    matchRenamedItems(scope);
}

void ItemMatching::matchRecords(bool hasRecords)
{
    if (!hasRecords) {
        recordPairing.pair(0, 0);
        return;
    }
    const auto name = [](const ItemContainer &container, NameCase nameCase) {
        // The id items of a level are identified by its depth.
        if (!container.record)
            return std::optional(NameKey{ quint64(container.depth) + 1, QString() });
        return std::optional(NameKey{ 0, inCase(container.record->name, nameCase) });
    };
    for (const NameCase nameCase : nameCases)
        recordPairing.inOrder<NameKeyHash>([&](int i) { return name(before.containers().at(i), nameCase); },
                                           [&](int i) { return name(after.containers().at(i), nameCase); });
    matchRecordsByItems();
    const auto traits = [&](const ItemContainer &container, LabelComparison::Side side) {
        Traits ofRecord;
        if (!container.record)
            return std::optional<Traits>();
        ofRecord.type = container.record->recordType;
        ofRecord.label = labels.keyText(container.record->labels, side);
        return ofRecord.label.isEmpty() ? std::nullopt : std::optional(ofRecord);
    };
    recordPairing.ifUnique<TraitsHash>(
        [&](int i) { return traits(before.containers().at(i), LabelComparison::Before); },
        [&](int i) { return traits(after.containers().at(i), LabelComparison::After); });
}

// Pairs records without a partner that have many names of items in common.
void ItemMatching::matchRecordsByItems()
{
    KeyedMap<QString, int> recordOfName; // of the later layout
    for (const ItemPlace &place : after.items()) {
        if (recordPairing.partnerOfAfter(place.container) == Pairing::none
            && after.containers().at(place.container).record)
            recordOfName.emplace(place.item->name, place.container);
    }
    if (recordOfName.empty())
        return;
    for (int i = 0; i < before.containers().size(); ++i) {
        const ItemContainer &container = before.containers().at(i);
        if (recordPairing.partnerOfBefore(i) != Pairing::none || !container.record)
            continue;
        std::unordered_map<int, int> common;
        int best = Pairing::none;
        for (int item = container.firstItem; item < container.firstItem + container.itemCount; ++item) {
            const auto found = recordOfName.find(before.items().at(item).item->name);
            if (found == recordOfName.end())
                continue;
            const int count = ++common[found->second];
            if (best == Pairing::none || count > common[best])
                best = found->second;
        }
        if (best != Pairing::none && recordPairing.partnerOfAfter(best) == Pairing::none
            && areMost(common[best], container.itemCount, after.containers().at(best).itemCount))
            recordPairing.pair(i, best);
    }
}

std::optional<quint64> ItemMatching::pairOf(LabelComparison::Side side, int item) const
{
    if (side == LabelComparison::Before) {
        const int record = before.items().at(item).container;
        return recordPairing.partnerOfBefore(record) == Pairing::none ? std::nullopt : std::optional(quint64(record));
    }
    const int record = recordPairing.partnerOfAfter(after.items().at(item).container);
    return record == Pairing::none ? std::nullopt : std::optional(quint64(record));
}

void ItemMatching::matchItems()
{
    const auto name = [this](const ItemList &list, LabelComparison::Side side, int item, NameCase nameCase) {
        const std::optional<quint64> record = pairOf(side, item);
        const QString &ofItem = list.items().at(item).item->name;
        return record ? std::optional(NameKey{ *record, inCase(ofItem, nameCase) }) : std::nullopt;
    };
    for (const NameCase nameCase : nameCases)
        itemPairing.inOrder<NameKeyHash>([&](int i) { return name(before, LabelComparison::Before, i, nameCase); },
                                         [&](int i) { return name(after, LabelComparison::After, i, nameCase); });
}

void ItemMatching::matchItemsElsewhere()
{
    using Name = std::optional<QString>;
    itemPairing.ifUnique([&](int i) { return Name(before.items().at(i).item->name); },
                         [&](int i) { return Name(after.items().at(i).item->name); });
    itemPairing.ifUnique([&](int i) { return Name(before.items().at(i).item->name.toCaseFolded()); },
                         [&](int i) { return Name(after.items().at(i).item->name.toCaseFolded()); });
}

bool ItemMatching::areItemAndOccurrence(const QString &item, const QString &occurrence)
{
    const OccurrenceName name = occurrenceNameOf(occurrence);
    return name.number == 1 && name.item == item.toCaseFolded();
}

void ItemMatching::matchOccurrences(LabelComparison::Side repeatingSide)
{
    const bool isBefore = repeatingSide == LabelComparison::Before;
    const LabelComparison::Side singleSide = isBefore ? LabelComparison::After : LabelComparison::Before;
    const ItemList &repeating = isBefore ? before : after;
    const ItemList &single = isBefore ? after : before;
    const auto partnerOf = [&](LabelComparison::Side side, int index) {
        return side == LabelComparison::Before ? itemPairing.partnerOfBefore(index) : itemPairing.partnerOfAfter(index);
    };
    KeyedMap<QString, int> itemOfName;
    for (int i = 0; i < repeating.items().size(); ++i) {
        if (partnerOf(repeatingSide, i) == Pairing::none && occurrencesOf(repeating, i) > 1)
            itemOfName.emplace(repeating.items().at(i).item->name.toCaseFolded(), i);
    }
    if (itemOfName.empty())
        return;
    for (int i = 0; i < single.items().size(); ++i) {
        const OccurrenceName name = occurrenceNameOf(single.items().at(i).item->name);
        const auto found = partnerOf(singleSide, i) == Pairing::none ? itemOfName.find(name.item) : itemOfName.end();
        if (found == itemOfName.end() || name.number < 1 || name.number > occurrencesOf(repeating, found->second))
            continue;
        if (name.number > 1)
            isFurther[singleSide][i] = true;
        else if (partnerOf(repeatingSide, found->second) == Pairing::none)
            itemPairing.pair(isBefore ? found->second : i, isBefore ? i : found->second);
    }
}

void ItemMatching::matchRenamedItems(const DiffScope &scope)
{
    const bool hasColumns = scope.areDictionaries();
    const bool hasLength = scope.isOneFamily();
    const bool hasValues = (hasColumns || scope.areStatistical()) && scope.comparesValueSets();
    const auto traits = [&](const ItemList &list, LabelComparison::Side side, int index, const RenamingRule &rule) {
        const std::optional<quint64> record = pairOf(side, index);
        const Item &item = *list.items().at(index).item;
        const QString label = record ? labels.keyText(item.labels, side) : QString();
        const bool lacksLabel = label.isEmpty() && rule.label != RenamingRule::SameOrNoLabel;
        const bool isSimilar = rule.label == RenamingRule::SimilarLabel;
        Traits ofItem;
        if (!record || lacksLabel || (rule.uses(RenamingRule::Start) && item.start <= 0))
            return std::optional<Traits>();
        ofItem.record = *record;
        ofItem.start = rule.uses(RenamingRule::Start) ? item.start : 0;
        ofItem.length = rule.uses(RenamingRule::Length) && hasLength ? item.length : 0;
        ofItem.isSubitem = hasColumns && item.isSubitem;
        ofItem.type = item.type;
        ofItem.label = isSimilar ? QString() : label;
        ofItem.values = rule.uses(RenamingRule::Values) && hasValues
            ? values.contentOf(item, side, isSimilar ? ContentPart::Codes : ContentPart::CodesAndLabels)
            : 0;
        return std::optional(ofItem);
    };
    const auto haveSimilarLabels = [&](int one, int other) {
        return areSimilar(labels.keyText(before.items().at(one).item->labels, LabelComparison::Before),
                          labels.keyText(after.items().at(other).item->labels, LabelComparison::After));
    };
    for (const RenamingRule &rule : renamingRules) {
        if (rule.uses(RenamingRule::Start) && !hasColumns)
            continue;
        const auto areAlike = [&](int one, int other) {
            return rule.label != RenamingRule::SimilarLabel || haveSimilarLabels(one, other);
        };
        itemPairing.ifUniqueAnd<TraitsHash>(
            areAlike, [&](int i) { return traits(before, LabelComparison::Before, i, rule); },
            [&](int i) { return traits(after, LabelComparison::After, i, rule); });
    }
}

} // namespace vanlayout
