#include "search/SearchTerms_p.h"

#include "compare/DiffCodes_p.h"
#include "text/Words_p.h"

#include <algorithm>
#include <iterator>
#include <tuple>

namespace vanlayout
{

namespace
{

constexpr QChar apostrophe('\'');

// A pattern that needs more steps on a text is given up, so that no text keeps a search busy for long.
constexpr char stepLimit[] = "(*LIMIT_MATCH=100000)";

QString withoutApostrophes(const QString &words)
{
    return QString(words).remove(apostrophe);
}

// The word after an elided article, such as "eau" of "l'eau"; empty if there is none.
QString afterArticle(const QString &word)
{
    constexpr int longestArticle = 2;
    const auto place = word.indexOf(apostrophe);
    return place > 0 && place <= longestArticle ? word.mid(place + 1) : QString();
}

QString withoutUnderscoreAtBegin(const QString &word)
{
    const auto *const begin
        = std::find_if(word.begin(), word.end(), [](QChar unit) { return unit != QLatin1Char('_'); });
    return word.mid(int(begin - word.begin()));
}

std::optional<double> numberOf(const QString &canonical)
{
    bool isNumber = false;
    const double number = canonical.toDouble(&isNumber);
    return isNumber ? std::optional<double>(number) : std::nullopt;
}

} // namespace

void unite(FoundTerms &found, const FoundTerms &others)
{
    if (others.empty())
        return;
    FoundTerms all;
    all.reserve(found.size() + others.size());
    std::set_union(found.begin(), found.end(), others.begin(), others.end(), std::back_inserter(all));
    found = std::move(all);
}

SearchTerms::SearchTerms(const SearchOptions &options)
    : places(options.places)
{
    for (const QString &word : options.words)
        options.isPattern ? addPattern(word) : addWords(word);
    std::sort(prefixes.begin(), prefixes.end(), [](const Prefix &left, const Prefix &right) {
        return std::tie(left.text, left.word) < std::tie(right.text, right.word);
    });
    for (const QString &code : options.codes)
        addCode(code);
    if (reason.isEmpty() && count() == 0)
        reason = QStringLiteral("there is no word to find");
}

void SearchTerms::addWords(const QString &argument)
{
    const int before = wordCount;
    const QStringList parts = foldedWords(argument).split(QLatin1Char(' '));
    for (const QString &part : parts) {
        const QString word = withoutUnderscoreAtBegin(part);
        if (word.isEmpty())
            continue;
        for (const QString &spelling : { word, withoutApostrophes(word), afterArticle(word) }) {
            if (!spelling.isEmpty())
                prefixes.push_back({ spelling, wordCount });
        }
        ++wordCount;
    }
    if (wordCount == before && reason.isEmpty())
        reason = QStringLiteral("the word \"%1\" has no letter or digit to find").arg(argument);
}

void SearchTerms::addPattern(const QString &pattern)
{
    const auto options = QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption;
    const QRegularExpression plain(pattern, options);
    if (!plain.isValid() && reason.isEmpty())
        reason = QStringLiteral("the pattern \"%1\" is invalid at character %2: %3")
                     .arg(pattern, QString::number(plain.patternErrorOffset() + 1), plain.errorString());
    else if (pattern.isEmpty() && reason.isEmpty())
        reason = QStringLiteral("the pattern is empty");
    patterns.emplace_back(QLatin1String(stepLimit) + pattern, options);
    patterns.back().optimize();
    ++wordCount;
}

void SearchTerms::addCode(const QString &code)
{
    const QString canonical = canonicalCode(code, CodeType::Number);
    if (canonical.isEmpty() && reason.isEmpty())
        reason = QStringLiteral("the code is empty");
    codes.push_back({ canonicalCode(code, CodeType::Text), canonical, numberOf(canonical) });
}

FoundTerms SearchTerms::wordsIn(const QString &text, SearchPlace place, int &unfinished) const
{
    if (text.isEmpty() || wordCount == 0 || !isSearched(place))
        return {};
    if (!patterns.empty())
        return patternsIn(text, unfinished);
    FoundTerms found;
    const QString words = foldedWords(text);
    findPrefixes(words, found);
    if (words.contains(apostrophe))
        findPrefixes(withoutApostrophes(words), found);
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

// At each beginning of a word, the prefixes that agree with the text so far are narrowed character by character. The
// work does not grow with the number of words that are searched.
void SearchTerms::findPrefixes(QStringView words, FoundTerms &found) const
{
    const auto unitAt = [](const Prefix &prefix, qsizetype place) { return QStringView(prefix.text).at(place); };
    for (qsizetype begin = 0; begin < words.size(); ++begin) {
        if (!isWordBegin(words, begin))
            continue;
        auto first = prefixes.begin();
        auto last = prefixes.end();
        for (qsizetype depth = 0; first != last; ++depth) {
            for (; first != last && first->text.size() == depth; ++first)
                found.push_back(first->word);
            if (begin + depth == words.size())
                break;
            const QChar unit = words.at(begin + depth);
            const auto isBefore = [&](const Prefix &prefix) { return unitAt(prefix, depth) < unit; };
            const auto isEqual = [&](const Prefix &prefix) { return unitAt(prefix, depth) == unit; };
            first = std::partition_point(first, last, isBefore);
            last = std::partition_point(first, last, isEqual);
        }
    }
}

FoundTerms SearchTerms::patternsIn(const QString &text, int &unfinished) const
{
    FoundTerms found;
    bool isUnfinished = false;
    for (size_t i = 0; i < patterns.size(); ++i) {
        const QRegularExpressionMatch match = patterns.at(i).match(text);
        isUnfinished = isUnfinished || !match.isValid();
        if (match.hasMatch())
            found.push_back(int(i));
    }
    unfinished += isUnfinished ? 1 : 0;
    return found;
}

FoundTerms SearchTerms::codesIn(const Range &range, bool areTexts) const
{
    FoundTerms found;
    for (size_t i = 0; i < codes.size(); ++i) {
        if (areTexts ? hasText(range, codes.at(i)) : hasNumber(range, codes.at(i)))
            found.push_back(wordCount + int(i));
    }
    return found;
}

bool SearchTerms::hasText(const Range &range, const Code &code)
{
    const QString from = canonicalCode(range.from, CodeType::Text);
    if (range.to.isEmpty())
        return from == code.text;
    return from <= code.text && code.text <= canonicalCode(range.to, CodeType::Text);
}

// Codes such as `.a` are no numbers; they are compared as texts.
bool SearchTerms::hasNumber(const Range &range, const Code &code)
{
    const QString from = canonicalCode(range.from, CodeType::Number);
    if (range.to.isEmpty())
        return from == code.canonical;
    const std::optional<double> least = numberOf(from);
    const std::optional<double> largest = numberOf(canonicalCode(range.to, CodeType::Number));
    if (!code.number)
        return !least && !largest && hasText(range, code);
    return least && largest && *least <= *code.number && *code.number <= *largest;
}

} // namespace vanlayout
