// Lists the variables of CSPro dictionaries, SPSS and Stata files: the format goes by the file's name.

#include "cspro/CSProDataImport.h"
#include "import/DataProvider.h"
#include "import/ErrorManager.h"
#include "import/SourceField.h"
#include "statistical/SPSSDataImport.h"
#include "statistical/STATADataImport.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QTextStream>

#include <memory>

namespace
{

std::unique_ptr<TDataImport> importerFor(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QLatin1String("sav") || suffix == QLatin1String("zsav"))
        return std::make_unique<TSPSSDataImport>(path);
    if (suffix == QLatin1String("dta"))
        return std::make_unique<TSTATADataImport>(path);
    return std::make_unique<TCSProDataImport>(path);
}

bool list(const QString &path, QTextStream &out)
{
    const std::unique_ptr<TDataImport> importer = importerFor(path);
    // Opens the importer; the names are ours to delete.
    const std::unique_ptr<QStringList> names(importer->selectLayoutSource());
    TVpDataProvider provider;
    provider.genericGetFieldsFrom(importer.get());
    out << path << ": " << names->size() << " variables\n";
    for (const TVpSourceField *field : *provider.getFields())
        out << field->fieldName << '\t' << field->FieldType << '\t' << field->label << '\n';
    return !names->isEmpty();
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false); // the library tells a lot there
    QTextStream out(stdout);
    bool isFine = true;
    for (const QString &path : application.arguments().mid(1)) {
        try {
            isFine = list(path, out) && isFine;
        } catch (VpErrorManager *error) {
            // Thrown by pointer; the handler owns it.
            const std::unique_ptr<VpErrorManager> owned(error);
            out << path << ": error " << owned->getCode() << ": " << owned->catalogueMessage() << '\n';
            isFine = false;
        }
    }
    return isFine ? 0 : 1;
}
