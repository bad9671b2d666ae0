#include "compare/ConcordWording_p.h"

#include "compare/ConcordOpposites_p.h"
#include "compare/ConcordPlurals_p.h"
#include "compare/ConcordWords_p.h"
#include "text/Words_p.h"

#include <QRegularExpression>

#include <algorithm>
#include <set>

namespace vanlayout
{

namespace
{

enum class Likeness { None, SameMeaning, SameWord };

bool hasDigit(const QString &word)
{
    return std::any_of(word.begin(), word.end(), [](QChar unit) { return unit.isDigit(); });
}

bool isRomanNumeral(const QString &word)
{
    static const QRegularExpression numeral(QStringLiteral("^(?=[ivx])x{0,3}(?:ix|iv|v?i{0,3})$"));
    const QChar first = word.at(0);
    return (first == QLatin1Char('i') || first == QLatin1Char('v') || first == QLatin1Char('x'))
        && numeral.match(word).hasMatch();
}

QString withoutLeadingZeros(QString number)
{
    while (number.size() > 1 && number.at(0) == QLatin1Char('0') && number.at(1).isDigit())
        number.remove(0, 1);
    return number;
}

/// A label of a code, folded, with its marks that have a meaning as words.
class CodeLabel
{
public:
    explicit CodeLabel(const QString &label);

