#ifndef LAYOUT_COMPARE_CONCORDWORDS_P_H
#define LAYOUT_COMPARE_CONCORDWORDS_P_H

#include "compare/ConcordTerms_p.h"

namespace vanlayout
{

/// The words of labels.
class ConcordWords
{
public:
    /// The words of a label without question number: one that repeats \a name, or a number with a mark after it.
    ConcordTerms::List wordsOfLabel(const QString &label, const QString &name);
    /// The overlap of two labels, in which forms of a word, abbreviations and typing errors count in part.
    ConcordOverlap overlapOfLabels(const ConcordTerms::List &one, const ConcordTerms::List &other);

    ConcordTerms &terms() { return words; }
    const ConcordTerms &terms() const { return words; }
    /// 0 to 1: whether two different words are probably forms of the same word.
    static double similarity(const QString &one, const QString &other);

private:
    int numberOf(const QString &word);
    double knownSimilarity(int one, int other);

    ConcordTerms words;
    std::unordered_map<quint64, double> similarities;
};

/// The label without its question number.
QString withoutQuestionNumber(const QString &label, const QString &name);

} // namespace vanlayout

#endif
