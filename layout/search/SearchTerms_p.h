#ifndef LAYOUT_SEARCH_SEARCHTERMS_P_H
#define LAYOUT_SEARCH_SEARCHTERMS_P_H

#include "search/Search.h"

#include <QRegularExpression>
#include <QStringView>

#include <optional>
#include <vector>

namespace vanlayout
{

/// Numbers of the terms that were found, ascending.
using FoundTerms = std::vector<int>;

/// Adds the terms of \a others to \a found.
void unite(FoundTerms &found, const FoundTerms &others);

/// The terms of a search: words or patterns, then codes; numbered from 0. Objects may be used by several threads at
/// once.
class SearchTerms
{
public:
    explicit SearchTerms(const SearchOptions &options);

    /// Like Search::problem().
    const QString &problem() const { return reason; }
    int count() const { return wordCount + int(codes.size()); }
    bool hasCodes() const { return !codes.empty(); }
    bool isSearched(SearchPlace place) const { return places.isEmpty() || places.contains(place); }

    /// The words of a text; none if its place is not searched. \a unfinished is incremented if a pattern is given up.
    FoundTerms wordsIn(const QString &text, SearchPlace place, int &unfinished) const;
    /// The codes that a range contains. Codes of an item that is not numeric are \a areTexts.
    FoundTerms codesIn(const Range &range, bool areTexts) const;

private:
    /// A text that a word may begin with. A word with an apostrophe has several.
    struct Prefix {
        QString text;
        int word = 0;
    };
    struct Code {
        QString text;
        QString canonical; ///< equal for equal numbers
        std::optional<double> number;
    };

    void addWords(const QString &argument);
    void addPattern(const QString &pattern);
    void addCode(const QString &code);
    void findPrefixes(QStringView words, FoundTerms &found) const;
    FoundTerms patternsIn(const QString &text, int &unfinished) const;
    static bool hasText(const Range &range, const Code &code);
    static bool hasNumber(const Range &range, const Code &code);

    QString reason;
    QVector<SearchPlace> places;
    int wordCount = 0;
    std::vector<Prefix> prefixes; ///< sorted by text
    std::vector<QRegularExpression> patterns;
    std::vector<Code> codes;
};

} // namespace vanlayout

#endif
