#ifndef SUPPORT_MAKEIMPORTER_H
#define SUPPORT_MAKEIMPORTER_H

#include "import/DataImport.h"

#include <QMetaType>
#include <QString>

#include <memory>

/// Makes an importer of one format for a file, which it does not open yet.
using MakeImporter = std::unique_ptr<TDataImport> (*)(const QString &path);
Q_DECLARE_METATYPE(MakeImporter)

template <typename Importer> std::unique_ptr<TDataImport> makeImporter(const QString &path)
{
    return std::make_unique<Importer>(path);
}

#endif
