#include "read/Decoding_p.h"

#include <QTest>

using namespace vanlayout;

namespace
{

QString fffd(int count)
{
    return QString(count, QChar(QChar::ReplacementCharacter));
}

using Decode = QString (*)(const char *bytes, int size, bool *isDamaged);

QString decoded(Decode decode, const QByteArray &bytes, bool &isDamaged)
{
    return decode(bytes.constData(), bytes.size(), &isDamaged);
}

} // namespace

class DecodingTest : public QObject
{
    Q_OBJECT

private slots:
    void damagedUtf8GetsOneMarkForEachMaximalPart_data();
    void damagedUtf8GetsOneMarkForEachMaximalPart();
    void aByteOrderMarkIsACharacter();
    void windows1252HasFiveBytesWithoutACharacter();
    void utf16IsReadInBothOrders_data();
    void utf16IsReadInBothOrders();
};

void DecodingTest::damagedUtf8GetsOneMarkForEachMaximalPart_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QByteArray() << QString();
    QTest::newRow("ASCII") << QByteArray("Hello, world") << "Hello, world";
    QTest::newRow("two, three, four bytes")
        << QByteArray("\xC3\xA9\xE2\x82\xAC\xF0\x9D\x84\x9E") << QString::fromUtf8("é€𝄞");
    QTest::newRow("a byte that only follows") << QByteArray("a\x80\xBF"
                                                            "b")
                                              << "a" + fffd(2) + "b";
    QTest::newRow("cut two-byte sequence") << QByteArray("a\xC3") << "a" + fffd(1);
    QTest::newRow("cut three-byte sequence") << QByteArray("a\xE2\x82"
                                                           "b")
                                             << "a" + fffd(1) + "b";
    QTest::newRow("cut four-byte sequence") << QByteArray("\xF0\x9D\x84") << fffd(1);
    QTest::newRow("cut four-byte sequence before a letter") << QByteArray("\xF0\x9D"
                                                                          "A")
                                                            << fffd(1) + "A";
    QTest::newRow("longer than needed") << QByteArray("\xC0\xAF\xE0\x80\xBF\xF0\x81\x82"
                                                      "A")
                                        << fffd(8) + "A";
    QTest::newRow("surrogates") << QByteArray("\xED\xA0\x80") << fffd(3);
    QTest::newRow("beyond Unicode") << QByteArray("\xF4\x91\x92\x93\xFF"
                                                  "A\x80\xBF"
                                                  "B")
                                    << fffd(5) + "A" + fffd(2) + "B";
    QTest::newRow("damage after a long text")
        << QByteArray("0123456789abcdef\xE9z") << "0123456789abcdef" + fffd(1) + "z";
    QTest::newRow("lowest and highest of each size")
        << QByteArray("\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF")
        << QString(QChar(0x80)) + QChar(0x7FF) + QChar(0x800) + QChar(0xFFFF)
            + QString::fromUcs4(U"\U00010000\U0010FFFF");
}

void DecodingTest::damagedUtf8GetsOneMarkForEachMaximalPart()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    const bool shouldBeDamaged = text.contains(QChar(QChar::ReplacementCharacter));
    bool isDamaged = false;
    QCOMPARE(decoded(decoding::fromUtf8, bytes, isDamaged), text);
    QCOMPARE(isDamaged, shouldBeDamaged);
    QCOMPARE(decoding::isUtf8(bytes.constData(), bytes.size()), !shouldBeDamaged);
}

void DecodingTest::aByteOrderMarkIsACharacter()
{
    bool isDamaged = false;
    const QChar mark(QChar::ByteOrderMark);
    QCOMPARE(decoded(decoding::fromUtf8,
                     "\xEF\xBB\xBF\xEF\xBB\xBF"
                     "a\xFF\xEF\xBB\xBF",
                     isDamaged),
             QString(2, mark) + "a" + fffd(1) + mark);
}

void DecodingTest::windows1252HasFiveBytesWithoutACharacter()
{
    QByteArray bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes.append(char(byte));
    bool isDamaged = false;
    const QString text = decoded(decoding::fromWindows1252, bytes, isDamaged);
    QCOMPARE(text.size(), 256);
    QCOMPARE(text.count(QChar(QChar::ReplacementCharacter)), 5);
    QVERIFY(isDamaged);
    QCOMPARE(text.mid(0x80, 1), QString::fromUtf8("€"));
    QCOMPARE(text.mid(0x92, 1), QString::fromUtf8("’"));
    QCOMPARE(text.mid(0x9E, 2), QString::fromUtf8("žŸ"));
    QCOMPARE(text.mid(0xE9, 1), QString::fromUtf8("é"));
    QCOMPARE(text.left(0x80), QString::fromLatin1(bytes.constData(), 0x80));
    isDamaged = false;
    decoded(decoding::fromWindows1252, "caf\xE9 \x80", isDamaged);
    QVERIFY(!isDamaged);
}

void DecodingTest::utf16IsReadInBothOrders_data()
{
    QTest::addColumn<QString>("units");
    QTest::addColumn<int>("cut");
    QTest::addColumn<QString>("text");
    const QString high(QChar(0xD834));
    const QString low(QChar(0xDD1E));
    QTest::newRow("letters") << QString::fromUtf8("aé€") << 0 << QString::fromUtf8("aé€");
    QTest::newRow("pair") << high + low << 0 << QString::fromUtf8("𝄞");
    QTest::newRow("first half only") << high + "a" << 0 << fffd(1) + "a";
    QTest::newRow("first half at the end") << "a" + high << 0 << "a" + fffd(1);
    QTest::newRow("second half only") << low + "a" << 0 << fffd(1) + "a";
    QTest::newRow("halves in the wrong order") << low + high << 0 << fffd(2);
    QTest::newRow("cut unit") << "ab" << 1 << "a" + fffd(1);
    QTest::newRow("cut pair") << "a" + high + low << 1 << "a" + fffd(1);
    QTest::newRow("half a unit") << "a" << 1 << fffd(1);
}

void DecodingTest::utf16IsReadInBothOrders()
{
    QFETCH(QString, units);
    QFETCH(int, cut);
    QFETCH(QString, text);
    QByteArray little;
    QByteArray big;
    for (const QChar unit : qAsConst(units)) {
        little.append(char(unit.cell())).append(char(unit.row()));
        big.append(char(unit.row())).append(char(unit.cell()));
    }
    for (const bool isBig : { false, true }) {
        bool isDamaged = false;
        const QByteArray bytes = isBig ? big : little;
        QCOMPARE(
            decoded(isBig ? decoding::fromUtf16BE : decoding::fromUtf16LE, bytes.left(bytes.size() - cut), isDamaged),
            text);
        QCOMPARE(isDamaged, text.contains(QChar(QChar::ReplacementCharacter)));
    }
}

QTEST_APPLESS_MAIN(DecodingTest)
#include "DecodingTest.moc"
