#include "write/Frictionless.h"

#include "layout/MadeLayout.h"

#include <QTest>

using namespace vanlayout;

Q_DECLARE_METATYPE(vanlayout::Item)

class FrictionlessTest : public QObject
{
    Q_OBJECT

private slots:
    void aPackageHasAResourceARecord();
    void namesOfResourcesAreLegal();
    void aRecordWithoutColumnsHasNoResource();
    void keysAreThoseOfTheTables();
    void types_data();
    void types();
    void constraints_data();
    void constraints();
    void categories_data();
    void categories();
    void labelsThatAreNoCategoriesAreKept_data();
    void labelsThatAreNoCategoriesAreKept();
    void onlyOrdinalMeasuresAreOrdered_data();
    void onlyOrdinalMeasuresAreOrdered();
    void missingValuesHaveTheirLabels_data();
    void missingValuesHaveTheirLabels();
    void textsAreInOneLanguage();
    void theTitleIsThatOfTheFileOrTheGivenOne();
    void hostileTextsStayTexts();
    void aDeviceThatIsFullIsReported();
};

namespace
{

QJsonObject package(const Layout &layout, const FrictionlessOptions &options = {})
{
    return QJsonDocument::fromJson(made::written(writeFrictionless, layout, options)).object();
}

QJsonArray resourcesOf(const Layout &layout)
{
    return package(layout).value("resources").toArray();
}

QJsonObject json(const QByteArray &text)
{
    return QJsonDocument::fromJson(text).object();
}

// The field of an item after the id.
QJsonObject fieldOf(const Item &item)
{
    return resourcesOf(made::layout({ item })).at(0)["schema"]["fields"].toArray().at(1).toObject();
}

// The members of an object that another object also has.
QJsonObject same(const QJsonObject &object, const QJsonObject &wanted)
{
    QJsonObject result;
    for (auto member = wanted.begin(); member != wanted.end(); ++member)
        result.insert(member.key(), object.value(member.key()));
    return result;
}

Item withMeasure(Item item, Measure measure)
{
    item.measure = measure;
    return item;
}

Item withMissing(Item item, const QVector<Range> &missing)
{
    item.missing = missing;
    return item;
}

Item withDecimals(Item item, int decimals)
{
    item.decimals = decimals;
    return item;
}

} // namespace

void FrictionlessTest::aPackageHasAResourceARecord()
{
    Layout layout = made::layout({ made::item("X") });
    layout.note = "About";
    Record &record = layout.levels[0].records[0];
    record.labels = made::labels("Record");
    record.note = "Note";
    record.items[0].labels = made::labels("Label");
    record.items[0].note = "Why";
    const QJsonObject expected = json(R"({
        "$schema": "https://datapackage.org/profiles/2.0/datapackage.json", "description": "About", "resources": [
            {"name": "r", "type": "table", "path": "R.csv", "title": "Record", "description": "Note",
             "format": "csv", "mediatype": "text/csv", "schema": {
                "$schema": "https://datapackage.org/profiles/2.0/tableschema.json", "fields": [
                    {"name": "ID", "type": "integer", "constraints": {"required": true}},
                    {"name": "X", "type": "integer", "title": "Label", "description": "Why"}],
                "primaryKey": ["ID"]}}]})");
    QCOMPARE(package(layout), expected);
}

void FrictionlessTest::namesOfResourcesAreLegal()
{
    Layout layout;
    layout.levels = { made::level({ made::item("ID") },
                                  { made::record("../A b"), made::record("Person"), made::record("PERSON") }) };
    QStringList names;
    const QJsonArray resources = resourcesOf(layout);
    for (const QJsonValue &resource : resources)
        names.append(resource["name"].toString() + ' ' + resource["path"].toString());
    QCOMPARE(names, QStringList({ "___a_b ___A_b.csv", "person Person.csv", "person_2 PERSON_2.csv" }));
}

