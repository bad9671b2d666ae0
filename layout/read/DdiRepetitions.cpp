#include "read/DdiRepetitions_p.h"

#include <algorithm>

namespace vanlayout::ddi
{

namespace
{

/// Joins the occurrences in one list.
class Joiner
{
public:
    Joiner(const QVector<PlacedItem> &placedItems, const QVector<Group> &allGroups,
           const KeyedMap<QString, int> &groupsOfVariables, QVector<bool> &usedGroups)
        : placed(placedItems)
        , groups(allGroups)
        , groupOf(groupsOfVariables)
        , isUsed(usedGroups)
    {
        for (int i = 0; i < placed.size(); ++i)
            places.try_emplace(placed.at(i).id, i);
    }

    QVector<Item> join()
    {
        QVector<bool> isJoined(placed.size(), false);
        QVector<Item> items;
        items.reserve(placed.size());
        for (int i = 0; i < placed.size(); ++i) {
            if (isJoined.at(i))
                continue;
            Item item = placed.at(i).item;
            const QVector<int> members = membersOf(i);
            if (!members.isEmpty() && canJoin(members, item)) {
                joinInto(item, members);
                for (const int member : members)
                    isJoined[member] = true;
                isUsed[groupOf.find(placed.at(i).id)->second] = true;
            }
            if (!item.isSubitem)
                parent = item;
            items.append(item);
        }
        return items;
    }

private:
    // The places of the variables of the group that begins with a variable; none if one of them is not in the list.
    QVector<int> membersOf(int first) const
    {
        const auto group = groupOf.find(placed.at(first).id);
        const bool isFirst = group != groupOf.end() && places.find(placed.at(first).id)->second == first
            && groups.at(group->second).variables.constFirst() == placed.at(first).id;
        if (!isFirst)
            return {};
        QVector<int> members;
        for (const QString &id : groups.at(group->second).variables) {
            const auto place = places.find(id);
            if (place == places.end() || (!members.isEmpty() && place->second <= members.constLast()))
                return {};
            members.append(place->second);
        }
        return members;
    }

    int rounds(const Item &item) const { return item.isSubitem ? std::max(parent.occurrences, 1) : 1; }

    // Within an occurrence of the parent, the occurrences of a subitem follow each other.
    bool canJoin(const QVector<int> &members, const Item &first) const
    {
        if (members.size() < 2 || members.size() % rounds(first) != 0)
            return false;
        const int own = members.size() / rounds(first);
        for (int i = 0; i < members.size(); ++i) {
            const Item &item = placed.at(members.at(i)).item;
            const qint64 start = qint64(first.start) + qint64(i / own) * parent.length + qint64(i % own) * first.length;
            const bool isThere = first.start == 0 ? item.start == 0 : item.start == start;
            if (!isThere || item.length != first.length || item.type != first.type || item.subitemOf != first.subitemOf)
                return false;
        }
        return true;
    }

    void joinInto(Item &item, const QVector<int> &members)
    {
        const Group &group = groups.at(groupOf.find(placed.at(members.constFirst()).id)->second);
        const int own = members.size() / rounds(item);
        item.name = group.name;
        item.labels = group.labels;
        item.occurrences = own;
        const bool isWithinOther = rounds(item) > 1;
        for (int i = 0; i < own && own > 1; ++i)
            addLabel(item, placed.at(members.at(i)).item.labels, i + 1, isWithinOther);
    }

    // The label of an occurrence follows the label of the item in parentheses, after that of the item around it.
    void addLabel(Item &item, const Labels &ofOccurrence, int number, bool isWithinOther) const
    {
        Labels labels;
        bool isNamed = false;
        for (int i = 0; i < ofOccurrence.parts.size() && i < item.labels.parts.size(); ++i) {
            const Label &part = item.labels.parts.at(i);
            QString begin = part.text + QLatin1String(" (");
            if (isWithinOther)
                begin += firstOccurrenceOfParent(part.language) + QLatin1String(", ");
            const QString text = ofOccurrence.parts.at(i).text;
            if (!text.startsWith(begin) || !text.endsWith(QLatin1Char(')')))
                return;
            const QString label = text.mid(begin.size(), text.size() - begin.size() - 1);
            isNamed = isNamed || label != QString::number(number);
            labels.parts.append({ part.language, label });
        }
        if (!isNamed)
            return;
        const auto isFirst = [&](const Label &label) { return label.text == labels.parts.constFirst().text; };
        if (std::all_of(labels.parts.begin(), labels.parts.end(), isFirst))
            labels.parts.resize(1);
        item.occurrenceLabels.append({ number, labels });
    }

    QString firstOccurrenceOfParent(const QString &language) const
    {
        const bool isLabelled
            = !parent.occurrenceLabels.isEmpty() && parent.occurrenceLabels.constFirst().occurrence == 1;
        return isLabelled ? parent.occurrenceLabels.constFirst().labels.in(language) : QStringLiteral("1");
    }

    const QVector<PlacedItem> &placed;
    const QVector<Group> &groups;
    const KeyedMap<QString, int> &groupOf;
    QVector<bool> &isUsed;
    KeyedMap<QString, int> places;
    Item parent; ///< last item that is no subitem
};

} // namespace

Repetitions::Repetitions(const QVector<Group> &allGroups)
    : groups(allGroups)
    , isUsed(allGroups.size(), false)
{
    for (int i = 0; i < groups.size(); ++i) {
        if (groups.at(i).type != QLatin1String("repetition"))
            continue;
        for (const QString &id : groups.at(i).variables)
            groupOf.try_emplace(id, i);
    }
}

QVector<Item> Repetitions::join(const QVector<PlacedItem> &placed)
{
    return Joiner(placed, groups, groupOf, isUsed).join();
}

QVector<const Group *> Repetitions::unused() const
{
    QVector<const Group *> list;
    for (int i = 0; i < groups.size(); ++i) {
        if (groups.at(i).type == QLatin1String("repetition") && !isUsed.at(i))
            list.append(&groups.at(i));
    }
    return list;
}

} // namespace vanlayout::ddi
