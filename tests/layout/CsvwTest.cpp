#include "write/Csvw.h"

#include "layout/MadeLayout.h"

#include <QTest>

using namespace vanlayout;

Q_DECLARE_METATYPE(vanlayout::Item)
Q_DECLARE_METATYPE(vanlayout::Labels)

class CsvwTest : public QObject
{
    Q_OBJECT

private slots:
    void aTableGroupHasATableARecord();
    void filesAreNamedSafely_data();
    void filesAreNamedSafely();
    void columnNamesAreVariablesOfUriTemplates_data();
    void columnNamesAreVariablesOfUriTemplates();
    void titlesAreTheNameAndTheLabelsByLanguage_data();
    void titlesAreTheNameAndTheLabelsByLanguage();
    void datatypes_data();
    void datatypes();
    void datesAreDates_data();
    void datesAreDates();
    void numbersOfOtherTimesSaySo();
    void oneRangeIsABound_data();
    void oneRangeIsABound();
    void missingCodesAreNull_data();
    void missingCodesAreNull();
    void idsAreRequired();
    void recordsOfOneRowACaseAreKeyed();
    void rowsReferToTheHeadOfTheirLevel();
    void withoutIdsThereAreNoKeys();
    void aLevelWithoutIdsHasNoKey();
    void aLevelWithOnlyIdsHasATable();
    void valueSetsAreTermSets();
    void textsInLanguagesHaveTheirTag();
    void theTitleIsThatOfTheFileOrTheGivenOne();
    void hostileTextsStayTexts();
    void aDeviceThatIsFullIsReported();
};

namespace
{

QJsonObject csvw(const Layout &layout, const CsvwOptions &options = {})
{
    return QJsonDocument::fromJson(made::written(writeCsvw, layout, options)).object();
}

QJsonArray tablesOf(const Layout &layout)
{
    return csvw(layout).value("tables").toArray();
}

QJsonObject schemaOf(const QJsonValue &table)
{
    return table.toObject().value("tableSchema").toObject();
}

QJsonArray columnsOf(const QJsonValue &table)
{
    return schemaOf(table).value("columns").toArray();
}

// The column of an item after the id.
QJsonObject columnOf(const Item &item)
{
    return columnsOf(tablesOf(made::layout({ item })).at(0)).at(1).toObject();
}

QJsonObject json(const QByteArray &text)
{
    return QJsonDocument::fromJson(text).object();
}

QJsonArray array(const QStringList &texts)
{
    return QJsonArray::fromStringList(texts);
}

// A household with persons, and below it a level of visits.
Layout household()
{
    Layout layout;
    layout.levels = { made::level({ made::item("HOUSE") },
                                  { made::record("PERSON", { made::item("AGE") }, 20),
                                    made::record("REMARK", {}, 1, false), made::record("HOUSING") }),
                      made::level({ made::item("VISIT") }, { made::record("RESULT", {}, 5) }) };
    return layout;
}

} // namespace

void CsvwTest::aTableGroupHasATableARecord()
{
    const QJsonObject group = csvw(household());
    QCOMPARE(group.value("@context").toString(), QString("http://www.w3.org/ns/csvw"));
    QCOMPARE(group.value("@type").toString(), QString("TableGroup"));
    QStringList tables;
    const QJsonArray all = group.value("tables").toArray();
    for (const QJsonValue &table : all) {
        QStringList names;
        const QJsonArray columns = columnsOf(table);
        for (const QJsonValue &column : columns)
            names.append(column["name"].toString());
        tables.append(table["url"].toString() + ": " + names.join(' '));
    }
    QCOMPARE(
        tables,
        QStringList({ "PERSON.csv: HOUSE AGE", "REMARK.csv: HOUSE", "HOUSING.csv: HOUSE", "RESULT.csv: HOUSE VISIT" }));
}

void CsvwTest::filesAreNamedSafely_data()
{
    QTest::addColumn<QStringList>("records");
    QTest::addColumn<QStringList>("urls");
    QTest::newRow("usual") << QStringList{ "HOUSING", "A-1_b" } << QStringList{ "HOUSING.csv", "A-1_b.csv" };
    QTest::newRow("directories") << QStringList{ "../a", "/etc/x", "c:\\d" }
                                 << QStringList{ "___a.csv", "_etc_x.csv", "c__d.csv" };
    QTest::newRow("letters beyond ASCII") << QStringList{ QString::fromUtf8("Bâti ?") } << QStringList{ "B_ti__.csv" };
    QTest::newRow("same but for case") << QStringList{ "A", "a", "A_2", "A" }
                                       << QStringList{ "A.csv", "a_2.csv", "A_2_2.csv", "A_3.csv" };
    QTest::newRow("without a name") << QStringList{ "", "" } << QStringList{ "data.csv", "data_2.csv" };
    QTest::newRow("devices") << QStringList{ "CON", "lpt1", "CONE" }
                             << QStringList{ "_CON.csv", "_lpt1.csv", "CONE.csv" };
    QTest::newRow("option") << QStringList{ "-rf" } << QStringList{ "_-rf.csv" };
}