void FrictionlessTest::aRecordWithoutColumnsHasNoResource()
{
    Layout layout;
    layout.levels = { made::level({}, { made::record("A"), made::record("B", { made::item("X") }) }) };
    const QJsonArray resources = resourcesOf(layout);
    QCOMPARE(resources.size(), 1);
    QCOMPARE(resources.at(0)["name"].toString(), QString("b"));
}

void FrictionlessTest::keysAreThoseOfTheTables()
{
    Layout layout = made::layout({});
    layout.levels[0].records.append(made::record("Person", {}, 20));
    const QJsonValue schema = resourcesOf(layout).at(1)["schema"];
    QVERIFY(schema["primaryKey"].isUndefined());
    const QJsonArray expected = QJsonDocument::fromJson(R"([{"fields": ["ID"],
        "reference": {"resource": "r", "fields": ["ID"]}}])")
                                    .array();
    QCOMPARE(schema["foreignKeys"].toArray(), expected);
    QVERIFY(resourcesOf(layout).at(0)["schema"]["foreignKeys"].isUndefined());
}

void FrictionlessTest::types_data()
{
    QTest::addColumn<Item>("item");
    QTest::addColumn<QString>("type");
    Item image = made::item("X", 1);
    image.type = "image";
    QTest::newRow("whole") << made::item("X") << "integer ";
    QTest::newRow("decimals") << withDecimals(made::item("X"), 1) << "number ";
    QTest::newRow("stored") << made::stored("X") << "number ";
    QTest::newRow("text") << made::text("X") << "string ";
    QTest::newRow("image") << image << "any ";
    QTest::newRow("date of digits") << made::captured(made::item("X", 8), "YYYYMMDD") << "date %Y%m%d";
    QTest::newRow("date of a text") << made::captured(made::text("X", 8), "DDMMYYYY") << "date %d%m%Y";
    QTest::newRow("date without zeros") << made::captured(made::item("X", 8), "DDMMYYYY") << "integer ";
    QTest::newRow("SPSS date") << made::stored("X", "EDATE10") << "date ";
    QTest::newRow("Stata date and time") << made::stored("X", "%tc") << "datetime ";
    QTest::newRow("Stata month") << made::stored("X", "%tm") << "number ";
}

void FrictionlessTest::types()
{
    QFETCH(Item, item);
    const QJsonObject field = fieldOf(item);
    QTEST(field.value("type").toString() + ' ' + field.value("format").toString(), "type");
}

void FrictionlessTest::constraints_data()
{
    QTest::addColumn<Item>("item");
    QTest::addColumn<QByteArray>("expected");
    const Value ages = made::range("0", "110");
    QTest::newRow("none") << made::item("X") << QByteArray("{}");
    QTest::newRow("text") << made::text("X", 7) << QByteArray(R"({"maxLength": 7})");
    QTest::newRow("text of any length") << made::text("X", 0) << QByteArray("{}");
    QTest::newRow("range") << made::item("X", 3, { ages }) << QByteArray(R"({"minimum": 0, "maximum": 110})");
    QTest::newRow("range and missing code") << made::item("X", 3, { ages, made::value("999", "", Special::Missing) })
                                            << QByteArray(R"({"minimum": 0, "maximum": 110})");
    QTest::newRow("range and code") << made::item("X", 3, { ages, made::value("998") }) << QByteArray("{}");
    QTest::newRow("range of decimals") << withDecimals(made::item("X", 3, { made::range("0.5", "1.5") }), 1)
                                       << QByteArray(R"({"minimum": 0.5, "maximum": 1.5})");
    QTest::newRow("bound that would be rounded")
        << made::item("X", 20, { made::range("1", "99999999999999999999") }) << QByteArray(R"({"minimum": 1})");
    QTest::newRow("date") << made::captured(made::text("X", 8), "DDMMYYYY") << QByteArray("{}");
}

