#ifndef SUPPORT_IMPORTEDTEXT_H
#define SUPPORT_IMPORTEDTEXT_H

#include "import/DataImport.h"
#include "import/DataProvider.h"
#include "import/ErrorManager.h"
#include "import/SourceField.h"

#include <QString>
#include <QStringList>

#include <memory>

struct TestAccess {
    static QString getAsString(TGenericField *field) { return field->getAsString(); }
};

/// Returns the groups and fields of an importer as one text, so that two ways of reading can be compared.
inline QString textOfFields(TDataImport &importer, TVpDataProvider &provider)
{
    QString text;
    for (int i = 0; i < importer.getGroupCount(); ++i)
        text += importer.getGroupName(i) + QLatin1Char('\n') + importer.getGroupValue(i) + QLatin1Char('\n');
    for (const TVpSourceField *field : *provider.getFields()) {
        text += QStringList({ field->fieldName, field->label, field->getFieldType(), QString::number(field->length),
                              QString::number(field->start), QString::number(field->decimals), field->minimum,
                              field->maximum, field->group, field->valueLabels, field->notApplicable,
                              field->missingValue })
                    .join(QLatin1Char('\n'));
        TGenericField *source = importer.fieldByName(field->fieldName);
        source->setAsString(field->label);
        text += TestAccess::getAsString(source) + source->getValueLabel(field->minimum);
    }
    return text;
}

/// Opens an importer, fills a provider, and frees everything that was made. Returns the text of the fields.
inline QString importedText(TDataImport &importer)
{
    TVpDataProvider provider;
    QString text;
    try {
        const std::unique_ptr<QStringList> names(importer.selectLayoutSource());
        provider.genericGetFieldsFrom(&importer);
        text = textOfFields(importer, provider);
    } catch (VpErrorManager *error) {
        text = error->catalogueMessage();
        delete error;
    }
    provider.releaseContents();
    importer.releaseContents();
    return text;
}

#endif
