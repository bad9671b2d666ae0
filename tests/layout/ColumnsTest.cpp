#include "write/Columns_p.h"
#include "write/Exportable.h"

#include <QTest>

#include <limits>

using namespace vanlayout;

class ColumnsTest : public QObject
{
    Q_OBJECT

private slots:
    void idsOfAllLevelsAboveComeFirst();
    void occurrencesAreNumberedFromOne();
    void subitemsFollowTheirItemAtEachOccurrence();
    void aSubitemThatRepeatsInARepeatedItemHasTwoNumbers();
    void subitemsWithoutAnItemAreSeparate();
    void namesAreUnique();
    void anItemWithoutANameIsNamedByItsPosition();
    void theLabelOfAnOccurrenceHasItsLabelOrNumber();
    void labelsOfSubitemsHaveThoseOfBothOccurrences();
    void labelsOfManyOccurrencesAreFound();
    void valuesAreOfAKind_data();
    void valuesAreOfAKind();
    void moreColumnsThanTheBoundAreRefused_data();
    void moreColumnsThanTheBoundAreRefused();
    void labelsAreCountedForEachCodeAndLanguage();
};

namespace
{

Item itemOf(const QString &name, int start = 0, int length = 1, int occurrences = 1)
{
    Item item;
    item.name = name;
    item.start = start;
    item.length = length;
    item.occurrences = occurrences;
    return item;
}

Item subitemOf(const QString &name, int start, int length, int occurrences = 1)
{
    Item item = itemOf(name, start, length, occurrences);
    item.isSubitem = true;
    return item;
}

Layout layoutOf(const QVector<Item> &items)
{
    Record record;
    record.items = items;
    Level level;
    level.records = { record };
    Layout layout;
    layout.levels = { level };
    return layout;
}

QStringList namesAndStarts(const QVector<Column> &columns)
{
    QStringList texts;
    for (const Column &column : columns)
        texts.append(column.name + QLatin1Char('@') + QString::number(column.start));
    return texts;
}

QStringList columnsOfItems(const QVector<Item> &items)
{
    const Layout layout = layoutOf(items);
    return namesAndStarts(columnsOf(layout, 0, layout.levels.at(0).records.at(0)));
}

} // namespace

void ColumnsTest::idsOfAllLevelsAboveComeFirst()
{
    Layout layout = layoutOf({ itemOf("X", 9) });
    layout.levels[0].ids = { itemOf("HOUSE", 2, 4) };
    layout.levels.append(layout.levels.at(0));
    layout.levels[1].ids = { itemOf("PERSON", 6, 2) };
    const Record &record = layout.levels.at(1).records.at(0);
    const QVector<Column> columns = columnsOf(layout, 1, record);
    QCOMPARE(namesAndStarts(columns), QStringList({ "HOUSE@2", "PERSON@6", "X@9" }));
    QVERIFY(columns.at(0).isId && columns.at(1).isId && !columns.at(2).isId);
    QCOMPARE(columnsOf(layout, 0, layout.levels.at(0).records.at(0)).size(), 2);
    QCOMPARE(namesAndStarts(idColumnsOf(layout.levels.at(1))), QStringList({ "PERSON@6" }));
}

void ColumnsTest::occurrencesAreNumberedFromOne()
{
    QCOMPARE(columnsOfItems({ itemOf("X", 5, 2, 3), itemOf("Y", 11) }),
             QStringList({ "X_1@5", "X_2@7", "X_3@9", "Y@11" }));
    QCOMPARE(columnsOfItems({ itemOf("X", 0, 2, 2) }), QStringList({ "X_1@0", "X_2@0" }));
}

void ColumnsTest::subitemsFollowTheirItemAtEachOccurrence()
{
    QCOMPARE(columnsOfItems({ itemOf("DATE", 5, 6, 2), subitemOf("DAY", 5, 2), subitemOf("YEAR", 9, 2) }),
             QStringList({ "DATE_1@5", "DAY_1@5", "YEAR_1@9", "DATE_2@11", "DAY_2@11", "YEAR_2@15" }));
    QCOMPARE(columnsOfItems({ itemOf("CODES", 5, 6), subitemOf("CODE", 5, 2, 3) }),
             QStringList({ "CODES@5", "CODE_1@5", "CODE_2@7", "CODE_3@9" }));
}

