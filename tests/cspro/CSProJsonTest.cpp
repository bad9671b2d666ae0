#include "support/DebugCapture.h"
#include "support/OwnedDictionary.h"
#include "support/OwnedJson.h"
#include "support/Thrown.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QPointer>
#include <QtTest>

#include <limits>

struct TestAccess {
    static void parseJson(TCSProJson &dictionary, const QString &fileName) { dictionary.parseJson(fileName); }
    static QString readJsonLabel(TCSProJson &dictionary, const QJsonObject &object)
    {
        return dictionary.readJsonLabel(object);
    }
    static void readJsonValueSets(TCSProJson &dictionary, TCSProItem *item, const QJsonObject &object)
    {
        dictionary.readJsonValueSets(item, object);
    }
    static void readJsonItem(TCSProJson &dictionary, const QJsonObject &object, TCSProRecord *record, int &position,
                             bool relativePositions = true, bool decimalMark = false, bool zeroFill = false)
    {
        dictionary.readJsonItem(object, record, position, relativePositions, decimalMark, zeroFill);
    }
};

namespace
{

QJsonObject object(const QByteArray &json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (!document.isObject())
        qFatal("%s: %s", qPrintable(error.errorString()), json.constData());
    return document.object();
}

QByteArray bytesOf(const QJsonObject &root)
{
    return QJsonDocument(root).toJson();
}

// A dictionary of one record with these items. The further keys are keys of the dictionary.
QByteArray withItems(const QByteArray &items, const QByteArray &keys = QByteArray())
{
    return "{" + keys + (keys.isEmpty() ? "" : ",") + R"("levels":[{"records":[{"name":"R","items":[)" + items
        + "]}]}]}";
}

// A dictionary of one level with these ids.
QByteArray withIds(const QByteArray &items, const QByteArray &keys = QByteArray())
{
    return "{" + keys + (keys.isEmpty() ? "" : ",") + R"("levels":[{"ids":{"items":[)" + items + "]}}]}";
}

QByteArray withRecords(const QByteArray &records)
{
    return R"({"levels":[{"records":[)" + records + "]}]}";
}

// A dictionary of one item, whose only value set has these values.
QByteArray withValues(const QByteArray &values)
{
    return withItems(R"({"name":"A","valueSets":[{"name":"VS","values":[)" + values + "]}]}");
}

QString flag(bool value)
{
    return value ? QStringLiteral("yes") : QStringLiteral("no");
}

QString summary(const TCSProValueSet *set)
{
    if (!set)
        return QStringLiteral("none");
    QStringList values;
    for (const TValueSetItem *value : qAsConst(*set->items))
        values.append(value->code + ' ' + value->name);
    return set->name + '/' + set->label + '[' + values.join(';') + ']';
}

// All results of the reader, one line for each part.
QStringList summary(const OwnedJson &dictionary)
{
    QStringList lines;
    lines.append(QStringLiteral("dictionary name=%1 version=%2 type=%3/%4")
                     .arg(dictionary.name, dictionary.version)
                     .arg(dictionary.recordTypeStart)
                     .arg(dictionary.recordTypeLen));
    for (TCSProRecord *record : qAsConst(*dictionary.records)) {
        const auto entry = dictionary.recordMap.find(record->recordType);
        lines.append(QStringLiteral("record name=%1 label=%2 type=%3 required=%4 maximum=%5 mapped=%6")
                         .arg(record->name, record->label, record->recordType, record->required)
                         .arg(record->maxRecords)
                         .arg(flag(entry != dictionary.recordMap.end() && entry->second == record)));
    }
    for (int i = 0; i < dictionary.getItemsCount(); ++i) {
        const TCSProItem *item = dictionary.getItem(i);
        lines.append(QStringLiteral("item name=%1 label=%2 data=%3 length=%4 start=%5 mark=%6 zero=%7 first=%8 in=%9")
                         .arg(item->name, item->label)
                         .arg(item->dataType)
                         .arg(item->length)
                         .arg(item->start)
                         .arg(flag(item->decimalChar), flag(item->zeroFill))
                         .arg(item->firstOccurrence)
                         .arg(item->record ? item->record->name : QString())
                     + " set=" + summary(dictionary.setOf(i)));
    }
    return lines;
}

// Every key that is read, with a value that is not its default.
const QByteArray fullDocument = R"({
  "name": "D", "version": 7.5, "recordType": { "start": 3, "length": 2 }, "relativePositions": false,
  "defaults": { "decimalMark": true, "zeroFill": true },
  "levels": [ {
    "ids": { "items": [
      { "name": "ID", "labels": [ { "text": "Id" } ], "contentType": "alpha", "start": 5, "length": 4,
        "decimalMark": true, "zeroFill": true },
      { "name": "ID2" } ] },
    "records": [ {
      "name": "R", "labels": [ { "text": "Record" } ], "recordType": "T",
      "occurrences": { "maximum": 7, "required": true },
      "items": [
        { "name": "A", "labels": [ { "text": "Plain" } ], "contentType": "Alpha", "start": 10, "length": 3,
          "decimalMark": false, "zeroFill": false,
          "valueSets": [ { "name": "VS", "labels": [ { "text": "Values" } ], "values": [
            { "labels": [ { "text": "one" } ], "pairs": [ { "value": "1" } ] },
            { "labels": [ { "text": "more" } ], "pairs": [ { "range": [ "2", "3" ] } ] } ] } ] },
        { "name": "O", "labels": [ { "text": "Often" } ], "contentType": "ALPHA", "start": 20, "length": 2,
          "decimalMark": false, "zeroFill": false, "occurrences": { "maximum": 2 },
          "valueSets": [ { "name": "OS", "labels": [ { "text": "Each" } ], "values": [
            { "labels": [ { "text": "x" } ], "pairs": [ { "value": "8" } ] } ] } ] },
        { "name": "Z" },
        { "name": "N", "start": -5, "length": 2, "decimalMark": true, "zeroFill": true },
        { "name": "M", "decimalMark": true, "zeroFill": true } ] } ] } ] })";

// The parts of the document, by the short names that the rows use.
const QVector<QPair<QString, QString>> fullSummary = {
    { "D", "dictionary name=D version=7.5 type=3/2" },
    { "R", "record name=R label=Record type=T required=YES maximum=7 mapped=yes" },
    { "ID", "item name=ID label=Id data=1 length=4 start=5 mark=yes zero=yes first=0 in=Common set=none" },
    { "ID2", "item name=ID2 label= data=0 length=0 start=9 mark=yes zero=yes first=0 in=Common set=none" },
    { "A",
      "item name=A label=Plain data=1 length=3 start=10 mark=no zero=no first=0 in=R set=VS/Values[1 one;2:3 more]" },
    { "O1", "item name=O_1 label=Often data=1 length=2 start=20 mark=no zero=no first=3 in=R set=OS/Each[8 x]" },
    { "O2", "item name=O_2 label=Often data=1 length=2 start=22 mark=no zero=no first=3 in=R set=OS/Each[8 x]" },
    { "Z", "item name=Z label= data=0 length=0 start=24 mark=yes zero=yes first=0 in=R set=none" },
    { "N", "item name=N label= data=0 length=2 start=-5 mark=yes zero=yes first=0 in=R set=none" },
    { "M", "item name=M label= data=0 length=0 start=1 mark=yes zero=yes first=0 in=R set=none" },
};

QStringList linesOf(const QVector<QPair<QString, QString>> &parts)
{
    QStringList lines;
    for (const auto &part : parts)
        lines.append(part.second);
    return lines;
}

// The summary with changes: "A: length=3 -> length=0", or "A: gone".
QStringList changed(const QStringList &changes)
{
    QVector<QPair<QString, QString>> parts = fullSummary;
    for (const QString &change : changes) {
        const QString part = change.section(": ", 0, 0);
        const QString what = change.section(": ", 1);
        const auto found
            = std::find_if(parts.begin(), parts.end(), [&](const auto &line) { return line.first == part; });
        if (found == parts.end())
            qFatal("no such part: %s", qPrintable(change));
        if (what == "gone") {
            parts.erase(found);
            continue;
        }
        const QString from = what.section(" -> ", 0, 0);
        if (found->second.count(from) != 1)
            qFatal("not there exactly once: %s", qPrintable(change));
        found->second.replace(from, what.section(" -> ", 1));
    }
    return linesOf(parts);
}

// Returns the value with the part at the path ("levels/0/ids") replaced. An undefined value removes a key.
QJsonValue replaced(const QJsonValue &value, const QStringList &path, const QJsonValue &by)
{
    if (path.isEmpty())
        return by;
    if (value.isArray()) {
        QJsonArray array = value.toArray();
        const int index = path.first().toInt();
        if (index >= array.size())
            qFatal("no element %d", index);
        array.replace(index, replaced(array.at(index), path.mid(1), by));
        return array;
    }
    QJsonObject members = value.toObject();
    if (!members.contains(path.first()))
        qFatal("no key %s", qPrintable(path.first()));
    const QJsonValue inner = replaced(members.value(path.first()), path.mid(1), by);
    if (inner.isUndefined())
        members.remove(path.first());
    else
        members.insert(path.first(), inner);
    return members;
}

struct Sample {
    const char *name;
    QJsonValue value;
    QStringList types; // all types that the value has
};

// One value of every JSON type, texts and numbers in the forms that a lenient reader would take.
const QVector<Sample> samples = {
    { "null", QJsonValue(QJsonValue::Null), {} },
    { "true", true, { "boolean" } },
    { "integer", 12, { "integer", "number" } },
    { "fraction", 12.5, { "number" } },
    { "text", "text", { "string" } },
    { "text of a number", "12", { "string" } },
    { "text of a flag", "true", { "string" } },
    { "array", QJsonArray(), { "array" } },
    { "array of an object", QJsonArray{ QJsonObject() }, { "array" } },
    { "array of a number", QJsonArray{ 12 }, { "array" } },
    { "object", QJsonObject(), { "object" } },
    { "object with a text", QJsonObject{ { "text", "x" } }, { "object" } },
};

} // namespace

class CSProJsonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false")); }

    // the model

    void newDictionaryHasTheDefaultsOfTheTextReader()
    {
        OwnedJson dictionary;
        QCOMPARE(dictionary.recordTypeStart, 1);
        QCOMPARE(dictionary.recordTypeLen, 1);
        for (const QString &text : { dictionary.version, dictionary.label, dictionary.name, dictionary.positions,
                                     dictionary.zeroFill, dictionary.decimalChar })
            QCOMPARE(text, QString());
        QCOMPARE(dictionary.commonRecord->name, QString("Common"));
        QCOMPARE(dictionary.commonRecord->recordType, QString("_COMMON_"));
        QCOMPARE(dictionary.commonRecord->label, QString());
        QCOMPARE(dictionary.currentRecord, dictionary.commonRecord);
        QVERIFY(!dictionary.currentItem);
        QVERIFY(dictionary.recordMap.empty());
        QCOMPARE(dictionary.getItemsCount(), 0);
        QCOMPARE(dictionary.getRecordsCount(), 0);
        QVERIFY(!dictionary.messageBox);
        QCOMPARE(dictionary.decimalAnswer, 0);
        QCOMPARE(dictionary.lastButton, 0);
        QCOMPARE(dictionary.currentIsNumeric, false);
    }

    void dictionaryHasNoMetaObjectOfItsOwn()
    {
        const OwnedJson dictionary;
        QCOMPARE(dictionary.TCSProJson::metaObject()->className(), "QObject");
    }

    void destroyingADictionaryFreesNoRecordItemOrValueSet()
    {
        QTemporaryFile file;
        QVERIFY(file.open());
        file.write(fullDocument);
        file.close();
        auto dictionary = std::make_unique<TCSProJson>();
        dictionary->readFile(file.fileName());
        TCSProRecord *common = dictionary->commonRecord;
        TCSProRecord *record = dictionary->getRecord(0);
        const QList<TCSProItem *> items = *dictionary->items;
        const QPointer<TCSProItem> item = items.at(2);
        const QPointer<TCSProValueSet> set = item->getValueSet(0);
        const QPointer<TValueSetItem> value = set->getItem(0);
        delete dictionary->items;
        delete dictionary->records;
        dictionary.reset();
        QVERIFY(item && set && value);
        QCOMPARE(common->name, QString("Common"));
        QCOMPARE(record->name, QString("R"));
        QCOMPARE(item->record, record);
        QCOMPARE(item->getValueSet(0), set.data());
        QCOMPARE(value->name, QString("one"));
        QVERIFY(!item->parent() && !set->parent() && !value->parent());
        for (TCSProItem *each : items) {
            for (TCSProValueSet *own : qAsConst(*each->valueSets)) {
                qDeleteAll(*own->items);
                delete own;
            }
            delete each;
        }
        delete record;
        delete common;
    }

    // files that are read

    void fileBeginsWithABraceAmongItsFirst16Bytes_data()
    {
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<bool>("isRead");

        // clang-format off
        QTest::newRow("brace first")                     << QByteArray()                  << true;
        QTest::newRow("blank")                           << QByteArray(" ")               << true;
        QTest::newRow("tab, line feed, carriage return") << QByteArray("\t\n\r\n ")       << true;
        QTest::newRow("15 blanks")                       << QByteArray(15, ' ')           << true;
        QTest::newRow("16 blanks")                       << QByteArray(16, ' ')           << false;
        QTest::newRow("15 line feeds")                   << QByteArray(15, '\n')          << true;
        QTest::newRow("16 line feeds")                   << QByteArray(16, '\n')          << false;
        QTest::newRow("15 tabs")                         << QByteArray(15, '\t')          << true;
        QTest::newRow("17 tabs")                         << QByteArray(17, '\t')          << false;
        QTest::newRow("byte-order mark")                 << QByteArray("\xEF\xBB\xBF")    << false;
        QTest::newRow("mark after a blank")              << QByteArray(" \xEF\xBB\xBF")   << false;
        // clang-format on
    }
    void fileBeginsWithABraceAmongItsFirst16Bytes()
    {
        QFETCH(QByteArray, head);
        QFETCH(bool, isRead);
        const OwnedJson dictionary(head + fullDocument);
        QCOMPARE(summary(dictionary).size(), isRead ? fullSummary.size() : 1);
        QCOMPARE(dictionary.name, isRead ? QString("D") : QString());
        QCOMPARE(dictionary.version, isRead ? QString("7.5") : QString());
        QCOMPARE(dictionary.recordTypeStart, isRead ? 3 : 1);
        QCOMPARE(dictionary.commonRecord->label, isRead ? QString("Common") : QString());
    }

    void parsingItselfDoesNotLookAtTheFirst16Bytes()
    {
        QTemporaryFile file;
        QVERIFY(file.open());
        file.write(QByteArray(100, ' ') + fullDocument);
        file.close();
        OwnedJson dictionary;
        TestAccess::parseJson(dictionary, file.fileName());
        QCOMPARE(summary(dictionary), linesOf(fullSummary));
    }

    void whatIsNoJsonObjectGivesAnEmptyDictionary_data()
    {
        QTest::addColumn<QByteArray>("bytes");

        // clang-format off
        QTest::newRow("lone brace")            << QByteArray("{");
        QTest::newRow("brace and line feed")   << QByteArray("{\n");
        QTest::newRow("array")                 << "[" + fullDocument + "]";
        QTest::newRow("array after blanks")    << "  [" + fullDocument + "]";
        QTest::newRow("text")                  << QByteArray("\"levels\"");
        QTest::newRow("number")                << QByteArray("8");
        QTest::newRow("null")                  << QByteArray("null");
        QTest::newRow("two objects")           << fullDocument + fullDocument;
        QTest::newRow("something after")       << fullDocument + "x";
        QTest::newRow("comma after a member") << QByteArray(R"({"name":"D",})");
        QTest::newRow("comment")               << QByteArray("{/* c */\"name\":\"D\"}");
        QTest::newRow("single quotes")         << QByteArray("{'name':'D'}");
        QTest::newRow("key without quotes")    << QByteArray("{name:\"D\"}");
        // clang-format on
    }
    void whatIsNoJsonObjectGivesAnEmptyDictionary()
    {
        QFETCH(QByteArray, bytes);
        QLoggingCategory::setFilterRules(QString());
        const DebugCapture log;
        const OwnedJson dictionary(bytes);
        QCOMPARE(summary(dictionary), QStringList("dictionary name= version= type=1/1"));
        QCOMPARE(dictionary.commonRecord->label, QString());
        QCOMPARE(log.taken(), QStringList());
    }

    // the two shapes of a document

    void dictionaryMayBeUnderAKeyOfTheRoot_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("name");

        // clang-format off
        QTest::newRow("at the root")              << QByteArray(R"({"name":"ROOT"})")                                      << "ROOT";
        QTest::newRow("under the key")            << QByteArray(R"({"name":"ROOT","dictionary":{"name":"INNER"}})")        << "INNER";
        QTest::newRow("under the key, no name")   << QByteArray(R"({"name":"ROOT","dictionary":{}})")                      << "";
        QTest::newRow("unwrapped once only")      << QByteArray(R"({"dictionary":{"name":"A","dictionary":{"name":"B"}}})") << "A";
        QTest::newRow("key is a text")            << QByteArray(R"({"name":"ROOT","dictionary":"INNER"})")                 << "ROOT";
        QTest::newRow("key is an array")          << QByteArray(R"({"name":"ROOT","dictionary":[{"name":"INNER"}]})")      << "ROOT";
        QTest::newRow("key is null")              << QByteArray(R"({"name":"ROOT","dictionary":null})")                    << "ROOT";
        QTest::newRow("key in another case")      << QByteArray(R"({"name":"ROOT","Dictionary":{"name":"INNER"}})")        << "ROOT";
        // clang-format on
    }
    void dictionaryMayBeUnderAKeyOfTheRoot()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, name);
        QCOMPARE(OwnedJson(bytes).name, name);
    }

    void bothShapesReadTheSame()
    {
        QCOMPARE(summary(OwnedJson(fullDocument)), linesOf(fullSummary));
        QCOMPARE(summary(OwnedJson("{\"software\":\"x\",\"dictionary\":" + fullDocument + "}")), linesOf(fullSummary));
    }

    void onlyTheWrappedDictionaryOfTheRootIsRead()
    {
        QJsonObject root = object(fullDocument);
        root.insert("dictionary", QJsonObject{ { "name", "INNER" } });
        QCOMPARE(summary(OwnedJson(bytesOf(root))), QStringList("dictionary name=INNER version=8 type=0/0"));
    }

    // every key and every type

    void keyOfAnotherTypeCountsAsTheTablesSay_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("sample"); // empty for a key that is absent
        QTest::addColumn<QStringList>("changes");

        const QStringList noLevels = { "R: gone",  "ID: gone", "ID2: gone", "A: gone", "O1: gone",
                                       "O2: gone", "Z: gone",  "N: gone",   "M: gone" };
        const QStringList noIds = { "ID: gone", "ID2: gone", "O1: first=3 -> first=1", "O2: first=3 -> first=1" };
        const QStringList noRecords = { "R: gone", "A: gone", "O1: gone", "O2: gone", "Z: gone", "N: gone", "M: gone" };
        const QStringList noItems = noRecords.mid(1);
        const QStringList once
            = { "O1: name=O_1 -> name=O", "O1: first=3 -> first=0", "O2: gone", "Z: start=24 -> start=22" };
        const QStringList noSet = { "A: set=VS/Values[1 one;2:3 more] -> set=none" };
        const QString level = "levels/0/";
        const QString id = level + "ids/items/0/";
        const QString record = level + "records/0/";
        const QString plain = record + "items/0/";
        const QString often = record + "items/1/";
        const QString set = plain + "valueSets/0/";
        const QString one = set + "values/0/";
        const QString more = set + "values/1/";

        // clang-format off
        addKey("name", "string", { "D: name=D -> name=" });
        addKey("version", "number", { "D: version=7.5 -> version=8" });
        addKey("recordType", "object", { "D: type=3/2 -> type=0/0" });
        addKey("recordType/start", "integer", { "D: type=3/2 -> type=0/2" });
        addKey("recordType/length", "integer", { "D: type=3/2 -> type=3/0" });
        addKey("relativePositions", "boolean", { "M: start=1 -> start=-3" });
        addKey("defaults", "object", { "ID2: mark=yes zero=yes -> mark=no zero=no", "Z: mark=yes zero=yes -> mark=no zero=no" });
        addKey("defaults/decimalMark", "boolean", { "ID2: mark=yes -> mark=no", "Z: mark=yes -> mark=no" });
        addKey("defaults/zeroFill", "boolean", { "ID2: zero=yes -> zero=no", "Z: zero=yes -> zero=no" });
        addKey("levels", "array", noLevels);
        addElement("levels/0", "object", noLevels);
        addKey(level + "ids", "object", noIds);
        addKey(level + "ids/items", "array", noIds);
        addElement(level + "ids/items/0", "object",
                   { "ID: gone", "ID2: start=9 -> start=1", "O1: first=3 -> first=2", "O2: first=3 -> first=2" });

        addKey(level + "records", "array", noRecords);
        addElement(level + "records/0", "object", noRecords);
        addKey(record + "name", "string", { "R: name=R -> name=", "A: in=R -> in=", "O1: in=R -> in=", "O2: in=R -> in=",
                                            "Z: in=R -> in=", "N: in=R -> in=", "M: in=R -> in=" });
        addKey(record + "labels", "array", { "R: label=Record -> label=" });
        addElement(record + "labels/0", "object", { "R: label=Record -> label=" });
        addKey(record + "labels/0/text", "string", { "R: label=Record -> label=" });
        addKey(record + "recordType", "string", { "R: type=T -> type=", "R: mapped=yes -> mapped=no" });
        addKey(record + "occurrences", "object", { "R: required=YES maximum=7 -> required=NO maximum=1" });
        addKey(record + "occurrences/maximum", "integer", { "R: maximum=7 -> maximum=1" });
        addKey(record + "occurrences/required", "boolean", { "R: required=YES -> required=NO" });
        addKey(record + "items", "array", noItems);
        addElement(record + "items/0", "object", { "A: gone", "O1: first=3 -> first=2", "O2: first=3 -> first=2" });
        addElement(record + "items/1", "object", { "O1: gone", "O2: gone", "Z: start=24 -> start=13" });

        addKey(id + "name", "string", { "ID: name=ID -> name=" });
        addKey(id + "labels", "array", { "ID: label=Id -> label=" });
        addElement(id + "labels/0", "object", { "ID: label=Id -> label=" });
        addKey(id + "labels/0/text", "string", { "ID: label=Id -> label=" });
        addKey(id + "contentType", "string", { "ID: data=1 -> data=0" });
        addKey(id + "length", "integer", { "ID: length=4 -> length=0", "ID2: start=9 -> start=6" });
        addKey(id + "start", "integer", { "ID: start=5 -> start=1", "ID2: start=9 -> start=5" });
        addAbsent(id + "decimalMark", {}); // the default is true
        addWrong(id + "decimalMark", "boolean", { "ID: mark=yes -> mark=no" });
        addAbsent(id + "zeroFill", {});
        addWrong(id + "zeroFill", "boolean", { "ID: zero=yes -> zero=no" });

        addKey(plain + "name", "string", { "A: name=A -> name=" });
        addKey(plain + "labels", "array", { "A: label=Plain -> label=" });
        addElement(plain + "labels/0", "object", { "A: label=Plain -> label=" });
        addKey(plain + "labels/0/text", "string", { "A: label=Plain -> label=" });
        addKey(plain + "contentType", "string", { "A: data=1 -> data=0" });
        addKey(plain + "length", "integer", { "A: length=3 -> length=0" });
        addKey(plain + "start", "integer", { "A: start=10 -> start=1" });
        addAbsent(plain + "decimalMark", { "A: mark=no -> mark=yes" });
        addWrong(plain + "decimalMark", "boolean", {}); // false, and not the default
        addAbsent(plain + "zeroFill", { "A: zero=no -> zero=yes" });
        addWrong(plain + "zeroFill", "boolean", {});

        addKey(often + "name", "string", { "O1: name=O_1 -> name=_1", "O2: name=O_2 -> name=_2" });
        addKey(often + "labels", "array", { "O1: label=Often -> label=", "O2: label=Often -> label=" });
        addKey(often + "contentType", "string", { "O1: data=1 -> data=0", "O2: data=1 -> data=0" });
        addKey(often + "length", "integer", { "O1: length=2 -> length=0", "O2: length=2 -> length=0",
                                              "O2: start=22 -> start=20", "Z: start=24 -> start=22" });
        addKey(often + "start", "integer", { "O1: start=20 -> start=13", "O2: start=22 -> start=15", "Z: start=24 -> start=17" });
        addKey(often + "decimalMark", "boolean", { "O1: mark=no -> mark=yes", "O2: mark=no -> mark=yes" });
        addKey(often + "zeroFill", "boolean", { "O1: zero=no -> zero=yes", "O2: zero=no -> zero=yes" });
        addKey(often + "occurrences", "object", once);
        addKey(often + "occurrences/maximum", "integer", once);
        addKey(often + "valueSets", "array", { "O1: set=OS/Each[8 x] -> set=none", "O2: set=OS/Each[8 x] -> set=none" });

        addKey(plain + "valueSets", "array", noSet);
        addElement(plain + "valueSets/0", "object", noSet);
        addKey(set + "name", "string", { "A: set=VS/Values -> set=/Values" });
        addKey(set + "labels", "array", { "A: set=VS/Values -> set=VS/" });
        addElement(set + "labels/0", "object", { "A: set=VS/Values -> set=VS/" });
        addKey(set + "labels/0/text", "string", { "A: set=VS/Values -> set=VS/" });
        addKey(set + "values", "array", { "A: [1 one;2:3 more] -> []" });
        addElement(set + "values/0", "object", { "A: [1 one;2:3 more] -> [2:3 more]" });
        addKey(one + "labels", "array", { "A: [1 one; -> [1 ;" });
        addElement(one + "labels/0", "object", { "A: [1 one; -> [1 ;" });
        addKey(one + "labels/0/text", "string", { "A: [1 one; -> [1 ;" });
        addKey(one + "pairs", "array", { "A: [1 one; -> [ one;" });
        addElement(one + "pairs/0", "object", { "A: [1 one; -> [ one;" });
        addKey(one + "pairs/0/value", "string", { "A: [1 one; -> [ one;" });
        addKey(more + "pairs", "array", { "A: ;2:3 more] -> ; more]" });
        addKey(more + "pairs/0/range", "array", { "A: ;2:3 more] -> ; more]" });
        addElement(more + "pairs/0/range/0", "string", { "A: ;2:3 more] -> ; more]" });
        addElement(more + "pairs/0/range/1", "string", { "A: ;2:3 more] -> ; more]" });
        // clang-format on
    }
    void keyOfAnotherTypeCountsAsTheTablesSay()
    {
        QFETCH(QString, path);
        QFETCH(QString, sample);
        QFETCH(QStringList, changes);
        QJsonValue by(QJsonValue::Undefined);
        for (const Sample &each : samples) {
            if (sample == QLatin1String(each.name))
                by = each.value;
        }
        QCOMPARE(by.isUndefined(), sample.isEmpty());
        const QJsonValue root = replaced(object(fullDocument), path.split('/'), by);
        QCOMPARE(summary(OwnedJson(bytesOf(root.toObject()))), changed(changes));
    }

    void keysAreMatchedWithCase_data()
    {
        QTest::addColumn<QByteArray>("key");
        QTest::addColumn<QStringList>("changes");

        // clang-format off
        QTest::newRow("name")        << QByteArray("\"name\": \"D\"")  << QStringList{ "D: name=D -> name=" };
        QTest::newRow("version")     << QByteArray("\"version\"")      << QStringList{ "D: version=7.5 -> version=8" };
        QTest::newRow("length")      << QByteArray("\"length\": 2 }, \"relative") << QStringList{ "D: type=3/2 -> type=3/0" };
        QTest::newRow("contentType") << QByteArray("\"contentType\": \"Alpha\"") << QStringList{ "A: data=1 -> data=0" };
        // clang-format on
    }
    void keysAreMatchedWithCase()
    {
        QFETCH(QByteArray, key);
        QFETCH(QStringList, changes);
        QCOMPARE(fullDocument.count(key), 1);
        QByteArray bytes = fullDocument;
        QByteArray other = key;
        other[1] = char(std::toupper(other.at(1)));
        QCOMPARE(summary(OwnedJson(bytes.replace(key, other))), changed(changes));
    }

    void otherKeysAreIgnored()
    {
        QJsonObject root = object(fullDocument);
        root.insert("label", "L");
        root.insert("labels", QJsonArray{ QJsonObject{ { "text", "L" } } });
        root.insert("positions", "Relative");
        root.insert("zeroFill", true);
        root.insert("decimalMark", true);
        root.insert("decimalChar", "Yes");
        root.insert("items", QJsonArray{ QJsonObject{ { "name", "X" } } });
        root.insert("records", QJsonArray{ QJsonObject{ { "name", "X" } } });
        const OwnedJson dictionary(bytesOf(root));
        QCOMPARE(summary(dictionary), linesOf(fullSummary));
        QCOMPARE(dictionary.label, QString());
        QCOMPARE(dictionary.positions, QString());
        QCOMPARE(dictionary.zeroFill, QString());
        QCOMPARE(dictionary.decimalChar, QString());
    }

    void settingsOfTheDictionaryAreNotKept()
    {
        const OwnedJson dictionary(fullDocument);
        for (const QString &text :
             { dictionary.label, dictionary.positions, dictionary.zeroFill, dictionary.decimalChar })
            QCOMPARE(text, QString());
    }

    // numbers

    void versionIsWrittenWithSixDigits_data()
    {
        QTest::addColumn<QByteArray>("version");
        QTest::addColumn<QString>("expected");

        // clang-format off
        QTest::newRow("8.0")         << QByteArray("8.0")      << "8";
        QTest::newRow("8")           << QByteArray("8")        << "8";
        QTest::newRow("7.7")         << QByteArray("7.7")      << "7.7";
        QTest::newRow("0")           << QByteArray("0")        << "0";
        QTest::newRow("negative")    << QByteArray("-1.5")     << "-1.5";
        QTest::newRow("six digits")  << QByteArray("8.12345")  << "8.12345";
        QTest::newRow("more digits") << QByteArray("8.123456") << "8.12346";
        QTest::newRow("million")     << QByteArray("1000000")  << "1e+06";
        QTest::newRow("tiny")        << QByteArray("0.00001")  << "1e-05";
        // clang-format on
    }
    void versionIsWrittenWithSixDigits()
    {
        QFETCH(QByteArray, version);
        QFETCH(QString, expected);
        QCOMPARE(OwnedJson("{\"version\":" + version + "}").version, expected);
    }

    void integerIsANumberWithoutAFraction_data()
    {
        QTest::addColumn<QByteArray>("number");
        QTest::addColumn<int>("expected");

        // clang-format off
        QTest::newRow("integer")            << QByteArray("12")          << 12;
        QTest::newRow("written as a real")  << QByteArray("12.0")        << 12;
        QTest::newRow("with an exponent")   << QByteArray("1.2e1")       << 12;
        QTest::newRow("negative")           << QByteArray("-12")         << -12;
        QTest::newRow("fraction")           << QByteArray("12.5")        << 0;
        QTest::newRow("small fraction")     << QByteArray("12.0000001")  << 0;
        QTest::newRow("largest")            << QByteArray("2147483647")  << 2147483647;
        QTest::newRow("smallest")           << QByteArray("-2147483648") << std::numeric_limits<int>::min();
        QTest::newRow("too large")          << QByteArray("2147483648")  << 0;
        QTest::newRow("too small")          << QByteArray("-2147483649") << 0;
        QTest::newRow("far too large")      << QByteArray("1e18")        << 0;
        // clang-format on
    }
    void integerIsANumberWithoutAFraction()
    {
        QFETCH(QByteArray, number);
        QFETCH(int, expected);
        const OwnedJson dictionary(withItems("{\"length\":" + number + "}",
                                             R"("recordType":{"start":)" + number + R"(,"length":)" + number + "}"));
        QCOMPARE(dictionary.recordTypeStart, expected);
        QCOMPARE(dictionary.recordTypeLen, expected);
        QCOMPARE(dictionary.getItem(0)->length, expected);
    }

    void dictionaryWithoutARecordTypeHasTheWidthZero()
    {
        const OwnedJson dictionary("{}");
        QCOMPARE(dictionary.recordTypeStart, 0);
        QCOMPARE(dictionary.recordTypeLen, 0);
        QCOMPARE(dictionary.name, QString());
        QCOMPARE(dictionary.version, QString("8"));
        QCOMPARE(dictionary.commonRecord->label, QString("Common"));
    }

    void dictionaryWithoutLevelsKeepsTheKeysAbove()
    {
        QJsonObject root = object(fullDocument);
        root.remove("levels");
        const OwnedJson dictionary(bytesOf(root));
        QCOMPARE(summary(dictionary), QStringList("dictionary name=D version=7.5 type=3/2"));
        QCOMPARE(dictionary.commonRecord->label, QString("Common"));
        QCOMPARE(dictionary.currentRecord, dictionary.commonRecord);
    }

    // two passes over the levels

    void idsOfAllLevelsComeFirstAndThenTheRecords()
    {
        OwnedJson dictionary(R"({"levels":[
            {"ids":{"items":[{"name":"I1"}]},"records":[{"name":"R1","items":[{"name":"A"},{"name":"B"}]}]},
            {"records":[{"name":"R2","items":[{"name":"C"}]},{"name":"R3","items":[{"name":"D"}]}],
             "ids":{"items":[{"name":"I2"},{"name":"I3"}]}}]})");
        QCOMPARE(dictionary.itemNames(), QStringList({ "I1", "I2", "I3", "A", "B", "C", "D" }));
        QCOMPARE(dictionary.getRecordsCount(), 3);
        QStringList groups;
        for (const TCSProItem *item : qAsConst(*dictionary.items))
            groups.append(item->record->name);
        QCOMPARE(groups, QStringList({ "Common", "Common", "Common", "R1", "R1", "R2", "R3" }));
        for (int i = 0; i < 3; ++i)
            QCOMPARE(dictionary.getItem(i)->record, dictionary.commonRecord);
        QVERIFY(!dictionary.records->contains(dictionary.commonRecord));
    }

    void positionOfIdsStartsAnewAtEveryLevel()
    {
        const OwnedJson dictionary(R"({"levels":[{"ids":{"items":[{"length":3},{"length":2}]}},
                                                 {"ids":{"items":[{"length":4},{"length":1}]}}]})");
        QCOMPARE(dictionary.starts(), QList<int>({ 1, 4, 1, 5 }));
    }

    void positionStartsAnewInEveryRecord()
    {
        const OwnedJson dictionary(R"({"recordType":{"start":1,"length":2},"levels":[
            {"ids":{"items":[{"start":3,"length":5}]},
             "records":[{"items":[{"length":3},{"length":2}]},{"items":[{"length":4},{"length":1}]}]}]})");
        QCOMPARE(dictionary.starts(), QList<int>({ 3, 1, 4, 1, 5 }));
    }

    void elementsThatAreNoObjectsAreSkipped()
    {
        const OwnedJson dictionary(R"({"levels":[1,"x",null,[],true,
            {"ids":{"items":[7,{"name":"I","length":2},null,{"name":"J"}]},
             "records":[[],{"name":"R","items":["x",{"name":"A","length":3},[{"name":"Q"}],{"name":"B"}]},false]}]})");
        QCOMPARE(dictionary.itemNames(), QStringList({ "I", "J", "A", "B" }));
        QCOMPARE(dictionary.starts(), QList<int>({ 1, 3, 1, 4 }));
        QCOMPARE(dictionary.records->size(), 1);
    }

    // records

    void recordIsFilledFromItsKeys()
    {
        OwnedJson dictionary(withRecords(R"({"name":"H","labels":[{"text":"House"}],"recordType":"'1'",
            "occurrences":{"required":true,"maximum":30},"recordLen":77,"required":"maybe","items":[]})"));
        const TCSProRecord *record = dictionary.getRecord(0);
        QCOMPARE(record->name, QString("H"));
        QCOMPARE(record->label, QString("House"));
        QCOMPARE(record->recordType, QString("'1'"));
        QCOMPARE(record->required, QString("YES"));
        QCOMPARE(record->maxRecords, 30);
        QCOMPARE(record->recordLen, 0);
    }

    void requiredIsYesOrNoAndNeverEmpty_data()
    {
        QTest::addColumn<QByteArray>("occurrences");
        QTest::addColumn<QString>("required");
        QTest::addColumn<int>("maximum");

        // clang-format off
        QTest::newRow("true")          << QByteArray(R"(,"occurrences":{"required":true})")              << "YES" << 1;
        QTest::newRow("false")         << QByteArray(R"(,"occurrences":{"required":false,"maximum":5})") << "NO"  << 5;
        QTest::newRow("text")          << QByteArray(R"(,"occurrences":{"required":"true"})")            << "NO"  << 1;
        QTest::newRow("absent")        << QByteArray(R"(,"occurrences":{"maximum":100})")                << "NO"  << 100;
        QTest::newRow("no object")     << QByteArray()                                                   << "NO"  << 1;
        QTest::newRow("maximum 0")     << QByteArray(R"(,"occurrences":{"maximum":0})")                  << "NO"  << 0;
        QTest::newRow("maximum below") << QByteArray(R"(,"occurrences":{"maximum":-3})")                 << "NO"  << -3;
        // clang-format on
    }
    void requiredIsYesOrNoAndNeverEmpty()
    {
        QFETCH(QByteArray, occurrences);
        QFETCH(QString, required);
        QFETCH(int, maximum);
        OwnedJson dictionary(withRecords("{\"name\":\"R\"" + occurrences + "}"));
        QCOMPARE(dictionary.getRecord(0)->required, required);
        QCOMPARE(dictionary.getRecord(0)->maxRecords, maximum);
        QCOMPARE(dictionary.getRecordsCount(), 1);
    }

    void recordMapHoldsTheLastRecordOfEveryTypeThatIsNotEmpty()
    {
        const OwnedJson dictionary(
            withRecords(R"({"name":"A","recordType":"1"},{"name":"B","recordType":""},{"name":"C"},
            {"name":"D","recordType":"2"},{"name":"E","recordType":"1"},{"name":"F","recordType":" "})"));
        QCOMPARE(dictionary.records->size(), 6);
        QStringList entries;
        for (const auto &entry : dictionary.recordMap)
            entries.append(entry.first + '=' + entry.second->name);
        QCOMPARE(entries, QStringList({ " =F", "1=E", "2=D" }));
        QCOMPARE(dictionary.recordMap.at("1"), dictionary.getRecord(4));
    }

    void everyRecordLogsItsNameAndType()
    {
        QLoggingCategory::setFilterRules(QString());
        const DebugCapture log;
        const OwnedJson dictionary(R"({"levels":[{"ids":{"items":[{"name":"I"}]},"records":[
            {"name":"HOUSE","recordType":"H","items":[{"name":"A","occurrences":{"maximum":3}}]},{"name":"X"}]},
            {"records":[{"recordType":"Z"}]}]})");
        QCOMPARE(log.taken(), QStringList({ "Record HOUSE H", "Record X ", "Record  Z" }));
    }

    void lastRecordAndLastPlainItemStayCurrent()
    {
        const OwnedJson dictionary(R"({"levels":[{"ids":{"items":[{"name":"I"}]},"records":[
            {"name":"R1","items":[{"name":"A"},{"name":"B"},{"name":"C","occurrences":{"maximum":2}}]},
            {"name":"R2","items":[{"name":"D","occurrences":{"maximum":2}}]}]}]})");
        QCOMPARE(dictionary.currentRecord, dictionary.getRecord(1));
        QCOMPARE(dictionary.currentItem->name, QString("B"));
    }

    void dictionaryWithoutRecordsLeavesTheCommonRecordCurrent()
    {
        const OwnedJson dictionary(withIds(R"({"name":"I"},{"name":"J"})"));
        QCOMPARE(dictionary.currentRecord, dictionary.commonRecord);
        QCOMPARE(dictionary.currentItem, dictionary.getItem(1));
    }

    void readingTwiceAppends()
    {
        OwnedJson dictionary(fullDocument);
        dictionary.read(withItems(R"({"name":"X"})"));
        QCOMPARE(dictionary.getRecordsCount(), 2);
        QCOMPARE(dictionary.getItemsCount(), 9);
        QCOMPARE(dictionary.name, QString());
    }

    // items

    void itemIsFilledOnlyFromItsKeys()
    {
        const OwnedJson dictionary(withItems(R"({"name":"A","labels":[{"text":"Label"}],"contentType":"numeric",
            "length":5,"start":7,"decimals":2,"subitem":true,"missingValue":"9","notApplicable":"8",
            "decimalMark":true,"zeroFill":true,"itemType":"SubItem",
            "subitems":[{"name":"S","length":1}],"items":[{"name":"T"}]})"));
        QCOMPARE(dictionary.itemNames(), QStringList("A"));
        const TCSProItem *item = dictionary.getItem(0);
        QCOMPARE(item->label, QString("Label"));
        QCOMPARE(item->dataType, 0);
        QCOMPARE(item->length, 5);
        QCOMPARE(item->start, 7);
        QCOMPARE(item->occurrences, 1);
        QCOMPARE(item->decimals, 0);
        QCOMPARE(item->subItem, 0);
        QCOMPARE(item->decimalChar, true);
        QCOMPARE(item->zeroFill, true);
        QCOMPARE(item->firstOccurrence, 0);
        QCOMPARE(item->missingValue, QString());
        QCOMPARE(item->notApplicable, QString());
        QCOMPARE(item->record, dictionary.getRecord(0));
        QVERIFY(!item->hasValueSets());
    }

    void alphaInAnyCaseIsAlphanumeric_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("expected");

        // clang-format off
        QTest::newRow("alpha")      << QByteArray("\"alpha\"")   << 1;
        QTest::newRow("ALPHA")      << QByteArray("\"ALPHA\"")   << 1;
        QTest::newRow("aLpHa")      << QByteArray("\"aLpHa\"")   << 1;
        QTest::newRow("numeric")    << QByteArray("\"numeric\"") << 0;
        QTest::newRow("alpha ")     << QByteArray("\"alpha \"")  << 0;
        QTest::newRow(" alpha")     << QByteArray("\" alpha\"")  << 0;
        QTest::newRow("alphabet")   << QByteArray("\"alphabet\"") << 0;
        QTest::newRow("audio")      << QByteArray("\"audio\"")   << 0;
        QTest::newRow("empty")      << QByteArray("\"\"")        << 0;
        QTest::newRow("a number")   << QByteArray("1")           << 0;
        QTest::newRow("true")       << QByteArray("true")        << 0;
        // clang-format on
    }
    void alphaInAnyCaseIsAlphanumeric()
    {
        QFETCH(QByteArray, text);
        QFETCH(int, expected);
        const QByteArray key = "\"contentType\":" + text;
        const OwnedJson dictionary(withItems("{" + key + "},{" + key + ",\"occurrences\":{\"maximum\":2}}"));
        for (int i = 0; i < 3; ++i)
            QCOMPARE(dictionary.getItem(i)->dataType, expected);
    }

    void flagOfTheItemOverridesTheDefault_data()
    {
        QTest::addColumn<bool>("defaultValue");
        QTest::addColumn<QByteArray>("value"); // empty for an absent key
        QTest::addColumn<bool>("plain");
        QTest::addColumn<bool>("repeated");

        // clang-format off
        QTest::newRow("default false, absent")    << false << QByteArray()           << false << false;
        QTest::newRow("default true, absent")     << true  << QByteArray()           << true  << true;
        QTest::newRow("default false, true")      << false << QByteArray("true")     << true  << true;
        QTest::newRow("default true, false")      << true  << QByteArray("false")    << false << false;
        QTest::newRow("default false, a text")    << false << QByteArray("\"true\"") << false << false;
        QTest::newRow("default true, a text")     << true  << QByteArray("\"true\"") << false << true;
        QTest::newRow("default true, null")       << true  << QByteArray("null")     << false << true;
        QTest::newRow("default true, a number")   << true  << QByteArray("1")        << false << true;
        // clang-format on
    }
    void flagOfTheItemOverridesTheDefault()
    {
        QFETCH(bool, defaultValue);
        QFETCH(QByteArray, value);
        QFETCH(bool, plain);
        QFETCH(bool, repeated);
        for (const QByteArray &key : { QByteArray("decimalMark"), QByteArray("zeroFill") }) {
            const QByteArray own = value.isEmpty() ? QByteArray() : ",\"" + key + "\":" + value;
            const OwnedJson dictionary(
                withItems("{\"length\":1" + own + R"(},{"occurrences":{"maximum":2})" + own + "}",
                          "\"defaults\":{\"" + key + "\":" + (defaultValue ? "true" : "false") + "}"));
            const bool isMark = key == "decimalMark";
            for (int i = 0; i < 3; ++i) {
                const TCSProItem *item = dictionary.getItem(i);
                QCOMPARE(isMark ? item->decimalChar : item->zeroFill, i == 0 ? plain : repeated);
                QCOMPARE(isMark ? item->zeroFill : item->decimalChar, false);
            }
        }
    }

    // placing

    void itemsFollowEachOther_data()
    {
        QTest::addColumn<QByteArray>("items");
        QTest::addColumn<QList<int>>("starts");

        // clang-format off
        QTest::newRow("lengths add up")
            << QByteArray(R"({"length":3},{"length":2},{"length":4})") << QList<int>{ 1, 4, 6 };
        QTest::newRow("first item at column 1")
            << QByteArray(R"({"length":3})") << QList<int>{ 1 };
        QTest::newRow("after a start")
            << QByteArray(R"({"start":10,"length":3},{"length":1})") << QList<int>{ 10, 13 };
        QTest::newRow("a start moves back")
            << QByteArray(R"({"length":9},{"start":2,"length":1},{"length":1})") << QList<int>{ 1, 2, 3 };
        QTest::newRow("no length takes a column")
            << QByteArray(R"({},{},{"length":1})") << QList<int>{ 1, 2, 3 };
        QTest::newRow("length 0 takes a column")
            << QByteArray(R"({"length":0},{"length":1})") << QList<int>{ 1, 2 };
        QTest::newRow("start and no length")
            << QByteArray(R"({"start":10},{"length":1})") << QList<int>{ 10, 11 };
        QTest::newRow("negative length takes a column")
            << QByteArray(R"({"length":-7},{"length":1})") << QList<int>{ 1, 2 };
        QTest::newRow("start of another type is the position")
            << QByteArray(R"({"length":4},{"start":"9","length":2},{"length":1})") << QList<int>{ 1, 5, 7 };
        QTest::newRow("start with a fraction is the position")
            << QByteArray(R"({"length":4},{"start":9.5,"length":2},{"length":1})") << QList<int>{ 1, 5, 7 };
        QTest::newRow("null start is the position")
            << QByteArray(R"({"length":4},{"start":null,"length":2},{"length":1})") << QList<int>{ 1, 5, 7 };
        QTest::newRow("start 0 stays 0")
            << QByteArray(R"({"start":0,"length":3},{"length":1})") << QList<int>{ 0, 3 };
        QTest::newRow("negative start stays")
            << QByteArray(R"({"start":-2,"length":9},{"length":1})") << QList<int>{ -2, 7 };
        QTest::newRow("subitems are items like others")
            << QByteArray(R"({"length":8},{"subitem":true,"subitemOffset":0,"length":4},{"length":1})") << QList<int>{ 1, 9, 13 };
        // clang-format on
    }
    void itemsFollowEachOther()
    {
        QFETCH(QByteArray, items);
        QFETCH(QList<int>, starts);
        QCOMPARE(OwnedJson(withItems(items)).starts(), starts);
        QCOMPARE(OwnedJson(withItems(items, R"("relativePositions":true)")).starts(), starts);
        QCOMPARE(OwnedJson(withItems(items, R"("relativePositions":false)")).starts(), starts);
        QCOMPARE(OwnedJson(withIds(items)).starts(), starts);
        QCOMPARE(OwnedJson(withIds(items, R"("relativePositions":false)")).starts(), starts);
    }

    void positionThatIsNotPositiveCountsAsColumn1OnlyWithoutRelativePositions_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QList<int>>("relative");
        QTest::addColumn<QList<int>>("other");

        // clang-format off
        QTest::newRow("position 1")  << QByteArray(R"({"start":-1,"length":2})") << QList<int>{ -1, 1, 4 }   << QList<int>{ -1, 1, 4 };
        QTest::newRow("position 0")  << QByteArray(R"({"start":-2,"length":2})") << QList<int>{ -2, 0, 3 }   << QList<int>{ -2, 1, 3 };
        QTest::newRow("position -7") << QByteArray(R"({"start":-9,"length":2})") << QList<int>{ -9, -7, -4 } << QList<int>{ -9, 1, 1 };
        // clang-format on
    }
    void positionThatIsNotPositiveCountsAsColumn1OnlyWithoutRelativePositions()
    {
        QFETCH(QByteArray, before);
        QFETCH(QList<int>, relative);
        QFETCH(QList<int>, other);
        const QByteArray items = before + R"(,{"length":3},{"length":1})";
        QCOMPARE(OwnedJson(withItems(items)).starts(), relative);
        QCOMPARE(OwnedJson(withItems(items, R"("relativePositions":false)")).starts(), other);
    }

    void readJsonItemPlacesAnItem_data()
    {
        QTest::addColumn<QByteArray>("item");
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("start");
        QTest::addColumn<int>("after");

        // clang-format off
        QTest::newRow("no start")                     << QByteArray(R"({"length":3})")              << 7   << 7  << 10;
        QTest::newRow("no start, no length")          << QByteArray("{}")                           << 7   << 7  << 8;
        QTest::newRow("no start, position 0")         << QByteArray(R"({"length":3})")              << 0   << 1  << 3;
        QTest::newRow("no start, negative position")  << QByteArray(R"({"length":3})")              << -20 << 1  << -17;
        QTest::newRow("start")                        << QByteArray(R"({"start":4,"length":3})")    << 7   << 4  << 7;
        QTest::newRow("start, position 0")            << QByteArray(R"({"start":4,"length":3})")    << 0   << 4  << 7;
        QTest::newRow("start 0")                      << QByteArray(R"({"start":0,"length":3})")    << 7   << 0  << 3;
        QTest::newRow("negative start")               << QByteArray(R"({"start":-4})")              << 7   << -4 << -3;
        QTest::newRow("text")                         << QByteArray(R"({"start":"4","length":3})")  << 7   << 7  << 10;
        QTest::newRow("text, position 0")             << QByteArray(R"({"start":"4","length":3})")  << 0   << 0  << 3;
        QTest::newRow("text, negative position")      << QByteArray(R"({"start":"4","length":3})")  << -20 << -20 << -17;
        // clang-format on
    }
    void readJsonItemPlacesAnItem()
    {
        QFETCH(QByteArray, item);
        QFETCH(int, position);
        QFETCH(int, start);
        QFETCH(int, after);
        TCSProRecord record;
        OwnedJson dictionary;
        for (const bool relativePositions : { true, false }) { // passed in and not used
            int running = position;
            TestAccess::readJsonItem(dictionary, object(item), &record, running, relativePositions);
            QCOMPARE(running, after);
            QCOMPARE(dictionary.items->last()->start, start);
            QCOMPARE(dictionary.currentItem, dictionary.items->last());
            QCOMPARE(dictionary.currentItem->record, &record);
        }
        QCOMPARE(dictionary.getItemsCount(), 2);
    }

    void readJsonItemTakesTheDefaultsInTheirOrder()
    {
        TCSProRecord record;
        OwnedJson dictionary;
        int position = 1;
        TestAccess::readJsonItem(dictionary, QJsonObject(), &record, position, false, true, false);
        TestAccess::readJsonItem(dictionary, QJsonObject(), &record, position, false, false, true);
        TestAccess::readJsonItem(dictionary, object(R"({"decimalMark":"x","zeroFill":0})"), &record, position, true,
                                 true, true);
        QCOMPARE(dictionary.getItem(0)->decimalChar, true);
        QCOMPARE(dictionary.getItem(0)->zeroFill, false);
        QCOMPARE(dictionary.getItem(1)->decimalChar, false);
        QCOMPARE(dictionary.getItem(1)->zeroFill, true);
        QCOMPARE(dictionary.getItem(2)->decimalChar, false);
        QCOMPARE(dictionary.getItem(2)->zeroFill, false);
    }

    void readJsonItemMakesOneItemWhateverItsOccurrences()
    {
        TCSProRecord record;
        OwnedJson dictionary;
        int position = 1;
        TestAccess::readJsonItem(dictionary, object(R"({"name":"A","length":2,"occurrences":{"maximum":5}})"), &record,
                                 position);
        QCOMPARE(dictionary.itemNames(), QStringList("A"));
        QCOMPARE(position, 3);
    }

    void readJsonItemWithoutARecordDoesNothing()
    {
        OwnedJson dictionary;
        int position = 5;
        TestAccess::readJsonItem(dictionary, object(R"({"name":"A","start":9,"length":3})"), nullptr, position);
        QCOMPARE(position, 5);
        QCOMPARE(dictionary.getItemsCount(), 0);
        QVERIFY(!dictionary.currentItem);
    }

    // repeated items

    void repeatedItemGivesACopyForEachOccurrence()
    {
        const OwnedJson dictionary(withItems(
            R"({"name":"P","length":4},{"name":"X","labels":[{"text":"Each"}],"contentType":"alpha","start":5,"length":2,
                "decimalMark":true,"zeroFill":true,"occurrences":{"maximum":3}},{"name":"Q","length":1})"));
        QCOMPARE(dictionary.itemNames(), QStringList({ "P", "X_1", "X_2", "X_3", "Q" }));
        QCOMPARE(dictionary.starts(), QList<int>({ 1, 5, 7, 9, 11 }));
        for (int i = 1; i <= 3; ++i) {
            const TCSProItem *copy = dictionary.getItem(i);
            QCOMPARE(copy->label, QString("Each"));
            QCOMPARE(copy->dataType, 1);
            QCOMPARE(copy->length, 2);
            QCOMPARE(copy->decimalChar, true);
            QCOMPARE(copy->zeroFill, true);
            QCOMPARE(copy->occurrences, 1);
            QCOMPARE(copy->firstOccurrence, 1);
            QCOMPARE(copy->decimals, 0);
            QCOMPARE(copy->subItem, 0);
            QCOMPARE(copy->record, dictionary.getRecord(0));
        }
        QCOMPARE(dictionary.getItem(4)->firstOccurrence, 0);
    }

    void repetitionNeedsTwoOccurrences_data()
    {
        QTest::addColumn<QByteArray>("occurrences");
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QList<int>>("starts");

        const QStringList once = { "X", "Y" };
        // clang-format off
        QTest::newRow("2")           << QByteArray(R"({"maximum":2})")     << QStringList{ "X_1", "X_2", "Y" } << QList<int>{ 1, 4, 7 };
        QTest::newRow("1")           << QByteArray(R"({"maximum":1})")     << once << QList<int>{ 1, 4 };
        QTest::newRow("0")           << QByteArray(R"({"maximum":0})")     << once << QList<int>{ 1, 4 };
        QTest::newRow("negative")    << QByteArray(R"({"maximum":-5})")    << once << QList<int>{ 1, 4 };
        QTest::newRow("a text")      << QByteArray(R"({"maximum":"2"})")   << once << QList<int>{ 1, 4 };
        QTest::newRow("a fraction")  << QByteArray(R"({"maximum":2.5})")   << once << QList<int>{ 1, 4 };
        QTest::newRow("no maximum")  << QByteArray(R"({"required":true})") << once << QList<int>{ 1, 4 };
        QTest::newRow("no object")   << QByteArray("2")                    << once << QList<int>{ 1, 4 };
        QTest::newRow("an array")    << QByteArray("[2]")                  << once << QList<int>{ 1, 4 };
        // clang-format on
    }
    void repetitionNeedsTwoOccurrences()
    {
        QFETCH(QByteArray, occurrences);
        QFETCH(QStringList, names);
        QFETCH(QList<int>, starts);
        const OwnedJson dictionary(
            withItems(R"({"name":"X","length":3,"occurrences":)" + occurrences + R"(},{"name":"Y"})"));
        QCOMPARE(dictionary.itemNames(), names);
        QCOMPARE(dictionary.starts(), starts);
        QCOMPARE(dictionary.getItem(0)->firstOccurrence, 0);
    }

    void suffixOfACopyIsItsNumberInDecimalDigits()
    {
        const OwnedJson dictionary(withItems(R"({"name":"X","occurrences":{"maximum":12}})"));
        QCOMPARE(dictionary.getItemsCount(), 12);
        QCOMPARE(dictionary.getItem(0)->name, QString("X_1"));
        QCOMPARE(dictionary.getItem(8)->name, QString("X_9"));
        QCOMPARE(dictionary.getItem(9)->name, QString("X_10"));
        QCOMPARE(dictionary.getItem(11)->name, QString("X_12"));
    }

    void copiesWithoutLengthShareTheirStartAndMoveThePosition()
    {
        const OwnedJson dictionary(withItems(R"({"length":4},{"occurrences":{"maximum":3}},{"length":1})"));
        QCOMPARE(dictionary.starts(), QList<int>({ 1, 5, 5, 5, 8 }));
    }

    void copiesOfNegativeLengthRunBackwardsAndThePositionForwards()
    {
        const QByteArray repeated = R"({"start":10,"length":-3,"occurrences":{"maximum":3}},{"length":1})";
        QCOMPARE(OwnedJson(withItems(repeated)).starts(), QList<int>({ 10, 7, 4, 13 }));
        const QByteArray empty = R"({"start":10,"length":0,"occurrences":{"maximum":3}},{"length":1})";
        QCOMPARE(OwnedJson(withItems(empty)).starts(), QList<int>({ 10, 10, 10, 13 }));
    }

    void copiesWithoutStartAreAtThePosition_data()
    {
        QTest::addColumn<QByteArray>("keys");
        QTest::newRow("relative") << QByteArray();
        QTest::newRow("not relative") << QByteArray(R"("relativePositions":false)");
    }
    void copiesWithoutStartAreAtThePosition()
    {
        QFETCH(QByteArray, keys);
        const QByteArray items
            = R"({"length":4},{"length":2,"occurrences":{"maximum":2}},{"length":1},{"start":"3","occurrences":{"maximum":2}})";
        QCOMPARE(OwnedJson(withItems(items, keys)).starts(), QList<int>({ 1, 5, 7, 9, 10, 10 }));
        // Unlike a plain item, a repeated item uses a position unchanged that is not positive.
        const QByteArray before = R"({"start":-9,"length":2},{"length":2,"occurrences":{"maximum":2}},{"start":1})";
        QCOMPARE(OwnedJson(withItems(before, keys)).starts(), QList<int>({ -9, -7, -5, 1 }));
    }

    void firstOccurrenceIsTheNumberOfItemsBeforeTheFirstCopy()
    {
        const OwnedJson dictionary(R"({"levels":[{"ids":{"items":[{"name":"I"},{"name":"J"}]},"records":[
            {"items":[{"name":"X","occurrences":{"maximum":2}},{"name":"Y","occurrences":{"maximum":2}}]},
            {"items":[{"name":"Z","occurrences":{"maximum":2}}]}]}]})");
        QList<int> first;
        for (const TCSProItem *item : qAsConst(*dictionary.items))
            first.append(item->firstOccurrence);
        QCOMPARE(first, QList<int>({ 0, 0, 2, 2, 4, 4, 6, 6 }));
    }

    void copiesOfTheVeryFirstItemHaveFirstOccurrenceZero()
    {
        const OwnedJson dictionary(withItems(R"({"name":"X","occurrences":{"maximum":2}})"));
        QCOMPARE(dictionary.getItem(0)->firstOccurrence, 0);
        QCOMPARE(dictionary.getItem(1)->firstOccurrence, 0);
    }

    void copiesDoNotChangeTheCurrentItem()
    {
        const OwnedJson onlyCopies(withItems(R"({"name":"X","occurrences":{"maximum":2}})"));
        QVERIFY(!onlyCopies.currentItem);
        const OwnedJson both(withItems(R"({"name":"P"},{"name":"X","occurrences":{"maximum":2}})"));
        QCOMPARE(both.currentItem, both.getItem(0));
    }

    void occurrencesOfAnIdAreIgnored()
    {
        const OwnedJson dictionary(withIds(R"({"name":"I","length":2,"occurrences":{"maximum":3}},{"name":"J"})"));
        QCOMPARE(dictionary.itemNames(), QStringList({ "I", "J" }));
        QCOMPARE(dictionary.starts(), QList<int>({ 1, 3 }));
    }

    void everyCopyHasItsOwnValueSet()
    {
        const OwnedJson dictionary(withItems(R"({"name":"X","occurrences":{"maximum":3},
            "valueSets":[{"name":"VS","values":[{"pairs":[{"value":"1"}]},{"pairs":[{"value":"2"}]}]}]})"));
        for (int i = 0; i < 3; ++i)
            QCOMPARE(dictionary.codesOf(i), QStringList({ "1", "2" }));
        QVERIFY(dictionary.setOf(0) != dictionary.setOf(1));
        QVERIFY(dictionary.setOf(1) != dictionary.setOf(2));
        QVERIFY(dictionary.setOf(0)->getItem(0) != dictionary.setOf(1)->getItem(0));
        dictionary.setOf(0)->getItem(0)->code = QStringLiteral("other");
        QCOMPARE(dictionary.codesOf(1), QStringList({ "1", "2" }));
    }

    // labels

    void labelIsTheTextOfTheFirstElement_data()
    {
        QTest::addColumn<QByteArray>("labels");
        QTest::addColumn<QString>("expected");

        // clang-format off
        QTest::newRow("one")                      << QByteArray(R"([{"text":"A"}])")                                << "A";
        QTest::newRow("several languages")        << QByteArray(R"([{"text":"A"},{"text":"B","language":"FR"}])")   << "A";
        QTest::newRow("language first")           << QByteArray(R"([{"language":"FR","text":"B"},{"text":"A"}])")   << "B";
        QTest::newRow("first without a text")     << QByteArray(R"([{"language":"FR"},{"text":"A"}])")              << "";
        QTest::newRow("first is no object")       << QByteArray(R"(["A",{"text":"B"}])")                            << "";
        QTest::newRow("first is null")            << QByteArray(R"([null,{"text":"B"}])")                           << "";
        QTest::newRow("text is a number")         << QByteArray(R"([{"text":5}])")                                  << "";
        QTest::newRow("text is empty")            << QByteArray(R"([{"text":""}])")                                 << "";
        QTest::newRow("empty array")              << QByteArray("[]")                                               << "";
        QTest::newRow("an object")                << QByteArray(R"({"text":"A"})")                                  << "";
        QTest::newRow("a text")                   << QByteArray("\"A\"")                                            << "";
        QTest::newRow("blanks stay")              << QByteArray(R"([{"text":"  A  "}])")                            << "  A  ";
        QTest::newRow("escapes")                  << QByteArray("[{\"text\":\"\\u00e9\\n\\\"\\\\\\t\\u0000x\"}]")
                                                  << QString(QStringLiteral("\u00E9\n\"\\\t") + QChar(u'\0') + "x");
        QTest::newRow("UTF-8")                    << QByteArray("[{\"text\":\"\xC3\xA9\xF0\x90\x90\x80\"}]")        << QString::fromUtf8("\xC3\xA9\xF0\x90\x90\x80");
        // clang-format on
    }
    void labelIsTheTextOfTheFirstElement()
    {
        QFETCH(QByteArray, labels);
        QFETCH(QString, expected);
        OwnedJson reader;
        const QByteArray key = "\"labels\":" + labels;
        QCOMPARE(TestAccess::readJsonLabel(reader, object("{" + key + "}")), expected);

        const QByteArray item = "{" + key + R"(,"valueSets":[{)" + key + R"(,"values":[{)" + key + "}]}]}";
        OwnedJson dictionary(withRecords("{" + key + R"(,"items":[)" + item + "]}"));
        QCOMPARE(dictionary.getRecord(0)->label, expected);
        QCOMPARE(dictionary.getItem(0)->label, expected);
        QCOMPARE(dictionary.setOf(0)->label, expected);
        QCOMPARE(dictionary.labelsOf(0), QStringList(expected));
    }

    void labelOfAnObjectWithoutLabelsIsEmpty()
    {
        OwnedJson reader;
        QCOMPARE(TestAccess::readJsonLabel(reader, QJsonObject()), QString());
        QCOMPARE(TestAccess::readJsonLabel(reader, object(R"({"label":"A","text":"B"})")), QString());
    }

    // value sets

    void onlyTheFirstValueSetIsRead_data()
    {
        QTest::addColumn<QByteArray>("valueSets");
        QTest::addColumn<QString>("expected");

        // clang-format off
        QTest::newRow("one")                << QByteArray(R"([{"name":"V1","values":[{"pairs":[{"value":"1"}]}]}])")     << "V1/[1 ]";
        QTest::newRow("two")                << QByteArray(R"([{"name":"V1","values":[]},{"name":"V2","values":[{}]}])")  << "V1/[]";
        QTest::newRow("first is no object") << QByteArray(R"([7,{"name":"V2","values":[{}]}])")                          << "none";
        QTest::newRow("first is an array")  << QByteArray(R"([[{"name":"V1"}],{"name":"V2"}])")                          << "none";
        QTest::newRow("empty array")        << QByteArray("[]")                                                          << "none";
        QTest::newRow("an object")          << QByteArray(R"({"name":"V1"})")                                            << "none";
        QTest::newRow("null")               << QByteArray("null")                                                        << "none";
        QTest::newRow("empty object")       << QByteArray("[{}]")                                                        << "/[]";
        QTest::newRow("without values")     << QByteArray(R"([{"name":"V1","labels":[{"text":"L"}]}])")                  << "V1/L[]";
        QTest::newRow("values is no array") << QByteArray(R"([{"name":"V1","values":{"0":{}}}])")                        << "V1/[]";
        QTest::newRow("odd values")         << QByteArray(R"([{"name":"V1","values":[1,{},"x",null,[],{}]}])")           << "V1/[ ; ]";
        // clang-format on
    }
    void onlyTheFirstValueSetIsRead()
    {
        QFETCH(QByteArray, valueSets);
        QFETCH(QString, expected);
        const QByteArray key = "\"valueSets\":" + valueSets;
        const OwnedJson dictionary(withItems("{" + key + "},{" + key + R"(,"occurrences":{"maximum":2}})"));
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(summary(dictionary.setOf(i)), expected);
            QCOMPARE(dictionary.getItem(i)->getValueSetsCount(), expected == "none" ? 0 : 1);
        }
    }

    void valueSetKeepsTheDefaultsOfItsOtherFields()
    {
        const OwnedJson dictionary(withItems(R"({"contentType":"alpha","valueSets":[{"name":"VS","extra":"x",
            "values":[{"special":"MISSING","labels":[{"text":"None"}],"pairs":[{"value":"9"}]},
                      {"special":"NOTAPPL","pairs":[{"value":"8"}]}]}]})"));
        const TCSProValueSet *set = dictionary.setOf(0);
        QCOMPARE(set->isNumeric, true);
        QCOMPARE(set->extra, QString());
        QCOMPARE(set->Count(), 2);
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(set->getItem(i)->type, 0);
            QCOMPARE(set->getItem(i)->special, false);
        }
        QCOMPARE(dictionary.codesOf(0), QStringList({ "9", "8" }));
        QCOMPARE(dictionary.getItem(0)->missingValue, QString());
        QCOMPARE(dictionary.getItem(0)->notApplicable, QString());
    }

    void codeComesFromTheFirstPair_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<QString>("code");

        // clang-format off
        QTest::newRow("value")                        << QByteArray(R"({"pairs":[{"value":"7"}]})")                  << "7";
        QTest::newRow("value unchanged")              << QByteArray(R"({"pairs":[{"value":"  07 'x'"}]})")           << "  07 'x'";
        QTest::newRow("value is empty")               << QByteArray(R"({"pairs":[{"value":""}]})")                   << "";
        QTest::newRow("value is a number")            << QByteArray(R"({"pairs":[{"value":7}]})")                    << "";
        QTest::newRow("value is null")                << QByteArray(R"({"pairs":[{"value":null}]})")                 << "";
        QTest::newRow("value and a range")            << QByteArray(R"({"pairs":[{"range":["1","2"],"value":"7"}]})") << "7";
        QTest::newRow("number and a range")           << QByteArray(R"({"pairs":[{"range":["1","2"],"value":7}]})")  << "";
        QTest::newRow("range")                        << QByteArray(R"({"pairs":[{"range":["1","9"]}]})")            << "1:9";
        QTest::newRow("range of texts")               << QByteArray(R"({"pairs":[{"range":[" a",""]}]})")            << " a:";
        QTest::newRow("range of empty texts")         << QByteArray(R"({"pairs":[{"range":["",""]}]})")              << ":";
        QTest::newRow("range backwards")              << QByteArray(R"({"pairs":[{"range":["9","1"]}]})")            << "9:1";
        QTest::newRow("range of one")                 << QByteArray(R"({"pairs":[{"range":["1"]}]})")                << "";
        QTest::newRow("range of three")               << QByteArray(R"({"pairs":[{"range":["1","2","3"]}]})")        << "";
        QTest::newRow("empty range")                  << QByteArray(R"({"pairs":[{"range":[]}]})")                   << "";
        QTest::newRow("range is a text")              << QByteArray(R"({"pairs":[{"range":"1:9"}]})")                << "";
        QTest::newRow("range of numbers")             << QByteArray(R"({"pairs":[{"range":[1,9]}]})")                << "";
        QTest::newRow("range with a number")          << QByteArray(R"({"pairs":[{"range":["1",9]}]})")              << "";
        QTest::newRow("second pair is ignored")       << QByteArray(R"({"pairs":[{"value":"1"},{"value":"2"}]})")    << "1";
        QTest::newRow("first pair is no object")      << QByteArray(R"({"pairs":["1",{"value":"2"}]})")              << "";
        QTest::newRow("first pair is empty")          << QByteArray(R"({"pairs":[{},{"value":"2"}]})")               << "";
        QTest::newRow("no pairs")                     << QByteArray("{}")                                            << "";
        QTest::newRow("empty pairs")                  << QByteArray(R"({"pairs":[]})")                               << "";
        QTest::newRow("pairs is an object")           << QByteArray(R"({"pairs":{"value":"1"}})")                    << "";
        QTest::newRow("value next to the pairs")      << QByteArray(R"({"value":"1"})")                              << "";
        // clang-format on
    }
    void codeComesFromTheFirstPair()
    {
        QFETCH(QByteArray, value);
        QFETCH(QString, code);
        const OwnedJson dictionary(withValues(value));
        QCOMPARE(dictionary.codesOf(0), QStringList(code));
    }

    void codesStayAsReadInTheOrderOfTheDocument()
    {
        const OwnedJson dictionary(withValues(R"({"pairs":[{"value":"9"}]},{"pairs":[{"value":"2.5"}]},
            {"pairs":[{"value":"9"}]},{"pairs":[{"value":"x"}]},{"pairs":[{"value":"01"}]},{"pairs":[{"value":" 1 "}]},
            {"pairs":[{"range":["3","4"]}]},{}, {"pairs":[{"value":"-1"}]})"));
        QCOMPARE(dictionary.codesOf(0), QStringList({ "9", "2.5", "9", "x", "01", " 1 ", "3:4", "", "-1" }));
        QVERIFY(!dictionary.messageBox);
        QCOMPARE(dictionary.decimalAnswer, 0);
        QCOMPARE(dictionary.lastButton, 0);
        QCOMPARE(dictionary.currentIsNumeric, false);
    }

    void manyCodesAndLabelsStayApart()
    {
        QByteArray values;
        for (int i = 0; i < 3000; ++i) {
            const QByteArray number = QByteArray::number(i);
            values += (i ? "," : "")
                + ("{\"labels\":[{\"text\":\"L" + number + "\"}],\"pairs\":[{\"value\":\"" + number + "\"}]}");
        }
        const OwnedJson dictionary(withValues(values));
        for (int i = 0; i < 3000; ++i) {
            QCOMPARE(dictionary.setOf(0)->getItem(i)->code, QString::number(i));
            QCOMPARE(dictionary.setOf(0)->getItem(i)->name, "L" + QString::number(i));
        }
    }

    void readJsonValueSetsDoesNotChangeAnItemWithASet()
    {
        OwnedJson dictionary(withValues(R"({"pairs":[{"value":"1"}]})"));
        TCSProItem *item = dictionary.getItem(0);
        const TCSProValueSet *first = dictionary.setOf(0);
        TestAccess::readJsonValueSets(dictionary, item, QJsonObject());
        QCOMPARE(item->getValueSetsCount(), 1);
        QCOMPARE(dictionary.setOf(0), first);
    }

    // differences from the text form

    void jsonDiffersFromTheTextForm_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("fact");
        QTest::addColumn<QString>("fromText");
        QTest::addColumn<QString>("fromJson");

        const QByteArray copies
            = R"({"name":"P"},{"name":"X","length":2,"zeroFill":true,"occurrences":{"maximum":2},"valueSets":[{"values":[{}]}]})";
        const QStringList textCopies = { "[Item]",       "Name=P",        "[Item]",     "Name=X",     "Len=2",
                                         "ZeroFill=Yes", "Occurrences=2", "[ValueSet]", "Value=1;one" };
        // clang-format off
        QTest::newRow("position of the record type") << QStringList{ "[Dictionary]" } << QByteArray("{}")
            << "type" << "1/1" << "0/0";
        QTest::newRow("strings of the dictionary")
            << QStringList{ "[Dictionary]", "Label=L", "Positions=P", "ZeroFill=Z", "DecimalChar=C" }
            << QByteArray(R"({"labels":[{"text":"L"}],"relativePositions":true,"defaults":{"zeroFill":true,"decimalMark":true}})")
            << "strings" << "L|P|Z|C" << "|||";
        QTest::newRow("version") << QStringList{ "[Dictionary]" } << QByteArray("{}") << "version" << "" << "8";
        QTest::newRow("label of the common record") << QStringList{ "[Dictionary]" } << QByteArray("{}")
            << "common" << "" << "Common";
        QTest::newRow("occurrences of a record") << QStringList{ "[Record]" } << withRecords("{}") << "maximum" << "100" << "1";
        QTest::newRow("required, not given") << QStringList{ "[Record]" } << withRecords("{}") << "required" << "" << "NO";
        QTest::newRow("required") << QStringList{ "[Record]", "Required=maybe" }
            << withRecords(R"({"occurrences":{"required":true}})") << "required" << "maybe" << "YES";
        QTest::newRow("quotes of a record type") << QStringList{ "[Record]", "RecordTypeValue='H'" }
            << withRecords(R"({"recordType":"'H'"})") << "recordType" << "H" << "'H'";
        QTest::newRow("length of a record") << QStringList{ "[Record]", "RecordLen=9" }
            << withRecords(R"({"recordLen":9,"recordLength":9,"length":9})") << "recordLen" << "9" << "0";
        QTest::newRow("decimals") << QStringList{ "[Item]", "Decimal=2" } << withItems(R"({"decimals":2,"decimal":2})")
            << "decimals" << "2" << "0";
        QTest::newRow("subitem") << QStringList{ "[Item]", "ItemType=SubItem" } << withItems(R"({"subitem":true})")
            << "subItem" << "1" << "0";
        QTest::newRow("item without a start") << QStringList{ "[Item]", "Len=3", "[Item]" } << withItems(R"({"length":3},{})")
            << "starts" << "1,1" << "1,4";
        QTest::newRow("settings of the dictionary for its items")
            << QStringList{ "[Dictionary]", "DecimalChar=Yes", "ZeroFill=Yes", "[Item]" }
            << withItems("{}", R"("defaults":{"decimalMark":true,"zeroFill":true})") << "flags" << "no,no" << "yes,yes";
        QTest::newRow("count below 1") << QStringList{ "[Item]", "Name=X", "Occurrences=0" }
            << withItems(R"({"name":"X","occurrences":{"maximum":0}})") << "names" << "" << "X";
        QTest::newRow("suffix of a copy") << textCopies << withItems(copies) << "names" << QStringLiteral("P,X_\u0001,X_\u0002") << "P,X_1,X_2";
        QTest::newRow("zero fill of a copy") << textCopies << withItems(copies) << "lastZeroFill" << "no" << "yes";
        QTest::newRow("value set of the copies") << textCopies << withItems(copies) << "sharedSet" << "yes" << "no";
        QTest::newRow("items on several levels")
            << QStringList{ "[Level]", "[Item]", "Name=I", "[Record]", "[Item]", "Name=A", "[Level]", "[Item]", "Name=J", "[Record]", "[Item]", "Name=B" }
            << QByteArray(R"({"levels":[{"ids":{"items":[{"name":"I"}]},"records":[{"items":[{"name":"A"}]}]},
                                        {"ids":{"items":[{"name":"J"}]},"records":[{"items":[{"name":"B"}]}]}]})")
            << "names" << "I,A,J,B" << "I,J,A,B";
        QTest::newRow("map of records") << QStringList{ "[Record]" } << withRecords("{}") << "mapped" << "1" << "0";
        QTest::newRow("missing value")
            << QStringList{ "[Item]", "[ValueSet]", "Value=9;none", "Name=MISSING ,Special", "Value=8;no", "Name=NOTAPPL ,Special" }
            << withItems(R"({"valueSets":[{"values":[{"special":"MISSING","pairs":[{"value":"9"}]},{"special":"NOTAPPL","pairs":[{"value":"8"}]}]}]})")
            << "special" << "9,8" << ",";
        QTest::newRow("codes")
            << QStringList{ "[Item]", "[ValueSet]", "Value=3:5;range", "Value=1;one" }
            << withItems(R"({"valueSets":[{"values":[{"pairs":[{"range":["3","5"]}]},{"pairs":[{"value":"1"}]}]}]})")
            << "codes" << "1,3,5" << "3:5,1";
        QTest::newRow("value set of an alphanumeric item") << QStringList{ "[Item]", "DataType=Alpha", "[ValueSet]", "Value=a;b" }
            << withItems(R"({"contentType":"alpha","valueSets":[{}]})") << "isNumeric" << "no" << "yes";
        // clang-format on
    }
    void jsonDiffersFromTheTextForm()
    {
        QFETCH(QStringList, lines);
        QFETCH(QByteArray, json);
        QFETCH(QString, fact);
        QFETCH(QString, fromText);
        QFETCH(QString, fromJson);
        OwnedDictionary text(lines);
        OwnedJson other(json);
        QCOMPARE(factOf(text, fact), fromText);
        QCOMPARE(factOf(other, fact), fromJson);
    }

    void decimalCodesAskNoQuestion()
    {
        const OwnedJson dictionary(withItems(R"({"contentType":"numeric","length":3,"valueSets":[{"values":[
            {"pairs":[{"value":"2.5"}]},{"pairs":[{"value":"1.5"}]}]}]})"));
        QCOMPARE(dictionary.codesOf(0), QStringList({ "2.5", "1.5" }));
        QVERIFY(!dictionary.messageBox);
        QCOMPARE(dictionary.decimalAnswer, 0);
    }

    // accessors

    void accessorsFindByIndexAndReturnNullOutside()
    {
        OwnedJson dictionary(fullDocument);
        QCOMPARE(dictionary.getItemsCount(), 8);
        QCOMPARE(dictionary.getItem(7), dictionary.items->at(7));
        QVERIFY(!dictionary.getItem(8));
        QVERIFY(!dictionary.getItem(-1));
        QCOMPARE(dictionary.getRecord(0)->name, QString("R"));
        QVERIFY(!dictionary.getRecord(1));
        QCOMPARE(dictionary.recordsCount, 0);
        QCOMPARE(dictionary.getRecordsCount(), 1);
        QCOMPARE(dictionary.recordsCount, 1);
    }

    void accessorWithoutItsListFailsInTheWordsOfTheTextReader_data()
    {
        QTest::addColumn<QString>("accessor");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("line");

        // clang-format off
        QTest::newRow("getItem")         << "getItem"         << 211 << "A" << QStringLiteral("TCSPro::getItem ERROR CSPro \u00D3");
        QTest::newRow("getItemsCount")   << "getItemsCount"   << 101 << ""  << QStringLiteral("TCSPro::getItemsCount ERROR CSPro e");
        QTest::newRow("getRecord")       << "getRecord"       << 211 << "A" << QStringLiteral("TCSPro::getRecord ERROR CSPro \u00D3");
        QTest::newRow("getRecordsCount") << "getRecordsCount" << 101 << ""  << QStringLiteral("TCSPro::getRecordsCount ERROR CSPro e");
        // clang-format on
    }
    void accessorWithoutItsListFailsInTheWordsOfTheTextReader()
    {
        QFETCH(QString, accessor);
        QFETCH(int, code);
        QFETCH(QString, text);
        QFETCH(QString, line);
        OwnedJson dictionary;
        auto *items = dictionary.items;
        auto *records = dictionary.records;
        dictionary.items = nullptr;
        dictionary.records = nullptr;
        QLoggingCategory::setFilterRules(QString());
        const DebugCapture log;
        const auto error = thrownBy([&] {
            if (accessor == "getItem")
                dictionary.getItem('A');
            else if (accessor == "getItemsCount")
                dictionary.getItemsCount();
            else if (accessor == "getRecord")
                dictionary.getRecord('A');
            else
                dictionary.getRecordsCount();
        });
        const QStringList lines = log.taken();
        dictionary.items = items;
        dictionary.records = records;
        QVERIFY(error);
        QCOMPARE(error->getClassName(), QString("CSPro"));
        QCOMPARE(error->getCode(), code);
        QCOMPARE(error->getText(), text);
        QCOMPARE(lines.value(0), line);
    }

