#include "read/Formats_p.h"

#include <QString>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace vanlayout
{

namespace
{

constexpr char separators[] = { ',', ';', '\t' };

constexpr int wrapperSize = 36; // bytes in front of an encrypted SPSS file

struct Signature {
    QByteArray begin;
    const char *name;
};

// clang-format off
const Signature *findSignature(const QByteArray &head)
{
    static const Signature signatures[] = {
        {"\x89PNG\r\n",         "a PNG image"},
        {"\xff\xd8\xff",        "a JPEG image"},
        {"GIF8",                "a GIF image"},
        {"PK\x03\x04",          "a ZIP archive (or a file in one, such as XLSX); unpack it and read the file in it"},
        {"%PDF-",               "a PDF document"},
        {"\x1f\x8b",            "a gzip archive; unpack it and read the file in it"},
        {"BZh",                 "a bzip2 archive; unpack it and read the file in it"},
        {"\xfd" "7zXZ",         "an xz archive; unpack it and read the file in it"},
        {"7z\xbc\xaf\x27\x1c",  "a 7z archive; unpack it and read the file in it"},
        {"Rar!",                "a RAR archive; unpack it and read the file in it"},
        {"\xd0\xcf\x11\xe0",    "a document of older Office programs"},
        {"<?xml",               "an XML document"},
        {"<!DOCTYPE",           "an HTML page"},
        {"<html",               "an HTML page"},
        {"{\\rtf",              "an RTF document"},
        {"\x7f" "ELF",          "a program"},
        {"MZ",                  "a Windows program"},
    };
    const auto *found = std::find_if(std::begin(signatures), std::end(signatures),
                                     [&](const Signature &signature) { return head.startsWith(signature.begin); });
    return found != std::end(signatures) ? found : nullptr;
}
// clang-format on

// Text has no control characters but white space; bytes above ASCII may be of any encoding.
bool isText(const QByteArray &head)
{
    return std::none_of(head.begin(), head.end(), [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte == 0 || (byte < ' ' && !std::strchr("\t\n\v\f\r\x1a", character));
    });
}

// Whether the first two whole lines have the same number of a separator, at least one.
bool isTableOf(const QByteArray &head, char separator)
{
    const int end = head.indexOf('\n');
    const int nextEnd = end < 0 ? -1 : head.indexOf('\n', end + 1);
    if (nextEnd < 0)
        return false;
    const int count = head.left(end).count(separator);
    return count > 0 && head.mid(end + 1, nextEnd - end - 1).count(separator) == count;
}

bool isCsv(const QByteArray &head)
{
    return std::any_of(std::begin(separators), std::end(separators),
                       [&](char separator) { return isTableOf(head, separator); });
}

} // namespace

QString describeUnknownFile(const QByteArray &head)
{
    if (const Signature *signature = findSignature(head))
        return QStringLiteral("the file is %1, not a layout").arg(QLatin1String(signature->name));
    if (head.left(wrapperSize).contains("ENCRYPTEDSAV"))
        return QStringLiteral("the file is an encrypted SPSS file; save it without a password in SPSS first");
    if (!isText(head))
        return QStringLiteral("the file has no known format; if it is an encrypted CSPro data file (.csdb), save it "
                              "unencrypted in CSPro first");
    if (isCsv(head))
        return QStringLiteral("the file is a CSV file with data; a layout is in the dictionary that belongs to it");
    return QStringLiteral("the file is a text without a [Dictionary] section, not a layout");
}

} // namespace vanlayout
