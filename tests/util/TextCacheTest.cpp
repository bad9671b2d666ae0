#include "util/TextCache_p.h"

#include <QtTest>

class TextCacheTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void textIsThatOfItsView_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << "";
        QTest::newRow("code") << "01";
        QTest::newRow("label") << QString::fromUtf8("Année de naissance");
        QTest::newRow("with NUL") << QString("a") + QChar(0) + "b";
        QTest::newRow("longest that is kept") << QString(64, 'x');
        QTest::newRow("longer") << QString(65, 'x');
        QTest::newRow("long") << QString(100000, 'x');
    }
    void textIsThatOfItsView()
    {
        QFETCH(QString, text);
        TextCache cache;
        for (int time = 0; time < 3; ++time)
            QCOMPARE(cache.text(text), text);
    }

    void equalViewsShareOneText()
    {
        const QString line = "01=Yes;01=Yes";
        TextCache cache;
        const QString first = cache.text(QStringView(line).mid(0, 6));
        const QString second = cache.text(QStringView(line).mid(7, 6));
        QCOMPARE(first, QString("01=Yes"));
        QCOMPARE(second.constData(), first.constData());
    }

    void givenTextIsKeptWithoutACopy()
    {
        TextCache cache;
        const QString first = QString("Yes ").trimmed();
        const QString second = QString("Yes ").trimmed();
        QVERIFY(first.constData() != second.constData());
        QCOMPARE(cache.text(first).constData(), first.constData());
        QCOMPARE(cache.text(second).constData(), first.constData());
        QCOMPARE(cache.text(QStringView(second)).constData(), first.constData());
        const QString longText(65, 'x');
        QCOMPARE(cache.text(longText).constData(), longText.constData());
        QVERIFY(cache.text(QString()).isNull());
        QVERIFY(!cache.text(QString("")).isNull());
    }

    void charactersOfOneByteShareTheSameText()
    {
        const char bytes[] = "Yes Ann\xe9"
                             "e Yes";
        TextCache cache;
        const QString first = cache.text(QStringView(u"Yes"));
        QCOMPARE(cache.text(QLatin1String(bytes, 3)).constData(), first.constData());
        QCOMPARE(cache.text(QLatin1String(bytes + 10, 3)).constData(), first.constData());
        QCOMPARE(cache.text(QLatin1String(bytes + 4, 5)), QString::fromUtf8("Ann\u00e9e"));
        QCOMPARE(cache.text(QLatin1String()), QString());
        QCOMPARE(cache.text(QLatin1String(QByteArray(65, 'x'))), QString(65, 'x'));
    }

    void textOutlivesItsViewAndTheCache()
    {
        QString text;
        {
            TextCache cache;
            QString line = "01";
            text = cache.text(line);
            line[0] = 'x';
        }
        QCOMPARE(text, QString("01"));
    }

    void changingATextLeavesTheKeptOne()
    {
        TextCache cache;
        const QString line = "01";
        QString text = cache.text(line);
        text += "changed";
        QCOMPARE(cache.text(line), QString("01"));
    }

    void moreTextsThanPlacesStayRight()
    {
        TextCache cache;
        QStringList texts;
        for (int number = 0; number < 10000; ++number)
            texts.append(cache.text(QString::number(number)));
        for (int number = 0; number < 10000; ++number) {
            QCOMPARE(texts[number], QString::number(number));
            QCOMPARE(cache.text(QString::number(number)), QString::number(number));
        }
    }
};

QTEST_GUILESS_MAIN(TextCacheTest)
#include "TextCacheTest.moc"
