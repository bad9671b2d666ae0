#ifndef LAYOUT_READ_CSPROTEXTVALUES_P_H
#define LAYOUT_READ_CSPROTEXTVALUES_P_H

#include "model/Layout.h"

#include <QVector>

#include <string_view>

namespace vanlayout
{

/// Parsing of the values of statements in the text form of a CSPro dictionary.
namespace csprotext
{

QString textOf(std::string_view value);

/// \a value for a message: in quotation marks, on one line, truncated if it is long.
QString shown(std::string_view value);

/// Leading digits with an optional sign; 0 if there are none. Numbers beyond `int` are the nearest `int`.
struct Number {
    int value = 0;
    bool isWhole = false; ///< whether all of the text is a number
};
Number numberOf(std::string_view value);

/// True for any text that begins with Y or y.
bool isYes(std::string_view value);

/// The first token: blanks, tabs and commas before it are skipped; a token in `'` or `"` ends at the same mark, and the
/// marks are not part of it; any other token ends at a blank, tab or comma.
std::string_view tokenOf(std::string_view value);

/// The parts between `|`: the n-th part is in the n-th language, further parts have no language. A single part without
/// a text is no label.
Labels labelsOf(std::string_view value, const QVector<Language> &languages);

/// The text that one `Note=` line adds to a note: `\r\n`, written as these four characters, is a line feed; a blank is
/// appended to a piece that does not end in a line feed; `~` at the beginning is a blank.
QString notePieceOf(std::string_view value);

/// The codes of a value.
struct Codes {
    QVector<Range> ranges;
    bool areNumbers = true; ///< whether each code is a number or blank
};
/// Codes and ranges between blanks or tabs, such as `1 3:5 'A b'`. A code in `'` or `"` ends at the same mark; any
/// other at a blank, tab or colon. A colon directly after a code makes a range with the code directly after the colon.
/// Empty codes are omitted.
Codes codesOf(std::string_view text);

/// A value line, split at its first `;`, even within quotation marks.
struct ValueLine {
    std::string_view codes;
    std::string_view label;
};
ValueLine valueLineOf(std::string_view value);

/// An occurrence and its label, split at the first `,` or `:` that is not the first character.
struct OccurrenceLine {
    int occurrence = 0; ///< 1-based; the line is not an occurrence label if it is less than 1
    std::string_view label;
};
OccurrenceLine occurrenceLineOf(std::string_view value);

} // namespace csprotext

} // namespace vanlayout

#endif
