#include "import/LoaderManager_p.h"

#include "import/Constants.h"
#include "util/DebugLog_p.h"
#include "import/ErrorManager.h"

namespace
{

constexpr int codeNoRegistry = 106;
constexpr int codeNotRegistered = 107;

} // namespace

TLoaderManager *loaderManager = nullptr;

TLoaderManager::TLoaderManager()
    : formats(new QStringList)
{
}

TLoaderManager::~TLoaderManager() = default;

bool IsFormatRegistered(QString format)
{
    if (!loaderManager || !loaderManager->formats)
        throw new VpErrorManager(ClassTag::DataImport, codeNoRegistry);
    return loaderManager->formats->contains(format);
}

TDataImport *GetDataClassLoader(QString format)
{
    debugLine("GetDataClassLoader - In");
    loaderManager = new TLoaderManager;
    return loaderFromManager(loaderManager, format);
}

TDataImport *loaderFromManager(const TLoaderManager *manager, const QString &format)
{
    if (!manager->formats) {
        // LCOV_EXCL_LINE marks a line that runs: the compiler counts the statement at its second line.
        debugLine("GetDataClassLoader - 1 ", static_cast<const void *>(manager), // LCOV_EXCL_LINE
                  static_cast<const void *>(&manager->formats));
        throw new VpErrorManager(ClassTag::DataImport, codeNotRegistered, format);
    }
    const int index = manager->formats->indexOf(format);
    debugLine("GetDataClassLoader - 2", index);
    if (index == -1) {
        debugLine("GetDataClassLoader - 4");
        throw new VpErrorManager(ClassTag::DataImport, codeNotRegistered, format);
    }
    debugLine("GetDataClassLoader - 3");
    return nullptr;
}
