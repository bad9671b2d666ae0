#include "lookup/LocaleTextStream_p.h"
#include "support/LocaleCodec.h"

#include <QBuffer>
#include <QRegularExpression>
#include <QtTest>

namespace
{

// Each text is longer than two blocks of the reader.
constexpr int repetitions = 4000;

} // namespace

/// Tests the conversion of lookup files from the encoding of the locale.
class LocaleTextStreamTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bytesAreConvertedToUtf8_data()
    {
        QTest::addColumn<QByteArray>("codec");
        QTest::addColumn<QString>("text");
        const QString accents = QString::fromUtf8("01 Région\n");
        const QString japanese = QString::fromUtf8("01 東京\n");
        QTest::newRow("one byte") << QByteArray("ISO-8859-1") << accents.repeated(repetitions);
        QTest::newRow("two bytes") << QByteArray("EUC-JP") << japanese.repeated(repetitions);
        // A block ends within each of its characters in turn.
        for (int shift = 0; shift < 3; ++shift)
            QTest::addRow("three bytes, shifted by %d", shift)
                << QByteArray("UTF-8") << QString(shift, 'x') + QString(QChar(0x6771)).repeated(repetitions);
        QTest::newRow("with escapes") << QByteArray("ISO-2022-JP") << japanese.repeated(repetitions);
        QTest::newRow("nothing") << QByteArray("EUC-JP") << QString();
    }
    void bytesAreConvertedToUtf8()
    {
        QFETCH(QByteArray, codec);
        QFETCH(QString, text);
        const LocaleCodec locale(codec.constData());
        QByteArray bytes = QTextCodec::codecForLocale()->fromUnicode(text);
        QBuffer source(&bytes);
        QVERIFY(source.open(QIODevice::ReadOnly));
        LocaleToUtf8 converted(source);
        QVERIFY(converted.isSequential());
        QCOMPARE(converted.atEnd(), text.isEmpty());
        QCOMPARE(QString::fromUtf8(converted.readAll()), text);
        QVERIFY(converted.atEnd());
    }

    void smallReadsLoseNothing()
    {
        const LocaleCodec locale("ISO-8859-1");
        QByteArray bytes = QByteArray("\xE9").repeated(repetitions * 3);
        QBuffer source(&bytes);
        QVERIFY(source.open(QIODevice::ReadOnly));
        LocaleToUtf8 converted(source);
        QByteArray read;
        while (!converted.atEnd())
            read += converted.read(7);
        QCOMPARE(read, QByteArray("\xC3\xA9").repeated(repetitions * 3));
    }

    void charactersThatTheEncodingDoesNotHaveAreReplaced()
    {
        const LocaleCodec locale("UTF-8");
        QByteArray bytes("a\xFF"
                         "b");
        QBuffer source(&bytes);
        QVERIFY(source.open(QIODevice::ReadOnly));
        LocaleToUtf8 converted(source);
        QCOMPARE(QString::fromUtf8(converted.readAll()), QString("a") + QChar(QChar::ReplacementCharacter) + "b");
    }

    void nothingIsWritten()
    {
        QByteArray bytes;
        QBuffer source(&bytes);
        QVERIFY(source.open(QIODevice::ReadWrite));
        LocaleToUtf8 converted(source);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("ReadOnly device"));
        QCOMPARE(converted.write("x"), qint64(-1));
        QVERIFY(bytes.isEmpty());
    }

    void streamReadsTheLinesInTheEncodingOfTheLocale_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("locale") << QByteArray("1 \xE9\n2 \xE8\n");
        QTest::newRow("UTF-8 with a mark") << QByteArray("\xEF\xBB\xBF"
                                                         "1 \xC3\xA9\n2 \xC3\xA8\n");
    }
    void streamReadsTheLinesInTheEncodingOfTheLocale()
    {
        QFETCH(QByteArray, bytes);
        const LocaleCodec locale("ISO-8859-1");
        QBuffer file(&bytes);
        QVERIFY(file.open(QIODevice::ReadOnly));
        LocaleTextStream stream(&file);
        QCOMPARE(stream.readLine(), QString("1 ") + QChar(0xE9));
        QCOMPARE(stream.readLine(), QString("2 ") + QChar(0xE8));
        QVERIFY(stream.readLine().isNull());
    }
};

QTEST_GUILESS_MAIN(LocaleTextStreamTest)
#include "LocaleTextStreamTest.moc"
