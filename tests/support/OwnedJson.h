#ifndef SUPPORT_OWNEDJSON_H
#define SUPPORT_OWNEDJSON_H

#include "cspro/CSProJson_p.h"
#include "cspro/ValueSet_p.h"

#include <QStringList>
#include <QTemporaryFile>

/// A JSON reader that frees its records, items and value sets; TCSProJson itself frees none of them.
class OwnedJson : public TCSProJson
{
public:
    OwnedJson() = default;
    explicit OwnedJson(const QByteArray &bytes) { read(bytes); }
    OwnedJson(const OwnedJson &) = delete;
    OwnedJson &operator=(const OwnedJson &) = delete;
    ~OwnedJson() override
    {
        for (TCSProItem *item : qAsConst(*items)) {
            for (TCSProValueSet *set : qAsConst(*item->valueSets)) { // every item has its own
                qDeleteAll(*set->items);
                delete set;
            }
        }
        qDeleteAll(*items);
        qDeleteAll(*records);
        delete commonRecord;
        delete items;
        delete records;
        items = nullptr;
        records = nullptr;
    }

    /// Reads a file of these bytes.
    void read(const QByteArray &bytes)
    {
        QTemporaryFile file;
        if (!file.open() || file.write(bytes) != bytes.size() || !file.flush())
            qFatal("%s cannot be written", qPrintable(file.fileName()));
        readFile(file.fileName());
    }

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
    QList<int> starts() const
    {
        QList<int> columns;
        for (const TCSProItem *item : qAsConst(*items))
            columns.append(item->start);
        return columns;
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