    /// Letters, digits and marks with a meaning, without blanks and other marks.
    QString squeezed;
    std::vector<QString> content; ///< words with a meaning, in their order, without numbers
    std::vector<QString> numbers;
    std::set<QString> single;  ///< words of one letter and Roman numerals
    std::set<int> comparisons; ///< sides of "less" and "more"
    std::set<int> directions;  ///< sides of "north" and "east"
    QString initials;          ///< of the words between blanks
    bool isNegated = false;
    QString fillers; ///< words with little meaning, in their order

private:
    void addWord(const QString &word);
};

// Marks with a meaning become words.
QString withMarksAsWords(const QString &folded)
{
    static const QRegularExpression thousands(QStringLiteral("(?<=\\d)[,'](?=\\d{3}(?!\\d))"));
    static const QRegularExpression negative(QStringLiteral("^-(?=\\d)"));
    static const QRegularExpression decimal(QStringLiteral("(?<=\\d)[.,](?=\\d)"));
    QString text = folded.simplified();
    if (hasDigit(text)) {
        text.remove(thousands);
        text.replace(negative, QStringLiteral("minus"));
        text.replace(decimal, QStringLiteral("point"));
    }
    for (const auto &[mark, word] :
         { std::pair("<", " less "), std::pair("≤", " less "), std::pair(">", " more "), std::pair("≥", " more "),
           std::pair("+", " more "), std::pair("&", " and "), std::pair("%", " percent ") })
        text.replace(QString::fromUtf8(mark), QLatin1String(word));
    return text;
}

// Short forms in full.
QString withoutShortForms(QString text)
{
    static const QRegularExpression shortNot(QStringLiteral("n't\\b"));
    if (text.contains(QLatin1Char('\''))) {
        text.replace(QStringLiteral("can't"), QStringLiteral("can not"));
        text.replace(shortNot, QStringLiteral(" not"));
    }
    return text;
}

// Letters and digits; a hyphen between numbers is kept, so that 1-4 and 14 differ.
QString squeezedText(const QString &text)
{
    static const QRegularExpression betweenNumbers(
        QStringLiteral("(?<=\\d)\\s*[-–—/:]\\s*(?=\\d)|(?<=\\d)\\s+(?=\\d)"));
    QString squeezed;
    QString marked = text;
    if (hasDigit(text))
        marked.replace(betweenNumbers, QStringLiteral("-"));
    for (int i = 0; i < marked.size(); ++i) {
        const QChar unit = marked.at(i);
        const bool isBetween = unit == QLatin1Char('-') && i > 0 && i + 1 < marked.size() && marked.at(i - 1).isDigit()
            && marked.at(i + 1).isDigit();
        if (unit.isLetterOrNumber() || unit.isMark() || unit.isSurrogate() || isBetween)
            squeezed += unit;
    }
    return squeezed;
}

CodeLabel::CodeLabel(const QString &label)
{
    constexpr int longest = 1000;
    const QString cut = label.left(longest);
    const QString folded = foldedText(cut);
    bool isBeginning = true;
    for (const QChar unit : folded) {
        const bool separates
            = unit.isSpace() || unit == QLatin1Char('/') || unit == QLatin1Char('.') || unit == QLatin1Char('-');
        if (isBeginning && !separates)
            initials += unit;
        isBeginning = separates;
    }
    const QString text = withMarksAsWords(folded);
    squeezed = squeezedText(text);
    const QStringList words = wordsOf(withoutShortForms(text));
    for (const QString &word : words)
        addWord(word);
}

void CodeLabel::addWord(const QString &word)
{
    static const ConcordSide less = sideOf(QStringLiteral("less"));
    static const ConcordSide north = sideOf(QStringLiteral("north"));
    const ConcordSide side = sideOf(word);
    if (side.isKnown() && side.subject == north.subject)
        directions.insert(side.side);
    isNegated = isNegated || isNegation(word);
    if (side.isKnown() && side.subject == less.subject)
        comparisons.insert(side.side);
    if (hasDigit(word) && !side.isKnown())
        numbers.push_back(withoutLeadingZeros(word));
    else if (word.size() == 1 || isRomanNumeral(word))
        single.insert(word);
    else if (ConcordWords::isFiller(word) && !side.isKnown()) // "son" is a word of English and of French
        fillers += word + QLatin1Char(' ');
    else
        content.push_back(word);
}

// Whether a longer word differs by one typing error, or by two if it is very long. A first letter is not mistyped, and
// a wrong letter is no typing error in a word of less than seven, nor at its end, where it can be the gender. Letters
// after a whole word make another word ("bakery" is no "baker"), except the French ending of the feminine.
bool isTypingError(const QString &one, const QString &other)
{
    const int shorter = int(std::min(one.size(), other.size()));
    if (shorter < 5 || one.at(0) != other.at(0) || differByPrefix(one, other) || areLookAlikes(one, other))
        return false;
    const int errors = ConcordWords::typingErrors(one, other);
    if (errors > (shorter >= 10 ? 2 : 1))
        return false;
    if (one.size() != other.size()) {
        const QString &longer = one.size() < other.size() ? other : one;
        const bool goesOn = longer.startsWith(one.size() < other.size() ? one : other);
        return !goesOn || longer.endsWith(QLatin1Char('e'));
    }
    if (std::is_permutation(one.begin(), one.end(), other.begin()))
        return true;
    return shorter >= 7 && one.at(shorter - 1) == other.at(shorter - 1);
}

Likeness likenessOf(const QString &one, const QString &other)
{
    const ConcordSide side = sideOf(one);
    const ConcordSide otherSide = sideOf(other);
    if (one == other)
        return Likeness::SameWord;
    if (side.isOpposite(otherSide) || isNegation(one) != isNegation(other))
        return Likeness::None;
    if (ConcordWords::stemOf(one) == ConcordWords::stemOf(other) || areSingularAndPlural(one, other)
        || isTypingError(one, other))
        return Likeness::SameWord;
    if (side.isSame(otherSide) || ConcordWords::commonForm(one) == ConcordWords::commonForm(other)
        || (isNegation(one) && isNegation(other)))
        return Likeness::SameMeaning;
    const QString &shorter = one.size() < other.size() ? one : other;
    const QString &longer = one.size() < other.size() ? other : one;
    return shorter.size() >= 3 && longer.size() >= 5 && longer.startsWith(shorter) ? Likeness::SameMeaning
                                                                                   : Likeness::None;
}

/// The words of two labels, paired.
struct PairedWords {
    int same = 0;    // pairs of the same word
    int meaning = 0; // pairs of words with the same meaning
    bool isInOrder = true;
    std::vector<QString> onlyOne;
    std::vector<QString> onlyOther;
};

PairedWords paired(const std::vector<QString> &one, std::vector<QString> other)
{
    PairedWords result;
    int last = -1;
    std::vector<char> isUsed(other.size(), 0);
    for (const QString &word : one) {
        int best = -1;
        Likeness likeness = Likeness::None;
        for (int i = 0; i < int(other.size()); ++i) {
            const Likeness candidate = isUsed[size_t(i)] ? Likeness::None : likenessOf(word, other[size_t(i)]);
            if (candidate > likeness) {
                likeness = candidate;
                best = i;
            }
        }
        if (best < 0) {
            result.onlyOne.push_back(word);
            continue;
        }
        isUsed[size_t(best)] = 1;
        result.isInOrder = result.isInOrder && best > last;
        last = best;
        ++(likeness == Likeness::SameWord ? result.same : result.meaning);
    }
    for (size_t i = 0; i < other.size(); ++i) {
        if (!isUsed[i])
            result.onlyOther.push_back(other[i]);
    }
    return result;
}

bool haveOpposites(const PairedWords &words)
{
    return std::any_of(words.onlyOne.begin(), words.onlyOne.end(), [&](const QString &one) {
        return std::any_of(words.onlyOther.begin(), words.onlyOther.end(), [&](const QString &other) {
            return sideOf(one).isOpposite(sideOf(other)) || differByPrefix(one, other);
        });
    });
}

// Whether the words that only one label has make another relative: "law" of "son-in-law", "grand" of "grand-mère".
bool areOtherRelatives(const CodeLabel &label, const PairedWords &words)
{
    const std::vector<QString> &rest = words.onlyOne.empty() ? words.onlyOther : words.onlyOne;
    return !rest.empty() && std::all_of(rest.begin(), rest.end(), isOfOtherRelative)
        && std::any_of(label.content.begin(), label.content.end(), isRelative);
}

bool areInitials(const CodeLabel &one, const CodeLabel &other)
{
    const auto isOf = [](const CodeLabel &shorter, const CodeLabel &longer) {
        return longer.initials.size() >= 2 && longer.numbers.empty() && longer.initials.size() < longer.squeezed.size()
            && shorter.squeezed == longer.initials;
    };
    return isOf(one, other) || isOf(other, one);
}

// "North" is not "North East", although it is within it.
bool haveOtherDirections(const CodeLabel &one, const CodeLabel &other)
{
    return !one.directions.empty() && !other.directions.empty() && one.directions != other.directions;
}

bool haveOtherSingleLetters(const CodeLabel &one, const CodeLabel &other)
{
    const auto isIn = [](const std::set<QString> &letters) {
        return [&letters](const QString &letter) { return letters.count(letter) > 0; };
    };
    return !std::all_of(one.single.begin(), one.single.end(), isIn(other.single))
        && !std::all_of(other.single.begin(), other.single.end(), isIn(one.single));
}

// Whether the longer label is the other one with a remark in brackets, which explains it: "Other (not specified)".
bool isWithRemark(const QString &longer, const QString &shorter)
{
    const auto bracket = longer.indexOf(QLatin1Char('('));
    return bracket > 0 && longer.trimmed().endsWith(QLatin1Char(')')) && !shorter.contains(QLatin1Char('('))
        && CodeLabel(longer.left(bracket)).squeezed == CodeLabel(shorter).squeezed;
}

CodeChange changeOfWords(const CodeLabel &one, const CodeLabel &other)
{
    const PairedWords words = paired(one.content, other.content);
    if (haveOpposites(words))
        return CodeChange::Meaning;
    const int common = words.same + words.meaning;
    const bool areAllPaired = words.onlyOne.empty() && words.onlyOther.empty();
    const bool isOneWithin = words.onlyOne.empty() || words.onlyOther.empty();
    const bool haveSameNumbers = one.numbers == other.numbers;
    if (areAllPaired && words.meaning == 0 && words.isInOrder && haveSameNumbers
        && one.content.size() == other.content.size() && one.fillers == other.fillers && common > 0)
        return CodeChange::Spelling;
    if (common == 0)
        return isOneWithin && haveSameNumbers && !one.numbers.empty() ? CodeChange::Wording : CodeChange::Meaning;
    if (isOneWithin)
        return areOtherRelatives(one, words) ? CodeChange::Meaning : CodeChange::Wording;
    const size_t larger = std::max(one.content.size(), other.content.size());
    return size_t(common) * 2 > larger ? CodeChange::Wording : CodeChange::Meaning;
}

} // namespace

CodeChange wordingChange(const QString &before, const QString &after)
{
    if (before == after)
        return CodeChange::None;
    if (before.compare(after, Qt::CaseInsensitive) == 0)
        return CodeChange::Spelling;
    const CodeLabel one(before);
    const CodeLabel other(after);
    if (one.squeezed.isEmpty() != other.squeezed.isEmpty())
        return CodeChange::Wording;
    if (one.squeezed.isEmpty() && before.simplified() != after.simplified())
        return CodeChange::Meaning;
    if (one.squeezed == other.squeezed)
        return CodeChange::Spelling;
    if (areInitials(one, other) || isWithRemark(before, after) || isWithRemark(after, before))
        return CodeChange::Wording;
    const bool haveOtherNumbers = !one.numbers.empty() && !other.numbers.empty() && one.numbers != other.numbers;
    const bool haveNumbers = !one.numbers.empty() || !other.numbers.empty();
    if (haveOtherNumbers || (haveNumbers && one.comparisons != other.comparisons) || one.isNegated != other.isNegated
        || haveOtherDirections(one, other) || haveOtherSingleLetters(one, other))
        return CodeChange::Meaning;
    return changeOfWords(one, other);
}

} // namespace vanlayout
