#ifndef LAYOUT_READ_DECODING_P_H
#define LAYOUT_READ_DECODING_P_H

#include <QString>

namespace vanlayout
{

/// Decoding of bytes to text. A byte-order mark is treated like any other character.
///
/// Invalid bytes become U+FFFD, one for each maximal part of a sequence that could have begun a character (Unicode 15,
/// section 3.9). \a isDamaged is set to true if there are such bytes, and not changed otherwise.
namespace decoding
{

QString fromUtf8(const char *bytes, int size, bool *isDamaged = nullptr);
/// The five bytes without a character (81, 8D, 8F, 90, 9D) are invalid.
QString fromWindows1252(const char *bytes, int size, bool *isDamaged = nullptr);
QString fromUtf16LE(const char *bytes, int size, bool *isDamaged = nullptr);
QString fromUtf16BE(const char *bytes, int size, bool *isDamaged = nullptr);

/// The bytes of a text in Windows-1252; a character that it does not have is `?`.
QByteArray toWindows1252(const QString &text);

/// True if all bytes are well-formed UTF-8.
bool isUtf8(const char *bytes, int size);

} // namespace decoding

} // namespace vanlayout

#endif
