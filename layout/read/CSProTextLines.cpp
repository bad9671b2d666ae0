#include "read/CSProTextLines_p.h"

#include "read/Decoding_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

constexpr std::string_view whiteSpace = " \t\n\v\f\r";

using Decode = QString (*)(const char *bytes, int size, bool *isDamaged);

struct Encoding {
    const char *name;
    QByteArray mark;
    int unitSize; ///< bytes of a code unit
    int lowByte;  ///< index of the byte of an ASCII character within its code unit
    Decode decode;
};

// clang-format off
const Encoding &encodingOf(const QByteArray &bytes)
{
    static const Encoding utf8 = { "utf-8", "\xEF\xBB\xBF", 1, 0, decoding::fromUtf8 };
    static const Encoding utf16LE = { "utf-16le", "\xFF\xFE", 2, 0, decoding::fromUtf16LE };
    static const Encoding utf16BE = { "utf-16be", "\xFE\xFF", 2, 1, decoding::fromUtf16BE };
    static const Encoding windows1252 = { "windows-1252", "", 1, 0, decoding::fromWindows1252 };
    for (const Encoding *encoding : { &utf8, &utf16LE, &utf16BE }) {
        if (bytes.startsWith(encoding->mark))
            return *encoding;
    }
    return decoding::isUtf8(bytes.constData(), bytes.size()) ? utf8 : windows1252;
}
// clang-format on

bool isCharacter(const char *unit, char character, const Encoding &encoding)
{
    return unit[encoding.lowByte] == character && (encoding.unitSize == 1 || unit[1 - encoding.lowByte] == '\0');
}

// The index after the next occurrence of a character from \a index on; -1 if there is none.
int indexAfter(const QByteArray &bytes, int index, char character, const Encoding &encoding)
{
    for (; index + encoding.unitSize <= bytes.size(); index += encoding.unitSize) {
        if (isCharacter(bytes.constData() + index, character, encoding))
            return index + encoding.unitSize;
    }
    return -1;
}

// The character that ends lines: a carriage return in a text without any line feed, else a line feed.
char lineEndOf(const QByteArray &bytes, int begin, const Encoding &encoding)
{
    return indexAfter(bytes, begin, '\n', encoding) < 0 ? '\r' : '\n';
}

// Decodes line by line, so that the numbers of damaged lines are known.
void decodeLines(const QByteArray &bytes, int begin, const Encoding &encoding, CSProTextContent &content)
{
    const char lineEnd = lineEndOf(bytes, begin, encoding);
    for (int line = 1; begin < bytes.size(); ++line) {
        const int found = indexAfter(bytes, begin, lineEnd, encoding);
        const int end = found < 0 ? bytes.size() : found;
        bool isDamaged = false;
        content.bytes += encoding.decode(bytes.constData() + begin, end - begin, &isDamaged).toUtf8();
        if (isDamaged)
            content.damagedLines.push_back(line);
        begin = end;
    }
}

char lowerCase(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? char(letter - 'A' + 'a') : letter;
}

std::string_view trimmed(std::string_view text)
{
    const size_t begin = text.find_first_not_of(whiteSpace);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(whiteSpace) + 1 - begin);
}

bool isContinued(std::string_view line)
{
    return line.size() > 1 && line.back() == '&';
}

Statement statementOf(std::string_view text, int line)
{
    const size_t equalsSign = text.find('=');
    if (equalsSign == std::string_view::npos)
        return { text, {}, line, false };
    return { trimmed(text.substr(0, equalsSign)), trimmed(text.substr(equalsSign + 1)), line, true };
}

} // namespace

CSProTextContent decodeCSProText(const QByteArray &bytes)
{
    const Encoding &encoding = encodingOf(bytes);
    CSProTextContent content;
    content.encoding = QLatin1String(encoding.name);
    const int begin = bytes.startsWith(encoding.mark) ? encoding.mark.size() : 0;
    if (encoding.decode == decoding::fromUtf8 && decoding::isUtf8(bytes.constData(), bytes.size())) {
        content.bytes = bytes;
        content.begin = begin;
    } else {
        decodeLines(bytes, begin, encoding, content);
    }
    content.hasOnlyReturns = !content.bytes.contains('\n') && content.bytes.contains('\r');
    if (content.hasOnlyReturns)
        content.bytes.replace('\r', '\n');
    return content;
}

bool CSProTextLines::next(Statement &statement)
{
    while (!isAtEnd()) {
        const int number = line + 1;
        const std::string_view content = trimmed(readContinuedLine());
        if (content.empty() || content.front() == '.')
            continue;
        statement = statementOf(content, number);
        return true;
    }
    return false;
}

// A carriage return right before the line feed, or before the end of the text, is part of the line's end.
std::string_view CSProTextLines::readLine()
{
    const size_t end = std::min(text.find('\n', position), text.size());
    std::string_view content = text.substr(position, end - position);
    if (!content.empty() && content.back() == '\r')
        content.remove_suffix(1);
    position = end + 1;
    ++line;
    return content;
}

std::string_view CSProTextLines::readContinuedLine()
{
    std::string_view content = readLine();
    if (!isContinued(content))
        return content;
    std::string &whole = continuedLines.emplace_back();
    while (isContinued(content)) {
        whole += content.substr(0, content.size() - 1);
        content = isAtEnd() ? std::string_view() : readLine();
    }
    whole += content;
    return whole;
}

bool isSameKey(std::string_view left, std::string_view right)
{
    return left.size() == right.size() && std::equal(left.begin(), left.end(), right.begin(), [](char one, char other) {
               return lowerCase(one) == lowerCase(other);
           });
}

} // namespace vanlayout
