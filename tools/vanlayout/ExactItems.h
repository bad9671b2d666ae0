#ifndef VANLAYOUT_EXACTITEMS_H
#define VANLAYOUT_EXACTITEMS_H

#include "model/Layout.h"
#include "util/KeyedHash_p.h"

#include <map>
#include <utility>

struct ReadNote;

/// Says from the exact layout how the file describes a variable of which the fields lose or change something.
class ExactItems
{
public:
    /// \a layout must outlive this object. One that was not read has no items.
    explicit ExactItems(const vanlayout::Layout &layout);

    /// A few words that say what the file has in place of what a note is about, such as "9(5)v2, 2 implied decimals".
    /// Empty where the note is of another kind, or where not exactly one item has the name of its variable; cut with an
    /// ellipsis behind 400 columns.
    QString insteadOf(const ReadNote &note);

private:
    struct Found {
        const vanlayout::Item *item;
        const vanlayout::Item *parent; ///< item that holds a subitem; null for others
    };

    void add(const QVector<vanlayout::Item> &list);
    const Found *find(const QString &variable) const;

    KeyedMap<QString, Found> items; ///< by name; a name that several items have leads to none
    std::map<std::pair<const vanlayout::Item *, int>, QString> described; ///< by item and what of it is described
};

#endif
