#include "write/DiffJson.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace vanlayout;

namespace
{

QByteArray jsonOf(const LayoutDiff &diff, JsonStyle style = JsonStyle::Compact)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return writeDiffJson(diff, buffer, style) ? buffer.data() : QByteArray();
}

// A device that accepts no bytes.
class FullDevice : public QIODevice
{
protected:
    qint64 readData(char * /*data*/, qint64 /*size*/) override { return -1; }
    qint64 writeData(const char * /*data*/, qint64 /*size*/) override { return -1; }
};

Change change(DiffKind kind, const QString &before, const QString &after)
{
    Change result;
    result.kind = kind;
    result.before = before;
    result.after = after;
    return result;
}

} // namespace

class DiffJsonTest : public QObject
{
    Q_OBJECT

private slots:
    void keysAreInTheirOrder();
    void emptyComparisonHasAllLists();
    void textsGoByTheKind_data();
    void textsGoByTheKind();
    void hostileTextsStayTexts_data();
    void hostileTextsStayTexts();
    void prettyFormIsTheSameDocument();
    void deviceThatRefusesIsReported();
};

void DiffJsonTest::keysAreInTheirOrder()
{
    LayoutDiff diff;
    diff.before = { "old.dcf", Format::CSProText, "csdb", "7.7", "D", "Label", 3 };
    diff.after = { "new.dcf", Format::CSProJson, "", "", "", "", 4 };
    diff.notCompared = { { "encoding", "it is of the file" } };
    Change whole = change(DiffKind::ValueLabel, "Yes", "No");
    whole.level = "L";
    whole.record = "R";
    whole.item = "I";
    whole.otherName = "J";
    whole.valueSet = "V";
    whole.code = "1";
    whole.language = "EN";
    diff.changes = { whole };
    QCOMPARE(jsonOf(diff),
             QByteArray(R"({"before":{"file":"old.dcf","format":"cspro-text","container":"csdb","formatVersion":"7.7",)"
                        R"("name":"D","label":"Label","items":3},)"
                        R"("after":{"file":"new.dcf","format":"cspro-json","items":4},)"
                        R"("notCompared":[{"what":"encoding","why":"it is of the file"}],)"
                        R"("counts":{"value-label":1},)"
                        R"("changes":[{"kind":"value-label","level":"L","record":"R","item":"I","otherName":"J",)"
                        R"("valueSet":"V","code":"1","language":"EN","before":"Yes","after":"No"}]})"
                        "\n"));
}

void DiffJsonTest::emptyComparisonHasAllLists()
{
    QCOMPARE(jsonOf(LayoutDiff()),
             QByteArray(R"({"before":{"file":"","format":"","items":0},"after":{"file":"","format":"","items":0},)"
                        R"("notCompared":[],"counts":{},"changes":[]})"
                        "\n"));
}

void DiffJsonTest::textsGoByTheKind_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QStringList>("keys");
    for (const DiffKindInfo &info : diffKinds()) {
        QStringList keys;
        if (info.side != DiffSide::Before)
            keys.append("after");
        if (info.side != DiffSide::After)
            keys.append("before");
        QTest::newRow(qPrintable(info.word)) << int(info.kind) << keys + QStringList("kind");
    }
}

void DiffJsonTest::textsGoByTheKind()
{
    QFETCH(int, kind);
    QFETCH(QStringList, keys);
    LayoutDiff diff;
    diff.changes = { change(DiffKind(kind), QString(), QString()) };
    const QJsonValue document = QJsonDocument::fromJson(jsonOf(diff)).object();
    const QJsonObject written = document["changes"][0].toObject();
    QCOMPARE(written.keys(), keys);
    QCOMPARE(written["kind"].toString(), wordOf(DiffKind(kind)));
    QCOMPARE(document["counts"][wordOf(DiffKind(kind))].toInt(), 1);
}

void DiffJsonTest::hostileTextsStayTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("quotes") << "\"],\"x\":[\"\\";
    QTest::newRow("controls") << QString::fromUtf8("\x01\x1B[31m\t\n\x7F\u009B");
    QTest::newRow("other scripts") << QString::fromUtf8("\u00C9 \u65E5\u4ED8 \u202E");
    QTest::newRow("markup") << "</script><b onclick=x>&amp;";
}

void DiffJsonTest::hostileTextsStayTexts()
{
    QFETCH(QString, text);
    LayoutDiff diff;
    diff.before.file = text;
    diff.notCompared = { { text, text } };
    Change all = change(DiffKind::ItemLabel, text, text);
    all.record = all.item = all.valueSet = all.code = text;
    diff.changes = { all };
    const QByteArray json = jsonOf(diff);
    for (const char byte : json.chopped(1))
        QVERIFY(uchar(byte) >= ' ' && uchar(byte) != 0x7F);
    const QJsonValue document = QJsonDocument::fromJson(json).object();
    QCOMPARE(document["before"]["file"].toString(), text);
    QCOMPARE(document["notCompared"][0]["why"].toString(), text);
    for (const char *key : { "record", "item", "valueSet", "code", "before", "after" })
        QCOMPARE(document["changes"][0][QLatin1String(key)].toString(), text);
}

void DiffJsonTest::prettyFormIsTheSameDocument()
{
    LayoutDiff diff;
    diff.changes = { change(DiffKind::ItemLabel, "a", "b") };
    const QByteArray pretty = jsonOf(diff, JsonStyle::Pretty);
    QVERIFY(pretty.count('\n') > 10);
    QCOMPARE(QJsonDocument::fromJson(pretty), QJsonDocument::fromJson(jsonOf(diff)));
}

void DiffJsonTest::deviceThatRefusesIsReported()
{
    FullDevice device;
    device.open(QIODevice::WriteOnly);
    QVERIFY(!writeDiffJson(LayoutDiff(), device));
}

QTEST_APPLESS_MAIN(DiffJsonTest)
#include "DiffJsonTest.moc"
