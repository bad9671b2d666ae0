#include "cspro/CSPro_p.h"
#include "cspro/ValueSet_p.h"
#include "support/DebugCapture.h"
#include "support/OwnedDictionary.h"
#include "support/Thrown.h"

#include <QPointer>
#include <QTest>

#include <functional>
#include <limits>
#include <memory>
#include <utility>

namespace
{

// The log lines of the error for an index into a missing list.
QString badIndexMessage(const QString &classTag, const QString &text)
{
    return QStringLiteral("Class : %1\r\nError : \u00D3\r\n\r\nMessage : Unknow or not set error\r\n[%2 ]")
        .arg(classTag, text);
}

// Removes the lists of an object and restores them, so that nothing leaks.
template <typename List> class WithoutList
{
public:
    explicit WithoutList(List *&list)
        : place(list)
        , kept(list)
    {
        place = nullptr;
    }
    ~WithoutList() { place = kept; }
    WithoutList(const WithoutList &) = delete;
    WithoutList &operator=(const WithoutList &) = delete;

private:
    List *&place;
    List *kept;
};

} // namespace

class CSProModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newDictionaryHasItsDefaults()
    {
        OwnedDictionary dictionary;
        QCOMPARE(dictionary.recordTypeStart, 1);
        QCOMPARE(dictionary.recordTypeLen, 1);
        QCOMPARE(dictionary.recordsCount, 0);
        QCOMPARE(dictionary.decimalAnswer, 0);
        QCOMPARE(dictionary.lastButton, 0);
        QCOMPARE(dictionary.version, QString());
        QCOMPARE(dictionary.label, QString());
        QCOMPARE(dictionary.name, QString());
        QCOMPARE(dictionary.positions, QString());
        QCOMPARE(dictionary.zeroFill, QString());
        QCOMPARE(dictionary.decimalChar, QString());
        QVERIFY(dictionary.records);
        QVERIFY(dictionary.records->isEmpty());
        QVERIFY(dictionary.recordMap.empty());
        QVERIFY(dictionary.items);
        QVERIFY(dictionary.items->isEmpty());
        QVERIFY(!dictionary.currentItem);
        QVERIFY(dictionary.list1.isEmpty());
        QVERIFY(dictionary.list2.isEmpty());
        QVERIFY(!dictionary.parent());
    }

    void unsetFlagOfANewDictionaryIsFalse()
    {
        const OwnedDictionary dictionary;
        QCOMPARE(dictionary.currentIsNumeric, false);
    }

    void messageBoxIsNotMadeBeforeTheFirstQuestion()
    {
        const OwnedDictionary dictionary({ "[Item]", "Name=A", "[ValueSet]", "Value=1;one" });
        QCOMPARE(dictionary.codesOf(0), QStringList("1"));
        QVERIFY(!dictionary.messageBox);
    }

    void commonRecordIsCurrentAndNotAmongTheRecords()
    {
        OwnedDictionary dictionary;
        QVERIFY(dictionary.commonRecord);
        QCOMPARE(dictionary.commonRecord->name, QString("Common"));
        QCOMPARE(dictionary.commonRecord->recordType, QString("_COMMON_"));
        QCOMPARE(dictionary.commonRecord->label, QString());
        QCOMPARE(dictionary.commonRecord->required, QString());
        QCOMPARE(dictionary.commonRecord->maxRecords, 100);
        QCOMPARE(dictionary.commonRecord->recordLen, 0);
        QCOMPARE(dictionary.currentRecord, dictionary.commonRecord);
        QCOMPARE(dictionary.getRecordsCount(), 0);
    }

    void everyDictionaryHasItsOwnCommonRecordAndLists()
    {
        const OwnedDictionary first;
        const OwnedDictionary second;
        QVERIFY(first.commonRecord != second.commonRecord);
        QVERIFY(first.records != second.records);
        QVERIFY(first.items != second.items);
    }

    void newRecordHasItsDefaults()
    {
        const TCSProRecord record;
        QCOMPARE(record.label, QString());
        QCOMPARE(record.name, QString());
        QCOMPARE(record.recordType, QString());
        QCOMPARE(record.required, QString());
        QCOMPARE(record.maxRecords, 100);
        QCOMPARE(record.recordLen, 0);
    }

    void newItemHasItsDefaults()
    {
        const TCSProItem item;
        QCOMPARE(item.valueSetsCount, 0);
        QCOMPARE(item.label, QString());
        QCOMPARE(item.missingValue, QString());
        QCOMPARE(item.name, QString());
        QCOMPARE(item.notApplicable, QString());
        QCOMPARE(item.dataType, 0);
        QCOMPARE(item.decimals, 0);
        QCOMPARE(item.subItem, 0);
        QCOMPARE(item.length, 0);
        QCOMPARE(item.occurrences, 1);
        QCOMPARE(item.start, 1);
        QCOMPARE(item.decimalChar, false);
        QCOMPARE(item.zeroFill, false);
        QCOMPARE(item.firstOccurrence, 0);
        QVERIFY(!item.record);
        QVERIFY(item.valueSets);
        QVERIFY(item.valueSets->isEmpty());
        QVERIFY(!item.parent());
    }

    void dictionaryAndItemHaveNoMetaObjectOfTheirOwn()
    {
        const OwnedDictionary dictionary;
        const TCSProItem item;
        QCOMPARE(dictionary.metaObject()->className(), "QObject");
        QCOMPARE(item.metaObject()->className(), "QObject");
    }

    void recordIsAPlainStructure() { QVERIFY(!std::is_polymorphic<TCSProRecord>::value); }

    void recordKeepsNoListOfItsItems()
    {
        TCSProRecord record;
        record.name = QStringLiteral("R");
        TCSProItem item;
        item.name = QStringLiteral("I");
        record.addItem(&item);
        record.addItem(nullptr);
        QCOMPARE(record.name, QString("R"));
        QCOMPARE(record.label, QString());
        QCOMPARE(record.recordType, QString());
        QCOMPARE(record.required, QString());
        QCOMPARE(record.maxRecords, 100);
        QCOMPARE(record.recordLen, 0);
        QVERIFY(!item.record);
        QCOMPARE(item.name, QString("I"));
    }

    void itemsAndRecordsAreFoundByIndex()
    {
        OwnedDictionary dictionary({ "[Record]", "Name=R0", "[Record]", "Name=R1", "[Item]", "Name=I0", "[Item]",
                                     "Name=I1", "[Item]", "Name=I2" });
        QCOMPARE(dictionary.getItemsCount(), 3);
        QCOMPARE(dictionary.getItem(0)->name, QString("I0"));
        QCOMPARE(dictionary.getItem(1)->name, QString("I1"));
        QCOMPARE(dictionary.getItem(2)->name, QString("I2"));
        QCOMPARE(dictionary.getItem(2), dictionary.items->at(2));
        QCOMPARE(dictionary.getRecordsCount(), 2);
        QCOMPARE(dictionary.getRecord(0)->name, QString("R0"));
        QCOMPARE(dictionary.getRecord(1)->name, QString("R1"));
        QCOMPARE(dictionary.getRecord(1), dictionary.records->at(1));
    }

    void getRecordsCountStoresTheCount()
    {
        OwnedDictionary dictionary({ "[Record]", "Name=R0", "[Record]", "Name=R1" });
        QCOMPARE(dictionary.recordsCount, 0);
        QCOMPARE(dictionary.getRecordsCount(), 2);
        QCOMPARE(dictionary.recordsCount, 2);
        dictionary.read({ "[Record]" });
        QCOMPARE(dictionary.recordsCount, 2);
        QCOMPARE(dictionary.getRecordsCount(), 3);
        QCOMPARE(dictionary.recordsCount, 3);
    }

    void indexOutsideOfTheListGivesNullAndIsNoFailure_data()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("before") << -1;
        QTest::newRow("size") << 1;
        QTest::newRow("far from the beginning") << std::numeric_limits<int>::max();
        QTest::newRow("far before") << std::numeric_limits<int>::min();
    }

    void indexOutsideOfTheListGivesNullAndIsNoFailure()
    {
        QFETCH(int, index);
        OwnedDictionary dictionary({ "[Record]", "[Item]", "[ValueSet]" });
        TCSProItem *item = dictionary.getItem(0);
        const DebugCapture log;
        const auto error = thrownBy([&] {
            QVERIFY(!dictionary.getItem(index));
            QVERIFY(!dictionary.getRecord(index));
            QVERIFY(!item->getValueSet(index));
        });
        QVERIFY(!error);
        QCOMPARE(log.taken(), QStringList());
        QVERIFY(dictionary.getItem(0) && dictionary.getRecord(0) && item->getValueSet(0));
    }

    void accessorWithoutItsListFailsWithAnIndexText_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("text");
        QTest::newRow("0") << 0 << QString(QChar(u'\0'));
        QTest::newRow("1") << 1 << QStringLiteral("\u0001");
        QTest::newRow("65 reads A") << 65 << QStringLiteral("A");
        QTest::newRow("242") << 242 << QStringLiteral("\u00F2");
        QTest::newRow("8364") << 8364 << QStringLiteral("\u20AC");
    }

    void accessorWithoutItsListFailsWithAnIndexText()
    {
        QFETCH(int, index);
        QFETCH(QString, text);
        checkGetItem(index, text);
        checkGetRecord(index, text);
        checkGetValueSet(index, text);
    }

    void getItemsCountWithoutItsListFailsWithCode101()
    {
        OwnedDictionary dictionary;
        const WithoutList<QList<TCSProItem *>> gone(dictionary.items);
        const DebugCapture log;
        const auto error = thrownBy([&] { dictionary.getItemsCount(); });
        QVERIFY(isNullError(error.get(), QStringLiteral("CSPro")));
        QCOMPARE(log.taken(), QStringList("TCSPro::getItemsCount ERROR CSPro e"));
    }

    void getRecordsCountWithoutItsListFailsWithCode101AndKeepsTheCount()
    {
        OwnedDictionary dictionary({ "[Record]" });
        QCOMPARE(dictionary.getRecordsCount(), 1);
        const WithoutList<QList<TCSProRecord *>> gone(dictionary.records);
        const DebugCapture log;
        const auto error = thrownBy([&] { dictionary.getRecordsCount(); });
        QVERIFY(isNullError(error.get(), QStringLiteral("CSPro")));
        QCOMPARE(log.taken(), QStringList("TCSPro::getRecordsCount ERROR CSPro e"));
        QCOMPARE(dictionary.recordsCount, 1);
    }

    void getValueSetsCountWithoutItsListFailsInSilenceWithCode101()
    {
        TCSProItem item;
        const WithoutList<QList<TCSProValueSet *>> gone(item.valueSets);
        const DebugCapture log;
        const auto error = thrownBy([&] { item.getValueSetsCount(); });
        QVERIFY(isNullError(error.get(), QStringLiteral("CSProItem")));
        QCOMPARE(log.taken(), QStringList());
        QCOMPARE(item.valueSetsCount, 0);
    }

    void getValueSetsCountStoresTheCount()
    {
        TCSProValueSet set;
        TCSProItem item;
        QCOMPARE(item.getValueSetsCount(), 0);
        item.addValueSet(&set);
        QCOMPARE(item.valueSetsCount, 0);
        QCOMPARE(item.getValueSetsCount(), 1);
        QCOMPARE(item.valueSetsCount, 1);
    }

    void getValueSetsCountCountsWhatOthersAppended()
    {
        TCSProValueSet first;
        TCSProValueSet second;
        TCSProItem item;
        item.valueSets->append(&first);
        item.valueSets->append(&second);
        QCOMPARE(item.getValueSetsCount(), 2);
        QCOMPARE(item.getValueSet(0), &first);
        QCOMPARE(item.getValueSet(1), &second);
    }

    void hasValueSetsIsFalseForAnEmptyListAndForNone()
    {
        TCSProValueSet set;
        TCSProItem item;
        QVERIFY(!item.hasValueSets());
        {
            const WithoutList<QList<TCSProValueSet *>> gone(item.valueSets);
            QVERIFY(!item.hasValueSets());
        }
        item.addValueSet(&set);
        QVERIFY(item.hasValueSets());
    }

    void firstValueSetStays()
    {
        TCSProValueSet first;
        TCSProValueSet second;
        TCSProItem item;
        item.addValueSet(&first);
        item.addValueSet(&second);
        QCOMPARE(item.getValueSetsCount(), 1);
        QCOMPARE(item.getValueSet(0), &first);
    }

    void itemWithoutAListOfValueSetsTakesNone()
    {
        TCSProValueSet set;
        auto item = std::make_unique<TCSProItem>();
        delete std::exchange(item->valueSets, nullptr);
        item->addValueSet(&set);
        QVERIFY(!item->valueSets);
        const QPointer<TCSProItem> watch = item.get();
        item.reset(); // does no harm
        QVERIFY(!watch);
    }

    void contentsAreFreedOnce()
    {
        TCSPro dictionary;
        QStringList lines = { "[Record]", "Name=R", "[Item]", "Name=I", "[ValueSet]", "Value=1;one" };
        dictionary.parseLines(&lines);
        const QPointer<TCSProItem> item = dictionary.getItem(0);
        const QPointer<TCSProValueSet> set = item->getValueSet(0);
        for (int time = 0; time < 2; ++time) {
            cspro::freeContents(dictionary);
            QVERIFY(!item && !set);
            QVERIFY(!dictionary.items && !dictionary.records && !dictionary.commonRecord);
            QVERIFY(!dictionary.currentItem && !dictionary.currentRecord);
            QVERIFY(dictionary.recordMap.empty());
        }
    }

    void destroyingADictionaryFreesNoRecordItemOrValueSet()
    {
        auto dictionary = std::make_unique<TCSPro>();
        QStringList lines
            = { "[Record]", "Name=R", "RecordTypeValue='1'", "[Item]", "Name=I", "[ValueSet]", "Value=1;one" };
        dictionary->parseLines(&lines);
        TCSProRecord *common = dictionary->commonRecord;
        TCSProRecord *record = dictionary->getRecord(0);
        const QPointer<TCSProItem> item = dictionary->getItem(0);
        const QPointer<TCSProValueSet> set = item->getValueSet(0);
        const QPointer<TValueSetItem> value = set->getItem(0);
        dictionary.reset();
        QVERIFY(item && set && value);
        QCOMPARE(common->name, QString("Common"));
        QCOMPARE(record->name, QString("R"));
        QCOMPARE(item->name, QString("I"));
        QCOMPARE(item->record, record);
        QCOMPARE(item->getValueSet(0), set.data());
        QCOMPARE(set->getItem(0), value.data());
        QCOMPARE(value->name, QString("one"));
        delete value;
        delete set;
        delete item;
        delete record;
        delete common;
    }

    void destroyingAnItemFreesNoValueSet()
    {
        const auto set = std::make_unique<TCSProValueSet>();
        const QPointer<TCSProValueSet> watch = set.get();
        auto item = std::make_unique<TCSProItem>();
        item->addValueSet(set.get());
        item.reset();
        QVERIFY(watch);
    }

