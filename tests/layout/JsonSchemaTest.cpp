#include "write/JsonSchema.h"

#include "layout/MadeLayout.h"

#include <QTest>

using namespace vanlayout;

Q_DECLARE_METATYPE(vanlayout::Item)

class JsonSchemaTest : public QObject
{
    Q_OBJECT

private slots:
    void aCaseHasItsRecords();
    void recordsOfLowerLevelsAreListsWithoutBounds();
    void aFileOfOneRecordWithoutIdsDescribesARow();
    void aRecordIsADefinition();
    void aMaximumBelowOneIsNoBound();
    void types_data();
    void types();
    void valuesAreAlternatives_data();
    void valuesAreAlternatives();
    void numbersAreThoseThatEveryProgramKeeps_data();
    void numbersAreThoseThatEveryProgramKeeps();
    void longNumbersMayBeTexts_data();
    void longNumbersMayBeTexts();
    void aRangeThatEndsBeforeItBeginsHasNoBounds();
    void occurrencesAreProperties();
    void titlesAreInOneLanguage();
    void theTitleIsThatOfTheFileOrTheGivenOne();
    void hostileTextsStayTexts();
    void aDeviceThatIsFullIsReported();
};

namespace
{

QJsonObject schema(const Layout &layout, const JsonSchemaOptions &options = {})
{
    return QJsonDocument::fromJson(made::written(writeJsonSchema, layout, options)).object();
}

QJsonObject definition(const Layout &layout, const QString &record, const JsonSchemaOptions &options = {})
{
    return schema(layout, options).value("$defs").toObject().value(record).toObject();
}

// The property of an item.
QJsonObject propertyOf(const Item &item)
{
    return definition(made::layout({ item }), "R").value("properties").toObject().value(item.name).toObject();
}

QJsonObject json(const QByteArray &text)
{
    return QJsonDocument::fromJson(text).object();
}

} // namespace

void JsonSchemaTest::aCaseHasItsRecords()
{
    Layout layout;
    layout.note = "About";
    layout.levels = { made::level({ made::item("ID") },
                                  { made::record("HOUSE"), made::record("REMARK", {}, 1, false),
                                    made::record("PERSON", {}, 20), made::record("DEATH", {}, 5, false) }) };
    QJsonObject root = schema(layout);
    root.remove("$defs");
    const QJsonObject expected
        = json(R"({"$schema": "https://json-schema.org/draft/2020-12/schema", "description": "About",
        "type": "object", "properties": {
            "HOUSE": {"$ref": "#/$defs/HOUSE"}, "REMARK": {"$ref": "#/$defs/REMARK"},
            "PERSON": {"type": "array", "items": {"$ref": "#/$defs/PERSON"}, "minItems": 1, "maxItems": 20},
            "DEATH": {"type": "array", "items": {"$ref": "#/$defs/DEATH"}, "maxItems": 5}},
        "required": ["HOUSE", "PERSON"], "additionalProperties": false})");
    QCOMPARE(root, expected);
}

void JsonSchemaTest::recordsOfLowerLevelsAreListsWithoutBounds()
{
    Layout layout = made::layout({});
    layout.levels.append(made::level({ made::item("VISIT") }, { made::record("RESULT", {}, 3) }));
    const QJsonObject root = schema(layout);
    const QJsonObject expected = json(R"({"type": "array", "items": {"$ref": "#/$defs/RESULT"}})");
    QCOMPARE(root.value("properties").toObject().value("RESULT").toObject(), expected);
    QCOMPARE(root.value("required").toArray(), QJsonArray{ "R" });
    QCOMPARE(definition(layout, "RESULT").value("required").toArray(), (QJsonArray{ "ID", "VISIT" }));
}

void JsonSchemaTest::aFileOfOneRecordWithoutIdsDescribesARow()
{
    Layout layout;
    layout.levels = { made::level({}, { made::record("", { made::stored("X") }) }) };
    QJsonObject root = schema(layout);
    QCOMPARE(root.value("$ref").toString(), QString("#/$defs/data"));
    QVERIFY(!root.contains("properties"));
    const QJsonObject expected
        = json(R"({"type": "object", "properties": {"X": {"type": "number"}}, "additionalProperties": false})");
    QCOMPARE(definition(layout, "data"), expected);
}

void JsonSchemaTest::aRecordIsADefinition()
{
    Layout layout = made::layout({ made::item("X") });
    layout.levels[0].records[0].labels = made::labels("Record");
    layout.levels[0].records[0].note = "Note";
    layout.levels[0].records[0].items[0].labels = made::labels("Label");
    layout.levels[0].records[0].items[0].note = "Why";
    const QJsonObject expected = json(R"({"title": "Record", "description": "Note", "type": "object", "properties":
        {"ID": {"type": "integer"}, "X": {"title": "Label", "description": "Why", "type": "integer"}},
        "required": ["ID"], "additionalProperties": false})");
    QCOMPARE(definition(layout, "R"), expected);
}

