#include "read/CSProCommon_p.h"
#include "read/CSProJsonHandler_p.h"
#include "read/Formats_p.h"

#include <rapidjson/error/en.h>

#include <algorithm>
#include <charconv>
#include <cstring>

namespace vanlayout
{

namespace
{

const char mark[] = "\xef\xbb\xbf";
constexpr int markSize = 3;

int beginOf(const QByteArray &bytes)
{
    return bytes.startsWith(mark) ? markSize : 0;
}

bool isSpace(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r';
}

char byteAt(const QByteArray &bytes, int position)
{
    return position < bytes.size() ? bytes.at(position) : '\0';
}

bool isComment(const QByteArray &bytes, int position)
{
    const char second = byteAt(bytes, position + 1);
    return byteAt(bytes, position) == '/' && (second == '/' || second == '*');
}

// The index after the comment at \a begin; the size of the bytes if the comment does not end.
int endOfComment(const QByteArray &bytes, int begin)
{
    const bool isBlock = bytes.at(begin + 1) == '*';
    const int end = bytes.indexOf(isBlock ? "*/" : "\n", begin + 2);
    if (end < 0)
        return bytes.size();
    return end + (isBlock ? 2 : 1);
}

// The index of the next byte from \a position on that is neither white space nor in a comment; the size of the bytes if
// there is none.
int nextByte(const QByteArray &bytes, int position)
{
    while (position < bytes.size()) {
        if (isComment(bytes, position))
            position = endOfComment(bytes, position);
        else if (isSpace(bytes.at(position)))
            ++position;
        else
            break;
    }
    return position;
}

// A bracket may also begin the text form, in which the names of sections begin with a letter.
bool isList(const QByteArray &bytes)
{
    const int begin = nextByte(bytes, beginOf(bytes));
    const char entry = byteAt(bytes, nextByte(bytes, begin + 1));
    return byteAt(bytes, begin) == '[' && entry != '\0' && std::strchr("{[]\"-0123456789", entry);
}

constexpr int escapeSize = 6;

// The unit of the escape `\\uHHHH` at \a position; -1 if there is none.
int unitAt(const QByteArray &bytes, int position)
{
    if (position + escapeSize > bytes.size() || bytes.at(position) != '\\' || bytes.at(position + 1) != 'u')
        return -1;
    unsigned unit = 0;
    const char *end = bytes.constData() + position + escapeSize;
    const auto parsed = std::from_chars(end - 4, end, unit, 16);
    return parsed.ptr == end ? int(unit) : -1;
}

// Replaces the escape of half a surrogate pair by U+FFFD: it is not a character, and RapidJSON rejects it. All other
// bytes keep their position. Returns true if there are such escapes.
bool mendSurrogates(QByteArray &bytes)
{
    bool hasHalf = false;
    for (int position = bytes.indexOf('\\'); position >= 0; position = bytes.indexOf('\\', position)) {
        const int unit = unitAt(bytes, position);
        const int next = QChar::isHighSurrogate(uint(unit)) ? unitAt(bytes, position + escapeSize) : -1;
        if (QChar::isLowSurrogate(uint(next))) {
            position += 2 * escapeSize;
        } else if (QChar::isSurrogate(uint(unit))) {
            bytes.replace(position, escapeSize, "\\ufffd");
            position += escapeSize;
            hasHalf = true;
        } else {
            position += 2;
        }
    }
    return hasHalf;
}

// Ends reading with the reason and the position of the error.
void failAt(const QByteArray &bytes, int offset, const QString &reason, Diagnostics &diagnostics)
{
    const int line = 1 + int(std::count(bytes.begin(), bytes.begin() + offset, '\n'));
    diagnostics.fail("damaged-json", QStringLiteral("damaged JSON at byte %1: %2").arg(offset).arg(reason), line);
}

// The message of RapidJSON for an error without its full stop, or a different one if that would mislead.
QString reasonOf(rapidjson::ParseErrorCode code, char byte)
{
    if (code == rapidjson::kParseErrorStringEscapeInvalid && byte != '\\')
        return QStringLiteral("a control character in a text is not escaped");
    if (code == rapidjson::kParseErrorStringMissQuotationMark)
        return QStringLiteral("a text has no closing quotation mark");
    if (code == rapidjson::kParseErrorUnspecificSyntaxError)
        return QStringLiteral("a comment is incomplete");
    QString words = QString::fromLatin1(rapidjson::GetParseError_En(code));
    words[0] = words.at(0).toLower(); // none of them is empty
    if (words.endsWith(QLatin1Char('.')))
        words.chop(1);
    return words;
}

// Reports that the file is valid JSON but not a dictionary. Returns false if it is a dictionary.
bool failAsOther(const CSProJsonDraft &draft, Diagnostics &diagnostics)
{
    const QString fileType = draft.fileType();
    if (!draft.hasDictionaryKey())
        diagnostics.fail("no-dictionary",
                         QStringLiteral("the file is JSON, but not a CSPro dictionary: it has none of the keys "
                                        "\"fileType\", \"recordType\", \"relativePositions\" and \"levels\""));
    else if (!fileType.isEmpty() && fileType != QLatin1String("dictionary"))
        diagnostics.fail(
            "no-dictionary",
            QStringLiteral("the file is a CSPro file of the type %1, not a dictionary").arg(cspro::quoted(fileType)));
    else
        return false;
    return true;
}

// Reads \a bytes into \a draft. Returns false and reports the problem if they are damaged.
bool parse(const QByteArray &bytes, CSProJsonDraft &draft, ElementLines *lines, Diagnostics &diagnostics)
{
    const int begin = beginOf(bytes);
    const std::string_view content(bytes.constData() + begin, size_t(bytes.size() - begin));
    rapidjson::StringStream stream(content.data());
    CSProJsonHandler handler(stream, content, draft, lines);
    JsonReader reader;
    const rapidjson::ParseResult result = reader.Parse<jsonFlags>(stream, handler);
    const int offset = begin + int(result ? stream.Tell() : result.Offset());
    if (handler.isTooDeep())
        failAt(bytes, offset, QStringLiteral("more than %1 levels of nesting").arg(CSProJsonHandler::maxDepth),
               diagnostics);
    else if (!result)
        failAt(bytes, offset, reasonOf(result.Code(), bytes.constData()[offset]), diagnostics);
    else if (offset < bytes.size())
        failAt(bytes, offset, QStringLiteral("a NUL character follows the document"), diagnostics);
    else
        return true;
    return false;
}

} // namespace

bool isBlankCSProJson(const QByteArray &head)
{
    return nextByte(head, beginOf(head)) >= head.size();
}

bool isCSProJson(const QByteArray &head)
{
    return byteAt(head, nextByte(head, beginOf(head))) == '{' || isList(head);
}

void readCSProJson(const QByteArray &bytes, Layout &layout, Diagnostics &diagnostics, ElementLines *lines)
{
    if (isList(bytes)) {
        diagnostics.fail("no-dictionary", QStringLiteral("the file is a JSON list, not a CSPro dictionary"), 1);
        return;
    }
    QByteArray content = bytes;
    const bool hasHalfPairs = mendSurrogates(content);
    CSProJsonFindings findings(layout, diagnostics, lines);
    CSProJsonDraft draft(layout, findings);
    if (!parse(content, draft, lines, diagnostics) || failAsOther(draft, diagnostics))
        return;
    layout.format = Format::CSProJson;
    layout.encoding = QStringLiteral("utf-8");
    draft.complete();
    if (hasHalfPairs)
        findings.warn("bad-bytes",
                      QStringLiteral("texts have halves of surrogate pairs, which were replaced by U+FFFD"), {});
    findings.resolvePaths();
    cspro::shareLinkedValues(layout, diagnostics);
}

void readCSProJson(Input &input, Layout &layout, Diagnostics &diagnostics)
{
    QString problem;
    const QByteArray bytes = readAllOf(input.device, problem);
    if (problem.isEmpty())
        readCSProJson(bytes, layout, diagnostics, input.options.lines);
    else
        diagnostics.fail("cannot-read", problem);
}

} // namespace vanlayout