void CsvwTest::filesAreNamedSafely()
{
    QFETCH(QStringList, records);
    Layout layout;
    layout.levels = { Level() };
    for (const QString &name : records)
        layout.levels[0].records.append(made::record(name));
    QStringList urls;
    const QJsonArray tables = tablesOf(layout);
    for (const QJsonValue &table : tables)
        urls.append(table["url"].toString());
    QTEST(urls, "urls");
}

void CsvwTest::columnNamesAreVariablesOfUriTemplates_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("encoded");
    QTest::newRow("usual") << "AGE_1"
                           << "AGE_1";
    QTest::newRow("blank") << "a b"
                           << "a%20b";
    QTest::newRow("point") << "a.b"
                           << "a.b";
    QTest::newRow("points at the ends and two") << ".a..b."
                                                << "%2Ea%2E%2Eb%2E";
    QTest::newRow("kept for processors") << "_row"
                                         << "%5Frow";
    QTest::newRow("percent") << "a%20"
                             << "a%2520";
    QTest::newRow("letters beyond ASCII") << QString::fromUtf8("âge") << "%C3%A2ge";
    QTest::newRow("signs") << "a-b~c"
                           << "a%2Db%7Ec";
}

void CsvwTest::columnNamesAreVariablesOfUriTemplates()
{
    QFETCH(QString, name);
    const QJsonObject column = columnOf(made::item(name));
    QTEST(column.value("name").toString(), "encoded");
    QCOMPARE(column.value("titles").toString(), name);
}

void CsvwTest::titlesAreTheNameAndTheLabelsByLanguage_data()
{
    QTest::addColumn<Labels>("labels");
    QTest::addColumn<QByteArray>("titles");
    QTest::newRow("no label") << Labels() << QByteArray(R"({"titles": "X"})");
    QTest::newRow("one of no language") << made::labels("Age") << QByteArray(R"({"titles": ["X", "Age"]})");
    QTest::newRow("as the name") << made::labels("X") << QByteArray(R"({"titles": "X"})");
    QTest::newRow("languages") << Labels{ { { "EN", "Age" }, { "FR_cd", QString::fromUtf8("Âge") } } }
                               << QByteArray(R"({"titles": {"und": "X", "en": "Age", "fr-cd": "Âge"}})");
    QTest::newRow("empty part") << Labels{ { { "EN", "Age" }, { "FR", "" } } }
                                << QByteArray(R"({"titles": {"und": "X", "en": "Age"}})");
    QTest::newRow("no language tag") << Labels{ { { "EN", "Age" }, { "1", "Alter" } } }
                                     << QByteArray(R"({"titles": {"und": ["X", "Alter"], "en": "Age"}})");
}

void CsvwTest::titlesAreTheNameAndTheLabelsByLanguage()
{
    QFETCH(Labels, labels);
    QFETCH(QByteArray, titles);
    Item item = made::item("X");
    item.labels = labels;
    QCOMPARE(columnOf(item).value("titles"), json(titles).value("titles"));
}

void CsvwTest::datatypes_data()
{
    QTest::addColumn<Item>("item");
    QTest::addColumn<QByteArray>("datatype");
    Item decimals = made::item("X", 5);
    decimals.decimals = 2;
    Item image = made::item("X", 1);
    image.type = "image";
    Item string = made::text("X", 8);
    string.storage = Storage::String;
    Item unbounded = string;
    unbounded.length = 0;
    QTest::newRow("whole") << made::item("X") << QByteArray(R"({"base": "integer"})");
    QTest::newRow("decimals") << decimals << QByteArray(R"({"base": "decimal"})");
    QTest::newRow("double") << made::stored("X") << QByteArray(R"({"base": "double"})");
    QTest::newRow("byte") << made::stored("X", "%8.0g", {}, Storage::Int8) << QByteArray(R"({"base": "integer"})");
    QTest::newRow("text") << made::text("X", 20) << QByteArray(R"({"base": "string", "maxLength": 20})");
    QTest::newRow("string") << string << QByteArray(R"({"base": "string", "maxLength": 8})");
    QTest::newRow("string of any length") << unbounded << QByteArray(R"({"base": "string"})");
    QTest::newRow("image") << image << QByteArray(R"({"base": "string"})");
}

