#ifndef LAYOUT_SEARCH_SEARCH_H
#define LAYOUT_SEARCH_SEARCH_H

#include "model/Layout.h"
#include "vanlayout_export.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>

/// Search for variables by words and codes.
namespace vanlayout
{

class SearchTerms;

/// The texts of an item that are searched. Names of value sets, and their labels, which are often those of another
/// item, are not.
enum class SearchPlace {
    Name,  ///< the name and the aliases
    Label, ///< the labels of the item and of its occurrences, in every language
    Value, ///< the labels of the values in all value sets, in every language
    Note,  ///< the notes of the item, of its value sets and of their values
};

/// The words in the JSON form: "name", "label", "value", "note".
VANLAYOUT_EXPORT QString wordOf(SearchPlace place);

struct VANLAYOUT_EXPORT SearchOptions {
    /// Each entry may have several words. A word is found at the beginning of a word of a text; a name also has words
    /// after each `_`. Case, accents and the kind of apostrophe are ignored: `eleve` finds "Élève", `l'eau` finds
    /// "l’eau" and, because an article of one or two letters is elided, "eau".
    QStringList words;
    /// The words are patterns, each of which may be found anywhere in a text as it is written, ignoring case but not
    /// accents.
    bool isPattern = false;
    /// Codes, each of which is found if a value of the item, or its missing values, have it or a range that contains
    /// it: as a number for a numeric item (`098` is `98`), and as a text for any other.
    QStringList codes;
    /// Whether one word or code is enough; otherwise an item must have all of them, each in any of its texts.
    bool isAny = false;
    QVector<SearchPlace> places; ///< where words are searched; empty for everywhere
    QString language;            ///< code of the language of the labels in the result; empty for the primary one
};

/// A value of a hit: one entry for each code or range.
struct VANLAYOUT_EXPORT SearchedValue {
    QString from;  ///< empty for a value without codes
    QString to;    ///< empty if it is one code
    QString label; ///< in the language of the result; the label that was found if that one was not
};

/// An item that was found.
struct VANLAYOUT_EXPORT SearchHit {
    QString level;
    QString record; ///< `(ids)` for an id item
    QString item;
    /// The place of the text with most of the words; the first one in the order of the enumeration.
    SearchPlace where = SearchPlace::Name;
    QString language; ///< of the label that was found, if it has one
    QString text;     ///< the text with most of the words, as it is written
    QString label;    ///< of the item
    /// Values whose labels have one of the words, or that have one of the codes; each once.
    QVector<SearchedValue> values;
};

/// The items of one layout that were found.
struct VANLAYOUT_EXPORT SearchResult {
    QVector<SearchHit> hits; ///< in the order of the layout; id items before the records of their level
    /// Number of texts on which a pattern was given up because it needed too many steps.
    int unfinishedTexts = 0;
};

/// A search that is applied to several layouts. An object may be used by several threads at once.
class VANLAYOUT_EXPORT Search
{
public:
    explicit Search(const SearchOptions &options);
    ~Search();
    Search(const Search &) = delete;
    Search &operator=(const Search &) = delete;

    /// The reason why nothing can be searched: a word without a letter or digit, an invalid pattern, or nothing to
    /// search. Empty if there is none.
    QString problem() const;
    /// The items that have the words and codes; none if there is a problem().
    SearchResult hitsIn(const Layout &layout) const;

private:
    std::unique_ptr<const SearchTerms> terms;
    bool isAny;
    QString language;
};

} // namespace vanlayout

Q_DECLARE_TYPEINFO(vanlayout::SearchedValue, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::SearchHit, Q_MOVABLE_TYPE);

#endif