void JsonSchemaTest::aMaximumBelowOneIsNoBound()
{
    Layout layout = made::layout({});
    layout.levels[0].records[0].maximum = 0;
    const QJsonObject expected = json(R"({"type": "array", "items": {"$ref": "#/$defs/R"}, "minItems": 1})");
    QCOMPARE(schema(layout).value("properties").toObject().value("R").toObject(), expected);
}

void JsonSchemaTest::types_data()
{
    QTest::addColumn<Item>("item");
    QTest::addColumn<QByteArray>("expected");
    Item decimals = made::item("X", 5);
    decimals.decimals = 2;
    Item longDecimals = made::item("X", 16);
    longDecimals.decimals = 2;
    Item image = made::item("X", 1, { made::value("1") });
    image.type = "image";
    QTest::newRow("whole") << made::item("X", 15) << QByteArray(R"({"type": "integer"})");
    QTest::newRow("decimals") << decimals << QByteArray(R"({"type": "number"})");
    QTest::newRow("more digits than a double")
        << made::item("X", 16) << QByteArray(R"({"type": ["integer", "string"], "pattern": "^-?[0-9]+$"})");
    QTest::newRow("more digits with decimals")
        << longDecimals << QByteArray(R"({"type": ["number", "string"], "pattern": "^-?[0-9]+(\\.[0-9]+)?$"})");
    QTest::newRow("text") << made::text("X", 7) << QByteArray(R"({"type": "string", "maxLength": 7})");
    QTest::newRow("image") << image << QByteArray("{}");
    QTest::newRow("captured date") << made::captured(made::item("X", 8), "YYYYMMDD")
                                   << QByteArray(R"({"type": "integer"})");
    QTest::newRow("date") << made::stored("X", "DATE11") << QByteArray(R"({"type": "string", "format": "date"})");
    QTest::newRow("date and time") << made::stored("X", "%tc") << QByteArray(R"({"type": "string",
            "pattern": "^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}(\\.[0-9]+)?$"})");
}

void JsonSchemaTest::types()
{
    QFETCH(Item, item);
    QFETCH(QByteArray, expected);
    QCOMPARE(propertyOf(item), json(expected));
}

