#include "read/Formats_p.h"

#include "read/Decoding_p.h"

#include <QString>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <iterator>

namespace vanlayout
{

namespace
{

constexpr std::array<char, 3> separators = { ',', ';', '\t' };

constexpr int wrapperSize = 36; // bytes before the signature of an encrypted SPSS file

struct Signature {
    QByteArray begin;
    const char *name;
    const char *advice = ""; ///< advice for the user, appended to the name
};

template <size_t count> const Signature *findSignature(const Signature (&signatures)[count], const QByteArray &head)
{
    const auto *found = std::find_if(std::begin(signatures), std::end(signatures),
                                     [&](const Signature &signature) { return head.startsWith(signature.begin); });
    return found != std::end(signatures) ? found : nullptr;
}

constexpr const char *unpack = "; unpack it and read the file in it";

// clang-format off
const Signature *findBinarySignature(const QByteArray &head)
{
    static const Signature signatures[] = {
        {"\x89PNG\r\n",         "a PNG image"},
        {"\xff\xd8\xff",        "a JPEG image"},
        {"GIF8",                "a GIF image"},
        {"PK\x03\x04",          "a ZIP archive (or a file in one, such as XLSX)", unpack},
        {"PK\x05\x06",          "an empty ZIP archive"},
        {"%PDF-",               "a PDF document"},
        {"\x1f\x8b",            "a gzip archive", unpack},
        {"BZh",                 "a bzip2 archive", unpack},
        {"\xfd" "7zXZ",         "an xz archive", unpack},
        {"7z\xbc\xaf\x27\x1c",  "a 7z archive", unpack},
        {"Rar!",                "a RAR archive", unpack},
        {"\xd0\xcf\x11\xe0",    "a document of older Office programs"},
        {"PAR1",                "a Parquet file with data"},
        {"**COMPRESSED** **",   "a SAS file of PROC CPORT", "; make a data set of it in SAS"},
        {"\x7f" "ELF",          "a program"},
        {"MZ",                  "a Windows program"},
    };
    return findSignature(signatures, head);
}

// First characters of texts without a byte-order mark and leading white space, in lower case.
const Signature *findTextSignature(const QByteArray &text)
{
    static const Signature signatures[] = {
        {"<?xml",         "an XML document"},
        {"<!doctype html","an HTML page"},
        {"<html",         "an HTML page"},
        {"{\\rtf",        "an RTF document"},
    };
    return findSignature(signatures, text);
}
// clang-format on

// Converts UTF-16 with a byte-order mark to UTF-8; other bytes are unchanged, but without the mark of UTF-8.
QByteArray withoutMark(const QByteArray &head)
{
    constexpr int markSize = 2;
    const auto text
        = [&](auto decode) { return decode(head.constData() + markSize, head.size() - markSize, nullptr).toUtf8(); };
    if (head.startsWith("\xff\xfe"))
        return text(decoding::fromUtf16LE);
    if (head.startsWith("\xfe\xff"))
        return text(decoding::fromUtf16BE);
    return head.startsWith("\xef\xbb\xbf") ? head.mid(3) : head;
}

// Whether the bytes are a text: it has no control characters but white space. Bytes above ASCII may be in any encoding.
bool isText(const QByteArray &head)
{
    return std::none_of(head.begin(), head.end(), [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte == 0 || (byte < ' ' && !std::strchr("\t\n\v\f\r\x1a", character));
    });
}

// Number of occurrences of each separator on a line, outside quotation marks.
using Counts = std::array<int, separators.size()>;

// Counts the separators on one line and returns the index of the next line, -1 if the line does not end. A line break
// within quotation marks belongs to the line.
int countSeparators(const QByteArray &text, int begin, Counts &counts)
{
    bool isQuoted = false;
    for (int i = begin; i < text.size(); ++i) {
        const char character = text.at(i);
        if (character == '"')
            isQuoted = !isQuoted;
        else if (!isQuoted && (character == '\n' || character == '\r'))
            return i + (text.mid(i, 2) == "\r\n" ? 2 : 1);
        const auto *separator = std::find(separators.begin(), separators.end(), character);
        if (!isQuoted && separator != separators.end())
            ++counts[size_t(separator - separators.begin())];
    }
    return -1;
}

// Whether the first two lines have the same number of a separator, at least one. If \a text is only the beginning of
// the file and does not contain both lines, the first line must have very many separators.
bool isCsv(const QByteArray &text, bool isWhole)
{
    constexpr int veryMany = 100;
    Counts first = {};
    Counts second = {};
    const int next = countSeparators(text, 0, first);
    const int end = next < 0 ? -1 : countSeparators(text, next, second);
    if (end < 0 && !isWhole)
        return std::any_of(first.begin(), first.end(), [](int count) { return count >= veryMany; });
    for (size_t i = 0; i < separators.size(); ++i) {
        if (first[i] > 0 && first[i] == second[i])
            return true;
    }
    return false;
}

QString describeKind(const Signature &signature)
{
    return QStringLiteral("the file is %1, not a layout%2")
        .arg(QLatin1String(signature.name), QLatin1String(signature.advice));
}

// The 1-based number of the line with the first character that is not white space.
int lineOfFirstText(const QByteArray &text)
{
    const int size = int(text.size());
    int begin = 0;
    while (begin < size && std::isspace(static_cast<unsigned char>(text.at(begin))))
        ++begin;
    const QByteArray space = text.left(begin);
    return 1 + std::max(space.count('\n'), space.count('\r'));
}

void reportText(const QByteArray &text, bool isWhole, Diagnostics &diagnostics)
{
    const QByteArray begin = text.trimmed();
    const char *const id = "unknown-format";
    if (const Signature *signature = findTextSignature(begin.left(wrapperSize).toLower()))
        diagnostics.fail(id, describeKind(*signature));
    else if (begin.isEmpty())
        diagnostics.fail(id, QStringLiteral("only white space was found at the beginning of the file"));
    else if (isCsv(begin, isWhole))
        diagnostics.fail(
            id, QStringLiteral("the file is a CSV file with data; a layout is in the dictionary that belongs to it"));
    else
        diagnostics.fail(id,
                         QStringLiteral("the text does not begin with a section such as [Dictionary], so it is not "
                                        "a CSPro dictionary"),
                         lineOfFirstText(text));
}

} // namespace

void reportUnknownFile(const QByteArray &head, bool isWhole, Diagnostics &diagnostics)
{
    const QByteArray text = withoutMark(head);
    if (const Signature *signature = findBinarySignature(head))
        diagnostics.fail("unknown-format", describeKind(*signature));
    else if (head.left(wrapperSize).contains("ENCRYPTEDSAV"))
        diagnostics.fail(
            "unknown-format",
            QStringLiteral("the file is an encrypted SPSS file; save it without a password in SPSS first"));
    else if (isText(text))
        reportText(text, isWhole, diagnostics);
    else
        diagnostics.fail("unknown-format",
                         QStringLiteral("the file has no known format; if it is an encrypted CSPro data file (.csdb), "
                                        "save it unencrypted in CSPro first"));
}

} // namespace vanlayout