void FrictionlessTest::constraints()
{
    QFETCH(Item, item);
    QFETCH(QByteArray, expected);
    QCOMPARE(fieldOf(item).value("constraints").toObject(), json(expected));
}

void FrictionlessTest::categories_data()
{
    QTest::addColumn<Item>("item");
    QTest::addColumn<QByteArray>("expected");
    const QVector<Value> yesNo = { made::value("1", "Yes"), made::value("02", "No") };
    const QByteArray whole
        = R"({"type": "integer", "categories": [{"value": 1, "label": "Yes"}, {"value": 2, "label": "No"}]})";
    const QByteArray none = R"({"categories": null})";
    QVector<Value> withMissingCode = yesNo;
    withMissingCode.append(made::value("9", "Unknown", Special::Missing));
    QTest::newRow("codes") << made::item("X", 2, yesNo) << whole;
    QTest::newRow("missing code") << made::item("X", 2, withMissingCode) << whole;
    QTest::newRow("code without a label")
        << made::item("X", 2, { made::value("1") }) << QByteArray(R"({"categories": [{"value": 1}]})");
    QTest::newRow("code twice") << made::item("X", 2, { made::value("1", "Yes"), made::value("01", "Again") })
                                << QByteArray(R"({"categories": [{"value": 1, "label": "Yes"}]})");
    QTest::newRow("text") << made::text("X", 2, { made::value("a ", "A") })
                          << QByteArray(R"({"type": "string", "categories": [{"value": "a", "label": "A"}]})");
    QTest::newRow("empty text") << made::text("X", 2, { made::value("  ", "No") })
                                << QByteArray(R"({"type": "string", "categories": [{"value": "", "label": "No"}]})");
    QTest::newRow("digits of a text") << made::text("X", 2, { made::value("01", "A") })
                                      << QByteArray(
                                             R"({"type": "string", "categories": [{"value": "01", "label": "A"}]})");
    QTest::newRow("range") << made::item("X", 2, { made::range("1", "5"), made::value("9") }) << none;
    QTest::newRow("decimals") << withDecimals(made::item("X", 2, yesNo), 1) << none;
    QTest::newRow("missing codes only") << made::item("X", 2, { made::value("9", "", Special::Missing) }) << none;
    QTest::newRow("beyond a double") << made::item("X", 20, { made::value("9007199254740993") }) << none;
    QTest::newRow("no number") << made::item("X", 20, { made::value("1"), made::value("x") }) << none;
    QTest::newRow("stored") << made::stored("X", "F8.0", yesNo) << whole;
    QTest::newRow("nominal") << withMeasure(made::stored("X", "F8.0", yesNo), Measure::Nominal) << whole;
    QTest::newRow("scale") << withMeasure(made::stored("X", "F8.0", yesNo), Measure::Scale)
                           << QByteArray(R"({"type": "number", "categories": null})");
    QTest::newRow("stored with decimals shown")
        << withDecimals(made::stored("X", "F8.2", yesNo), 2) << QByteArray(R"({"type": "number", "categories": null})");
    QTest::newRow("stored with a code that has decimals")
        << made::stored("X", "F8.0", { made::value("0.5") }) << QByteArray(R"({"type": "number", "categories": null})");
    QTest::newRow("date") << made::stored("X", "DATE11", yesNo)
                          << QByteArray(R"({"type": "date", "categories": null})");
    QTest::newRow("user-missing code") << withMissing(
        made::stored("X", "F8.0", { yesNo.at(0), made::value("9", "None") }), { { "9", "" } })
                                       << QByteArray(R"({"categories": [{"value": 1, "label": "Yes"}]})");
}

void FrictionlessTest::categories()
{
    QFETCH(Item, item);
    QFETCH(QByteArray, expected);
    const QJsonObject field = fieldOf(item);
    QJsonObject wanted = json(expected);
    if (wanted.value("categories").isNull()) {
        wanted.remove("categories");
        QVERIFY(!field.contains("categories"));
    }
    QCOMPARE(same(field, wanted), wanted);
}

