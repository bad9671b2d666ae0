#include "import/DataImport.h"
#include "import/SourceField.h"
#include "support/Callable.h"
#include "support/DebugCapture.h"
#include "support/FakeImporter.h"
#include "support/NamedNumber.h"
#include "support/VirtualSlot.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>
#include <type_traits>
#include <vector>

struct TestAccess {
    static QString baseText(const TDataImport &importer) { return importer.baseText; }
    static double stateValue(const TDataImport &importer) { return importer.stateValue; }
    static QList<TGenericField *> *fields(const TDataImport &importer) { return importer.fields; }
    static QStringList namesFound(const TDataImport &importer)
    {
        QStringList names;
        for (const auto &entry : importer.fieldsByName)
            names.append(entry.first);
        return names;
    }
    static QStringList states(const TDataImport &importer)
    {
        return { named("state1", importer.state1), named("stateFlag1", importer.stateFlag1),
                 named("state2", importer.state2), named("stateFlag2", importer.stateFlag2),
                 named("state3", importer.state3), named("stateFlag3", importer.stateFlag3) };
    }
    static QStringList stateList(const TDataImport &importer) { return importer.stateList; }
    static void fillUnread(TDataImport &importer)
    {
        importer.baseText = QStringLiteral("base");
        importer.state1 = 1;
        importer.stateFlag1 = true;
        importer.state2 = Q_INT64_C(2000000000000);
        importer.stateFlag2 = true;
        importer.state3 = 3;
        importer.stateFlag3 = true;
        importer.stateList = QStringList({ QStringLiteral("a"), QStringLiteral("b") });
    }
    static void addField(TDataImport &importer, TGenericField *field) { importer.addField(field); }
    static TGenericField *getField(const TDataImport &importer, int index) { return importer.getField(index); }
    static void initDataImport(TDataImport &importer) { importer.initDataImport(); }
    static void openDataImport(TDataImport &importer) { importer.openDataImport(); }
    static bool closeDataImport(TDataImport &importer) { return importer.closeDataImport(); }
};

namespace
{

// Supplies only the required operations; all others are those of the base.
class BareImporter : public TDataImport
{
public:
    using TDataImport::TDataImport;
    QString getDataProviderId() override { return QStringLiteral("BARE_") + sourceName; }
    QString getDataProviderType() override { return QStringLiteral("BARE"); }
};

// Overrides every operation that a format may supply: an operation that is not virtual would not compile.
class FullImporter : public TDataImport
{
public:
    ~FullImporter() override = default;
    QString getDataProviderId() override { return QString(); }
    QString getDataProviderType() override { return QString(); }
    bool openFile() override { return true; }
    void getDictionary(QList<TVpSourceField *> *, QStringList *) override { }
    QStringList *selectLayoutSource() override { return TDataImport::selectLayoutSource(); }
    bool isMultiple() override { return true; }
    int getGroupCount() override { return 1; }
    QString getGroupName(int) override { return QString(); }
    QString getGroupValue(int) override { return QString(); }
    int getRecordTypeIndex(QString) override { return 1; }
    QString getRecordTypeCurrent() override { return QString(); }
    QStringList *getLayoutSource() override { return new QStringList; }
    int getRecordTypeStart() override { return 1; }
    int getRecordTypeSize() override { return 1; }
};

CALLABLE(CallsAddField, addField(static_cast<TGenericField *>(nullptr)));
CALLABLE(CallsGetField, getField(0));
CALLABLE(CallsInitDataImport, initDataImport());
CALLABLE(CallsOpenDataImport, openDataImport());
CALLABLE(CallsCloseDataImport, closeDataImport());
CALLABLE(CallsGetSourceName, getSourceName());
CALLABLE(CallsGetDataSourceName, getDataSourceName());
CALLABLE(CallsSetSourceName, setSourceName(QString()));
CALLABLE(CallsSetDataSourceName, setDataSourceName(QString()));
CALLABLE(CallsGetDictionary, getDictionary(static_cast<QList<TVpSourceField *> *>(nullptr)));
CALLABLE(CallsFieldByName, fieldByName(QString()));
CALLABLE(CallsRegisterIOFormat, registerIOFormat());
CALLABLE(CallsOpenFile, openFile());

QStringList selected(TDataImport &importer)
{
    const std::unique_ptr<QStringList> names(importer.selectLayoutSource());
    return *names;
}

// The source fields that an importer makes. They are freed with the list.
class Dictionary
{
public:
    explicit Dictionary(TDataImport &importer)
    {
        const DebugCapture capture;
        importer.getDictionary(&fields);
        lines = capture.taken();
    }
    ~Dictionary() { qDeleteAll(fields); }
    Dictionary(const Dictionary &) = delete;
    Dictionary &operator=(const Dictionary &) = delete;

    QList<TVpSourceField *> fields;
    QStringList lines;
};

bool createFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly);
}

} // namespace

class DataImportTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void newImporterIsEmpty_data()
    {
        QTest::addColumn<bool>("named");
        QTest::newRow("default constructor") << false;
        QTest::newRow("with a name") << true;
    }
    void newImporterIsEmpty()
    {
        QFETCH(bool, named);
        const auto importer
            = named ? std::make_unique<BareImporter>(QString("any/name.x")) : std::make_unique<BareImporter>();
        QCOMPARE(importer->getSourceName(), named ? QString("any/name.x") : QString());
        QCOMPARE(importer->getDataSourceName(), QString());
        QCOMPARE(TestAccess::baseText(*importer), QString());
        QCOMPARE(nonZero(TestAccess::states(*importer)), QStringList());
        QCOMPARE(TestAccess::stateValue(*importer), 0.0);
        QCOMPARE(TestAccess::stateList(*importer), QStringList());
        QVERIFY(TestAccess::fields(*importer));
        QCOMPARE(TestAccess::fields(*importer)->size(), 0);
        QCOMPARE(TestAccess::namesFound(*importer), QStringList());
    }

    void everyImporterHasAListOfItsOwn()
    {
        const BareImporter one;
        const BareImporter other;
        QVERIFY(TestAccess::fields(one) != TestAccess::fields(other));
    }

    void nameIsKeptUnchangedAndNoFileIsOpened()
    {
        const FakeImporter importer("no such/../file.dcf", "CSPRO");
        QCOMPARE(importer.getSourceName(), QString("no such/../file.dcf"));
        QVERIFY(!importer.calls.contains("openFile"));
    }

    void copyTakesEveryMemberAndSharesTheFields_data()
    {
        QTest::addColumn<bool>("assigned");
        QTest::newRow("copied") << false;
        QTest::newRow("assigned") << true;
    }
    void copyTakesEveryMemberAndSharesTheFields()
    {
        QFETCH(bool, assigned);
        FakeField age(nullptr, "AGE");
        FakeImporter importer("layout.dcf", "CSPRO");
        importer.layout = { &age };
        selected(importer);
        importer.setDataSourceName("data.dat");
        TestAccess::fillUnread(importer);

        FakeImporter target("other.dcf", "STATA");
        if (assigned)
            target = importer;
        const FakeImporter copy(assigned ? target : importer);
        QCOMPARE(copy.getSourceName(), QString("layout.dcf"));
        QCOMPARE(copy.getDataSourceName(), importer.getDataSourceName());
        QCOMPARE(TestAccess::baseText(copy), QString("base"));
        QCOMPARE(TestAccess::states(copy),
                 QStringList({ "state1=1", "stateFlag1=1", "state2=2000000000000", "stateFlag2=1", "state3=3",
                               "stateFlag3=1" }));
        QCOMPARE(TestAccess::stateValue(copy), 1.0);
        QCOMPARE(TestAccess::stateList(copy), QStringList({ "a", "b" }));
        QCOMPARE(TestAccess::fields(copy), TestAccess::fields(importer));
        QCOMPARE(copy.fieldByName("AGE"), static_cast<TGenericField *>(&age));
    }

    void reopeningACopyEmptiesTheListOfTheOther_data() { copyTakesEveryMemberAndSharesTheFields_data(); }
    void reopeningACopyEmptiesTheListOfTheOther()
    {
        QFETCH(bool, assigned);
        FakeField age(nullptr, "AGE");
        FakeImporter importer("layout.dcf", "CSPRO");
        importer.layout = { &age };
        selected(importer);
        FakeImporter target;
        if (assigned)
            target = importer;
        FakeImporter copy(assigned ? target : importer);

        TestAccess::openDataImport(copy);
        QCOMPARE(TestAccess::fields(importer)->size(), 0);
        // The names are a copy.
        QCOMPARE(importer.fieldByName("AGE"), static_cast<TGenericField *>(&age));
        QCOMPARE(copy.fieldByName("AGE"), nullptr);
    }

    void moveTakesNothingFromItsArgument()
    {
        FakeField age(nullptr, "AGE");
        FakeImporter importer("layout.dcf", "CSPRO");
        importer.layout = { &age };
        selected(importer);
        importer.setDataSourceName("data.dat");
        TestAccess::fillUnread(importer);

        const FakeImporter moved(std::move(importer));
        QCOMPARE(moved.getSourceName(), QString());
        QCOMPARE(moved.getDataSourceName(), QString());
        QCOMPARE(TestAccess::baseText(moved), QString());
        QCOMPARE(nonZero(TestAccess::states(moved)), QStringList());
        QCOMPARE(TestAccess::stateValue(moved), 0.0);
        QCOMPARE(TestAccess::stateList(moved), QStringList());
        QCOMPARE(TestAccess::fields(moved), nullptr);
        QCOMPARE(moved.fieldByName("AGE"), nullptr);

        QCOMPARE(importer.getSourceName(), QString("layout.dcf"));
        QCOMPARE(TestAccess::fields(importer)->size(), 1);
        QCOMPARE(importer.fieldByName("AGE"), static_cast<TGenericField *>(&age));
    }

    void movedImporterWithoutAListStillWorks()
    {
        FakeImporter importer("layout.dcf", "CSPRO");
        FakeImporter moved(std::move(importer));
        QCOMPARE(TestAccess::getField(moved, 0), nullptr);
        QCOMPARE(selected(moved), QStringList());
        QCOMPARE(Dictionary(moved).fields.size(), 0);

        FakeField age(nullptr, "AGE");
        moved.layout = { &age };
        QCOMPARE(selected(moved), QStringList("AGE"));
    }

    void destroyedImporterLeavesItsFieldsAndTheirListAlive()
    {
        FakeField age(nullptr, "AGE");
        auto importer = std::make_unique<FakeImporter>("layout.dcf", "CSPRO");
        importer->layout = { &age };
        selected(*importer);
        const QList<TGenericField *> *fields = TestAccess::fields(*importer);
        importer.reset();
        QCOMPARE(fields->size(), 1);
        QCOMPARE(fields->first()->name, QString("AGE"));
    }

    void idAndTypeArePureAndTheRestHasABase()
    {
        QVERIFY(std::is_abstract_v<TDataImport>);
        QVERIFY(std::has_virtual_destructor_v<TDataImport>);
        BareImporter importer;
        QCOMPARE(importer.openFile(), false);
        QCOMPARE(importer.isMultiple(), false);
        QCOMPARE(importer.getGroupCount(), 0);
        QCOMPARE(importer.getGroupName(0), QString());
        QCOMPARE(importer.getGroupValue(0), QString());
        QCOMPARE(importer.getRecordTypeIndex("1"), -1);
        QCOMPARE(importer.getRecordTypeCurrent(), QString());
        QCOMPARE(importer.getRecordTypeStart(), 0);
        QCOMPARE(importer.getRecordTypeSize(), 0);
    }

    void layoutSourceOfTheBaseIsANewEmptyListEachTime()
    {
        BareImporter importer;
        const std::unique_ptr<QStringList> one(importer.getLayoutSource());
        const std::unique_ptr<QStringList> other(importer.getLayoutSource());
        QVERIFY(one && other && one != other);
        QCOMPARE(*one, QStringList());
    }

    void dictionaryOfTheBaseWithRecordTypeNamesDoesNothing()
    {
        FakeField age(nullptr, "AGE", vtInteger);
        FakeImporter importer("layout.dcf", "CSPRO");
        importer.layout = { &age };
        selected(importer);
        QList<TVpSourceField *> target;
        QStringList names = { "before" };
        const DebugCapture capture;
        importer.getDictionary(&target, &names);
        QCOMPARE(target.size(), 0);
        QCOMPARE(names, QStringList("before"));
        QCOMPARE(capture.taken(), QStringList());
    }

    void subclassOverridesEveryVirtualOperation()
    {
        FullImporter importer;
        TDataImport &base = importer;
        QVERIFY(base.openFile());
        QVERIFY(base.isMultiple());
        QCOMPARE(base.getRecordTypeSize(), 1);
    }

