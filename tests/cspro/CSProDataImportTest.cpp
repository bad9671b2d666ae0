#include "cspro/CSProDataImport.h"
#include "cspro/CSPro_p.h"
#include "cspro/DecimalQuestion.h"
#include "import/DataProvider.h"
#include "import/SourceField.h"
#include "support/Callable.h"
#include "support/DebugCapture.h"
#include "support/DictionaryFile.h"
#include "support/Thrown.h"

#include <QtTest>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>

Q_DECLARE_METATYPE(DecimalAnswerFunction)

struct TestAccess {
    using Importer = TCSProDataImport;

    static QStringList *&groupList(Importer &importer) { return importer.groupList; }
    static bool layoutPending(const Importer &importer) { return importer.layoutPending; }
    static int recordTypeStart(const Importer &importer) { return importer.recordTypeStart; }
    static int recordTypeLen(const Importer &importer) { return importer.recordTypeLen; }
    static TCSPro *dictionary(const Importer &importer) { return importer.dictionary; }
    static QString &currentRecordType(Importer &importer) { return importer.currentRecordType; }
    static int openState(const Importer &importer) { return importer.openState; }
    static double stateValue(const Importer &importer) { return importer.stateValue; }
    static QList<TGenericField *> *fields(const Importer &importer) { return importer.fields; }

    static void openRead(Importer &importer, const QString &fileName) { importer.openRead(fileName); }
    static void copyDataFromDictionary(Importer &importer) { importer.copyDataFromDictionary(); }
    static int currentIndex(const Importer &importer) { return importer.getRecordTypeIndex(); }
    static void getNotApplicable(const Importer &importer, TGenericField *field) { importer.getNotApplicable(field); }
    static void getVarMissingValue(const Importer &importer, TGenericField *field)
    {
        importer.getVarMissingValue(field);
    }
    static QString stringOfChar(const Importer &importer, char character, int count)
    {
        return importer.StringOfChar(character, count);
    }

    // What the members that nothing reads hold: numbers, texts and pointers in one line.
    static QString carried(const Importer &importer)
    {
        return QStringLiteral("%1|%2|%3|%4|%5|%6")
            .arg(importer.number1)
            .arg(importer.text1)
            .arg(importer.openState)
            .arg(importer.pointer1 != nullptr)
            .arg(importer.pointer2 != nullptr)
            .arg(importer.text2);
    }
    static void carry(Importer &importer)
    {
        importer.number1 = 4;
        importer.text1 = QStringLiteral("a");
        importer.openState = 5;
        importer.pointer1 = &importer;
        importer.pointer2 = &importer;
        importer.text2 = QStringLiteral("b");
    }
};

namespace
{

CALLABLE(CanAskId, getDataProviderId());
CALLABLE(CanAskType, getDataProviderType());
CALLABLE(CanOpen, openFile());
CALLABLE(CanSelect, selectLayoutSource());
CALLABLE(CanAskMultiple, isMultiple());
CALLABLE(CanCountGroups, getGroupCount());
CALLABLE(CanAskGroupName, getGroupName(0));
CALLABLE(CanAskGroupValue, getGroupValue(0));
CALLABLE(CanAskTypeIndex, getRecordTypeIndex(QString()));
CALLABLE(CanAskTypeStart, getRecordTypeStart());
CALLABLE(CanAskTypeSize, getRecordTypeSize());
CALLABLE(CanOpenRead, openRead(QString()));
CALLABLE(CanCopyData, copyDataFromDictionary());
CALLABLE(CanAskCurrentIndex, getRecordTypeIndex());
CALLABLE(CanTakeNotApplicable, getNotApplicable(nullptr));
CALLABLE(CanTakeMissing, getVarMissingValue(nullptr));
CALLABLE(CanRepeat, StringOfChar('9', 1));

// Sees what a subclass sees.
class Heir : public TCSProDataImport
{
public:
    explicit Heir(const QString &path)
        : TCSProDataImport(path)
    {
    }

    template <typename T> static auto canOpenRead(T *heir) -> decltype(heir->openRead(QString()), std::true_type());
    static std::false_type canOpenRead(...);
    template <typename T>
    static auto canCopyData(T *heir) -> decltype(heir->copyDataFromDictionary(), std::true_type());
    static std::false_type canCopyData(...);
    template <typename T>
    static auto canAskCurrentIndex(T *heir) -> decltype(heir->getRecordTypeIndex(), std::true_type());
    static std::false_type canAskCurrentIndex(...);
    template <typename T>
    static auto canTakeNotApplicable(T *heir) -> decltype(heir->getNotApplicable(nullptr), std::true_type());
    static std::false_type canTakeNotApplicable(...);
    template <typename T>
    static auto canTakeMissing(T *heir) -> decltype(heir->getVarMissingValue(nullptr), std::true_type());
    static std::false_type canTakeMissing(...);
    template <typename T> static auto canRepeat(T *heir) -> decltype(heir->StringOfChar('9', 1), std::true_type());
    static std::false_type canRepeat(...);

    QString alias;

protected:
    QString getGroupName(int index) override { return alias.isNull() ? TCSProDataImport::getGroupName(index) : alias; }
};

class ForeignField : public TGenericField
{
public:
    ForeignField()
        : TGenericField(nullptr)
    {
    }
    bool isMissing() override { return false; }
    bool isNotApplicable() override { return false; }
    bool isBlank() override { return false; }
};

// An importer that has opened a dictionary of this text.
struct OpenDictionary {
    explicit OpenDictionary(const QString &text)
        : file(text)
        , importer(file.path())
    {
        base().openFile();
    }

    TDataImport &base() { return importer; }
    int fieldCount() const { return TestAccess::fields(importer)->size(); }
    TCSProVariable *field(int index) const
    {
        return static_cast<TCSProVariable *>(TestAccess::fields(importer)->at(index));
    }

    DictionaryFile file;
    TCSProDataImport importer;
};

QString item(const QString &name, const QString &lines = QString())
{
    return QStringLiteral("[Item]\nName=%1\n%2\n").arg(name, lines);
}

QString record(const QString &name, const QString &type)
{
    return QStringLiteral("[Record]\nName=%1\nRecordTypeValue='%2'\n").arg(name, type);
}

// A section of value lines.
QString valueSet(const QString &lines)
{
    return QStringLiteral("[ValueSet]\nName=SET\n") + lines + QLatin1Char('\n');
}

// An item whose value set raises the question on decimal codes.
QString decimalSet()
{
    return item(QStringLiteral("SHARE"), QStringLiteral("Len=4\nDecimal=1"))
        + valueSet(QStringLiteral("Value=2.5;Some\nValue=7;Seven"));
}

QString sample()
{
    return QStringLiteral("[Dictionary]\nRecordTypeStart=3\nRecordTypeLen=2\n[IdItems]\n")
        + item(QStringLiteral("AREA"), QStringLiteral("Start=5\nLen=3"))
        + record(QStringLiteral("HOUSE"), QStringLiteral("H"))
        + item(QStringLiteral("ROOMS"), QStringLiteral("Label=Rooms\nStart=8\nLen=2"))
        + record(QStringLiteral("PERSON"), QStringLiteral("P"))
        + item(QStringLiteral("AGE"), QStringLiteral("Label=Age\nStart=8\nLen=3"));
}

QStringList groupsOf(TDataImport &importer)
{
    QStringList groups;
    for (int i = 0; i < importer.getGroupCount(); ++i)
        groups.append(importer.getGroupName(i));
    return groups;
}

QStringList fieldNames(const OpenDictionary &open)
{
    QStringList names;
    for (const TGenericField *field : *TestAccess::fields(open.importer))
        names.append(field->name);
    return names;
}

// The one field of a dictionary whose one item has these lines.
TCSProVariable *fieldOf(const QString &itemLines, const QString &setLines = QString())
{
    QString text = item(QStringLiteral("ITEM"), itemLines);
    if (!setLines.isNull())
        text += valueSet(setLines);
    const OpenDictionary open(text);
    return open.fieldCount() == 1 ? open.field(0) : nullptr;
}

} // namespace

class CSProDataImportTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void cleanup() { setDecimalAnswer({}); }

    // construction

    void pathConstructorLogsOneLineAndReadsNothing()
    {
        const DictionaryFile file(sample());
        const DebugCapture log;
        TCSProDataImport importer(file.path());
        QCOMPARE(log.taken(), QStringList{ QStringLiteral("TCSProDataImport Constructor") });
        QCOMPARE(importer.getSourceName(), file.path());
        QCOMPARE(importer.getDataSourceName(), QString());
        QVERIFY(TestAccess::fields(importer)->isEmpty());
        QVERIFY(!TestAccess::dictionary(importer));
        QVERIFY(TestAccess::layoutPending(importer));
        QVERIFY(TestAccess::groupList(importer));
        QCOMPARE(importer.getGroupCount(), 0);
        QCOMPARE(TestAccess::recordTypeStart(importer), 0);
        QCOMPARE(TestAccess::recordTypeLen(importer), 0);
        QVERIFY(TestAccess::currentRecordType(importer).isNull());
        QCOMPARE(TestAccess::carried(importer), QStringLiteral("0||0|0|0|"));
    }

    void pathIsKeptUnchanged()
    {
        const TCSProDataImport importer(QStringLiteral("no/such/../file.dcf"));
        QCOMPARE(importer.getSourceName(), QStringLiteral("no/such/../file.dcf"));
    }

    void defaultConstructorGivesNothingAndLogsNothing()
    {
        const DebugCapture log;
        TCSProDataImport importer;
        QCOMPARE(log.taken(), QStringList());
        QCOMPARE(importer.getSourceName(), QString());
        QVERIFY(!TestAccess::groupList(importer));
        QVERIFY(!TestAccess::dictionary(importer));
        QCOMPARE(importer.getGroupCount(), 0);
        QVERIFY(TestAccess::fields(importer));
        QVERIFY(TestAccess::fields(importer)->isEmpty());
        QCOMPARE(TestAccess::carried(importer), QStringLiteral("0||0|0|0|"));
    }

    void moveConstructorTakesNothing()
    {
        OpenDictionary open(sample());
        TestAccess::carry(open.importer);
        TestAccess::currentRecordType(open.importer) = QStringLiteral("H");
        const DebugCapture log;
        TCSProDataImport moved(std::move(open.importer));
        QCOMPARE(log.taken(), QStringList());
        QCOMPARE(moved.getSourceName(), QString());
        QVERIFY(!TestAccess::groupList(moved));
        QVERIFY(!TestAccess::dictionary(moved));
        QVERIFY(TestAccess::fields(moved));
        QVERIFY(TestAccess::fields(moved)->isEmpty());
        QVERIFY(TestAccess::currentRecordType(moved).isEmpty());
        QCOMPARE(TestAccess::recordTypeStart(moved), 0);
        QCOMPARE(TestAccess::recordTypeLen(moved), 0);
        QCOMPARE(TestAccess::carried(moved), QStringLiteral("0||0|0|0|"));

        QCOMPARE(open.importer.getSourceName(), open.file.path());
        QCOMPARE(open.importer.getGroupCount(), 2);
        QCOMPARE(open.fieldCount(), 3);
    }

    void defaultImporterOpensOnceItHasASource()
    {
        const DictionaryFile file(sample());
        TCSProDataImport importer;
        importer.setSourceName(file.path());
        TDataImport &base = importer;
        QVERIFY(base.openFile());
        QCOMPARE(groupsOf(base), (QStringList{ QStringLiteral("HOUSE=H"), QStringLiteral("PERSON=P") }));
        QCOMPARE(TestAccess::fields(importer)->size(), 3);
    }

    void copiesShareGroupsDictionaryAndFields_data()
    {
        QTest::addColumn<bool>("assigned");
        QTest::newRow("copy constructor") << false;
        QTest::newRow("assignment") << true;
    }
    void copiesShareGroupsDictionaryAndFields()
    {
        QFETCH(bool, assigned);
        OpenDictionary open(sample());
        TestAccess::carry(open.importer);
        TestAccess::currentRecordType(open.importer) = QStringLiteral("H");
        std::unique_ptr<TCSProDataImport> copy;
        if (assigned) {
            copy = std::make_unique<TCSProDataImport>();
            *copy = open.importer;
        } else {
            copy = std::make_unique<TCSProDataImport>(open.importer);
        }
        QCOMPARE(TestAccess::groupList(*copy), TestAccess::groupList(open.importer));
        QCOMPARE(TestAccess::dictionary(*copy), TestAccess::dictionary(open.importer));
        QCOMPARE(TestAccess::fields(*copy), TestAccess::fields(open.importer));
        QCOMPARE(copy->getSourceName(), open.file.path());
        QCOMPARE(TestAccess::layoutPending(*copy), false);
        QCOMPARE(TestAccess::recordTypeStart(*copy), 3);
        QCOMPARE(TestAccess::recordTypeLen(*copy), 2);
        QCOMPARE(TestAccess::currentRecordType(*copy), QStringLiteral("H"));
        QCOMPARE(TestAccess::carried(*copy), QStringLiteral("4|a|5|1|1|b"));

        open.file.write(record(QStringLiteral("ONLY"), QStringLiteral("O")));
        open.base().openFile();
        QCOMPARE(groupsOf(*copy), QStringList{ QStringLiteral("ONLY=O") });
        QVERIFY(TestAccess::fields(*copy)->isEmpty());
    }

    void destroyedImporterLeavesDictionaryGroupsAndFields()
    {
        TCSPro *dictionary = nullptr;
        QStringList *groups = nullptr;
        TGenericField *field = nullptr;
        {
            OpenDictionary open(sample());
            dictionary = TestAccess::dictionary(open.importer);
            groups = TestAccess::groupList(open.importer);
            field = open.field(1);
        }
        QCOMPARE(dictionary->getItemsCount(), 3);
        QCOMPARE(groups->size(), 2);
        QCOMPARE(field->name, QStringLiteral("ROOMS"));
        QCOMPARE(static_cast<TCSProVariable *>(field)->item->name, QStringLiteral("ROOMS"));
        QVERIFY(!field->isMissing());
    }

    // access

    void onlyGroupCountAndDestructorArePublicInTheClass()
    {
        using Class = TCSProDataImport;
        QVERIFY(CanCountGroups<Class>::value);
        QVERIFY(std::is_destructible<Class>::value);

        QVERIFY(!CanAskId<Class>::value);
        QVERIFY(!CanAskType<Class>::value);
        QVERIFY(!CanOpen<Class>::value);
        QVERIFY(!CanSelect<Class>::value);
        QVERIFY(!CanAskMultiple<Class>::value);
        QVERIFY(!CanAskGroupName<Class>::value);
        QVERIFY(!CanAskGroupValue<Class>::value);
        QVERIFY(!CanAskTypeIndex<Class>::value);
        QVERIFY(!CanAskTypeStart<Class>::value);
        QVERIFY(!CanAskTypeSize<Class>::value);
    }

    void everyOperationIsPublicThroughTheBase()
    {
        QVERIFY(CanAskId<TDataImport>::value);
        QVERIFY(CanAskType<TDataImport>::value);
        QVERIFY(CanOpen<TDataImport>::value);
        QVERIFY(CanSelect<TDataImport>::value);
        QVERIFY(CanAskMultiple<TDataImport>::value);
        QVERIFY(CanCountGroups<TDataImport>::value);
        QVERIFY(CanAskGroupName<TDataImport>::value);
        QVERIFY(CanAskGroupValue<TDataImport>::value);
        QVERIFY(CanAskTypeIndex<TDataImport>::value);
        QVERIFY(CanAskTypeStart<TDataImport>::value);
        QVERIFY(CanAskTypeSize<TDataImport>::value);
    }

    void operationsOfItsOwnAreProtectedAndOneIsPrivate()
    {
        using Class = TCSProDataImport;
        QVERIFY(!CanOpenRead<Class>::value);
        QVERIFY(!CanCopyData<Class>::value);
        QVERIFY(!CanAskCurrentIndex<Class>::value);
        QVERIFY(!CanTakeNotApplicable<Class>::value);
        QVERIFY(!CanTakeMissing<Class>::value);
        QVERIFY(!CanRepeat<Class>::value);

        Heir *heir = nullptr;
        QVERIFY(decltype(Heir::canOpenRead(heir))::value);
        QVERIFY(decltype(Heir::canCopyData(heir))::value);
        QVERIFY(decltype(Heir::canAskCurrentIndex(heir))::value);
        QVERIFY(decltype(Heir::canTakeNotApplicable(heir))::value);
        QVERIFY(decltype(Heir::canTakeMissing(heir))::value);
        QVERIFY(!decltype(Heir::canRepeat(heir))::value);
    }

    // answers

    void idIsTheTypeAndTheSourceName()
    {
        TCSProDataImport importer(QStringLiteral("a/b.dcf"));
        TDataImport &base = importer;
        QCOMPARE(base.getDataProviderId(), QStringLiteral("CSPRO_a/b.dcf"));
        QCOMPARE(base.getDataProviderType(), QStringLiteral("CSPRO"));
        TCSProDataImport nameless;
        QCOMPARE(static_cast<TDataImport &>(nameless).getDataProviderId(), QStringLiteral("CSPRO_"));
    }

    void openedImporterAnswersThroughTheBase()
    {
        OpenDictionary open(sample());
        TDataImport &base = open.base();
        QVERIFY(base.isMultiple());
        QCOMPARE(base.getGroupCount(), 2);
        QCOMPARE(base.getGroupName(0), QStringLiteral("HOUSE=H"));
        QCOMPARE(base.getGroupName(1), QStringLiteral("PERSON=P"));
        QCOMPARE(base.getRecordTypeIndex(QStringLiteral("H")), 0);
        QCOMPARE(base.getRecordTypeIndex(QStringLiteral("P")), 1);
        QCOMPARE(base.getRecordTypeStart(), 3);
        QCOMPARE(base.getRecordTypeSize(), 2);
        QCOMPARE(base.getRecordTypeCurrent(), QString());
    }

    void unopenedImporterAnswersNothing()
    {
        const DictionaryFile file(sample());
        TCSProDataImport importer(file.path());
        TDataImport &base = importer;
        QVERIFY(!base.isMultiple());
        QCOMPARE(base.getGroupCount(), 0);
        QCOMPARE(base.getRecordTypeStart(), 0);
        QCOMPARE(base.getRecordTypeSize(), 0);
        QCOMPARE(base.getRecordTypeIndex(QStringLiteral("H")), -1);
        QCOMPARE(TestAccess::currentIndex(importer), -1);
    }

    void listFormOfGetDictionaryDoesNothing()
    {
        OpenDictionary open(sample());
        QList<TVpSourceField *> target;
        QStringList names;
        open.base().getDictionary(&target, &names);
        QVERIFY(target.isEmpty());
        QVERIFY(names.isEmpty());
    }

    void layoutSourceIsANewEmptyListAndNotTheGroups()
    {
        OpenDictionary open(sample());
        const std::unique_ptr<QStringList> first(open.base().getLayoutSource());
        const std::unique_ptr<QStringList> second(open.base().getLayoutSource());
        QVERIFY(first->isEmpty());
        QVERIFY(first != second);
        QVERIFY(first.get() != TestAccess::groupList(open.importer));
    }

    void selectLayoutSourceLogsTwoLinesOpensAndNamesTheFields()
    {
        const DictionaryFile file(sample());
        TCSProDataImport importer(file.path());
        TDataImport &base = importer;
        const DebugCapture log;
        const std::unique_ptr<QStringList> names(base.selectLayoutSource());
        QCOMPARE(log.taken(),
                 (QStringList{ QStringLiteral("TCSProDataImport - selectLayoutSource"),
                               QStringLiteral("DataImport - selectLayoutSource") }));
        QCOMPARE(*names, (QStringList{ QStringLiteral("AREA"), QStringLiteral("ROOMS"), QStringLiteral("AGE") }));
        QCOMPARE(TestAccess::fields(importer)->size(), 3);
    }

    void dictionaryIsMultipleWhereTheRecordTypeHasAWidth_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("size");
        QTest::addColumn<bool>("expected");

        // clang-format off
        QTest::newRow("empty dictionary")   << ""                                 << 1  << true;
        QTest::newRow("no width given")     << "[Dictionary]\n"                   << 1  << true;
        QTest::newRow("a width of two")     << "[Dictionary]\nRecordTypeLen=2\n"  << 2  << true;
        QTest::newRow("no width")           << "[Dictionary]\nRecordTypeLen=0\n"  << 0  << false;
        QTest::newRow("a negative width")   << "[Dictionary]\nRecordTypeLen=-1\n" << -1 << false;
        // clang-format on
    }
    void dictionaryIsMultipleWhereTheRecordTypeHasAWidth()
    {
        QFETCH(QString, text);
        QFETCH(int, size);
        QFETCH(bool, expected);
        OpenDictionary open(text);
        QCOMPARE(open.base().getRecordTypeSize(), size);
        QCOMPARE(open.base().isMultiple(), expected);
    }

    // groups

    void groupIsNameEqualsTypeInFileOrderWithoutTheCommonRecord()
    {
        OpenDictionary open(item(QStringLiteral("ID")) + record(QStringLiteral("SECOND"), QStringLiteral("2"))
                            + record(QStringLiteral("FIRST"), QStringLiteral("1"))
                            + record(QStringLiteral("SECOND"), QStringLiteral("2")) + record(QString(), QString()));
        QCOMPARE(groupsOf(open.base()),
                 (QStringList{ QStringLiteral("SECOND=2"), QStringLiteral("FIRST=1"), QStringLiteral("SECOND=2"),
                               QStringLiteral("=") }));
    }

    void valueOfAnOrdinaryGroupIsTheWholeEntry()
    {
        OpenDictionary open(sample());
        QCOMPARE(open.base().getGroupValue(0), QStringLiteral("HOUSE=H"));
        QCOMPARE(open.base().getGroupValue(1), QStringLiteral("PERSON=P"));
    }

    void groupValueIsTheFirstEntryThatContainsTheName_data()
    {
        QTest::addColumn<QString>("records");
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("expected");

        // clang-format off
        QTest::newRow("an earlier one is longer in front")  << "OLD_HOUSE=1 HOUSE=1"    << 1 << "OLD_HOUSE=1";
        QTest::newRow("an earlier one is longer behind")    << "HOUSE=12 HOUSE=1"       << 1 << "HOUSE=12";
        QTest::newRow("an earlier one is longer both ways") << "OLD_HOUSE=12 HOUSE=1"   << 1 << "OLD_HOUSE=12";
        QTest::newRow("the longer one stands later")        << "HOUSE=1 OLD_HOUSE=12"   << 0 << "HOUSE=1";
        QTest::newRow("the longer one is itself")           << "HOUSE=1 OLD_HOUSE=12"   << 1 << "OLD_HOUSE=12";
        QTest::newRow("the first of several longer ones")   << "C=AB B=A AB=AC B=AD B=A" << 3 << "B=AD";
        QTest::newRow("of several the first counts")        << "XA=12 YA=13 A=1"        << 2 << "XA=12";
        QTest::newRow("case counts")                        << "old_house=1 HOUSE=1"    << 1 << "HOUSE=1";
        // clang-format on
    }
    void groupValueIsTheFirstEntryThatContainsTheName()
    {
        QFETCH(QString, records);
        QFETCH(int, index);
        QFETCH(QString, expected);
        QString text;
        const QStringList entries = records.split(QLatin1Char(' '));
        for (const QString &entry : entries)
            text += record(entry.section(QLatin1Char('='), 0, 0), entry.section(QLatin1Char('='), 1));
        OpenDictionary open(text);
        QCOMPARE(open.base().getGroupName(index), entries.at(index));
        QCOMPARE(open.base().getGroupValue(index), expected);
    }

    void groupValueTakesTheNameThatASubclassGives()
    {
        const DictionaryFile file(sample());
        Heir heir(file.path());
        TDataImport &base = heir;
        base.openFile();
        QCOMPARE(base.getGroupValue(0), QStringLiteral("HOUSE=H"));
        heir.alias = QStringLiteral("SON=");
        QCOMPARE(base.getGroupValue(0), QStringLiteral("PERSON=P"));
        heir.alias = QStringLiteral("nowhere");
        QCOMPARE(base.getGroupValue(0), QString());
    }

    void nameThatIsNoEntryHasTheFirstEntryThatContainsItAsItsValue_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected");
        // clang-format off
        QTest::newRow("in all entries")          << "="        << "FARMER=1";
        QTest::newRow("begin of an entry")       << "FARM"     << "FARMER=1";
        QTest::newRow("begin of a later entry")  << "HOUSE"    << "HOUSE=2";
        QTest::newRow("end of two entries")      << "=2"       << "HOUSE=2";
        QTest::newRow("middle of an entry")      << "ARM=1"    << "FARM=12";
        QTest::newRow("empty text")              << ""         << "FARMER=1";
        QTest::newRow("longer than its entry")   << "HOUSE=2 " << "";
        QTest::newRow("in another case")         << "house"    << "";
        // clang-format on
    }
    void nameThatIsNoEntryHasTheFirstEntryThatContainsItAsItsValue()
    {
        QFETCH(QString, name);
        QFETCH(QString, expected);
        const DictionaryFile file(record(QStringLiteral("FARMER"), QStringLiteral("1"))
                                  + record(QStringLiteral("HOUSE"), QStringLiteral("2"))
                                  + record(QStringLiteral("FARM"), QStringLiteral("12"))
                                  + record(QStringLiteral("BARN"), QStringLiteral("2")));
        Heir heir(file.path());
        TDataImport &base = heir;
        base.openFile();
        heir.alias = name;
        QCOMPARE(base.getGroupValue(0), expected);
        QCOMPARE(base.getGroupValue(3), expected);
    }

    void groupValueComesFromTheEntriesOfTheLastOpening()
    {
        OpenDictionary open(record(QStringLiteral("OLD_HOUSE"), QStringLiteral("1"))
                            + record(QStringLiteral("HOUSE"), QStringLiteral("1")));
        QCOMPARE(open.base().getGroupValue(1), QStringLiteral("OLD_HOUSE=1"));

        open.file.write(record(QStringLiteral("PERSON"), QStringLiteral("1"))
                        + record(QStringLiteral("HOUSE"), QStringLiteral("1"))
                        + record(QStringLiteral("ROOM"), QStringLiteral("1")));
        open.base().openFile();
        QCOMPARE(open.base().getGroupValue(0), QStringLiteral("PERSON=1"));
        QCOMPARE(open.base().getGroupValue(1), QStringLiteral("HOUSE=1"));
        QCOMPARE(open.base().getGroupValue(2), QStringLiteral("ROOM=1"));
        QCOMPARE(open.base().getGroupValue(3), QString());

        // As many entries as before, in another order.
        open.file.write(record(QStringLiteral("WAREHOUSE"), QStringLiteral("1"))
                        + record(QStringLiteral("HOUSE"), QStringLiteral("1"))
                        + record(QStringLiteral("PERSON"), QStringLiteral("1")));
        open.base().openFile();
        QCOMPARE(open.base().getGroupValue(1), QStringLiteral("WAREHOUSE=1"));
        QCOMPARE(open.base().getGroupValue(2), QStringLiteral("PERSON=1"));
    }

    void copiesAnswerTheSameGroupValues_data()
    {
        QTest::addColumn<bool>("askedBefore");
        QTest::newRow("copied before it was asked") << false;
        QTest::newRow("copied when it was asked") << true;
    }
    void copiesAnswerTheSameGroupValues()
    {
        QFETCH(bool, askedBefore);
        const QStringList expected = { QStringLiteral("OLD_HOUSE=1"), QStringLiteral("OLD_HOUSE=1") };
        const auto values = [](TDataImport &importer) {
            return QStringList{ importer.getGroupValue(0), importer.getGroupValue(1) };
        };
        OpenDictionary open(record(QStringLiteral("OLD_HOUSE"), QStringLiteral("1"))
                            + record(QStringLiteral("HOUSE"), QStringLiteral("1")));
        if (askedBefore)
            QCOMPARE(values(open.base()), expected);
        TCSProDataImport copy(open.importer);
        TCSProDataImport assigned;
        assigned = open.importer;
        QCOMPARE(values(copy), expected);
        QCOMPARE(values(assigned), expected);
        QCOMPARE(values(open.base()), expected);

        // The entries are shared, so new ones are the copies' too.
        open.file.write(record(QStringLiteral("ROOM"), QStringLiteral("1"))
                        + record(QStringLiteral("HOUSE"), QStringLiteral("1")));
        open.base().openFile();
        const QStringList renewed = { QStringLiteral("ROOM=1"), QStringLiteral("HOUSE=1") };
        QCOMPARE(values(copy), renewed);
        QCOMPARE(values(assigned), renewed);
        QCOMPARE(values(open.base()), renewed);
    }

    void groupOutsideOfTheListIsEmpty()
    {
        OpenDictionary open(sample());
        for (const int index : { -1, 2, 100 }) {
            QVERIFY(open.base().getGroupName(index).isNull());
            QCOMPARE(open.base().getGroupValue(index), QString());
        }
    }

    // record types

    void twoFormsOfTheTypeIndexSearchInOppositeDirections()
    {
        OpenDictionary open(
            record(QStringLiteral("A"), QStringLiteral("H")) + record(QStringLiteral("B"), QStringLiteral("P"))
            + record(QStringLiteral("C"), QStringLiteral("H")) + record(QStringLiteral("D"), QStringLiteral("Q")));
        TestAccess::currentRecordType(open.importer) = QStringLiteral("H");
        QCOMPARE(TestAccess::currentIndex(open.importer), 0);
        QCOMPARE(open.base().getRecordTypeIndex(QStringLiteral("H")), 2);
        TestAccess::currentRecordType(open.importer) = QStringLiteral("P");
        QCOMPARE(TestAccess::currentIndex(open.importer), 1);
        QCOMPARE(open.base().getRecordTypeIndex(QStringLiteral("P")), 1);
    }

    void typeIndexIsByTheExactTypeWithoutQuotes_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<int>("expected");

        // clang-format off
        QTest::newRow("without quotes")   << "HH"       << 0;
        QTest::newRow("with quotes")      << "'HH'"     << -1;
        QTest::newRow("a part")           << "H"        << -1;
        QTest::newRow("another case")     << "hh"       << -1;
        QTest::newRow("unknown")          << "X"        << -1;
        QTest::newRow("the whole group")  << "HOUSE=HH" << -1;
        QTest::newRow("a name")           << "HOUSE"    << -1;
        QTest::newRow("common record")    << "_COMMON_" << -1;
        QTest::newRow("empty type")       << ""         << 1;
        // clang-format on
    }
    void typeIndexIsByTheExactTypeWithoutQuotes()
    {
        QFETCH(QString, type);
        QFETCH(int, expected);
        OpenDictionary open(item(QStringLiteral("ID")) + record(QStringLiteral("HOUSE"), QStringLiteral("HH"))
                            + record(QStringLiteral("NOTHING"), QString()));
        QCOMPARE(open.base().getRecordTypeIndex(type), expected);
        TestAccess::currentRecordType(open.importer) = type;
        QCOMPARE(TestAccess::currentIndex(open.importer), expected);
    }

    void currentRecordTypeIsNeverAssigned()
    {
        OpenDictionary open(sample());
        QVERIFY(TestAccess::currentRecordType(open.importer).isNull());
        QCOMPARE(TestAccess::currentIndex(open.importer), -1);
        QCOMPARE(open.base().getRecordTypeIndex(QStringLiteral("H")), 0);
        QVERIFY(TestAccess::currentRecordType(open.importer).isNull());
    }

    // opening

    void openingIsAlwaysTrue_data()
    {
        QTest::addColumn<QString>("path");
        const QString folder = QStringLiteral(VAN_TEST_DATA "/cspro");
        QTest::newRow("no name") << QString();
        QTest::newRow("no such file") << folder + QStringLiteral("/no-such-file.dcf");
        QTest::newRow("a folder") << folder;
    }
    void openingIsAlwaysTrue()
    {
        QFETCH(QString, path);
        TCSProDataImport importer(path);
        TDataImport &base = importer;
        QVERIFY(base.openFile());
        QCOMPARE(base.getGroupCount(), 0);
        QVERIFY(TestAccess::fields(importer)->isEmpty());
        QVERIFY(base.isMultiple());
        QCOMPARE(base.getRecordTypeStart(), 1);
        QCOMPARE(base.getRecordTypeSize(), 1);
        QVERIFY(!TestAccess::layoutPending(importer));
    }

    void emptyDictionaryOpensWithoutGroupsAndFields()
    {
        const DictionaryFile file{ QString() };
        TCSProDataImport importer(file.path());
        TDataImport &base = importer;
        QVERIFY(base.openFile());
        QCOMPARE(base.getGroupCount(), 0);
        QVERIFY(TestAccess::fields(importer)->isEmpty());
        QVERIFY(base.isMultiple());
    }

    void openingSetsTheStateAndClearsPending()
    {
        const DictionaryFile file(sample());
        TCSProDataImport importer(file.path());
        QVERIFY(static_cast<TDataImport &>(importer).openFile());
        QCOMPARE(TestAccess::openState(importer), 1);
        QCOMPARE(TestAccess::stateValue(importer), 1.0);
        QVERIFY(!TestAccess::layoutPending(importer));
        QVERIFY(TestAccess::dictionary(importer));
        QCOMPARE(TestAccess::dictionary(importer)->recordsCount, 2);
    }

    void copyingWithoutADictionaryAddsNothing()
    {
        const DictionaryFile file(sample());
        TCSProDataImport importer(file.path());
        TestAccess::copyDataFromDictionary(importer);
        QVERIFY(TestAccess::fields(importer)->isEmpty());
        QVERIFY(!TestAccess::dictionary(importer));
        QCOMPARE(importer.getGroupCount(), 0);

        TCSProDataImport empty;
        TestAccess::copyDataFromDictionary(empty);
        QVERIFY(TestAccess::fields(empty)->isEmpty());
    }

    void secondOpeningReplacesFieldsGroupsAndDictionary()
    {
        OpenDictionary open(sample());
        const TCSPro *former = TestAccess::dictionary(open.importer);
        const QStringList *groups = TestAccess::groupList(open.importer);
        const TCSProVariable *field = open.field(2);
        QVERIFY(open.importer.fieldByName(QStringLiteral("AGE")));

        open.file.write(QStringLiteral("[Dictionary]\nRecordTypeStart=7\nRecordTypeLen=0\n")
                        + record(QStringLiteral("ONLY"), QStringLiteral("O")) + item(QStringLiteral("NEW")));
        QVERIFY(open.base().openFile());
        QCOMPARE(fieldNames(open), QStringList{ QStringLiteral("NEW") });
        QVERIFY(!open.importer.fieldByName(QStringLiteral("AGE")));
        QVERIFY(open.importer.fieldByName(QStringLiteral("NEW")));
        QCOMPARE(groupsOf(open.base()), QStringList{ QStringLiteral("ONLY=O") });
        QCOMPARE(TestAccess::groupList(open.importer), groups);
        QCOMPARE(open.base().getRecordTypeStart(), 7);
        QCOMPARE(open.base().getRecordTypeSize(), 0);

        QVERIFY(TestAccess::dictionary(open.importer) != former);
        QCOMPARE(former->getItemsCount(), 3);
        QCOMPARE(field->name, QStringLiteral("AGE"));
        QCOMPARE(field->item, former->getItem(2));
        QCOMPARE(field->item->record->name, QStringLiteral("PERSON"));
    }

    void secondOpeningOfTheSameFileGivesTheSame()
    {
        OpenDictionary open(sample());
        const QStringList names = fieldNames(open);
        QVERIFY(open.base().openFile());
        QCOMPARE(fieldNames(open), names);
        QCOMPARE(open.base().getGroupCount(), 2);
    }

    void openReadAloneAppendsFieldsAndReplacesGroups()
    {
        OpenDictionary open(sample());
        const DictionaryFile other(record(QStringLiteral("ONLY"), QStringLiteral("O")) + item(QStringLiteral("NEW")));
        TestAccess::openRead(open.importer, other.path());
        QCOMPARE(fieldNames(open),
                 (QStringList{ QStringLiteral("AREA"), QStringLiteral("ROOMS"), QStringLiteral("AGE"),
                               QStringLiteral("NEW") }));
        QCOMPARE(groupsOf(open.base()), QStringList{ QStringLiteral("ONLY=O") });
        QCOMPARE(open.importer.getSourceName(), open.file.path());
    }

    void openReadMakesTheListOfGroupsWhereThereIsNone()
    {
        const DictionaryFile file(sample());
        TCSProDataImport importer;
        TestAccess::openRead(importer, file.path());
        QVERIFY(TestAccess::groupList(importer));
        QCOMPARE(importer.getGroupCount(), 2);
        QVERIFY(!TestAccess::layoutPending(importer));
        QCOMPARE(TestAccess::openState(importer), 0);
    }

    void copyingFromTheDictionaryAgainAppendsAllFieldsOnceMore()
    {
        OpenDictionary open(sample());
        TestAccess::copyDataFromDictionary(open.importer);
        QCOMPARE(open.fieldCount(), 6);
        QCOMPARE(open.field(3)->name, QStringLiteral("AREA"));
        QCOMPARE(open.field(3)->item, open.field(0)->item);
        QVERIFY(open.field(3) != open.field(0));
        QCOMPARE(open.importer.fieldByName(QStringLiteral("AREA")), static_cast<TGenericField *>(open.field(3)));
    }

    void itemWithoutARecordHasNoGroup()
    {
        OpenDictionary open(sample());
        open.field(0)->item->record = nullptr;
        TestAccess::copyDataFromDictionary(open.importer);
        QVERIFY(!open.field(0)->group.isEmpty());
        QCOMPARE(open.field(3)->name, open.field(0)->name);
        QCOMPARE(open.field(3)->group, QString());
    }

    void failureOfTheReaderPassesThroughOpening_data()
    {
        QTest::addColumn<bool>("selects");
        QTest::newRow("openFile") << false;
        QTest::newRow("selectLayoutSource") << true;
    }
    void failureOfTheReaderPassesThroughOpening()
    {
        QFETCH(bool, selects);
        OpenDictionary open(sample());
        // The lines of the set end at index 8, in front of the last header.
        open.file.write(QStringLiteral("[Item]\nName=HOURS\nLen=2\n\n[ValueSet]\nName=SET\nValue=1:5 7:9;Two ranges\n"
                                       "Value=3;Three\n\n[Item]\nName=AFTER\n"));
        const auto error = thrownBy([&] {
            if (selects)
                delete open.base().selectLayoutSource();
            else
                open.base().openFile();
        });
        QVERIFY(error);
        QCOMPARE(error->getCode(), 242);
        QCOMPARE(error->getClassName(), QStringLiteral("CSPro"));
        QCOMPARE(error->getText(), QString(QChar(8)));

        QCOMPARE(open.fieldCount(), 0);
        QCOMPARE(TestAccess::dictionary(open.importer)->getItemsCount(), 1);
        QCOMPARE(groupsOf(open.base()), (QStringList{ QStringLiteral("HOUSE=H"), QStringLiteral("PERSON=P") }));
    }

    void decimalQuestionComesUpWhileOpening()
    {
        int questions = 0;
        setDecimalAnswer([&questions](const DecimalQuestion &question) {
            ++questions;
            return question.title == QLatin1String("Caution") ? DecimalAnswer::yes : DecimalAnswer::no;
        });
        const DictionaryFile file(decimalSet());
        TCSProDataImport importer(file.path());
        QCOMPARE(questions, 0);
        const std::unique_ptr<QStringList> names(static_cast<TDataImport &>(importer).selectLayoutSource());
        QCOMPARE(questions, 1);
        const TGenericField *field = importer.fieldByName(QStringLiteral("SHARE"));
        QCOMPARE(field->valueLabels, QStringLiteral("0 Some\t7 Seven\t"));
        QCOMPARE(field->maximum, QStringLiteral("7"));
    }

    void ownAnswerOfAnImporterReplacesThatOfTheProcess_data()
    {
        QTest::addColumn<DecimalAnswerFunction>("ofProcess");
        QTest::addColumn<DecimalAnswerFunction>("own");
        QTest::addColumn<QString>("labels");
        const DecimalAnswerFunction yes = [](const DecimalQuestion &) { return DecimalAnswer::yes; };
        const DecimalAnswerFunction no = [](const DecimalQuestion &) { return DecimalAnswer::no; };
        const DecimalAnswerFunction none;
        QTest::newRow("own yes, process no") << no << yes << "0 Some\t7 Seven\t";
        QTest::newRow("own no, process yes") << yes << no << "";
        QTest::newRow("own yes, no function of the process") << none << yes << "0 Some\t7 Seven\t";
        QTest::newRow("no own function, process yes") << yes << none << "0 Some\t7 Seven\t";
        QTest::newRow("no own function, process no") << no << none << "";
        QTest::newRow("no function at all, and no dialog") << none << none << "";
    }
    void ownAnswerOfAnImporterReplacesThatOfTheProcess()
    {
        QFETCH(DecimalAnswerFunction, ofProcess);
        QFETCH(DecimalAnswerFunction, own);
        QFETCH(QString, labels);
        const DictionaryFile file(decimalSet());
        setDecimalAnswer(ofProcess);
        TCSProDataImport importer(file.path());
        importer.setDecimalAnswer(own);
        static_cast<TDataImport &>(importer).openFile();
        QCOMPARE(importer.fieldByName(QStringLiteral("SHARE"))->valueLabels, labels);
    }

    void ownAnswerIsThatOfOneImporterAndOfItsCopies()
    {
        const DictionaryFile file(decimalSet());
        setDecimalAnswer([](const DecimalQuestion &) { return DecimalAnswer::no; });
        TCSProDataImport importer(file.path());
        importer.setDecimalAnswer([](const DecimalQuestion &) { return DecimalAnswer::yes; });
        TCSProDataImport copy(importer);
        TCSProDataImport assigned;
        assigned = importer;
        TCSProDataImport moved(std::move(importer));
        moved.setSourceName(file.path());
        TCSProDataImport other(file.path());
        const auto labelsOf = [](TCSProDataImport &subject) {
            static_cast<TDataImport &>(subject).openFile();
            return subject.fieldByName(QStringLiteral("SHARE"))->valueLabels;
        };
        QCOMPARE(labelsOf(copy), QStringLiteral("0 Some\t7 Seven\t"));
        QCOMPARE(labelsOf(assigned), QStringLiteral("0 Some\t7 Seven\t"));
        QCOMPARE(labelsOf(moved), QString());
        QCOMPARE(labelsOf(other), QString());
        copy.setDecimalAnswer({});
        QCOMPARE(labelsOf(copy), QString());
    }

    // The dictionary lives on with its fields.
    void ownAnswerIsNotKeptBeyondTheImporter_data()
    {
        QTest::addColumn<bool>("isThrowing");
        QTest::newRow("the reading ends") << false;
        QTest::newRow("the reading fails") << true;
    }
    void ownAnswerIsNotKeptBeyondTheImporter()
    {
        QFETCH(bool, isThrowing);
        const DictionaryFile file(decimalSet());
        std::weak_ptr<int> held;
        {
            const auto count = std::make_shared<int>(0);
            held = count;
            TCSProDataImport importer(file.path());
            importer.setDecimalAnswer([count, isThrowing](const DecimalQuestion &) {
                if (isThrowing)
                    throw std::runtime_error("no answer");
                return DecimalAnswer::yes;
            });
            const auto error = thrownBy([&] { static_cast<TDataImport &>(importer).openFile(); });
            QCOMPARE(error != nullptr, isThrowing);
            QVERIFY(!held.expired());
        }
        QVERIFY(held.expired());
    }

    void answerOfTheProcessMayBeSetOnAnotherThread()
    {
        const DictionaryFile file(decimalSet());
        std::atomic<bool> isOver{ false };
        std::thread other([&isOver] {
            while (!isOver) {
                setDecimalAnswer([text = QStringLiteral("Caution")](const DecimalQuestion &question) {
                    return question.title == text ? DecimalAnswer::yes : DecimalAnswer::no;
                });
            }
        });
        setDecimalAnswer([](const DecimalQuestion &) { return DecimalAnswer::yes; });
        QStringList labels;
        for (int i = 0; i < 200; ++i) {
            TCSProDataImport importer(file.path());
            static_cast<TDataImport &>(importer).openFile();
            labels.append(importer.fieldByName(QStringLiteral("SHARE"))->valueLabels);
        }
        isOver = true;
        other.join();
        labels.removeDuplicates();
        QCOMPARE(labels, QStringList(QStringLiteral("0 Some\t7 Seven\t")));
    }

    // items to fields

    void everyItemBecomesAFieldInFileOrder()
    {
        OpenDictionary open(sample());
        QCOMPARE(open.fieldCount(), 3);
        for (int i = 0; i < 3; ++i) {
            const TCSProVariable *field = dynamic_cast<TCSProVariable *>(TestAccess::fields(open.importer)->at(i));
            QVERIFY(field);
            QCOMPARE(field->owner, &open.base());
            QCOMPARE(field->item, TestAccess::dictionary(open.importer)->getItem(i));
            QVERIFY(!field->optional);
        }
        QCOMPARE(open.importer.fieldByName(QStringLiteral("AGE")), static_cast<TGenericField *>(open.field(2)));
    }

    void descriptionIsCopiedFromTheItem()
    {
        const TCSProVariable *field
            = fieldOf(QStringLiteral("Label= Rooms; all \nStart=17\nLen=3\nDecimalChar=Yes"),
                      QStringLiteral("Value=1;One\nValue=98;No room\nName=NOTAPPL ,Special\nValue=99;Not stated\n"
                                     "Name=MISSING ,Special"));
        QVERIFY(field);
        QCOMPARE(field->name, QStringLiteral("ITEM"));
        QCOMPARE(field->label, QStringLiteral(" Rooms; all"));
        QCOMPARE(field->start, 17);
        QCOMPARE(field->length, 3);
        QCOMPARE(field->missingValue, QStringLiteral("99"));
        QCOMPARE(field->notApplicable, QStringLiteral("98"));
    }

    void decimalCharacterOfTheItemIsNotCopied_data()
    {
        QTest::addColumn<QString>("lines");
        QTest::newRow("none given") << "Len=5\nDecimal=2";
        QTest::newRow("yes") << "Len=5\nDecimal=2\nDecimalChar=Yes";
        QTest::newRow("no") << "Len=5\nDecimal=2\nDecimalChar=No";
    }
    void decimalCharacterOfTheItemIsNotCopied()
    {
        QFETCH(QString, lines);
        TCSProVariable *field = fieldOf(lines);
        QVERIFY(field->hasDecimalChar);
        field->setAsString(QStringLiteral("12345"));
        QCOMPARE(field->realValue, 12345.0);
    }

    void itemChoosesTypeAndDecimals_data()
    {
        QTest::addColumn<QString>("lines");
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("decimals");

        // clang-format off
        QTest::newRow("text")                              << "Len=4\nDataType=Alpha"            << 3 << "";
        QTest::newRow("text of length 20")                 << "Len=20\nDataType=Alpha"           << 3 << "";
        QTest::newRow("text with decimals")                << "Len=4\nDataType=Alpha\nDecimal=2" << 3 << "";
        QTest::newRow("number of length 1")                << "Len=1"                            << 1 << "0";
        QTest::newRow("number of length 9")                << "Len=9"                            << 1 << "0";
        QTest::newRow("number of length 10")               << "Len=10"                           << 2 << "0";
        QTest::newRow("number of length 18")               << "Len=18"                           << 2 << "0";
        QTest::newRow("number of no length")               << "Len=0"                            << 1 << "0";
        QTest::newRow("number of a negative length")       << "Len=-1"                           << 1 << "0";
        QTest::newRow("number with a decimal character")   << "Len=9\nDecimalChar=Yes"           << 1 << "0";
        QTest::newRow("number with one decimal")           << "Len=3\nDecimal=1"                 << 2 << QString(QChar(1));
        QTest::newRow("long number with two decimals")     << "Len=12\nDecimal=2"                << 2 << QString(QChar(2));
        QTest::newRow("number with negative decimals")     << "Len=3\nDecimal=-1"                << 2 << QString(QChar(0xFFFF));
        QTest::newRow("decimals 48 are the character 0")   << "Len=60\nDecimal=48"               << 2 << "0";
        QTest::newRow("decimals 50 are the character 2")   << "Len=60\nDecimal=50"               << 2 << "2";
        // clang-format on
    }
    void itemChoosesTypeAndDecimals()
    {
        QFETCH(QString, lines);
        QFETCH(int, type);
        QFETCH(QString, decimals);
        const TCSProVariable *field = fieldOf(lines);
        QVERIFY(field);
        QCOMPARE(int(field->type), type);
        QCOMPARE(field->decimals, decimals);
    }

    void boundsWithoutValueSetAreZeroAndNines_data()
    {
        QTest::addColumn<QString>("lines");
        QTest::addColumn<QString>("minimum");
        QTest::addColumn<QString>("maximum");

        // clang-format off
        QTest::newRow("text")                                 << "Len=4\nDataType=Alpha"             << ""  << "";
        QTest::newRow("text with decimals")                   << "Len=4\nDataType=Alpha\nDecimal=2"  << ""  << "";
        QTest::newRow("length 1")                             << "Len=1"                             << "0" << "9";
        QTest::newRow("length 9")                             << "Len=9"                             << "0" << "999999999";
        QTest::newRow("length 10")                            << "Len=10"                            << "0" << "9999999999";
        QTest::newRow("no length")                            << "Len=0"                             << "0" << "";
        QTest::newRow("negative length")                      << "Len=-3"                            << "0" << "";
        QTest::newRow("decimal character, no decimals")       << "Len=4\nDecimalChar=Yes"            << "0" << "9999";
        QTest::newRow("two decimals")                         << "Len=5\nDecimal=2"                  << "0" << "999";
        QTest::newRow("two decimals and the character")       << "Len=5\nDecimal=2\nDecimalChar=Yes" << "0" << "9999";
        QTest::newRow("four decimals and the character")      << "Len=5\nDecimal=4\nDecimalChar=Yes" << "0" << "9999";
        QTest::newRow("nothing but decimals")                 << "Len=3\nDecimal=3"                  << "0" << "9";
        QTest::newRow("nothing but decimals, the character")  << "Len=3\nDecimal=3\nDecimalChar=Yes" << "0" << "99";
        QTest::newRow("more decimals than length")            << "Len=2\nDecimal=5"                  << "0" << "";
        QTest::newRow("length 1 and the character")           << "Len=1\nDecimal=1\nDecimalChar=Yes" << "0" << "";
        QTest::newRow("no length and the character")          << "Len=0\nDecimal=1\nDecimalChar=Yes" << "0" << "";
        QTest::newRow("negative decimals")                    << "Len=4\nDecimal=-1"                 << "0" << "9999";
        // clang-format on
    }
    void boundsWithoutValueSetAreZeroAndNines()
    {
        QFETCH(QString, lines);
        QFETCH(QString, minimum);
        QFETCH(QString, maximum);
        const TCSProVariable *field = fieldOf(lines);
        QVERIFY(field);
        QCOMPARE(field->minimum, minimum);
        QCOMPARE(field->maximum, maximum);
        QCOMPARE(field->valueLabels, QString());
    }

    void valueSetGivesBoundsAndLabels_data()
    {
        QTest::addColumn<QString>("lines");
        QTest::addColumn<QString>("values");
        QTest::addColumn<QString>("minimum");
        QTest::addColumn<QString>("maximum");
        QTest::addColumn<QString>("valueLabels");

        // clang-format off
        QTest::newRow("two ranges: four entries") << "Len=1" << "Value=7:9;High\nValue=1:5;Low"
            << "1" << "9" << "1 Low\t5 Low\t7 High\t9 High\t";
        QTest::newRow("one value") << "Len=2" << "Value=12;Twelve"
            << "12" << "12" << "12 Twelve\t";
        QTest::newRow("no label leaves the blank") << "Len=2" << "Value=12"
            << "12" << "12" << "12 \t";
        QTest::newRow("integer 05 reads 5") << "Len=2" << "Value=05;Five\nValue= 7 ;Seven"
            << "5" << "7" << "5 Five\t7 Seven\t";
        QTest::newRow("real 05 keeps its text") << "Len=10" << "Value=05;Five\nValue= 7 ;Seven"
            << "5" << "7" << "05 Five\t 7  Seven\t";
        QTest::newRow("text 05 keeps its text") << "Len=2\nDataType=Alpha" << "Value=05;Five\nValue= 7 ;Seven"
            << "0" << "" << " 7  Seven\t05 Five\t";
        QTest::newRow("text has the minimum 0") << "Len=1\nDataType=Alpha" << "Value=B;Bad\nValue=A;Good"
            << "0" << "" << "A Good\tB Bad\t";
        QTest::newRow("text with an empty set") << "Len=1\nDataType=Alpha" << ""
            << "0" << "" << "";
        QTest::newRow("negative codes") << "Len=2" << "Value=-5;Five below\nValue=-1;One below"
            << "-5" << "-1" << "-5 Five below\t-1 One below\t";
        QTest::newRow("six digits are kept") << "Len=6" << "Value=999999;Most"
            << "999999" << "999999" << "999999 Most\t";
        QTest::newRow("a million reads 1e+06") << "Len=7" << "Value=1000000;Million"
            << "1e+06" << "1e+06" << "1e+06 Million\t";
        QTest::newRow("seven digits lose one") << "Len=7" << "Value=1234567;Many"
            << "1.23457e+06" << "1.23457e+06" << "1.23457e+06 Many\t";
        QTest::newRow("seven digits of a real keep their text") << "Len=10" << "Value=1234567;Many"
            << "1.23457e+06" << "1.23457e+06" << "1234567 Many\t";
        QTest::newRow("bounds of a real with decimals are those of the set") << "Len=5\nDecimal=2" << "Value=3:8;Range"
            << "3" << "8" << "3 Range\t8 Range\t";
        QTest::newRow("empty set keeps the nines") << "Len=3" << ""
            << "0" << "999" << "";
        QTest::newRow("empty set keeps the nines of the whole length") << "Len=5\nDecimal=2" << ""
            << "0" << "99999" << "";
        QTest::newRow("empty set, with the character") << "Len=5\nDecimal=2\nDecimalChar=Yes" << ""
            << "0" << "99999" << "";
        QTest::newRow("lost set") << "Len=5\nDecimal=2" << "Value=1;One\nValue=3:8"
            << "0" << "999" << "";
        QTest::newRow("repeated code") << "Len=1" << "Value=1;One\nValue=1;Again"
            << "1" << "1" << "1 One\t1 Again\t";
        QTest::newRow("a mark stays out") << "Len=2" << "Value=1:5;Some\nValue=99;Not stated\nName=MISSING ,Special"
            << "1" << "5" << "1 Some\t5 Some\t";
        QTest::newRow("nothing but a mark") << "Len=2" << "Value=7;Not stated\nName=MISSING ,Special"
            << "0" << "99" << "";
        // clang-format on
    }
    void valueSetGivesBoundsAndLabels()
    {
        QFETCH(QString, lines);
        QFETCH(QString, values);
        QFETCH(QString, minimum);
        QFETCH(QString, maximum);
        QFETCH(QString, valueLabels);
        const TCSProVariable *field = fieldOf(lines, values);
        QVERIFY(field);
        QCOMPARE(field->minimum, minimum);
        QCOMPARE(field->maximum, maximum);
        QCOMPARE(field->valueLabels, valueLabels);
    }

    void missingMarkIsFoundAgainOnTheField()
    {
        TCSProVariable *field = fieldOf(QStringLiteral("Len=2"),
                                        QStringLiteral("Value=1:5;Some\nValue=98;Not asked\nName=NOTAPPL ,Special\n"
                                                       "Value=99;Not stated\nName=MISSING ,Special"));
        QVERIFY(field);
        field->setAsString(QStringLiteral("99"));
        QVERIFY(field->isMissing());
        QVERIFY(!field->isNotApplicable());
        field->setAsString(QStringLiteral("98"));
        QVERIFY(field->isNotApplicable());
        field->setAsString(QStringLiteral("5"));
        QVERIFY(!field->isMissing());
        QCOMPARE(field->intValue, 5.0);
    }

    void subitemIsAFieldBesideItsParent()
    {
        OpenDictionary open(item(QStringLiteral("DATE"), QStringLiteral("Start=4\nLen=8"))
                            + item(QStringLiteral("YEAR"), QStringLiteral("Start=4\nLen=4\nItemType=SubItem"))
                            + item(QStringLiteral("MONTH"), QStringLiteral("Start=8\nLen=2\nItemType=SubItem")));
        QCOMPARE(fieldNames(open),
                 (QStringList{ QStringLiteral("DATE"), QStringLiteral("YEAR"), QStringLiteral("MONTH") }));
        QCOMPARE(open.field(0)->length, 8);
        QCOMPARE(open.field(1)->start, 4);
        QCOMPARE(open.field(2)->start, 8);
        QCOMPARE(open.field(2)->maximum, QStringLiteral("99"));
    }

    void occurrencesAreFieldsWithTheirOwnPlaces()
    {
        OpenDictionary open(item(QStringLiteral("ID"), QStringLiteral("Len=1"))
                            + item(QStringLiteral("X"), QStringLiteral("Start=10\nLen=2\nOccurrences=3"))
                            + valueSet(QStringLiteral("Value=0:50;Sacks\nValue=99;Not stated\nName=MISSING ,Special")));
        QCOMPARE(open.fieldCount(), 4);
        for (int i = 1; i <= 3; ++i) {
            const TCSProVariable *field = open.field(i);
            QCOMPARE(field->name, QStringLiteral("X_") + QChar(i));
            QCOMPARE(field->start, 8 + 2 * i);
            QCOMPARE(field->minimum, QStringLiteral("0"));
            QCOMPARE(field->maximum, QStringLiteral("50"));
            QCOMPARE(field->valueLabels, QStringLiteral("0 Sacks\t50 Sacks\t"));
            QCOMPARE(field->missingValue, i == 3 ? QStringLiteral("99") : QString());
        }
    }

    void twoItemsOfOneNameAreTwoFieldsAndTheLastIsFound()
    {
        OpenDictionary open(item(QStringLiteral("X"), QStringLiteral("Start=1"))
                            + item(QStringLiteral("X"), QStringLiteral("Start=9")));
        QCOMPARE(open.fieldCount(), 2);
        QCOMPARE(open.importer.fieldByName(QStringLiteral("X"))->start, 9);
    }

    void fieldsOfIdentificationItemsAreInTheGroupCommon()
    {
        OpenDictionary open(sample());
        QCOMPARE(open.field(0)->getGroup(), QStringLiteral("Common"));
        QCOMPARE(open.field(1)->getGroup(), QStringLiteral("HOUSE"));
        QCOMPARE(open.field(2)->getGroup(), QStringLiteral("PERSON"));
        const QStringList groups = groupsOf(open.base());
        QVERIFY(groups.filter(QStringLiteral("Common"), Qt::CaseInsensitive).isEmpty());
        QVERIFY(groups.filter(QStringLiteral("_COMMON_")).isEmpty());
    }

    void withoutRecordTypesEveryGroupIsEmptyAndRecordsAreListedAllTheSame()
    {
        QString text = sample();
        text.replace(QStringLiteral("RecordTypeLen=2"), QStringLiteral("RecordTypeLen=0"));
        OpenDictionary open(text);
        QVERIFY(!open.base().isMultiple());
        QCOMPARE(open.fieldCount(), 3);
        for (int i = 0; i < 3; ++i)
            QCOMPARE(open.field(i)->getGroup(), QString());
        QCOMPARE(groupsOf(open.base()), (QStringList{ QStringLiteral("HOUSE=H"), QStringLiteral("PERSON=P") }));
    }

    // helpers of its own

    void codesOfTheItemAreTakenOver()
    {
        OpenDictionary open(sample());
        TCSProVariable *field = open.field(1);
        field->item->notApplicable = QStringLiteral("8");
        field->item->missingValue = QStringLiteral("9");
        QCOMPARE(field->notApplicable, QString());

        TestAccess::getNotApplicable(open.importer, field);
        QCOMPARE(field->notApplicable, QStringLiteral("8"));
        QCOMPARE(field->missingValue, QString());
        TestAccess::getVarMissingValue(open.importer, field);
        QCOMPARE(field->missingValue, QStringLiteral("9"));

        field->item->notApplicable.clear();
        field->item->missingValue.clear();
        TestAccess::getNotApplicable(open.importer, field);
        TestAccess::getVarMissingValue(open.importer, field);
        QCOMPARE(field->notApplicable, QString());
        QCOMPARE(field->missingValue, QString());
    }

    void foreignFieldKeepsItsCodes()
    {
        const TCSProDataImport importer;
        ForeignField field;
        field.notApplicable = QStringLiteral("8");
        field.missingValue = QStringLiteral("9");
        TestAccess::getNotApplicable(importer, &field);
        TestAccess::getVarMissingValue(importer, &field);
        TestAccess::getNotApplicable(importer, nullptr);
        TestAccess::getVarMissingValue(importer, nullptr);
        QCOMPARE(field.notApplicable, QStringLiteral("8"));
        QCOMPARE(field.missingValue, QStringLiteral("9"));
    }

    void characterIsRepeatedCountTimes_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("expected");

        // clang-format off
        QTest::newRow("three")    << 3  << "xxx";
        QTest::newRow("one")      << 1  << "x";
        QTest::newRow("none")     << 0  << "";
        QTest::newRow("negative") << -2 << "";
        // clang-format on
    }
    void characterIsRepeatedCountTimes()
    {
        QFETCH(int, count);
        QFETCH(QString, expected);
        QCOMPARE(TestAccess::stringOfChar(TCSProDataImport(), 'x', count), expected);
    }

    // from the file to the provider

    void providerTakesOverTheWholeLayout()
    {
        const DictionaryFile file(
            sample() + item(QStringLiteral("RENT"), QStringLiteral("Label=Rent\nStart=11\nLen=7\nDecimal=2"))
            + item(QStringLiteral("SEX"), QStringLiteral("Label=Sex\nStart=18\nLen=1\nDataType=Alpha"))
            + valueSet(QStringLiteral("Value=M;Male\nValue=F;Female\nValue=X;Not asked\n"
                                      "Name=NOTAPPL ,Special\nValue=U;Not stated\n"
                                      "Name=MISSING ,Special")));
        TCSProDataImport importer(file.path());
        const std::unique_ptr<QStringList> names(static_cast<TDataImport &>(importer).selectLayoutSource());
        QCOMPARE(names->size(), 5);

        TVpDataProvider provider;
        QVERIFY(provider.genericGetFieldsFrom(&importer));
        QCOMPARE(provider.getDataProviderId(), QStringLiteral("CSPRO_") + file.path());
        QCOMPARE(provider.getDataProviderType(), QStringLiteral("CSPRO"));
        QCOMPARE(provider.getLayoutFileName(), file.path());
        QCOMPARE(provider.getDataFileName(), QString());
        QCOMPARE(provider.getRecordTypeStart(), 3);
        QCOMPARE(provider.getRecordTypeSize(), 2);
        QCOMPARE(provider.getImportData(), static_cast<TDataImport *>(&importer));
        QCOMPARE(provider.getFields()->size(), 5);
        for (const TVpSourceField *field : *provider.getFields()) {
            QCOMPARE(field->DataProviderType, QStringLiteral("CSPRO"));
            QCOMPARE(field->dataProviderTypeIndex, dpCSPro);
            QCOMPARE(field->providerId, QStringLiteral("CSPRO_") + file.path());
        }

        const TVpSourceField *rooms = provider.getField(QStringLiteral("ROOMS"));
        QVERIFY(rooms);
        QCOMPARE(rooms->FieldType, QStringLiteral("INTEGER"));
        QCOMPARE(rooms->label, QStringLiteral("Rooms"));
        QCOMPARE(rooms->start, 8);
        QCOMPARE(rooms->length, 2);
        QCOMPARE(rooms->minimum, QStringLiteral("0"));
        QCOMPARE(rooms->maximum, QStringLiteral("99"));
        QCOMPARE(rooms->group, QStringLiteral("HOUSE"));

        // The character with code 2 is no number.
        const TVpSourceField *rent = provider.getField(QStringLiteral("RENT"));
        QVERIFY(rent);
        QCOMPARE(rent->FieldType, QStringLiteral("REAL"));
        QCOMPARE(rent->decimals, 0);
        QCOMPARE(rent->maximum, QStringLiteral("99999"));

        const TVpSourceField *sex = provider.getField(QStringLiteral("SEX"));
        QVERIFY(sex);
        QCOMPARE(sex->FieldType, QStringLiteral("STRING"));
        QCOMPARE(sex->valueLabels, QStringLiteral("F Female\tM Male\t"));
        QCOMPARE(sex->notApplicable, QStringLiteral("X"));
        QCOMPARE(sex->missingValue, QStringLiteral("U"));
        QCOMPARE(sex->minimum, QStringLiteral("0"));
        QCOMPARE(sex->maximum, QString());
    }

    void sourceFieldOfARealItemShowsNoDecimals_data()
    {
        QTest::addColumn<QString>("lines");
        QTest::addColumn<int>("expected");

        // clang-format off
        QTest::newRow("integer")                            << "Len=5"              << 0;
        QTest::newRow("long number")                        << "Len=12"             << 0;
        QTest::newRow("one decimal")                        << "Len=5\nDecimal=1"   << 0;
        QTest::newRow("two decimals")                       << "Len=5\nDecimal=2"   << 0;
        QTest::newRow("nine decimals")                      << "Len=12\nDecimal=9"  << 0;
        QTest::newRow("negative decimals")                  << "Len=5\nDecimal=-2"  << 0;
        QTest::newRow("50 decimals, the character 2")       << "Len=60\nDecimal=50" << 2;
        // clang-format on
    }
    void sourceFieldOfARealItemShowsNoDecimals()
    {
        QFETCH(QString, lines);
        QFETCH(int, expected);
        OpenDictionary open(item(QStringLiteral("ITEM"), lines));
        TVpDataProvider provider;
        provider.genericGetFieldsFrom(&open.importer);
        QCOMPARE(provider.getField(QStringLiteral("ITEM"))->decimals, expected);
    }

    void fieldOfTheCommonRecordAnswersToCommonInAnyCase()
    {
        OpenDictionary open(sample());
        TVpDataProvider provider;
        provider.genericGetFieldsFrom(&open.importer);
        const QString area = QStringLiteral("AREA");
        QVERIFY(provider.getFieldFromRecord(area, QStringLiteral("COMMON")));
        QVERIFY(provider.getFieldFromRecord(area, QStringLiteral("Common")));
        QCOMPARE(provider.getFieldFromRecord(area, QStringLiteral("COMMON"))->group, QStringLiteral("Common"));
        QVERIFY(!provider.getFieldFromRecord(area, QStringLiteral("_COMMON_")));
        QVERIFY(!provider.getFieldFromRecord(area, QStringLiteral("HOUSE")));
        QVERIFY(provider.getFieldFromRecord(QStringLiteral("AGE"), QStringLiteral("person")));
        QVERIFY(!provider.getFieldFromRecord(QStringLiteral("AGE"), QStringLiteral("COMMON")));
    }

    void fieldWithoutGroupAnswersToAnyRecord()
    {
        OpenDictionary open(QStringLiteral("[Dictionary]\nRecordTypeLen=0\n") + item(QStringLiteral("ID")));
        TVpDataProvider provider;
        provider.genericGetFieldsFrom(&open.importer);
        QVERIFY(provider.getFieldFromRecord(QStringLiteral("ID"), QStringLiteral("COMMON")));
        QVERIFY(provider.getFieldFromRecord(QStringLiteral("ID"), QStringLiteral("anything")));
    }

    void providerOfAnUnopenedImporterHasNoFields()
    {
        const DictionaryFile file(sample());
        TCSProDataImport importer(file.path());
        TVpDataProvider provider;
        QVERIFY(provider.genericGetFieldsFrom(&importer));
        QVERIFY(provider.getFields()->isEmpty());
        QCOMPARE(provider.getRecordTypeSize(), 0);
        QCOMPARE(provider.getLayoutFileName(), file.path());
    }
};

QTEST_GUILESS_MAIN(CSProDataImportTest)
#include "CSProDataImportTest.moc"