void FrictionlessTest::labelsThatAreNoCategoriesAreKept_data()
{
    QTest::addColumn<Item>("item");
    QTest::addColumn<QByteArray>("expected");
    const QVector<Value> ages = { made::range("0", "97", "Years"), made::value("98", "Older"),
                                  made::value("99", "Unknown", Special::Missing) };
    QTest::newRow("ranges") << made::item("X", 2, ages)
                            << QByteArray(R"([{"minimum": "0", "maximum": "97", "label": "Years"},
                                              {"value": "98", "label": "Older"}])");
    QTest::newRow("decimals") << withDecimals(made::item("X", 2, { made::value("1.50", "Half") }), 2)
                              << QByteArray(R"([{"value": "1.50", "label": "Half"}])");
    QTest::newRow("categories") << made::item("X", 2, { made::value("1", "One") }) << QByteArray("[]");
    QTest::newRow("no labels") << made::item("X", 2, { made::range("1", "5") }) << QByteArray("[]");
    QTest::newRow("missing labels only") << made::item("X", 2, { ages.at(2), made::range("1", "5") })
                                         << QByteArray("[]");
}

void FrictionlessTest::labelsThatAreNoCategoriesAreKept()
{
    QFETCH(Item, item);
    QFETCH(QByteArray, expected);
    const QJsonArray wanted = QJsonDocument::fromJson(expected).array();
    QCOMPARE(fieldOf(item).value("valueLabels").toArray(), wanted);
    QCOMPARE(fieldOf(item).contains("valueLabels"), !wanted.isEmpty());
}

Q_DECLARE_METATYPE(vanlayout::Measure)

void FrictionlessTest::onlyOrdinalMeasuresAreOrdered_data()
{
    QTest::addColumn<Measure>("measure");
    QTest::addColumn<bool>("isOrdered");
    QTest::newRow("unknown") << Measure::None << false;
    QTest::newRow("nominal") << Measure::Nominal << false;
    QTest::newRow("ordinal") << Measure::Ordinal << true;
    QTest::newRow("scale") << Measure::Scale << false;
}

void FrictionlessTest::onlyOrdinalMeasuresAreOrdered()
{
    QFETCH(Measure, measure);
    QFETCH(bool, isOrdered);
    const Item item = withMeasure(made::stored("X", "F8.0", { made::value("1") }), measure);
    QCOMPARE(fieldOf(item).value("categoriesOrdered").toBool(), isOrdered);
    QCOMPARE(fieldOf(item).contains("categoriesOrdered"), isOrdered);
    QVERIFY(!fieldOf(withMeasure(made::stored("X"), measure)).contains("categoriesOrdered"));
}

void FrictionlessTest::missingValuesHaveTheirLabels_data()
{
    QTest::addColumn<Item>("item");
    QTest::addColumn<QByteArray>("expected");
    const Value unknown = made::value("9", "Unknown", Special::Missing);
    Item filled = made::item("X", 2, { unknown });
    filled.zeroFill = true;
    QTest::newRow("none") << made::item("X", 2, { made::value("1") }) << QByteArray("[]");
    QTest::newRow("special") << made::item("X", 2, { unknown, made::value("8", "", Special::Refused) })
                             << QByteArray(R"([{"value": "", "label": ""}, {"value": "9", "label": "Unknown"},
                                {"value": "8", "label": "refused"}])");
    QTest::newRow("blank") << made::item("X", 2, { made::value("  ", "No one", Special::NotApplicable), unknown })
                           << QByteArray(R"([{"value": "", "label": "No one"}, {"value": "9", "label": "Unknown"}])");
    QTest::newRow("filled with zeros") << filled
                                       << QByteArray(R"([{"value": "", "label": ""}, {"value": "9", "label": "Unknown"},
                                {"value": "09", "label": "Unknown"}])");
    QTest::newRow("user-missing") << withMissing(made::stored("X", "F8.0", { made::value("99", "Refused") }),
                                                 { { "98", "" }, { "99", "" } })
                                  << QByteArray(R"([{"value": "", "label": ""}, {"value": "99", "label": "Refused"},
                                {"value": "98", "label": ""}])");
    QTest::newRow("labelled in a range") << withMissing(made::stored("X", "F8.0", { made::value("99", "Refused") }),
                                                        { { "90", "inf" } })
                                         << QByteArray(R"([{"value": "", "label": ""},
                                {"value": "99", "label": "Refused"}])");
}

