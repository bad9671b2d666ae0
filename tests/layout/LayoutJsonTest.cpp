#include "write/LayoutJson.h"

#include <QBuffer>
#include <QTest>

using namespace vanlayout;

namespace
{

QByteArray jsonOf(const Layout &layout, JsonStyle style = JsonStyle::Compact)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    writeLayoutJson(layout, buffer, style);
    return buffer.data();
}

// A device that accepts no bytes.
class FullDevice : public QIODevice
{
protected:
    qint64 readData(char * /*data*/, qint64 /*size*/) override { return -1; }
    qint64 writeData(const char * /*data*/, qint64 /*size*/) override { return -1; }
};

} // namespace

class LayoutJsonTest : public QObject
{
    Q_OBJECT

private slots:
    void defaultsAreLeftOut();
    void everyKeyHasItsPlace();
    void absentKeysArePrintedWithWhateverValueIsStated();
    void labelsOfAnOccurrenceAreAlwaysPrinted();
    void controlCharactersAreEscaped_data();
    void controlCharactersAreEscaped();
    void prettyFormIsIndentedByTwo();
    void errorHasFileIdMessageAndLine();
    void aDeviceThatIsFullIsReported();
};

void LayoutJsonTest::defaultsAreLeftOut()
{
    Layout layout;
    layout.file = "a.dcf";
    layout.format = Format::CSProText;
    Level level;
    level.ids = { Item() };
    level.records = { Record() };
    layout.levels = { level };
    QCOMPARE(jsonOf(layout),
             QByteArray("{\"layoutVersion\":1,\"file\":\"a.dcf\",\"format\":\"cspro-text\",\"levels\":[{\"name\":\"\","
                        "\"ids\":[{\"name\":\"\",\"type\":\"numeric\",\"length\":0}],"
                        "\"records\":[{\"name\":\"\",\"items\":[]}]}]}\n"));
}

