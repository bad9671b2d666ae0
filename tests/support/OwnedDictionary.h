#ifndef SUPPORT_OWNEDDICTIONARY_H
#define SUPPORT_OWNEDDICTIONARY_H

#include "cspro/CSPro_p.h"
#include "cspro/ValueSet_p.h"

#include <QSet>
#include <QStringList>

/// A text reader that frees its records, items and value sets; TCSPro itself frees none of them.
class OwnedDictionary : public TCSPro
{
public:
    OwnedDictionary() = default;
    explicit OwnedDictionary(const QStringList &lines) { read(lines); }
    OwnedDictionary(const OwnedDictionary &) = delete;
    OwnedDictionary &operator=(const OwnedDictionary &) = delete;
    ~OwnedDictionary() override
    {
        QSet<TCSProValueSet *> sets; // the copies of a repeated item share theirs
        for (TCSProItem *item : qAsConst(*items)) {
            for (TCSProValueSet *set : qAsConst(*item->valueSets))
                sets.insert(set);
        }
        for (TCSProValueSet *set : qAsConst(sets)) {
            qDeleteAll(*set->items);
            delete set;
        }
        qDeleteAll(*items);
        qDeleteAll(*records);
        delete commonRecord;
        delete items;
        delete records;
        items = nullptr;
        records = nullptr;
    }

    void read(QStringList lines) { parseLines(&lines); }

    /// Returns the value set of the item at \a index, or null.
    TCSProValueSet *setOf(int index) const
    {
        const TCSProItem *item = getItem(index);
        return item ? item->getValueSet(0) : nullptr;
    }
    /// Return the codes or the labels of that set in their order; a list of one null text if there is no set.
    QStringList codesOf(int index) const { return textsOf(index, &TValueSetItem::code); }
    QStringList labelsOf(int index) const { return textsOf(index, &TValueSetItem::name); }
    QStringList itemNames() const
    {
        QStringList names;
        for (const TCSProItem *item : qAsConst(*items))
            names.append(item->name);
        return names;
    }

private:
    QStringList textsOf(int index, QString TValueSetItem::*text) const
    {
        const TCSProValueSet *set = setOf(index);
        if (!set)
            return { QString() };
        QStringList collected;
        for (const TValueSetItem *value : qAsConst(*set->items))
            collected.append(value->*text);
        return collected;
    }
};

#endif