void JsonSchemaTest::valuesAreAlternatives_data()
{
    QTest::addColumn<Item>("item");
    QTest::addColumn<QByteArray>("expected");
    const Value one = made::value("1", "One");
    const Value nine = made::value("9", "Unknown", Special::Missing);
    const Value blank = made::value(" ", "No one", Special::NotApplicable);
    const auto twoSets = [&](const Value &second) {
        Item item = made::item("X", 1, { one });
        item.valueSets.append(made::valueSet({ second }));
        return item;
    };
    const auto userMissing = [](Item item, const QVector<Range> &missing) {
        item.missing = missing;
        return item;
    };
    Value noted = made::value("2", "Two", Special::Refused);
    noted.note = "N";
    Item string = made::text("X", 2, { made::value("a", "A") });
    string.storage = Storage::String;

    QTest::newRow("codes") << made::item("X", 1, { one, made::value("02", "Two") })
                           << QByteArray(R"({"type": "integer", "oneOf": [{"const": 1, "title": "One"},
                                {"const": 2, "title": "Two"}]})");
    QTest::newRow("range") << made::item("X", 3, { made::range("0", "110", "Years"), made::value("998") })
                           << QByteArray(R"({"type": "integer", "anyOf": [
                                {"type": "integer", "minimum": 0, "maximum": 110, "title": "Years"}, {"const": 998}]})");
    QTest::newRow("special") << made::item("X", 1, { one, nine, noted })
                             << QByteArray(R"({"type": "integer", "oneOf": [{"const": 1, "title": "One"},
                                {"const": 9, "title": "Unknown", "description": "missing"},
                                {"const": 2, "title": "Two", "description": "refused; N"}]})");
    QTest::newRow("blank") << made::item("X", 1, { one, blank })
                           << QByteArray(R"({"type": ["integer", "null"], "oneOf": [{"const": 1, "title": "One"},
                                {"const": null, "title": "No one", "description": "not applicable"}]})");
    QTest::newRow("missing ones only") << made::item("X", 1, { nine, blank })
                                       << QByteArray(R"({"type": ["integer", "null"], "anyOf": [
                                {"const": 9, "title": "Unknown", "description": "missing"},
                                {"const": null, "title": "No one", "description": "not applicable"},
                                {"type": "integer"}]})");
    QTest::newRow("two sets") << twoSets(made::value("2"))
                              << QByteArray(R"({"type": "integer", "oneOf": [{"const": 1, "title": "One"},
                                {"const": 2}]})");
    QTest::newRow("each code once") << twoSets(made::value("01", "Again"))
                                    << QByteArray(R"({"type": "integer", "oneOf": [{"const": 1, "title": "One"}]})");
    QTest::newRow("text") << made::text("X", 2, { made::value("a ", "A"), made::value(" b") })
                          << QByteArray(R"({"type": "string", "maxLength": 2, "oneOf": [{"const": "a", "title": "A"},
                                {"const": " b"}]})");
    QTest::newRow("range of texts") << made::text("X", 1, { made::range("A", "C", "Letters") })
                                    << QByteArray(R"({"type": "string", "maxLength": 1, "anyOf": [
                                {"type": "string", "title": "Letters", "description": "A to C"}]})");
    QTest::newRow("no value of the type")
        << made::item("X", 1, { made::value("0.5"), made::value("z"), one })
        << QByteArray(R"({"type": "integer", "oneOf": [{"const": 1, "title": "One"}]})");
    QTest::newRow("set without values") << made::item("X", 1, { Value() }) << QByteArray(R"({"type": "integer"})");
    QTest::newRow("statistical file") << made::stored("X", "F8.0", { one })
                                      << QByteArray(R"({"type": "number", "anyOf": [{"const": 1, "title": "One"},
                                {"type": "number"}]})");
    QTest::newRow("string") << string << QByteArray(R"({"type": "string", "maxLength": 2, "anyOf": [
                                {"const": "a", "title": "A"}, {"type": "string"}]})");
    QTest::newRow("user-missing") << userMissing(made::stored("X", "F8.0", { one }), { { "1", "" }, { "99", "" } })
                                  << QByteArray(R"({"type": "number", "anyOf": [
                                {"const": 1, "title": "One", "description": "missing"},
                                {"const": 99, "description": "missing"}, {"type": "number"}]})");
    QTest::newRow("user-missing range") << userMissing(made::stored("X"), { { "90", "inf" } })
                                        << QByteArray(R"({"type": "number", "anyOf": [
                                {"type": "number", "minimum": 90, "description": "missing"}, {"type": "number"}]})");
    QTest::newRow("extended missing") << made::stored("X", "%9.0g", { made::value(".a", "Refused") })
                                      << QByteArray(R"({"type": ["number", "string"], "anyOf": [
                                {"const": ".a", "title": "Refused", "description": "missing"}, {"type": "number"}]})");
    QTest::newRow("missing date") << userMissing(made::stored("X", "DATE11"), { { "99", "" } })
                                  << QByteArray(R"({"type": ["string", "number"], "format": "date", "anyOf": [
                                {"const": 99, "description": "missing"}, {"type": "string"}]})");
}

void JsonSchemaTest::valuesAreAlternatives()
{
    QFETCH(Item, item);
    QFETCH(QByteArray, expected);
    QCOMPARE(propertyOf(item), json(expected));
}

