#include "formats/MakeImporter.h"

#include "cspro/CSProDataImport.h"
#include "cspro/CSProJsonDataImport.h"
#include "statistical/SPSSDataImport.h"
#include "statistical/STATADataImport.h"

#include <QFile>
#include <QFileInfo>

namespace
{

template <typename Importer> std::unique_ptr<TDataImport> makeBuffered(const QString &path)
{
    auto importer = std::make_unique<Importer>(path);
    importer->setReadingBuffered(true);
    return importer;
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

QByteArray headOf(const QString &path)
{
    QFile file(path);
    const bool canRead = QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly);
    return canRead ? file.read(importHeadSize) : QByteArray();
}

} // namespace

ImportFormat importFormatOf(const QByteArray &head)
{
    if (head.trimmed().startsWith('{'))
        return ImportFormat::CSPro8;
    if (isSpss(head))
        return ImportFormat::Spss;
    return isStata(head) ? ImportFormat::Stata : ImportFormat::CSPro;
}

std::unique_ptr<TDataImport> makeImporter(ImportFormat format, const QString &path)
{
    switch (format) {
    case ImportFormat::CSPro:
        break;
    case ImportFormat::CSPro8:
        return std::make_unique<TCSProJsonDataImport>(path);
    case ImportFormat::Stata:
        return makeBuffered<TSTATADataImport>(path);
    case ImportFormat::Spss:
        return makeBuffered<TSPSSDataImport>(path);
    }
    return std::make_unique<TCSProDataImport>(path);
}

std::unique_ptr<TDataImport> makeImporter(const QString &path)
{
    return makeImporter(importFormatOf(headOf(path)), path);
}
