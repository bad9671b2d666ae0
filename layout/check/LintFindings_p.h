#ifndef LAYOUT_CHECK_LINTFINDINGS_P_H
#define LAYOUT_CHECK_LINTFINDINGS_P_H

#include "check/Lint.h"
#include "read/ElementAddress_p.h"

#include <algorithm>
#include <array>

namespace vanlayout
{

/// Collects the findings of the rules that are checked. Paths and lines are only looked up for a finding.
class LintFindings
{
public:
    static constexpr int maxFindings = 100'000; ///< of one rule

    LintFindings(const Layout &source, const LintOptions &options);

    bool wants(LintRule rule) const { return isWanted[size_t(rule)]; }
    void add(LintRule rule, const ElementAddress &address, const QString &message);
    void add(LintRule rule, const QString &path, int line, const QString &message);

    /// All findings, in the order of the rules.
    QVector<LintFinding> takeAll();

private:
    int lineOf(const ElementAddress &address) const;

    const Layout &layout;
    const ElementLines *lines;
    std::array<bool, lintRuleCount> isWanted;
    std::array<QVector<LintFinding>, lintRuleCount> findings;
};

/// An item with its place in a layout.
struct LintItem {
    const Item &item;
    const Item *parent; ///< the item that contains a subitem; null for others
    ElementAddress address;

    bool isId() const { return address.isInIds(); }
};

/// Calls \a visit with each item of a list as a LintItem; \a address is that of the ids or the record.
template <typename Visit> void forEachItem(const QVector<Item> &items, ElementAddress address, Visit visit)
{
    const Item *parent = nullptr;
    for (address.item = 0; address.item < items.size(); ++address.item) {
        const Item &item = items.at(address.item);
        if (!item.isSubitem)
            parent = &item;
        visit(LintItem{ item, item.isSubitem ? parent : nullptr, address });
    }
}

/// Calls \a visit with each list of items, the address of its ids or record, and its record, which is null for ids.
template <typename Visit> void forEachItemList(const Layout &layout, Visit visit)
{
    for (int level = 0; level < layout.levels.size(); ++level) {
        const Level &each = layout.levels.at(level);
        ElementAddress address;
        address.level = level;
        address.record = ElementAddress::ids;
        visit(each.ids, address, static_cast<const Record *>(nullptr));
        for (address.record = 0; address.record < each.records.size(); ++address.record)
            visit(each.records.at(address.record).items, address, &each.records.at(address.record));
    }
}

/// Calls \a visit with each item of a layout: the ids of each level before the items of its records.
template <typename Visit> void forEachItem(const Layout &layout, Visit visit)
{
    forEachItemList(layout, [&](const QVector<Item> &items, const ElementAddress &address, const Record * /*record*/) {
        forEachItem(items, address, visit);
    });
}

/// Calls \a visit with each value set, its item and its address.
template <typename Visit> void forEachValueSet(const Layout &layout, Visit visit)
{
    forEachItem(layout, [&](const LintItem &place) {
        ElementAddress address = place.address;
        for (address.valueSet = 0; address.valueSet < place.item.valueSets.size(); ++address.valueSet)
            visit(place.item.valueSets.at(address.valueSet), place.item, address);
    });
}

inline ElementAddress valueAddress(ElementAddress set, int value)
{
    set.value = value;
    return set;
}

/// The last column of all occurrences of an item; 0 if it has no columns.
inline qint64 lastColumnOf(const Item &item)
{
    if (item.start < 1)
        return 0;
    return qint64(item.start) + qint64(std::max(item.length, 0)) * std::max(item.occurrences, 1) - 1;
}

/// A text of the file for a message: on one line, and shortened if it is long.
QString inMessage(const QString &text);

inline bool isDictionary(const Layout &layout)
{
    return layout.format == Format::CSProText || layout.format == Format::CSProJson;
}

/// Whether items have columns in lines of data: in a dictionary and in a DDI document, but not in a statistical file.
inline bool hasColumns(const Layout &layout)
{
    return isDictionary(layout) || layout.format == Format::Ddi;
}

// The rules, by subject.
void lintReading(const Layout &layout, LintFindings &findings);
void lintRecords(const Layout &layout, LintFindings &findings);
void lintColumns(const Layout &layout, LintFindings &findings);
void lintItems(const Layout &layout, LintFindings &findings);
void lintNames(const Layout &layout, LintFindings &findings);
void lintLabels(const Layout &layout, LintFindings &findings);
void lintEncoding(const Layout &layout, LintFindings &findings);
void lintValues(const Layout &layout, LintFindings &findings);
void lintCodes(const Layout &layout, LintFindings &findings);
void lintLinks(const Layout &layout, LintFindings &findings);
void lintStatistical(const Layout &layout, LintFindings &findings);

} // namespace vanlayout

#endif
