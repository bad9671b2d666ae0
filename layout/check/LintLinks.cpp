#include "check/LintFindings_p.h"
#include "util/KeyedHash_p.h"

namespace vanlayout
{

namespace
{

/// The first value set of a link, and how many there are.
struct LinkedSet {
    ElementAddress address;
    const ValueSet *set;
    int count;
};

void lintValueSetLinks(const Layout &layout, LintFindings &findings)
{
    KeyedMap<QString, LinkedSet> links;
    forEachValueSet(layout, [&](const ValueSet &set, const Item & /*item*/, const ElementAddress &address) {
        if (set.link.isEmpty())
            return;
        const auto [known, isFirst] = links.emplace(set.link, LinkedSet{ address, &set, 0 });
        ++known->second.count;
        if (!isFirst && set.values != known->second.set->values)
            findings.add(LintRule::LinkedSetsDiffer, address,
                         QStringLiteral("the value set is linked to %1, but their values differ; remove the link, or "
                                        "make them equal")
                             .arg(inMessage(known->second.set->name)));
    });
    forEachValueSet(layout, [&](const ValueSet &set, const Item & /*item*/, const ElementAddress &address) {
        if (!set.link.isEmpty() && links.at(set.link).count == 1)
            findings.add(
                LintRule::SingleLink, address,
                QStringLiteral("no other value set has the link %1; remove the link").arg(inMessage(set.link)));
    });
}

/// Checks that relations name elements that exist.
class RelationCheck
{
public:
    RelationCheck(const Layout &source, LintFindings &list)
        : layout(source)
        , findings(list)
    {
    }

    void check()
    {
        if (layout.relations.isEmpty())
            return;
        gather();
        ElementAddress address;
        for (address.relation = 0; address.relation < layout.relations.size(); ++address.relation) {
            const Relation &relation = layout.relations.at(address.relation);
            checkRepeating(relation.primary, address);
            for (const RelationLink &link : relation.links) {
                checkRepeating(link.secondary, address);
                checkItem(link.primaryLink, address);
                checkItem(link.secondaryLink, address);
            }
        }
    }

private:
    void gather()
    {
        forEachItemList(layout,
                        [&](const QVector<Item> &items, const ElementAddress & /*address*/, const Record *record) {
                            if (record)
                                repeats.emplace(record->name.toUpper(), record->maximum > 1);
                            for (const Item &item : items) {
                                repeats.emplace(item.name.toUpper(), item.occurrences > 1);
                                names.insert(item.name.toUpper());
                            }
                        });
    }
    void checkRepeating(const QString &name, const ElementAddress &address)
    {
        if (name.isEmpty())
            return;
        const auto found = repeats.find(name.toUpper());
        if (found == repeats.end())
            report(name, QStringLiteral("which is no record or item"), address);
        else if (!found->second)
            report(name, QStringLiteral("which does not repeat"), address);
    }
    void checkItem(const QString &name, const ElementAddress &address)
    {
        if (!name.isEmpty() && names.count(name.toUpper()) == 0)
            report(name, QStringLiteral("which is no item"), address);
    }
    void report(const QString &name, const QString &problem, const ElementAddress &address)
    {
        findings.add(LintRule::RelationTarget, address,
                     QStringLiteral("the relation names %1, %2; correct the name, or remove the relation")
                         .arg(inMessage(name), problem));
    }

    const Layout &layout;
    LintFindings &findings;
    KeyedMap<QString, bool> repeats; ///< records and items, and whether they repeat
    KeyedSet<QString> names;         ///< of items
};

} // namespace

void lintLinks(const Layout &layout, LintFindings &findings)
{
    lintValueSetLinks(layout, findings);
    RelationCheck(layout, findings).check();
}

} // namespace vanlayout
