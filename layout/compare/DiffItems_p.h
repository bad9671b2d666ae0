#ifndef LAYOUT_COMPARE_DIFFITEMS_P_H
#define LAYOUT_COMPARE_DIFFITEMS_P_H

#include "compare/DiffChanges_p.h"
#include "compare/DiffLabels_p.h"
#include "compare/DiffScope_p.h"

namespace vanlayout
{

/// Adds the differences between two items at \a place: those of label, type, columns and all other members except the
/// value sets and the item that contains a subitem.
void compareItems(const Item &before, const Item &after, const Change &place, const DiffScope &scope,
                  const LabelComparison &labels, ChangeCollector &changes);

/// Adds the differences between the occurrence labels of two records or items at \a place.
void compareOccurrenceLabels(const QVector<OccurrenceLabel> &before, const QVector<OccurrenceLabel> &after,
                             const Change &place, DiffKind kind, const LabelComparison &labels,
                             ChangeCollector &changes);

/// Adds the differences between two labels at \a place, language by language. \a longest is the bound of
/// LabelComparison::compare().
void compareLabels(const Labels &before, const Labels &after, const Change &place, DiffKind kind, int longest,
                   const LabelComparison &labels, ChangeCollector &changes);

/// Width and decimals of a format that prints plain numbers: "8.2" for `F8.2` and `%8.2f`; empty for any other.
QString plainNumberFormat(const QString &format);

} // namespace vanlayout

#endif
