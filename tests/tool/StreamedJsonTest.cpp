#include "StreamedJson.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

namespace
{

// Each array and object piece by piece, but for empty ones.
void stream(StreamedJson &json, const QJsonValue &value)
{
    const QJsonObject object = value.toObject();
    const QJsonArray array = value.toArray();
    if (object.isEmpty() && array.isEmpty()) {
        json.value(value);
    } else if (value.isArray()) {
        json.beginArray();
        for (const QJsonValue &element : array)
            stream(json, element);
        json.endArray();
    } else {
        json.beginObject();
        for (auto member = object.begin(); member != object.end(); ++member) {
            json.key(member.key());
            stream(json, member.value());
        }
        json.endObject();
    }
}

QByteArray written(const std::function<void(StreamedJson &json)> &write)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    StreamedJson json(buffer);
    write(json);
    json.finish();
    return buffer.data();
}

QString everyCharacter()
{
    QString text;
    for (ushort unit = 0; unit < 0x200; ++unit)
        text += QChar(unit);
    return text + QStringLiteral("\u2028\uFFFF\U0001F600");
}

} // namespace

class StreamedJsonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void piecesStandAsInTheWholeDocument_data()
    {
        QTest::addColumn<QJsonObject>("object");
        QTest::newRow("texts") << QJsonObject{ { "a", "plain" }, { "b", "" }, { "c", QString() } };
        QTest::newRow("every character") << QJsonObject{ { everyCharacter(), everyCharacter() } };
        QTest::newRow("numbers") << QJsonObject{
            { "n", QJsonArray{ 0, -1, 2147483647, 9007199254740991.0, 1e15, 0.1, -2.5, 1e-7, 123456.75, 1e300 } }
        };
        QTest::newRow("flags and null") << QJsonObject{ { "f", false }, { "n", QJsonValue::Null }, { "t", true } };
        const QJsonObject empty{ { "array", QJsonArray() }, { "object", QJsonObject() } };
        QTest::newRow("empty ones") << empty;
        QTest::newRow("nested") << QJsonObject{
            { "a", QJsonArray{ QJsonArray{ 1, 2 }, empty, QJsonObject{ { "b", QJsonArray{ empty } } } } },
            { "c", QJsonObject{ { "d", QJsonObject{ { "e", 5 } } } } }
        };
    }
    void piecesStandAsInTheWholeDocument()
    {
        QFETCH(QJsonObject, object);
        const QByteArray whole = QJsonDocument(object).toJson();
        QCOMPARE(written([&](StreamedJson &json) { stream(json, object); }), whole);
        QCOMPARE(written([&](StreamedJson &json) {
                     json.beginObject();
                     json.members(object); // made whole, and indented
                     json.endObject();
                 }),
                 whole);
    }

    void pieceIsHandedOnWhenItIsFull()
    {
        const QString text(300000, QLatin1Char('x'));
        const QByteArray bytes = written([&](StreamedJson &json) {
            json.beginObject();
            json.member("a", text);
            json.member("b", 1);
            json.endObject();
        });
        QCOMPARE(bytes, QJsonDocument(QJsonObject{ { "a", text }, { "b", 1 } }).toJson());
    }
};

QTEST_APPLESS_MAIN(StreamedJsonTest)
#include "StreamedJsonTest.moc"
