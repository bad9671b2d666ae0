#include "compare/ConcordTraits_p.h"

#include "text/Words_p.h"

#include <algorithm>
#include <map>

namespace vanlayout
{

namespace
{

bool isDigit(QChar unit)
{
    return unit >= QLatin1Char('0') && unit <= QLatin1Char('9');
}

// The text with each number without leading zeros.
QString withoutZeros(const QString &text)
{
    QString result;
    for (int i = 0; i < text.size(); ++i) {
        const bool isLeading = text.at(i) == QLatin1Char('0') && (i == 0 || !isDigit(text.at(i - 1)));
        int next = i;
        while (isLeading && next + 1 < text.size() && text.at(next) == QLatin1Char('0') && isDigit(text.at(next + 1)))
            ++next;
        i = next;
        result += text.at(i);
    }
    return result;
}

// Whether there is a word of at least four letters, or the name is made of letters alone.
bool isMnemonic(const QString &name)
{
    int letters = 0;
    int most = 0;
    bool hasDigit = false;
    for (const QChar unit : name) {
        letters = unit.isLetter() ? letters + 1 : 0;
        most = std::max(most, letters);
        hasDigit = hasDigit || unit.isDigit();
    }
    return most >= 4 || !hasDigit;
}

// The words of the label of a value without plurals and words of little meaning, sorted.
QString comparableText(const QString &label)
{
    constexpr int longest = 200;
    const QStringList words = wordsOf(label.left(longest));
    QStringList forms;
    for (const QString &word : words) {
        if (!ConcordWords::isFiller(word))
            forms.append(ConcordWords::commonForm(word));
    }
    forms.sort();
    return (forms.isEmpty() ? words : forms).join(QLatin1Char(' '));
}

} // namespace

ConcordCorpus::ConcordCorpus(const std::vector<ConcordRound> &rounds)
{
    labelList.emplace_back();
    labelTexts.emplace_back();
    labelCounts.push_back(0);
    labelOfWords.emplace(ConcordTerms::List(), 0);
    roundCount = int(rounds.size());
    nameWordList.emplace_back();
    valueListList.emplace_back();
    languages.of(QString()); // is unknownLanguage
    findCommonLanguage(rounds);
    int items = 0;
    traits.reserve(rounds.size());
    for (const ConcordRound &round : rounds) {
        traits.emplace_back();
        traits.back().reserve(size_t(round.size()));
        for (const RoundItem &item : round.items()) {
            traits.back().push_back(traitsOf(round, item));
            count(traits.back().back());
        }
        items += round.size();
    }
    constexpr double furtherWords = 100;
    constexpr double furtherValues = 20;
    labelWords.terms().weigh(int(rounds.size()), items, furtherWords);
    nameTerms.weigh(int(rounds.size()), items, furtherWords);
    valueTerms.weigh(int(rounds.size()), items, furtherValues);
    perRound = double(items) / double(std::max<size_t>(rounds.size(), 1));
}

// The labels of values are compared in one language, because most surveys have one that all rounds share.
void ConcordCorpus::findCommonLanguage(const std::vector<ConcordRound> &rounds)
{
    std::map<QString, int> counts;
    int most = 0;
    for (const ConcordRound &round : rounds) {
        for (const Language &language : round.layout().languages) {
            const int count = ++counts[language.name.toCaseFolded()];
            if (count > most) {
                most = count;
                commonLanguage = language.name;
            }
        }
    }
}

void ConcordCorpus::count(const ConcordTraits &item)
{
    ConcordTerms::List words;
    for (const ConcordText &text : item.texts) {
        ++labelCounts[size_t(text.label)];
        words.insert(words.end(), labelList[size_t(text.label)].begin(), labelList[size_t(text.label)].end());
    }
    labelWords.terms().count(ConcordTerms::sorted(std::move(words)));
    nameTerms.count(nameWordList[size_t(item.name.words)]);
    const ConcordValueList &values = valueListList[size_t(item.values)];
    valueTerms.count(values.labelled);
    valueTerms.count(values.labels);
    valueTerms.count(values.codes);
}

ConcordTraits ConcordCorpus::traitsOf(const ConcordRound &round, const RoundItem &place)
{
    const Item &item = *place.item;
    ConcordTraits made;
    made.name = nameOf(item.name);
    for (const Label &part : item.labels.parts) {
        const int label = labelOf(part.text, item.name);
        if (label > 0)
            made.texts.push_back({ languages.of(part.language.toCaseFolded()), label });
    }
    made.values = valuesOf(item);
    made.valueLanguage = languageOfValues(round.layout());
    made.container = names.of(QString::number(place.depth) + QLatin1Char('/') + place.recordName().toCaseFolded());
    made.type = types.of(item.type);
    made.length = item.length;
    made.decimals = item.decimals;
    made.occurrences = item.occurrences;
    made.isSubitem = item.isSubitem;
    made.isId = !place.record;
    made.isDictionary = round.isDictionary();
    return made;
}

int ConcordCorpus::languageOfValues(const Layout &layout)
{
    const auto isCommon
        = [this](const Language &language) { return language.name.compare(commonLanguage, Qt::CaseInsensitive) == 0; };
    if (layout.languages.isEmpty())
        return unknownLanguage;
    const bool hasCommon = std::any_of(layout.languages.begin(), layout.languages.end(), isCommon);
    return languages.of((hasCommon ? commonLanguage : layout.languages.constFirst().name).toCaseFolded());
}

ConcordName ConcordCorpus::nameOf(const QString &name)
{
    const QString folded = name.toCaseFolded();
    const auto *const digit = std::find_if(folded.begin(), folded.end(), isDigit);
    const int prefix = int(digit - folded.begin());
    ConcordName parts;
    parts.whole = names.of(folded);
    parts.prefix = names.of(folded.left(prefix) + QLatin1Char('*'));
    parts.section = names.of(folded.left(prefix + 1) + QLatin1Char('*'));
    if (prefix < folded.size())
        parts.rest = names.of(QLatin1Char('*') + withoutZeros(folded.mid(prefix)));
    if (folded.endsWith(QLatin1String("_1")))
        parts.firstOf = names.of(folded.left(folded.size() - 2));
    parts.words = nameWordsOf(folded);
    parts.isMnemonic = isMnemonic(folded);
    return parts;
}

int ConcordCorpus::nameWordsOf(const QString &foldedName)
{
    constexpr int minLetters = 3;
    const auto [found, isNew] = wordsOfName.emplace(foldedName, 0);
    if (!isNew)
        return found->second;
    ConcordTerms::List words;
    QString word;
    const auto add = [&] {
        if (word.size() >= minLetters)
            words.push_back(nameTerms.numberOf(word));
        word.clear();
    };
    for (const QChar unit : foldedName) {
        if (unit.isLetter())
            word += unit;
        else
            add();
    }
    add();
    if (!words.empty()) {
        found->second = int(nameWordList.size());
        nameWordList.push_back(ConcordTerms::sorted(std::move(words)));
    }
    return found->second;
}

int ConcordCorpus::labelOf(const QString &text, const QString &name)
{
    constexpr int longest = 300;
    const QString stripped = withoutQuestionNumber(text, name);
    const auto [found, isNew] = labelOfText.emplace(stripped, 0);
    if (isNew) {
        const ConcordTerms::List words = labelWords.wordsOfLabel(stripped, QString());
        const auto [known, isNewList] = labelOfWords.emplace(words, int(labelList.size()));
        if (isNewList) {
            labelList.push_back(words);
            labelTexts.push_back(foldedText(stripped.left(longest)).simplified());
            labelCounts.push_back(0);
        }
        found->second = known->second;
    }
    return found->second;
}

bool ConcordCorpus::isCut(int label, int otherLabel) const
{
    constexpr int shortest = 25;
    const QString &one = labelTexts[size_t(label)];
    const QString &other = labelTexts[size_t(otherLabel)];
    const QString &shorter = one.size() < other.size() ? one : other;
    const QString &longer = one.size() < other.size() ? other : one;
    return shorter.size() >= shortest && longer.startsWith(shorter);
}

// Returns the term of the label of a value, or -1 if it has no words.
int ConcordCorpus::termOf(const QString &label)
{
    const auto [found, isNew] = termOfLabel.emplace(label, -1);
    if (isNew) {
        const QString text = comparableText(label);
        if (!text.isEmpty())
            found->second = valueTerms.numberOf(text);
    }
    return found->second;
}

int ConcordCorpus::valuesOf(const Item &item)
{
    constexpr int maxTerms = 300;
    const ValueSet *const set = codedSetOf(item);
    if (!set)
        return 0;
    const CodeType type = codeTypeOf(item);
    ConcordValueList list;
    for (const Value &value : set->values) {
        const int label = termOf(value.labels.in(commonLanguage));
        if (label >= 0)
            list.labels.push_back(label);
        for (const Range &range : value.ranges) {
            const CodeKey key = keyOf(value, range, type);
            const int code
                = valueTerms.numberOf(key.to.isEmpty() ? QLatin1Char('=') + key.from
                                                       : QLatin1Char('=') + key.from + QLatin1Char(':') + key.to);
            list.codes.push_back(code);
            if (label >= 0)
                list.labelled.push_back(valueTerms.numberOf(label, code));
        }
        if (list.codes.size() > maxTerms)
            break;
    }
    return listOf(list);
}

int ConcordCorpus::listOf(const ConcordValueList &list)
{
    ConcordValueList sorted
        = { ConcordTerms::sorted(list.labelled), ConcordTerms::sorted(list.labels), ConcordTerms::sorted(list.codes) };
    QString key;
    for (const ConcordTerms::List *const terms : { &sorted.labelled, &sorted.labels, &sorted.codes }) {
        for (const int term : *terms)
            key += QString::number(term) + QLatin1Char(' ');
        key += QLatin1Char('/');
    }
    const auto [found, isNew] = listOfKey.emplace(key, int(valueListList.size()));
    if (isNew)
        valueListList.push_back(std::move(sorted));
    return found->second;
}

} // namespace vanlayout