#ifdef SUPPORT_HAS_VIRTUALSLOT
    void virtualOperationsAreInThisOrder()
    {
        using WithNames = void (TDataImport::*)(QList<TVpSourceField *> *, QStringList *);
        QCOMPARE(int(virtualSlot(&TDataImport::getDataProviderId)), 2);
        QCOMPARE(int(virtualSlot(&TDataImport::getDataProviderType)), 3);
        QCOMPARE(int(virtualSlot(&TDataImport::openFile)), 4);
        QCOMPARE(int(virtualSlot(static_cast<WithNames>(&TDataImport::getDictionary))), 5);
        QCOMPARE(int(virtualSlot(&TDataImport::selectLayoutSource)), 6);
        QCOMPARE(int(virtualSlot(&TDataImport::isMultiple)), 7);
        QCOMPARE(int(virtualSlot(&TDataImport::getGroupCount)), 8);
        QCOMPARE(int(virtualSlot(&TDataImport::getGroupName)), 9);
        QCOMPARE(int(virtualSlot(&TDataImport::getGroupValue)), 10);
        QCOMPARE(int(virtualSlot(&TDataImport::getRecordTypeIndex)), 11);
        QCOMPARE(int(virtualSlot(&TDataImport::getRecordTypeCurrent)), 12);
        QCOMPARE(int(virtualSlot(&TDataImport::getLayoutSource)), 13);
        QCOMPARE(int(virtualSlot(&TDataImport::getRecordTypeStart)), 14);
        QCOMPARE(int(virtualSlot(&TDataImport::getRecordTypeSize)), 15);
    }