void CsvwTest::datatypes()
{
    QFETCH(Item, item);
    QFETCH(QByteArray, datatype);
    QCOMPARE(columnOf(item).value("datatype").toObject(), json(datatype));
}

void CsvwTest::datesAreDates_data()
{
    QTest::addColumn<Item>("item");
    QTest::addColumn<QByteArray>("datatype");
    const QByteArray date = R"({"base": "date"})";
    const QByteArray dateTime = R"({"base": "datetime"})";
    const QByteArray integer = R"({"base": "integer"})";
    const QByteArray number = R"({"base": "double"})";
    Item filled = made::item("X", 8);
    filled.zeroFill = true;
    QTest::newRow("year first") << made::captured(made::item("X", 8), "YYYYMMDD")
                                << QByteArray(R"({"base": "date", "format": "yyyyMMdd"})");
    QTest::newRow("text") << made::captured(made::text("X", 8), "DDMMYYYY")
                          << QByteArray(R"({"base": "date", "format": "ddMMyyyy"})");
    QTest::newRow("filled with zeros") << made::captured(filled, "MMDDYYYY")
                                       << QByteArray(R"({"base": "date", "format": "MMddyyyy"})");
    QTest::newRow("zeros lost") << made::captured(made::item("X", 8), "DDMMYYYY") << integer;
    QTest::newRow("century unknown") << made::captured(made::item("X", 6), "YYMMDD") << integer;
    QTest::newRow("no day") << made::captured(made::item("X", 6), "YYYYMM") << integer;
    QTest::newRow("another length") << made::captured(made::item("X", 9), "YYYYMMDD") << integer;
    QTest::newRow("no format") << made::captured(made::item("X", 8), "") << integer;
    for (const char *format : { "DATE11", "ADATE10", "EDATE8", "SDATE10", "JDATE7", "%td", "%-td", "%tdCCYY-NN-DD",
                                "%d", "%dD_m_Y", "DATE9.", "YYMMDD10.", "DDMMYYP8", "E8601DA10" })
        QTest::newRow(format) << made::stored("X", format) << date;
    for (const char *format : { "DATETIME20", "DATETIME23.2", "YMDHMS19", "%tc", "%tC", "%tcHH:MM", "E8601DT19." })
        QTest::newRow(format) << made::stored("X", format) << dateTime;
    for (const char *format :
         { "TIME8", "DTIME10", "MOYR8", "QYR6", "WKDAY9", "%tm", "%tw", "%ty", "F8.2", "%9.0g", "DOLLAR8", "BEST12." })
        QTest::newRow(format) << made::stored("X", format) << number;
    QTest::newRow("text in a date's format") << [] {
        Item item = made::text("X", 8);
        item.storage = Storage::String;
        item.format = "DATE9";
        return item;
    }() << QByteArray(R"({"base": "string", "maxLength": 8})");
}

void CsvwTest::datesAreDates()
{
    QFETCH(Item, item);
    QFETCH(QByteArray, datatype);
    QCOMPARE(columnOf(item).value("datatype").toObject(), json(datatype));
}

void CsvwTest::numbersOfOtherTimesSaySo()
{
    QCOMPARE(columnOf(made::stored("X", "%tm")).value("rdfs:comment").toString(),
             QString("The values have the format %tm"));
    QCOMPARE(columnOf(made::stored("X", "TIME8.2")).value("rdfs:comment").toString(),
             QString("The values have the format TIME8.2"));
    QVERIFY(!columnOf(made::stored("X", "F8.2")).contains("rdfs:comment"));
    QVERIFY(!columnOf(made::stored("X", "%td")).contains("rdfs:comment"));
    QVERIFY(!columnOf(made::item("X")).contains("rdfs:comment"));
}