void LayoutJsonTest::everyKeyHasItsPlace()
{
    const Labels labels = { { { "EN", "a" }, { "", "b" } } };
    Value value;
    value.labels = labels;
    value.note = "n";
    value.special = Special::Missing;
    value.image = "i.png";
    value.textColor = "#ff0000";
    value.ranges = { { "1", "" }, { "2", "3" } };
    Item item;
    item.name = "ITEM";
    item.labels = labels;
    item.note = "n";
    item.aliases = QStringList{ "ALIAS" };
    item.type = "alpha";
    item.start = 1;
    item.length = 2;
    item.occurrences = 3;
    item.occurrenceLabels = { { 1, labels } };
    item.subitemOf = "WHOLE";
    item.decimals = 4;
    item.decimalMark = true;
    item.zeroFill = true;
    item.capture = Capture{ "date", "YYYY" };
    item.storage = Storage::Double;
    item.format = "F8.2";
    item.measure = Measure::Scale;
    item.alignment = Alignment::Left;
    item.displayWidth = 8;
    item.missing = { { "9", "" } };
    item.valueSets = { { "SET", labels, "n", QStringList{ "ALIAS" }, "7", { value } } };
    Layout layout;
    layout.levels = { Level() };
    layout.levels[0].ids = { item };
    const QByteArray parts = "\"labels\":[{\"language\":\"EN\",\"text\":\"a\"},{\"text\":\"b\"}]";
    QVERIFY(jsonOf(layout).contains(
        "{\"name\":\"ITEM\"," + parts
        + ",\"note\":\"n\",\"aliases\":[\"ALIAS\"],\"type\":\"alpha\",\"start\":1,\"length\":2,\"occurrences\":3,"
          "\"occurrenceLabels\":[{\"occurrence\":1,"
        + parts
        + "}],\"subitemOf\":\"WHOLE\",\"decimals\":4,\"decimalMark\":true,\"zeroFill\":true,"
          "\"capture\":{\"type\":\"date\",\"dateFormat\":\"YYYY\"},\"storage\":\"double\",\"format\":\"F8.2\","
          "\"measure\":\"scale\",\"alignment\":\"left\",\"displayWidth\":8,\"missing\":[{\"from\":\"9\"}],"
          "\"valueSets\":[{\"name\":\"SET\","
        + parts + ",\"note\":\"n\",\"aliases\":[\"ALIAS\"],\"link\":\"7\",\"values\":[{" + parts
        + ",\"note\":\"n\",\"special\":\"missing\",\"image\":\"i.png\",\"textColor\":\"#ff0000\","
          "\"ranges\":[{\"from\":\"1\"},{\"from\":\"2\",\"to\":\"3\"}]}]}]}"));

    Record record;
    record.name = "REC";
    record.labels = labels;
    record.note = "n";
    record.aliases = QStringList{ "ALIAS" };
    record.recordType = "1";
    record.required = false;
    record.maximum = 2;
    record.length = 9;
    record.occurrenceLabels = { { 1, labels } };
    layout.levels = { Level() };
    layout.levels[0].records = { record };
    QVERIFY(jsonOf(layout).contains("\"levels\":[{\"name\":\"\",\"ids\":[],\"records\":[{\"name\":\"REC\"," + parts
                                    + ",\"note\":\"n\",\"aliases\":[\"ALIAS\"],\"recordType\":\"1\",\"required\":false,"
                                      "\"maximum\":2,\"length\":9,\"occurrenceLabels\":[{\"occurrence\":1,"
                                    + parts + "}],\"items\":[]}]}]"));

    layout = Layout();
    layout.file = "f";
    layout.format = Format::Spss;
    layout.container = "csdb";
    layout.formatVersion = "8.0";
    layout.encoding = "utf-8";
    layout.name = "D";
    layout.labels = labels;
    layout.note = "n";
    layout.aliases = QStringList{ "A" };
    layout.languages = { { "EN", "English" } };
    layout.recordType = RecordTypeColumns{ 1, 2 };
    layout.relativePositions = false;
    layout.decimalMark = true;
    layout.zeroFill = true;
    layout.editable = false;
    layout.security = Security{ QString("00"), true, false, 5 };
    layout.readOptimization = true;
    layout.enableBinaryItems = false;
    layout.valueSetImages = QString("No");
    layout.rows = 0;
    layout.created = QString("2020-01-02T03:04:05");
    layout.modified = QString("2021-01-02T03:04:05");
    layout.weight = "W";
    layout.relations = { { "R", QStringList{ "A" }, "P", { { "X", "S", "Y" }, { "", "S", "" } } } };
    layout.extras = { { "p", "k", "v", 3 }, { "", "k", "v", 0 } };
    layout.problems = { { Severity::Warning, "id", 3, "p", "m" }, { Severity::Info, "id", 0, "", "m" } };
    QCOMPARE(jsonOf(layout),
             "{\"layoutVersion\":1,\"file\":\"f\",\"format\":\"spss\",\"container\":\"csdb\",\"formatVersion\":\"8.0\","
             "\"encoding\":\"utf-8\",\"name\":\"D\","
                 + parts
                 + ",\"note\":\"n\",\"aliases\":[\"A\"],\"languages\":[{\"name\":\"EN\",\"label\":\"English\"}],"
                   "\"recordType\":{\"start\":1,\"length\":2},\"relativePositions\":false,\"decimalMark\":true,"
                   "\"zeroFill\":true,\"editable\":false,\"security\":{\"settings\":\"00\","
                   "\"allowDataViewerModifications\":true,\"allowExport\":false,\"cachedPasswordMinutes\":5},"
                   "\"readOptimization\":true,\"enableBinaryItems\":false,\"valueSetImages\":\"No\",\"rows\":0,"
                   "\"created\":\"2020-01-02T03:04:05\",\"modified\":\"2021-01-02T03:04:05\",\"weight\":\"W\","
                   "\"levels\":[],\"relations\":[{\"name\":\"R\",\"aliases\":[\"A\"],\"primary\":\"P\",\"links\":["
                   "{\"primaryLink\":\"X\",\"secondary\":\"S\",\"secondaryLink\":\"Y\"},{\"secondary\":\"S\"}]}],"
                   "\"extras\":[{\"path\":\"p\",\"key\":\"k\",\"value\":\"v\",\"line\":3},"
                   "{\"path\":\"\",\"key\":\"k\",\"value\":\"v\"}],"
                   "\"problems\":[{\"severity\":\"warning\",\"id\":\"id\",\"line\":3,\"path\":\"p\",\"message\":\"m\"},"
                   "{\"severity\":\"info\",\"id\":\"id\",\"message\":\"m\"}]}\n");
}

