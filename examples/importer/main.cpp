// Lists the fields that the importers make from CSPro dictionaries, SPSS and Stata files. The content of a file
// determines its format.

#include "formats/MakeImporter.h"
#include "import/DataProvider.h"
#include "import/ErrorManager.h"
#include "import/SourceField.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QTextStream>

#include <memory>

namespace
{

bool list(const QString &path, QTextStream &out)
{
    const std::unique_ptr<TDataImport> importer = makeImporter(path);
    // This call reads the file. The caller owns the list of names.
    const std::unique_ptr<QStringList> names(importer->selectLayoutSource());
    TVpDataProvider provider;
    provider.genericGetFieldsFrom(importer.get());
    out << path << ": " << names->size() << " variables\n";
    for (const TVpSourceField *field : *provider.getFields())
        out << field->fieldName << '\t' << field->FieldType << '\t' << field->label << '\n';
    // The fields outlive the provider and the importer unless they are released.
    provider.releaseContents();
    importer->releaseContents();
    return !names->isEmpty();
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false); // the library writes many debug lines
    QTextStream out(stdout);
    bool isFine = true;
    for (const QString &path : application.arguments().mid(1)) {
        try {
            isFine = list(path, out) && isFine;
        } catch (VpErrorManager *error) {
            // The error is thrown by pointer, and the handler owns it.
            const std::unique_ptr<VpErrorManager> owned(error);
            out << path << ": error " << owned->getCode() << ": " << owned->catalogueMessage() << '\n';
            isFine = false;
        }
    }
    return isFine ? 0 : 1;
}
