#ifndef VANLAYOUT_ITEMSELECTION_H
#define VANLAYOUT_ITEMSELECTION_H

#include "model/Layout.h"

#include <QString>
#include <QStringList>

#include <vector>

/// Reduces layouts to the items with given names, compared without regard to case; `*` stands for any characters and
/// `?` for one.
class ItemSelection
{
public:
    /// Selects all items where \a names is empty.
    explicit ItemSelection(const QStringList &names);

    /// Removes all other items, and the records that are left without any.
    void reduce(vanlayout::Layout &layout);
    /// The names that no item of any layout had so far.
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