private:
    // A key of an object. It may be absent or of another type; the result is the same.
    static void addKey(const QString &path, const QString &type, const QStringList &changes)
    {
        addAbsent(path, changes);
        addWrong(path, type, changes);
    }
    static void addElement(const QString &path, const QString &type, const QStringList &changes)
    {
        addWrong(path, type, changes);
    }
    static void addAbsent(const QString &path, const QStringList &changes)
    {
        QTest::newRow(qPrintable(path + ": absent")) << path << QString() << QString() << changes;
    }
    static void addWrong(const QString &path, const QString &type, const QStringList &changes)
    {
        for (const Sample &sample : samples) {
            if (!sample.types.contains(type))
                QTest::newRow(qPrintable(path + ": " + sample.name)) << path << type << QString(sample.name) << changes;
        }
    }

    static QString joined(const QList<int> &numbers)
    {
        QStringList texts;
        for (const int number : numbers)
            texts.append(QString::number(number));
        return texts.join(',');
    }

    template <typename Dictionary> static QString factOf(Dictionary &dictionary, const QString &fact)
    {
        TCSProRecord *record = dictionary.getRecord(0);
        TCSProItem *item = dictionary.getItem(0);
        const int last = dictionary.getItemsCount() - 1;
        if (fact == "type")
            return QString::number(dictionary.recordTypeStart) + '/' + QString::number(dictionary.recordTypeLen);
        if (fact == "strings")
            return QStringList{ dictionary.label, dictionary.positions, dictionary.zeroFill, dictionary.decimalChar }
                .join('|');
        if (fact == "version")
            return dictionary.version;
        if (fact == "common")
            return dictionary.commonRecord->label;
        if (fact == "maximum")
            return QString::number(record->maxRecords);
        if (fact == "required")
            return record->required;
        if (fact == "recordType")
            return record->recordType;
        if (fact == "recordLen")
            return QString::number(record->recordLen);
        if (fact == "mapped")
            return QString::number(dictionary.recordMap.size());
        if (fact == "decimals")
            return QString::number(item->decimals);
        if (fact == "subItem")
            return QString::number(item->subItem);
        if (fact == "flags")
            return flag(item->decimalChar) + ',' + flag(item->zeroFill);
        if (fact == "names")
            return dictionary.itemNames().join(',');
        if (fact == "lastZeroFill")
            return flag(dictionary.getItem(last)->zeroFill);
        if (fact == "sharedSet")
            return flag(dictionary.setOf(last) == dictionary.setOf(last - 1));
        if (fact == "special")
            return item->missingValue + ',' + item->notApplicable;
        if (fact == "codes")
            return dictionary.codesOf(0).join(',');
        if (fact == "isNumeric")
            return flag(dictionary.setOf(0)->isNumeric);
        if (fact == "starts") {
            QList<int> starts;
            for (const TCSProItem *each : qAsConst(*dictionary.items))
                starts.append(each->start);
            return joined(starts);
        }
        return QStringLiteral("unknown fact");
    }
};

QTEST_GUILESS_MAIN(CSProJsonTest)
#include "CSProJsonTest.moc"
