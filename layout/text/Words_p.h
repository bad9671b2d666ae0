#ifndef LAYOUT_TEXT_WORDS_P_H
#define LAYOUT_TEXT_WORDS_P_H

#include <QString>
#include <QStringList>
#include <QStringView>

// Texts in the form in which they are searched and compared: without case and accents, as words.

namespace vanlayout
{

/// The text without case and accents. Other characters are kept, so that `< 5` and `> 5` differ.
///
/// Characters are case-folded and decomposed (compatibility decomposition), and accents and other marks are removed,
/// but not the vowel signs of Indic scripts. Letters that do not decompose become those that people type for them: `ø`
/// is `o`, `ł` is `l`, `ß` is `ss`, `đ` is `d`, `ı` is `i`, `æ` is `ae`. Digits of all scripts become `0` to `9`,
/// typographic apostrophes become `'`. Characters without a glyph, such as soft hyphens, are removed.
QString foldedText(const QString &text);

/// The words of the folded text, separated by one blank. A word consists of letters, digits and marks. An underscore
/// is kept, and an apostrophe between two letters or digits; all other characters separate words.
QString foldedWords(const QString &text);

/// The words of the text, folded. Here `_` and `'` separate words too: `l’Été_2` has the words "l", "ete" and "2".
QStringList wordsOf(const QString &text);

/// Whether a word begins at a place of \a words, a result of foldedWords(). A word also begins after an underscore or
/// an apostrophe. In scripts that put no blanks between words, such as Chinese or Thai, it begins at each character.
bool isWordBegin(QStringView words, qsizetype place);

} // namespace vanlayout

#endif
