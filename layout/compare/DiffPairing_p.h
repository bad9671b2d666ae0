#ifndef LAYOUT_COMPARE_DIFFPAIRING_P_H
#define LAYOUT_COMPARE_DIFFPAIRING_P_H

#include "util/KeyedHash_p.h"

#include <QVector>

#include <algorithm>
#include <optional>
#include <unordered_map>

namespace vanlayout
{

/// The pairs of matching elements of two lists. Each rule pairs elements that the rules before it left without a
/// partner. Elements are 0-based indexes; `none` is the partner of an element without one.
class Pairing
{
public:
    static constexpr int none = -1;

    Pairing(int beforeCount, int afterCount)
        : afterOf(beforeCount, none)
        , beforeOf(afterCount, none)
    {
    }

    int partnerOfBefore(int index) const { return afterOf.at(index); }
    int partnerOfAfter(int index) const { return beforeOf.at(index); }
    int beforeCount() const { return afterOf.size(); }
    int afterCount() const { return beforeOf.size(); }

    void pair(int before, int after)
    {
        afterOf[before] = after;
        beforeOf[after] = before;
    }

    /// Pairs elements with the same key: the first with the first, the second with the second. A key function takes an
    /// index and returns an optional key; an element without a key is not paired.
    template <typename Hash = KeyedHash, typename BeforeKey, typename AfterKey>
    void inOrder(BeforeKey beforeKey, AfterKey afterKey)
    {
        match<Hash>(beforeKey, afterKey, Rule::InOrder);
    }
    /// Pairs elements whose key occurs once on each side.
    template <typename Hash = KeyedHash, typename BeforeKey, typename AfterKey>
    void ifUnique(BeforeKey beforeKey, AfterKey afterKey)
    {
        match<Hash>(beforeKey, afterKey, Rule::IfUnique);
    }
    /// Likewise, but only if \a areAlike returns true for the two indexes.
    template <typename Hash = KeyedHash, typename BeforeKey, typename AfterKey, typename Alike>
    void ifUniqueAnd(Alike areAlike, BeforeKey beforeKey, AfterKey afterKey)
    {
        match<Hash>(beforeKey, afterKey, Rule::IfUnique, areAlike);
    }

private:
    enum class Rule { InOrder, IfUnique };

    struct Candidates {
        int firstBefore = none;
        int firstAfter = none;
        bool isRepeated = false;
    };

    static bool areAlways(int /*before*/, int /*after*/) { return true; }

    template <typename Hash, typename BeforeKey, typename AfterKey, typename Alike = bool (*)(int, int)>
    void match(BeforeKey beforeKey, AfterKey afterKey, Rule rule, Alike areAlike = areAlways)
    {
        using Key = std::decay_t<decltype(*beforeKey(0))>;
        std::unordered_map<Key, Candidates, Hash> candidates;
        QVector<int> next(beforeOf.size(), none);
        // The loop goes from the end, so that the first of several elements with a key is found first.
        for (int i = afterCount() - 1; i >= 0; --i) {
            const std::optional<Key> key = partnerOfAfter(i) == none ? afterKey(i) : std::nullopt;
            if (!key)
                continue;
            Candidates &alike = candidates[*key];
            alike.isRepeated = alike.isRepeated || alike.firstAfter != none;
            next[i] = alike.firstAfter;
            alike.firstAfter = i;
        }
        if (candidates.empty())
            return;
        if (rule == Rule::IfUnique)
            findRepeated(candidates, beforeKey);
        for (int i = 0; i < beforeCount(); ++i) {
            const std::optional<Key> key = partnerOfBefore(i) == none ? beforeKey(i) : std::nullopt;
            const auto found = key ? candidates.find(*key) : candidates.end();
            if (found == candidates.end() || found->second.firstAfter == none)
                continue;
            if (rule == Rule::IfUnique && found->second.isRepeated)
                continue;
            const int after = found->second.firstAfter;
            if (!areAlike(i, after))
                continue;
            found->second.firstAfter = next.at(after);
            pair(i, after);
        }
    }

    template <typename Map, typename BeforeKey> void findRepeated(Map &candidates, BeforeKey beforeKey) const
    {
        for (int i = 0; i < beforeCount(); ++i) {
            const auto key = partnerOfBefore(i) == none ? beforeKey(i) : std::nullopt;
            const auto found = key ? candidates.find(*key) : candidates.end();
            if (found == candidates.end())
                continue;
            found->second.isRepeated = found->second.isRepeated || found->second.firstBefore != none;
            found->second.firstBefore = i;
        }
    }

    QVector<int> afterOf;
    QVector<int> beforeOf;
};

} // namespace vanlayout

#endif
