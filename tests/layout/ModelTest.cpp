#include "model/Layout.h"

#include <QTest>

#include <limits>

using namespace vanlayout;

namespace
{

using Change = void (*)(Layout &);

// A layout with one element of each kind.
Layout wholeLayout()
{
    Value value;
    value.labels = { { { "EN", "One" } } };
    value.ranges = { { "1", "" } };
    ValueSet set;
    set.values = { value };
    Item item;
    item.valueSets = { set };
    item.occurrenceLabels = { OccurrenceLabel() };
    item.missing = { Range() };
    item.capture = Capture();
    Record record;
    record.items = { item };
    Level level;
    level.records = { record };
    Layout layout;
    layout.languages = { Language() };
    layout.recordType = RecordTypeColumns();
    layout.security = Security();
    layout.levels = { level };
    Relation relation;
    relation.links = { RelationLink() };
    layout.relations = { relation };
    layout.extras = { Extra() };
    layout.problems = { Problem() };
    return layout;
}

Record &recordOf(Layout &layout)
{
    return layout.levels[0].records[0];
}
Item &itemOf(Layout &layout)
{
    return recordOf(layout).items[0];
}
ValueSet &setOf(Layout &layout)
{
    return itemOf(layout).valueSets[0];
}
Value &valueOf(Layout &layout)
{
    return setOf(layout).values[0];
}

} // namespace

Q_DECLARE_METATYPE(Change)