void JsonSchemaTest::numbersAreThoseThatEveryProgramKeeps_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QByteArray>("spelled");
    QTest::newRow("whole") << "12" << QByteArray("12");
    QTest::newRow("negative") << "-3" << QByteArray("-3");
    QTest::newRow("zeros at the beginning") << "007" << QByteArray("7");
    QTest::newRow("zero") << "-0.00" << QByteArray("0");
    QTest::newRow("decimals") << "1.50" << QByteArray("1.5");
    QTest::newRow("decimal comma") << "0,25" << QByteArray("0.25");
    QTest::newRow("no digit before the mark") << "-.5" << QByteArray("-0.5");
    QTest::newRow("no digit after the mark") << "5." << QByteArray("5");
    QTest::newRow("sign") << "+5" << QByteArray("5");
    QTest::newRow("blanks") << " 5 " << QByteArray("5");
    QTest::newRow("exponent") << "1.5e+300" << QByteArray("1.5e300");
    QTest::newRow("small exponent") << "2.5e-05" << QByteArray("0.000025");
    QTest::newRow("smaller exponent") << "-2.5e-07" << QByteArray("-2.5e-7");
    QTest::newRow("shortest of a double") << "0.30000000000000004" << QByteArray("0.30000000000000004");
    QTest::newRow("highest of all integers") << "9007199254740991" << QByteArray("9007199254740991");
    QTest::newRow("beyond") << "9007199254740993" << QByteArray("\"9007199254740993\"");
    QTest::newRow("below") << "-99999999999999999999" << QByteArray("\"-99999999999999999999\"");
    QTest::newRow("too large") << "1e400" << QByteArray("\"1e400\"");
    QTest::newRow("no number") << "1x" << QByteArray();
    QTest::newRow("two marks") << "1.2.3" << QByteArray();
    QTest::newRow("sign only") << "-" << QByteArray();
    QTest::newRow("mark only") << "." << QByteArray();
    QTest::newRow("exponent only") << "1e" << QByteArray();
    QTest::newRow("hexadecimal") << "0x10" << QByteArray();
    QTest::newRow("not a number") << "nan" << QByteArray();
}

void JsonSchemaTest::numbersAreThoseThatEveryProgramKeeps()
{
    QFETCH(QString, code);
    QFETCH(QByteArray, spelled);
    Item item = made::item("X", 10, { made::value(code) });
    item.decimals = 1;
    JsonSchemaOptions options;
    options.style = JsonStyle::Compact;
    const QByteArray bytes = made::written(writeJsonSchema, made::layout({ item }), options);
    QCOMPARE(bytes.contains("{\"const\":" + spelled + '}'), !spelled.isEmpty());
    QCOMPARE(bytes.contains("\"const\""), !spelled.isEmpty());
}

void JsonSchemaTest::longNumbersMayBeTexts_data()
{
    QTest::addColumn<Item>("item");
    QTest::addColumn<QByteArray>("alternatives");
    Item decimals = made::item("X", 18, { made::range("0", "1") });
    decimals.decimals = 16;
    const QByteArray either = R"("type": ["integer", "string"])";
    QTest::newRow("more digits than numbers are spelled with")
        << made::item("X", 23, { made::value("12345678901234567890123") })
        << QByteArray(R"([{"const": "12345678901234567890123"}])");
    QTest::newRow("special values only") << made::item("X", 18, { made::value("9", "", Special::Missing) })
                                         << QByteArray(R"([{"const": 9, "description": "missing"}, {)" + either + "}]");
    QTest::newRow("range of short numbers")
        << made::item("X", 18, { made::range("0", "999999999999999") })
        << QByteArray(R"([{"type": "integer", "minimum": 0, "maximum": 999999999999999}])");
    QTest::newRow("range with long numbers between")
        << made::item("X", 19, { made::range("0", "1000000000000000000") })
        << QByteArray("[{" + either + R"(, "minimum": 0, "maximum": 1000000000000000000}])");
    QTest::newRow("range of long decimals")
        << decimals << QByteArray(R"([{"type": ["number", "string"], "minimum": 0, "maximum": 1}])");
}

void JsonSchemaTest::longNumbersMayBeTexts()
{
    QFETCH(Item, item);
    QFETCH(QByteArray, alternatives);
    const QJsonObject property
        = definition(made::layout({ item }), "R").value("properties").toObject().value("X").toObject();
    const QJsonValue found = property.contains("oneOf") ? property.value("oneOf") : property.value("anyOf");
    QCOMPARE(found.toArray(), QJsonDocument::fromJson(alternatives).array());
}

