#include "layout/MadeLayout.h"

#include "search/SharedSets.h"

#include <QtTest>

using namespace vanlayout;

namespace
{

using Values = QVector<Value>;

Values yesAndNo()
{
    return { made::value("1", "Yes"), made::value("2", "No") };
}

Value inTwoLanguages(const QString &code, const QString &first, const QString &second, const QString &language)
{
    Value value = made::value(code, first);
    value.labels.parts.append({ language, second });
    return value;
}

} // namespace

Q_DECLARE_METATYPE(Values)

class SharedSetsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void identityIsThatOfCodesAndLabels_data()
    {
        QTest::addColumn<Values>("values");
        QTest::addColumn<bool>("isSame");
        Values noted = yesAndNo();
        noted[0].note = "note";
        noted[0].image = "yes.png";
        noted[0].textColor = "#ff0000";
        noted[0].labels.parts[0].language = "EN";
        const auto labels = [](const QString &first, const QString &second) {
            return Values{ made::value("1", first), made::value("2", second) };
        };
        QTest::newRow("other facts") << noted << true;
        QTest::newRow("other order") << Values{ made::value("2", "No"), made::value("1", "Yes") } << true;
        QTest::newRow("other label") << labels("Yes", "Never") << false;
        QTest::newRow("other case") << labels("Yes", "no") << false;
        QTest::newRow("blank") << labels("Yes", "No ") << false;
        QTest::newRow("exchanged labels") << labels("No", "Yes") << false;
        QTest::newRow("other code") << Values{ made::value("1", "Yes"), made::value("02", "No") } << false;
        QTest::newRow("range") << Values{ made::value("1", "Yes"), made::range("2", "3", "No") } << false;
        QTest::newRow("special") << Values{ made::value("1", "Yes"), made::value("2", "No", Special::Missing) }
                                 << false;
        QTest::newRow("value more") << yesAndNo() + Values{ made::value("3", "Maybe") } << false;
        QTest::newRow("value twice") << yesAndNo() + Values{ made::value("2", "No") } << false;
        QTest::newRow("second language") << Values{ inTwoLanguages("1", "Yes", "Oui", "FR"), made::value("2", "No") }
                                         << false;
        QTest::newRow("without code") << Values{ made::value("1", "Yes"), made::value(QString(), "2No") } << false;
    }
    void identityIsThatOfCodesAndLabels()
    {
        QFETCH(Values, values);
        QFETCH(bool, isSame);
        QCOMPARE(identityOf(values) == identityOf(yesAndNo()), isSame);
    }

    void identityIsStable()
    {
        QCOMPARE(identityOf(yesAndNo()), QStringLiteral("01b7a2e57a9f"));
        QCOMPARE(identityOf({}), QString());
        QCOMPARE(identityOf({ inTwoLanguages("1", "Yes", "Oui", "FR") }),
                 identityOf({ inTwoLanguages("1", "Yes", "Oui", "FRA") }));
        QVERIFY(identityOf({ inTwoLanguages("1", "Yes", "Oui", "FR") })
                != identityOf({ inTwoLanguages("1", "YesOui", "", "FR") }));
        Value several = made::value("1", "Yes");
        several.ranges.append({ "2", QString() });
        QCOMPARE(identityOf({ several }), identityOf({ made::value("1", "Yes"), made::value("2", "Yes") }));
        Value none = made::value("1", "Yes");
        none.ranges.clear();
        QVERIFY(identityOf({ none }) != identityOf({ made::value(QString(), "Yes") }));
    }

    void identicalSetsOfALayoutAreOne()
    {
        Layout layout = made::layout({ made::item("A", 1, yesAndNo()), made::item("B", 1, { made::value("1") }),
                                       made::item("C", 1, yesAndNo()), made::item("D") });
        layout.file = "a.dcf";
        layout.levels[0].name = "L";
        layout.levels[0].ids = { made::item("ID", 1, yesAndNo()) };
        layout.levels[0].records[0].items[2].valueSets[0].name = "OTHER";
        layout.levels[0].records[0].items[3].valueSets = { made::valueSet({}) };
        const QVector<SharedSet> sets = valueSetsOf(layout);
        QCOMPARE(sets.size(), 2);
        QCOMPARE(sets.at(0).id, identityOf(yesAndNo()));
        QVERIFY(sets.at(0).values == yesAndNo());
        QCOMPARE(sets.at(0).uses.size(), 3);
        const ValueSetUse &first = sets.at(0).uses.at(0);
        QCOMPARE(QStringList({ first.file, first.level, first.record, first.item, first.valueSet }),
                 QStringList({ "a.dcf", "L", "(ids)", "ID", "VS1" }));
        QCOMPARE(sets.at(0).uses.at(1).record, QStringLiteral("R"));
        QCOMPARE(sets.at(0).uses.at(2).item, QStringLiteral("C"));
        QCOMPARE(sets.at(0).uses.at(2).valueSet, QStringLiteral("OTHER"));
        QCOMPARE(sets.at(1).uses.size(), 1);
    }

    void setsOfLayoutsAreMergedAndSortedByUses()
    {
        SharedSets sets;
        const auto add = [&](const QString &file, const QVector<Item> &items) {
            Layout layout = made::layout(items);
            layout.file = file;
            sets.add(valueSetsOf(layout));
        };
        add("1", { made::item("A", 1, { made::value("1") }), made::item("B", 1, { made::value("2") }) });
        add("2", { made::item("C", 1, yesAndNo()), made::item("D", 1, { made::value("2") }) });
        const QVector<SharedSet> all = sets.mostUsedFirst();
        QCOMPARE(all.size(), 3);
        QCOMPARE(all.at(0).id, identityOf({ made::value("2") }));
        QCOMPARE(all.at(0).uses.at(0).file + all.at(0).uses.at(1).file, QStringLiteral("12"));
        QCOMPARE(all.at(1).id, identityOf({ made::value("1") }));
        QCOMPARE(all.at(2).id, identityOf(yesAndNo()));
    }
};

QTEST_APPLESS_MAIN(SharedSetsTest)
#include "SharedSetsTest.moc"
