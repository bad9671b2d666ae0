#ifndef UTIL_TEXTFILE_P_H
#define UTIL_TEXTFILE_P_H

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <algorithm>

/// Decodes the bytes of a text file, and finds characters in its lines.
namespace textfile
{

/// Returns the 0-based index of the first \a character in \a line at or after \a from, or -1. Faster than Qt's search
/// on lines of a few characters.
inline int indexOf(QStringView line, char character, qsizetype from = 0)
{
    const auto *found = std::find(line.begin() + std::min(from, line.size()), line.end(), QLatin1Char(character));
    return found == line.end() ? -1 : int(found - line.begin());
}

/// Returns whether all of \a bytes are well-formed UTF-8.
bool isUtf8(const QByteArray &bytes);

/// Byte-order mark at the beginning of a text.
enum class Mark {
    none,
    utf8,
    other ///< UTF-16 or UTF-32
};
Mark markOf(const QByteArray &bytes);

/// Decodes the text in \a bytes and removes its carriage returns.
///
/// A byte-order mark (UTF-8, UTF-16, UTF-32) determines the encoding and is not part of the text. Without a mark, the
/// text is UTF-8 if all of it is valid UTF-8. Otherwise it is in the locale's encoding, or in Windows-1252 if that is
/// UTF-8 or ASCII.
QString decode(const QByteArray &bytes);
/// Decodes bytes that are known to be UTF-8. Each invalid byte becomes a replacement character.
QString decodeUtf8(const QByteArray &bytes);

} // namespace textfile

#endif
