#include "convert/MadeDictionary.h"
#include "write/CSProJson.h"

#include <QtTest>

Q_DECLARE_METATYPE(vanlayout::Labels)

using namespace vanlayout;

namespace
{

// As CSPro 8 writes it.
constexpr char demo[] = R"json({
  "software": "CSPro", 
  "version": 8.0, 
  "fileType": "dictionary", 
  "name": "D", 
  "labels": [ { "text": "" } ], 
  "readOptimization": true, 
  "recordType": {
    "start": 0, 
    "length": 0
  }, 
  "defaults": {
    "decimalMark": false, 
    "zeroFill": false
  }, 
  "relativePositions": true, 
  "levels": [
    {
      "name": "L", 
      "labels": [ { "text": "" } ], 
      "ids": {
        "items": [
          {
            "name": "ID", 
            "labels": [ { "text": "" } ], 
            "contentType": "numeric", 
            "start": 1, 
            "length": 3, 
            "zeroFill": false
          }
        ]
      }, 
      "records": [
        {
          "name": "R", 
          "labels": [ { "text": "" } ], 
          "occurrences": {
            "required": true, 
            "maximum": 1
          }, 
          "items": [
            {
              "name": "X", 
              "labels": [ { "text": "" } ], 
              "contentType": "numeric", 
              "length": 2, 
              "zeroFill": false, 
              "valueSets": [
                {
                  "name": "VS1", 
                  "labels": [ { "text": "" } ], 
                  "values": [
                    {
                      "labels": [ { "text": "" } ], 
                      "pairs": [ { "range": [ "1", "3" ] } ]
                    }, 
                    {
                      "labels": [ { "text": "" } ], 
                      "pairs": [ { "value": "9" } ]
                    }
                  ]
                }
              ]
            }
          ]
        }
      ]
    }
  ], 
  "relations": [
    {
      "name": "REL", 
      "primary": "R", 
      "links": [
        {
          "primaryLink": "(occurrence)", 
          "secondary": "S", 
          "secondaryLink": "(occurrence)"
        }
      ]
    }
  ]
})json";

struct Written {
    QByteArray json;
    QStringList losses;

    QJsonObject object() const { return QJsonDocument::fromJson(json).object(); }
};

Written write(const Layout &layout)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    Losses losses;
    if (!writeCSProJson(layout, buffer, &losses))
        return {};
    return { buffer.data(), made::linesOf(losses) };
}

QJsonObject recordOf(const Layout &layout)
{
    const QJsonObject level = write(layout).object().value(QStringLiteral("levels")).toArray().at(0).toObject();
    return level.value(QStringLiteral("records")).toArray().at(0).toObject();
}

QJsonObject itemOf(const Layout &layout, int index = 0)
{
    return recordOf(layout).value(QStringLiteral("items")).toArray().at(index).toObject();
}

QJsonArray valueSetsOf(const Item &item)
{
    return itemOf(made::dictionary(item)).value(QStringLiteral("valueSets")).toArray();
}

QByteArray compact(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QByteArray compact(const QJsonValue &value)
{
    return value.isArray() ? QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact) : compact(value.toObject());
}

QJsonObject valueOf(const Value &value, int length = 3, const QString &type = itemtype::numeric())
{
    const QJsonArray sets = valueSetsOf(made::item(QStringLiteral("X"), length, { value }, type));
    return sets.at(0).toObject().value(QStringLiteral("values")).toArray().at(0).toObject();
}

} // namespace

