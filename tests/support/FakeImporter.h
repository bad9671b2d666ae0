#ifndef SUPPORT_FAKEIMPORTER_H
#define SUPPORT_FAKEIMPORTER_H

#include "import/DataImport.h"
#include "import/GenericField.h"

#include <QString>
#include <QStringList>

/// A field whose results the test sets. It records the order of the calls.
class FakeField : public TGenericField
{
public:
    explicit FakeField(TDataImport *importer = nullptr, const QString &fieldName = QString(),
                       eVanVarType fieldType = vtNone)
        : TGenericField(importer)
    {
        name = fieldName;
        type = fieldType;
    }
    FakeField(const FakeField &) = default;
    FakeField &operator=(const FakeField &) = default;
    FakeField(FakeField &&) = default;

    bool isMissing() override { return answer("missing", saysMissing); }
    bool isNotApplicable() override { return answer("notApplicable", saysNotApplicable); }
    bool isBlank() override { return answer("blank", saysBlank); }
    QString getGroup() override { return group; }

    bool saysMissing = false;
    bool saysNotApplicable = false;
    bool saysBlank = false;
    QString group;
    QStringList questions;

private:
    bool answer(const char *question, bool says)
    {
        questions.append(QLatin1String(question));
        return says;
    }
};

/// An importer that "reads" the fields of its layout, which belong to the test. It records the order of its calls.
class FakeImporter : public TDataImport
{
public:
    FakeImporter() = default;
    FakeImporter(const QString &sourcePath, const QString &typeText)
        : TDataImport(sourcePath)
        , type(typeText)
    {
        initDataImport();
    }
    FakeImporter(const FakeImporter &) = default;
    FakeImporter &operator=(const FakeImporter &) = default;
    FakeImporter(FakeImporter &&) = default;

    using TDataImport::getDictionary;
    QString getDataProviderId() override
    {
        calls.append(QStringLiteral("getDataProviderId"));
        return type + QLatin1Char('_') + sourceName;
    }
    QString getDataProviderType() override
    {
        calls.append(QStringLiteral("getDataProviderType"));
        return type;
    }
    bool openFile() override
    {
        calls.append(QStringLiteral("openFile"));
        openDataImport();
        stateValue = 1.0;
        for (TGenericField *field : qAsConst(layout))
            addField(field);
        return opens;
    }
    int getRecordTypeStart() override
    {
        calls.append(QStringLiteral("getRecordTypeStart"));
        return recordTypeStart;
    }
    int getRecordTypeSize() override
    {
        calls.append(QStringLiteral("getRecordTypeSize"));
        return recordTypeSize;
    }

    QString type;
    QList<TGenericField *> layout;
    bool opens = true;
    int recordTypeStart = 0;
    int recordTypeSize = 0;
    QStringList calls;
};

#endif