void ColumnsTest::aSubitemThatRepeatsInARepeatedItemHasTwoNumbers()
{
    QCOMPARE(columnsOfItems({ itemOf("G", 1, 4, 2), subitemOf("S", 1, 2, 2) }),
             QStringList({ "G_1@1", "S_1_1@1", "S_1_2@3", "G_2@5", "S_2_1@5", "S_2_2@7" }));
}

void ColumnsTest::subitemsWithoutAnItemAreSeparate()
{
    QCOMPARE(columnsOfItems({ subitemOf("S", 1, 2, 2), subitemOf("T", 5, 1) }),
             QStringList({ "S_1@1", "S_2@3", "T@5" }));
}

void ColumnsTest::namesAreUnique()
{
    QCOMPARE(columnsOfItems({ itemOf("X", 1), itemOf("X", 2), itemOf("X_2", 3), itemOf("X", 4) }),
             QStringList({ "X@1", "X_2@2", "X_2_2@3", "X_3@4" }));
}

void ColumnsTest::anItemWithoutANameIsNamedByItsPosition()
{
    QCOMPARE(columnsOfItems({ itemOf("X", 1), itemOf(QString(), 2) }), QStringList({ "X@1", "V2@2" }));
}

void ColumnsTest::theLabelOfAnOccurrenceHasItsLabelOrNumber()
{
    Item item = itemOf("X", 1, 1, 2);
    item.labels = { { { "EN", "Child" }, { "FR", "Enfant" } } };
    item.occurrenceLabels = { { 2, { { { "EN", "second" }, { "FR", "deuxième" } } } } };
    const Layout layout = layoutOf({ item });
    const QVector<Column> columns = columnsOf(layout, 0, layout.levels.at(0).records.at(0));
    const Labels first = { { { "EN", "Child (1)" }, { "FR", "Enfant (1)" } } };
    const Labels second = { { { "EN", "Child (second)" }, { "FR", "Enfant (deuxième)" } } };
    QCOMPARE(labelsOf(columns.at(0)), first);
    QCOMPARE(labelsOf(columns.at(1)), second);

    const Layout plain = layoutOf({ itemOf("Y") });
    QVERIFY(labelsOf(columnsOf(plain, 0, plain.levels.at(0).records.at(0)).at(0)).isEmpty());
}

void ColumnsTest::labelsOfSubitemsHaveThoseOfBothOccurrences()
{
    const auto labelled = [](Item item, const QString &label, const QVector<OccurrenceLabel> &labels) {
        item.labels = { { { QString(), label } } };
        item.occurrenceLabels = labels;
        return item;
    };
    const auto label = [](int occurrence, const QString &text) {
        return OccurrenceLabel{ occurrence, { { { QString(), text } } } };
    };
    const Layout layout = layoutOf(
        { labelled(itemOf("G", 1, 4, 2), "Group", { label(2, "second"), label(2, "again"), label(3, "too many") }),
          labelled(subitemOf("S", 1, 2, 2), "Part", { label(1, "left") }) });
    QStringList texts;
    const QVector<Column> columns = columnsOf(layout, 0, layout.levels.at(0).records.at(0));
    for (const Column &column : columns)
        texts.append(labelsOf(column).primary());
    QCOMPARE(texts,
             QStringList({ "Group (1)", "Part (1, left)", "Part (1, 2)", "Group (second)", "Part (second, left)",
                           "Part (second, 2)" }));
}

