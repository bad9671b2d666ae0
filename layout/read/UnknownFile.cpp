#include "read/Formats_p.h"

#include <QString>

#include <algorithm>
#include <iterator>

namespace vanlayout
{

namespace
{

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

} // namespace

QString describeUnknownFile(const QByteArray &head)
{
    if (const Signature *signature = findSignature(head))
        return QStringLiteral("the file is %1, not a layout").arg(QLatin1String(signature->name));
    return QStringLiteral("the file has no known format");
}

} // namespace vanlayout
