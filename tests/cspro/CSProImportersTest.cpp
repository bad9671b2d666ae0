#include "cspro/CSProDataImport.h"
#include "cspro/CSProJsonDataImport.h"
#include "cspro/CSProJson_p.h"
#include "cspro/CSPro_p.h"
#include "cspro/ValueSet_p.h"
#include "import/DataProvider.h"
#include "import/SourceField.h"
#include "support/Callable.h"
#include "support/DebugCapture.h"
#include "support/DictionaryFile.h"
#include "support/Thrown.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <memory>

struct TestAccess {
    template <typename Importer> static QStringList *groupList(const Importer &importer) { return importer.groupList; }
    template <typename Importer> static auto *dictionary(const Importer &importer) { return importer.dictionary; }
    template <typename Importer> static void giveDictionary(Importer &importer) { importer.renewDictionary(); }
    template <typename Importer> static bool layoutPending(const Importer &importer) { return importer.layoutPending; }
    template <typename Importer> static int recordTypeStart(const Importer &importer)
    {
        return importer.recordTypeStart;
    }
    template <typename Importer> static int recordTypeLen(const Importer &importer) { return importer.recordTypeLen; }
    template <typename Importer> static QString &currentRecordType(Importer &importer)
    {
        return importer.currentRecordType;
    }
    template <typename Importer> static double stateValue(const Importer &importer) { return importer.stateValue; }
    template <typename Importer> static QList<TGenericField *> *fields(const Importer &importer)
    {
        return importer.fields;
    }
    template <typename Importer> static void openRead(Importer &importer, const QString &fileName)
    {
        importer.openRead(fileName);
    }
    template <typename Importer> static void copyDataFromDictionary(Importer &importer)
    {
        importer.copyDataFromDictionary();
    }
    template <typename Importer> static int currentIndex(const Importer &importer)
    {
        return importer.getRecordTypeIndex();
    }
    template <typename Importer> static void getNotApplicable(const Importer &importer, TGenericField *field)
    {
        importer.getNotApplicable(field);
    }
    template <typename Importer> static void getVarMissingValue(const Importer &importer, TGenericField *field)
    {
        importer.getVarMissingValue(field);
    }
    template <typename Importer> static QString stringOfChar(const Importer &importer, char character, int count)
    {
        return importer.StringOfChar(character, count);
    }
    template <typename Variable> static bool optionalAtStart(const Variable &variable)
    {
        return variable.optionalAtStart;
    }

    // The values of the members that nothing reads: numbers, texts and pointers in one line.
    template <typename Importer> static QString carried(const Importer &importer)
    {
        return QStringLiteral("%1|%2|%3|%4|%5|%6")
            .arg(importer.number1)
            .arg(importer.text1)
            .arg(importer.openState)
            .arg(importer.pointer1 != nullptr)
            .arg(importer.pointer2 != nullptr)
            .arg(importer.text2);
    }
    template <typename Importer> static void carry(Importer &importer)
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

// Accesses the members that a subclass can access.
template <typename Importer> class Heir : public Importer
{
public:
    explicit Heir(const QString &path)
        : Importer(path)
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
    QString getGroupName(int index) override { return alias.isNull() ? Importer::getGroupName(index) : alias; }
};

// Names its groups itself, whatever the index.
template <typename Importer> class NamingHeir : public Importer
{
public:
    explicit NamingHeir(const QString &path)
        : Importer(path)
    {
    }

    QString name;

protected:
    QString getGroupName(int /*index*/) override { return name; }
};

// The classes of one form.
struct TextForm {
    using Importer = TCSProDataImport;
    using Variable = TCSProVariable;
    using Dictionary = TCSPro;
    using OtherVariable = TCSProJsonVariable;
    static constexpr bool isJson = false;
};
struct JsonForm {
    using Importer = TCSProJsonDataImport;
    using Variable = TCSProJsonVariable;
    using Dictionary = TCSProJson;
    using OtherVariable = TCSProVariable;
    static constexpr bool isJson = true;
};

// Runs the work with the form that a row names.
template <typename Work> void with(const QString &importer, Work work)
{
    if (importer == QLatin1String("json"))
        work(JsonForm());
    else
        work(TextForm());
}

struct Item {
    QString name;
    QString label = QString();
    int start = 1;
    int length = 1;
    bool isAlpha = false;
    QVector<QPair<QString, QString>> values = {}; // codes and labels, in the order of their codes
    bool hasValues = false;                       // the list may be empty nevertheless
};
struct Record {
    QString name;
    QString type;
    QVector<Item> items = {};
};

// A layout that both forms can express.
struct Dictionary {
    int recordTypeStart = 1;
    int recordTypeLen = 1;
    QVector<Item> ids;
    QVector<Record> records;

    QString as(bool isJson) const { return isJson ? QString::fromUtf8(QJsonDocument(asJson()).toJson()) : asText(); }

private:
    static QString asText(const Item &item)
    {
        QString text = QStringLiteral("[Item]\nName=%1\nLabel=%2\nStart=%3\nLen=%4\nDataType=%5\n")
                           .arg(item.name, item.label)
                           .arg(item.start)
                           .arg(item.length)
                           .arg(item.isAlpha ? "Alpha" : "Numeric");
        if (item.hasValues || !item.values.isEmpty())
            text += "[ValueSet]\nName=SET\n";
        for (const auto &value : item.values)
            text += "Value=" + value.first + ';' + value.second + '\n';
        return text;
    }
    QString asText() const
    {
        QString text = QStringLiteral("[Dictionary]\nRecordTypeStart=%1\nRecordTypeLen=%2\n[IdItems]\n")
                           .arg(recordTypeStart)
                           .arg(recordTypeLen);
        for (const Item &item : ids)
            text += asText(item);
        for (const Record &record : records) {
            text += "[Record]\nName=" + record.name + "\nRecordTypeValue='" + record.type + "'\n";
            for (const Item &item : record.items)
                text += asText(item);
        }
        return text;
    }
    static QJsonArray label(const QString &text) { return { QJsonObject{ { "text", text } } }; }
    static QJsonArray asJson(const QVector<Item> &items)
    {
        QJsonArray array;
        for (const Item &item : items) {
            QJsonObject object = { { "name", item.name },
                                   { "labels", label(item.label) },
                                   { "contentType", item.isAlpha ? "alpha" : "numeric" },
                                   { "start", item.start },
                                   { "length", item.length } };
            if (item.hasValues || !item.values.isEmpty()) {
                QJsonArray values;
                for (const auto &value : item.values)
                    values.append(QJsonObject{ { "labels", label(value.second) },
                                               { "pairs", QJsonArray{ QJsonObject{ { "value", value.first } } } } });
                object.insert("valueSets", QJsonArray{ QJsonObject{ { "name", "SET" }, { "values", values } } });
            }
            array.append(object);
        }
        return array;
    }
    QJsonObject asJson() const
    {
        QJsonArray list;
        for (const Record &record : records)
            list.append(QJsonObject{
                { "name", record.name }, { "recordType", record.type }, { "items", asJson(record.items) } });
        const QJsonObject level = { { "ids", QJsonObject{ { "items", asJson(ids) } } }, { "records", list } };
        return { { "recordType", QJsonObject{ { "start", recordTypeStart }, { "length", recordTypeLen } } },
                 { "levels", QJsonArray{ level } } };
    }
};

Dictionary sample()
{
    return { 3,
             2,
             { { "AREA", "Area", 5, 3 } },
             { { "HOUSE", "H", { { "ROOMS", "Rooms", 8, 2 } } }, { "PERSON", "P", { { "AGE", "Age", 8, 3 } } } } };
}

Dictionary recordsOnly(const QVector<Record> &records)
{
    return { 1, 1, {}, records };
}

// Names and types of records, "HOUSE=H PERSON=P".
Dictionary recordsOf(const QString &entries)
{
    QVector<Record> records;
    for (const QString &entry : entries.split(' '))
        records.append({ entry.section('=', 0, 0), entry.section('=', 1) });
    return recordsOnly(records);
}

// An importer that has opened a dictionary.
template <typename Form> struct Open {
    explicit Open(const Dictionary &dictionary)
        : file(dictionary.as(Form::isJson))
        , importer(file.path())
    {
        base().openFile();
    }

    TDataImport &base() { return importer; }
    int fieldCount() const { return TestAccess::fields(importer)->size(); }
    typename Form::Variable *field(int index) const
    {
        return dynamic_cast<typename Form::Variable *>(TestAccess::fields(importer)->value(index));
    }
    QStringList fieldNames() const
    {
        QStringList names;
        for (const TGenericField *each : *TestAccess::fields(importer))
            names.append(each->name);
        return names;
    }

    DictionaryFile file;
    typename Form::Importer importer;
};

// An importer that has opened an unchanged JSON text.
struct OpenJson {
    explicit OpenJson(const QString &json)
        : file(json)
        , importer(file.path())
    {
        base().openFile();
    }

    TDataImport &base() { return importer; }
    TGenericField *field(int index) const { return TestAccess::fields(importer)->value(index); }

