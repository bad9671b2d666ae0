#include "search/SharedSets.h"

#include <QCryptographicHash>

#include <algorithm>
#include <vector>

namespace vanlayout
{

namespace
{

// A text with its length before it, so that different lists of texts differ.
QByteArray measured(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    return QByteArray::number(bytes.size()) + ':' + bytes;
}

QByteArray meaningOf(const Value &value)
{
    QByteArray meaning = measured(wordOf(value.special));
    for (const Label &label : value.labels.parts)
        meaning += measured(label.text);
    return meaning;
}

/// The lists of one layout.
class SetsOfLayout
{
public:
    explicit SetsOfLayout(const QString &fileName)
        : file(fileName)
    {
    }

    void add(const QVector<Item> &items, const QString &level, const QString &record)
    {
        for (const Item &item : items) {
            for (const ValueSet &set : item.valueSets) {
                if (!set.values.isEmpty())
                    sets[placeOf(set.values)].uses.append({ file, level, record, item.name, set.name });
            }
        }
    }
    const QVector<SharedSet> &all() const { return sets; }

private:
    int placeOf(const QVector<Value> &values)
    {
        const auto known = placesOfLists.emplace(values.constData(), 0);
        if (known.second) {
            const QString id = identityOf(values);
            const auto place = placesOfIds.emplace(id, sets.size());
            if (place.second)
                sets.append({ id, values, {} });
            known.first->second = place.first->second;
        }
        return known.first->second;
    }

    QString file;
    QVector<SharedSet> sets;
    std::map<const Value *, int> placesOfLists; // shared lists are hashed once
    std::map<QString, int> placesOfIds;
};

} // namespace

QString identityOf(const QVector<Value> &values)
{
    constexpr int digits = 12;
    std::vector<QByteArray> entries;
    entries.reserve(size_t(values.size()));
    for (const Value &value : values) {
        const QByteArray meaning = meaningOf(value);
        for (const Range &range : value.ranges)
            entries.push_back(measured(range.from) + measured(range.to) + meaning);
        if (value.ranges.isEmpty())
            entries.push_back('-' + meaning);
    }
    if (entries.empty())
        return QString();
    std::sort(entries.begin(), entries.end());
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QByteArray &entry : entries)
        hash.addData(QByteArray::number(entry.size()) + ':' + entry);
    return QString::fromLatin1(hash.result().toHex().left(digits));
}

QVector<SharedSet> valueSetsOf(const Layout &layout)
{
    SetsOfLayout sets(layout.file);
    for (const Level &level : layout.levels) {
        sets.add(level.ids, level.name, QStringLiteral("(ids)"));
        for (const Record &record : level.records)
            sets.add(record.items, level.name, record.name);
    }
    return sets.all();
}

void SharedSets::add(const QVector<SharedSet> &ofLayout)
{
    for (const SharedSet &set : ofLayout) {
        const auto place = places.emplace(set.id, sets.size());
        if (place.second)
            sets.append(set);
        else
            sets[place.first->second].uses += set.uses;
    }
}

QVector<SharedSet> SharedSets::mostUsedFirst() const
{
    QVector<SharedSet> sorted = sets;
    std::stable_sort(sorted.begin(), sorted.end(), [](const SharedSet &left, const SharedSet &right) {
        return left.uses.size() > right.uses.size();
    });
    return sorted;
}

} // namespace vanlayout
