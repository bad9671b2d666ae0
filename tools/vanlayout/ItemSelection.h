#ifndef VANLAYOUT_ITEMSELECTION_H
#define VANLAYOUT_ITEMSELECTION_H

#include "model/Layout.h"

#include <QString>
#include <QStringList>

#include <vector>

/// Reduces layouts to the items with given names, compared ignoring case; `*` matches any characters and
/// `?` one.
class ItemSelection
{
public:
    /// Selects all items if \a names is empty.
    explicit ItemSelection(const QStringList &names);

    /// Removes all other items, and records without selected items.
    void reduce(vanlayout::Layout &layout);
    /// The names that have not matched an item of any layout so far.
    QStringList unmatched() const;

private:
    struct Pattern {
        QString name;
        bool isMatched;
    };

    bool isSelected(const QString &name);
    void reduce(QVector<vanlayout::Item> &items);

    std::vector<Pattern> patterns;
};

#endif
