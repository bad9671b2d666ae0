// Derives from each abstraction and overrides every virtual operation: it would not compile if one were missing or had
// another form.

#include "import/DataImport.h"
#include "import/GenericField.h"
#include "import/SourceField.h"
#include "lookup/Lookup.h"
#include "model/Entity.h"
#include "record/Record.h"
#include "support/VirtualSlot.h"

#include <QtTest>

#ifdef __GNUC__
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor" // the destructor of an entity is not virtual: this is intended
#endif

namespace
{

class EveryImport : public TDataImport
{
public:
    using TDataImport::getDictionary;
    ~EveryImport() override = default;
    QString getDataProviderId() override { return "id"; }
    QString getDataProviderType() override { return "type"; }
    bool openFile() override { return true; }
    void getDictionary(QList<TVpSourceField *> * /*target*/, QStringList *names) override { names->append("called"); }
    QStringList *selectLayoutSource() override { return new QStringList("selected"); }
    bool isMultiple() override { return true; }
    int getGroupCount() override { return 1; }
    QString getGroupName(int index) override { return QString::number(index); }
    QString getGroupValue(int index) override { return QString::number(index + 1); }
    int getRecordTypeIndex(QString value) override { return value.size(); }
    QString getRecordTypeCurrent() override { return "current"; }
    QStringList *getLayoutSource() override { return new QStringList("layout"); }
    int getRecordTypeStart() override { return 2; }
    int getRecordTypeSize() override { return 3; }
};

class EveryField : public TGenericField
{
public:
    using TGenericField::TGenericField;
    ~EveryField() override = default;
    bool isMissing() override { return true; }
    bool isNotApplicable() override { return true; }
    bool isBlank() override { return true; }
    void addValueLabel(QString code, QString text) override { valueLabels = code + text; }
    QString getGroup() override { return "group"; }
};

class EveryEntity : public TVpEntity
{
public:
    std::string toString() override { return "mine"; }
};

class EveryLookup : public TVpLookup
{
public:
    explicit EveryLookup(bool &flag)
        : isGone(flag)
    {
    }
    ~EveryLookup() override { isGone = true; }

private:
    bool &isGone;
};

class EveryRecord : public TVpRecord
{
public:
    explicit EveryRecord(bool &flag)
        : isGone(flag)
    {
    }
    ~EveryRecord() override { isGone = true; }

private:
    bool &isGone;
};

} // namespace

/// Tests that callers of the base reach each override.
class OverridesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void importerIsReachedThroughItsBase()
    {
        EveryImport mine;
        TDataImport &importer = mine;
        QStringList names;
        importer.getDictionary(nullptr, &names);
        QCOMPARE(names, QStringList("called"));
        QCOMPARE(importer.getDataProviderId() + importer.getDataProviderType(), QString("idtype"));
        QVERIFY(importer.openFile() && importer.isMultiple());
        QCOMPARE(importer.getGroupCount(), 1);
        QCOMPARE(importer.getGroupName(4) + importer.getGroupValue(4), QString("45"));
        QCOMPARE(importer.getRecordTypeIndex("abc"), 3);
        QCOMPARE(importer.getRecordTypeCurrent(), QString("current"));
        QCOMPARE(importer.getRecordTypeStart() + importer.getRecordTypeSize(), 5);
        const std::unique_ptr<QStringList> selected(importer.selectLayoutSource());
        const std::unique_ptr<QStringList> layout(importer.getLayoutSource());
        QCOMPARE(*selected + *layout, (QStringList{ "selected", "layout" }));
    }

    void fieldIsReachedThroughItsBase()
    {
        EveryField mine(nullptr);
        TGenericField &field = mine;
        QVERIFY(field.isMissing() && field.isNotApplicable() && field.isBlank());
        field.addValueLabel("1", "One");
        QCOMPARE(field.valueLabels, QString("1One"));
        QCOMPARE(field.getGroup(), QString("group"));
    }

    void entityIsReachedThroughItsBase()
    {
        EveryEntity mine;
        TVpEntity &entity = mine;
        QCOMPARE(entity.toString(), std::string("mine"));
    }

    void destructorsAreReachedThroughTheirBase()
    {
        bool isGone = false;
        std::unique_ptr<TVpLookup>(new EveryLookup(isGone)).reset();
        QVERIFY(isGone);
        isGone = false;
        std::unique_ptr<TVpRecord>(new EveryRecord(isGone)).reset();
        QVERIFY(isGone);
    }

#ifdef SUPPORT_HAS_VIRTUALSLOT
    // Those of the importer and the field are in their own tests.
    void onlyOperationOfAnEntityIsFirst()
    {
        QCOMPARE(int(virtualSlot(&TVpEntity::toString)), 0);
    }
#endif
};

QTEST_APPLESS_MAIN(OverridesTest)
#include "OverridesTest.moc"