void JsonSchemaTest::aRangeThatEndsBeforeItBeginsHasNoBounds()
{
    const auto alternatives = [](int length) {
        const Item item = made::item("X", length, { made::range("9", "1", "Down") });
        const QJsonObject record = definition(made::layout({ item }), "R");
        return record.value("properties").toObject().value("X").toObject().value("anyOf").toArray();
    };
    const QJsonObject ofWords = json(R"({"type": "integer", "title": "Down", "description": "9 to 1"})");
    QCOMPARE(alternatives(2), QJsonArray{ ofWords });
    const QJsonObject ofLongNumbers
        = json(R"({"type": ["integer", "string"], "title": "Down", "description": "9 to 1"})");
    QCOMPARE(alternatives(16), QJsonArray{ ofLongNumbers });
}

void JsonSchemaTest::occurrencesAreProperties()
{
    Item item = made::item("X", 1, { made::value("1") });
    item.occurrences = 2;
    item.labels = made::labels("Child");
    const QJsonObject properties = definition(made::layout({ item }), "R").value("properties").toObject();
    QCOMPARE(properties.keys(), QStringList({ "ID", "X_1", "X_2" }));
    const QJsonObject expected = json(R"json({"title": "Child (2)", "type": "integer", "oneOf": [{"const": 1}]})json");
    QCOMPARE(properties.value("X_2").toObject(), expected);
}

void JsonSchemaTest::titlesAreInOneLanguage()
{
    const Labels labels = { { { "EN", "Yes" }, { "FR", "Oui" } } };
    Item item = made::item("X", 1, { made::value("1") });
    item.labels = labels;
    item.valueSets[0].values[0].labels = labels;
    Layout layout = made::layout({ item });
    layout.labels = labels;
    layout.levels[0].records[0].labels = labels;
    for (const char *code : { "", "FR", "ES" }) {
        const QString language = code;
        JsonSchemaOptions options;
        options.language = language;
        const QString text = language == "FR" ? "Oui" : "Yes";
        const QByteArray bytes = made::written(writeJsonSchema, layout, options);
        QCOMPARE(bytes.count("\"title\": \"" + text.toUtf8() + '"'), 4);
        QCOMPARE(bytes.count("\"title\""), 4);
    }
}

void JsonSchemaTest::theTitleIsThatOfTheFileOrTheGivenOne()
{
    Layout layout = made::layout({});
    layout.file = "directory/survey.dcf";
    QVERIFY(!schema(layout).contains("title"));
    layout.name = "SURVEY";
    QCOMPARE(schema(layout).value("title").toString(), QString("SURVEY"));
    layout.labels = made::labels("Survey");
    QCOMPARE(schema(layout).value("title").toString(), QString("Survey"));
    JsonSchemaOptions options;
    options.title = "Given";
    QCOMPARE(schema(layout, options).value("title").toString(), QString("Given"));
}

void JsonSchemaTest::hostileTextsStayTexts()
{
    const QString hostile = QString("\"}],\n\t~1/%41#\\u0000 ") + QChar(0x85) + QChar(0) + QChar(1);
    Layout layout = made::layout({ made::text(hostile, 1, { made::value(hostile, hostile) }) });
    layout.levels[0].records[0].name = hostile;
    const QByteArray bytes = made::written(writeJsonSchema, layout, JsonSchemaOptions());
    QVERIFY(!bytes.contains(QString(QChar(0x85)).toUtf8()) && !bytes.contains('\0'));
    const QJsonObject definitions = QJsonDocument::fromJson(bytes).object().value("$defs").toObject();
    QCOMPARE(definitions.size(), 1);
    const QJsonObject properties = definitions.constBegin().value().toObject()["properties"].toObject();
    QVERIFY(properties.contains(hostile));
    QCOMPARE(properties.value(hostile)["oneOf"].toArray().at(0)["const"].toString(), hostile);
    QCOMPARE(properties.value(hostile)["oneOf"].toArray().at(0)["title"].toString(), hostile);
}

void JsonSchemaTest::aDeviceThatIsFullIsReported()
{
    made::FullDevice device;
    device.open(QIODevice::WriteOnly);
    QVERIFY(!writeJsonSchema(made::layout({}), device));
}

QTEST_MAIN(JsonSchemaTest)
#include "JsonSchemaTest.moc"