void CsvwTest::oneRangeIsABound_data()
{
    QTest::addColumn<Item>("item");
    QTest::addColumn<QString>("bounds");
    const auto twoSets = [](const Value &first, const Value &second) {
        Item item = made::item("X", 3, { first });
        item.valueSets.append(made::valueSet({ second }));
        return item;
    };
    Item decimals = made::item("X", 4, { made::range("-1.50", "2,5") });
    decimals.decimals = 2;
    const Value missing = made::value("999", "Missing", Special::Missing);
    QTest::newRow("none") << made::item("X", 3) << "-";
    QTest::newRow("codes") << made::item("X", 3, { made::value("1"), made::value("2") }) << "-";
    QTest::newRow("range") << made::item("X", 3, { made::range("0", "110") }) << "0-110";
    QTest::newRow("range and missing code") << made::item("X", 3, { made::range("000", "110"), missing }) << "0-110";
    QTest::newRow("range and code") << made::item("X", 3, { made::range("0", "110"), made::value("998") }) << "-";
    QTest::newRow("two ranges") << made::item("X", 3, { made::range("0", "1"), made::range("5", "6") }) << "-";
    QTest::newRow("same in two sets") << twoSets(made::range("0", "9"), made::range("0", "9")) << "0-9";
    QTest::newRow("two sets") << twoSets(made::range("0", "9"), made::range("0", "8")) << "-";
    QTest::newRow("decimals") << decimals << "-1.5-2.5";
    QTest::newRow("ends before it begins") << made::item("X", 3, { made::range("9", "0") }) << "-";
    QTest::newRow("decimals of an integer") << made::item("X", 3, { made::range("0.5", "9") }) << "-9";
    QTest::newRow("no number") << made::item("X", 3, { made::range("a", "9") }) << "-9";
    QTest::newRow("beyond a double") << made::item("X", 20, { made::range("1", "99999999999999999999") })
                                     << "1-99999999999999999999";
    QTest::newRow("text") << made::text("X", 3, { made::range("A", "C") }) << "-";
    QTest::newRow("statistical file") << made::stored("X", "F3.0", { made::range("0", "9") }) << "-";
}

void CsvwTest::oneRangeIsABound()
{
    QFETCH(Item, item);
    const QJsonObject datatype = columnOf(item).value("datatype").toObject();
    QTEST(datatype.value("minimum").toString() + "-" + datatype.value("maximum").toString(), "bounds");
}

void CsvwTest::missingCodesAreNull_data()
{
    QTest::addColumn<Item>("item");
    QTest::addColumn<QStringList>("codes");
    Item filled = made::item("X", 3, { made::value("9", "Missing", Special::Missing) });
    filled.zeroFill = true;
    Item filledTwice = made::item("X", 3, { made::value("09", "Missing", Special::Missing) });
    filledTwice.zeroFill = true;
    Item decimals = made::item("X", 4, { made::value("9,50", "Missing", Special::Missing) });
    decimals.decimals = 2;
    const auto userMissing = [](const QVector<Range> &missing, const QVector<Value> &values) {
        Item item = made::stored("X", "F8.0", values);
        item.missing = missing;
        return item;
    };
    const QVector<Value> labelled = { made::value("97", "Refused"), made::value("1", "One") };
    Item text = made::text("X", 2);
    text.storage = Storage::String;
    text.missing = { { "NA", "" } };
    QTest::newRow("none") << made::item("X", 2, { made::value("1") }) << QStringList();
    QTest::newRow("special") << made::item(
        "X", 2, { made::value("1"), made::value("9", "a", Special::Missing), made::value("8", "b", Special::Refused) })
                             << QStringList{ "", "9", "8" };
    QTest::newRow("blank") << made::item("X", 2, { made::value("  ", "a", Special::NotApplicable) })
                           << QStringList{ "" };
    QTest::newRow("filled with zeros") << filled << QStringList{ "", "9", "009" };
    QTest::newRow("filled with zeros, also in the dictionary") << filledTwice << QStringList{ "", "09", "9", "009" };
    QTest::newRow("zeros of the dictionary only")
        << made::item("X", 2, { made::value("09", "a", Special::Missing) }) << QStringList{ "", "09", "9" };
    QTest::newRow("decimal comma") << decimals << QStringList{ "", "9,50", "9.5" };
    QTest::newRow("codes of stored numbers have one spelling")
        << userMissing({ { "9.50", "" } }, {}) << QStringList{ "", "9.50" };
    QTest::newRow("digits of a text are exact")
        << made::text("X", 2, { made::value("09", "a", Special::Missing) }) << QStringList{ "", "09" };
    QTest::newRow("user-missing") << userMissing({ { "99", "" }, { "-1", "-1" } }, {}) << QStringList{ "", "99", "-1" };
    QTest::newRow("labelled in a range") << userMissing({ { "90", "inf" } }, labelled) << QStringList{ "", "97" };
    QTest::newRow("labelled above the lowest") << userMissing({ { "-inf", "0" } }, labelled) << QStringList();
    QTest::newRow("each once") << userMissing({ { "97", "" } }, labelled) << QStringList{ "", "97" };
    QTest::newRow("extended") << userMissing({}, { made::value(".a", "Refused"), made::value("0.5", "half") })
                              << QStringList{ "", ".a" };
    QTest::newRow("text") << text << QStringList{ "", "NA" };
}

