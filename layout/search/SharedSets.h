#ifndef LAYOUT_SEARCH_SHAREDSETS_H
#define LAYOUT_SEARCH_SHAREDSETS_H

#include "model/Layout.h"
#include "vanlayout_export.h"

#include <QString>
#include <QVector>

#include <map>

/// Identical value sets of several layouts.
namespace vanlayout
{

/// A value set of an item.
struct VANLAYOUT_EXPORT ValueSetUse {
    QString file;
    QString level;
    QString record; ///< `(ids)` for an id item
    QString item;
    QString valueSet; ///< name of the value set; empty if it has none
};

/// A list of values, and all value sets with it.
struct VANLAYOUT_EXPORT SharedSet {
    QString id;                ///< see identityOf()
    QVector<Value> values;     ///< of the first use
    QVector<ValueSetUse> uses; ///< in the order of the layouts
};

/// The identity of a list of values: the first 12 hexadecimal digits of a SHA-256. Empty for an empty list.
///
/// Two lists have the same identity if they have the same codes, ranges, special values and labels in all languages, as
/// they are written. The order of the values and the codes of the languages do not matter, and neither do notes,
/// images and colors. A value with several codes is like several values with one.
VANLAYOUT_EXPORT QString identityOf(const QVector<Value> &values);

/// The lists of values of one layout, each once, in the order of their first use. Empty lists are omitted.
VANLAYOUT_EXPORT QVector<SharedSet> valueSetsOf(const Layout &layout);

/// The lists of values of several layouts.
class VANLAYOUT_EXPORT SharedSets
{
public:
    /// Adds the lists of a layout, results of valueSetsOf().
    void add(const QVector<SharedSet> &ofLayout);
    /// The lists, those with the most uses first; those with the same number in the order in which they were added.
    QVector<SharedSet> mostUsedFirst() const;

private:
    QVector<SharedSet> sets;
    std::map<QString, int> places; // in `sets`, by identity
};

} // namespace vanlayout

Q_DECLARE_TYPEINFO(vanlayout::ValueSetUse, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::SharedSet, Q_MOVABLE_TYPE);

#endif