#endif

    void addingFieldsIsOnlyForSubclasses()
    {
        QVERIFY(!CallsAddField<BareImporter>::value);
        QVERIFY(!CallsGetField<BareImporter>::value);
        QVERIFY(!CallsInitDataImport<BareImporter>::value);
        QVERIFY(!CallsOpenDataImport<BareImporter>::value);
        QVERIFY(!CallsCloseDataImport<BareImporter>::value);
    }

    void otherOperationsArePublic()
    {
        QVERIFY(CallsGetSourceName<BareImporter>::value);
        QVERIFY(CallsGetDataSourceName<BareImporter>::value);
        QVERIFY(CallsSetSourceName<BareImporter>::value);
        QVERIFY(CallsSetDataSourceName<BareImporter>::value);
        QVERIFY(CallsGetDictionary<BareImporter>::value);
        QVERIFY(CallsFieldByName<BareImporter>::value);
        QVERIFY(CallsRegisterIOFormat<BareImporter>::value);
        QVERIFY(CallsOpenFile<TDataImport>::value);
    }

    void initialisingAsksForTheTypeAndNothingElse()
    {
        FakeImporter importer("layout.dcf", "CSPRO");
        importer.calls.clear();
        TestAccess::initDataImport(importer);
        QCOMPARE(importer.calls, QStringList("getDataProviderType"));
    }

    void openingEmptiesTheFieldsAndTheirNames()
    {
        FakeField age(nullptr, "AGE");
        FakeImporter importer("layout.dcf", "CSPRO");
        importer.layout = { &age };
        selected(importer);
        const QList<TGenericField *> *fields = TestAccess::fields(importer);
        TestAccess::openDataImport(importer);
        QCOMPARE(TestAccess::fields(importer), fields);
        QCOMPARE(fields->size(), 0);
        QCOMPARE(importer.fieldByName("AGE"), nullptr);
        QCOMPARE(importer.getSourceName(), QString("layout.dcf"));
        QCOMPARE(age.name, QString("AGE"));
    }

    void closingIsTrueAndKeepsTheFields()
    {
        FakeField age(nullptr, "AGE");
        FakeImporter importer("layout.dcf", "CSPRO");
        importer.layout = { &age };
        selected(importer);
        QCOMPARE(TestAccess::closeDataImport(importer), true);
        QCOMPARE(TestAccess::fields(importer)->size(), 1);
    }

    void fieldsStayInTheOrderOfAdding()
    {
        FakeField second(nullptr, "B");
        FakeField first(nullptr, "C");
        FakeField third(nullptr, "A");
        BareImporter importer;
        for (FakeField *field : { &first, &second, &third })
            TestAccess::addField(importer, field);
        QCOMPARE(*TestAccess::fields(importer), QList<TGenericField *>({ &first, &second, &third }));
        QCOMPARE(TestAccess::namesFound(importer), QStringList({ "A", "B", "C" }));
    }

    void twoFieldsOfOneNameStayAndTheLastIsFound()
    {
        FakeField first(nullptr, "AGE");
        FakeField last(nullptr, "AGE");
        BareImporter importer;
        TestAccess::addField(importer, &first);
        TestAccess::addField(importer, &last);
        QCOMPARE(*TestAccess::fields(importer), QList<TGenericField *>({ &first, &last }));
        QCOMPARE(importer.fieldByName("AGE"), static_cast<TGenericField *>(&last));
    }

    void nullIsNotAdded_data()
    {
        QTest::addColumn<bool>("moved");
        QTest::newRow("to a list") << false;
        QTest::newRow("to an importer without a list") << true;
    }
    void nullIsNotAdded()
    {
        QFETCH(bool, moved);
        BareImporter source;
        BareImporter emptied(std::move(source));
        BareImporter &importer = moved ? emptied : source;
        const QList<TGenericField *> *fields = TestAccess::fields(importer);
        QCOMPARE(fields == nullptr, moved);
        TestAccess::addField(importer, nullptr);
        QCOMPARE(TestAccess::namesFound(importer), QStringList());
        QCOMPARE(selected(importer), QStringList());

        FakeField age(nullptr, "AGE");
        TestAccess::addField(importer, &age);
        TestAccess::addField(importer, nullptr);
        QCOMPARE(*TestAccess::fields(importer), QList<TGenericField *>({ &age }));
        QCOMPARE(TestAccess::namesFound(importer), QStringList("AGE"));
    }

    void nullInTheListIsSkipped()
    {
        // A format can access the list itself.
        struct ReachingImporter : FakeImporter {
            using FakeImporter::FakeImporter;
            bool openFile() override
            {
                openDataImport();
                *fields = layout;
                return true;
            }
        };
        ReachingImporter importer("layout.dcf", "CSPRO");
        FakeField age(&importer, "AGE", vtInteger);
        FakeField sex(&importer, "SEX", vtNone);
        importer.layout = { nullptr, &age, nullptr, nullptr, &sex, nullptr };
        QCOMPARE(selected(importer), QStringList({ "AGE", "SEX" }));
        QCOMPARE(TestAccess::fields(importer)->size(), 6);

        const Dictionary dictionary(importer);
        QCOMPARE(dictionary.fields.size(), 2);
        QCOMPARE(dictionary.fields[0]->fieldName, QString("AGE"));
        QCOMPARE(dictionary.fields[1]->fieldName, QString("SEX"));
        QCOMPARE(dictionary.fields[1]->FieldType, QString("INTEGER")); // the type of the field before it
        QCOMPARE(dictionary.lines.size(), 2 * 5);
    }

    void fieldIsFoundByItsExactName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("found");
        QTest::newRow("exact") << "AGE" << true;
        QTest::newRow("other case") << "age" << false;
        QTest::newRow("with a blank") << "AGE " << false;
        QTest::newRow("part") << "AG" << false;
        QTest::newRow("absent") << "SEX" << false;
        QTest::newRow("empty") << "" << false;
    }
    void fieldIsFoundByItsExactName()
    {
        QFETCH(QString, name);
        QFETCH(bool, found);
        FakeField age(nullptr, "AGE");
        BareImporter importer;
        TestAccess::addField(importer, &age);
        QCOMPARE(importer.fieldByName(name), found ? static_cast<TGenericField *>(&age) : nullptr);
        QCOMPARE(TestAccess::namesFound(importer), QStringList("AGE")); // looking up adds no name
    }

    void fieldIsFoundByTheNameThatItHadWhenAdded()
    {
        FakeField age(nullptr, "AGE");
        BareImporter importer;
        TestAccess::addField(importer, &age);
        age.name = "SEX";
        QCOMPARE(importer.fieldByName("AGE"), static_cast<TGenericField *>(&age));
        QCOMPARE(importer.fieldByName("SEX"), nullptr);
    }

    void indexOutsideOfTheListGivesNoField_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("position");
        QTest::newRow("first") << 0 << 0;
        QTest::newRow("last") << 1 << 1;
        QTest::newRow("size") << 2 << -1;
        QTest::newRow("above the size") << 3 << -1;
        QTest::newRow("largest") << INT_MAX << -1;
        QTest::newRow("negative") << -1 << -1;
        QTest::newRow("smallest") << INT_MIN << -1;
    }
    void indexOutsideOfTheListGivesNoField()
    {
        QFETCH(int, index);
        QFETCH(int, position);
        FakeField fields[] = { FakeField(nullptr, "A"), FakeField(nullptr, "B") };
        BareImporter importer;
        TestAccess::addField(importer, &fields[0]);
        TestAccess::addField(importer, &fields[1]);
        TGenericField *expected = position < 0 ? nullptr : &fields[position];
        QCOMPARE(TestAccess::getField(importer, index), expected);
    }

    void registeringTheFormatChangesNothing()
    {
        FakeField age(nullptr, "AGE");
        FakeImporter importer("layout.dcf", "CSPRO");
        importer.layout = { &age };
        selected(importer);
        importer.calls.clear();
        const DebugCapture capture;
        importer.registerIOFormat();
        QCOMPARE(capture.taken(), QStringList());
        QCOMPARE(importer.calls, QStringList());
        QCOMPARE(TestAccess::fields(importer)->size(), 1);
        QCOMPARE(importer.getSourceName(), QString("layout.dcf"));
    }

    void selectingLogsOpensAndReturnsTheNames()
    {
        FakeField fields[] = { FakeField(nullptr, "B"), FakeField(nullptr, "A"), FakeField(nullptr, "B") };
        FakeImporter importer("layout.dcf", "CSPRO");
        importer.layout = { &fields[0], &fields[1], &fields[2] };
        importer.calls.clear();
        const DebugCapture capture;
        QCOMPARE(selected(importer), QStringList({ "B", "A", "B" }));
        QCOMPARE(capture.taken(), QStringList("DataImport - selectLayoutSource"));
        QCOMPARE(importer.calls, QStringList("openFile"));
    }

    void selectingLogsBeforeItOpens()
    {
        struct LoggingImporter : FakeImporter {
            using FakeImporter::FakeImporter;
            bool openFile() override
            {
                qDebug("open");
                return true;
            }
        };
        LoggingImporter importer("layout.dcf", "CSPRO");
        const DebugCapture capture;
        selected(importer);
        QCOMPARE(capture.taken(), QStringList({ "DataImport - selectLayoutSource", "open" }));
    }

    void selectingIgnoresWhetherTheFileOpened()
    {
        FakeField age(nullptr, "AGE");
        FakeImporter importer("layout.dcf", "CSPRO");
        importer.layout = { &age };
        importer.opens = false;
        QCOMPARE(selected(importer), QStringList("AGE"));
    }

    void selectingTwiceGivesTwoListsOfTheSameNames()
    {
        FakeField age(nullptr, "AGE");
        FakeImporter importer("layout.dcf", "CSPRO");
        importer.layout = { &age };
        const std::unique_ptr<QStringList> first(importer.selectLayoutSource());
        const std::unique_ptr<QStringList> second(importer.selectLayoutSource());
        QVERIFY(first != second);
        QCOMPARE(*first, QStringList("AGE"));
        QCOMPARE(*second, QStringList("AGE"));
        QCOMPARE(TestAccess::fields(importer)->size(), 1);
    }

    void selectingAnImporterThatOpensNothingGivesNoNames()
    {
        BareImporter importer("layout.x");
        QCOMPARE(selected(importer), QStringList());
    }

    void sourceNameBecomesTheAbsolutePathOfAFileThatExists()
    {
        QTemporaryDir directory;
        QVERIFY(createFile(directory.filePath("layout.dcf")));
        const QString current = QDir::currentPath();
        QVERIFY(QDir::setCurrent(directory.path()));
        BareImporter importer("former");
        importer.setSourceName("layout.dcf");
        const QString fromRelative = importer.getSourceName();
        const QString expected = QDir::currentPath() + "/layout.dcf";
        QDir::setCurrent(current);
        QCOMPARE(fromRelative, expected);

        importer.setSourceName(directory.filePath("layout.dcf"));
        QCOMPARE(importer.getSourceName(), directory.filePath("layout.dcf"));
    }

    void directoryCountsAsAnExistingSource()
    {
        QTemporaryDir directory;
        BareImporter importer("former");
        importer.setSourceName(directory.path());
        QCOMPARE(importer.getSourceName(), directory.path());
    }

