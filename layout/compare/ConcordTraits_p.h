#ifndef LAYOUT_COMPARE_CONCORDTRAITS_P_H
#define LAYOUT_COMPARE_CONCORDTRAITS_P_H

#include "compare/ConcordRound_p.h"
#include "compare/ConcordWords_p.h"

#include <map>

namespace vanlayout
{

/// The parts of a name, as numbers of texts.
struct ConcordName {
    static constexpr int none = -1;

    int whole = none;        ///< name with case folded
    int prefix = none;       ///< letters at the beginning: "HV" of HV009
    int rest = none;         ///< what follows, numbers without leading zeros: "9"; none if there is none
    int section = none;      ///< prefix and first digit: "HV0"
    int firstOf = none;      ///< the whole name without `_1` at its end
    int words = 0;           ///< index in ConcordCorpus::nameWordLists(): words of three or more letters
    bool isMnemonic = false; ///< whether it has a word of several letters, such as Q5_RELIGION or SEX
};

/// A label of an item in one language.
struct ConcordText {
    int language = 0;
    int label = 0; ///< index in ConcordCorpus::labels()
};

/// The language of a text that states none.
constexpr int unknownLanguage = 0;

/// The traits of an item by which it is matched.
struct ConcordTraits {
    ConcordName name;
    std::vector<ConcordText> texts;      ///< labels with words, in the order of the file
    int values = 0;                      ///< index in ConcordCorpus::valueLists(); 0 if there are none
    int valueLanguage = unknownLanguage; ///< of the labels of the values
    int container = 0;                   ///< number of its record: level and name with case folded
    int type = 0;
    int length = 0;
    int decimals = 0;
    int occurrences = 1;
    bool isSubitem = false;
    bool isId = false;
    bool isDictionary = false;
};

/// The terms of the values of an item.
struct ConcordValueList {
    ConcordTerms::List labelled; ///< codes with labels, and ranges
    ConcordTerms::List labels;   ///< labels alone
    ConcordTerms::List codes;    ///< codes alone
};

/// The traits of the items of all rounds, with texts and values that are the same stored once.
class ConcordCorpus
{
public:
    explicit ConcordCorpus(const std::vector<ConcordRound> &rounds);

    const ConcordTraits &at(const RoundPlace &place) const { return traits[size_t(place.round)][size_t(place.item)]; }
    const std::vector<ConcordTerms::List> &labels() const { return labelList; }
    /// Whether at most one item of a round has the label.
    bool isUnique(int label) const { return labelCounts[size_t(label)] <= roundCount; }
    /// Whether one of two labels is the beginning of the other one, cut at the length that a format permits.
    bool isCut(int label, int otherLabel) const;
    const std::vector<ConcordValueList> &valueLists() const { return valueListList; }
    const std::vector<ConcordTerms::List> &nameWordLists() const { return nameWordList; }
    const ConcordTerms &nameWords() const { return nameTerms; }
    ConcordWords &words() { return labelWords; }
    const ConcordWords &words() const { return labelWords; }
    const ConcordTerms &values() const { return valueTerms; }
    /// One more than the largest number of a name, of a part of a name, or of a container.
    int nameCount() const { return names.size(); }
    /// The number of items of a round on average.
    double itemsOfRound() const { return perRound; }

private:
    void findCommonLanguage(const std::vector<ConcordRound> &rounds);
    ConcordTraits traitsOf(const ConcordRound &round, const RoundItem &place);
    int languageOfValues(const Layout &layout);
    ConcordName nameOf(const QString &name);
    int nameWordsOf(const QString &foldedName);
    int labelOf(const QString &text, const QString &name);
    int termOf(const QString &label);
    int valuesOf(const Item &item);
    int listOf(const ConcordValueList &list);
    void count(const ConcordTraits &item);

    ConcordWords labelWords;
    ConcordTerms valueTerms;
    ConcordTerms nameTerms;
    ConcordNumbers names;
    ConcordNumbers languages;
    QString commonLanguage; // the language that most rounds have
    ConcordNumbers types;
    KeyedMap<QString, int> labelOfText;
    KeyedMap<QString, int> listOfKey;
    KeyedMap<QString, int> termOfLabel; // of values; -1 for one without words
    std::vector<ConcordTerms::List> labelList;
    std::map<ConcordTerms::List, int> labelOfWords;
    std::vector<QString> labelTexts; // folded
    std::vector<int> labelCounts;    // the number of items with the label
    int roundCount = 0;
    std::vector<ConcordTerms::List> nameWordList;
    KeyedMap<QString, int> wordsOfName;
    std::vector<ConcordValueList> valueListList;
    std::vector<std::vector<ConcordTraits>> traits; // by round and item
    double perRound = 0;
};

} // namespace vanlayout

#endif
