#include "import/DataProvider.h"
#include "import/DataProvider_p.h"
#include "import/SourceField.h"
#include "record/Record.h"
#include "support/Callable.h"
#include "support/DebugCapture.h"
#include "support/FakeImporter.h"
#include "support/NamedNumber.h"
#include "support/Thrown.h"
#include "support/Throws.h"

#include <QtTest>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <new>
#include <stdexcept>
#include <type_traits>

struct TestAccess {
    // All members that are copied by value and are not pointers.
    static QStringList texts(const TVpDataProvider &p)
    {
        return { p.recordTypeValue,
                 p.text1,
                 p.currentLine,
                 p.currentRecordType,
                 p.text2,
                 p.text3,
                 p.fallbackFileName,
                 p.text4,
                 p.dataProviderId,
                 p.dataProviderLabel,
                 p.dataProviderType,
                 p.layoutFileName,
                 p.dataFileName,
                 p.text5,
                 p.text6,
                 p.text7,
                 p.text8 };
    }
    static QStringList numbers(const TVpDataProvider &p)
    {
        QStringList all = { named("counter", p.counter),
                            named("pointer1", p.pointer1),
                            named("flag1", p.flag1),
                            named("number1", p.number1),
                            named("number2", p.number2),
                            named("block1.words[0]", p.block1.words[0]),
                            named("block1.words[1]", p.block1.words[1]),
                            named("block1.number", p.block1.number),
                            named("block1.flag", p.block1.flag),
                            named("dataProviderTypeIndex", p.dataProviderTypeIndex),
                            named("recordTypeStart", p.recordTypeStart),
                            named("recordTypeSize", p.recordTypeSize),
                            named("recordTypes", p.recordTypes),
                            named("number3", p.number3),
                            named("number4", p.number4),
                            named("flag2", p.flag2),
                            named("flag3", p.flag3),
                            named("flag4", p.flag4),
                            named("flag5", p.flag5),
                            named("flag6", p.flag6),
                            named("number5", p.number5),
                            named("number6", p.number6) };
        for (const int number : p.numbers1)
            all.append(named("numbers1", number));
        for (const int number : p.numbers2)
            all.append(named("numbers2", number));
        for (const auto &pair : p.table1)
            all << named("table1.first", pair.first) << named("table1.second", pair.second);
        for (const qint64 word : p.block2)
            all.append(named("block2", word));
        return all;
    }
    static QList<const void *> pointers(const TVpDataProvider &p)
    {
        return { p.importData, p.record, p.fields, p.recordTypeList, p.recordTypeNames, p.typeNames };
    }
    // Gives every member a different value that is not its default.
    static void fill(TVpDataProvider &p)
    {
        int number = 0;
        for (QString *text :
             { &p.recordTypeValue, &p.text1, &p.currentLine, &p.currentRecordType, &p.text2, &p.text3,
               &p.fallbackFileName, &p.text4, &p.dataProviderId, &p.dataProviderLabel, &p.dataProviderType,
               &p.layoutFileName, &p.dataFileName, &p.text5, &p.text6, &p.text7, &p.text8 })
            *text = QString::number(++number);
        for (int *value : { &p.counter, &p.number1, &p.number2, &p.block1.number, &p.recordTypeStart, &p.recordTypeSize,
                            &p.recordTypes, &p.number3, &p.number4, &p.number5, &p.number6 })
            *value = ++number;
        for (bool *flag : { &p.flag1, &p.block1.flag, &p.flag2, &p.flag3, &p.flag4, &p.flag5, &p.flag6 })
            *flag = true;
        for (qint64 *word : { &p.pointer1, &p.block1.words[0], &p.block1.words[1], &p.block2[0], &p.block2[1],
                              &p.block2[2], &p.block2[3], &p.block2[4] })
            *word = Q_INT64_C(1) << ++number;
        p.dataProviderTypeIndex = dpCSV;
        for (int &value : p.numbers1)
            value = ++number;
        for (int &value : p.numbers2)
            value = ++number;
        for (auto &pair : p.table1) {
            pair.first = ++number;
            pair.second = ++number;
        }
    }

    static QList<TVpSourceField *> *fields(const TVpDataProvider &p) { return p.fields; }
    static TVpRecord *record(const TVpDataProvider &p) { return p.record; }
    static void setRecord(TVpDataProvider &p, TVpRecord *record) { p.record = record; }
    static QStringList *recordTypeNames(const TVpDataProvider &p) { return p.recordTypeNames; }
    static QStringList *typeNames(const TVpDataProvider &p) { return p.typeNames; }
    static QString recordTypeValue(const TVpDataProvider &p) { return p.recordTypeValue; }
    static QString currentRecordType(const TVpDataProvider &p) { return p.currentRecordType; }
    static int references(const TVpDataProvider &p) { return p.numbers1[4]; }
    static void setCurrentLine(TVpDataProvider &p, const QString &line) { p.currentLine = line; }
    static void setFallbackFileName(TVpDataProvider &p, const QString &name) { p.fallbackFileName = name; }
    static void setRecordTypeList(TVpDataProvider &p, QStringList *list) { p.recordTypeList = list; }
    static void setRecordTypesMember(TVpDataProvider &p, int value) { p.recordTypes = value; }
    static void setType(TVpDataProvider &p, const QString &type) { p.dataProviderType = type; }

    static QString getDataProviderLabel(const TVpDataProvider &p) { return p.getDataProviderLabel(); }
    static void setDataProviderLabel(TVpDataProvider &p, const QString &value) { p.setDataProviderLabel(value); }
    static eDataProviderType getDataProviderTypeIndex(const TVpDataProvider &p) { return p.getDataProviderTypeIndex(); }
    static void getRecordType(TVpDataProvider &p) { p.getRecordType(); }
    static QStringList *getRecordTypeList(const TVpDataProvider &p) { return p.getRecordTypeList(); }
    static int getRecordTypes(const TVpDataProvider &p) { return p.getRecordTypes(); }
    static void setRecordTypes(TVpDataProvider &p, int value) { p.setRecordTypes(value); }
    static int getReferences(const TVpDataProvider &p) { return p.getReferences(); }
    static void setReferences(TVpDataProvider &p, int value) { p.setReferences(value); }
    static void setRecordTypeStart(TVpDataProvider &p, int value) { p.setRecordTypeStart(value); }
    static void setRecordTypeSize(TVpDataProvider &p, int value) { p.setRecordTypeSize(value); }

