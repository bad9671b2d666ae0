#ifndef BENCH_PLAINLOOKUP_H
#define BENCH_PLAINLOOKUP_H

#include "lookup/LookupEntries_p.h"

#include <QHash>

#include <algorithm>
#include <map>
#include <unordered_set>
#include <vector>

/// Plain ways to collect the entries of a lookup file. They have the operations of `lookup::Entries`, with which they
/// are compared.
namespace plain
{

/// Enters each pair into the map at once.
class MapEntries
{
public:
    bool add(const QString &key, const QString &value) { return entries.try_emplace(key, value).second; }
    void moveTo(std::map<QString, QString> &map) { map.swap(entries); }

private:
    std::map<QString, QString> entries;
};

/// Keeps the pairs in a QHash and sorts them at the end. The hash of Qt does not protect from crafted keys.
class HashEntries
{
public:
    bool add(const QString &key, const QString &value)
    {
        const auto count = entries.size();
        QString &kept = entries[key];
        if (entries.size() == count)
            return false;
        kept = value;
        return true;
    }
    void moveTo(std::map<QString, QString> &map)
    {
        std::vector<QHash<QString, QString>::iterator> order;
        order.reserve(size_t(entries.size()));
        for (auto entry = entries.begin(); entry != entries.end(); ++entry)
            order.push_back(entry);
        std::sort(order.begin(), order.end(), [](const auto &a, const auto &b) { return a.key() < b.key(); });
        for (const auto &entry : order)
            map.emplace_hint(map.end(), entry.key(), std::move(entry.value()));
        entries.clear();
    }

private:
    QHash<QString, QString> entries;
};

/// Keeps the pairs in a list and the keys in \a Set, and sorts the list at the end.
template <typename Set> class SetEntries
{
public:
    bool add(const QString &key, const QString &value)
    {
        if (!keys.insert(key).second)
            return false;
        entries.push_back({ key, value });
        return true;
    }
    void moveTo(std::map<QString, QString> &map)
    {
        keys.clear();
        std::sort(entries.begin(), entries.end(), [](const Entry &a, const Entry &b) { return a.key < b.key; });
        for (Entry &entry : entries)
            map.emplace_hint(map.end(), std::move(entry.key), std::move(entry.value));
        entries.clear();
    }

private:
    struct Entry {
        QString key;
        QString value;
    };

    std::vector<Entry> entries;
    Set keys;
};

/// Does not use that keys ascend: a first key that is greater than all others ends the order at once.
class UnorderedEntries : public lookup::Entries
{
public:
    UnorderedEntries() { add(QString(QChar(0xFFFF)), QString()); }
};

} // namespace plain

#endif
