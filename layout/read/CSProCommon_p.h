#ifndef LAYOUT_READ_CSPROCOMMON_P_H
#define LAYOUT_READ_CSPROCOMMON_P_H

#include "read/Diagnostics_p.h"

#include <QStringView>

#include <optional>

namespace vanlayout
{

/// The rules that apply to both the text form and the JSON form of a CSPro dictionary.
namespace cspro
{

/// Blank, tab, line feed, vertical tab, form feed, carriage return.
bool isWhiteSpace(QChar character);
/// \a note without trailing white space, which CSPro removes in both forms.
QString cleanNote(const QString &note);
/// Clears a label with a single part if its text is empty: it is no label.
void dropEmptyLabel(Labels &labels);

// Words are compared case-insensitively. The result has no value for a word that CSPro does not know.

/// "MISSING", "NOTAPPL", "REFUSED", "DEFAULT".
std::optional<Special> specialOf(QStringView word);
/// The word of a special meaning; empty for None.
QString wordOfSpecial(Special special);
/// A type of item in the spelling of the JSON form of the layout: "numeric", "alpha", "document", "audio", "image",
/// "geometry".
std::optional<QString> itemTypeOf(QStringView word);
/// \a word with A to Z in lower case: the type of an item whose word CSPro does not know.
QString lowerCased(QString word);
/// A capture type in the spelling of CSPro 8, such as "radioButton"; an empty text for "unspecified", which means no
/// capture.
std::optional<QString> captureTypeOf(QStringView word);

/// The item that a relation compares: empty if \a text is exactly "(occurrence)", else \a text.
QString linkItemOf(const QString &text);

/// Sets the values of each value set that has a link but no values to those of the set with the same link that has the
/// most values, or the first of these in the order of the file. Other sets keep their values.
///
/// The list is in memory once, but is written for each set when the layout is printed. Therefore at most
/// `maxLinkedValues` values are shared in total; later sets remain empty, with one warning.
void shareLinkedValues(Layout &layout, Diagnostics &diagnostics);
#ifdef FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION
constexpr int maxLinkedValues = 4'000; // so that a fuzzer tries more files
#else
constexpr int maxLinkedValues = 4'000'000;
#endif

/// A text of the file for a message: in quotation marks, on one line, truncated if it is long.
QString quoted(QString text);

/// The first characters of a text, at most \a longest; half a surrogate pair at the end is omitted.
QString shortened(QString text, int longest);

/// A name in a path: truncated at `longestNameInPaths`, so that a long name with many entries below it does not exhaust
/// memory.
QString nameInPath(const QString &name);
constexpr int longestNameInPaths = 200;

/// Name of the ids in a path.
QString idsName();
/// `LEVEL/RECORD/ITEM/VALUESET`: the path of the element \a name within the element at \a parent. The path of a level
/// is only its name.
QString childPath(const QString &parent, const QString &name);
/// `.../#3`: the path of a value, 1-based within its set.
QString valuePath(const QString &set, int number);
/// `relations/NAME`
QString relationPath(const QString &name);

} // namespace cspro

} // namespace vanlayout

#endif
