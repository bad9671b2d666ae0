#ifndef LAYOUT_COMPARE_DIFFVALUES_P_H
#define LAYOUT_COMPARE_DIFFVALUES_P_H

#include "compare/DiffChanges_p.h"
#include "compare/DiffCodes_p.h"
#include "compare/DiffLabels_p.h"
#include "compare/DiffPairing_p.h"
#include "compare/DiffScope_p.h"

#include <map>
#include <tuple>

namespace vanlayout
{

/// Compares the value sets of two items.
///
/// A list of values that several sets share is compared once with each other list.
class ValueSetComparison
{
public:
    using Side = LabelComparison::Side;

    ValueSetComparison(const DiffScope &scopeOfBoth, const LabelComparison &labelComparison)
        : scope(scopeOfBoth)
        , labels(labelComparison)
    {
    }

    /// Adds the differences between the value sets of two items at \a place.
    void compare(const Item &before, const Item &after, const Change &place, ChangeCollector &changes);

    /// A hash of the codes of all value sets of an item and, with \a hasLabels, of their labels. It does not depend on
    /// the order of the sets; 0 if the item has none.
    quint64 contentOf(const Item &item, Side side, bool hasLabels);

private:
    /// The content of a list of values, as hashes that do not depend on its order.
    struct Content {
        quint64 labelled = 0; // codes and labels
        quint64 codes = 0;
    };
    /// A difference between two lists, without its place.
    struct Difference {
        DiffKind kind = DiffKind::ValueAdded;
        QString code;
        QString language;
        QString before;
        QString after;
    };
    using Sets = QVector<const ValueSet *>;
    using Differences = QVector<Difference>;

    bool hasEntry(const ValueSet &set, bool isNumeric) const;
    Sets setsOf(const Item &item, bool isNumeric) const;
    Pairing pairSets(const Item &before, const Sets &ofBefore, const Item &after, const Sets &ofAfter, bool isNumeric);
    void pairSetsByName(const Item &before, const Sets &ofBefore, const Item &after, const Sets &ofAfter,
                        Pairing &pairing) const;
    void pairSetsByContent(const Sets &ofBefore, const Sets &ofAfter, bool isNumeric, Pairing &pairing);
    void compareSets(const ValueSet &before, const ValueSet &after, const Item &itemBefore, const Item &itemAfter,
                     bool isNumeric, Change place, ChangeCollector &changes);

    QVector<CodeEntry> entriesOf(const QVector<Value> &values, bool isNumeric) const;
    const Content &contentOf(const QVector<Value> &values, bool isNumeric, Side side);
    const Differences &differencesOf(const QVector<Value> &before, const QVector<Value> &after, bool isNumeric);
    Differences compareEntries(const QVector<CodeEntry> &before, const QVector<CodeEntry> &after) const;
    static Pairing pairEntries(const QVector<CodeEntry> &before, const QVector<CodeEntry> &after);
    void compareValues(const Value &one, const Value &other, Differences &differences) const;

    const DiffScope &scope;
    const LabelComparison &labels;
    // By the addresses of the lists, which live as long as the comparison.
    std::map<std::tuple<const Value *, bool, int>, Content> contents;
    std::map<std::tuple<const Value *, const Value *, bool>, Differences> known;
    int knownCount = 0; // number of differences in `known`
};

} // namespace vanlayout

#endif
