#ifndef LAYOUT_COMPARE_CONCORDCODES_P_H
#define LAYOUT_COMPARE_CONCORDCODES_P_H

#include "compare/Concord.h"
#include "compare/ConcordRound_p.h"

#include <vector>

namespace vanlayout
{

/// Makes the table of codes of variables.
class ConcordCodes
{
public:
    ConcordCodes(const std::vector<ConcordRound> &allRounds, const QString &labelLanguage)
        : rounds(allRounds)
        , language(labelLanguage)
    {
    }

    /// The codes of a variable with these items, in the order of rounds. The order of codes is that of the first round;
    /// a code that a later round adds follows the code that it follows there.
    QVector<ConcordCode> codesOf(int variable, const QVector<RoundPlace> &items) const;

private:
    const std::vector<ConcordRound> &rounds;
    const QString &language;
};

/// The change of a code with these labels in the rounds that have the variable and value sets; none where a round does
/// not have the code.
CodeChange changeOf(const QVector<std::optional<QString>> &labels);

} // namespace vanlayout

#endif
