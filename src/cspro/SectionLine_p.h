#ifndef CSPRO_SECTIONLINE_P_H
#define CSPRO_SECTIONLINE_P_H

#include "util/TextFile_p.h"

#include <QString>
#include <QStringView>

#include <algorithm>
#include <optional>

/// Rules for a single line of a text dictionary.
namespace cspro
{

/// The kinds of section. Only the sections that are read have their own kind.
enum SectionKind { otherSection = 0, dictionarySection = 1, recordSection = 2, itemSection = 3, valueSetSection = 4 };

inline bool isHeader(QStringView line)
{
    return !line.isEmpty() && line.front() == QLatin1Char('[');
}

/// Returns the name in a header, in capitals. Without a closing bracket, all of the rest of the line is the name.
inline QString sectionName(QStringView header)
{
    const int bracket = textfile::indexOf(header, ']', 1);
    return header.mid(1, (bracket < 0 ? header.size() : bracket) - 1).toString().toUpper();
}

/// Returns whether \a key occurs anywhere in \a line, compared case-sensitively. An empty key occurs in every line.
///
/// Few characters of a line are the first character of a key, so this searches for that character first.
inline bool containsKey(QStringView line, QStringView key)
{
    if (key.isEmpty())
        return true;
    const auto *first = line.begin();
    while ((first = std::find(first, line.end(), key.front())) != line.end()) {
        if (QStringView(first, line.end()).startsWith(key))
            return true;
        ++first;
    }
    return false;
}

/// Returns the text after the "=" of a line; nothing if the line does not have exactly one.
inline std::optional<QStringView> valueIn(QStringView line)
{
    const int equals = textfile::indexOf(line, '=');
    if (equals < 0 || textfile::indexOf(line, '=', equals + 1) >= 0)
        return std::nullopt;
    return line.mid(equals + 1);
}

/// Returns the text before the first "=" of a line, without blanks around it; the whole line if there is no "=".
inline QStringView keyOf(QStringView line)
{
    const int equals = textfile::indexOf(line, '=');
    return equals < 0 ? line : line.left(equals).trimmed();
}

} // namespace cspro

#endif
