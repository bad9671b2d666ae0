#include "cspro/ValueSet_p.h"
#include "support/DebugCapture.h"
#include "support/Thrown.h"
#include "support/Throws.h"

#include <QMetaProperty>
#include <QPointer>
#include <QTest>

#include <memory>
#include <stdexcept>
#include <utility>

namespace
{

// A set that frees its values, which a plain set does not.
class OwnedSet : public TCSProValueSet
{
public:
    explicit OwnedSet(const QStringList &codes = {})
    {
        for (const QString &code : codes)
            add(code);
    }
    OwnedSet(const OwnedSet &) = delete;
    OwnedSet &operator=(const OwnedSet &) = delete;
    ~OwnedSet() override { qDeleteAll(*items); }

    TValueSetItem *add(const QString &code, const QString &valueName = QString())
    {
        auto item = std::make_unique<TValueSetItem>();
        item->code = code;
        item->name = valueName;
        addItem(item.get());
        return item.release();
    }
    QStringList codes() const
    {
        QStringList texts;
        for (const TValueSetItem *item : qAsConst(*items))
            texts.append(item->code);
        return texts;
    }
    QStringList names() const
    {
        QStringList texts;
        for (const TValueSetItem *item : qAsConst(*items))
            texts.append(item->name);
        return texts;
    }
};

TValueSetItem *withCode(TValueSetItem &item, const QString &code)
{
    item.code = code;
    return &item;
}

} // namespace

class ValueSetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newSetHasItsDefaults()
    {
        const TCSProValueSet set;
        QCOMPARE(set.label, QString());
        QCOMPARE(set.name, QString());
        QCOMPARE(set.extra, QString());
        QCOMPARE(set.isNumeric, true);
        QVERIFY(set.items);
        QVERIFY(set.items->isEmpty());
        QCOMPARE(set.Count(), 0);
        QVERIFY(!set.parent());
    }

    void newValueHasItsDefaults()
    {
        const TValueSetItem value;
        QCOMPARE(value.name, QString());
        QCOMPARE(value.code, QStringLiteral("\u0003"));
        QCOMPARE(value.type, 0);
        QCOMPARE(value.special, false);
        QVERIFY(!value.parent());
    }

    void setHasAMetaObjectOfItsOwn()
    {
        const QMetaObject &meta = TCSProValueSet::staticMetaObject;
        QCOMPARE(meta.className(), "TCSProValueSet");
        QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
        TCSProValueSet set;
        const QObject &object = set;
        QCOMPARE(object.metaObject(), &meta);
        QVERIFY(set.inherits("TCSProValueSet"));
        QCOMPARE(set.qt_metacast("TCSProValueSet"), static_cast<void *>(&set));
    }

    void valueHasNoMetaObjectOfItsOwn()
    {
        const TValueSetItem value;
        QCOMPARE(value.metaObject()->className(), "QObject");
    }

    void countIsTheOnePropertyAndReadOnly()
    {
        const QMetaObject &meta = TCSProValueSet::staticMetaObject;
        QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 1);
        const QMetaProperty count = meta.property(meta.propertyOffset());
        QCOMPARE(count.name(), "Count");
        QCOMPARE(count.userType(), int(QMetaType::Int));
        QVERIFY(count.isReadable());
        QVERIFY(!count.isWritable());
        QVERIFY(!count.isResettable());
        QVERIFY(!count.hasNotifySignal());
        QCOMPARE(meta.methodCount(), meta.methodOffset());
        OwnedSet set({ "1", "2", "3" });
        QCOMPARE(set.property("Count"), QVariant(3));
        QVERIFY(!set.setProperty("Count", 5));
        QCOMPARE(set.Count(), 3);
    }

    void addItemAppends()
    {
        OwnedSet set;
        TValueSetItem *first = set.add(QStringLiteral("9"));
        TValueSetItem *second = set.add(QStringLiteral("1"));
        TValueSetItem *third = set.add(QStringLiteral("9"));
        QCOMPARE(set.Count(), 3);
        QCOMPARE(set.getItem(0), first);
        QCOMPARE(set.getItem(1), second);
        QCOMPARE(set.getItem(2), third);
    }

    void indexOutsideOfTheSetGivesNull_data()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("before") << -1;
        QTest::newRow("size") << 1;
        QTest::newRow("far from the beginning") << 2147483647;
    }

    void indexOutsideOfTheSetGivesNull()
    {
        QFETCH(int, index);
        const OwnedSet set({ "1" });
        const DebugCapture log;
        const auto error = thrownBy([&] { QVERIFY(!set.getItem(index)); });
        QVERIFY(!error);
        QCOMPARE(log.taken(), QStringList());
        QVERIFY(set.getItem(0));
    }

    void countWithoutAListFailsInSilenceWithCode101()
    {
        TCSProValueSet set;
        QList<TValueSetItem *> *list = set.items;
        set.items = nullptr;
        const DebugCapture log;
        const auto error = thrownBy([&] { set.Count(); });
        set.items = list;
        QVERIFY(error);
        QCOMPARE(error->getClassName(), QString("CSProValueSet"));
        QCOMPARE(error->getCode(), 101);
        QCOMPARE(error->getText(), QString());
        QCOMPARE(log.taken(), QStringList());
    }

    void getItemWithoutAListFailsWithAnIndexText_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("text");
        QTest::newRow("0") << 0 << QString(QChar(u'\0'));
        QTest::newRow("2") << 2 << QStringLiteral("\u0002");
        QTest::newRow("66 reads B") << 66 << QStringLiteral("B");
    }

    void getItemWithoutAListFailsWithAnIndexText()
    {
        QFETCH(int, index);
        QFETCH(QString, text);
        TCSProValueSet set;
        QList<TValueSetItem *> *list = set.items;
        set.items = nullptr;
        const DebugCapture log;
        const auto error = thrownBy([&] { set.getItem(index); });
        set.items = list;
        QVERIFY(error);
        QCOMPARE(error->getClassName(), QString("CSProValueSet"));
        QCOMPARE(error->getCode(), 211);
        QCOMPARE(error->getText(), text);
        // the text of the error and no further line
        QCOMPARE(log.taken(),
                 QStringList(QStringLiteral("Class : CSProValueSet\r\nError : \u00D3\r\n\r\nMessage : "
                                            "Unknow or not set error\r\n[%1 ]")
                                 .arg(text)));
    }

    void destroyingASetFreesNoValue()
    {
        const auto value = std::make_unique<TValueSetItem>();
        const QPointer<TValueSetItem> watch = value.get();
        auto set = std::make_unique<TCSProValueSet>();
        set->addItem(value.get());
        set.reset();
        QVERIFY(watch);
    }

    void setWithoutItsListIsDestroyedWithoutHarm()
    {
        auto set = std::make_unique<TCSProValueSet>();
        delete std::exchange(set->items, nullptr);
        const QPointer<TCSProValueSet> watch = set.get();
        set.reset();
        QVERIFY(!watch);
    }

    void decimalCodeIsDigitsPointDigits_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<bool>("decimal");

        // clang-format off
        QTest::newRow("decimal")                 << "2.5"    << true;
        QTest::newRow("more digits")             << "120.75" << true;
        QTest::newRow("no digits before")        << ".5"     << true;
        QTest::newRow("no digits after")         << "2."     << true;
        QTest::newRow("lone point")              << "."      << true;
        QTest::newRow("zeros after")             << "2.0"    << true;
        QTest::newRow("digits of other scripts") << QStringLiteral("\u0662.\u0665") << true;
        QTest::newRow("integer")                 << "25"     << false;
        QTest::newRow("nothing")                 << ""       << false;
        QTest::newRow("minus sign")              << "-2.5"   << false;
        QTest::newRow("plus sign")               << "+2.5"   << false;
        QTest::newRow("blank before")            << " 2.5"   << false;
        QTest::newRow("blank after")             << "2.5 "   << false;
        QTest::newRow("two points")              << "2.5.1"  << false;
        QTest::newRow("points together")         << ".."     << false;
        QTest::newRow("comma")                   << "2,5"    << false;
        QTest::newRow("exponent")                << "2.5e1"  << false;
        QTest::newRow("letters after")           << "2.5a"   << false;
        QTest::newRow("letters before")          << "a2.5"   << false;
        QTest::newRow("text")                    << "abc"    << false;
        QTest::newRow("line feed after")         << "2.5\n"  << false;
        QTest::newRow("fraction character")      << QStringLiteral("2.\u00BD") << false;
        // clang-format on
    }

    void decimalCodeIsDigitsPointDigits()
    {
        QFETCH(QString, code);
        QFETCH(bool, decimal);
        QCOMPARE(IsDecimalCode(code), decimal);
        const OwnedSet set({ code });
        QCOMPARE(set.checkCodes(0), !decimal);
    }

    void integerCodeIsWhatConvertsToAnInt_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<bool>("integer");

        // clang-format off
        QTest::newRow("digits")              << "25"          << true;
        QTest::newRow("zero")                << "0"           << true;
        QTest::newRow("leading zeros")       << "007"         << true;
        QTest::newRow("minus sign")          << "-3"          << true;
        QTest::newRow("plus sign")           << "+3"          << true;
        QTest::newRow("blank before")        << " 3"          << true;
        QTest::newRow("blank after")         << "3 "          << true;
        QTest::newRow("largest int")         << "2147483647"  << true;
        QTest::newRow("smallest int")        << "-2147483648" << true;
        QTest::newRow("above the largest")   << "2147483648"  << false;
        QTest::newRow("below the smallest")  << "-2147483649" << false;
        QTest::newRow("nothing")             << ""            << false;
        QTest::newRow("blank only")          << " "           << false;
        QTest::newRow("decimal")             << "2.5"         << false;
        QTest::newRow("zeros after")         << "2.0"         << false;
        QTest::newRow("leading colon")       << ":5"          << false;
        QTest::newRow("trailing apostrophe") << "1'"          << false;
        QTest::newRow("two numbers")         << "1 2"         << false;
        QTest::newRow("letter")              << "A"           << false;
        QTest::newRow("hexadecimal")         << "0x1F"        << false;
        QTest::newRow("group separator")     << "1,000"       << false;
        // clang-format on
    }

    void integerCodeIsWhatConvertsToAnInt()
    {
        QFETCH(QString, code);
        QFETCH(bool, integer);
        QCOMPARE(IsIntegerCode(code), integer);
        const OwnedSet set({ code });
        QCOMPARE(set.checkCodes(1), integer);
    }

    void checkOfASetLooksAtEveryCode_data()
    {
        QTest::addColumn<QStringList>("codes");
        QTest::addColumn<bool>("noDecimal");
        QTest::addColumn<bool>("allIntegers");

        // clang-format off
        QTest::newRow("no codes")              << QStringList{}                << true  << true;
        QTest::newRow("integers")              << QStringList{"1", "2"}        << true  << true;
        QTest::newRow("decimal first")         << QStringList{"1.5", "2"}      << false << false;
        QTest::newRow("decimal last")          << QStringList{"1", "2", "2.5"} << false << false;
        QTest::newRow("signed decimal")        << QStringList{"1", "-2.5"}     << true  << false;
        QTest::newRow("text in the middle")    << QStringList{"1", "x", "2"}   << true  << false;
        QTest::newRow("text and decimal")      << QStringList{"x", ".", "2"}   << false << false;
        // clang-format on
    }

    void checkOfASetLooksAtEveryCode()
    {
        QFETCH(QStringList, codes);
        QFETCH(bool, noDecimal);
        QFETCH(bool, allIntegers);
        const OwnedSet set(codes);
        QCOMPARE(set.checkCodes(0), noDecimal);
        QCOMPARE(set.checkCodes(1), allIntegers);
    }

    void checkOfNoKnownModeDemandsNothing()
    {
        const OwnedSet set({ "1.5", "x", "" });
        QVERIFY(!set.checkCodes(0));
        QVERIFY(!set.checkCodes(1));
        for (const int mode : { -1, 2, 99 })
            QVERIFY(set.checkCodes(mode));
    }

    void setThatIsNotNumericPassesEveryCheck()
    {
        OwnedSet set({ "1.5", "x", "" });
        set.isNumeric = false;
        QVERIFY(set.checkCodes(0));
        QVERIFY(set.checkCodes(1));
    }

    void codesThatAreNoIntegersBecomeZeroAndAreNotRounded()
    {
        OwnedSet set;
        set.add(QStringLiteral("2.5"), QStringLiteral("a"));
        set.add(QStringLiteral("7"), QStringLiteral("b"));
        set.add(QStringLiteral("x"), QStringLiteral("c"));
        set.add(QString(), QStringLiteral("d"));
        set.add(QStringLiteral("-2.5"), QStringLiteral("e"));
        set.add(QStringLiteral(" 3"), QStringLiteral("f"));
        set.add(QStringLiteral("3.0"), QStringLiteral("g"));
        set.add(QStringLiteral("2147483648"), QStringLiteral("h"));
        set.convertToInteger();
        QCOMPARE(set.codes(), QStringList({ "0", "7", "0", "0", "0", " 3", "0", "0" }));
        QCOMPARE(set.names(), QStringList({ "a", "b", "c", "d", "e", "f", "g", "h" }));
    }

    void setThatIsNotNumericIsNotConverted()
    {
        OwnedSet set({ "2.5", "x" });
        set.isNumeric = false;
        set.convertToInteger();
        QCOMPARE(set.codes(), QStringList({ "2.5", "x" }));
    }

    void numericSetIsSortedByNumberAndAnotherByText_data()
    {
        QTest::addColumn<QStringList>("codes");
        QTest::addColumn<QStringList>("byNumber");
        QTest::addColumn<QStringList>("byText");

        // clang-format off
        QTest::newRow("no codes")          << QStringList{}                      << QStringList{}                      << QStringList{};
        QTest::newRow("one code")          << QStringList{"5"}                   << QStringList{"5"}                   << QStringList{"5"};
        QTest::newRow("sorted")            << QStringList{"1", "2", "3"}         << QStringList{"1", "2", "3"}         << QStringList{"1", "2", "3"};
        QTest::newRow("descending")        << QStringList{"3", "2", "1"}         << QStringList{"1", "2", "3"}         << QStringList{"1", "2", "3"};
        QTest::newRow("two digits")        << QStringList{"10", "9", "1"}        << QStringList{"1", "9", "10"}        << QStringList{"1", "10", "9"};
        QTest::newRow("negative")          << QStringList{"1", "-2", "0", "-10"} << QStringList{"-10", "-2", "0", "1"} << QStringList{"-10", "-2", "0", "1"};
        QTest::newRow("blank counts as text") << QStringList{"2", " 3", "1"}     << QStringList{"1", "2", " 3"}        << QStringList{" 3", "1", "2"};
        QTest::newRow("leading zeros")     << QStringList{"2", "03", "1"}        << QStringList{"1", "2", "03"}        << QStringList{"03", "1", "2"};
        QTest::newRow("extremes")          << QStringList{"2147483647", "0", "-2147483648"} << QStringList{"-2147483648", "0", "2147483647"} << QStringList{"-2147483648", "0", "2147483647"};
        // clang-format on
    }

    void numericSetIsSortedByNumberAndAnotherByText()
    {
        QFETCH(QStringList, codes);
        QFETCH(QStringList, byNumber);
        QFETCH(QStringList, byText);
        OwnedSet numeric(codes);
        numeric.sortItems();
        QCOMPARE(numeric.codes(), byNumber);
        OwnedSet text(codes);
        text.isNumeric = false;
        text.sortItems();
        QCOMPARE(text.codes(), byText);
    }

    // A null value is less and greater than every other value, so its final position depends on the sort algorithm.
    void numericSortTakesNullValuesAsTheComparisonDoes_data()
    {
        QTest::addColumn<QStringList>("codes");
        QTest::newRow("alone") << QStringList{ QString() };
        QTest::newRow("first") << QStringList{ QString(), "2", "1" };
        QTest::newRow("in the middle") << QStringList{ "2", QString(), "1" };
        QTest::newRow("last") << QStringList{ "2", "1", QString() };
        QTest::newRow("sorted codes") << QStringList{ "1", QString(), "2" };
        QTest::newRow("two") << QStringList{ QString(), "1", QString() };
        QTest::newRow("none but null") << QStringList{ QString(), QString(), QString() };
        QTest::newRow("with a code that is no integer") << QStringList{ "x", QString(), "1" };
    }
    void numericSortTakesNullValuesAsTheComparisonDoes()
    {
        QFETCH(QStringList, codes);
        OwnedSet set(codes);
        for (TValueSetItem *&item : *set.items) {
            if (item->code.isNull())
                delete std::exchange(item, nullptr);
        }
        QList<TValueSetItem *> expected = *set.items;
        std::stable_sort(expected.begin(), expected.end(), CompareNumericCodes);
        QVERIFY(set.checkCodes(0));
        QCOMPARE(set.checkCodes(1), !codes.contains("x"));
        set.sortItems();
        QCOMPARE(*set.items, expected);
        set.convertToInteger();
        QCOMPARE(set.items->size(), codes.size());
    }

    void longNumericSetWithNullValuesIsSorted()
    {
        TCSProValueSet set;
        for (int i = 0; i < 1000; ++i) {
            auto *item = i % 3 ? new TValueSetItem : nullptr;
            if (item)
                item->code = QString::number(i * 7919 % 1000);
            set.addItem(item);
        }
        QList<TValueSetItem *> expected = *set.items;
        std::stable_sort(expected.begin(), expected.end(), CompareNumericCodes);
        set.sortItems();
        QCOMPARE(*set.items, expected);
        qDeleteAll(*set.items);
    }

    void textSortRefusesNullValues()
    {
        TCSProValueSet set;
        TValueSetItem item;
        set.isNumeric = false;
        set.addItem(&item);
        set.addItem(nullptr);
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, set.sortItems());
    }

    void textIsSortedByCharacterCode()
    {
        OwnedSet set({ "b", "a", "B", "A", QStringLiteral("\u00E1"), "", "a ", "ab" });
        set.isNumeric = false;
        set.sortItems();
        QCOMPARE(set.codes(), QStringList({ "", "A", "B", "a", "a ", "ab", "b", QStringLiteral("\u00E1") }));
    }

    void equalCodesKeepTheirOrder_data()
    {
        QTest::addColumn<bool>("isNumeric");
        QTest::newRow("numeric") << true;
        QTest::newRow("text") << false;
    }

    void equalCodesKeepTheirOrder()
    {
        QFETCH(bool, isNumeric);
        OwnedSet set;
        set.isNumeric = isNumeric;
        QStringList expected;
        for (int i = 99; i >= 0; --i)
            set.add(QString::number(i % 3), QString::number(i));
        for (int code = 0; code < 3; ++code) {
            for (int i = 99; i >= 0; --i) {
                if (i % 3 == code)
                    expected.append(QString::number(i));
            }
        }
        set.sortItems();
        QCOMPARE(set.names(), expected);
    }

    void equalNumbersOfDifferentTextKeepTheirOrder()
    {
        OwnedSet set({ "2", "01", "1", " 1", "+1", "0" });
        set.sortItems();
        QCOMPARE(set.codes(), QStringList({ "0", "01", "1", " 1", "+1", "2" }));
    }

    void sortingCodesThatAreNoIntegersLosesNone()
    {
        QStringList codes;
        for (int i = 0; i < 300; ++i)
            codes.append(i % 7 == 0 ? "x" + QString::number(i) : QString::number((i * 37) % 101));
        OwnedSet set(codes);
        set.sortItems();
        QStringList sorted = set.codes();
        sorted.sort();
        codes.sort();
        QCOMPARE(sorted, codes);
    }

    void compareCodesOrdersByCharacterCode_data()
    {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<bool>("before");
        QTest::newRow("10 is before 9") << "10"
                                        << "9" << true;
        QTest::newRow("9 is not before 10") << "9"
                                            << "10" << false;
        QTest::newRow("equal") << "5"
                               << "5" << false;
        QTest::newRow("upper before lower case") << "B"
                                                 << "a" << true;
        QTest::newRow("nothing before anything") << ""
                                                 << "0" << true;
        QTest::newRow("blank before digit") << " 9"
                                            << "1" << true;
        QTest::newRow("longer after its beginning") << "a"
                                                    << "ab" << true;
    }

    void compareCodesOrdersByCharacterCode()
    {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(bool, before);
        TValueSetItem first;
        TValueSetItem second;
        QCOMPARE(CompareCodes(withCode(first, a), withCode(second, b)), before);
    }

    void compareCodesThrowsForANullPointer_data()
    {
        QTest::addColumn<bool>("firstIsNull");
        QTest::addColumn<bool>("secondIsNull");
        QTest::newRow("first") << true << false;
        QTest::newRow("second") << false << true;
        QTest::newRow("both") << true << true;
    }

    void compareCodesThrowsForANullPointer()
    {
        QFETCH(bool, firstIsNull);
        QFETCH(bool, secondIsNull);
        const TValueSetItem item;
        const DebugCapture log;
        QString words;
        try {
            CompareCodes(firstIsNull ? nullptr : &item, secondIsNull ? nullptr : &item);
        } catch (const std::invalid_argument &error) {
            words = QLatin1String(error.what());
        }
        QCOMPARE(words, QString("Null pointer passed to CompareCodes"));
        QCOMPARE(log.taken(), QStringList());
    }

    void compareNumericCodesOrdersByNumber_data()
    {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<bool>("before");
        QTest::newRow("9 is before 10") << "9"
                                        << "10" << true;
        QTest::newRow("10 is not before 9") << "10"
                                            << "9" << false;
        QTest::newRow("equal") << "5"
                               << "5" << false;
        QTest::newRow("equal numbers") << "05"
                                       << "5" << false;
        QTest::newRow("negative") << "-3"
                                  << "-2" << true;
        QTest::newRow("blanks") << " 3"
                                << "2" << false;
        QTest::newRow("extremes") << "-2147483648"
                                  << "2147483647" << true;
        QTest::newRow("first is text") << "x"
                                       << "1" << true;
        QTest::newRow("second is text") << "1"
                                        << "x" << true;
        QTest::newRow("both are text") << "x"
                                       << "x" << true;
        QTest::newRow("first is decimal") << "2.5"
                                          << "1" << true;
        QTest::newRow("second is decimal") << "3"
                                           << "2.5" << true;
        QTest::newRow("second is empty") << "3"
                                         << "" << true;
        QTest::newRow("first is beyond an int") << "2147483648"
                                                << "1" << true;
    }

    void compareNumericCodesOrdersByNumber()
    {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(bool, before);
        TValueSetItem first;
        TValueSetItem second;
        QCOMPARE(CompareNumericCodes(withCode(first, a), withCode(second, b)), before);
    }

    void compareNumericCodesIsTrueForANullPointer()
    {
        TValueSetItem item;
        withCode(item, QStringLiteral("1"));
        QVERIFY(CompareNumericCodes(nullptr, &item));
        QVERIFY(CompareNumericCodes(&item, nullptr));
        QVERIFY(CompareNumericCodes(nullptr, nullptr));
    }
};

QTEST_GUILESS_MAIN(ValueSetTest)
#include "ValueSetTest.moc"
