#include <QtTest>

#include "cspro/CSProDataImport.h"
#include "cspro/CSProJsonDataImport.h"
#include "support/DebugCapture.h"
#include "support/DictionaryFile.h"
#include "support/OwnedDictionary.h"
#include "support/OwnedJson.h"
#include "support/TextState.h"

#include <QJsonDocument>

#include <memory>
#include <utility>

struct TestAccess {
    static const QList<TGenericField *> &fields(const TDataImport &importer) { return *importer.fields; }
    template <typename Importer> static QString text1(const Importer &importer) { return importer.text1; }
    template <typename Importer> static QString text2(const Importer &importer) { return importer.text2; }
    template <typename Importer> static QString currentType(const Importer &importer)
    {
        return importer.currentRecordType;
    }
    template <typename Importer> static QString stringOfChar(const Importer &importer, int count)
    {
        return importer.StringOfChar('9', count);
    }
};

namespace
{

void addTextsOf(const QByteArray &subject, const CSProDictionary &dictionary)
{
    addTexts(subject, "empty",
             { { "label", dictionary.label },
               { "positions", dictionary.positions },
               { "zeroFill", dictionary.zeroFill },
               { "decimalChar", dictionary.decimalChar } });
}

void addNamesOf(const QByteArray &subject, const CSProDictionary &dictionary)
{
    addTexts(subject, "empty", { { "version", dictionary.version }, { "name", dictionary.name } });
}

void addTextsOf(const QByteArray &subject, const TCSProRecord &record)
{
    addTexts(subject, "empty",
             { { "label", record.label }, { "name", record.name }, { "recordType", record.recordType } });
}

void addTextsOf(const QByteArray &subject, const TCSProItem &item)
{
    addTexts(subject, "empty",
             { { "label", item.label },
               { "missingValue", item.missingValue },
               { "name", item.name },
               { "notApplicable", item.notApplicable } });
}

void addTextsOf(const QByteArray &subject, const TCSProValueSet &set)
{
    addTexts(subject, "empty", { { "label", set.label }, { "name", set.name }, { "extra", set.extra } });
}

// One dictionary, record, item and value set, each with the same lines.
QStringList sectionsWith(const QStringList &lines)
{
    const QStringList all = QStringList("[Dictionary]") + lines + QStringList("[Record]") + lines
        + QStringList("[Item]") + lines + QStringList("[ValueSet]") + lines;
    return all;
}

QStringList keysWith(const QString &ending)
{
    QStringList lines;
    for (const char *key :
         { "Version", "Label", "Name", "Positions", "ZeroFill", "DecimalChar", "RecordTypeValue", "Required" })
        lines.append(key + ending);
    return lines;
}

void addTextsOfSections(const QByteArray &subject, const QStringList &lines)
{
    const OwnedDictionary dictionary(sectionsWith(lines));
    addTextsOf(subject + ", dictionary", dictionary);
    addNamesOf(subject + ", dictionary", dictionary);
    const TCSProRecord &record = *dictionary.getRecord(0);
    addTextsOf(subject + ", record", record);
    addTexts(subject + ", record", "empty", { { "required", record.required } });
    addTextsOf(subject + ", item", *dictionary.getItem(0));
    addTextsOf(subject + ", value set", *dictionary.setOf(0));
}

QString recordTypeOf(const QString &line)
{
    return OwnedDictionary({ "[Record]", line }).getRecord(0)->recordType;
}

// The labels of a text item with these value lines, by their states.
QStringList labelStates(const QStringList &lines)
{
    const OwnedDictionary dictionary(QStringList({ "[Item]", "Name=A", "DataType=Alpha", "[ValueSet]", "Name=S" })
                                     + lines);
    QStringList states;
    for (const TValueSetItem *value : *dictionary.setOf(0)->items)
        states.append(value->code + QLatin1Char(' ') + stateOf(value->name));
    return states;
}

QByteArray jsonWith(const QByteArray &dictionary, const QByteArray &record, const QByteArray &item)
{
    return "{" + dictionary + "\"levels\":[{\"ids\":{\"items\":[{" + item + "\"length\":1}]},\"records\":[{" + record
        + "\"items\":[{" + item + "\"length\":1}]}]}]}";
}

// A document whose only item has this value set.
QByteArray jsonWithSet(const QByteArray &set)
{
    return jsonWith("", "", "\"valueSets\":[{" + set + "}],");
}

// "name", "recordType" and the label with a value of this JSON text; none at all for an empty one.
QByteArray jsonTexts(const QByteArray &value)
{
    return value.isEmpty()
        ? QByteArray()
        : "\"name\":" + value + ",\"recordType\":" + value + ",\"labels\":[{\"text\":" + value + "}],";
}

void addTextsOfJson(const QByteArray &subject, const QByteArray &texts)
{
    const QByteArray set = "\"valueSets\":[{" + texts + "\"values\":[{" + texts + "\"pairs\":[]}]}],";
    const OwnedJson json(jsonWith("\"version\":8," + texts, texts, texts + set));
    addTextsOf(subject + ", dictionary", json);
    addTexts(subject + ", dictionary", "empty", { { "name", json.name } });
    addTextsOf(subject + ", record", *json.getRecord(0));
    addTextsOf(subject + ", id item", *json.getItem(0));
    addTextsOf(subject + ", item", *json.getItem(1));
    addTextsOf(subject + ", value set", *json.setOf(1));
    const TValueSetItem &value = *json.setOf(1)->items->first();
    addTexts(subject + ", value", "empty", { { "name", value.name }, { "code", value.code } });
}

QString codeOfPair(const QByteArray &pairs)
{
    const OwnedJson json(jsonWithSet("\"values\":[{\"pairs\":" + pairs + "}]"));
    return json.codesOf(1).value(0);
}

QString labelOf(const QByteArray &labels)
{
    const OwnedJson json(jsonWith("", "", "\"labels\":" + labels + ","));
    return json.getItem(1)->label;
}

QStringList statesOf(const TGenericField &field)
{
    return { stateOf(field.name),    stateOf(field.label),   stateOf(field.valueLabels),   stateOf(field.missingValue),
             stateOf(field.minimum), stateOf(field.maximum), stateOf(field.notApplicable), stateOf(field.decimals) };
}

template <typename Importer> void addTextsOfImporter(const QByteArray &subject, const QString &text)
{
    const DebugCapture quiet;
    const DictionaryFile file(text);
    Importer importer(file.path());
    TDataImport &base = importer;
    const auto add = [&](const char *when) {
        const QByteArray name = subject + ", " + when;
        addTexts(name, "empty",
                 { { "text1", TestAccess::text1(importer) },
                   { "getRecordTypeCurrent", base.getRecordTypeCurrent() },
                   { "getGroupValue outside of the list", base.getGroupValue(-1) },
                   { "no copies of a character", TestAccess::stringOfChar(importer, 0) },
                   { "fewer copies", TestAccess::stringOfChar(importer, -1) } });
        addTexts(name, "null",
                 { { "text2", TestAccess::text2(importer) },
                   { "current record type", TestAccess::currentType(importer) },
                   { "getGroupName outside of the list", base.getGroupName(-1) } });
    };
    add("new");
    base.openFile();
    add("opened");
    Importer plain;
    const Importer moved(std::move(plain));
    addTexts(subject + ", without a path", "null",
             { { "text1", TestAccess::text1(plain) }, { "text2", TestAccess::text2(plain) } });
    addTexts(subject + ", moved", "null",
             { { "text1", TestAccess::text1(moved) }, { "text2", TestAccess::text2(moved) } });
    addTexts(subject + ", without a path", "empty",
             { { "getGroupValue", static_cast<TDataImport &>(plain).getGroupValue(0) } });
    base.releaseContents();
}

} // namespace