/// Tests the JSON form of dictionaries, member by member. That real files keep their bytes is in RoundTripTest.
class CSProJsonWriterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void membersAndWhiteSpaceAreThoseOfCSPro()
    {
        Layout layout
            = made::dictionary(made::item(QStringLiteral("X"), 2, { made::range("1", "3"), made::value("9") }));
        layout.relations
            = { { QStringLiteral("REL"), {}, QStringLiteral("R"), { { QString(), QStringLiteral("S"), QString() } } } };
        QCOMPARE(write(layout).json, QByteArray(demo));
    }

    void versionOfAJsonFormStays_data()
    {
        QTest::addColumn<int>("format");
        QTest::addColumn<QString>("version");
        QTest::addColumn<QByteArray>("written");
        QTest::newRow("text form") << int(Format::CSProText) << "7.7" << QByteArray("8.0");
        QTest::newRow("JSON form") << int(Format::CSProJson) << "8.1" << QByteArray("8.1");
        QTest::newRow("none") << int(Format::CSProJson) << "" << QByteArray("8.0");
        QTest::newRow("no number") << int(Format::CSProJson) << "8.0 beta" << QByteArray("8.0");
        QTest::newRow("no number of JSON") << int(Format::CSProJson) << "8." << QByteArray("8.0");
        QTest::newRow("zero at the beginning") << int(Format::CSProJson) << "08.0" << QByteArray("8.0");
        QTest::newRow("no decimals") << int(Format::CSProJson) << "9" << QByteArray("9");
    }
    void versionOfAJsonFormStays()
    {
        QFETCH(int, format);
        QFETCH(QString, version);
        QFETCH(QByteArray, written);
        Layout layout = made::dictionary();
        layout.format = Format(format);
        layout.formatVersion = version;
        QVERIFY(write(layout).json.contains("\"version\": " + written + ", \n"));
    }

    void labels_data()
    {
        QTest::addColumn<int>("format");
        QTest::addColumn<Labels>("labels");
        QTest::addColumn<QByteArray>("written");
        const int text = int(Format::CSProText);
        const int json = int(Format::CSProJson);
        const auto parts = [](const QVector<Label> &list) { return Labels{ list }; };
        QTest::newRow("one text needs no language")
            << text << parts({ { "EN", "a" } }) << QByteArray(R"([{"text":"a"}])");
        QTest::newRow("the JSON form keeps it")
            << json << parts({ { "EN", "a" } }) << QByteArray(R"([{"language":"EN","text":"a"}])");
        QTest::newRow("two texts") << text << parts({ { "EN", "a" }, { "FR", "b" } })
                                   << QByteArray(R"([{"language":"EN","text":"a"},{"language":"FR","text":"b"}])");
        QTest::newRow("an empty text between others")
            << text << parts({ { "EN", "a" }, { "FR", "" }, { "ES", "c" } })
            << QByteArray(R"([{"language":"EN","text":"a"},{"language":"ES","text":"c"}])");
        QTest::newRow("an empty last text")
            << text << parts({ { "EN", "a" }, { "FR", "" } })
            << QByteArray(R"([{"language":"EN","text":"a"},{"language":"FR","text":""}])");
        QTest::newRow("beyond the languages") << text << parts({ { "EN", "a" }, { "", "b" } })
                                              << QByteArray(R"([{"language":"EN","text":"a"},{"text":"b"}])");
    }
    void labels()
    {
        QFETCH(int, format);
        QFETCH(Labels, labels);
        Layout layout = made::dictionary();
        layout.format = Format(format);
        layout.labels = labels;
        const QByteArray written = compact(write(layout).object().value(QStringLiteral("labels")));
        QTEST(written, "written");
    }

    void startsAreStatedWhereTheReaderNeedsThem()
    {
        Layout layout = made::dictionary(made::item(QStringLiteral("X"), 2));
        Item moved = made::item(QStringLiteral("Y"), 3);
        moved.start = 9;
        Item part = made::item(QStringLiteral("Z"), 1);
        part.isSubitem = true;
        part.start = 11;
        layout.levels[0].records[0].items += { moved, part };
        const auto has = [&](int index, const char *key) { return itemOf(layout, index).contains(QLatin1String(key)); };
        QVERIFY(!has(0, "start"));
        QCOMPARE(itemOf(layout, 1).value(QStringLiteral("start")).toInt(), 9);
        QVERIFY(!has(2, "start"));
        QCOMPARE(itemOf(layout, 2).value(QStringLiteral("subitemOffset")).toInt(), 2);
        QVERIFY(itemOf(layout, 2).value(QStringLiteral("subitem")).toBool());
        layout.relativePositions = false;
        QVERIFY(has(0, "start") && has(2, "start"));
    }

    void subitemWithoutAnItemStatesItsStart()
    {
        Item part = made::item(QStringLiteral("Z"), 1);
        part.isSubitem = true;
        part.start = 4;
        const QJsonObject item = itemOf(made::dictionary(part));
        QCOMPARE(item.value(QStringLiteral("start")).toInt(), 4);
        QVERIFY(!item.contains(QStringLiteral("subitemOffset")));
    }

    void membersOfItems()
    {
        Item item = made::item(QStringLiteral("X"), 6);
        item.note = QStringLiteral("n");
        item.aliases = QStringList{ QStringLiteral("A") };
        item.occurrences = 2;
        item.occurrenceLabels = { { 2, made::labels(QStringLiteral("second")) } };
        item.decimals = 2;
        item.decimalMark = true;
        item.zeroFill = true;
        item.capture = Capture{ QStringLiteral("date"), QStringLiteral("DDMMYY") };
        QCOMPARE(
            compact(itemOf(made::dictionary(item))),
            QByteArray(R"({"aliases":["A"],"capture":{"dateFormat":"DDMMYY","type":"date"},"contentType":"numeric",)"
                       R"("decimalMark":true,"decimals":2,"labels":[{"text":""}],"length":6,"name":"X","note":"n",)"
                       R"("occurrences":{"labels":[{"labels":[{"text":"second"}],"occurrence":2}],"maximum":2},)"
                       R"("zeroFill":true})"));
    }

    void onlyNumbersHaveZeroFill()
    {
        QVERIFY(
            !itemOf(made::dictionary(made::item("X", 2, {}, itemtype::alpha()))).contains(QStringLiteral("zeroFill")));
    }

    void imagesOfAJsonFormStay()
    {
        Value value = made::value(QStringLiteral("9"));
        value.image = QStringLiteral(".\\a.jpg");
        Layout layout = made::dictionary(made::item(QStringLiteral("X"), 2, { value }));
        QVERIFY(write(layout).json.contains("\"image\": \"a.jpg\""));
        layout.format = Format::CSProJson;
        QVERIFY(write(layout).json.contains("\"image\": \".\\\\a.jpg\""));
    }

    void aRangeKeepsItsSecondCode()
    {
        const Layout layout = made::dictionary(made::item(QStringLiteral("X"), 2, { made::range("1 ", " ") }));
        QVERIFY(write(layout).json.contains("\"range\": [ \"1\", \" \" ]"));
    }

    void typesOfBinaryItemsHaveACapital()
    {
        const Layout layout = made::dictionary(made::item(QStringLiteral("X"), 1, {}, QStringLiteral("image")));
        QCOMPARE(itemOf(layout).value(QStringLiteral("contentType")).toString(), QStringLiteral("Image"));
        QCOMPARE(write(layout).losses, QStringList());
    }

    void membersOfRecords()
    {
        Layout layout = made::dictionary();
        Record &record = layout.levels[0].records[0];
        record.recordType = QStringLiteral("1");
        record.required = false;
        record.maximum = 3;
        record.occurrenceLabels = { { 1, made::labels(QStringLiteral("head")) } };
        record.items.clear();
        QCOMPARE(compact(recordOf(layout)),
                 QByteArray(R"({"items":[],"labels":[{"text":""}],"name":"R","occurrences":{"labels":[{"labels":)"
                            R"([{"text":"head"}],"occurrence":1}],"maximum":3,"required":false},"recordType":"1"})"));
    }

    void membersOfValues()
    {
        Value value = made::value(QStringLiteral("9"), QStringLiteral("no"), Special::Refused);
        value.note = QStringLiteral("n");
        value.image = QStringLiteral(".\\images\\a.jpg");
        value.textColor = QStringLiteral("#ff0000");
        QCOMPARE(compact(valueOf(value)),
                 QByteArray(R"({"image":"images/a.jpg","labels":[{"text":"no"}],"note":"n","pairs":[{"value":"9"}],)"
                            R"("special":"REFUSED","textColor":"#ff0000"})"));
    }

    void blanksAtTheEndOfCodesAreOmitted_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QByteArray>("pairs");
        QTest::newRow("text") << "A  " << QByteArray(R"([{"value":"A"}])");
        QTest::newRow("blank field") << "   " << QByteArray(R"([{"value":""}])");
        QTest::newRow("blanks at the beginning") << " A" << QByteArray(R"([{"value":" A"}])");
        QTest::newRow("tab at the end") << "A\t" << QByteArray(R"([{"value":"A\t"}])");
    }
    void blanksAtTheEndOfCodesAreOmitted()
    {
        QFETCH(QString, code);
        const QByteArray pairs
            = compact(valueOf(made::value(code), 3, itemtype::alpha()).value(QStringLiteral("pairs")));
        QTEST(pairs, "pairs");
    }

    void linkedSetsHaveTheirValuesOnce()
    {
        Item item = made::item(QStringLiteral("X"), 2, { made::value(QStringLiteral("1")) });
        item.valueSets[0].link = QStringLiteral("77");
        item.valueSets.append(item.valueSets.at(0));
        const QJsonArray sets = valueSetsOf(item);
        QVERIFY(sets.at(0).toObject().contains(QStringLiteral("values")));
        QVERIFY(!sets.at(1).toObject().contains(QStringLiteral("values")));
        QCOMPARE(sets.at(1).toObject().value(QStringLiteral("link")).toString(), QStringLiteral("77"));
    }

    void settingsAreThoseOfTheDictionary()
    {
        Layout layout = made::dictionary();
        layout.editable = false;
        layout.languages = { { QStringLiteral("EN"), QStringLiteral("English") } };
        layout.security = Security{ QStringLiteral("AB12"), {}, {}, {} };
        layout.recordType = RecordTypeColumns{ 4, 1 };
        const QJsonObject object = write(layout).object();
        QCOMPARE(object.value(QStringLiteral("editable")), QJsonValue(false));
        QCOMPARE(compact(object.value(QStringLiteral("languages"))),
                 QByteArray(R"([{"label":"English","name":"EN"}])"));
        QCOMPARE(compact(object.value(QStringLiteral("security"))), QByteArray(R"({"settings":"ab12"})"));
        QCOMPARE(compact(object.value(QStringLiteral("recordType"))), QByteArray(R"({"length":1,"start":4})"));
        layout.format = Format::CSProJson;
        layout.readOptimization = false;
        layout.enableBinaryItems = true;
        layout.security = Security{ QStringLiteral("AB12"), true, false, 5 };
        const QJsonObject own = write(layout).object();
        QCOMPARE(own.value(QStringLiteral("readOptimization")), QJsonValue(false));
        QCOMPARE(own.value(QStringLiteral("enableBinaryItems")), QJsonValue(true));
        QCOMPARE(compact(own.value(QStringLiteral("security"))),
                 QByteArray(R"({"allowDataViewerModifications":true,"allowExport":false,"cachedPasswordMinutes":5,)"
                            R"("settings":"AB12"})"));
    }

    void whatTheFormCannotHoldIsLost()
    {
        Layout layout = made::dictionary();
        layout.valueSetImages = QStringLiteral("Yes");
        layout.levels[0].records[0].length = 80;
        layout.extras = { { QStringLiteral("L/R"), QStringLiteral("Color"), QStringLiteral("red"), 7 } };
        QCOMPARE(write(layout).losses,
                 (QStringList{ "L/R: the record length 80, which differs from the last column", ": ValueSetImages",
                               "L/R: the unknown statement \"Color\"" }));
        layout.levels[0].records[0].length = 5;
        QCOMPARE(write(layout).losses.size(), 2);
    }

    void numbersThatAReaderIgnoresAreLost_data()
    {
        QTest::addColumn<int>("decimals");
        QTest::addColumn<bool>("mark");
        QTest::addColumn<QString>("type");
        QTest::addColumn<bool>("isSubitem");
        QTest::addColumn<QStringList>("losses");
        const QString numeric = itemtype::numeric();
        QTest::newRow("mark without decimals")
            << 0 << true << numeric << false << QStringList{ "the decimal mark, because there are no decimals" };
        QTest::newRow("negative") << -1 << false << numeric << false << QStringList{ "-1 decimals" };
        QTest::newRow("decimals") << 1 << true << numeric << false << QStringList();
        QTest::newRow("image of two columns")
            << 0 << false << "image" << false
            << QStringList{ "the length 2, because items of the type image have 1 column" };
        QTest::newRow("subitem") << 0 << false << "audio" << true
                                 << QStringList{ "the length 2, because items of the type audio have 1 column",
                                                 "that it is a subitem, because its type is audio" };
    }
    void numbersThatAReaderIgnoresAreLost()
    {
        QFETCH(QStringList, losses);
        QFETCH(QString, type);
        Item item = made::item(QStringLiteral("X"), 2, {}, type);
        QFETCH(bool, mark);
        QFETCH(int, decimals);
        QFETCH(bool, isSubitem);
        item.decimals = decimals;
        item.decimalMark = mark;
        item.isSubitem = isSubitem;
        for (QString &loss : losses)
            loss.prepend(QStringLiteral("L/R/X: "));
        QCOMPARE(write(made::dictionary(item)).losses, losses);
    }

    void theSecuritySettingOfCSPro81Stays()
    {
        Layout layout = made::dictionary();
        layout.format = Format::CSProJson;
        layout.security = Security{ QStringLiteral("ab12"), {}, true, {} };
        layout.extras
            = { { QString(), QStringLiteral("security.allowDataManagerModifications"), QStringLiteral("true"), 0 } };
        const Written written = write(layout);
        QCOMPARE(written.losses, QStringList());
        QVERIFY(written.json.contains(
            "\"allowDataManagerModifications\": true, \n    \"allowExport\": true, \n    \"settings\": \"ab12\""));
        layout.format = Format::CSProText;
        QCOMPARE(write(layout).losses.size(), 1);
    }

    void aDeviceThatIsFullIsReported()
    {
        QBuffer closed;
        QTest::ignoreMessage(QtWarningMsg, "QIODevice::write (QBuffer): device not open");
        QVERIFY(!writeCSProJson(made::dictionary(), closed));
    }
};

QTEST_APPLESS_MAIN(CSProJsonWriterTest)

#include "CSProJsonWriterTest.moc"
