#ifndef LAYOUT_COMPARE_CONCORDWORDS_P_H
#define LAYOUT_COMPARE_CONCORDWORDS_P_H

#include "compare/ConcordOpposites_p.h"
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
    /// 0 to 1: whether two different words with the same first letter are probably forms of the same word.
    static double similarity(const QString &one, const QString &other);
    /// Whether a folded word has little meaning of its own: "the", "de".
    static bool isFiller(const QString &word);
    /// The folded word without the ending of a plural.
    static QString stemOf(const QString &word);
    /// Likewise; an abbreviation in full.
    static QString commonForm(const QString &word);
    /// The number of typing errors between two words: letters that are missing, wrong or exchanged with the next one.
    /// At least 3 if the lengths differ by more than 2, or a word is very long.
    static int typingErrors(const QString &one, const QString &other);

private:
    int numberOf(const QString &word);
    double knownSimilarity(int one, int other);

    bool areContrary(int one, int other) const;

    ConcordTerms words;
    std::vector<ConcordSide> sides; // of the words
    std::vector<QChar> initials;
    std::vector<char> areNumbers;
    std::unordered_map<quint64, double> similarities;
};

/// The label without its question number.
QString withoutQuestionNumber(const QString &label, const QString &name);

} // namespace vanlayout

#endif
