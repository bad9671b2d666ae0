#include "text/Words_p.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <vector>

namespace vanlayout
{

namespace
{

constexpr QChar blank(' ');
constexpr QChar apostrophe('\'');
constexpr QChar underscore('_');

struct Replacement {
    uint letter; ///< case-folded
    const char *text;
};

// clang-format off
// Characters for which people type others, although they do not decompose. Some of them decompose into a blank and an
// accent.
constexpr Replacement replacements[] = {
    {0x0060, "'"}, {0x00B4, "'"}, {0x02B9, "'"}, {0x02BB, "'"}, {0x02BC, "'"}, {0x02BD, "'"}, {0x02BE, "'"},
    {0x02BF, "'"}, {0x02C8, "'"}, {0x02CA, "'"}, {0x02CB, "'"}, {0x05F3, "'"}, {0x2018, "'"}, {0x2019, "'"},
    {0x201B, "'"}, {0x2032, "'"}, {0x2035, "'"}, {0xA78C, "'"}, {0xFF07, "'"},
    {0x00DF, "ss"}, {0x00E6, "ae"}, {0x00F0, "d"}, {0x00F8, "o"}, {0x00FE, "th"}, {0x0111, "d"}, {0x0127, "h"},
    {0x0131, "i"}, {0x0138, "k"}, {0x0142, "l"}, {0x014B, "n"}, {0x0153, "oe"}, {0x0167, "t"}, {0x0180, "b"},
    {0x0199, "k"}, {0x01A5, "p"}, {0x01AD, "t"}, {0x01B4, "y"}, {0x01B6, "z"}, {0x01DD, "e"}, {0x01E5, "g"},
    {0x0192, "f"}, {0x0237, "j"}, {0x023C, "c"}, {0x0247, "e"}, {0x0249, "j"}, {0x024D, "r"}, {0x024F, "y"},
    {0x0253, "b"}, {0x0254, "o"}, {0x0256, "d"}, {0x0257, "d"}, {0x0259, "e"}, {0x025B, "e"}, {0x0260, "g"},
    {0x0263, "g"}, {0x0268, "i"}, {0x0269, "i"}, {0x0272, "n"}, {0x0289, "u"}, {0x028B, "v"}, {0x0292, "z"},
    {0x0640, ""}, // the Arabic letter that only makes a word wider
};
// clang-format on

const Replacement *replacementOf(uint character)
{
    const auto *const found = std::find_if(std::begin(replacements), std::end(replacements),
                                           [&](const Replacement &entry) { return entry.letter == character; });
    return found == std::end(replacements) ? nullptr : found;
}

// Accents, and the points of Hebrew and Arabic. The other marks are vowels and parts of letters.
bool isAccent(uint character)
{
    constexpr int overlay = 1;
    constexpr int firstPoint = 10;
    constexpr int lastPoint = 36;
    constexpr int firstAccent = 200;
    const int combining = QChar::combiningClass(character);
    return combining == overlay || (combining >= firstPoint && combining <= lastPoint) || combining >= firstAccent;
}

bool isHangul(uint character)
{
    return character >= 0xAC00 && character <= 0xD7A3;
}

void append(QString &text, uint character)
{
    if (QChar::requiresSurrogates(character)) {
        text += QChar(QChar::highSurrogate(character));
        text += QChar(QChar::lowSurrogate(character));
    } else {
        text += QChar(ushort(character));
    }
}

/// The characters of a text. A surrogate without its partner is a character of its own.
class Characters
{
public:
    explicit Characters(QStringView searchedText)
        : text(searchedText)
    {
    }