    DictionaryFile file;
    TCSProJsonDataImport importer;
};

// A dictionary of one record with these items.
QString withItems(const QString &items, const QString &keys = QString())
{
    return "{" + keys + "\"levels\":[{\"records\":[{\"name\":\"R\",\"items\":[" + items + "]}]}]}";
}

QString withValues(const QString &keys, const QString &values)
{
    return withItems("{\"name\":\"A\"," + keys + ",\"valueSets\":[{\"values\":[" + values + "]}]}");
}

QStringList groupsOf(TDataImport &importer)
{
    QStringList groups;
    for (int i = 0; i < importer.getGroupCount(); ++i)
        groups.append(importer.getGroupName(i));
    return groups;
}

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

void addTwins()
{
    QTest::addColumn<QString>("importer");
    QTest::newRow("text") << "text";
    QTest::newRow("json") << "json";
}

} // namespace

// The rules of both importers have a row for each. The rules of only the JSON form have their own tests here, those of
// only the text form in CSProDataImportTest.
class CSProImportersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // construction

    void pathConstructorReadsNothing_data() { addTwins(); }
    void pathConstructorReadsNothing()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            using Form = decltype(form);
            const DictionaryFile file(sample().as(Form::isJson));
            typename Form::Importer subject(file.path());
            QCOMPARE(subject.getSourceName(), file.path());
            QCOMPARE(subject.getDataSourceName(), QString());
            QVERIFY(TestAccess::fields(subject)->isEmpty());
            QVERIFY(!TestAccess::dictionary(subject));
            QVERIFY(TestAccess::layoutPending(subject));
            QVERIFY(TestAccess::groupList(subject));
            QCOMPARE(subject.getGroupCount(), 0);
            QCOMPARE(TestAccess::recordTypeStart(subject), 0);
            QCOMPARE(TestAccess::recordTypeLen(subject), 0);
            QVERIFY(TestAccess::currentRecordType(subject).isNull());
            QCOMPARE(TestAccess::carried(subject), QString("0||0|0|0|"));
        });
    }

    void defaultConstructorGivesNothingAndLogsNothing_data() { addTwins(); }
    void defaultConstructorGivesNothingAndLogsNothing()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            using Form = decltype(form);
            const DebugCapture log;
            typename Form::Importer subject;
            QCOMPARE(log.taken(), QStringList());
            QCOMPARE(subject.getSourceName(), QString());
            QVERIFY(!TestAccess::groupList(subject));
            QVERIFY(!TestAccess::dictionary(subject));
            QCOMPARE(subject.getGroupCount(), 0);
            QVERIFY(TestAccess::fields(subject)->isEmpty());
            QCOMPARE(TestAccess::carried(subject), QString("0||0|0|0|"));
        });
    }

    void moveConstructorTakesNothing_data() { addTwins(); }
    void moveConstructorTakesNothing()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            using Form = decltype(form);
            Open<Form> open(sample());
            TestAccess::carry(open.importer);
            TestAccess::currentRecordType(open.importer) = QStringLiteral("H");
            const DebugCapture log;
            typename Form::Importer moved(std::move(open.importer));
            QCOMPARE(log.taken(), QStringList());
            QCOMPARE(moved.getSourceName(), QString());
            QVERIFY(!TestAccess::groupList(moved));
            QVERIFY(!TestAccess::dictionary(moved));
            QVERIFY(TestAccess::fields(moved)->isEmpty());
            QVERIFY(TestAccess::currentRecordType(moved).isEmpty());
            QCOMPARE(TestAccess::recordTypeStart(moved), 0);
            QCOMPARE(TestAccess::recordTypeLen(moved), 0);
            QCOMPARE(TestAccess::carried(moved), QString("0||0|0|0|"));
            QCOMPARE(open.importer.getSourceName(), open.file.path());
            QCOMPARE(open.importer.getGroupCount(), 2);
            QCOMPARE(open.fieldCount(), 3);
        });
    }

    void pathIsKeptUnchanged_data() { addTwins(); }
    void pathIsKeptUnchanged()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            const typename decltype(form)::Importer subject(QStringLiteral("no/such/../file.dcf"));
            QCOMPARE(subject.getSourceName(), QString("no/such/../file.dcf"));
        });
    }

    void defaultImporterOpensOnceItHasASource_data() { addTwins(); }
    void defaultImporterOpensOnceItHasASource()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            using Form = decltype(form);
            const DictionaryFile file(sample().as(Form::isJson));
            typename Form::Importer subject;
            subject.setSourceName(file.path());
            QVERIFY(static_cast<TDataImport &>(subject).openFile());
            QCOMPARE(groupsOf(subject), QStringList({ "HOUSE=H", "PERSON=P" }));
            QCOMPARE(TestAccess::fields(subject)->size(), 3);
        });
    }

    void copiesShareGroupsDictionaryAndFields_data()
    {
        QTest::addColumn<QString>("importer");
        QTest::addColumn<bool>("assigned");
        QTest::newRow("text: copy constructor") << "text" << false;
        QTest::newRow("text: assignment") << "text" << true;
        QTest::newRow("json: copy constructor") << "json" << false;
        QTest::newRow("json: assignment") << "json" << true;
    }
    void copiesShareGroupsDictionaryAndFields()
    {
        QFETCH(QString, importer);
        QFETCH(bool, assigned);
        with(importer, [&](auto form) {
            using Form = decltype(form);
            using Importer = typename Form::Importer;
            Open<Form> open(sample());
            TestAccess::carry(open.importer);
            TestAccess::currentRecordType(open.importer) = QStringLiteral("H");
            std::unique_ptr<Importer> copy;
            if (assigned) {
                copy = std::make_unique<Importer>();
                *copy = open.importer;
            } else {
                copy = std::make_unique<Importer>(open.importer);
            }
            QCOMPARE(TestAccess::groupList(*copy), TestAccess::groupList(open.importer));
            QCOMPARE(TestAccess::dictionary(*copy), TestAccess::dictionary(open.importer));
            QCOMPARE(TestAccess::fields(*copy), TestAccess::fields(open.importer));
            QCOMPARE(copy->getSourceName(), open.file.path());
            QCOMPARE(TestAccess::layoutPending(*copy), false);
            QCOMPARE(TestAccess::recordTypeStart(*copy), 3);
            QCOMPARE(TestAccess::recordTypeLen(*copy), 2);
            QCOMPARE(TestAccess::currentRecordType(*copy), QString("H"));
            QCOMPARE(TestAccess::carried(*copy), QString("4|a|5|1|1|b"));

            open.file.write(recordsOf("ONLY=O").as(Form::isJson));
            open.base().openFile();
            QCOMPARE(groupsOf(*copy), QStringList("ONLY=O"));
            QVERIFY(TestAccess::fields(*copy)->isEmpty());
        });
    }

    void destroyedImporterLeavesDictionaryGroupsAndFields_data() { addTwins(); }
    void destroyedImporterLeavesDictionaryGroupsAndFields()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            using Form = decltype(form);
            typename Form::Dictionary *dictionary = nullptr;
            QStringList *groups = nullptr;
            typename Form::Variable *field = nullptr;
            {
                Open<Form> open(sample());
                dictionary = TestAccess::dictionary(open.importer);
                groups = TestAccess::groupList(open.importer);
                field = open.field(1);
            }
            QCOMPARE(dictionary->getItemsCount(), 3);
            QCOMPARE(groups->size(), 2);
            QCOMPARE(field->name, QString("ROOMS"));
            QCOMPARE(field->item->name, QString("ROOMS"));
            QVERIFY(!field->isMissing());
        });
    }

    // access

    void onlyGroupCountAndDestructorArePublicInTheClass_data() { addTwins(); }
    void onlyGroupCountAndDestructorArePublicInTheClass()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            using Class = typename decltype(form)::Importer;
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
        });
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

    void operationsOfItsOwnAreProtectedAndOneIsPrivate_data() { addTwins(); }
    void operationsOfItsOwnAreProtectedAndOneIsPrivate()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            using Class = typename decltype(form)::Importer;
            QVERIFY(!CanOpenRead<Class>::value);
            QVERIFY(!CanCopyData<Class>::value);
            QVERIFY(!CanAskCurrentIndex<Class>::value);
            QVERIFY(!CanTakeNotApplicable<Class>::value);
            QVERIFY(!CanTakeMissing<Class>::value);
            QVERIFY(!CanRepeat<Class>::value);

            using Child = Heir<Class>;
            Child *heir = nullptr;
            QVERIFY(decltype(Child::canOpenRead(heir))::value);
            QVERIFY(decltype(Child::canCopyData(heir))::value);
            QVERIFY(decltype(Child::canAskCurrentIndex(heir))::value);
            QVERIFY(decltype(Child::canTakeNotApplicable(heir))::value);
            QVERIFY(decltype(Child::canTakeMissing(heir))::value);
            QVERIFY(!decltype(Child::canRepeat(heir))::value);
        });
    }

    void twinIsNoSubclassOfTheOther()
    {
        QVERIFY((std::is_base_of<TDataImport, TCSProJsonDataImport>::value));
        QVERIFY(!(std::is_base_of<TCSProDataImport, TCSProJsonDataImport>::value));
        QVERIFY(!(std::is_base_of<TCSProJsonDataImport, TCSProDataImport>::value));
        QVERIFY((std::is_base_of<TGenericField, TCSProJsonVariable>::value));
        QVERIFY(!(std::is_base_of<TCSProVariable, TCSProJsonVariable>::value));
        QVERIFY(!(std::is_base_of<TCSProJsonVariable, TCSProVariable>::value));
    }

    // answers

    void openedImporterReturnsItsValuesThroughTheBase_data() { addTwins(); }
    void openedImporterReturnsItsValuesThroughTheBase()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            Open<decltype(form)> open(sample());
            TDataImport &base = open.base();
            QVERIFY(base.isMultiple());
            QCOMPARE(base.getGroupCount(), 2);
            QCOMPARE(base.getGroupName(0), QString("HOUSE=H"));
            QCOMPARE(base.getGroupName(1), QString("PERSON=P"));
            QCOMPARE(base.getGroupValue(0), QString("HOUSE=H"));
            QCOMPARE(base.getGroupValue(1), QString("PERSON=P"));
            QCOMPARE(base.getRecordTypeIndex("H"), 0);
            QCOMPARE(base.getRecordTypeIndex("P"), 1);
            QCOMPARE(base.getRecordTypeStart(), 3);
            QCOMPARE(base.getRecordTypeSize(), 2);
            QCOMPARE(base.getRecordTypeCurrent(), QString());
        });
    }

    void unopenedImporterReturnsNothing_data() { addTwins(); }
    void unopenedImporterReturnsNothing()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            using Form = decltype(form);
            const DictionaryFile file(sample().as(Form::isJson));
            typename Form::Importer subject(file.path());
            TDataImport &base = subject;
            QVERIFY(!base.isMultiple());
            QCOMPARE(base.getGroupCount(), 0);
            QCOMPARE(base.getRecordTypeStart(), 0);
            QCOMPARE(base.getRecordTypeSize(), 0);
            QCOMPARE(base.getRecordTypeIndex("H"), -1);
            QCOMPARE(TestAccess::currentIndex(subject), -1);
        });
    }

    void listFormsOfTheBaseAreInherited_data() { addTwins(); }
    void listFormsOfTheBaseAreInherited()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            Open<decltype(form)> open(sample());
            QList<TVpSourceField *> target;
            QStringList names;
            open.base().getDictionary(&target, &names);
            QVERIFY(target.isEmpty() && names.isEmpty());
            const std::unique_ptr<QStringList> first(open.base().getLayoutSource());
            const std::unique_ptr<QStringList> second(open.base().getLayoutSource());
            QVERIFY(first->isEmpty());
            QVERIFY(first != second);
            QVERIFY(first.get() != TestAccess::groupList(open.importer));
        });
    }

    void selectLayoutSourceOpensAndNamesTheFields_data() { addTwins(); }
    void selectLayoutSourceOpensAndNamesTheFields()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            using Form = decltype(form);
            const DictionaryFile file(sample().as(Form::isJson));
            typename Form::Importer subject(file.path());
            const std::unique_ptr<QStringList> names(static_cast<TDataImport &>(subject).selectLayoutSource());
            QCOMPARE(*names, QStringList({ "AREA", "ROOMS", "AGE" }));
            QCOMPARE(TestAccess::fields(subject)->size(), 3);
        });
    }

    // groups

    void groupIsNameEqualsTypeInFileOrderWithoutTheCommonRecord_data() { addTwins(); }
    void groupIsNameEqualsTypeInFileOrderWithoutTheCommonRecord()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            Dictionary dictionary = recordsOf("SECOND=2 FIRST=1 SECOND=2 =");
            dictionary.ids = { { "ID" } };
            Open<decltype(form)> open(dictionary);
            QCOMPARE(open.fieldNames(), QStringList("ID"));
            QCOMPARE(groupsOf(open.base()), QStringList({ "SECOND=2", "FIRST=1", "SECOND=2", "=" }));
        });
    }

    void groupValueIsTheFirstEntryThatContainsTheName_data()
    {
        QTest::addColumn<QString>("importer");
        QTest::addColumn<QString>("records");
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("expected");

        for (const char *importer : { "text", "json" }) {
            // clang-format off
            QTest::addRow("%s: an earlier one is longer at the beginning", importer) << importer << "OLD_HOUSE=1 HOUSE=1"  << 1 << "OLD_HOUSE=1";
            QTest::addRow("%s: an earlier one is longer after", importer)   << importer << "HOUSE=12 HOUSE=1"     << 1 << "HOUSE=12";
            QTest::addRow("%s: an earlier one is longer both ways", importer) << importer << "OLD_HOUSE=12 HOUSE=1" << 1 << "OLD_HOUSE=12";
            QTest::addRow("%s: the longer one comes later", importer)       << importer << "HOUSE=1 OLD_HOUSE=12" << 0 << "HOUSE=1";
            QTest::addRow("%s: the longer one is itself", importer)          << importer << "HOUSE=1 OLD_HOUSE=12" << 1 << "OLD_HOUSE=12";
            QTest::addRow("%s: the first of several longer ones", importer)  << importer << "C=AB B=A AB=AC B=AD B=A" << 3 << "B=AD";
            QTest::addRow("%s: of several the first counts", importer)       << importer << "XA=12 YA=13 A=1"      << 2 << "XA=12";
            QTest::addRow("%s: case counts", importer)                       << importer << "old_house=1 HOUSE=1"  << 1 << "HOUSE=1";
            QTest::addRow("%s: before the list", importer)                   << importer << "A=1 B=2"              << -1 << "";
            QTest::addRow("%s: after the list", importer)                   << importer << "A=1 B=2"              << 2 << "";
            // clang-format on
        }
    }
    void groupValueIsTheFirstEntryThatContainsTheName()
    {
        QFETCH(QString, importer);
        QFETCH(QString, records);
        QFETCH(int, index);
        QFETCH(QString, expected);
        with(importer, [&](auto form) {
            Open<decltype(form)> open(recordsOf(records));
            QCOMPARE(open.base().getGroupName(index), records.split(' ').value(index));
            QCOMPARE(open.base().getGroupName(index).isNull(), index < 0 || index >= open.base().getGroupCount());
            QCOMPARE(open.base().getGroupValue(index), expected);
        });
    }

    void groupValueTakesTheNameThatASubclassGives_data() { addTwins(); }
    void groupValueTakesTheNameThatASubclassGives()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            using Form = decltype(form);
            const DictionaryFile file(sample().as(Form::isJson));
            Heir<typename Form::Importer> heir(file.path());
            TDataImport &base = heir;
            base.openFile();
            QCOMPARE(base.getGroupValue(0), QString("HOUSE=H"));
            heir.alias = QStringLiteral("SON=");
            QCOMPARE(base.getGroupValue(0), QString("PERSON=P"));
            heir.alias = QStringLiteral("nowhere");
            QCOMPARE(base.getGroupValue(0), QString());
        });
    }

    void nameThatIsNoEntryHasTheFirstEntryThatContainsItAsItsValue_data()
    {
        QTest::addColumn<QString>("importer");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected");
        for (const char *importer : { "text", "json" }) {
            // clang-format off
            QTest::addRow("%s: in all entries", importer)         << importer << "="        << "FARMER=1";
            QTest::addRow("%s: begin of an entry", importer)      << importer << "FARM"     << "FARMER=1";
            QTest::addRow("%s: begin of a later entry", importer) << importer << "HOUSE"    << "HOUSE=2";
            QTest::addRow("%s: end of two entries", importer)     << importer << "=2"       << "HOUSE=2";
            QTest::addRow("%s: middle of an entry", importer)     << importer << "ARM=1"    << "FARM=12";
            QTest::addRow("%s: empty text", importer)             << importer << ""         << "FARMER=1";
            QTest::addRow("%s: longer than its entry", importer)  << importer << "HOUSE=2 " << "";
            QTest::addRow("%s: in another case", importer)        << importer << "house"    << "";
            // clang-format on
        }
    }
    void nameThatIsNoEntryHasTheFirstEntryThatContainsItAsItsValue()
    {
        QFETCH(QString, importer);
        QFETCH(QString, name);
        QFETCH(QString, expected);
        with(importer, [&](auto form) {
            using Form = decltype(form);
            const DictionaryFile file(recordsOf("FARMER=1 HOUSE=2 FARM=12 BARN=2").as(Form::isJson));
            Heir<typename Form::Importer> heir(file.path());
            TDataImport &base = heir;
            base.openFile();
            heir.alias = name;
            QCOMPARE(base.getGroupValue(0), expected);
            QCOMPARE(base.getGroupValue(3), expected);
        });
    }

    void groupValueComesFromTheEntriesOfTheLastOpening_data() { addTwins(); }
    void groupValueComesFromTheEntriesOfTheLastOpening()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            using Form = decltype(form);
            Open<Form> open(recordsOf("OLD_HOUSE=1 HOUSE=1"));
            QCOMPARE(open.base().getGroupValue(1), QString("OLD_HOUSE=1"));

            open.file.write(recordsOf("PERSON=1 HOUSE=1 ROOM=1").as(Form::isJson));
            open.base().openFile();
            QCOMPARE(open.base().getGroupValue(0), QString("PERSON=1"));
            QCOMPARE(open.base().getGroupValue(1), QString("HOUSE=1"));
            QCOMPARE(open.base().getGroupValue(2), QString("ROOM=1"));
            QCOMPARE(open.base().getGroupValue(3), QString());

            // The same number of entries as before, in another order.
            open.file.write(recordsOf("WAREHOUSE=1 HOUSE=1 PERSON=1").as(Form::isJson));
            open.base().openFile();
            QCOMPARE(open.base().getGroupValue(1), QString("WAREHOUSE=1"));
            QCOMPARE(open.base().getGroupValue(2), QString("PERSON=1"));
        });
    }

    void copiesReturnTheSameGroupValues_data()
    {
        QTest::addColumn<QString>("importer");
        QTest::addColumn<bool>("askedBefore");
        for (const char *importer : { "text", "json" }) {
            QTest::addRow("%s: copied before it was asked", importer) << importer << false;
            QTest::addRow("%s: copied when it was asked", importer) << importer << true;
        }
    }
    void copiesReturnTheSameGroupValues()
    {
        QFETCH(QString, importer);
        QFETCH(bool, askedBefore);
        with(importer, [&](auto form) {
            using Form = decltype(form);
            const QStringList expected = { "OLD_HOUSE=1", "OLD_HOUSE=1" };
            const auto values = [](TDataImport &base) {
                return QStringList{ base.getGroupValue(0), base.getGroupValue(1) };
            };
            Open<Form> open(recordsOf("OLD_HOUSE=1 HOUSE=1"));
            if (askedBefore)
                QCOMPARE(values(open.base()), expected);
            typename Form::Importer copy(open.importer);
            typename Form::Importer assigned;
            assigned = open.importer;
            QCOMPARE(values(copy), expected);
            QCOMPARE(values(assigned), expected);
            QCOMPARE(values(open.base()), expected);

            // The entries are shared, so the copies have the new ones too.
            open.file.write(recordsOf("ROOM=1 HOUSE=1").as(Form::isJson));
            open.base().openFile();
            const QStringList renewed = { "ROOM=1", "HOUSE=1" };
            QCOMPARE(values(copy), renewed);
            QCOMPARE(values(assigned), renewed);
            QCOMPARE(values(open.base()), renewed);
        });
    }

    // This holds outside of the list too: a subclass may count its groups differently. Every entry contains "".
    void nullNameThatASubclassGivesCountsAsEmpty_data() { addTwins(); }
    void nullNameThatASubclassGivesCountsAsEmpty()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            using Form = decltype(form);
            const DictionaryFile file(sample().as(Form::isJson));
            NamingHeir<typename Form::Importer> heir(file.path());
            TDataImport &base = heir;
            QCOMPARE(base.getGroupValue(0), QString()); // there are no entries yet
            base.openFile();
            for (const QString &name : { QString(), QStringLiteral("") }) {
                heir.name = name;
                for (const int index : { -1, 0, 1, 100 })
                    QCOMPARE(base.getGroupValue(index), QString("HOUSE=H"));
            }
            base.releaseContents();
            QCOMPARE(base.getGroupValue(0), QString());
        });
    }

    void twoFormsOfTheTypeIndexSearchInOppositeDirections_data() { addTwins(); }
    void twoFormsOfTheTypeIndexSearchInOppositeDirections()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            Open<decltype(form)> open(recordsOf("A=H B=P C=H D=Q E="));
            const auto current = [&](const QString &type) {
                TestAccess::currentRecordType(open.importer) = type;
                return TestAccess::currentIndex(open.importer);
            };
            QVERIFY(TestAccess::currentRecordType(open.importer).isNull());
            QCOMPARE(current("H"), 0);
            QCOMPARE(open.base().getRecordTypeIndex("H"), 2);
            QCOMPARE(current("P"), 1);
            QCOMPARE(open.base().getRecordTypeIndex("P"), 1);
            QCOMPARE(current(""), 4);
            QCOMPARE(open.base().getRecordTypeIndex(""), 4);
            for (const char *none : { "h", "A", "A=H", "_COMMON_", "X" }) {
                QCOMPARE(current(none), -1);
                QCOMPARE(open.base().getRecordTypeIndex(none), -1);
            }
        });
    }

    void currentRecordTypeIsNeverAssigned_data() { addTwins(); }
    void currentRecordTypeIsNeverAssigned()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            Open<decltype(form)> open(sample());
            QVERIFY(TestAccess::currentRecordType(open.importer).isNull());
            QCOMPARE(TestAccess::currentIndex(open.importer), -1);
            QCOMPARE(open.base().getRecordTypeIndex("H"), 0);
            QVERIFY(TestAccess::currentRecordType(open.importer).isNull());
        });
    }

    // opening

    void openingSetsTheStateAndClearsPending_data() { addTwins(); }
    void openingSetsTheStateAndClearsPending()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            using Form = decltype(form);
            const DictionaryFile file(sample().as(Form::isJson));
            typename Form::Importer subject(file.path());
            QVERIFY(static_cast<TDataImport &>(subject).openFile());
            QCOMPARE(TestAccess::carried(subject), QString("0||1|0|0|"));
            QCOMPARE(TestAccess::stateValue(subject), 1.0);
            QVERIFY(!TestAccess::layoutPending(subject));
            QCOMPARE(TestAccess::dictionary(subject)->recordsCount, 2);
        });
    }

    void openingIsAlwaysTrue_data()
    {
        QTest::addColumn<QString>("importer");
        QTest::addColumn<QString>("path");
        for (const char *importer : { "text", "json" }) {
            QTest::addRow("%s: no name", importer) << importer << QString();
            QTest::addRow("%s: no such file", importer) << importer << VAN_TEST_DATA "/no-such-file.dcf";
            QTest::addRow("%s: a directory", importer) << importer << VAN_TEST_DATA;
        }
    }
    void openingIsAlwaysTrue()
    {
        QFETCH(QString, importer);
        QFETCH(QString, path);
        with(importer, [&](auto form) {
            typename decltype(form)::Importer subject(path);
            TDataImport &base = subject;
            QVERIFY(base.openFile());
            QCOMPARE(base.getGroupCount(), 0);
            QVERIFY(TestAccess::fields(subject)->isEmpty());
            QVERIFY(TestAccess::groupList(subject));
            QVERIFY(!TestAccess::layoutPending(subject));
            // A reader that has read nothing keeps its initial values.
            QCOMPARE(base.getRecordTypeStart(), 1);
            QCOMPARE(base.getRecordTypeSize(), 1);
            QVERIFY(base.isMultiple());
        });
    }

    void secondOpeningReplacesFieldsGroupsAndDictionary_data() { addTwins(); }
    void secondOpeningReplacesFieldsGroupsAndDictionary()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            using Form = decltype(form);
            Open<Form> open(sample());
            const auto *former = TestAccess::dictionary(open.importer);
            const QStringList *groups = TestAccess::groupList(open.importer);
            const auto *field = open.field(2);

            const Dictionary other = { 7, 0, {}, { { "ONLY", "O", { { "NEW" } } } } };
            open.file.write(other.as(Form::isJson));
            QVERIFY(open.base().openFile());
            QCOMPARE(open.fieldNames(), QStringList("NEW"));
            QVERIFY(!open.importer.fieldByName("AGE"));
            QVERIFY(open.importer.fieldByName("NEW"));
            QCOMPARE(groupsOf(open.base()), QStringList("ONLY=O"));
            QCOMPARE(TestAccess::groupList(open.importer), groups);
            QCOMPARE(open.base().getRecordTypeStart(), 7);
            QCOMPARE(open.base().getRecordTypeSize(), 0);
            QVERIFY(TestAccess::dictionary(open.importer) != former);
            QCOMPARE(former->getItemsCount(), 3);
            QCOMPARE(field->name, QString("AGE"));
            QCOMPARE(field->item, former->getItem(2));
            QCOMPARE(field->item->record->name, QString("PERSON"));
        });
    }

    void secondOpeningOfTheSameFileGivesTheSame_data() { addTwins(); }
    void secondOpeningOfTheSameFileGivesTheSame()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            Open<decltype(form)> open(sample());
            const QStringList names = open.fieldNames();
            QVERIFY(open.base().openFile());
            QCOMPARE(open.fieldNames(), names);
            QCOMPARE(open.base().getGroupCount(), 2);
        });
    }

    void openReadAloneAppendsFieldsAndReplacesGroups_data() { addTwins(); }
    void openReadAloneAppendsFieldsAndReplacesGroups()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            using Form = decltype(form);
            Open<Form> open(sample());
            const DictionaryFile other(recordsOnly({ { "ONLY", "O", { { "NEW" } } } }).as(Form::isJson));
            TestAccess::openRead(open.importer, other.path());
            QCOMPARE(open.fieldNames(), QStringList({ "AREA", "ROOMS", "AGE", "NEW" }));
            QCOMPARE(groupsOf(open.base()), QStringList("ONLY=O"));
            QCOMPARE(open.importer.getSourceName(), open.file.path());
        });
    }

    void openReadMakesTheListOfGroupsWhereThereIsNone_data() { addTwins(); }
    void openReadMakesTheListOfGroupsWhereThereIsNone()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            using Form = decltype(form);
            const DictionaryFile file(sample().as(Form::isJson));
            typename Form::Importer subject;
            TestAccess::openRead(subject, file.path());
            QCOMPARE(subject.getGroupCount(), 2);
            QVERIFY(!TestAccess::layoutPending(subject));
            QCOMPARE(TestAccess::carried(subject), QString("0||0|0|0|"));
        });
    }

    // items to fields

    void everyItemBecomesAFieldOfTheOwnClassInFileOrder_data() { addTwins(); }
    void everyItemBecomesAFieldOfTheOwnClassInFileOrder()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            using Form = decltype(form);
            Open<Form> open(sample());
            QCOMPARE(open.fieldNames(), QStringList({ "AREA", "ROOMS", "AGE" }));
            for (int i = 0; i < 3; ++i) {
                const auto *field = open.field(i);
                QVERIFY(field);
                QVERIFY(!dynamic_cast<typename Form::OtherVariable *>(TestAccess::fields(open.importer)->at(i)));
                QCOMPARE(field->owner, &open.base());
                QCOMPARE(field->item, TestAccess::dictionary(open.importer)->getItem(i));
                QVERIFY(!field->optional);
                QVERIFY(!TestAccess::optionalAtStart(*field));
                QVERIFY(field->hasDecimalChar);
            }
            QCOMPARE(open.importer.fieldByName("AGE"), static_cast<TGenericField *>(open.field(2)));
            const auto *rooms = open.field(1);
            QCOMPARE(rooms->label, QString("Rooms"));
            QCOMPARE(rooms->start, 8);
            QCOMPARE(rooms->length, 2);
            QCOMPARE(rooms->missingValue, QString());
            QCOMPARE(rooms->notApplicable, QString());
        });
    }

    void copyingWithoutADictionaryAddsNothing_data() { addTwins(); }
    void copyingWithoutADictionaryAddsNothing()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            typename decltype(form)::Importer subject;
            TestAccess::copyDataFromDictionary(subject);
            QVERIFY(TestAccess::fields(subject)->isEmpty());
            QVERIFY(!TestAccess::dictionary(subject));

            typename decltype(form)::Importer unopened(QStringLiteral("a.dcf"));
            TestAccess::copyDataFromDictionary(unopened);
            QVERIFY(TestAccess::fields(unopened)->isEmpty());
            QVERIFY(!TestAccess::dictionary(unopened));
            QCOMPARE(unopened.getGroupCount(), 0);
        });
    }

    void copyingFromTheDictionaryAgainAppendsAllFieldsOnceMore_data() { addTwins(); }
    void copyingFromTheDictionaryAgainAppendsAllFieldsOnceMore()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            Open<decltype(form)> open(sample());
            TestAccess::copyDataFromDictionary(open.importer);
            QCOMPARE(open.fieldNames(), QStringList({ "AREA", "ROOMS", "AGE", "AREA", "ROOMS", "AGE" }));
            QCOMPARE(open.field(3)->item, open.field(0)->item);
            QVERIFY(open.field(3) != open.field(0));
            QCOMPARE(open.importer.fieldByName("AREA"), static_cast<TGenericField *>(open.field(3)));
        });
    }

    void groupOfAFieldIsItsRecord_data() { addTwins(); }
    void groupOfAFieldIsItsRecord()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            Open<decltype(form)> open(sample());
            QCOMPARE(open.field(0)->getGroup(), QString("Common"));
            QCOMPARE(open.field(1)->getGroup(), QString("HOUSE"));
            QCOMPARE(open.field(2)->getGroup(), QString("PERSON"));
            const QStringList groups = groupsOf(open.base());
            QVERIFY(groups.filter("Common", Qt::CaseInsensitive).isEmpty());
            QVERIFY(groups.filter("_COMMON_").isEmpty());
        });
    }

    void itemWithoutARecordHasNoGroup_data() { addTwins(); }
    void itemWithoutARecordHasNoGroup()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            Open<decltype(form)> open(sample());
            open.field(0)->item->record = nullptr;
            TestAccess::copyDataFromDictionary(open.importer);
            QVERIFY(!open.field(0)->group.isEmpty());
            QCOMPARE(open.field(3)->name, open.field(0)->name);
            QCOMPARE(open.field(3)->group, QString());
        });
    }

    void twoItemsOfOneNameAreTwoFieldsAndTheLastIsFound_data() { addTwins(); }
    void twoItemsOfOneNameAreTwoFieldsAndTheLastIsFound()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            Open<decltype(form)> open(recordsOnly({ { "R", "1", { { "X", "", 1 }, { "X", "", 9 } } } }));
            QCOMPARE(open.fieldCount(), 2);
            QCOMPARE(open.importer.fieldByName("X")->start, 9);
        });
    }

    void withoutRecordTypesEveryGroupIsEmptyAndRecordsAreListedAllTheSame_data()
    {
        QTest::addColumn<QString>("importer");
        QTest::addColumn<int>("width");
        for (const char *importer : { "text", "json" }) {
            QTest::addRow("%s: width 0", importer) << importer << 0;
            QTest::addRow("%s: negative width", importer) << importer << -1;
        }
    }
    void withoutRecordTypesEveryGroupIsEmptyAndRecordsAreListedAllTheSame()
    {
        QFETCH(QString, importer);
        QFETCH(int, width);
        with(importer, [&](auto form) {
            Dictionary dictionary = sample();
            dictionary.recordTypeLen = width;
            Open<decltype(form)> open(dictionary);
            QVERIFY(!open.base().isMultiple());
            QCOMPARE(open.base().getRecordTypeSize(), width);
            QCOMPARE(open.fieldCount(), 3);
            for (int i = 0; i < 3; ++i)
                QCOMPARE(open.field(i)->getGroup(), QString());
            QCOMPARE(groupsOf(open.base()), QStringList({ "HOUSE=H", "PERSON=P" }));
        });
    }

    void itemGivesTypeBoundsAndLabels_data()
    {
        QTest::addColumn<QString>("importer");
        QTest::addColumn<bool>("isAlpha");
        QTest::addColumn<int>("length");
        QTest::addColumn<QString>("values"); // "1=One;2=Two", null for no value set
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("decimals");
        QTest::addColumn<QString>("minimum");
        QTest::addColumn<QString>("maximum");
        QTest::addColumn<QString>("labels");

        const QString none;
        for (const char *importer : { "text", "json" }) {
            // clang-format off
            QTest::addRow("%s: text", importer)                << importer << true  << 4  << none << 3 << ""  << ""  << ""           << "";
            QTest::addRow("%s: long text", importer)           << importer << true  << 20 << none << 3 << ""  << ""  << ""           << "";
            QTest::addRow("%s: length 1", importer)            << importer << false << 1  << none << 1 << "0" << "0" << "9"          << "";
            QTest::addRow("%s: length 9", importer)            << importer << false << 9  << none << 1 << "0" << "0" << "999999999"  << "";
            QTest::addRow("%s: length 10", importer)           << importer << false << 10 << none << 2 << "0" << "0" << "9999999999" << "";
            QTest::addRow("%s: no length", importer)           << importer << false << 0  << none << 1 << "0" << "0" << ""           << "";
            QTest::addRow("%s: negative length", importer)     << importer << false << -3 << none << 1 << "0" << "0" << ""           << "";
            QTest::addRow("%s: two values", importer)          << importer << false << 2  << "3=Three;12=Dozen" << 1 << "0" << "3" << "12" << "3 Three\t12 Dozen\t";
            QTest::addRow("%s: no label", importer)            << importer << false << 2  << "3=" << 1 << "0" << "3" << "3" << "3 \t";
            QTest::addRow("%s: integer 05 reads 5", importer)  << importer << false << 2  << "05=Five" << 1 << "0" << "5" << "5" << "5 Five\t";
            QTest::addRow("%s: real 05 keeps its text", importer) << importer << false << 10 << "05=Five" << 2 << "0" << "5" << "5" << "05 Five\t";
            QTest::addRow("%s: a million reads 1e+06", importer)  << importer << false << 7 << "1000000=M" << 1 << "0" << "1e+06" << "1e+06" << "1e+06 M\t";
            QTest::addRow("%s: negative codes", importer)      << importer << false << 2  << "-5=a;-1=b" << 1 << "0" << "-5" << "-1" << "-5 a\t-1 b\t";
            QTest::addRow("%s: repeated code", importer)       << importer << false << 1  << "1=One;1=Again" << 1 << "0" << "1" << "1" << "1 One\t1 Again\t";
            QTest::addRow("%s: empty set keeps the nines", importer) << importer << false << 3 << "" << 1 << "0" << "0" << "999" << "";
            QTest::addRow("%s: text has the minimum 0", importer)    << importer << true  << 1 << "A=Good;B=Bad" << 3 << "" << "0" << "" << "A Good\tB Bad\t";
            QTest::addRow("%s: text with an empty set", importer)    << importer << true  << 1 << "" << 3 << "" << "0" << "" << "";
            // clang-format on
        }
    }
    void itemGivesTypeBoundsAndLabels()
    {
        QFETCH(QString, importer);
        QFETCH(bool, isAlpha);
        QFETCH(int, length);
        QFETCH(QString, values);
        QFETCH(int, type);
        QFETCH(QString, decimals);
        QFETCH(QString, minimum);
        QFETCH(QString, maximum);
        QFETCH(QString, labels);
        Item item = { "A", "L", 1, length, isAlpha, {}, !values.isNull() };
        for (const QString &value : values.split(';', Qt::SkipEmptyParts))
            item.values.append({ value.section('=', 0, 0), value.section('=', 1) });
        with(importer, [&](auto form) {
            Open<decltype(form)> open(recordsOnly({ { "R", "1", { item } } }));
            QCOMPARE(open.fieldCount(), 1);
            const TGenericField *field = open.field(0);
            QCOMPARE(int(field->type), type);
            QCOMPARE(field->decimals, decimals);
            QCOMPARE(field->minimum, minimum);
            QCOMPARE(field->maximum, maximum);
            QCOMPARE(field->valueLabels, labels);
        });
    }

    // Items that only the text reader can make go through the same branches.
    void itemWithDecimalsGivesTheSameFieldInBoth_data()
    {
        QTest::addColumn<QString>("importer");
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("decimals");
        QTest::addColumn<bool>("decimalChar");
        QTest::addColumn<QString>("maximum");

        for (const char *importer : { "text", "json" }) {
            // clang-format off
            QTest::addRow("%s: two decimals", importer)                  << importer << 5 << 2 << false << "999";
            QTest::addRow("%s: two decimals and the character", importer) << importer << 5 << 2 << true << "9999";
            QTest::addRow("%s: nothing but decimals", importer)          << importer << 3 << 3 << false << "9";
            QTest::addRow("%s: more decimals than length", importer)     << importer << 2 << 5 << false << "";
            QTest::addRow("%s: negative decimals", importer)             << importer << 4 << -1 << false << "9999";
            // clang-format on
        }
    }
    void itemWithDecimalsGivesTheSameFieldInBoth()
    {
        QFETCH(QString, importer);
        QFETCH(int, length);
        QFETCH(int, decimals);
        QFETCH(bool, decimalChar);
        QFETCH(QString, maximum);
        with(importer, [&](auto form) {
            using Form = decltype(form);
            typename Form::Importer subject;
            TestAccess::giveDictionary(subject);
            TCSProItem item;
            item.name = QStringLiteral("A");
            item.length = length;
            item.decimals = decimals;
            item.decimalChar = decimalChar;
            item.missingValue = QStringLiteral("9");
            item.notApplicable = QStringLiteral("8");
            TestAccess::dictionary(subject)->items->append(&item);
            TestAccess::copyDataFromDictionary(subject);
            TestAccess::dictionary(subject)->items->clear();
            const TGenericField *field = TestAccess::fields(subject)->at(0);
            QCOMPARE(field->type, vtReal);
            QCOMPARE(field->decimals, QString(QChar(ushort(decimals))));
            QCOMPARE(field->minimum, QString("0"));
            QCOMPARE(field->maximum, maximum);
            QCOMPARE(field->missingValue, QString("9"));
            QCOMPARE(field->notApplicable, QString("8"));
            QVERIFY(field->hasDecimalChar);
        });
    }

    void specialValuesStayOutInBoth_data() { addTwins(); }
    void specialValuesStayOutInBoth()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            using Form = decltype(form);
            typename Form::Importer subject;
            TestAccess::giveDictionary(subject);
            TValueSetItem plain;
            plain.code = QStringLiteral("3");
            plain.name = QStringLiteral("Three");
            TValueSetItem special;
            special.code = QStringLiteral("7");
            special.special = true;
            TCSProValueSet set;
            TCSProItem item;
            item.length = 1;
            set.addItem(&plain);
            set.addItem(&special);
            set.addItem(&plain);
            item.addValueSet(&set);
            TestAccess::dictionary(subject)->items->append(&item);
            TestAccess::copyDataFromDictionary(subject);
            TestAccess::dictionary(subject)->items->clear();
            const TGenericField *field = TestAccess::fields(subject)->at(0);
            QCOMPARE(field->minimum, QString("3"));
            QCOMPARE(field->maximum, QString("3"));
            QCOMPARE(field->valueLabels, QString("3 Three\t3 Three\t"));
        });
    }

    // fields

    void fieldComparesWithTheCodesOfItsItem_data() { addTwins(); }
    void fieldComparesWithTheCodesOfItsItem()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            using Variable = typename decltype(form)::Variable;
            TCSProItem item;
            Variable variable(nullptr, &item);
            variable.type = vtString;
            variable.length = 5;
            TGenericField &field = variable;
            QCOMPARE(variable.group, QString());
            variable.group = QStringLiteral("G");
            QCOMPARE(field.getGroup(), QString("G"));

            field.setAsString("9");
            QVERIFY(!field.isMissing() && !field.isNotApplicable() && !field.isBlank());
            item.missingValue = QStringLiteral("9");
            QVERIFY(field.isMissing() && !field.isNotApplicable());
            item.notApplicable = QStringLiteral("9");
            item.missingValue = QStringLiteral("99");
            QVERIFY(!field.isMissing() && field.isNotApplicable());
            field.setAsString("NA");
            item.missingValue = QStringLiteral("na");
            QVERIFY(!field.isMissing());
            field.isUnset = true;
            QVERIFY(field.isMissing());
            field.setAsString(" \t ");
            QVERIFY(field.isBlank());
            field.setAsString(" x ");
            QVERIFY(!field.isBlank());
            field.addValueLabel("1", "One");
            QCOMPARE(field.valueLabels, QString());
        });
    }

    void codesOfTheItemAreTakenOver_data() { addTwins(); }
    void codesOfTheItemAreTakenOver()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            using Form = decltype(form);
            const typename Form::Importer subject;
            TCSProItem item;
            item.notApplicable = QStringLiteral("8");
            item.missingValue = QStringLiteral("9");
            typename Form::Variable field(nullptr, &item);
            TestAccess::getNotApplicable(subject, &field);
            QCOMPARE(field.notApplicable, QString("8"));
            QCOMPARE(field.missingValue, QString());
            TestAccess::getVarMissingValue(subject, &field);
            QCOMPARE(field.missingValue, QString("9"));

            ForeignField foreign;
            typename Form::OtherVariable other(nullptr, &item);
            for (TGenericField *each : { static_cast<TGenericField *>(&foreign), static_cast<TGenericField *>(&other),
                                         static_cast<TGenericField *>(nullptr) }) {
                TestAccess::getNotApplicable(subject, each);
                TestAccess::getVarMissingValue(subject, each);
            }
            QCOMPARE(foreign.notApplicable + foreign.missingValue, QString());
            QCOMPARE(other.notApplicable + other.missingValue, QString());
        });
    }

    void characterIsRepeatedCountTimes_data() { addTwins(); }
    void characterIsRepeatedCountTimes()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            const typename decltype(form)::Importer subject;
            QCOMPARE(TestAccess::stringOfChar(subject, 'x', 3), QString("xxx"));
            QCOMPARE(TestAccess::stringOfChar(subject, 'x', 1), QString("x"));
            QCOMPARE(TestAccess::stringOfChar(subject, 'x', 0), QString());
            QCOMPARE(TestAccess::stringOfChar(subject, 'x', -2), QString());
        });
    }

    // the differences

    void providerTypeIsCspro8WhateverTheFileHolds()
    {
        TCSProJsonDataImport nameless;
        QCOMPARE(static_cast<TDataImport &>(nameless).getDataProviderType(), QString("CSPRO8"));
        OpenJson empty{ QString() };
        QCOMPARE(empty.base().getDataProviderType(), QString("CSPRO8"));
        OpenJson text(sample().as(false));
        QCOMPARE(text.base().getDataProviderType(), QString("CSPRO8"));
        TCSProDataImport twin;
        QCOMPARE(static_cast<TDataImport &>(twin).getDataProviderType(), QString("CSPRO"));
    }

    void providerIdIsTheTypeAndTheSourceName()
    {
        TCSProJsonDataImport importer(QStringLiteral("a/../b.dcf"));
        QCOMPARE(static_cast<TDataImport &>(importer).getDataProviderId(), QString("CSPRO8_a/../b.dcf"));
        TCSProJsonDataImport nameless;
        QCOMPARE(static_cast<TDataImport &>(nameless).getDataProviderId(), QString("CSPRO8_"));
        TCSProDataImport twin(QStringLiteral("a/../b.dcf"));
        QCOMPARE(static_cast<TDataImport &>(twin).getDataProviderId(), QString("CSPRO_a/../b.dcf"));
        TCSProDataImport namelessTwin;
        QCOMPARE(static_cast<TDataImport &>(namelessTwin).getDataProviderId(), QString("CSPRO_"));
    }

    void providerTypeStaysUnsetAndIsNoError()
    {
        const DictionaryFile file(sample().as(true));
        TCSProJsonDataImport importer(file.path());
        const std::unique_ptr<QStringList> names(static_cast<TDataImport &>(importer).selectLayoutSource());
        TVpDataProvider provider;
        bool isTaken = false;
        const auto error = thrownBy([&] { isTaken = provider.genericGetFieldsFrom(&importer); });
        QVERIFY(!error);
        QVERIFY(isTaken);
        QCOMPARE(provider.getDataProviderType(), QString());
        QCOMPARE(provider.getDataProviderId(), "CSPRO8_" + file.path());
        QCOMPARE(provider.getFields()->size(), 3);
        for (const TVpSourceField *field : *provider.getFields()) {
            QCOMPARE(field->DataProviderType, QString());
            QCOMPARE(field->dataProviderTypeIndex, dpNone);
            QCOMPARE(field->providerId, "CSPRO8_" + file.path());
        }
    }

    void readerIsThatOfTheForm()
    {
        static_assert(
            std::is_same<decltype(TestAccess::dictionary(std::declval<TCSProJsonDataImport &>())), TCSProJson *>::value,
            "the JSON reader");
        static_assert(
            std::is_same<decltype(TestAccess::dictionary(std::declval<TCSProDataImport &>())), TCSPro *>::value,
            "the text reader");
        // Each importer finds nothing in the form of the other.
        Open<JsonForm> json(sample());
        json.file.write(sample().as(false));
        json.base().openFile();
        QCOMPARE(json.fieldCount(), 0);
        Open<TextForm> text(sample());
        text.file.write(sample().as(true));
        text.base().openFile();
        QCOMPARE(text.fieldCount(), 0);
    }

    void fieldClassIsThatOfTheForm()
    {
        Open<JsonForm> open(sample());
        TGenericField *field = TestAccess::fields(open.importer)->at(0);
        QVERIFY(dynamic_cast<TCSProJsonVariable *>(field));
        QVERIFY(!dynamic_cast<TCSProVariable *>(field));
    }

    void constructorLogsAShorterNameThanTheClass()
    {
        const DebugCapture log;
        const TCSProJsonDataImport importer(QStringLiteral("a.dcf"));
        const TCSProDataImport twin(QStringLiteral("a.dcf"));
        QCOMPARE(log.taken(), QStringList({ "TCSProJsonImport Constructor", "TCSProDataImport Constructor" }));
    }

    void selectLayoutSourceLogsAShorterNameThanTheClass()
    {
        const DictionaryFile file{ QString() };
        TCSProJsonDataImport importer(file.path());
        TCSProDataImport twin(file.path());
        const DebugCapture log;
        const std::unique_ptr<QStringList> first(static_cast<TDataImport &>(importer).selectLayoutSource());
        const std::unique_ptr<QStringList> second(static_cast<TDataImport &>(twin).selectLayoutSource());
        QCOMPARE(log.taken(),
                 QStringList({ "TCSProJsonImport - selectLayoutSource", "DataImport - selectLayoutSource",
                               "TCSProDataImport - selectLayoutSource", "DataImport - selectLayoutSource" }));
    }

    // consequences of the JSON form

    void fileThatIsNoJsonOpensWithoutGroupsAndFields_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("a text dictionary") << sample().as(false);
        QTest::newRow("an array") << "[]";
        QTest::newRow("cut") << sample().as(true).chopped(4);
        QTest::newRow("after 16 blanks") << QString(16, ' ') + sample().as(true);
        QTest::newRow("after a byte-order mark") << QChar(0xFEFF) + sample().as(true);
    }
    void fileThatIsNoJsonOpensWithoutGroupsAndFields()
    {
        QFETCH(QString, text);
        const DictionaryFile file(text);
        TCSProJsonDataImport importer(file.path());
        TDataImport &base = importer;
        const auto error = thrownBy([&] { QVERIFY(base.openFile()); });
        QVERIFY(!error);
        QCOMPARE(base.getGroupCount(), 0);
        QVERIFY(TestAccess::fields(importer)->isEmpty());
        QCOMPARE(base.getDataProviderType(), QString("CSPRO8"));
    }

    void dictionaryIsMultipleOnlyWhereItSaysSo_data()
    {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<int>("size");
        QTest::addColumn<bool>("expected");

        // clang-format off
        QTest::newRow("no record type")     << ""                                                << 0 << false;
        QTest::newRow("no length")          << "\"recordType\":{\"start\":1},"                   << 0 << false;
        QTest::newRow("length 0")           << "\"recordType\":{\"start\":1,\"length\":0},"      << 0 << false;
        QTest::newRow("length as a text")   << "\"recordType\":{\"start\":1,\"length\":\"1\"},"  << 0 << false;
        QTest::newRow("length 1")           << "\"recordType\":{\"start\":1,\"length\":1},"      << 1 << true;
        QTest::newRow("length 2, no start") << "\"recordType\":{\"length\":2},"                  << 2 << true;
        // clang-format on
    }
    void dictionaryIsMultipleOnlyWhereItSaysSo()
    {
        QFETCH(QString, keys);
        QFETCH(int, size);
        QFETCH(bool, expected);
        OpenJson open(withItems("{\"name\":\"A\"}", keys));
        QCOMPARE(open.base().isMultiple(), expected);
        QCOMPARE(open.base().getRecordTypeSize(), size);
        QCOMPARE(open.field(0)->getGroup(), expected ? QString("R") : QString());
        QCOMPARE(groupsOf(open.base()), QStringList("R="));
    }

    void groupOfARecordWithoutATypeEndsInAnEqualsSign()
    {
        OpenJson open(R"({"levels":[{"records":[{"name":"A"},{"name":"B","recordType":""},{"recordType":"1"}]}]})");
        QCOMPARE(groupsOf(open.base()), QStringList({ "A=", "B=", "=1" }));
    }

    void decimalsOfAnItemHaveNoEffect_data()
    {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("maximum");

        const QString decimals = QStringLiteral(",\"decimals\":2,\"decimalMark\":true");
        // clang-format off
        QTest::newRow("length 9")            << "\"length\":9" + decimals  << int(vtInteger) << QString(9, '9');
        QTest::newRow("length 10")           << "\"length\":10" + decimals << int(vtReal)    << QString(10, '9');
        QTest::newRow("implied decimals")    << "\"length\":5,\"decimals\":2,\"decimalMark\":false" << int(vtInteger) << "99999";
        QTest::newRow("alphanumeric")        << "\"contentType\":\"alpha\",\"length\":5" + decimals << int(vtString)  << "";
        // clang-format on
    }
    void decimalsOfAnItemHaveNoEffect()
    {
        QFETCH(QString, keys);
        QFETCH(int, type);
        QFETCH(QString, maximum);
        OpenJson open(withItems("{\"name\":\"A\"," + keys + "}"));
        QCOMPARE(int(open.field(0)->type), type);
        QCOMPARE(open.field(0)->decimals, type == vtString ? QString() : QString("0"));
        QCOMPARE(open.field(0)->maximum, maximum);
        QVERIFY(open.field(0)->hasDecimalChar);
        TVpDataProvider provider;
        provider.genericGetFieldsFrom(&open.importer);
        QCOMPARE(provider.getField("A")->decimals, 0);
    }

    void specialValuesCountLikeOthers()
    {
        OpenJson open(withValues("\"length\":2", R"({"labels":[{"text":"Some"}],"pairs":[{"value":"5"}]},
            {"labels":[{"text":"None"}],"special":"MISSING","pairs":[{"value":"99"}]},
            {"labels":[{"text":"Not asked"}],"special":"NOTAPPL","pairs":[{"value":"-1"}]})"));
        TGenericField *field = open.field(0);
        QCOMPARE(field->minimum, QString("-1"));
        QCOMPARE(field->maximum, QString("99"));
        QCOMPARE(field->valueLabels, QString("5 Some\t99 None\t-1 Not asked\t"));
        QCOMPARE(field->missingValue, QString());
        QCOMPARE(field->notApplicable, QString());
        field->setAsString("99");
        QVERIFY(!field->isMissing());
        field->isUnset = true;
        QVERIFY(field->isMissing());
        field->setAsString("-1");
        QVERIFY(!field->isNotApplicable());
    }

    void rangeAndEmptyCodeCountAsZero_data()
    {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("values");
        QTest::addColumn<QString>("minimum");
        QTest::addColumn<QString>("maximum");
        QTest::addColumn<QString>("labels");

        const QString range = R"({"labels":[{"text":"r"}],"pairs":[{"range":["3","8"]}]})";
        const QString five = R"({"labels":[{"text":"f"}],"pairs":[{"value":"5"}]})";
        const QString empty = R"({"labels":[{"text":"e"}]})";
        const QString below = R"({"labels":[{"text":"b"}],"pairs":[{"value":"-2"}]})";
        const QString text = R"({"labels":[{"text":"t"}],"pairs":[{"value":"abc"}]})";
        const QString integer = "\"length\":1";
        const QString real = "\"length\":10";
        const QString alpha = "\"length\":1,\"contentType\":\"alpha\"";
        // clang-format off
        QTest::newRow("range only")           << integer << range               << "0"  << "0" << "0 r\t";
        QTest::newRow("range and a value")    << integer << range + ',' + five  << "0"  << "5" << "0 r\t5 f\t";
        QTest::newRow("value and a range")    << integer << five + ',' + range  << "0"  << "5" << "5 f\t0 r\t";
        QTest::newRow("range above a value")  << integer << below + ',' + range << "-2" << "0" << "-2 b\t0 r\t";
        QTest::newRow("empty code")           << integer << empty + ',' + five  << "0"  << "5" << "0 e\t5 f\t";
        QTest::newRow("letters")              << integer << text + ',' + five   << "0"  << "5" << "0 t\t5 f\t";
        QTest::newRow("range of a real")      << real    << range + ',' + five  << "0"  << "5" << "3:8 r\t5 f\t";
        QTest::newRow("empty code of a real") << real    << empty               << "0"  << "0" << " e\t";
        QTest::newRow("range of a text")      << alpha   << range + ',' + empty << "0"  << ""  << "3:8 r\t e\t";
        // clang-format on
    }
    void rangeAndEmptyCodeCountAsZero()
    {
        QFETCH(QString, keys);
        QFETCH(QString, values);
        QFETCH(QString, minimum);
        QFETCH(QString, maximum);
        QFETCH(QString, labels);
        OpenJson open(withValues(keys, values));
        QCOMPARE(open.field(0)->minimum, minimum);
        QCOMPARE(open.field(0)->maximum, maximum);
        QCOMPARE(open.field(0)->valueLabels, labels);
    }

    void valueLabelsKeepTheOrderOfTheDocumentAndBoundsAreScanned()
    {
        OpenJson open(withValues("\"length\":2", R"({"labels":[{"text":"a"}],"pairs":[{"value":"7"}]},
            {"labels":[{"text":"b"}],"pairs":[{"value":"12"}]},{"labels":[{"text":"c"}],"pairs":[{"value":"3"}]},
            {"labels":[{"text":"d"}],"pairs":[{"value":"9"}]})"));
        QCOMPARE(open.field(0)->valueLabels, QString("7 a\t12 b\t3 c\t9 d\t"));
        QCOMPARE(open.field(0)->minimum, QString("3"));
        QCOMPARE(open.field(0)->maximum, QString("12"));
    }

    void occurrencesAreFieldsWithNumbersForSuffixesAndEqualLabels()
    {
        OpenJson open(withItems(R"({"name":"X","start":10,"length":2,"occurrences":{"maximum":3},
            "valueSets":[{"values":[{"labels":[{"text":"s"}],"pairs":[{"value":"4"}]}]}]},{"name":"Y"})"));
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(open.field(i)->name, "X_" + QString::number(i + 1));
            QCOMPARE(open.field(i)->start, 10 + 2 * i);
            QCOMPARE(open.field(i)->valueLabels, QString("4 s\t"));
            QCOMPARE(open.field(i)->maximum, QString("4"));
        }
        QCOMPARE(open.field(3)->name, QString("Y"));
        QCOMPARE(open.field(3)->start, 16);
    }

    // from the file to the provider

    void providerTakesOverTheWholeLayout()
    {
        const DictionaryFile file(
            R"({"recordType":{"start":3,"length":2},"levels":[{"ids":{"items":[{"name":"AREA","start":5,"length":3}]},
            "records":[{"name":"HOUSE","recordType":"H","items":[
              {"name":"ROOMS","labels":[{"text":"Rooms"}],"start":8,"length":2},
              {"name":"RENT","length":12,"decimals":2},
              {"name":"SEX","labels":[{"text":"Sex"}],"contentType":"alpha","length":1,"valueSets":[{"values":[
                {"labels":[{"text":"Male"}],"pairs":[{"value":"M"}]},
                {"labels":[{"text":"Female"}],"pairs":[{"value":"F"}]}]}]}]}]}]})");
        TCSProJsonDataImport importer(file.path());
        const std::unique_ptr<QStringList> names(static_cast<TDataImport &>(importer).selectLayoutSource());
        QCOMPARE(*names, QStringList({ "AREA", "ROOMS", "RENT", "SEX" }));

        TVpDataProvider provider;
        QVERIFY(provider.genericGetFieldsFrom(&importer));
        QCOMPARE(provider.getLayoutFileName(), file.path());
        QCOMPARE(provider.getDataFileName(), QString());
        QCOMPARE(provider.getRecordTypeStart(), 3);
        QCOMPARE(provider.getRecordTypeSize(), 2);
        QCOMPARE(provider.getImportData(), static_cast<TDataImport *>(&importer));
        QCOMPARE(provider.getFields()->size(), 4);

        const TVpSourceField *rooms = provider.getField("ROOMS");
        QCOMPARE(rooms->FieldType, QString("INTEGER"));
        QCOMPARE(rooms->label, QString("Rooms"));
        QCOMPARE(rooms->start, 8);
        QCOMPARE(rooms->length, 2);
        QCOMPARE(rooms->minimum, QString("0"));
        QCOMPARE(rooms->maximum, QString("99"));
        QCOMPARE(rooms->group, QString("HOUSE"));
        QCOMPARE(provider.getField("AREA")->group, QString("Common"));
        const TVpSourceField *rent = provider.getField("RENT");
        QCOMPARE(rent->FieldType, QString("REAL"));
        QCOMPARE(rent->start, 10);
        QCOMPARE(rent->decimals, 0);
        QCOMPARE(rent->maximum, QString(12, '9'));
        const TVpSourceField *sex = provider.getField("SEX");
        QCOMPARE(sex->FieldType, QString("STRING"));
        QCOMPARE(sex->start, 22);
        QCOMPARE(sex->valueLabels, QString("M Male\tF Female\t"));
        QCOMPARE(sex->minimum, QString("0"));
        QCOMPARE(sex->maximum, QString());
        QVERIFY(provider.getFieldFromRecord("AREA", "COMMON"));
        QVERIFY(!provider.getFieldFromRecord("AREA", "HOUSE"));
    }

    void fieldOfTheCommonRecordMatchesCommonInAnyCase_data() { addTwins(); }
    void fieldOfTheCommonRecordMatchesCommonInAnyCase()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            Open<decltype(form)> open(sample());
            TVpDataProvider provider;
            provider.genericGetFieldsFrom(&open.importer);
            QVERIFY(provider.getFieldFromRecord("AREA", "COMMON"));
            QVERIFY(provider.getFieldFromRecord("AREA", "Common"));
            QCOMPARE(provider.getFieldFromRecord("AREA", "COMMON")->group, QString("Common"));
            QVERIFY(!provider.getFieldFromRecord("AREA", "_COMMON_"));
            QVERIFY(!provider.getFieldFromRecord("AREA", "HOUSE"));
            QVERIFY(provider.getFieldFromRecord("AGE", "person"));
            QVERIFY(!provider.getFieldFromRecord("AGE", "COMMON"));
        });
    }

    void fieldWithoutGroupMatchesAnyRecord_data() { addTwins(); }
    void fieldWithoutGroupMatchesAnyRecord()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            Open<decltype(form)> open(Dictionary{ 1, 0, { { "ID" } }, {} });
            TVpDataProvider provider;
            provider.genericGetFieldsFrom(&open.importer);
            QVERIFY(provider.getFieldFromRecord("ID", "COMMON"));
            QVERIFY(provider.getFieldFromRecord("ID", "anything"));
        });
    }

    void providerOfAnUnopenedImporterHasNoFields_data() { addTwins(); }
    void providerOfAnUnopenedImporterHasNoFields()
    {
        QFETCH(QString, importer);
        with(importer, [](auto form) {
            using Form = decltype(form);
            const DictionaryFile file(sample().as(Form::isJson));
            typename Form::Importer subject(file.path());
            TVpDataProvider provider;
            QVERIFY(provider.genericGetFieldsFrom(&subject));
            QVERIFY(provider.getFields()->isEmpty());
            QCOMPARE(provider.getRecordTypeSize(), 0);
            QCOMPARE(provider.getLayoutFileName(), file.path());
        });
    }

    void providerOfAnotherTypeKeepsItsFormerType()
    {
        Open<TextForm> text(sample());
        Open<JsonForm> json(sample());
        TVpDataProvider provider;
        provider.genericGetFieldsFrom(&text.importer);
        QCOMPARE(provider.getDataProviderType(), QString("CSPRO"));
        provider.genericGetFieldsFrom(&json.importer);
        QCOMPARE(provider.getDataProviderType(), QString("CSPRO"));
        QCOMPARE(provider.getDataProviderId(), "CSPRO8_" + json.file.path());
        QCOMPARE(provider.getFields()->at(0)->DataProviderType, QString());
    }
};

QTEST_GUILESS_MAIN(CSProImportersTest)
#include "CSProImportersTest.moc"