class ModelTest : public QObject
{
    Q_OBJECT

private slots:
    void labelFallsBackToTheFirstPart_data();
    void labelFallsBackToTheFirstPart();
    void occurrencesFollowEachOther_data();
    void occurrencesFollowEachOther();
    void layoutsAreEqualWhenAllMembersAre();
    void layoutsDifferWhereOneMemberDoes_data();
    void layoutsDifferWhereOneMemberDoes();
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

void ModelTest::layoutsDifferWhereOneMemberDoes_data()
{
    QTest::addColumn<Change>("change");
    const auto add = [](const char *name, Change change) { QTest::newRow(name) << change; };
    // clang-format off
    add("layout: file", [](Layout &l) { l.file = "x"; });
    add("layout: container", [](Layout &l) { l.container = "x"; });
    add("layout: formatVersion", [](Layout &l) { l.formatVersion = "x"; });
    add("layout: encoding", [](Layout &l) { l.encoding = "x"; });
    add("layout: name", [](Layout &l) { l.name = "x"; });
    add("layout: note", [](Layout &l) { l.note = "x"; });
    add("layout: weight", [](Layout &l) { l.weight = "x"; });
    add("layout: format", [](Layout &l) { l.format = Format::Sas; });
    add("layout: labels", [](Layout &l) { l.labels.parts.append(Label()); });
    add("layout: aliases", [](Layout &l) { l.aliases.append("x"); });
    add("layout: languages", [](Layout &l) { l.languages.clear(); });
    add("language: name", [](Layout &l) { l.languages[0].name = "x"; });
    add("language: label", [](Layout &l) { l.languages[0].label = "x"; });
    add("layout: recordType", [](Layout &l) { l.recordType.reset(); });
    add("recordType: start", [](Layout &l) { l.recordType->start = 1; });
    add("recordType: length", [](Layout &l) { l.recordType->length = 1; });
    add("layout: relativePositions", [](Layout &l) { l.relativePositions = false; });
    add("layout: readOptimization", [](Layout &l) { l.readOptimization = false; });
    add("layout: enableBinaryItems", [](Layout &l) { l.enableBinaryItems = false; });
    add("layout: decimalMark", [](Layout &l) { l.decimalMark = true; });
    add("layout: zeroFill", [](Layout &l) { l.zeroFill = true; });
    add("layout: editable", [](Layout &l) { l.editable = false; });
    add("layout: security", [](Layout &l) { l.security.reset(); });
    add("security: settings", [](Layout &l) { l.security->settings = ""; });
    add("security: allowDataViewerModifications", [](Layout &l) { l.security->allowDataViewerModifications = false; });
    add("security: allowExport", [](Layout &l) { l.security->allowExport = false; });
    add("security: cachedPasswordMinutes", [](Layout &l) { l.security->cachedPasswordMinutes = 0; });
    add("layout: valueSetImages", [](Layout &l) { l.valueSetImages = ""; });
    add("layout: created", [](Layout &l) { l.created = ""; });
    add("layout: modified", [](Layout &l) { l.modified = ""; });
    add("layout: rows", [](Layout &l) { l.rows = 0; });
    add("layout: levels", [](Layout &l) { l.levels.clear(); });
    add("layout: relations", [](Layout &l) { l.relations.clear(); });
    add("layout: extras", [](Layout &l) { l.extras.clear(); });
    add("layout: problems", [](Layout &l) { l.problems.clear(); });
    add("level: name", [](Layout &l) { l.levels[0].name = "x"; });
    add("level: note", [](Layout &l) { l.levels[0].note = "x"; });
    add("level: labels", [](Layout &l) { l.levels[0].labels.parts.append(Label()); });
    add("level: aliases", [](Layout &l) { l.levels[0].aliases.append("x"); });
    add("level: ids", [](Layout &l) { l.levels[0].ids.append(Item()); });
    add("level: records", [](Layout &l) { l.levels[0].records.clear(); });
    add("record: name", [](Layout &l) { recordOf(l).name = "x"; });
    add("record: note", [](Layout &l) { recordOf(l).note = "x"; });
    add("record: recordType", [](Layout &l) { recordOf(l).recordType = "x"; });
    add("record: labels", [](Layout &l) { recordOf(l).labels.parts.append(Label()); });
    add("record: aliases", [](Layout &l) { recordOf(l).aliases.append("x"); });
    add("record: required", [](Layout &l) { recordOf(l).required = false; });
    add("record: maximum", [](Layout &l) { recordOf(l).maximum = 2; });
    add("record: length", [](Layout &l) { recordOf(l).length = 0; });
    add("record: occurrenceLabels", [](Layout &l) { recordOf(l).occurrenceLabels.append(OccurrenceLabel()); });
    add("record: items", [](Layout &l) { recordOf(l).items.clear(); });
    add("item: name", [](Layout &l) { itemOf(l).name = "x"; });
    add("item: note", [](Layout &l) { itemOf(l).note = "x"; });
    add("item: type", [](Layout &l) { itemOf(l).type = "x"; });
    add("item: subitemOf", [](Layout &l) { itemOf(l).subitemOf = "x"; });
    add("item: format", [](Layout &l) { itemOf(l).format = "x"; });
    add("item: labels", [](Layout &l) { itemOf(l).labels.parts.append(Label()); });
    add("item: aliases", [](Layout &l) { itemOf(l).aliases.append("x"); });
    add("item: start", [](Layout &l) { itemOf(l).start = 7; });
    add("item: length", [](Layout &l) { itemOf(l).length = 7; });
    add("item: occurrences", [](Layout &l) { itemOf(l).occurrences = 7; });
    add("item: decimals", [](Layout &l) { itemOf(l).decimals = 7; });
    add("item: displayWidth", [](Layout &l) { itemOf(l).displayWidth = 7; });
    add("item: isSubitem", [](Layout &l) { itemOf(l).isSubitem = true; });
    add("item: decimalMark", [](Layout &l) { itemOf(l).decimalMark = true; });
    add("item: zeroFill", [](Layout &l) { itemOf(l).zeroFill = true; });
    add("item: occurrenceLabels", [](Layout &l) { itemOf(l).occurrenceLabels.clear(); });
    add("occurrence label: occurrence", [](Layout &l) { itemOf(l).occurrenceLabels[0].occurrence = 2; });
    add("occurrence label: labels", [](Layout &l) { itemOf(l).occurrenceLabels[0].labels.parts.append(Label()); });
    add("item: capture", [](Layout &l) { itemOf(l).capture.reset(); });
    add("capture: type", [](Layout &l) { itemOf(l).capture->type = "x"; });
    add("capture: dateFormat", [](Layout &l) { itemOf(l).capture->dateFormat = "x"; });
    add("item: valueSets", [](Layout &l) { itemOf(l).valueSets.clear(); });
    add("item: storage", [](Layout &l) { itemOf(l).storage = Storage::Int8; });
    add("item: measure", [](Layout &l) { itemOf(l).measure = Measure::Scale; });
    add("item: alignment", [](Layout &l) { itemOf(l).alignment = Alignment::Left; });
    add("item: missing", [](Layout &l) { itemOf(l).missing.clear(); });
    add("range: from", [](Layout &l) { itemOf(l).missing[0].from = "x"; });
    add("range: to", [](Layout &l) { itemOf(l).missing[0].to = "x"; });
    add("value set: name", [](Layout &l) { setOf(l).name = "x"; });
    add("value set: note", [](Layout &l) { setOf(l).note = "x"; });
    add("value set: link", [](Layout &l) { setOf(l).link = "x"; });
    add("value set: labels", [](Layout &l) { setOf(l).labels.parts.append(Label()); });
    add("value set: aliases", [](Layout &l) { setOf(l).aliases.append("x"); });
    add("value set: values", [](Layout &l) { setOf(l).values.clear(); });
    add("value: note", [](Layout &l) { valueOf(l).note = "x"; });
    add("value: image", [](Layout &l) { valueOf(l).image = "x"; });
    add("value: textColor", [](Layout &l) { valueOf(l).textColor = "x"; });
    add("value: labels", [](Layout &l) { valueOf(l).labels.parts.clear(); });
    add("label: text", [](Layout &l) { valueOf(l).labels.parts[0].text = "x"; });
    add("label: language", [](Layout &l) { valueOf(l).labels.parts[0].language = "x"; });
    add("value: special", [](Layout &l) { valueOf(l).special = Special::Refused; });
    add("value: ranges", [](Layout &l) { valueOf(l).ranges.clear(); });
    add("relation: name", [](Layout &l) { l.relations[0].name = "x"; });
    add("relation: primary", [](Layout &l) { l.relations[0].primary = "x"; });
    add("relation: aliases", [](Layout &l) { l.relations[0].aliases.append("x"); });
    add("relation: links", [](Layout &l) { l.relations[0].links.clear(); });
    add("link: primaryLink", [](Layout &l) { l.relations[0].links[0].primaryLink = "x"; });
    add("link: secondary", [](Layout &l) { l.relations[0].links[0].secondary = "x"; });
    add("link: secondaryLink", [](Layout &l) { l.relations[0].links[0].secondaryLink = "x"; });
    add("extra: path", [](Layout &l) { l.extras[0].path = "x"; });
    add("extra: key", [](Layout &l) { l.extras[0].key = "x"; });
    add("extra: value", [](Layout &l) { l.extras[0].value = "x"; });
    add("extra: line", [](Layout &l) { l.extras[0].line = 1; });
    add("problem: id", [](Layout &l) { l.problems[0].id = "x"; });
    add("problem: path", [](Layout &l) { l.problems[0].path = "x"; });
    add("problem: message", [](Layout &l) { l.problems[0].message = "x"; });
    add("problem: line", [](Layout &l) { l.problems[0].line = 1; });
    add("problem: severity", [](Layout &l) { l.problems[0].severity = Severity::Info; });
    // clang-format on
}

void ModelTest::layoutsDifferWhereOneMemberDoes()
{
    QFETCH(Change, change);
    const Layout layout = wholeLayout();
    Layout other = layout;
    QVERIFY(layout == other);
    change(other);
    QVERIFY(layout != other);
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
    QCOMPARE(
        QStringList({ wordOf(Format::None), wordOf(Format::CSProText), wordOf(Format::CSProJson), wordOf(Format::Ddi),
                      wordOf(Format::Spss), wordOf(Format::SpssPortable), wordOf(Format::Stata), wordOf(Format::Sas),
                      wordOf(Format::SasXport) }),
        QStringList({ "", "cspro-text", "cspro-json", "ddi", "spss", "spss-portable", "stata", "sas", "sas-xport" }));
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