void CsvwTest::missingCodesAreNull()
{
    QFETCH(Item, item);
    QFETCH(QStringList, codes);
    QCOMPARE(columnOf(item).value("null").toArray(), array(codes));
}

void CsvwTest::idsAreRequired()
{
    const QJsonArray columns = columnsOf(tablesOf(made::layout({ made::item("X") })).at(0));
    QCOMPARE(columns.at(0)["required"], QJsonValue(true));
    QVERIFY(!columns.at(1).toObject().contains("required"));
}

void CsvwTest::recordsOfOneRowACaseAreKeyed()
{
    const QJsonArray tables = tablesOf(household());
    QVERIFY(!schemaOf(tables.at(0)).contains("primaryKey"));
    QCOMPARE(schemaOf(tables.at(1)).value("primaryKey").toArray(), array({ "HOUSE" }));
    QCOMPARE(schemaOf(tables.at(2)).value("primaryKey").toArray(), array({ "HOUSE" }));
    QVERIFY(!schemaOf(tables.at(3)).contains("primaryKey"));

    Layout layout = household();
    layout.levels[1].records[0].maximum = 1;
    QCOMPARE(schemaOf(tablesOf(layout).at(3)).value("primaryKey").toArray(), array({ "HOUSE", "VISIT" }));
}

void CsvwTest::rowsReferToTheHeadOfTheirLevel()
{
    const QJsonArray expected = QJsonDocument::fromJson(R"([{"columnReference": ["HOUSE"],
        "reference": {"resource": "HOUSING.csv", "columnReference": ["HOUSE"]}}])")
                                    .array();
    const QJsonArray tables = tablesOf(household());
    QCOMPARE(schemaOf(tables.at(0)).value("foreignKeys").toArray(), expected);
    QCOMPARE(schemaOf(tables.at(1)).value("foreignKeys").toArray(), expected);
    QVERIFY(!schemaOf(tables.at(2)).contains("foreignKeys"));
    QCOMPARE(schemaOf(tables.at(3)).value("foreignKeys").toArray(), expected);

    Layout layout = household();
    layout.levels[1].records.append(made::record("HEAD"));
    const QJsonArray withHead = tablesOf(layout);
    QCOMPARE(schemaOf(withHead.at(3)).value("foreignKeys").toArray().at(0)["columnReference"].toArray(),
             array({ "HOUSE", "VISIT" }));
    QCOMPARE(schemaOf(withHead.at(4)).value("foreignKeys").toArray(), expected);

    layout.levels[0].records[2].required = false;
    QVERIFY(!schemaOf(tablesOf(layout).at(0)).contains("foreignKeys"));
}

void CsvwTest::withoutIdsThereAreNoKeys()
{
    Layout layout = household();
    layout.levels = { made::level({}, layout.levels.at(0).records) };
    const QJsonArray tables = tablesOf(layout);
    for (const QJsonValue &table : tables)
        QCOMPARE(schemaOf(table).keys(), QStringList{ "columns" });
}

// Each row of a lower level has the ids of its case; cases without ids cannot be distinguished.
void CsvwTest::aLevelWithoutIdsHasNoKey()
{
    Layout layout = household();
    layout.levels[1].records[0].maximum = 1;
    layout.levels[1].ids.clear();
    QVERIFY(!schemaOf(tablesOf(layout).at(3)).contains("primaryKey"));
    QVERIFY(schemaOf(tablesOf(layout).at(3)).contains("foreignKeys"));

    layout = household();
    layout.levels[1].records[0].maximum = 1;
    layout.levels[0].ids.clear();
    QVERIFY(!schemaOf(tablesOf(layout).at(3)).contains("primaryKey"));
    QVERIFY(!schemaOf(tablesOf(layout).at(3)).contains("foreignKeys"));
}

