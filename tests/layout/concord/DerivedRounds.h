#ifndef LAYOUT_CONCORD_DERIVEDROUNDS_H
#define LAYOUT_CONCORD_DERIVEDROUNDS_H

#include "layout/concord/MatchTruth.h"

/// Rounds of a survey that are derived from one dictionary, as questionnaires change in practice. The same seed gives
/// the same rounds.
namespace derived
{

/// How much changes from one round to the next; all are shares from 0 to 1.
struct Changes {
    double removed = 0.05;     ///< of the questions
    double added = 0.05;       ///< questions of the donors
    bool isRenumbered = true;  ///< whether names of the pattern letters and number are numbered again
    double renamed = 0.02;     ///< of the other names
    double prefixes = 0;       ///< probability that a record's names get another prefix
    double reworded = 0.15;    ///< of the labels
    double relabelled = 0.1;   ///< of the labels of values
    double recoded = 0.08;     ///< of the value sets: codes added, removed or with other numbers
    double widened = 0.05;     ///< of the items
    double moved = 0.03;       ///< of the questions: to another place of their record
    double otherRecord = 0.01; ///< of the questions: to another record
};

Changes mild();
Changes usual();
Changes harsh();
Changes extreme();

struct Rounds {
    QVector<vanlayout::Layout> layouts;
    truth::Truth truth;
};

/// \a count rounds, the first being \a first. Added questions are items of \a donor.
Rounds derive(const vanlayout::Layout &first, const vanlayout::Layout &donor, int count, const Changes &changes,
              unsigned seed);

/// The rounds as statistical files: one record, names in lower case, labels of at most 40 characters in every second
/// round.
Rounds asStatistical(const Rounds &rounds);
/// The rounds without value sets, and without the labels of items.
Rounds withoutValues(const Rounds &rounds);
Rounds withoutLabels(const Rounds &rounds);

} // namespace derived

#endif