    static void name(TVpRecord &record, const QString &name) { record.name = name; }
    static void type(TVpRecord &record, const QString &code, int number)
    {
        record.text1 = code;
        record.numbers1[0] = number;
    }
    static void addChild(TVpRecord &parent, TVpRecord *child) { parent.addChild(child); }
    static void addBrother(TVpRecord &record, TVpRecord *brother) { record.addBrother(brother); }
};

namespace
{

std::atomic<const void *> watchedObject{ nullptr };
std::atomic<bool> isWatchedReleased{ false };

void release(void *object)
{
    if (object && object == watchedObject)
        isWatchedReleased = true;
    std::free(object);
}

// Detects whether an object is released while this exists. Only one may exist at a time.
class ReleaseWatch
{
public:
    explicit ReleaseWatch(const void *object)
    {
        isWatchedReleased = false;
        watchedObject = object;
    }
    ~ReleaseWatch() { watchedObject = nullptr; }
    ReleaseWatch(const ReleaseWatch &) = delete;
    ReleaseWatch &operator=(const ReleaseWatch &) = delete;

    bool isReleased() const { return isWatchedReleased; }
};

} // namespace

// Every object of the program, the library's included, is freed here. New is replaced together with delete because the
// sanitizers require the two to match.
void *operator new(std::size_t size)
{
    if (void *object = std::malloc(std::max<std::size_t>(size, 1)))
        return object;
    throw std::bad_alloc();
}
void *operator new(std::size_t size, const std::nothrow_t & /*tag*/) noexcept
{
    return std::malloc(std::max<std::size_t>(size, 1));
}
void operator delete(void *object) noexcept
{
    release(object);
}
void operator delete(void *object, std::size_t /*size*/) noexcept
{
    release(object);
}

namespace
{

CALLABLE(CallsGetDataProviderLabel, getDataProviderLabel());
CALLABLE(CallsSetDataProviderLabel, setDataProviderLabel(QString()));
CALLABLE(CallsGetDataProviderTypeIndex, getDataProviderTypeIndex());
CALLABLE(CallsGetRecordType, getRecordType());
CALLABLE(CallsGetRecordTypeList, getRecordTypeList());
CALLABLE(CallsGetRecordTypes, getRecordTypes());
CALLABLE(CallsSetRecordTypes, setRecordTypes(1));
CALLABLE(CallsGetReferences, getReferences());
CALLABLE(CallsSetReferences, setReferences(1));
CALLABLE(CallsSetRecordTypeStart, setRecordTypeStart(1));
CALLABLE(CallsSetRecordTypeSize, setRecordTypeSize(1));
CALLABLE(CallsGetRecordTypeStart, getRecordTypeStart());
CALLABLE(CallsGetRecordTypeSize, getRecordTypeSize());
CALLABLE(CallsGetRecordTypeValue, getRecordTypeValue());
CALLABLE(CallsSetDataProviderId, setDataProviderId(QString()));
CALLABLE(CallsSetDataProviderType, setDataProviderType(QString()));
CALLABLE(CallsFindField, findField(QString(), QString()));
CALLABLE(CallsGetRecord, getRecord(QString()));

// An importer with its own dictionary, as a calling layer may supply one.
class DelimitedImporter : public FakeImporter
{
public:
    using FakeImporter::FakeImporter;
    void getDictionary(QList<TVpSourceField *> *target, QStringList *recordTypeNames) override
    {
        calls.append(QStringLiteral("own getDictionary"));
        own.fieldName = QStringLiteral("OWN");
        target->append(&own);
        recordTypeNames->append(QStringLiteral("record type"));
        namesSeen = recordTypeNames;
    }
    QStringList *namesSeen = nullptr;
    TVpSourceField own;
};

// A provider whose fields the test supplies, and which is filled from an importer.
struct Filled {
    explicit Filled(const QStringList &names, const QString &type = QStringLiteral("CSPRO"))
        : importer(QStringLiteral("layout.dcf"), type)
    {
        for (const QString &name : names) {
            owned.push_back(std::make_unique<FakeField>(&importer, name, vtInteger));
            importer.layout.append(owned.back().get());
        }
        const DebugCapture capture;
        delete importer.selectLayoutSource();
        provider.genericGetFieldsFrom(&importer);
    }

    FakeImporter importer;
    std::vector<std::unique_ptr<FakeField>> owned;
    TVpDataProvider provider;
};

QStringList namesOf(const QList<TVpSourceField *> &fields)
{
    QStringList names;
    for (const TVpSourceField *field : fields)
        names.append(field->fieldName);
    return names;
}

void fillFrom(TVpDataProvider &provider, TDataImport &importer)
{
    const DebugCapture capture;
    QVERIFY(provider.genericGetFieldsFrom(&importer));
}

} // namespace

class DataProviderTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void newProviderIsEmpty()
    {
        const TVpDataProvider provider;
        for (const QString &text : TestAccess::texts(provider))
            QCOMPARE(text, QString());
        const QStringList numbers = TestAccess::numbers(provider);
        QCOMPARE(numbers.size(), 22 + 6 + 7 + 512 + 5);
        QCOMPARE(nonZero(numbers), QStringList({ "number5=3", "number6=-1" }));
        const auto pointers = TestAccess::pointers(provider);
        QCOMPARE(pointers.mid(0, 4), QList<const void *>({ nullptr, nullptr, nullptr, nullptr }));
        QCOMPARE(*TestAccess::recordTypeNames(provider), QStringList());
        QCOMPARE(*TestAccess::typeNames(provider), QStringList({ "NONE", "CSPRO", "CSV" }));
        QCOMPARE(provider.getFields(), nullptr);
        QCOMPARE(provider.getImportData(), nullptr);
    }

    void everyProviderHasListsOfItsOwn()
    {
        const TVpDataProvider one;
        const TVpDataProvider other;
        QVERIFY(TestAccess::recordTypeNames(one) != TestAccess::recordTypeNames(other));
        QVERIFY(TestAccess::typeNames(one) != TestAccess::typeNames(other));
    }

    void newProviderFindsNothing()
    {
        const TVpDataProvider provider;
        QCOMPARE(provider.getField("AGE"), nullptr);
        QCOMPARE(provider.getField(""), nullptr);
        QCOMPARE(provider.getFieldFromRecord("AGE", "PERSON"), nullptr);
        QCOMPARE(provider.getFieldName("AGE"), QString());
        QCOMPARE(provider.getRecord("PERSON"), nullptr);
        QCOMPARE(provider.getRecordTypeValue(), QString());
    }

    void destructorIsVirtual() { QVERIFY(std::has_virtual_destructor_v<TVpDataProvider>); }

    void internalOperationsArePrivate()
    {
        QVERIFY(!CallsGetDataProviderLabel<TVpDataProvider>::value);
        QVERIFY(!CallsSetDataProviderLabel<TVpDataProvider>::value);
        QVERIFY(!CallsGetDataProviderTypeIndex<TVpDataProvider>::value);
        QVERIFY(!CallsGetRecordType<TVpDataProvider>::value);
        QVERIFY(!CallsGetRecordTypeList<TVpDataProvider>::value);
        QVERIFY(!CallsGetRecordTypes<TVpDataProvider>::value);
        QVERIFY(!CallsSetRecordTypes<TVpDataProvider>::value);
        QVERIFY(!CallsGetReferences<TVpDataProvider>::value);
        QVERIFY(!CallsSetReferences<TVpDataProvider>::value);
        QVERIFY(!CallsSetRecordTypeStart<TVpDataProvider>::value);
        QVERIFY(!CallsSetRecordTypeSize<TVpDataProvider>::value);
    }

    void otherOperationsArePublic()
    {
        QVERIFY(CallsGetRecordTypeStart<TVpDataProvider>::value);
        QVERIFY(CallsGetRecordTypeSize<TVpDataProvider>::value);
        QVERIFY(CallsGetRecordTypeValue<TVpDataProvider>::value);
        QVERIFY(CallsSetDataProviderId<TVpDataProvider>::value);
        QVERIFY(CallsSetDataProviderType<TVpDataProvider>::value);
        QVERIFY(CallsFindField<TVpDataProvider>::value);
        QVERIFY(CallsGetRecord<TVpDataProvider>::value);
    }

    void journeyFromAnImporterToItsFields()
    {
        FakeImporter importer("directory/layout.dcf", "CSPRO");
        FakeField age(&importer, "AGE", vtInteger);
        age.label = "Age in years";
        age.group = "PERSON";
        FakeField region(&importer, "REGION", vtString);
        importer.layout = { &region, &age };
        importer.recordTypeStart = 3;
        importer.recordTypeSize = 2;
        importer.setDataSourceName("data.dat");
        {
            const DebugCapture capture;
            const std::unique_ptr<QStringList> names(importer.selectLayoutSource());
            QCOMPARE(*names, QStringList({ "REGION", "AGE" }));
        }

        TVpDataProvider provider;
        {
            const DebugCapture capture;
            QCOMPARE(provider.genericGetFieldsFrom(&importer), true);
            // The lines of the dictionary and no other: five for each of the two fields.
            QCOMPARE(capture.taken().size(), 10);
        }
        QCOMPARE(provider.getDataProviderId(), QString("CSPRO_directory/layout.dcf"));
        QCOMPARE(provider.getDataProviderType(), QString("CSPRO"));
        QCOMPARE(TestAccess::getDataProviderTypeIndex(provider), dpCSPro);
        QCOMPARE(provider.getImportData(), static_cast<TDataImport *>(&importer));
        QCOMPARE(provider.getRecordTypeStart(), 3);
        QCOMPARE(provider.getRecordTypeSize(), 2);
        QCOMPARE(provider.getLayoutFileName(), QString("directory/layout.dcf"));
        QCOMPARE(provider.getDataFileName(), importer.getDataSourceName());
        QVERIFY(provider.getDataFileName().endsWith("/data.dat"));

        QCOMPARE(namesOf(*provider.getFields()), QStringList({ "REGION", "AGE" }));
        QCOMPARE(provider.getFieldName("AGE"), QString("AGE"));
        const TVpSourceField *field = provider.getField("AGE");
        QVERIFY(field);
        QCOMPARE(field->label, QString("Age in years"));
        QCOMPARE(field->FieldType, QString("INTEGER"));
        QCOMPARE(field->providerId, QString("CSPRO_directory/layout.dcf"));
        QCOMPARE(provider.getFieldFromRecord("AGE", "person"), field);
        QCOMPARE(provider.getFieldFromRecord("AGE", "HOUSING"), nullptr);
        QCOMPARE(provider.getFieldFromRecord("REGION", "HOUSING"), provider.getField("REGION"));
    }

    void fillingDoesNotOpenTheImporter()
    {
        FakeField age(nullptr, "AGE");
        FakeImporter importer("layout.dcf", "CSPRO");
        importer.layout = { &age };
        importer.calls.clear();
        TVpDataProvider provider;
        QCOMPARE(provider.genericGetFieldsFrom(&importer), true);
        QVERIFY(!importer.calls.contains("openFile"));
        QVERIFY(provider.getFields());
        QCOMPARE(provider.getFields()->size(), 0);
        QCOMPARE(provider.getField("AGE"), nullptr);
        QVERIFY(TestAccess::record(provider));
    }

    void fillingAsksTheImporterInThisOrder()
    {
        DelimitedImporter importer("layout.csv", "CSV");
        importer.calls.clear();
        TVpDataProvider provider;
        fillFrom(provider, importer);
        QCOMPARE(importer.calls,
                 QStringList({ "getDataProviderId", "getDataProviderType", "own getDictionary", "getRecordTypeStart",
                               "getRecordTypeSize" }));
    }

    void csvImporterFillsTheListByItself()
    {
        FakeField age(nullptr, "AGE");
        DelimitedImporter importer("layout.csv", "CSV");
        importer.layout = { &age };
        importer.openFile();
        TVpDataProvider provider;
        fillFrom(provider, importer);
        QCOMPARE(namesOf(*provider.getFields()), QStringList("OWN"));
        QCOMPARE(importer.namesSeen, TestAccess::recordTypeNames(provider));
        QCOMPARE(*TestAccess::recordTypeNames(provider), QStringList("record type"));
        QCOMPARE(provider.getDataProviderType(), QString("CSV"));
    }

    void csvImporterWithoutADictionaryOfItsOwnGivesNoFields()
    {
        const Filled filled({ "AGE" }, "CSV");
        QCOMPARE(filled.provider.getFields()->size(), 0);
    }

    void otherImporterIsNotAskedForADictionaryOfItsOwn_data()
    {
        QTest::addColumn<QString>("type");
        for (const char *type : { "CSPRO", "CSPRO8", "STATA", "SPSS", "csv", "NONE" })
            QTest::newRow(type) << QString(type);
    }
    void otherImporterIsNotAskedForADictionaryOfItsOwn()
    {
        QFETCH(QString, type);
        FakeField age(nullptr, "AGE");
        DelimitedImporter importer("layout.x", type);
        importer.layout = { &age };
        importer.openFile();
        TVpDataProvider provider;
        fillFrom(provider, importer);
        QCOMPARE(namesOf(*provider.getFields()), QStringList("AGE"));
        QVERIFY(!importer.calls.contains("own getDictionary"));
    }

    void typeOfTheProviderDecidesWhichDictionaryIsAsked()
    {
        // The provider does not know "SPSS" and stays at "CSV".
        FakeField age(nullptr, "AGE");
        DelimitedImporter importer("layout.sav", "SPSS");
        importer.layout = { &age };
        importer.openFile();
        TVpDataProvider provider;
        provider.setDataProviderType("CSV");
        fillFrom(provider, importer);
        QCOMPARE(namesOf(*provider.getFields()), QStringList("OWN"));
        QCOMPARE(provider.getDataProviderType(), QString("CSV"));
        QCOMPARE(provider.getDataProviderId(), QString("SPSS_layout.sav"));
    }

    void unknownTypeOfAnImporterKeepsTheFormerTypeButNotTheId_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("value");
        QTest::newRow("CSPRO") << "CSPRO"
                               << "CSPRO" << 1;
        QTest::newRow("CSPRO8") << "CSPRO8"
                                << "" << 0;
        QTest::newRow("STATA") << "STATA"
                               << "" << 0;
        QTest::newRow("SPSS") << "SPSS"
                              << "" << 0;
    }
    void unknownTypeOfAnImporterKeepsTheFormerTypeButNotTheId()
    {
        QFETCH(QString, type);
        QFETCH(QString, text);
        QFETCH(int, value);
        const Filled filled({ "AGE" }, type);
        QCOMPARE(filled.provider.getDataProviderType(), text);
        QCOMPARE(int(TestAccess::getDataProviderTypeIndex(filled.provider)), value);
        QCOMPARE(filled.provider.getDataProviderId(), type + "_layout.dcf");
    }

    void nullImporterIsRefusedAndChangesNothing()
    {
        Filled filled({ "AGE" });
        QCOMPARE(filled.provider.genericGetFieldsFrom(nullptr), false);
        QCOMPARE(filled.provider.getDataProviderId(), QString("CSPRO_layout.dcf"));
        QCOMPARE(filled.provider.getFieldName("AGE"), QString("AGE"));
    }

    void secondFillingReplacesListAndTree()
    {
        Filled filled({ "AGE" });
        TVpDataProvider &provider = filled.provider;
        const TVpSourceField *oldField = provider.getField("AGE");
        const TVpRecord *oldRecord = TestAccess::record(provider);
        FakeField sex(nullptr, "SEX");
        FakeImporter other("other.dcf", "CSPRO");
        other.layout = { &sex };
        other.openFile();
        fillFrom(provider, other);
        QCOMPARE(namesOf(*provider.getFields()), QStringList("SEX"));
        QVERIFY(TestAccess::record(provider) != oldRecord);
        QCOMPARE(provider.getLayoutFileName(), QString("other.dcf"));
        QCOMPARE(provider.getImportData(), static_cast<TDataImport *>(&other));
        // The objects of the first filling stay alive.
        QCOMPARE(oldField->fieldName, QString("AGE"));
        QCOMPARE(oldRecord->typeNumber(), -1);
    }

    void secondFillingReleasesTheOldListObject()
    {
        Filled filled({ "AGE" });
        const TVpSourceField *oldField = filled.provider.getField("AGE");
        const ReleaseWatch list(filled.provider.getFields());
        QVERIFY(!list.isReleased());
        fillFrom(filled.provider, filled.importer);
        QVERIFY(list.isReleased());
        QCOMPARE(oldField->fieldName, QString("AGE"));
    }

    void sourceFieldsAndTreeAreNotReleasedWithTheList()
    {
        Filled filled({ "AGE" });
        {
            const ReleaseWatch field(filled.provider.getField("AGE"));
            fillFrom(filled.provider, filled.importer);
            QVERIFY(!field.isReleased());
        }
        const ReleaseWatch record(TestAccess::record(filled.provider));
        fillFrom(filled.provider, filled.importer);
        QVERIFY(!record.isReleased());
    }

    void listThatACopySharesIsReleasedByTheLastToRefill_data() { copyTakesEveryMemberAndSharesAllPointers_data(); }
    void listThatACopySharesIsReleasedByTheLastToRefill()
    {
        QFETCH(bool, assigned);
        Filled filled({ "AGE" });
        TVpDataProvider target;
        if (assigned)
            target = filled.provider;
        TVpDataProvider copy(assigned ? target : filled.provider);
        target = copy; // a third provider, which is refilled second
        const ReleaseWatch list(copy.getFields());
        fillFrom(filled.provider, filled.importer);
        QVERIFY(!list.isReleased());
        fillFrom(target, filled.importer);
        QVERIFY(!list.isReleased());
        QCOMPARE(namesOf(*copy.getFields()), QStringList("AGE"));
        fillFrom(copy, filled.importer);
        QVERIFY(list.isReleased());
    }

    void listThatNoCopySharesAnyMoreIsReleased()
    {
        Filled filled({ "AGE" });
        auto copy = std::make_unique<TVpDataProvider>(filled.provider);
        const ReleaseWatch list(filled.provider.getFields());
        copy.reset();
        QVERIFY(!list.isReleased());
        fillFrom(filled.provider, filled.importer);
        QVERIFY(list.isReleased());
    }

    void listIsNotReleasedWithItsProvider()
    {
        FakeImporter importer("layout.dcf", "CSPRO");
        auto provider = std::make_unique<TVpDataProvider>();
        fillFrom(*provider, importer);
        const ReleaseWatch list(provider->getFields());
        provider.reset();
        QVERIFY(!list.isReleased());
    }

    void fillingAgainFromTheSameImporterMakesNewSourceFields()
    {
        Filled filled({ "AGE" });
        TVpSourceField *oldField = filled.provider.getField("AGE");
        fillFrom(filled.provider, filled.importer);
        QCOMPARE(filled.provider.getFields()->size(), 1);
        QVERIFY(filled.provider.getField("AGE") != oldField);
    }

    void recordTypeNamesGatherOverFillings()
    {
        DelimitedImporter importer("layout.csv", "CSV");
        TVpDataProvider provider;
        fillFrom(provider, importer);
        fillFrom(provider, importer);
        QCOMPARE(*TestAccess::recordTypeNames(provider), QStringList({ "record type", "record type" }));
        QCOMPARE(namesOf(*provider.getFields()), QStringList("OWN"));
    }

    void fillingMakesADefaultRecord()
    {
        const Filled filled({ "AGE" });
        QVERIFY(TestAccess::record(filled.provider));
        QCOMPARE(TestAccess::record(filled.provider)->typeCode(), QString());
        QCOMPARE(TestAccess::record(filled.provider)->typeNumber(), -1);
        QCOMPARE(TestAccess::record(filled.provider)->preOrderNext(), nullptr);
        QCOMPARE(filled.provider.getRecord(""), TestAccess::record(filled.provider));
    }

    void fillingTakesEmptyFileNamesOverToo()
    {
        TVpDataProvider provider;
        provider.setLayoutFileName("former.dcf");
        provider.setDataFileName("former.dat");
        FakeImporter importer("", "CSPRO");
        fillFrom(provider, importer);
        QCOMPARE(provider.getLayoutFileName(), QString());
        QCOMPARE(provider.getDataFileName(), QString());
    }

    void whatTheImporterThrowsReachesTheCaller_data()
    {
        QTest::addColumn<bool>("byPointer");
        QTest::newRow("an error of the library") << true;
        QTest::newRow("any other") << false;
    }
    void whatTheImporterThrowsReachesTheCaller()
    {
        QFETCH(bool, byPointer);
        struct ThrowingImporter : FakeImporter {
            using FakeImporter::FakeImporter;
            int getRecordTypeSize() override
            {
                if (throwsPointer)
                    throw new VpErrorManager("CSPro", 101);
                throw std::runtime_error("no size");
            }
            bool throwsPointer = true;
        };
        ThrowingImporter importer("layout.dcf", "CSPRO");
        importer.throwsPointer = byPointer;
        TVpDataProvider provider;
        if (byPointer) {
            const auto error = thrownBy([&] { provider.genericGetFieldsFrom(&importer); });
            QVERIFY(error);
            QCOMPARE(error->getCode(), 101);
        } else {
            QVERIFY_THROWS_EXCEPTION(std::runtime_error, provider.genericGetFieldsFrom(&importer));
        }
        // The steps before the failure keep their effect.
        QCOMPARE(provider.getDataProviderId(), QString("CSPRO_layout.dcf"));
        QVERIFY(provider.getFields());
        QCOMPARE(TestAccess::record(provider), nullptr);
    }

    void everythingOutlivesTheProvider()
    {
        FakeField age(nullptr, "AGE");
        FakeImporter importer("layout.dcf", "CSPRO");
        importer.layout = { &age };
        importer.openFile();
        auto provider = std::make_unique<TVpDataProvider>();
        fillFrom(*provider, importer);
        const QList<TVpSourceField *> *fields = provider->getFields();
        const TVpSourceField *field = provider->getField("AGE");
        const TVpRecord *record = TestAccess::record(*provider);
        const QStringList *recordTypeNames = TestAccess::recordTypeNames(*provider);
        const QStringList *typeNames = TestAccess::typeNames(*provider);
        provider.reset();
        QCOMPARE(fields->size(), 1);
        QCOMPARE(fields->first(), field);
        QCOMPARE(field->fieldName, QString("AGE"));
        QCOMPARE(record->typeNumber(), -1);
        QCOMPARE(recordTypeNames->size(), 0);
        QCOMPARE(typeNames->size(), 3);
        QCOMPARE(importer.fieldByName("AGE"), static_cast<TGenericField *>(&age));
        QCOMPARE(importer.getSourceName(), QString("layout.dcf"));
    }

    void sourceFieldsOutliveTheirImporter()
    {
        TVpDataProvider provider;
        {
            FakeField age(nullptr, "AGE");
            FakeImporter importer("layout.dcf", "CSPRO");
            importer.layout = { &age };
            importer.openFile();
            fillFrom(provider, importer);
        }
        QCOMPARE(provider.getFieldName("AGE"), QString("AGE"));
    }

    void copyTakesEveryMemberAndSharesAllPointers_data()
    {
        QTest::addColumn<bool>("assigned");
        QTest::newRow("copied") << false;
        QTest::newRow("assigned") << true;
    }
    void copyTakesEveryMemberAndSharesAllPointers()
    {
        QFETCH(bool, assigned);
        Filled filled({ "AGE" });
        TVpDataProvider &provider = filled.provider;
        QStringList recordTypeList;
        TestAccess::fill(provider);
        TestAccess::setRecordTypeList(provider, &recordTypeList);
        TVpDataProvider target;
        if (assigned)
            target = provider;
        const TVpDataProvider copy(assigned ? target : provider);
        QCOMPARE(TestAccess::texts(copy), TestAccess::texts(provider));
        QCOMPARE(TestAccess::texts(copy).first(), QString("1"));
        QCOMPARE(TestAccess::texts(copy).last(), QString("17"));
        QCOMPARE(TestAccess::numbers(copy), TestAccess::numbers(provider));
        QCOMPARE(nonZero(TestAccess::numbers(copy)), TestAccess::numbers(copy));
        QCOMPARE(TestAccess::pointers(copy), TestAccess::pointers(provider));
        QCOMPARE(TestAccess::pointers(copy).count(nullptr), 0);
    }

    void refillingOneCopyLeavesTheOtherItsList_data() { copyTakesEveryMemberAndSharesAllPointers_data(); }
    void refillingOneCopyLeavesTheOtherItsList()
    {
        QFETCH(bool, assigned);
        Filled filled({ "AGE" });
        TVpDataProvider target;
        if (assigned)
            target = filled.provider;
        TVpDataProvider copy(assigned ? target : filled.provider);
        FakeField sex(nullptr, "SEX");
        FakeImporter other("other.dcf", "CSPRO");
        other.layout = { &sex };
        other.openFile();

        fillFrom(copy, other);
        QCOMPARE(namesOf(*copy.getFields()), QStringList("SEX"));
        QCOMPARE(namesOf(*filled.provider.getFields()), QStringList("AGE"));
        QVERIFY(TestAccess::record(copy) != TestAccess::record(filled.provider));

        fillFrom(filled.provider, other);
        QCOMPARE(namesOf(*filled.provider.getFields()), QStringList("SEX"));
        QCOMPARE(namesOf(*copy.getFields()), QStringList("SEX"));
    }

    void refillingTheSourceLeavesItsCopyTheList()
    {
        Filled filled({ "AGE" });
        const TVpDataProvider copy(filled.provider);
        fillFrom(filled.provider, filled.importer);
        QVERIFY(copy.getFields() != filled.provider.getFields());
        QCOMPARE(namesOf(*copy.getFields()), QStringList("AGE"));
        QCOMPARE(copy.getFieldName("AGE"), QString("AGE"));
    }

    void destroyedCopyLeavesTheListToItsSource()
    {
        Filled filled({ "AGE" });
        {
            const TVpDataProvider copy(filled.provider);
        }
        QCOMPARE(namesOf(*filled.provider.getFields()), QStringList("AGE"));
        fillFrom(filled.provider, filled.importer);
        QCOMPARE(namesOf(*filled.provider.getFields()), QStringList("AGE"));
    }

    void copiesOfAnEmptyProviderAreFilledApart()
    {
        TVpDataProvider provider;
        TVpDataProvider copy(provider);
        const Filled filled({ "AGE" });
        fillFrom(copy, *filled.provider.getImportData());
        QCOMPARE(provider.getFields(), nullptr);
        QCOMPARE(copy.getFields()->size(), 1);
    }

    void assigningToItselfChangesNothing()
    {
        Filled filled({ "AGE" });
        const TVpDataProvider &itself = filled.provider;
        filled.provider = itself;
        QCOMPARE(namesOf(*filled.provider.getFields()), QStringList("AGE"));
        QCOMPARE(filled.provider.getDataProviderId(), QString("CSPRO_layout.dcf"));
    }

    void moveTakesNothingFromItsArgument()
    {
        Filled filled({ "AGE" });
        TVpDataProvider &provider = filled.provider;
        QStringList recordTypeList;
        TestAccess::fill(provider);
        TestAccess::setRecordTypeList(provider, &recordTypeList);
        const QStringList texts = TestAccess::texts(provider);
        const QStringList numbers = TestAccess::numbers(provider);
        const QList<const void *> pointers = TestAccess::pointers(provider);

        const TVpDataProvider moved(std::move(provider));
        for (const QString &text : TestAccess::texts(moved))
            QCOMPARE(text, QString());
        QCOMPARE(nonZero(TestAccess::numbers(moved)), QStringList());
        QCOMPARE(TestAccess::pointers(moved).count(nullptr), pointers.size());

        QCOMPARE(TestAccess::texts(provider), texts);
        QCOMPARE(TestAccess::numbers(provider), numbers);
        QCOMPARE(TestAccess::pointers(provider), pointers);
    }

    void movedProviderWithoutListsCanStillBeUsed()
    {
        Filled filled({ "AGE" });
        TVpDataProvider moved(std::move(filled.provider));
        QCOMPARE(moved.getField("AGE"), nullptr);
        QCOMPARE(moved.getFieldFromRecord("AGE", ""), nullptr);
        QCOMPARE(moved.getFieldName("AGE"), QString());
        moved.setDataProviderType("CSPRO");
        QCOMPARE(moved.getDataProviderType(), QString());
    }

    void openingNeedsAFileName_data()
    {
        QTest::addColumn<QString>("dataFile");
        QTest::addColumn<QString>("fallback");
        QTest::addColumn<bool>("expected");
        QTest::newRow("none") << ""
                              << "" << false;
        QTest::newRow("data file, which need not exist") << "no such file.dat"
                                                         << "" << true;
        QTest::newRow("fallback, which need not exist") << ""
                                                        << "no such file.dat" << true;
        QTest::newRow("both") << "a.dat"
                              << "b.dat" << true;
    }
    void openingNeedsAFileName()
    {
        QFETCH(QString, dataFile);
        QFETCH(QString, fallback);
        QFETCH(bool, expected);
        TVpDataProvider provider;
        provider.setDataFileName(dataFile);
        provider.setLayoutFileName("layout.dcf"); // has no effect
        TestAccess::setFallbackFileName(provider, fallback);
        currentRecordNumber = 17;
        QCOMPARE(provider.openDataProvider(), expected);
        QCOMPARE(currentRecordNumber, 0);
    }

    void closingDoesNothingAndIsFalse()
    {
        Filled filled({ "AGE" });
        currentRecordNumber = 17;
        QCOMPARE(filled.provider.closeDataProvider(), false);
        QCOMPARE(currentRecordNumber, 17);
        QCOMPARE(filled.provider.getFields()->size(), 1);
    }

    void fieldIsFoundByItsExactName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("position");
        QTest::newRow("first") << "AGE" << 0;
        QTest::newRow("later") << "SEX" << 1;
        QTest::newRow("of two the first") << "REGION" << 2;
        QTest::newRow("other case") << "age" << -1;
        QTest::newRow("part") << "AG" << -1;
        QTest::newRow("with a blank") << "AGE " << -1;
        QTest::newRow("absent") << "NAME" << -1;
        QTest::newRow("empty") << "" << -1;
    }
    void fieldIsFoundByItsExactName()
    {
        QFETCH(QString, name);
        QFETCH(int, position);
        const Filled filled({ "AGE", "SEX", "REGION", "REGION" });
        TVpSourceField *expected = position < 0 ? nullptr : filled.provider.getFields()->at(position);
        QCOMPARE(filled.provider.getField(name), expected);
        QCOMPARE(filled.provider.getFieldName(name), expected ? name : QString());
    }

    void fieldIsFoundInItsRecord_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("record");
        QTest::addColumn<int>("position");
        // clang-format off
        QTest::newRow("exact record")                     << "A" << "Person"  << 0;
        QTest::newRow("record in other case")             << "A" << "pERSON"  << 0;
        QTest::newRow("second record of the name")        << "A" << "HOUSING" << 1;
        QTest::newRow("empty group matches any record")   << "B" << "anything" << 2;
        QTest::newRow("empty group matches no record")    << "B" << ""        << 2;
        QTest::newRow("first match wins")                 << "C" << "PERSON"  << 3;
        QTest::newRow("empty group later in the list")    << "C" << "HOUSING" << 4;
        QTest::newRow("COMMON finds Common")              << "D" << "COMMON"  << 5;
        QTest::newRow("name in other case")               << "a" << "PERSON"  << -1;
        QTest::newRow("absent record")                    << "A" << "DWELLING" << -1;
        QTest::newRow("no record asked for")              << "A" << ""        << -1;
        QTest::newRow("absent name")                      << "Z" << "PERSON"  << -1;
        QTest::newRow("record with a blank")              << "A" << "PERSON " << -1;
        QTest::newRow("letters beyond ASCII")             << "E" << QString::fromUtf8("ménage") << 6;
        QTest::newRow("letter that is two in upper case") << "F" << "STRASSE" << 7;
        QTest::newRow("two letters for one")              << "F" << "strasse" << 7;
        QTest::newRow("the same letter")                  << "F" << QString::fromUtf8("straße") << 7;
        QTest::newRow("one letter for two")               << "G" << QString::fromUtf8("Straße") << 8;
        // clang-format on
    }
    void fieldIsFoundInItsRecord()
    {
        QFETCH(QString, name);
        QFETCH(QString, record);
        QFETCH(int, position);
        const Filled filled({ "A", "A", "B", "C", "C", "D", "E", "F", "G" });
        const QList<TVpSourceField *> &fields = *filled.provider.getFields();
        const QStringList groups = {
            "Person", "Housing", "", "PERSON", "", "Common", QString::fromUtf8("MÉNAGE"), QString::fromUtf8("Straße"),
            "STRASSE"
        };
        for (int i = 0; i < fields.size(); ++i)
            fields[i]->group = groups[i];
        QCOMPARE(filled.provider.getFieldFromRecord(name, record), position < 0 ? nullptr : fields[position]);
    }

    void recordIsFoundInTheTree()
    {
        TVpRecord root;
        TVpRecord person;
        TestAccess::name(root, "HOUSING");
        TestAccess::name(person, "COMMON");
        TestAccess::addChild(root, &person);
        TVpDataProvider provider;
        TestAccess::setRecord(provider, &root);
        QCOMPARE(provider.getRecord("HOUSING"), &root);
        QCOMPARE(provider.getRecord("COMMON"), &person);
        QCOMPARE(provider.getRecord("Common"), &person);
        QCOMPARE(provider.getRecord("PERSON"), nullptr);
    }

    void fileNamesAreAssignedWhereTheyDiffer_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("equal") << "Data.dat";
        QTest::newRow("other case") << "DATA.DAT";
        QTest::newRow("other") << "directory/other.dat";
        QTest::newRow("empty") << "";
    }
    void fileNamesAreAssignedWhereTheyDiffer()
    {
        QFETCH(QString, name);
        TVpDataProvider provider;
        provider.setDataFileName("Data.dat");
        provider.setLayoutFileName("Data.dat");
        provider.setDataFileName(name);
        QCOMPARE(provider.getDataFileName(), name);
        QCOMPARE(provider.getLayoutFileName(), QString("Data.dat"));
        provider.setLayoutFileName(name);
        QCOMPARE(provider.getLayoutFileName(), name);
    }

    void simpleSettersStoreTheirValue()
    {
        TVpDataProvider provider;
        FakeImporter importer("layout.dcf", "CSPRO");
        provider.setImportData(&importer);
        QCOMPARE(provider.getImportData(), static_cast<TDataImport *>(&importer));
        QCOMPARE(provider.getFields(), nullptr);
        provider.setDataProviderId("any id");
        QCOMPARE(provider.getDataProviderId(), QString("any id"));
        TestAccess::setDataProviderLabel(provider, "any label");
        QCOMPARE(TestAccess::getDataProviderLabel(provider), QString("any label"));
        TestAccess::setRecordTypeStart(provider, 5);
        QCOMPARE(provider.getRecordTypeStart(), 5);
        QCOMPARE(provider.getRecordTypeSize(), 0);
        TestAccess::setRecordTypeSize(provider, 6);
        QCOMPARE(provider.getRecordTypeSize(), 6);
        QCOMPARE(provider.getRecordTypeStart(), 5);
    }

    void referencesAreTheFifthOfTheSixNumbers()
    {
        TVpDataProvider provider;
        QCOMPARE(TestAccess::getReferences(provider), 0);
        TestAccess::setReferences(provider, 12);
        QCOMPARE(TestAccess::getReferences(provider), 12);
        QCOMPARE(TestAccess::references(provider), 12);
        QCOMPARE(nonZero(TestAccess::numbers(provider)), QStringList({ "number5=3", "number6=-1", "numbers1=12" }));
    }

    void settingTheNumberOfRecordTypesDoesNothing()
    {
        TVpDataProvider provider;
        TestAccess::setRecordTypes(provider, 5);
        QCOMPARE(TestAccess::getRecordTypes(provider), 0);
        TestAccess::setRecordTypesMember(provider, 7);
        TestAccess::setRecordTypes(provider, 5);
        QCOMPARE(TestAccess::getRecordTypes(provider), 7);
    }

    void recordTypeListIsTheMember()
    {
        QStringList list;
        TVpDataProvider provider;
        QCOMPARE(TestAccess::getRecordTypeList(provider), nullptr);
        TestAccess::setRecordTypeList(provider, &list);
        QCOMPARE(TestAccess::getRecordTypeList(provider), &list);
        const Filled filled({ "AGE" });
        QCOMPARE(TestAccess::getRecordTypeList(filled.provider), nullptr);
    }

    void typeIsTakenOverByItsPosition_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("value");
        // clang-format off
        QTest::newRow("CSPRO")                << "CSPRO"  << "CSPRO" << 1;
        QTest::newRow("CSV")                  << "CSV"    << "CSV"   << 2;
        QTest::newRow("NONE changes nothing") << "NONE"   << ""      << 0;
        QTest::newRow("CSPRO8 is unknown")    << "CSPRO8" << ""      << 0;
        QTest::newRow("STATA is unknown")     << "STATA"  << ""      << 0;
        QTest::newRow("SPSS is unknown")      << "SPSS"   << ""      << 0;
        QTest::newRow("SSPS is unknown")      << "SSPS"   << ""      << 0;
        QTest::newRow("case counts")          << "csv"    << ""      << 0;
        QTest::newRow("empty")                << ""       << ""      << 0;
        // clang-format on
    }
    void typeIsTakenOverByItsPosition()
    {
        QFETCH(QString, type);
        QFETCH(QString, text);
        QFETCH(int, value);
        TVpDataProvider provider;
        provider.setDataProviderType(type);
        QCOMPARE(provider.getDataProviderType(), text);
        QCOMPARE(int(TestAccess::getDataProviderTypeIndex(provider)), value);
    }

    void unknownTypeLeavesTheFormerOne_data()
    {
        QTest::addColumn<QString>("type");
        for (const char *type : { "STATA", "SPSS", "CSPRO8", "NONE", "" })
            QTest::newRow(*type ? type : "empty") << QString(type);
    }
    void unknownTypeLeavesTheFormerOne()
    {
        QFETCH(QString, type);
        TVpDataProvider provider;
        provider.setDataProviderType("CSV");
        provider.setDataProviderType(type);
        QCOMPARE(provider.getDataProviderType(), QString("CSV"));
        QCOMPARE(TestAccess::getDataProviderTypeIndex(provider), dpCSV);
    }

    void recordTypeIsCutFromTheCurrentLine_data()
    {
        QTest::addColumn<int>("start");
        QTest::addColumn<int>("size");
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("expected");
        // clang-format off
        QTest::newRow("start 0")                           << 0 << 2 << "abcdefgh"   << "ab";
        QTest::newRow("start 1 is the second character")   << 1 << 2 << "abcdefgh"   << "bc";
        QTest::newRow("line one too short")                << 3 << 8 << "abcdefghi"  << "";
        QTest::newRow("bound counted from 1, fewer characters") << 3 << 8 << "abcdefghij" << "defghij";
        QTest::newRow("long enough")                       << 3 << 8 << "abcdefghijk" << "defghijk";
        QTest::newRow("start at the end")                  << 3 << 1 << "abc"        << "";
        QTest::newRow("size 0")                            << 1 << 0 << "abc"        << "";
        QTest::newRow("empty line")                        << 0 << 1 << ""           << "";
        QTest::newRow("blanks are kept")                   << 0 << 2 << " 1x"        << " 1";
        QTest::newRow("largest start and size")            << INT_MAX << INT_MAX << "abc" << "";
        QTest::newRow("negative start counts against the size") << -2 << 5 << "abcdefgh" << "abc";
        QTest::newRow("negative start as long as the size") << -2 << 2 << "abcdefgh" << "";
        // clang-format on
    }
    void recordTypeIsCutFromTheCurrentLine()
    {
        QFETCH(int, start);
        QFETCH(int, size);
        QFETCH(QString, line);
        QFETCH(QString, expected);
        TVpDataProvider provider;
        TestAccess::setRecordTypeStart(provider, start);
        TestAccess::setRecordTypeSize(provider, size);
        TestAccess::setCurrentLine(provider, line);
        QCOMPARE(provider.getRecordTypeValue(), expected);

        TestAccess::getRecordType(provider);
        QCOMPARE(TestAccess::recordTypeValue(provider), expected);
        QCOMPARE(TestAccess::currentRecordType(provider), QString(QChar(0xFF)));
    }

    void currentRecordTypeIsTheLowByteOfTheRecordsNumber_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("unit");
        // clang-format off
        QTest::newRow("root")                         << "1" << 0x41;
        QTest::newRow("child")                        << "2" << 0x42;
        QTest::newRow("above a byte")                 << "3" << 0x43;
        QTest::newRow("negative")                     << "4" << 0xFE;
        QTest::newRow("zero")                         << "5" << 0x00;
        QTest::newRow("of two the first in the walk") << "6" << 0x44;
        QTest::newRow("brother of the root")          << "7" << 0x45;
        QTest::newRow("case counts")                  << "A" << 0xFF;
        QTest::newRow("exact case")                   << "a" << 0x46;
        QTest::newRow("absent")                       << "9" << 0xFF;
        QTest::newRow("empty line, no empty type")    << ""  << 0xFF;
        // clang-format on
    }
    void currentRecordTypeIsTheLowByteOfTheRecordsNumber()
    {
        QFETCH(QString, line);
        QFETCH(int, unit);
        TVpRecord root;
        TVpRecord brother;
        TVpRecord children[6];
        TestAccess::type(root, "1", 0x41);
        TestAccess::addBrother(root, &brother);
        TestAccess::type(brother, "7", 0x45);
        for (TVpRecord &child : children)
            TestAccess::addChild(root, &child);
        TestAccess::type(children[0], "2", 0x42);
        TestAccess::type(children[1], "3", 0x7FFFF143);
        TestAccess::type(children[2], "4", -2);
        TestAccess::type(children[3], "5", 0);
        TestAccess::type(children[4], "6", 0x44);
        TestAccess::type(children[5], "a", 0x46);
        TVpRecord grandchild;
        TestAccess::type(grandchild, "6", 0x47);
        TestAccess::addChild(children[5], &grandchild);

        TVpDataProvider provider;
        TestAccess::setRecord(provider, &root);
        TestAccess::setRecordTypeStart(provider, 0);
        TestAccess::setRecordTypeSize(provider, 1);
        TestAccess::setCurrentLine(provider, line);
        TestAccess::getRecordType(provider);
        QCOMPARE(TestAccess::currentRecordType(provider), QString(QChar(unit)));
        QCOMPARE(TestAccess::recordTypeValue(provider), line);
    }

    void emptyLineMatchesARecordWithoutAType()
    {
        TVpRecord root;
        TestAccess::type(root, "", 0x41);
        TVpDataProvider provider;
        TestAccess::setRecord(provider, &root);
        TestAccess::getRecordType(provider);
        QCOMPARE(TestAccess::currentRecordType(provider), QString("A"));
    }

    void recordTypeIsRenewedWithEveryLine()
    {
        TVpRecord root;
        TestAccess::type(root, "1", 0x41);
        TVpDataProvider provider;
        TestAccess::setRecord(provider, &root);
        TestAccess::setRecordTypeSize(provider, 1);
        TestAccess::setCurrentLine(provider, "1");
        TestAccess::getRecordType(provider);
        QCOMPARE(TestAccess::currentRecordType(provider), QString("A"));
        TestAccess::setCurrentLine(provider, "2");
        TestAccess::getRecordType(provider);
        QCOMPARE(TestAccess::currentRecordType(provider), QString(QChar(0xFF)));
        QCOMPARE(TestAccess::recordTypeValue(provider), QString("2"));
    }
};

QTEST_GUILESS_MAIN(DataProviderTest)
#include "DataProviderTest.moc"
