#ifndef LAYOUT_COMPARE_CONCORDCHANGES_P_H
#define LAYOUT_COMPARE_CONCORDCHANGES_P_H

#include "compare/Concord.h"
#include "compare/ConcordRound_p.h"

namespace vanlayout
{

/// Compares an item with that of an earlier round.
class ConcordChanges
{
public:
    ConcordChanges(const ConcordRound &earlierRound, const ConcordRound &laterRound, const QString &labelLanguage)
        : earlier(earlierRound)
        , later(laterRound)
        , language(labelLanguage)
    {
    }

    /// The changes except those of values. The record differs if its name, compared case-insensitively, does, and both
    /// rounds are dictionaries; the width of a statistical variable is not compared with that of an item of a
    /// dictionary.
    QVector<ConcordChange> changesOf(const RoundItem &before, const RoundItem &after) const;

private:
    const ConcordRound &earlier;
    const ConcordRound &later;
    const QString &language;
};

} // namespace vanlayout

#endif
