#include "compare/ConcordWords_p.h"

#include "text/Words_p.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace vanlayout
{

namespace
{

// Words with little meaning in the languages of most surveys: English, French, Spanish, Portuguese.
const KeyedSet<QString> &fillers()
{
    static const KeyedSet<QString> words = [] {
        const QStringList list
            = QStringLiteral(
                  "a an the of in on at to for from by with and or is are was were be been do does did has have had "
                  "this that these those it its any you your he she they his her their him them s what which who "
                  "how if as into "
                  "le la les l un une des du de d et ou en au aux dans sur pour par est sont a ce cette ces il "
                  "elle qui que quel quelle quels quelles avez vous votre vos son sa ses on avec "
                  "el los las una unos del y o en con por para es su sus que cual ha este esta "
                  "os as um uma do da dos das e ou na nos nas ao com seu sua qual")
                  .split(QLatin1Char(' '));
        return KeyedSet<QString>(list.begin(), list.end());
    }();
    return words;
}

struct Abbreviation {
    const char *text;
    const char *word;
};

// Abbreviations that are not the beginning of their word, and words that questions use for that of a label.
constexpr Abbreviation abbreviations[] = {
    { "no", "number" },       { "nr", "number" },      { "nb", "nombre" },      { "nbr", "number" },
    { "nbre", "nombre" },     { "hh", "household" },   { "hhld", "household" }, { "hld", "household" },
    { "yr", "year" },         { "yrs", "year" },       { "qty", "quantity" },   { "dk", "know" },
    { "govt", "government" }, { "pct", "percent" },    { "wk", "week" },        { "mth", "month" },
    { "hr", "hour" },         { "hrs", "hour" },       { "pers", "person" },    { "gender", "sex" },
    { "old", "age" },         { "born", "birth" },     { "dob", "birth" },      { "telephone", "phone" },
    { "cellphone", "phone" }, { "faith", "religion" },
};

constexpr Abbreviation irregularPlurals[] = {
    { "children", "child" }, { "men", "man" },        { "women", "woman" },
    { "people", "person" },  { "wives", "wife" },     { "travaux", "travail" },
    { "animaux", "animal" }, { "chevaux", "cheval" }, { "journaux", "journal" },
};

bool hasDigit(const QString &word)
{
    return std::any_of(word.begin(), word.end(), [](QChar unit) { return unit.isDigit(); });
}

int commonBeginning(const QString &one, const QString &other)
{
    const int most = int(std::min(one.size(), other.size()));
    int count = 0;
    while (count < most && one.at(count) == other.at(count))
        ++count;
    return count;
}

// Whether a question number is possible: there is a digit among the first characters, or a mark after the first one.
bool canBeNumbered(const QString &text)
{
    constexpr int longest = 32;
    const int count = int(std::min<qsizetype>(text.size(), longest));
    const bool hasDigit = std::any_of(text.begin(), text.begin() + count, [](QChar unit) { return unit.isDigit(); });
    return hasDigit || (count > 1 && !text.at(0).isLetter()) || (count > 1 && !text.at(1).isLetter());
}

// Returns the number of characters of a name, or of its number, at the beginning of a label.
int lengthOfName(const QString &text, const QString &name)
{
    const auto isNumber = [](QChar unit) { return unit.isDigit(); };
    const auto *const digit = std::find_if(name.begin(), name.end(), isNumber);
    // A name that is a word is kept: the label "Sex" of the item SEX, "Notes5" of NOTES5.
    constexpr int lettersOfWord = 4;
    if (digit == name.end() || (digit - name.begin() >= lettersOfWord && text.compare(name, Qt::CaseInsensitive) == 0))
        return 0;
    const QString number = name.mid(int(digit - name.begin()));
    const QString digits = number.left(int(std::find_if_not(digit, name.end(), isNumber) - digit));
    for (const QString *const part : { &name, &number, &digits }) {
        const int length = int(part->size());
        if (text.size() > length && text.startsWith(*part, Qt::CaseInsensitive) && !text.at(length).isDigit()
            && (part == &digits || !text.at(length).isLetter()))
            return length;
    }
    return text.compare(name, Qt::CaseInsensitive) == 0 ? int(text.size()) : 0;
}

} // namespace

QString withoutQuestionNumber(const QString &label, const QString &name)
{
    // "Q12a -", "3.1)", "(b)"
    static const QRegularExpression marked(
        QStringLiteral("^[\\(\\[]?(?:[A-Za-z]{0,4}[0-9]{1,4}[A-Za-z]?(?:[._/-][0-9A-Za-z]{1,3})*|[A-Za-z])"
                       "[\\)\\]]?\\s*[.:\\)\\]=-](?=[\\s\\p{L}(])"));
    // "Q12a ", "A1_", and a number of three or four digits that is not a year: "309 Religion"
    static const QRegularExpression lettered(
        QStringLiteral("^[A-Za-z]{1,4}[0-9]{1,4}[A-Za-z]?(?:[._-][0-9][0-9A-Za-z]{0,2})*[\\s_]"));
    static const QRegularExpression numbered(QStringLiteral("^(?!(?:19|20)[0-9]{2}\\s)[0-9]{3,4}[A-Za-z]{0,2}\\s"));
    static const QRegularExpression rest(QStringLiteral("^[A-Za-z]?[\\s_.:\\)\\]=-]+(?=.)"));
    QString text = label.trimmed();
    if (!canBeNumbered(text))
        return text;
    int length = lengthOfName(text, name);
    if (length == text.size())
        return QString();
    for (const QRegularExpression *const pattern : { &marked, &lettered, &numbered }) {
        if (length == 0)
            length = pattern->match(text).capturedLength();
    }
    if (length == 0)
        return text;
    QString after = text.mid(length);
    const QRegularExpressionMatch marks = rest.match(after);
    return marks.hasMatch() ? after.mid(marks.capturedLength()) : after;
}

bool ConcordWords::isFiller(const QString &word)
{
    return fillers().count(word) > 0;
}

// The endings are those of English and Romance languages.
QString ConcordWords::stemOf(const QString &word)
{
    for (const Abbreviation &plural : irregularPlurals) {
        if (word == QLatin1String(plural.text))
            return QLatin1String(plural.word);
    }
    QString stem = word;
    if (stem.size() > 4 && stem.endsWith(QLatin1String("ies")))
        stem = stem.left(stem.size() - 3) + QLatin1Char('y');
    else if (stem.size() > 3 && (stem.endsWith(QLatin1Char('s')) || stem.endsWith(QLatin1Char('x'))))
        stem.chop(1);
    if (stem.size() > 4 && stem.endsWith(QLatin1Char('e')))
        stem.chop(1);
    return stem;
}

QString ConcordWords::commonForm(const QString &word)
{
    const auto *const known
        = std::find_if(std::begin(abbreviations), std::end(abbreviations),
                       [&](const Abbreviation &abbreviation) { return word == QLatin1String(abbreviation.text); });
    return stemOf(known != std::end(abbreviations) ? QString(QLatin1String(known->word)) : word);
}

int ConcordWords::typingErrors(const QString &one, const QString &other)
{
    constexpr int most = 24;
    const int rows = int(one.size());
    const int columns = int(other.size());
    if (rows > most || columns > most || std::abs(rows - columns) > 2)
        return 3;
    std::array<std::array<int, most + 1>, most + 1> errors;
    for (int i = 0; i <= rows; ++i) {
        for (int j = 0; j <= columns; ++j) {
            int &least = errors[size_t(i)][size_t(j)];
            least = i == 0 ? j : i;
            if (i == 0 || j == 0)
                continue;
            const int wrong = one.at(i - 1) == other.at(j - 1) ? 0 : 1;
            least = std::min({ errors[size_t(i - 1)][size_t(j)] + 1, errors[size_t(i)][size_t(j - 1)] + 1,
                               errors[size_t(i - 1)][size_t(j - 1)] + wrong });
            if (i > 1 && j > 1 && one.at(i - 1) == other.at(j - 2) && one.at(i - 2) == other.at(j - 1))
                least = std::min(least, errors[size_t(i - 2)][size_t(j - 2)] + 1);
        }
    }
    return errors[size_t(rows)][size_t(columns)];
}

int ConcordWords::numberOf(const QString &word)
{
    const int before = words.size();
    const int number = words.numberOf(commonForm(word));
    constexpr double ofFiller = 0.7;
    if (number == before) {
        sides.push_back(sideOf(word));
        initials.push_back(word.at(0));
        areNumbers.push_back(hasDigit(word) ? 1 : 0);
        if (isFiller(word))
            words.limit(number, ofFiller);
    }
    return number;
}

ConcordTerms::List ConcordWords::wordsOfLabel(const QString &label, const QString &name)
{
    constexpr int maxWords = 40;
    const QStringList list = vanlayout::wordsOf(withoutQuestionNumber(label, name).left(1000));
    ConcordTerms::List numbers;
    for (const QString &word : list) {
        if (numbers.size() < maxWords)
            numbers.push_back(numberOf(word));
    }
    return ConcordTerms::sorted(std::move(numbers));
}

double ConcordWords::similarity(const QString &one, const QString &other)
{
    constexpr double ofAbbreviation = 0.7;
    constexpr double ofTypingError = 0.8;
    constexpr double ofBeginning = 0.6;
    if (hasDigit(one) || hasDigit(other) || one.at(0) != other.at(0))
        return 0;
    const int shorter = int(std::min(one.size(), other.size()));
    const int longer = int(std::max(one.size(), other.size()));
    const int same = commonBeginning(one, other);
    if (same == shorter && shorter >= 3 && longer >= 5)
        return ofAbbreviation;
    if (shorter >= 5 && typingErrors(one, other) <= (shorter >= 9 ? 2 : 1))
        return ofTypingError;
    return same >= 5 && same * 5 >= shorter * 3 ? ofBeginning : 0;
}

double ConcordWords::knownSimilarity(int one, int other)
{
    constexpr size_t maxKnown = 1000000;
    if (similarities.size() > maxKnown)
        similarities.clear();
    const auto [found, isNew] = similarities.emplace((quint64(one) << 32) | quint64(other), 0);
    if (isNew)
        found->second = similarity(words.textOf(one), words.textOf(other));
    return found->second;
}

bool ConcordWords::areContrary(int one, int other) const
{
    return (areNumbers[size_t(one)] && areNumbers[size_t(other)])
        || sides[size_t(one)].isOpposite(sides[size_t(other)]);
}

ConcordOverlap ConcordWords::overlapOfLabels(const ConcordTerms::List &one, const ConcordTerms::List &other)
{
    ConcordTerms::List left;
    ConcordTerms::List right;
    std::set_difference(one.begin(), one.end(), other.begin(), other.end(), std::back_inserter(left));
    std::set_difference(other.begin(), other.end(), one.begin(), one.end(), std::back_inserter(right));
    ConcordOverlap overlap = overlapOf(words, one, other);
    for (const int word : left)
        overlap.isContrary = overlap.isContrary
            || std::any_of(right.begin(), right.end(), [&](int candidate) { return areContrary(word, candidate); });
    for (const int word : left) {
        double best = 0;
        auto partner = right.end();
        for (auto candidate = right.begin(); candidate != right.end(); ++candidate) {
            if (initials[size_t(word)] != initials[size_t(*candidate)])
                continue;
            const double similarity = knownSimilarity(word, *candidate);
            if (similarity > best) {
                best = similarity;
                partner = candidate;
            }
        }
        if (partner == right.end())
            continue;
        const double both = best * (words.weightOf(word) + words.weightOf(*partner));
        overlap.common += both / 2;
        overlap.different -= both;
        right.erase(partner);
    }
    return overlap;
}

} // namespace vanlayout
