#ifndef LAYOUT_READ_CSPROTEXTLINES_P_H
#define LAYOUT_READ_CSPROTEXTLINES_P_H

#include <QByteArray>
#include <QString>

#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace vanlayout
{

/// The content of a dictionary in text form as well-formed UTF-8, without a byte-order mark.
struct CSProTextContent {
    QString encoding; ///< of the file: "utf-8", "utf-16le", "utf-16be", "windows-1252"
    QByteArray bytes; ///< shared with the bytes of the file if these are well-formed UTF-8
    int begin = 0;    ///< index of the first character in `bytes`
    /// Whether the file has carriage returns but no line feed. They then end its lines, and are line feeds in `bytes`.
    bool hasOnlyReturns = false;
    /// 1-based numbers of the lines with invalid bytes, which were replaced by U+FFFD.
    std::vector<int> damagedLines;

    std::string_view text() const { return { bytes.constData() + begin, size_t(bytes.size() - begin) }; }
};

/// Decodes a file. A byte-order mark states UTF-8 or UTF-16. Without one the encoding is UTF-8 if all bytes are
/// well-formed UTF-8, else Windows-1252; it is never the encoding of the locale.
CSProTextContent decodeCSProText(const QByteArray &bytes);

/// One statement of the text form: `key=value`, or the beginning of a section, whose key begins with `[`.
struct Statement {
    std::string_view key;
    std::string_view value;
    int line = 0; ///< 1-based number of its first line
    bool hasEqualsSign = false;

    bool isSection() const { return !key.empty() && key.front() == '['; }
};

/// Splits a text into statements. All views remain valid as long as both this object and the text exist.
///
/// The rules are, in this order: a line of two or more characters that ends in `&` continues on the next line; white
/// space is removed at both ends; empty lines and lines that begin with `.` are omitted; the first `=` separates key
/// and value, without the white space around it.
class CSProTextLines
{
public:
    explicit CSProTextLines(std::string_view content)
        : text(content)
    {
    }

    /// Sets \a statement to the next one; false at the end of the text.
    bool next(Statement &statement);

private:
    bool isAtEnd() const { return position >= text.size(); }
    std::string_view readLine();
    std::string_view readContinuedLine();

    std::string_view text;
    size_t position = 0;
    int line = 0; ///< number of the line that was read last
    std::deque<std::string> continuedLines;
};

/// Whether two keys, sections or words of the text form are the same, ignoring the case of ASCII letters.
bool isSameKey(std::string_view left, std::string_view right);

} // namespace vanlayout

#endif