void CsvwTest::aLevelWithOnlyIdsHasATable()
{
    Layout layout;
    layout.levels = { made::level({ made::item("A"), made::item("B") }, {}), made::level({}, {}),
                      made::level({ made::item("C") }, {}) };
    layout.levels[2].name = "LAST";
    const QJsonArray tables = tablesOf(layout);
    QCOMPARE(tables.size(), 2);
    QCOMPARE(tables.at(0)["url"].toString(), QString("data.csv"));
    QCOMPARE(schemaOf(tables.at(0)).value("primaryKey").toArray(), array({ "A", "B" }));
    QCOMPARE(tables.at(1)["url"].toString(), QString("LAST.csv"));
    QCOMPARE(columnsOf(tables.at(1)).size(), 3);
}

void CsvwTest::valueSetsAreTermSets()
{
    Value first = made::value("1", "One");
    first.note = "N";
    first.image = "a.png";
    first.ranges.append(Range{ "3", "" });
    first.ranges.append(Range{ "5", "7" });
    Item item = made::item("X", 2, { first, made::value("9", "None", Special::NotApplicable) });
    item.valueSets[0].labels = made::labels("Set");
    item.valueSets[0].note = "Note";
    QCOMPARE(columnOf(item).value("schema:valueReference").toArray(),
             QJsonDocument::fromJson(R"([{
        "@type": "schema:DefinedTermSet", "schema:identifier": "VS1", "schema:name": "Set", "schema:description": "Note",
        "schema:hasDefinedTerm": [
            {"@type": "schema:DefinedTerm", "schema:termCode": ["1", "3"],
             "schema:valueReference": [
                {"@type": "schema:QuantitativeValue", "schema:minValue": "5", "schema:maxValue": "7"}],
             "schema:name": "One", "schema:description": "N", "schema:image": "a.png"},
            {"@type": "schema:DefinedTerm", "schema:termCode": "9", "schema:name": "None",
             "schema:disambiguatingDescription": "not applicable"}]}])")
                 .array());
}

void CsvwTest::textsInLanguagesHaveTheirTag()
{
    Value value = made::value("1");
    value.labels = { { { "EN", "Yes" }, { "FR", "Oui" } } };
    const QJsonObject term = columnOf(made::item("X", 1, { value }))
                                 .value("schema:valueReference")
                                 .toArray()
                                 .at(0)["schema:hasDefinedTerm"]
                                 .toArray()
                                 .at(0)
                                 .toObject();
    QCOMPARE(term.value("schema:name").toArray(),
             QJsonDocument::fromJson(R"([{"@value": "Yes", "@language": "en"},
        {"@value": "Oui", "@language": "fr"}])")
                 .array());
}

void CsvwTest::theTitleIsThatOfTheFileOrTheGivenOne()
{
    Layout layout = made::layout({});
    layout.file = "directory/survey.dcf";
    QVERIFY(!csvw(layout).contains("dc:title"));
    layout.name = "SURVEY";
    QCOMPARE(csvw(layout).value("dc:title").toString(), QString("SURVEY"));
    layout.labels = { { { "EN", "Survey" } } };
    QCOMPARE(csvw(layout).value("dc:title").toObject(), json(R"({"@value": "Survey", "@language": "en"})"));
    CsvwOptions options;
    options.title = "Given";
    QCOMPARE(csvw(layout, options).value("dc:title").toString(), QString("Given"));
}

void CsvwTest::hostileTextsStayTexts()
{
    const QString hostile = QString("\"}],\n\t<script>\\u0000 ") + QChar(0x85) + QChar(0) + "'--";
    Layout layout = made::layout({ made::item(hostile, 1, { made::value(hostile, hostile) }) });
    layout.labels = made::labels(hostile);
    layout.levels[0].records[0].labels = made::labels(hostile);
    const QByteArray bytes = made::written(writeCsvw, layout, CsvwOptions());
    QVERIFY(!bytes.contains(QString(QChar(0x85)).toUtf8()) && !bytes.contains('\0'));
    const QJsonObject group = QJsonDocument::fromJson(bytes).object();
    QCOMPARE(group.value("dc:title").toString(), hostile);
    const QJsonValue table = group.value("tables").toArray().at(0);
    QCOMPARE(table["dc:title"].toString(), hostile);
    QCOMPARE(columnsOf(table).at(1)["titles"].toString(), hostile);
}

void CsvwTest::aDeviceThatIsFullIsReported()
{
    made::FullDevice device;
    device.open(QIODevice::WriteOnly);
    QVERIFY(!writeCsvw(made::layout({}), device));
}

QTEST_MAIN(CsvwTest)
#include "CsvwTest.moc"
