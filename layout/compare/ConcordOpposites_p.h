#ifndef LAYOUT_COMPARE_CONCORDOPPOSITES_P_H
#define LAYOUT_COMPARE_CONCORDOPPOSITES_P_H

#include <QString>

namespace vanlayout
{

/// A word that belongs to a subject with several sides, such as "male" and "female". Words of the same side are
/// synonyms; words of different sides are never the same meaning, even if their spelling is similar.
struct ConcordSide {
    int subject = -1; ///< -1 for a word of no subject
    int side = 0;

    bool isKnown() const { return subject >= 0; }
    bool isOpposite(const ConcordSide &other) const
    {
        return isKnown() && subject == other.subject && side != other.side;
    }
    bool isSame(const ConcordSide &other) const { return isKnown() && subject == other.subject && side == other.side; }
};

/// The side of a folded word, in the languages of most surveys.
ConcordSide sideOf(const QString &word);
/// Whether a folded word is a relative who can be another one with a further word: "mother", "fils".
bool isRelative(const QString &word);
/// Whether a folded word makes another relative: "law" of "mother-in-law", "petit" of "petit-fils".
bool isOfOtherRelative(const QString &word);
/// Whether a folded word negates a label: "no", "sans", "nunca".
bool isNegation(const QString &word);
/// Whether one folded word is the other one with a prefix that changes its meaning: "employed" and "unemployed".
bool differByPrefix(const QString &one, const QString &other);
/// Whether two folded words are different words although they differ by one letter: "house" and "horse".
bool areLookAlikes(const QString &one, const QString &other);

} // namespace vanlayout

#endif
