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

/// The part of value sets that a hash is made of.
enum class ContentPart { CodesAndLabels, Codes };

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

    /// A hash of that part of all value sets of an item. It does not depend on the order of the sets; 0 if the item has
    /// none.
    quint64 contentOf(const Item &item, Side side, ContentPart part);

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

    bool hasEntry(const ValueSet &set, CodeType type) const;
    Sets setsOf(const Item &item, CodeType type) const;
    Pairing pairSets(const Item &before, const Sets &ofBefore, const Item &after, const Sets &ofAfter, CodeType type);
    void pairSetsByName(const Item &before, const Sets &ofBefore, const Item &after, const Sets &ofAfter,
                        Pairing &pairing) const;
    void pairSetsByContent(const Sets &ofBefore, const Sets &ofAfter, CodeType type, Pairing &pairing);
    void compareSets(const ValueSet &before, const ValueSet &after, const Item &itemBefore, const Item &itemAfter,
                     CodeType type, Change place, ChangeCollector &changes);

    QVector<CodeEntry> entriesOf(const QVector<Value> &values, CodeType type) const;
    const Content &contentOf(const QVector<Value> &values, CodeType type, Side side);
    const Differences &differencesOf(const QVector<Value> &before, const QVector<Value> &after, CodeType type);
    Differences compareEntries(const QVector<CodeEntry> &before, const QVector<CodeEntry> &after) const;
    static Pairing pairEntries(const QVector<CodeEntry> &before, const QVector<CodeEntry> &after);
    void compareValues(const Value &one, const Value &other, Differences &differences) const;

    const DiffScope &scope;
    const LabelComparison &labels;
    // The keys are the addresses of the lists, which live as long as the comparison.
    std::map<std::tuple<const Value *, CodeType, int>, Content> contents;
    std::map<std::tuple<const Value *, const Value *, CodeType>, Differences> known;
    int knownCount = 0; // number of differences in `known`
};

} // namespace vanlayout

#endif
