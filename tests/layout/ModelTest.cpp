#include "model/Layout.h"

#include <QTest>

#include <limits>

using namespace vanlayout;

class ModelTest : public QObject
{
    Q_OBJECT

private slots:
    void labelFallsBackToTheFirstPart_data();
    void labelFallsBackToTheFirstPart();
    void occurrencesFollowEachOther_data();
    void occurrencesFollowEachOther();
    void layoutsAreEqualWhenAllMembersAre();
    void aLayoutWithAnErrorIsNotRead();
    void everyWordIsThatOfTheJsonForm();
};

void ModelTest::labelFallsBackToTheFirstPart_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("text");
    QTest::newRow("its own language") << "FR"
                                      << "Maison";
    QTest::newRow("without regard to case") << "fr"
                                            << "Maison";
    QTest::newRow("absent language") << "ES"
                                     << "House";
    QTest::newRow("empty text") << "PT"
                                << "House";
}

void ModelTest::labelFallsBackToTheFirstPart()
{
    QFETCH(QString, language);
    const Labels labels = { { { "EN", "House" }, { "FR", "Maison" }, { "PT", "" } } };
    QTEST(labels.in(language), "text");
    QVERIFY(Labels().in(language).isEmpty());
}

void ModelTest::occurrencesFollowEachOther_data()
{
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("occurrences");
    QTest::addColumn<int>("parentOccurrences");
    QTest::addColumn<int>("occurrence");
    QTest::addColumn<int>("column");
    QTest::newRow("first") << 5 << 3 << 0 << 1 << 5;
    QTest::newRow("third") << 5 << 3 << 0 << 3 << 9;
    QTest::newRow("a subitem repeats with its item") << 5 << 1 << 3 << 3 << 25;
    QTest::newRow("a subitem repeats itself") << 5 << 3 << 1 << 3 << 9;
    QTest::newRow("no columns") << 0 << 3 << 0 << 3 << 0;
    const int max = std::numeric_limits<int>::max();
    QTest::newRow("beyond the largest column") << max << 3 << 0 << 3 << max;
}

void ModelTest::occurrencesFollowEachOther()
{
    QFETCH(int, start);
    QFETCH(int, occurrences);
    QFETCH(int, parentOccurrences);
    QFETCH(int, occurrence);
    Item parent;
    parent.length = 10;
    parent.occurrences = parentOccurrences;
    Item item;
    item.start = start;
    item.length = 2;
    item.occurrences = occurrences;
    QTEST(startOf(item, occurrence, parentOccurrences > 0 ? &parent : nullptr), "column");
}

void ModelTest::layoutsAreEqualWhenAllMembersAre()
{
    Value value;
    value.ranges = { { "1", "" } };
    ValueSet set;
    set.values = { value };
    Item item;
    item.valueSets = { set };
    Record record;
    record.items = { item };
    Level level;
    level.records = { record };
    Layout layout;
    layout.levels = { level };
    Layout other = layout;
    QVERIFY(layout == other);
    other.levels[0].records[0].items[0].valueSets[0].values[0].ranges[0].to = "2";
    QVERIFY(layout != other);
    other = layout;
    other.recordType = RecordTypeColumns{ 1, 1 };
    QVERIFY(layout.recordType != other.recordType);
}

void ModelTest::aLayoutWithAnErrorIsNotRead()
{
    Layout layout;
    layout.problems = { { Severity::Warning, "a", 0, "", "" } };
    QVERIFY(layout.isRead());
    layout.problems.append({ Severity::Error, "b", 0, "", "" });
    QVERIFY(!layout.isRead());
    QCOMPARE(layout.error()->id, QString("b"));
}

void ModelTest::everyWordIsThatOfTheJsonForm()
{
    QCOMPARE(QStringList({ wordOf(Format::None), wordOf(Format::CSProText), wordOf(Format::CSProJson),
                           wordOf(Format::Spss), wordOf(Format::SpssPortable), wordOf(Format::Stata),
                           wordOf(Format::Sas), wordOf(Format::SasXport) }),
             QStringList({ "", "cspro-text", "cspro-json", "spss", "spss-portable", "stata", "sas", "sas-xport" }));
    QCOMPARE(QStringList({ wordOf(Special::None), wordOf(Special::Missing), wordOf(Special::NotApplicable),
                           wordOf(Special::Refused), wordOf(Special::Default) }),
             QStringList({ "", "missing", "notApplicable", "refused", "default" }));
    QCOMPARE(QStringList({ wordOf(Storage::None), wordOf(Storage::Int8), wordOf(Storage::Int16), wordOf(Storage::Int32),
                           wordOf(Storage::Float), wordOf(Storage::Double), wordOf(Storage::String) }),
             QStringList({ "", "int8", "int16", "int32", "float", "double", "string" }));
    QCOMPARE(QStringList(
                 { wordOf(Measure::None), wordOf(Measure::Nominal), wordOf(Measure::Ordinal), wordOf(Measure::Scale) }),
             QStringList({ "", "nominal", "ordinal", "scale" }));
    QCOMPARE(QStringList({ wordOf(Alignment::None), wordOf(Alignment::Left), wordOf(Alignment::Center),
                           wordOf(Alignment::Right) }),
             QStringList({ "", "left", "center", "right" }));
    QCOMPARE(QStringList({ wordOf(Severity::Error), wordOf(Severity::Warning), wordOf(Severity::Info) }),
             QStringList({ "error", "warning", "info" }));
}

QTEST_APPLESS_MAIN(ModelTest)
#include "ModelTest.moc"
