#include "lookup/LookupEntries_p.h"

#include <algorithm>
#include <memory>

namespace lookup
{

namespace
{

constexpr size_t firstSize = 1 << 10; // a power of two

} // namespace

quint32 hashOf(const QString &text)
{
    return quint32(KeyedHash()(text));
}

TextIndex::TextIndex()
    : places(firstSize)
{
}

void TextIndex::add(quint32 hash, int number)
{
    if (++used * 2 > places.size()) {
        std::vector<Place> former(places.size() * 2);
        former.swap(places);
        for (const Place &place : former) {
            if (place.number >= 0)
                put(place);
        }
    }
    put({ hash, number });
}

void TextIndex::put(Place added)
{
    size_t place = added.hash & mask();
    while (places[place].number >= 0)
        place = (place + 1) & mask();
    places[place] = added;
}

Entries::Entries(Hash hashOfKey)
    : hash(hashOfKey)
{
}

bool Entries::add(const QString &key, const QString &value)
{
    // While the keys ascend, a key is new if it is greater than the last one.
    if (isAscending && !entries.empty() && !(entries.back().key < key)) {
        if (entries.back().key == key)
            return false;
        isAscending = false;
        for (const Entry &entry : entries)
            index.add(hash(entry.key), int(&entry - entries.data()));
    }
    if (!isAscending) {
        const quint32 keyHash = hash(key);
        if (index.find(keyHash, [&](int number) { return entries[size_t(number)].key == key; }) >= 0)
            return false;
        index.add(keyHash, int(entries.size()));
    }
    entries.push_back({ key, value });
    return true;
}

// Entries are inserted in order, each at the end of the map, which needs no search.
void Entries::moveTo(std::map<QString, QString> &map)
{
    index = TextIndex();
    if (!isAscending)
        std::sort(entries.begin(), entries.end(), [](const Entry &a, const Entry &b) { return a.key < b.key; });
    for (Entry &entry : entries)
        map.emplace_hint(map.end(), std::move(entry.key), std::move(entry.value));
    entries.clear();
}

Frequencies::Frequencies(std::map<QString, int *> &callersMap)
    : map(callersMap)
{
    for (const auto &entry : map)
        earlier.insert(entry.first);
}

void Frequencies::count(const QString &key, const QString &value)
{
    // The key is equal to an earlier value. The int of that value does not change.
    if (map.find(key) != map.end())
        return;
    // An earlier entry is replaced, so the count stays 1. An int of this check is 1 already.
    const auto [entry, isNew] = map.try_emplace(value, nullptr);
    if (isNew || earlier.erase(value) > 0)
        entry->second = std::make_unique<int>(1).release();
}

} // namespace lookup
