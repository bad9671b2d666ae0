#include "lookup/LookupEntries_p.h"

#include "util/KeyedHash_p.h"

#include <algorithm>
#include <memory>

namespace lookup
{

namespace
{

constexpr size_t firstSize = 1 << 10; // a power of two

// The number of an entry, and the first characters of its key as one number that sorts in the same order: eight
// characters if all keys are Latin-1, else four. Few comparisons have to read the texts.
struct SortKey {
    quint64 prefix;
    int number;
};

bool isLatin1(const QString &text)
{
    constexpr ushort maxLatin1 = 0xFF;
    return std::all_of(text.cbegin(), text.cend(), [](QChar unit) { return unit.unicode() <= maxLatin1; });
}

template <int UnitBits> quint64 prefixOf(const QString &text)
{
    constexpr int units = 64 / UnitBits;
    quint64 prefix = 0;
    for (int i = 0; i < units; ++i)
        prefix = prefix << UnitBits | (i < text.size() ? text.at(i).unicode() : 0U);
    return prefix;
}

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

bool Entries::add(const QString &key, quint32 keyHash, const QString &value)
{
    // While the keys ascend, a key is new if it is greater than the last one.
    if (isAscending && !entries.empty() && !(entries.back().key < key)) {
        if (entries.back().key == key)
            return false;
        isAscending = false;
        for (const Entry &entry : entries)
            index.add(hashOf(entry.key), int(&entry - entries.data()));
    }
    if (!isAscending) {
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
    const auto append
        = [&](Entry &entry) { map.emplace_hint(map.end(), std::move(entry.key), std::move(entry.value)); };
    if (isAscending) {
        std::for_each(entries.begin(), entries.end(), append);
    } else {
        const bool areLatin1
            = std::all_of(entries.cbegin(), entries.cend(), [](const Entry &entry) { return isLatin1(entry.key); });
        std::vector<SortKey> order;
        order.reserve(entries.size());
        for (const Entry &entry : entries)
            order.push_back({ areLatin1 ? prefixOf<8>(entry.key) : prefixOf<16>(entry.key), int(order.size()) });
        std::sort(order.begin(), order.end(), [this](const SortKey &a, const SortKey &b) {
            return a.prefix != b.prefix ? a.prefix < b.prefix
                                        : entries[size_t(a.number)].key < entries[size_t(b.number)].key;
        });
        for (const SortKey &key : order)
            append(entries[size_t(key.number)]);
    }
    entries.clear();
}

Frequencies::Frequencies(std::map<QString, int *> &callersMap)
    : map(callersMap)
{
    for (auto entry = map.begin(); entry != map.end(); ++entry)
        remember(entry, hashOf(entry->first), Maker::caller);
}

void Frequencies::count(const QString &key, quint32 keyHash, const QString &value)
{
    // The key is equal to an earlier value. The int of that value does not change.
    if (find(key, keyHash) >= 0)
        return;
    const quint32 valueHash = hashOf(value);
    const int number = find(value, valueHash);
    if (number < 0) {
        const auto entry = map.emplace(value, nullptr).first;
        entry->second = std::make_unique<int>(1).release();
        remember(entry, valueHash, Maker::thisCheck);
        return;
    }
    // The entry is replaced, so the count stays 1. An int of this check is 1 already.
    Frequency &frequency = frequencies[size_t(number)];
    if (frequency.maker == Maker::caller)
        frequency.entry->second = std::make_unique<int>(1).release();
    frequency.maker = Maker::thisCheck;
}

int Frequencies::find(const QString &text, quint32 hash) const
{
    return index.find(hash, [&](int number) { return frequencies[size_t(number)].entry->first == text; });
}

void Frequencies::remember(std::map<QString, int *>::iterator entry, quint32 hash, Maker maker)
{
    index.add(hash, int(frequencies.size()));
    frequencies.push_back({ entry, maker });
}

} // namespace lookup
