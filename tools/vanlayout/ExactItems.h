#ifndef VANLAYOUT_EXACTITEMS_H
#define VANLAYOUT_EXACTITEMS_H

#include "model/Layout.h"
#include "util/KeyedHash_p.h"

#include <map>
#include <utility>

struct ReadNote;

/// Describes, from the exact layout, what the file states about a variable whose fields lose or change information.
class ExactItems
{
public:
    /// \a layout must outlive this object. One that was not read has no items.
    explicit ExactItems(const vanlayout::Layout &layout);

    /// A few words about what the file states about the subject of a note, such as "9(5)v2, 2 implied decimals". Empty
    /// for other kinds of notes, or if not exactly one item has the name of the variable; cut with an ellipsis after
    /// 400 columns.
    QString insteadOf(const ReadNote &note);

private:
    struct Found {
        const vanlayout::Item *item;
        const vanlayout::Item *parent; ///< item that contains a subitem; null for others
    };

    void add(const QVector<vanlayout::Item> &list);
    const Found *find(const QString &variable) const;

    KeyedMap<QString, Found> items; ///< by name; null if several items have the name
    std::map<std::pair<const vanlayout::Item *, int>, QString> described; ///< by item and described property
};

#endif