#ifdef Q_OS_UNIX
    void symbolicLinkIsNotResolved()
    {
        QTemporaryDir directory;
        const QString path = directory.filePath("layout.dcf");
        const QString link = directory.filePath("link.dcf");
        QVERIFY(createFile(path));
        QVERIFY(QFile::link(path, link));
        BareImporter importer("former");
        importer.setSourceName(link);
        QCOMPARE(importer.getSourceName(), link);
        importer.setDataSourceName(link);
        QCOMPARE(importer.getDataSourceName(), link);
    }

    void symbolicLinkToNoFileIsNoSource()
    {
        QTemporaryDir directory;
        const QString link = directory.filePath("link.dcf");
        QVERIFY(QFile::link(directory.filePath("layout.dcf"), link));
        BareImporter importer("former");
        importer.setSourceName(link);
        QCOMPARE(importer.getSourceName(), QString());
    }
#endif

    void sourceNameIsEmptyAfterABadName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("missing file") << "no such file.dcf";
        QTest::newRow("missing directory") << "/no such directory/file.dcf";
        QTest::newRow("empty") << "";
    }
    void sourceNameIsEmptyAfterABadName()
    {
        QFETCH(QString, name);
        BareImporter importer("former");
        importer.setSourceName(name);
        QCOMPARE(importer.getSourceName(), QString());
    }

    void dataSourceNameBecomesTheAbsolutePathOfAFileThatExists()
    {
        QTemporaryDir directory;
        QVERIFY(createFile(directory.filePath("data.dat")));
        const QString current = QDir::currentPath();
        QVERIFY(QDir::setCurrent(directory.path()));
        BareImporter importer("layout.dcf");
        importer.setDataSourceName("data.dat");
        const QString expected = QDir::currentPath() + "/data.dat";
        QDir::setCurrent(current);
        QCOMPARE(importer.getDataSourceName(), expected);
    }

    void dataSourceNameOfAMissingFileIsItsAbsolutePath()
    {
        BareImporter importer("layout.dcf");
        importer.setDataSourceName("no such file.dat");
        QCOMPARE(importer.getDataSourceName(), QDir::currentPath() + "/no such file.dat");
    }

    void dataFileNextToTheSourceIsNotFoundWithoutASeparator()
    {
        QTemporaryDir directory;
        QVERIFY(createFile(directory.filePath("data.dat")));
        BareImporter importer(directory.filePath("layout.dcf"));
        importer.setDataSourceName("/no such directory/data.dat");
        QCOMPARE(importer.getDataSourceName(), QString("/no such directory/data.dat"));
    }

    void dataFileIsFoundWhereTheDirectoryIsDirectlyFollowedByItsName()
    {
        QTemporaryDir directory;
        QVERIFY(QDir(directory.path()).mkdir("survey"));
        QVERIFY(createFile(directory.filePath("surveydata.dat")));
        BareImporter importer(directory.filePath("survey/layout.dcf"));
        importer.setDataSourceName("/no such directory/data.dat");
        QCOMPARE(importer.getDataSourceName(), directory.filePath("surveydata.dat"));
    }

    void candidateIsInTheAbsoluteDirectoryOfARelativeSource()
    {
        QTemporaryDir directory;
        QVERIFY(createFile(directory.filePath("surveydata.dat")));
        const QString current = QDir::currentPath();
        QVERIFY(QDir::setCurrent(directory.path()));
        BareImporter importer("survey/layout.dcf"); // neither the source nor its directory need exist
        importer.setDataSourceName("/no such directory/data.dat");
        const QString expected = QDir::currentPath() + "/surveydata.dat";
        QDir::setCurrent(current);
        QCOMPARE(importer.getDataSourceName(), expected);
        QCOMPARE(importer.getSourceName(), QString("survey/layout.dcf"));
    }

    void emptyDataSourceNameLeadsToTheDirectoryOfTheSource_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("expected");
        // The candidate is the directory, followed by no file name. Without a source there is no directory.
        QTest::newRow("absolute source") << QDir::tempPath() + "/layout.dcf" << QDir::tempPath();
        QTest::newRow("relative source") << "layout.dcf" << QDir::currentPath();
        QTest::newRow("source in a missing directory") << "/no such directory/layout.dcf"
                                                       << "";
        QTest::newRow("no source") << ""
                                   << "";
    }
    void emptyDataSourceNameLeadsToTheDirectoryOfTheSource()
    {
        QFETCH(QString, source);
        QFETCH(QString, expected);
        BareImporter importer(source);
        importer.setDataSourceName("former");
        importer.setDataSourceName("");
        QCOMPARE(importer.getDataSourceName(), expected);
    }

    void dataFileThatExistsIsTakenBeforeTheCandidate()
    {
        QTemporaryDir directory;
        QVERIFY(QDir(directory.path()).mkdir("survey"));
        QVERIFY(createFile(directory.filePath("surveydata.dat")));
        QVERIFY(createFile(directory.filePath("data.dat")));
        BareImporter importer(directory.filePath("survey/layout.dcf"));
        importer.setDataSourceName(directory.filePath("data.dat"));
        QCOMPARE(importer.getDataSourceName(), directory.filePath("data.dat"));
    }

    void settingTheDataSourceLeavesTheSource()
    {
        BareImporter importer("layout.dcf");
        importer.setDataSourceName("data.dat");
        QCOMPARE(importer.getSourceName(), QString("layout.dcf"));
    }

    void fieldIsDescribedByASourceField()
    {
        FakeImporter importer("layout.dcf", "CSPRO");
        FakeField field(&importer, "AGE", vtReal);
        field.label = "Age in years";
        field.length = 6;
        field.start = 12;
        field.decimals = "2";
        field.valueLabels = "1 One\t2 Two\t";
        field.minimum = "0";
        field.maximum = "120";
        field.notApplicable = "998";
        field.missingValue = "999";
        field.group = "PERSON";
        importer.layout = { &field };
        selected(importer);

        const Dictionary dictionary(importer);
        QCOMPARE(dictionary.fields.size(), 1);
        const TVpSourceField &source = *dictionary.fields.first();
        QCOMPARE(source.fieldName, QString("AGE"));
        QCOMPARE(source.label, QString("Age in years"));
        QCOMPARE(source.decimals, 2);
        QCOMPARE(source.length, 6);
        QCOMPARE(source.start, 12);
        QCOMPARE(source.valueLabels, QString("1 One\t2 Two\t"));
        QCOMPARE(source.minimum, QString("0"));
        QCOMPARE(source.maximum, QString("120"));
        QCOMPARE(source.notApplicable, QString("998"));
        QCOMPARE(source.missingValue, QString("999"));
        QCOMPARE(source.group, QString("PERSON"));
        QCOMPARE(source.FieldType, QString("REAL"));
        QCOMPARE(source.fieldTypeIndex, vtNone);
        QCOMPARE(source.providerId, QString("CSPRO_layout.dcf"));
        QCOMPARE(source.DataProviderType, QString("CSPRO"));
        QCOMPARE(source.dataProviderTypeIndex, dpCSPro);
        for (const QString &text :
             { source.text1, source.text2, source.text3, source.text4, source.text5, source.text6, source.blankValue })
            QCOMPARE(text, QString());
    }

    void fieldTypeNamesTheType_data()
    {
        QTest::addColumn<QList<int>>("types");
        QTest::addColumn<QStringList>("expected");
        // clang-format off
        QTest::newRow("each type")                  << QList<int>({vtInteger, vtReal, vtString}) << QStringList({"INTEGER", "REAL", "STRING"});
        QTest::newRow("no type first")              << QList<int>({vtNone, vtInteger})    << QStringList({"", "INTEGER"});
        QTest::newRow("no type takes the former's") << QList<int>({vtInteger, vtNone})    << QStringList({"INTEGER", "INTEGER"});
        QTest::newRow("for as long as no type comes") << QList<int>({vtString, vtNone, vtNone, vtReal, vtNone}) << QStringList({"STRING", "STRING", "STRING", "REAL", "REAL"});
        QTest::newRow("unknown type as no type")    << QList<int>({vtReal, 4, -1}) << QStringList({"REAL", "REAL", "REAL"});
        // clang-format on
    }
    void fieldTypeNamesTheType()
    {
        QFETCH(QList<int>, types);
        QFETCH(QStringList, expected);
        FakeImporter importer("layout.dcf", "CSPRO");
        // Fields are built in place: moving one would lose its description.
        std::vector<std::unique_ptr<FakeField>> owned;
        for (const int type : qAsConst(types)) {
            owned.push_back(std::make_unique<FakeField>(&importer, "A", eVanVarType(type)));
            importer.layout.append(owned.back().get());
        }
        selected(importer);
        const Dictionary dictionary(importer);
        QStringList typeTexts;
        for (const TVpSourceField *source : dictionary.fields)
            typeTexts.append(source->FieldType);
        QCOMPARE(typeTexts, expected);
    }

    void typeOfTheFormerFieldEndsWithTheCall()
    {
        FakeImporter importer("layout.dcf", "CSPRO");
        FakeField typed(&importer, "A", vtReal);
        importer.layout = { &typed };
        selected(importer);
        const Dictionary first(importer);

        FakeField untyped(&importer, "B");
        importer.layout = { &untyped };
        selected(importer);
        const Dictionary second(importer);
        QCOMPARE(second.fields.first()->FieldType, QString());
    }

    void decimalsThatDoNotConvertAreNone_data()
    {
        QTest::addColumn<QString>("decimals");
        QTest::addColumn<int>("expected");
        QTest::newRow("whole") << "2" << 2;
        QTest::newRow("base 10") << "010" << 10;
        QTest::newRow("negative") << "-1" << -1;
        QTest::newRow("empty") << "" << 0;
        QTest::newRow("no number") << "two" << 0;
        QTest::newRow("fraction") << "2.0" << 0;
        QTest::newRow("base prefix") << "0x2" << 0;
        QTest::newRow("overflow") << "99999999999" << 0;
    }
    void decimalsThatDoNotConvertAreNone()
    {
        QFETCH(QString, decimals);
        QFETCH(int, expected);
        FakeImporter importer("layout.dcf", "CSPRO");
        FakeField field(&importer, "A", vtReal);
        field.decimals = decimals;
        importer.layout = { &field };
        selected(importer);
        QCOMPARE(Dictionary(importer).fields.first()->decimals, expected);
    }

    void providerTypeIsTakenOverWhereTheSourceFieldKnowsIt_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("value");
        QTest::newRow("CSPRO") << "CSPRO"
                               << "CSPRO" << 1;
        QTest::newRow("CSPRO8 is in no list") << "CSPRO8"
                                              << "" << 0;
        QTest::newRow("STATA") << "STATA"
                               << "STATA" << 4;
        QTest::newRow("SPSS is not SSPS") << "SPSS"
                                          << "" << 0;
        QTest::newRow("CSV") << "CSV"
                             << "CSV" << 2;
    }
    void providerTypeIsTakenOverWhereTheSourceFieldKnowsIt()
    {
        QFETCH(QString, type);
        QFETCH(QString, text);
        QFETCH(int, value);
        FakeImporter importer("layout.x", type);
        FakeField field(&importer, "A", vtReal);
        importer.layout = { &field };
        selected(importer);
        const Dictionary dictionary(importer);
        const TVpSourceField &source = *dictionary.fields.first();
        QCOMPARE(source.getDataProviderType(), text);
        QCOMPARE(int(source.dataProviderTypeIndex), value);
        QCOMPARE(source.providerId, type + "_layout.x");
    }

    void idAndTypeAreAskedForEachField()
    {
        FakeImporter importer("layout.dcf", "CSPRO");
        FakeField fields[] = { FakeField(&importer, "A"), FakeField(&importer, "B"), FakeField(&importer, "C") };
        importer.layout = { &fields[0], &fields[1], &fields[2] };
        selected(importer);
        importer.calls.clear();
        const Dictionary dictionary(importer);
        const QStringList once = { "getDataProviderId", "getDataProviderType" };
        QCOMPARE(importer.calls, once + once + once);
    }

    void everyFieldTakesTheAnswersOfItsOwnQuestions()
    {
        struct ChangingImporter : FakeImporter {
            using FakeImporter::FakeImporter;
            QString getDataProviderId() override { return QString("id %1").arg(++ids); }
            QString getDataProviderType() override { return ++types % 2 ? QString("CSV") : QString("STATA"); }
            int ids = 0;
            int types = 0;
        };
        ChangingImporter importer("layout.dcf", "CSPRO");
        FakeField fields[] = { FakeField(&importer, "A"), FakeField(&importer, "B"), FakeField(&importer, "C") };
        importer.layout = { &fields[0], &fields[1], &fields[2] };
        selected(importer);
        importer.types = 0;
        const Dictionary dictionary(importer);
        QStringList answers;
        for (const TVpSourceField *source : dictionary.fields)
            answers << source->providerId << source->DataProviderType;
        QCOMPARE(answers, QStringList({ "id 1", "CSV", "id 2", "STATA", "id 3", "CSV" }));
    }

    void idAndTypeAreNotAskedWithoutFields()
    {
        FakeField age(nullptr, "AGE");
        FakeImporter importer("layout.dcf", "CSPRO");
        importer.layout = { &age };
        importer.calls.clear();
        const Dictionary unopened(importer);
        QCOMPARE(importer.calls, QStringList());

        importer.layout.clear();
        selected(importer);
        importer.calls.clear();
        const Dictionary opened(importer);
        QCOMPARE(importer.calls, QStringList());
    }

    void fiveLinesAreLoggedForEachField()
    {
        FakeImporter importer("layout.dcf", "CSPRO");
        FakeField age(&importer, "AGE", vtInteger);
        FakeField name(&importer, "NAME \"x\"", vtString);
        importer.layout = { &age, &name };
        selected(importer);
        QCOMPARE(Dictionary(importer).lines,
                 QStringList({ "getDictionary FIELDS", "mySF->fieldName AGE", "mySF->FieldType INTEGER",
                               "mySF->DataProviderType CSPRO", "\n\n\n", "getDictionary FIELDS",
                               "mySF->fieldName NAME \"x\"", "mySF->FieldType STRING", "mySF->DataProviderType CSPRO",
                               "\n\n\n" }));
    }

    void emptyTextsAreLoggedAfterTheirBlank()
    {
        FakeImporter importer("layout.sav", "SPSS");
        FakeField field(&importer);
        importer.layout = { &field };
        selected(importer);
        QCOMPARE(Dictionary(importer).lines,
                 QStringList({ "getDictionary FIELDS", "mySF->fieldName ", "mySF->FieldType ",
                               "mySF->DataProviderType ", "\n\n\n" }));
    }

    void sourceFieldsAreAppendedInOrder()
    {
        FakeImporter importer("layout.dcf", "CSPRO");
        FakeField fields[] = { FakeField(&importer, "B"), FakeField(&importer, "A"), FakeField(&importer, "B") };
        importer.layout = { &fields[0], &fields[1], &fields[2] };
        selected(importer);
        TVpSourceField before;
        QList<TVpSourceField *> target = { &before };
        {
            const DebugCapture capture;
            importer.getDictionary(&target);
        }
        QCOMPARE(target.takeFirst(), &before);
        QStringList names;
        for (const TVpSourceField *source : qAsConst(target))
            names.append(source->fieldName);
        qDeleteAll(target);
        QCOMPARE(names, QStringList({ "B", "A", "B" }));
    }

    void everyCallMakesNewSourceFields()
    {
        FakeImporter importer("layout.dcf", "CSPRO");
        FakeField age(&importer, "AGE");
        importer.layout = { &age };
        selected(importer);
        const Dictionary first(importer);
        const Dictionary second(importer);
        QVERIFY(first.fields.first() != second.fields.first());
    }

    void dictionaryOfAnImporterThatWasNotOpenedIsEmpty()
    {
        FakeImporter importer("layout.dcf", "CSPRO");
        FakeField age(&importer, "AGE");
        importer.layout = { &age };
        const Dictionary dictionary(importer);
        QCOMPARE(dictionary.fields.size(), 0);
        QCOMPARE(dictionary.lines, QStringList());
        QVERIFY(!importer.calls.contains("openFile"));
    }

    void dictionaryWithoutATargetDoesNothing()
    {
        FakeImporter importer("layout.dcf", "CSPRO");
        FakeField age(&importer, "AGE");
        importer.layout = { &age };
        selected(importer);
        const DebugCapture capture;
        importer.getDictionary(nullptr);
        QCOMPARE(capture.taken(), QStringList());
    }

    void numberOfFieldsIsReadOnceBeforeTheLoop()
    {
        struct GrowingField : FakeField {
            using FakeField::FakeField;
            QString getGroup() override
            {
                TestAccess::addField(*owner, this);
                return QString();
            }
        };
        FakeImporter importer("layout.dcf", "CSPRO");
        GrowingField field(&importer, "A", vtReal);
        importer.layout = { &field };
        selected(importer);
        QCOMPARE(Dictionary(importer).fields.size(), 1);
        QCOMPARE(TestAccess::fields(importer)->size(), 2);
    }
};

QTEST_GUILESS_MAIN(DataImportTest)
#include "DataImportTest.moc"
