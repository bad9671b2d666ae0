#include "FileType.h"

#include <algorithm>
#include <iterator>

namespace
{

// clang-format off
const FileType fileTypes[] = {
    {"cspro8", "a",  "CSPro 8 JSON dictionary", ImportFormat::CSPro8, false},
    {"spss",   "an", "SPSS file",               ImportFormat::Spss,   false},
    {"stata",  "a",  "Stata file",              ImportFormat::Stata,  false},
    {"cspro",  "a",  "CSPro text dictionary",   ImportFormat::CSPro,  true},
};
// clang-format on

template <typename Predicate> const FileType *findType(Predicate isWanted)
{
    const auto *found = std::find_if(std::begin(fileTypes), std::end(fileTypes), isWanted);
    return found != std::end(fileTypes) ? found : nullptr;
}

} // namespace

const FileType *fileTypeNamed(const std::string &name)
{
    return findType([&](const FileType &type) { return name == type.name; });
}

const FileType &fileTypeOf(const QByteArray &head)
{
    const ImportFormat format = importFormatOf(head);
    return *findType([&](const FileType &type) { return type.format == format; });
}
