#ifndef LAYOUT_READ_CONCORDMAP_H
#define LAYOUT_READ_CONCORDMAP_H

#include "compare/Concord.h"
#include "vanlayout_export.h"

class QIODevice;

namespace vanlayout
{

/// A row of a map that cannot be followed.
struct VANLAYOUT_EXPORT ConcordMapProblem {
    int line = 0; ///< 1-based; 0 for the whole file
    QString message;
};

/// The decisions of a person in a map.
struct VANLAYOUT_EXPORT ConcordMap {
    QVector<ConcordDecision> decisions;  ///< in the order of the file
    QVector<int> lines;                  ///< 1-based line of each decision
    QVector<ConcordMapProblem> problems; ///< in the order of the file
};

/// Max size in bytes of a map.
constexpr qint64 maxConcordMapSize = 1 << 28;

/// Reads a map, as writeConcordMap() writes it and a spreadsheet saves it: CSV with commas, semicolons or tabs, in
/// UTF-8 or Windows-1252.
///
/// The columns `decision`, `round`, `item`, `other_round` and `other_item` are required, `level`, `record`,
/// `other_level` and `other_record` are optional; the order of the columns and further columns have no effect. A
/// decision is `same` or `different`; rows without a decision are ignored. A round is named as in roundNames(), or by
/// the end of its path. Decisions are compared case-insensitively. An apostrophe before a name that a spreadsheet would
/// evaluate as a formula is removed. \a files are those of the rounds; concord() reports items that they do not have.
VANLAYOUT_EXPORT ConcordMap readConcordMap(QIODevice &device, const QStringList &files);

} // namespace vanlayout

Q_DECLARE_TYPEINFO(vanlayout::ConcordMapProblem, Q_MOVABLE_TYPE);

#endif
