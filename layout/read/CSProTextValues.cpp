#include "read/CSProTextValues_p.h"

#include "read/CSProCommon_p.h"
#include "read/Decoding_p.h"

#include <algorithm>
#include <limits>

namespace vanlayout::csprotext
{

namespace
{

bool isQuotationMark(char character)
{
    return character == '\'' || character == '"';
}

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

// Reads a text from its beginning.
class Cursor
{
public:
    explicit Cursor(std::string_view content)
        : rest(content)
    {
    }

    bool isAtEnd() const { return rest.empty(); }
    bool isAt(char character) const { return !rest.empty() && rest.front() == character; }
    void skip(size_t count = 1) { rest.remove_prefix(std::min(count, rest.size())); }
    void skipAll(std::string_view characters) { skip(std::min(rest.find_first_not_of(characters), rest.size())); }
    // Reads a text in quotation marks, or up to one of the characters. The closing mark is skipped, the character is
    // not.
    std::string_view readUpTo(std::string_view characters)
    {
        if (isAtEnd() || !isQuotationMark(rest.front()))
            return readPart(rest.find_first_of(characters));
        const char mark = rest.front();
        skip();
        const std::string_view quoted = readPart(rest.find(mark));
        skip();
        return quoted;
    }

private:
    std::string_view readPart(size_t size)
    {
        const std::string_view part = rest.substr(0, size);
        skip(part.size());
        return part;
    }

    std::string_view rest;
};

// Whether a code is digits with an optional minus and one decimal point or comma, or only blanks, which mean a blank
// field.
bool isNumberOrBlank(std::string_view code)
{
    const size_t begin = code.find_first_not_of(' ');
    if (begin == std::string_view::npos)
        return true;
    code = code.substr(begin, code.find_last_not_of(' ') + 1 - begin);
    if (code.front() == '-')
        code.remove_prefix(1);
    const auto digits = std::count_if(code.begin(), code.end(), isDigit);
    const auto marks = std::count_if(code.begin(), code.end(), [](char c) { return c == '.' || c == ','; });
    return digits > 0 && marks <= 1 && size_t(digits + marks) == code.size();
}

} // namespace

QString textOf(std::string_view value)
{
    return decoding::fromUtf8(value.data(), int(value.size()));
}

QString shown(std::string_view value)
{
    constexpr size_t enough = 200; // bytes; a message shows fewer characters
    return cspro::quoted(textOf(value.substr(0, enough)));
}

Number numberOf(std::string_view value)
{
    const bool hasSign = !value.empty() && (value.front() == '-' || value.front() == '+');
    const bool isNegative = hasSign && value.front() == '-';
    const std::string_view digits = hasSign ? value.substr(1) : value;
    constexpr qint64 max = qint64(std::numeric_limits<int>::max()) + 1;
    constexpr qint64 base = 10;
    qint64 number = 0;
    const auto *const end = std::find_if_not(digits.begin(), digits.end(), isDigit);
    for (const auto *digit = digits.begin(); digit != end; ++digit)
        number = std::min(number * base + (*digit - '0'), max);
    number = isNegative ? -number : std::min(number, max - 1);
    return { int(number), end != digits.begin() && end == digits.end() };
}

bool isYes(std::string_view value)
{
    return !value.empty() && (value.front() == 'Y' || value.front() == 'y');
}

std::string_view tokenOf(std::string_view value)
{
    constexpr std::string_view separators = " \t,";
    Cursor cursor(value);
    cursor.skipAll(separators);
    return cursor.readUpTo(separators);
}

Labels labelsOf(std::string_view value, const QVector<Language> &languages)
{
    Labels labels;
    labels.parts.reserve(1 + int(std::count(value.begin(), value.end(), '|')));
    for (int index = 0;; ++index) {
        const size_t end = value.find('|');
        const QString language = index < languages.size() ? languages.at(index).name : QString();
        labels.parts.append({ language, textOf(value.substr(0, end)) });
        if (end == std::string_view::npos)
            break;
        value.remove_prefix(end + 1);
    }
    cspro::dropEmptyLabel(labels);
    return labels;
}

QString notePieceOf(std::string_view value)
{
    QString piece = textOf(value);
    if (piece.isEmpty())
        return piece;
    piece.replace(QLatin1String("\\r\\n"), QLatin1String("\n"));
    if (!piece.endsWith(QLatin1Char('\n')))
        piece += QLatin1Char(' ');
    if (piece.startsWith(QLatin1Char('~')))
        piece[0] = QLatin1Char(' ');
    return piece;
}

Codes codesOf(std::string_view text)
{
    constexpr std::string_view blanks = " \t";
    constexpr std::string_view ends = " \t:";
    Codes codes;
    Cursor cursor(text);
    for (cursor.skipAll(ends); !cursor.isAtEnd(); cursor.skipAll(ends)) {
        const std::string_view from = cursor.readUpTo(ends);
        std::string_view to;
        if (cursor.isAt(':')) {
            cursor.skip();
            to = cursor.readUpTo(blanks);
        }
        if (from.empty() && to.empty())
            continue;
        codes.ranges.append({ textOf(from), textOf(to) });
        codes.areNumbers = codes.areNumbers && isNumberOrBlank(from) && isNumberOrBlank(to);
    }
    return codes;
}

ValueLine valueLineOf(std::string_view value)
{
    const size_t semicolon = value.find(';');
    if (semicolon == std::string_view::npos)
        return { value, {} };
    return { value.substr(0, semicolon), value.substr(semicolon + 1) };
}

OccurrenceLine occurrenceLineOf(std::string_view value)
{
    const size_t separator = value.find_first_of(",:", 1);
    if (separator == std::string_view::npos)
        return {};
    return { numberOf(value.substr(0, separator)).value, value.substr(separator + 1) };
}

} // namespace vanlayout::csprotext
