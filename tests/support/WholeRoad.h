#ifndef SUPPORT_WHOLEROAD_H
#define SUPPORT_WHOLEROAD_H

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

/// What an importer told of a file, as one text: two ways of reading can be compared by it.
inline QString toldBy(TDataImport &importer, TVpDataProvider &provider)
{
    QString told;
    for (int i = 0; i < importer.getGroupCount(); ++i)
        told += importer.getGroupName(i) + QLatin1Char('\n') + importer.getGroupValue(i) + QLatin1Char('\n');
    for (const TVpSourceField *field : *provider.getFields()) {
        told += QStringList({ field->fieldName, field->label, field->getFieldType(), QString::number(field->length),
                              QString::number(field->start), QString::number(field->decimals), field->minimum,
                              field->maximum, field->group, field->valueLabels, field->notApplicable,
                              field->missingValue })
                    .join(QLatin1Char('\n'));
        TGenericField *source = importer.fieldByName(field->fieldName);
        source->setAsString(field->label);
        told += TestAccess::getAsString(source) + source->getValueLabel(field->minimum);
    }
    return told;
}

/// Takes the whole road from an importer to a filled provider and back: everything made is freed.
inline QString takeWholeRoad(TDataImport &importer)
{
    TVpDataProvider provider;
    QString told;
    try {
        const std::unique_ptr<QStringList> names(importer.selectLayoutSource());
        provider.genericGetFieldsFrom(&importer);
        told = toldBy(importer, provider);
    } catch (VpErrorManager *error) {
        told = error->catalogueMessage();
        delete error;
    }
    provider.releaseContents();
    importer.releaseContents();
    return told;
}

#endif