/// Tests which empty texts of CSPro dictionaries, their importers and fields are null, and which are not.
class DictionaryTextsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newTextsAreNotNullAndNeedNoMemory_data()
    {
        addTextColumns();
        const OwnedDictionary text;
        const OwnedJson json;
        addTextsOf("text dictionary", text);
        addNamesOf("text dictionary", text);
        addTextsOf("JSON dictionary", json);
        addNamesOf("JSON dictionary", json);
        addTexts("common record", "empty",
                 { { "label", text.commonRecord->label }, { "required", text.commonRecord->required } });
        const TCSProRecord record;
        addTextsOf("record", record);
        addTexts("record", "empty", { { "required", record.required } });
        addTextsOf("item", TCSProItem());
        addTextsOf("value set", TCSProValueSet());
        addTexts("value", "empty", { { "name", TValueSetItem().name } });
        addTexts("field", "empty",
                 { { "group", TCSProVariable(nullptr, nullptr).group },
                   { "group, CSPro 8", TCSProJsonVariable(nullptr, nullptr).group },
                   { "getGroup", TCSProVariable(nullptr, nullptr).getGroup() },
                   { "getGroup, CSPro 8", TCSProJsonVariable(nullptr, nullptr).getGroup() } });
    }
    void newTextsAreNotNullAndNeedNoMemory()
    {
        QFETCH(QString, text);
        QTEST(stateOf(text), "state");
        QVERIFY(isWithoutMemory(text));
    }

    void textThatIsReadIsNeverNull_data()
    {
        addTextColumns();
        addTextsOfSections("no keys", {});
        addTextsOfSections("keys of nothing", keysWith(QStringLiteral("=")));
        addTextsOfSections("two equals signs", keysWith(QStringLiteral("=a=b")));
        addTextsOfSections("no equals sign", keysWith(QString()));
        addTexts("record type", "empty",
                 { { "of nothing", recordTypeOf(QStringLiteral("RecordTypeValue=")) },
                   { "of one character", recordTypeOf(QStringLiteral("RecordTypeValue=H")) },
                   { "of two characters", recordTypeOf(QStringLiteral("RecordTypeValue=''")) },
                   { "of two values", recordTypeOf(QStringLiteral("RecordTypeValue='=1'")) } });
        const OwnedDictionary copies({ "[Item]", "Occurrences=2", "[ValueSet]" });
        addTexts("copy of an item", "empty",
                 { { "label", copies.getItem(1)->label },
                   { "missingValue", copies.getItem(1)->missingValue },
                   { "notApplicable", copies.getItem(1)->notApplicable } });
        OwnedDictionary unreadable;
        unreadable.readFile(QStringLiteral("/no/such/file"));
        addTextsOf("no file", unreadable);
        addNamesOf("no file", unreadable);
    }
    void textThatIsReadIsNeverNull()
    {
        QFETCH(QString, text);
        QTEST(stateOf(text), "state");
    }

    // The label is null if no line before has set one: code and label of the value lines begin as null texts.
    void labelOfAValueIsNullOnlyBeforeTheFirstLabel_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QStringList>("states");
        // clang-format off
        QTest::newRow("no label")                    << QStringList{ "Value=1" }               << QStringList{ "1 empty" };
        QTest::newRow("empty label")                 << QStringList{ "Value=1;" }              << QStringList{ "1 empty" };
        QTest::newRow("semicolon at the beginning")  << QStringList{ "Value=;1" }              << QStringList{ ";1 empty" };
        QTest::newRow("range with an empty label")   << QStringList{ "Value=1:2;" }            << QStringList{ "1 empty", "2 empty" };
        QTest::newRow("range without a label")       << QStringList{ "Value=1:2" }             << QStringList{ "1 null", ":2 null" };
        QTest::newRow("range without an upper bound") << QStringList{ "Value=1:;L" }           << QStringList{ "1 null", ";L null" };
        QTest::newRow("range after no label")        << QStringList{ "Value=3", "Value=1:2" }  << QStringList{ "1 empty", "3 empty", ":2 empty" };
        QTest::newRow("range after an empty label") << QStringList{ "Value=3;", "Value=1:2" } << QStringList{ "1 empty", "3 empty", ":2 empty" };
        QTest::newRow("range after a label")         << QStringList{ "Value=3;L", "Value=1:2" } << QStringList{ "1 \"L\"", "3 \"L\"", ":2 \"L\"" };
        QTest::newRow("several with an empty label") << QStringList{ "Value=1 2:3;" }          << QStringList{ " 2 empty", "1 empty", ":3 empty" };
        // clang-format on
    }
    void labelOfAValueIsNullOnlyBeforeTheFirstLabel()
    {
        QFETCH(QStringList, lines);
        QFETCH(QStringList, states);
        QStringList found = labelStates(lines);
        found.sort();
        states.sort();
        QCOMPARE(found, states);
    }

    void codeOfNothingIsNotNull()
    {
        const OwnedDictionary dictionary({ "[Item]", "DataType=Alpha", "[ValueSet]", "Value=", "Value=';L" });
        for (const TValueSetItem *value : *dictionary.setOf(0)->items)
            QCOMPARE(stateOf(value->code), QString("empty"));
        QCOMPARE(dictionary.setOf(0)->items->size(), 2);
    }

    void markOfNoCodeIsNotNull()
    {
        const OwnedDictionary dictionary(
            { "[Item]", "DataType=Alpha", "[ValueSet]", "Value=", "Name=MISSING ,", "Value=", "Name=NOTAPPL ," });
        QCOMPARE(stateOf(dictionary.getItem(0)->missingValue), QString("empty"));
        QCOMPARE(stateOf(dictionary.getItem(0)->notApplicable), QString("empty"));
        QVERIFY(dictionary.setOf(0)->items->isEmpty());
    }

    void textOfADocumentIsNeverNull_data()
    {
        addTextColumns();
        addTextsOfJson("no keys", "");
        addTextsOfJson("empty texts", jsonTexts("\"\""));
        addTextsOfJson("numbers", jsonTexts("5"));
        addTextsOfJson("nulls", jsonTexts("null"));
        addTextsOfJson("lists", jsonTexts("[]"));
        addTexts("label", "empty",
                 { { "of an empty list", labelOf("[]") },
                   { "of a list of no objects", labelOf("[1]") },
                   { "of an object without a text", labelOf("[{}]") },
                   { "of no list", labelOf("\"x\"") } });
        addTexts("code", "empty",
                 { { "of no pairs", codeOfPair("[]") },
                   { "of a pair that is no object", codeOfPair("[1]") },
                   { "of an empty pair", codeOfPair("[{}]") },
                   { "of a number", codeOfPair("[{\"value\":5}]") },
                   { "of nothing", codeOfPair("[{\"value\":\"\"}]") },
                   { "of a range of one", codeOfPair("[{\"range\":[\"1\"]}]") },
                   { "of a range of numbers", codeOfPair("[{\"range\":[1,2]}]") },
                   { "of a range that is no list", codeOfPair("[{\"range\":\"1\"}]") } });
        addTextsOf("no document", OwnedJson("{"));
        addNamesOf("no document", OwnedJson("{"));
    }
    void textOfADocumentIsNeverNull()
    {
        QFETCH(QString, text);
        QTEST(stateOf(text), "state");
    }

    // Every text of a field: name, label, value labels, missing code, bounds, not-applicable code, decimals.
    void fieldHasNoNullText_data()
    {
        QTest::addColumn<QString>("item");
        QTest::addColumn<QString>("states");
        const QString four = QStringLiteral("empty empty empty empty ");
        // clang-format off
        QTest::newRow("text")                        << "DataType=Alpha\nLen=2"              << four + "empty empty empty empty";
        QTest::newRow("text with an empty set")      << "DataType=Alpha\nLen=2\n[ValueSet]"  << four + "\"0\" empty empty empty";
        QTest::newRow("number")                      << "Len=2"                              << four + "\"0\" \"99\" empty \"0\"";
        QTest::newRow("number of no length")         << "Len=0"                              << four + "\"0\" empty empty \"0\"";
        QTest::newRow("number with an empty set")    << "Len=2\n[ValueSet]"                  << four + "\"0\" \"99\" empty \"0\"";
        QTest::newRow("no length, an empty set")     << "Len=0\n[ValueSet]"                  << four + "\"0\" empty empty \"0\"";
        QTest::newRow("more decimals than digits")   << "Len=1\nDecimal=35"                  << four + "\"0\" empty empty \"#\"";
        QTest::newRow("a decimal character only")    << "Len=1\nDecimal=35\nDecimalChar=YES" << four + "\"0\" empty empty \"#\"";
        // clang-format on
    }
    void fieldHasNoNullText()
    {
        QFETCH(QString, item);
        const DebugCapture quiet;
        const DictionaryFile file(QStringLiteral("[Dictionary]\nRecordTypeLen=0\n[Item]\n") + item + QLatin1Char('\n'));
        TCSProDataImport importer(file.path());
        TDataImport &base = importer;
        delete base.selectLayoutSource();
        TGenericField *field = TestAccess::fields(importer).value(0);
        QTEST(statesOf(*field).join(' '), "states");
        QCOMPARE(stateOf(field->getGroup()), QString("empty"));
        base.releaseContents();
    }

    void fieldOfADocumentHasNoNullText()
    {
        const DebugCapture quiet;
        const DictionaryFile file(QString::fromUtf8(jsonWith("", "", "\"contentType\":\"alpha\",\"valueSets\":[{}],")));
        TCSProJsonDataImport importer(file.path());
        TDataImport &base = importer;
        delete base.selectLayoutSource();
        QCOMPARE(TestAccess::fields(importer).size(), 2);
        for (TGenericField *field : TestAccess::fields(importer)) {
            QCOMPARE(statesOf(*field).join(' '), QString("empty empty empty empty \"0\" empty empty empty"));
            QCOMPARE(stateOf(field->getGroup()), QString("empty"));
        }
        base.releaseContents();
    }

    void textOfAnImporterIsAsItsRuleSays_data()
    {
        addTextColumns();
        addTextsOfImporter<TCSProDataImport>("text form", QStringLiteral("[Record]\nName=A\nRecordTypeValue='1'\n"));
        addTextsOfImporter<TCSProJsonDataImport>("JSON form", QString::fromUtf8(jsonWith("", "", "")));
    }
    void textOfAnImporterIsAsItsRuleSays()
    {
        QFETCH(QString, text);
        QTEST(stateOf(text), "state");
    }

    void groupValueThatNothingContainsIsNotNull()
    {
        class Heir : public TCSProDataImport
        {
        public:
            using TCSProDataImport::TCSProDataImport;
            QString getGroupName(int /*index*/) override { return QStringLiteral("nowhere"); }
            using TCSProDataImport::getGroupValue;
            using TCSProDataImport::openFile;
        };
        const DebugCapture quiet;
        const DictionaryFile file(QStringLiteral("[Record]\nName=A\nRecordTypeValue='1'\n"));
        Heir heir(file.path());
        QCOMPARE(stateOf(heir.getGroupValue(0)), QString("empty"));
        heir.openFile();
        QCOMPARE(stateOf(heir.getGroupValue(0)), QString("empty"));
        heir.releaseContents();
    }
};

QTEST_GUILESS_MAIN(DictionaryTextsTest)
#include "DictionaryTextsTest.moc"
