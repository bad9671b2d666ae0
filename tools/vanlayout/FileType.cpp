#include "FileType.h"

#include "cspro/CSProDataImport.h"
#include "cspro/CSProJsonDataImport.h"
#include "statistical/SPSSDataImport.h"
#include "statistical/STATADataImport.h"

#include <algorithm>
#include <iterator>

namespace
{

template <typename Importer> std::unique_ptr<TDataImport> makeImporter(const QString &file)
{
    return std::make_unique<Importer>(file);
}

std::unique_ptr<TDataImport> makeSpssImporter(const QString &file)
{
    auto importer = std::make_unique<TSPSSDataImport>(file);
    importer->setReadingBuffered(true);
    return importer;
}

std::unique_ptr<TDataImport> makeStataImporter(const QString &file)
{
    auto importer = std::make_unique<TSTATADataImport>(file);
    importer->setReadingBuffered(true);
    importer->setErrorStream(stderr); // standard output holds the result alone
    return importer;
}

bool isJson(const QByteArray &head)
{
    return head.trimmed().startsWith('{');
}

bool isSpss(const QByteArray &head)
{
    return head.startsWith("$FL2") || head.startsWith("$FL3");
}

// The newer versions begin with a tag, the older ones with a version byte and a byte order.
bool isStata(const QByteArray &head)
{
    if (head.startsWith("<stata_dta>"))
        return true;
    return head.size() >= 2 && head.at(0) >= 104 && head.at(0) <= 115 && (head.at(1) == 1 || head.at(1) == 2);
}

bool isAnything(const QByteArray & /*head*/)
{
    return true;
}

// clang-format off
// In the order in which they are tried.
const FileType fileTypes[] = {
    {"cspro8", "a",  "CSPro 8 JSON dictionary", makeImporter<TCSProJsonDataImport>, isJson,     false},
    {"spss",   "an", "SPSS file",               makeSpssImporter,                   isSpss,     false},
    {"stata",  "a",  "Stata file",              makeStataImporter,                  isStata,    false},
    {"cspro",  "a",  "CSPro text dictionary",   makeImporter<TCSProDataImport>,     isAnything, true},
};
// clang-format on

} // namespace

const FileType *fileTypeNamed(const std::string &name)
{
    const auto *found = std::find_if(std::begin(fileTypes), std::end(fileTypes),
                                     [&](const FileType &type) { return name == type.name; });
    return found != std::end(fileTypes) ? found : nullptr;
}

const FileType &fileTypeOf(const QByteArray &head)
{
    return *std::find_if(std::begin(fileTypes), std::end(fileTypes),
                         [&](const FileType &type) { return type.recognises(head); });
}
