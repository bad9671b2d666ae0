#ifndef LAYOUT_COMPARE_CONCORDCHANGES_P_H
#define LAYOUT_COMPARE_CONCORDCHANGES_P_H

#include "compare/Concord.h"
#include "compare/ConcordRound_p.h"

#include <map>
#include <set>
#include <tuple>
#include <vector>

namespace vanlayout
{

/// Which records of the rounds are the same under another name.
class ConcordRecordNames
{
public:
    explicit ConcordRecordNames(const std::vector<ConcordRound> &allRounds);

    /// Counts an item and the item of a later round that follows it in a variable.
    void add(const RoundPlace &before, const RoundPlace &after);
    /// Whether the record of an item has another name in the later round, and no other record of a round has one of the
    /// two names: most of its items went to the record of \a after.
    bool isRenamed(const RoundPlace &before, const RoundPlace &after) const;

private:
    /// A record by round and number, and a later round.
    using Key = std::tuple<int, int, int>;

    Key keyOf(const RoundPlace &before, const RoundPlace &after) const;
    bool hasRecord(int round, const QString &name) const;

    const std::vector<ConcordRound> &rounds;
    std::vector<std::set<QString>> names; // of the records of each round, with case folded
    std::map<Key, int> counts;
    std::map<std::pair<Key, int>, int> countsOfPairs; // by the number of the later record
};

/// Compares items with those of an earlier round.
class ConcordChanges
{
public:
    ConcordChanges(const std::vector<ConcordRound> &allRounds, const ConcordRecordNames &recordNames,
                   const QString &labelLanguage)
        : rounds(allRounds)
        , records(recordNames)
        , language(labelLanguage)
    {
    }

    /// The changes except those of values. Records and decimals are compared between dictionaries, and widths between
    /// dictionaries or between statistical files. An item of a record that only has another name is not moved.
    QVector<ConcordChange> changesOf(const RoundPlace &before, const RoundPlace &after) const;

private:
    bool isMoved(const RoundPlace &before, const RoundPlace &after) const;

    const std::vector<ConcordRound> &rounds;
    const ConcordRecordNames &records;
    const QString &language;
};

} // namespace vanlayout

#endif
