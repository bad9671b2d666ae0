#ifndef LAYOUT_CONCORD_MATCHTRUTH_H
#define LAYOUT_CONCORD_MATCHTRUTH_H

#include "compare/Concord.h"

#include <QString>
#include <QVector>

#include <utility>

/// Which items of several rounds are known to be the same, and how well a concordance finds them.
namespace truth
{

/// The place of an item as text: record and name, `PERSON.SEX`.
QString placeOf(const QString &record, const QString &item);

/// The variables of a survey that are known: for each round the place of its item, or an empty text. Items that no
/// variable has occur in one round alone.
struct Truth {
    QStringList files; ///< names of the files, if they are files of a collection
    QVector<QStringList> variables;

    /// Reads a table: a line with the files, then a line for each variable, cells separated by commas. Lines with `#`
    /// are comments.
    static Truth read(const QString &path);
};

/// Pairs of items of two rounds.
struct Quality {
    int found = 0;   ///< pairs of the concordance
    int known = 0;   ///< pairs of the truth
    int correct = 0; ///< pairs of both

    double precision() const { return found == 0 ? 1 : double(correct) / found; }
    double recall() const { return known == 0 ? 1 : double(correct) / known; }
    void add(const Quality &other)
    {
        found += other.found;
        known += other.known;
        correct += other.correct;
    }
};

using Table = QVector<QStringList>; // a row for each variable, as in Truth::variables

/// The variables of a concordance as places.
Table tableOf(const vanlayout::Concordance &concordance);
/// Compares two tables, pair by pair. The wrong and the missing pairs are added to \a wrong and \a missing.
Quality compare(const Table &found, const Truth &truth, QStringList *wrong = nullptr, QStringList *missing = nullptr);

/// The variables by equal names alone, and by a rule of names first: equal names whose labels are not quite different,
/// then equal labels.
Table byName(const QVector<vanlayout::Layout> &rounds);
Table byNameThenLabel(const QVector<vanlayout::Layout> &rounds);

} // namespace truth

#endif