void LayoutJsonTest::absentKeysArePrintedWithWhateverValueIsStated()
{
    Layout layout;
    layout.security = Security{ QString(""), false, {}, 0 };
    layout.valueSetImages = QString("");
    layout.created = QString();
    const QByteArray json = jsonOf(layout);
    QVERIFY(json.contains("\"security\":{\"settings\":\"\",\"allowDataViewerModifications\":false,"
                          "\"cachedPasswordMinutes\":0}"));
    QVERIFY(json.contains("\"valueSetImages\":\"\",\"created\":\"\""));
}

void LayoutJsonTest::labelsOfAnOccurrenceAreAlwaysPrinted()
{
    Record record;
    record.occurrenceLabels = { { 2, Labels() } };
    Level level;
    level.records = { record };
    Layout layout;
    layout.levels = { level };
    QVERIFY(jsonOf(layout).contains("\"occurrenceLabels\":[{\"occurrence\":2,\"labels\":[]}]"));
}

void LayoutJsonTest::controlCharactersAreEscaped_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("of ASCII") << QString("a\x1b\n\"") << QByteArray("\"a\\u001B\\n\\\"\"");
    QTest::newRow("delete") << QString("a\x7f\\") << QByteArray("\"a\\u007f\\\\\"");
    QTest::newRow("of Latin-1") << QString::fromUtf8("\u009b\u00e9") << QByteArray("\"\\u009b\xc3\xa9\"");
    QTest::newRow("line and paragraph") << QString::fromUtf8("\u2027\u2028\u2029\u202a")
                                        << QByteArray("\"\xe2\x80\xa7\\u2028\\u2029\xe2\x80\xaa\"");
    QTest::newRow("none") << QString::fromUtf8("\u00a0\u20ac") << QByteArray("\"\xc2\xa0\xe2\x82\xac\"");
}

void LayoutJsonTest::controlCharactersAreEscaped()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, json);
    Layout layout;
    layout.name = name;
    QVERIFY2(jsonOf(layout).contains("\"name\":" + json), jsonOf(layout).constData());
}

void LayoutJsonTest::prettyFormIsIndentedByTwo()
{
    QVERIFY(jsonOf(Layout(), JsonStyle::Pretty).startsWith("{\n  \"layoutVersion\": 1,\n  \"file\": \"\",\n"));
}

void LayoutJsonTest::errorHasFileIdMessageAndLine()
{
    Layout layout;
    layout.file = "f";
    layout.problems = { { Severity::Error, "no-section", 7, "", "m" } };
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QVERIFY(writeErrorJson(layout, buffer));
    QCOMPARE(buffer.data(),
             QByteArray("{\"file\":\"f\",\"error\":{\"id\":\"no-section\",\"message\":\"m\",\"line\":7}}\n"));
}

void LayoutJsonTest::aDeviceThatIsFullIsReported()
{
    FullDevice device;
    device.open(QIODevice::WriteOnly);
    QVERIFY(!writeLayoutJson(Layout(), device));
}

QTEST_APPLESS_MAIN(LayoutJsonTest)
#include "LayoutJsonTest.moc"
