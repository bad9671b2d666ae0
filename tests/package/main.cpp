#include "cspro/CSProDataImport.h"
#include "import/DataProvider.h"
#include "import/ErrorManager.h"
#include "import/SourceField.h"
#include "model_vanadmin_version.h"
#include "record/QuestIndex.h"

#include <cstdio>
#include <memory>

static_assert(MODEL_VANADMIN_VERSION >= MODEL_VANADMIN_VERSION_CHECK(0, 1, 0));

int main(int, char **arguments)
{
    std::printf("%d.%d.%d %s\n", MODEL_VANADMIN_VERSION_MAJOR, MODEL_VANADMIN_VERSION_MINOR,
                MODEL_VANADMIN_VERSION_PATCH, MODEL_VANADMIN_VERSION_STRING);
    const std::unique_ptr<TDataImport> importer = std::make_unique<TCSProDataImport>(QString(arguments[1]));
    const std::unique_ptr<QStringList> names(importer->selectLayoutSource());
    TVpDataProvider provider;
    provider.genericGetFieldsFrom(importer.get());
    for (const TVpSourceField *field : *provider.getFields())
        std::printf("%s %s %d %d\n", qPrintable(field->fieldName), qPrintable(field->FieldType), field->start,
                    field->length);

    int code = 0;
    try {
        provider.findField("A", "B");
    } catch (VpErrorManager *error) {
        code = error->getCode();
        delete error;
    }
    TQuestIndex index;
    index.typeLength = 1;
    return names->size() == 2 && code == 106 && index.typeOf("H1") == "H" ? 0 : 1;
}