private:
    static bool isNullError(const VpErrorManager *error, const QString &classTag)
    {
        return error && error->getClassName() == classTag && error->getCode() == 101 && error->getText().isEmpty()
            && error->getLine() == 0 && error->catalogueMessage() == "System Error. Parameter Invalid ( NULL )";
    }

    static bool isIndexError(const VpErrorManager *error, const QString &classTag, const QString &text)
    {
        return error && error->getClassName() == classTag && error->getCode() == 211 && error->getText() == text
            && error->getLine() == 0;
    }

    static void checkGetItem(int index, const QString &text)
    {
        OwnedDictionary dictionary;
        const WithoutList<QList<TCSProItem *>> gone(dictionary.items);
        const DebugCapture log;
        const auto error = thrownBy([&] { dictionary.getItem(index); });
        QVERIFY(isIndexError(error.get(), QStringLiteral("CSPro"), text));
        const QStringList expected
            = { QStringLiteral("TCSPro::getItem ERROR CSPro \u00D3"), badIndexMessage(QStringLiteral("CSPro"), text) };
        QCOMPARE(log.taken(), expected);
    }

    static void checkGetRecord(int index, const QString &text)
    {
        OwnedDictionary dictionary;
        const WithoutList<QList<TCSProRecord *>> gone(dictionary.records);
        const DebugCapture log;
        const auto error = thrownBy([&] { dictionary.getRecord(index); });
        QVERIFY(isIndexError(error.get(), QStringLiteral("CSPro"), text));
        const QStringList expected = { QStringLiteral("TCSPro::getRecord ERROR CSPro \u00D3"),
                                       badIndexMessage(QStringLiteral("CSPro"), text) };
        QCOMPARE(log.taken(), expected);
    }

    static void checkGetValueSet(int index, const QString &text)
    {
        TCSProItem item;
        const WithoutList<QList<TCSProValueSet *>> gone(item.valueSets);
        const DebugCapture log;
        const auto error = thrownBy([&] { item.getValueSet(index); });
        QVERIFY(isIndexError(error.get(), QStringLiteral("CSProItem"), text));
        QCOMPARE(log.taken(), QStringList(badIndexMessage(QStringLiteral("CSProItem"), text)));
    }
};

QTEST_GUILESS_MAIN(CSProModelTest)
#include "CSProModelTest.moc"