void FrictionlessTest::missingValuesHaveTheirLabels()
{
    QFETCH(Item, item);
    QFETCH(QByteArray, expected);
    const QJsonArray wanted = QJsonDocument::fromJson(expected).array();
    QCOMPARE(fieldOf(item).value("missingValues").toArray(), wanted);
    QCOMPARE(fieldOf(item).contains("missingValues"), !wanted.isEmpty());
}

void FrictionlessTest::textsAreInOneLanguage()
{
    const Labels labels = { { { "EN", "Yes" }, { "FR", "Oui" } } };
    Item item = made::item("X", 1, { made::value("1"), made::value("9", "", Special::Missing) });
    item.labels = labels;
    item.valueSets[0].values[0].labels = labels;
    item.valueSets[0].values[1].labels = labels;
    Layout layout = made::layout({ item });
    layout.labels = labels;
    layout.levels[0].records[0].labels = labels;
    for (const char *code : { "", "FR", "ES" }) {
        const QString language = code;
        FrictionlessOptions options;
        options.language = language;
        const QByteArray bytes = made::written(writeFrictionless, layout, options);
        QCOMPARE(bytes.count(language == "FR" ? "\"Oui\"" : "\"Yes\""), 5);
        QCOMPARE(bytes.count("\"Oui\"") + bytes.count("\"Yes\""), 5);
    }
}

void FrictionlessTest::theTitleIsThatOfTheFileOrTheGivenOne()
{
    Layout layout = made::layout({});
    layout.file = "directory/survey.dcf";
    QVERIFY(!package(layout).contains("title"));
    layout.name = "SURVEY";
    QCOMPARE(package(layout).value("title").toString(), QString("SURVEY"));
    FrictionlessOptions options;
    options.title = "Given";
    QCOMPARE(package(layout, options).value("title").toString(), QString("Given"));
}

void FrictionlessTest::hostileTextsStayTexts()
{
    const QString hostile = QString("\"}],\n\t../ ") + QChar(0x85) + QChar(0) + QChar(1);
    Layout layout = made::layout({ made::text(hostile, 1, { made::value(hostile, hostile) }) });
    layout.levels[0].records[0].name = hostile;
    const QByteArray bytes = made::written(writeFrictionless, layout, FrictionlessOptions());
    QVERIFY(!bytes.contains(QString(QChar(0x85)).toUtf8()) && !bytes.contains('\0'));
    const QJsonValue resource = QJsonDocument::fromJson(bytes).object().value("resources").toArray().at(0);
    QCOMPARE(resource["path"].toString(), QString("_____________.csv"));
    const QJsonValue field = resource["schema"]["fields"].toArray().at(1);
    QCOMPARE(field["name"].toString(), hostile);
    QCOMPARE(field["categories"].toArray().at(0)["value"].toString(), hostile);
    QCOMPARE(field["categories"].toArray().at(0)["label"].toString(), hostile);
}

void FrictionlessTest::aDeviceThatIsFullIsReported()
{
    made::FullDevice device;
    device.open(QIODevice::WriteOnly);
    QVERIFY(!writeFrictionless(made::layout({}), device));
}

QTEST_MAIN(FrictionlessTest)
#include "FrictionlessTest.moc"
