#include "support/LiteralBytes.h"
#include "support/LocaleCodec.h"
#include "util/TextFile_p.h"

#include <QRandomGenerator>
#include <QTextCodec>
#include <QtTest>

Q_DECLARE_METATYPE(textfile::Mark)

class TextFileTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void byteOrderMarkDecidesAndIsNoPartOfTheText_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        const QString text = QString::fromUtf8("Aé€😀\nB");
        // clang-format off
        QTest::newRow("UTF-8")     << QByteArray("\xEF\xBB\xBF") + text.toUtf8() << text;
        QTest::newRow("UTF-16 LE") << bytes("\xFF\xFE" "A\0\xE9\0\xAC\x20\x3D\xD8\0\xDE\n\0B\0") << text;
        QTest::newRow("UTF-16 BE") << bytes("\xFE\xFF\0A\0\xE9\x20\xAC\xD8\x3D\xDE\0\0\n\0B") << text;
        QTest::newRow("UTF-32 LE") << bytes("\xFF\xFE\0\0A\0\0\0\xE9\0\0\0\xAC\x20\0\0\0\xF6\x01\0\n\0\0\0B\0\0\0") << text;
        QTest::newRow("UTF-32 BE") << bytes("\0\0\xFE\xFF\0\0\0A\0\0\0\xE9\0\0\x20\xAC\0\x01\xF6\0\0\0\0\n\0\0\0B") << text;
        QTest::newRow("UTF-8 mark only")      << bytes("\xEF\xBB\xBF") << "";
        QTest::newRow("UTF-16 LE mark only") << bytes("\xFF\xFE") << "";
        QTest::newRow("UTF-16 BE mark only") << bytes("\xFE\xFF") << "";
        QTest::newRow("UTF-32 LE mark only") << bytes("\xFF\xFE\0\0") << "";
        QTest::newRow("UTF-32 BE mark only") << bytes("\0\0\xFE\xFF") << "";
        // clang-format on
    }
    void byteOrderMarkDecidesAndIsNoPartOfTheText()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, expected);
        QCOMPARE(textfile::decode(content), expected);
        const LocaleCodec codec("ISO 8859-2");
        QCOMPARE(textfile::decode(content), expected);
    }

    void markIsNoPartOfTheFirstLine_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("UTF-8") << bytes("\xEF\xBB\xBF[Dictionary]\r\nVersion\r\n");
        QTest::newRow("UTF-16 LE") << bytes(
            "\xFF\xFE[\0D\0i\0c\0t\0i\0o\0n\0a\0r\0y\0]\0\r\0\n\0V\0e\0r\0s\0i\0o\0n\0");
    }
    void markIsNoPartOfTheFirstLine()
    {
        QFETCH(QByteArray, content);
        QCOMPARE(textfile::decode(content).trimmed(), QString("[Dictionary]\nVersion"));
    }

    void markOfUtf8DecidesThoughTheBytesAreInvalid()
    {
        QCOMPARE(textfile::decode("\xEF\xBB\xBF"
                                  "a\xE9"
                                  "b"),
                 QString("a") + QChar(0xFFFD) + "b");
    }

    void partOfAMarkIsNoMark_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        QTest::newRow("two bytes of the UTF-8 mark") << bytes("\xEF\xBB") << QString::fromUtf8("ï»");
        QTest::newRow("one byte of the UTF-16 mark") << bytes("\xFF") << QString::fromUtf8("ÿ");
        QTest::newRow("mark after the first character") << bytes("a\xFF\xFE") << QString::fromUtf8("aÿþ");
    }
    void partOfAMarkIsNoMark()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, expected);
        QCOMPARE(textfile::decode(content), expected);
    }

    void markInTheMiddleIsACharacter()
    {
        QCOMPARE(textfile::decode("a\xEF\xBB\xBF"
                                  "b"),
                 QString("a") + QChar(0xFEFF) + "b");
    }

    void validUtf8WithoutAMarkIsUtf8_data()
    {
        QTest::addColumn<QString>("text");
        // clang-format off
        QTest::newRow("empty")                 << "";
        QTest::newRow("ASCII")                 << "Name=SEX\nLabel=Sex";
        QTest::newRow("two bytes")             << QString::fromUtf8("Année");
        QTest::newRow("three bytes")           << QString::fromUtf8("ปี €");
        QTest::newRow("four bytes")            << QString::fromUtf8("😀");
        QTest::newRow("first and last of each length") << QString::fromUtf8("\u0080\u07FF\u0800\uD7FF\uE000\uFFFC\U00010000\U0010FFFD");
        QTest::newRow("replacement character") << QString("a") + QChar(0xFFFD) + "b";
        QTest::newRow("replacement characters only") << QString(3, QChar(0xFFFD));
        QTest::newRow("replacement and others") << QString::fromUtf8("é") + QChar(0xFFFD) + QString::fromUtf8("€");
        // clang-format on
    }
    void validUtf8WithoutAMarkIsUtf8()
    {
        QFETCH(QString, text);
        QCOMPARE(textfile::decode(text.toUtf8()), text);
        const LocaleCodec codec("ISO 8859-2");
        QCOMPARE(textfile::decode(text.toUtf8()), text);
    }

    void invalidUtf8IsWindows1252_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        // clang-format off
        QTest::newRow("Latin letters")             << bytes("Ann\xE9" "e")         << QString::fromUtf8("Année");
        QTest::newRow("quotes, dash and euro")     << bytes("\x93" "a\x94\x96\x80") << QString::fromUtf8("“a”–€");
        QTest::newRow("one bad byte makes all of it old") << bytes("\xC3\xA9 \xE9") << QString::fromUtf8("Ã© é");
        QTest::newRow("sequence cut at the end")   << bytes("a\xC3")               << QString::fromUtf8("aÃ");
        QTest::newRow("overlong sequence")         << bytes("\xC0\xAF")            << QString::fromUtf8("À¯");
        QTest::newRow("surrogate in UTF-8")        << bytes("\xED\xA0\x80")        << QString::fromUtf8("í\u00A0€");
        QTest::newRow("beyond the last character") << bytes("\xF4\xBF\xBF\xBF")    << QString::fromUtf8("ô¿¿¿");
        QTest::newRow("replacement character and a bad byte") << bytes("\xEF\xBF\xBD\xE9") << QString::fromUtf8("ï¿½é");
        QTest::newRow("bad byte far from the beginning") << QByteArray(100000, 'a') + '\xE9' << QString(100000, 'a') + QChar(0xE9);
        // clang-format on
    }
    void invalidUtf8IsWindows1252()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, expected);
        for (const char *locale : { "UTF-8", "US-ASCII" }) {
            QVERIFY(QTextCodec::codecForName(locale));
            const LocaleCodec codec(locale);
            QCOMPARE(textfile::decode(content), expected);
        }
    }

    void invalidUtf8IsInTheLocalesEncodingWhereThatIsAnother_data()
    {
        QTest::addColumn<QByteArray>("locale");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        QTest::newRow("ISO 8859-2") << bytes("ISO 8859-2")
                                    << bytes("\xB3\xF3"
                                             "d\xBC")
                                    << QString::fromUtf8("łódź");
        QTest::newRow("Windows-1251") << bytes("windows-1251") << bytes("\xC3\xEE\xE4") << QString::fromUtf8("Год");
        QTest::newRow("ISO 8859-1") << bytes("ISO 8859-1") << bytes("\xE9\xA4") << QString::fromUtf8("é¤");
    }
    void invalidUtf8IsInTheLocalesEncodingWhereThatIsAnother()
    {
        QFETCH(QByteArray, locale);
        QFETCH(QByteArray, content);
        QFETCH(QString, expected);
        const LocaleCodec codec(locale.constData());
        QCOMPARE(textfile::decode(content), expected);
    }

    void everyCarriageReturnDisappears_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        // clang-format off
        QTest::newRow("before a line feed")        << bytes("a\r\nb\r\n")        << "a\nb\n";
        QTest::newRow("lone")                      << bytes("a\rb")              << "ab";
        QTest::newRow("several")                   << bytes("a\r\r\r\nb")        << "a\nb";
        QTest::newRow("after a line feed")         << bytes("a\n\rb")            << "a\nb";
        QTest::newRow("at both ends")              << bytes("\ra\r")             << "a";
        QTest::newRow("nothing else")              << bytes("\r\r")              << "";
        QTest::newRow("in Windows-1252")           << bytes("\xE9\r\nb\r")       << QString::fromUtf8("é\nb");
        QTest::newRow("in UTF-8 with a mark")      << bytes("\xEF\xBB\xBF\r\xC3\xA9\r\n") << QString::fromUtf8("é\n");
        QTest::newRow("in UTF-16 LE")              << bytes("\xFF\xFE" "a\0\r\0\n\0b\0\r\0c\0") << "a\nbc";
        QTest::newRow("in UTF-16 BE")              << bytes("\xFE\xFF\0a\0\r\0\n\0b\0\r\0c") << "a\nbc";
        QTest::newRow("in UTF-32 LE")              << bytes("\xFF\xFE\0\0a\0\0\0\r\0\0\0\n\0\0\0") << "a\n";
        // clang-format on
    }
    void everyCarriageReturnDisappears()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, expected);
        QCOMPARE(textfile::decode(content), expected);
    }

    void bytesOfOtherCharactersAreNoCarriageReturns_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        const QString text = QString(QChar(0x010D)) + QChar(0x0D00) + '\n' + QChar(0x0A0D) + QChar(0x0D0A);
        QTest::newRow("UTF-16 LE") << bytes("\xFF\xFE\x0D\x01\x00\x0D\x0D\x00\x0A\x00\x0D\x0A\x0A\x0D") << text;
        QTest::newRow("UTF-16 BE") << bytes("\xFE\xFF\x01\x0D\x0D\x00\x00\x0D\x00\x0A\x0A\x0D\x0D\x0A") << text;
    }
    void bytesOfOtherCharactersAreNoCarriageReturns()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, expected);
        QCOMPARE(textfile::decode(content), expected);
        QCOMPARE(textfile::decode(content).count('\n'), 1);
    }

    void nulCharactersAreKept()
    {
        QCOMPARE(textfile::decode(bytes("a\0b\n\0")), QString("a") + QChar(0) + "b\n" + QChar(0));
        QCOMPARE(textfile::decode(bytes("\xE9\0b")), QString(QChar(0xE9)) + QChar(0) + 'b');
    }

    void bytesAreUtf8WhereAllOfThemAre_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("expected");
        // clang-format off
        QTest::newRow("empty")                    << bytes("")                 << true;
        QTest::newRow("ASCII with NUL and DEL")   << bytes("a\0\x7F")          << true;
        QTest::newRow("first of two bytes")       << bytes("\xC2\x80")         << true;
        QTest::newRow("last of two bytes")        << bytes("\xDF\xBF")         << true;
        QTest::newRow("first of three bytes")     << bytes("\xE0\xA0\x80")     << true;
        QTest::newRow("before the surrogates")    << bytes("\xED\x9F\xBF")     << true;
        QTest::newRow("after the surrogates")     << bytes("\xEE\x80\x80")     << true;
        QTest::newRow("last of three bytes")      << bytes("\xEF\xBF\xBF")     << true;
        QTest::newRow("first of four bytes")      << bytes("\xF0\x90\x80\x80") << true;
        QTest::newRow("last of four bytes")       << bytes("\xF4\x8F\xBF\xBF") << true;
        QTest::newRow("replacement character")    << bytes("\xEF\xBF\xBD")     << true;
        QTest::newRow("mark in the middle")       << bytes("a\xEF\xBB\xBF")    << true;
        QTest::newRow("continuation only")        << bytes("\x80")             << false;
        QTest::newRow("overlong of two bytes")    << bytes("\xC1\xBF")         << false;
        QTest::newRow("overlong of three bytes")  << bytes("\xE0\x9F\xBF")     << false;
        QTest::newRow("overlong of four bytes")   << bytes("\xF0\x8F\xBF\xBF") << false;
        QTest::newRow("first surrogate")          << bytes("\xED\xA0\x80")     << false;
        QTest::newRow("last surrogate")           << bytes("\xED\xBF\xBF")     << false;
        QTest::newRow("beyond the last character") << bytes("\xF4\x90\x80\x80") << false;
        QTest::newRow("byte that leads nothing")  << bytes("\xF5\x80\x80\x80") << false;
        QTest::newRow("0xFF")                     << bytes("\xFF")             << false;
        QTest::newRow("cut after the lead")       << bytes("\xC3")             << false;
        QTest::newRow("cut after two of three")   << bytes("\xE2\x82")         << false;
        QTest::newRow("cut after three of four") << bytes("\xF0\x9F\x98")     << false;
        QTest::newRow("second byte no continuation") << bytes("\xE2\x28\xA1")  << false;
        QTest::newRow("third byte no continuation")  << bytes("\xE2\x82\x28")  << false;
        QTest::newRow("fourth byte no continuation") << bytes("\xF0\x9F\x98\x41") << false;
        QTest::newRow("one continuation too many") << bytes("\xC3\xA9\xA9")    << false;
        // clang-format on
    }
    void bytesAreUtf8WhereAllOfThemAre()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, expected);
        // At any position among ASCII characters.
        for (int before = 0; before <= 17; ++before) {
            for (const int behind : { 0, 1, 7, 8, 9 })
                QCOMPARE(textfile::isUtf8(QByteArray(before, 'a') + content + QByteArray(behind, 'b')), expected);
        }
    }

    void bytesAfterTheEndHaveNoEffect()
    {
        const char sequence[] = "a\xE2\x82\xAC";
        for (int size = 2; size <= 3; ++size)
            QVERIFY(!textfile::isUtf8(QByteArray::fromRawData(sequence, size)));
        QVERIFY(textfile::isUtf8(QByteArray::fromRawData(sequence, 4)));
    }

    void randomBytesAreUtf8WhereQtReadsThemWithoutLoss()
    {
        const QByteArray alphabet
            = bytes("a\x7F\x80\x8F\x90\x9F\xA0\xBF\xC1\xC2\xDF\xE0\xE1\xED\xEF\xF0\xF3\xF4\xF5\xFF");
        QRandomGenerator random(20240607);
        int valid = 0;
        for (int time = 0; time < 100000; ++time) {
            QByteArray content = "a"; // Qt would remove a mark
            for (int rest = random.bounded(6); rest > 0; --rest)
                content += alphabet[random.bounded(alphabet.size())];
            const bool expected = QString::fromUtf8(content).toUtf8() == content;
            valid += expected;
            QVERIFY2(textfile::isUtf8(content) == expected, content.toHex().constData());
        }
        QVERIFY(valid > 1000);
    }

    void characterIsFoundFromAnIndexOn_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("expected");
        QTest::newRow("first") << "a=b=c" << 0 << 1;
        QTest::newRow("at the index") << "a=b=c" << 1 << 1;
        QTest::newRow("after the index") << "a=b=c" << 2 << 3;
        QTest::newRow("no further one") << "a=b=c" << 4 << -1;
        QTest::newRow("index at the end") << "a=b" << 3 << -1;
        QTest::newRow("index beyond the end") << "a=b" << 9 << -1;
        QTest::newRow("none") << "abc" << 0 << -1;
        QTest::newRow("empty") << "" << 0 << -1;
        QTest::newRow("same low byte") << QString(QChar(0x013D)) << 0 << -1;
    }
    void characterIsFoundFromAnIndexOn()
    {
        QFETCH(QString, line);
        QFETCH(int, from);
        QFETCH(int, expected);
        QCOMPARE(textfile::indexOf(line, '=', from), expected);
    }

    void kindOfEncodingGoesByTheMark_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<textfile::Mark>("mark");
        QTest::newRow("no bytes") << QByteArray() << textfile::Mark::none;
        QTest::newRow("ASCII") << bytes("abc") << textfile::Mark::none;
        QTest::newRow("part of the UTF-8 mark") << bytes("\xEF\xBB") << textfile::Mark::none;
        QTest::newRow("UTF-8") << bytes("\xEF\xBB\xBF") << textfile::Mark::utf8;
        QTest::newRow("UTF-16 LE") << bytes("\xFF\xFE") << textfile::Mark::other;
        QTest::newRow("UTF-16 BE") << bytes("\xFE\xFF") << textfile::Mark::other;
        QTest::newRow("UTF-32 BE") << bytes("\0\0\xFE\xFF") << textfile::Mark::other;
    }
    void kindOfEncodingGoesByTheMark()
    {
        QFETCH(QByteArray, content);
        QTEST(textfile::markOf(content), "mark");
    }

    void bytesKnownAsUtf8AreDecodedWithoutReturns()
    {
        QCOMPARE(textfile::decodeUtf8("\xEF\xBB\xBF"
                                      "\xC3\xA9\r\nb"),
                 QString::fromUtf8("é\nb"));
        QCOMPARE(textfile::decodeUtf8("a\xE9"), QString("a") + QChar(QChar::ReplacementCharacter));
    }
};

QTEST_GUILESS_MAIN(TextFileTest)
#include "TextFileTest.moc"