    bool isAtEnd() const { return place >= text.size(); }
    uint next()
    {
        const QChar unit = text.at(place++);
        if (!unit.isHighSurrogate() || isAtEnd() || !text.at(place).isLowSurrogate())
            return unit.unicode();
        return QChar::surrogateToUcs4(unit, text.at(place++));
    }

private:
    QStringView text;
    qsizetype place = 0;
};

QString foldedCharacter(uint character)
{
    const uint folded = QChar::toCaseFolded(character);
    if (const Replacement *replacement = replacementOf(folded))
        return QLatin1String(replacement->text);
    if (QChar::category(folded) == QChar::Other_Format || isAccent(folded))
        return QString();
    QString result;
    const QString parts = isHangul(folded) ? QString() : QChar::decomposition(folded);
    if (!parts.isEmpty()) {
        for (Characters rest(parts); !rest.isAtEnd();)
            result += foldedCharacter(rest.next());
    } else if (QChar::category(folded) == QChar::Number_DecimalDigit) {
        result = QString::number(QChar::digitValue(folded));
    } else {
        append(result, folded);
    }
    return result;
}

// The folded forms of the characters of the scripts that are most common, made once.
constexpr uint tableSize = 0x800;

const std::array<QString, tableSize> &foldedTable()
{
    static const std::array<QString, tableSize> table = [] {
        std::array<QString, tableSize> forms;
        for (uint character = 0; character < tableSize; ++character)
            forms.at(character) = foldedCharacter(character);
        return forms;
    }();
    return table;
}

void appendFolded(QString &text, uint character)
{
    constexpr uint firstBeyondAscii = 0x80;
    if (character < firstBeyondAscii && character != '`')
        text += QChar(ushort(character >= 'A' && character <= 'Z' ? character - 'A' + 'a' : character));
    else if (character < tableSize)
        text += foldedTable().at(character);
    else
        text += foldedCharacter(character);
}

bool isAsciiOfWord(uint character)
{
    return (character >= 'a' && character <= 'z') || (character >= '0' && character <= '9')
        || (character >= 'A' && character <= 'Z');
}

bool isOfWord(uint character)
{
    constexpr uint firstBeyondAscii = 0x80;
    if (character < firstBeyondAscii)
        return isAsciiOfWord(character);
    return QChar::isLetterOrNumber(character) || QChar::isMark(character);
}

// Whether a script puts no blanks between words.
bool isWithoutBlanks(uint character)
{
    constexpr uint firstOfThese = 0x0E00;
    if (character < firstOfThese)
        return false;
    switch (QChar::script(character)) {
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Bopomofo:
    case QChar::Script_Thai:
    case QChar::Script_Lao:
    case QChar::Script_Khmer:
    case QChar::Script_Myanmar:
    case QChar::Script_Yi:
        return true;
    default:
        return false;
    }
}

uint characterBefore(QStringView text, qsizetype place)
{
    const QChar unit = text.at(place - 1);
    const bool isPair = unit.isLowSurrogate() && place > 1 && text.at(place - 2).isHighSurrogate();
    return isPair ? QChar::surrogateToUcs4(text.at(place - 2), unit) : unit.unicode();
}

} // namespace

QString foldedText(const QString &text)
{
    QString folded;
    folded.reserve(text.size());
    for (Characters rest(text); !rest.isAtEnd();)
        appendFolded(folded, rest.next());
    return folded;
}

QString foldedWords(const QString &text)
{
    const QString folded = foldedText(text);
    QString words;
    words.reserve(folded.size());
    bool isSeparated = false;   // from the next word
    bool hasApostrophe = false; // as the only character after the previous word
    for (Characters rest(folded); !rest.isAtEnd();) {
        const uint character = rest.next();
        if (character != underscore.unicode() && !isOfWord(character)) {
            hasApostrophe = character == apostrophe.unicode() && !isSeparated && !words.endsWith(underscore);
            isSeparated = true;
            continue;
        }
        if (isSeparated && !words.isEmpty())
            words += hasApostrophe && character != underscore.unicode() ? apostrophe : blank;
        isSeparated = false;
        hasApostrophe = false;
        append(words, character);
    }
    return words;
}

QStringList wordsOf(const QString &text)
{
    QString words = foldedWords(text);
    words.replace(underscore, blank).replace(apostrophe, blank);
    return words.split(blank, Qt::SkipEmptyParts);
}

bool isWordBegin(QStringView words, qsizetype place)
{
    if (place == 0)
        return true;
    const uint before = characterBefore(words, place);
    return !isOfWord(before) || isWithoutBlanks(before) || isWithoutBlanks(Characters(words.mid(place)).next());
}

} // namespace vanlayout