void ColumnsTest::labelsOfManyOccurrencesAreFound()
{
    constexpr int count = 200000;
    Item item = itemOf("X", 1, 1, count);
    item.labels = { { { QString(), "L" } } };
    for (int occurrence = count; occurrence > 0; --occurrence)
        item.occurrenceLabels.append({ occurrence, { { { QString(), QString::number(-occurrence) } } } });
    const Layout layout = layoutOf({ item });
    const QVector<Column> columns = columnsOf(layout, 0, layout.levels.at(0).records.at(0));
    QCOMPARE(columns.size(), count);
    for (int i = 0; i < count; ++i)
        QCOMPARE(labelsOf(columns.at(i)).primary(), QStringLiteral("L (-%1)").arg(i + 1));
}

Q_DECLARE_METATYPE(vanlayout::ValueKind)
Q_DECLARE_METATYPE(vanlayout::Item)

void ColumnsTest::valuesAreOfAKind_data()
{
    QTest::addColumn<Item>("item");
    QTest::addColumn<ValueKind>("kind");
    const auto typed = [](const QString &type, int decimals, Storage storage) {
        Item item;
        item.type = type;
        item.decimals = decimals;
        item.storage = storage;
        return item;
    };
    QTest::newRow("digits") << typed("numeric", 0, Storage::None) << ValueKind::Whole;
    QTest::newRow("decimals") << typed("numeric", 2, Storage::None) << ValueKind::Number;
    QTest::newRow("integers") << typed("numeric", 0, Storage::Int8) << ValueKind::Whole;
    QTest::newRow("doubles may have decimals") << typed("numeric", 0, Storage::Double) << ValueKind::Number;
    QTest::newRow("text") << typed("alpha", 0, Storage::None) << ValueKind::Text;
    QTest::newRow("string") << typed("alpha", 0, Storage::String) << ValueKind::Text;
    QTest::newRow("image") << typed("image", 0, Storage::None) << ValueKind::Binary;
}

void ColumnsTest::valuesAreOfAKind()
{
    QFETCH(Item, item);
    QTEST(kindOf(item), "kind");
}

void ColumnsTest::moreColumnsThanTheBoundAreRefused_data()
{
    QTest::addColumn<int>("occurrences");
    QTest::addColumn<int>("subOccurrences");
    QTest::addColumn<int>("values");
    QTest::addColumn<QString>("problem");
    const int most = std::numeric_limits<int>::max();
    const QString columns = "has more than 1000000 variables, counting each occurrence";
    const QString values = "has more than 4000000 value labels, counting those of each occurrence, "
                           "code and language";
    QTest::newRow("as many as may be") << 499999 << 1 << 0 << QString();
    QTest::newRow("one more") << 500000 << 1 << 0 << columns;
    QTest::newRow("as many as there are") << most << most << 0 << columns;
    QTest::newRow("value labels that may be") << 4 << 1 << 1000000 << QString();
    QTest::newRow("more value labels") << 5 << 1 << 1000000 << values;
}

void ColumnsTest::moreColumnsThanTheBoundAreRefused()
{
    QFETCH(int, occurrences);
    QFETCH(int, subOccurrences);
    QFETCH(int, values);
    Layout layout = layoutOf({ itemOf("X", 1, 1, occurrences), subitemOf("S", 1, 1, subOccurrences) });
    layout.levels[0].ids = { itemOf("ID", 1, 1), itemOf("ID2", 1, 1) };
    ValueSet set;
    set.values.resize(values);
    layout.levels[0].records[0].items[0].valueSets = { set };
    QTEST(exportProblem(layout), "problem");
}

void ColumnsTest::labelsAreCountedForEachCodeAndLanguage()
{
    Value value;
    value.ranges.resize(2000);
    value.labels.parts.resize(2000);
    ValueSet set;
    set.values = { value };
    Item item = itemOf("X");
    item.valueSets = { set };
    QCOMPARE(exportProblem(layoutOf({ item })), QString());
    item.valueSets[0].values[0].ranges.resize(2001);
    QVERIFY(!exportProblem(layoutOf({ item })).isEmpty());
}

QTEST_MAIN(ColumnsTest)
#include "ColumnsTest.moc"
