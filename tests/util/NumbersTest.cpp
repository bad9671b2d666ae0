#include "util/Numbers_p.h"

#include <QRandomGenerator>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace
{

constexpr int lowestInt = std::numeric_limits<int>::min();
constexpr int highestInt = std::numeric_limits<int>::max();
constexpr qint64 lowestInt64 = std::numeric_limits<qint64>::min();
constexpr qint64 highestInt64 = std::numeric_limits<qint64>::max();
constexpr double infinity = std::numeric_limits<double>::infinity();

quint64 bitsOf(double value)
{
    quint64 bits = 0;
    std::memcpy(&bits, &value, sizeof(bits));
    return bits;
}

// Returns whether two numbers are the same, signs of zeros included. Two NaNs are the same.
bool isSame(double left, double right)
{
    return (std::isnan(left) && std::isnan(right)) || bitsOf(left) == bitsOf(right);
}

double doubleOfQt(const QString &text)
{
    bool ok = false;
    const double number = text.toDouble(&ok);
    return ok ? number : 0.0;
}

// Tests whether every conversion of a text has the result of Qt, and reports the difference. Qt 6 accepts fewer blanks
// and signs than Qt 5, and stops at a NUL; its locales read numbers as Qt 5 does.
int intOfQt(const QString &text, bool *ok)
{
    const auto isPlain = [](QChar unit) { return unit.unicode() > 0 && unit.unicode() < 0x80; };
    if (QT_VERSION < QT_VERSION_CHECK(6, 0, 0) || std::all_of(text.begin(), text.end(), isPlain))
        return text.toInt(ok, 10);
    QLocale locale(QLocale::C);
    locale.setNumberOptions(QLocale::RejectGroupSeparator);
    return locale.toInt(text, ok);
}

bool convertsAsQt(const QString &text)
{
    if (!isSame(numbers::toDouble(text), doubleOfQt(text))) {
        qWarning() << "toDouble" << text << numbers::toDouble(text) << doubleOfQt(text);
        return false;
    }
    bool expectedOk = false;
    const int expected = intOfQt(text, &expectedOk);
    for (const bool before : { false, true }) {
        bool ok = before;
        const int number = numbers::toInt(text, &ok);
        if (number != expected || ok != expectedOk) {
            qWarning() << "toInt" << text << number << ok << expected << expectedOk;
            return false;
        }
    }
    return true;
}

bool readsAsQt(double value)
{
    const QString text = numbers::toText(value);
    const QString expected = QString::number(value, 'g', 6);
    if (text != expected)
        qWarning() << "toText" << text << expected;
    return text == expected;
}

} // namespace

class NumbersTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void textConverts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("real");
        QTest::addColumn<int>("integer");
        QTest::addColumn<bool>("isInteger");
        // clang-format off
        QTest::newRow("digit")                  << "7"           << 7.0           << 7          << true;
        QTest::newRow("leading zeros")          << "00012"       << 12.0          << 12         << true;
        QTest::newRow("many leading zeros")     << "000000000012" << 12.0         << 12         << true;
        QTest::newRow("zero")                   << "0"           << 0.0           << 0          << true;
        QTest::newRow("minus zero")             << "-0"          << -0.0          << 0          << true;
        QTest::newRow("plus sign")              << "+5"          << 5.0           << 5          << true;
        QTest::newRow("minus sign")             << "-5"          << -5.0          << -5         << true;
        QTest::newRow("two signs")              << "--5"         << 0.0           << 0          << false;
        QTest::newRow("sign after")             << "5-"          << 0.0           << 0          << false;
        QTest::newRow("sign only")              << "-"           << 0.0           << 0          << false;
        QTest::newRow("nine digits")            << "999999999"   << 999999999.0   << 999999999  << true;
        QTest::newRow("ten digits that fit")    << "2147483647"  << 2147483647.0  << highestInt << true;
        QTest::newRow("one more than fits")     << "2147483648"  << 2147483648.0  << 0          << false;
        QTest::newRow("least that fits")        << "-2147483648" << -2147483648.0 << lowestInt  << true;
        QTest::newRow("one less than fits")     << "-2147483649" << -2147483649.0 << 0          << false;
        QTest::newRow("twelve digits")          << "123456789012" << 123456789012.0 << 0        << false;
        QTest::newRow("blanks around")          << "  12 "       << 12.0          << 12         << true;
        QTest::newRow("tab and line feed")      << "\t12\n"      << 12.0          << 12         << true;
        QTest::newRow("blank inside")           << "1 2"         << 0.0           << 0          << false;
        QTest::newRow("blank only")             << " "           << 0.0           << 0          << false;
        QTest::newRow("empty")                  << ""            << 0.0           << 0          << false;
        QTest::newRow("null")                   << QString()     << 0.0           << 0          << false;
        QTest::newRow("fraction")               << "12.5"        << 12.5          << 0          << false;
        QTest::newRow("fraction of nothing")    << "12.0"        << 12.0          << 0          << false;
        QTest::newRow("point at the end")       << "12."         << 12.0          << 0          << false;
        QTest::newRow("point at the beginning") << ".5"          << 0.5           << 0          << false;
        QTest::newRow("comma")                  << "12,5"        << 0.0           << 0          << false;
        QTest::newRow("thousands")              << "1,000"       << 0.0           << 0          << false;
        QTest::newRow("exponent")               << "1e3"         << 1000.0        << 0          << false;
        QTest::newRow("overflow")               << "1e999"       << 0.0           << 0          << false;
        QTest::newRow("negative overflow")      << "-1e999"      << 0.0           << 0          << false;
        QTest::newRow("infinite")               << "inf"         << infinity      << 0          << false;
        QTest::newRow("negative infinite")      << "-inf"        << -infinity     << 0          << false;
        QTest::newRow("base prefix")            << "0x10"        << 0.0           << 0          << false;
        QTest::newRow("letters")                << "abc"         << 0.0           << 0          << false;
        QTest::newRow("digits and a letter")    << "12a"         << 0.0           << 0          << false;
        QTest::newRow("colon, after the digits") << "1:"        << 0.0           << 0          << false;
        QTest::newRow("slash, before the digits") << "1/"        << 0.0           << 0          << false;
        QTest::newRow("no-break space at the beginning") << QString(QChar(0xA0)) + "5"   << 5.0  << 5   << true;
        QTest::newRow("no-break space after")    << "5" + QString(QChar(0xA0))   << 5.0  << 5   << true;
        QTest::newRow("mathematical minus")      << QString(QChar(0x2212)) + "5" << -5.0 << -5  << true;
        QTest::newRow("NUL between digits")      << QString("1") + QChar(0) + "2" << 0.0 << 0   << false;
        QTest::newRow("NUL at the end")         << QString("12") + QChar(0) << 0.0 << 0         << false;
        // clang-format on
    }
    void textConverts()
    {
        QFETCH(QString, text);
        QFETCH(double, real);
        QFETCH(int, integer);
        QFETCH(bool, isInteger);
        QVERIFY(isSame(numbers::toDouble(text), real));
        bool ok = !isInteger;
        QCOMPARE(numbers::toInt(text, &ok), integer);
        QCOMPARE(ok, isInteger);
    }

    void textThatIsNoNumberByNameIsNoNumber() { QVERIFY(std::isnan(numbers::toDouble("nan"))); }

    void textConvertsAsQtConvertsIt_data()
    {
        QTest::addColumn<QString>("text");
        const QStringList texts = { "",
                                    " ",
                                    "0",
                                    "00",
                                    "-0",
                                    "+0",
                                    "+5",
                                    "++5",
                                    "+-5",
                                    " -5",
                                    "- 5",
                                    "5 ",
                                    "5\t",
                                    "\n5",
                                    "00012",
                                    "-00012",
                                    "1234567890",
                                    "0000000001",
                                    "9999999999",
                                    "2147483647",
                                    "2147483648",
                                    "-2147483648",
                                    "-2147483649",
                                    "99999999999999999999",
                                    "123456789",
                                    "1234567891",
                                    "1e3",
                                    "1E3",
                                    "1e+3",
                                    "1e-3",
                                    "1e",
                                    "e3",
                                    "1e400",
                                    "-1e400",
                                    "1e-400",
                                    "4.9e-324",
                                    "1.7976931348623157e308",
                                    "1.8e308",
                                    "nan",
                                    "NaN",
                                    "NAN",
                                    "+nan",
                                    "-nan",
                                    "inf",
                                    "INF",
                                    "+inf",
                                    "-inf",
                                    "infinity",
                                    "0x1F",
                                    "1f",
                                    "1L",
                                    "1.",
                                    ".1",
                                    ".",
                                    "1.2.3",
                                    "1,2",
                                    "1_000",
                                    "0.1",
                                    "0.30000000000000004",
                                    "3.14159265358979323846264338327950288",
                                    "9007199254740993",
                                    "0b1",
                                    "010",
                                    "\"1\"",
                                    "1;",
                                    "$1",
                                    "1%",
                                    "TRUE",
                                    QString::fromUtf8("\u00A0"
                                                      "5"),
                                    QString::fromUtf8("5\u00A0"),
                                    QString::fromUtf8("\u2003"
                                                      "5"),
                                    QString::fromUtf8("\u0661\u0662"),
                                    QString::fromUtf8("\u0967"),
                                    QString::fromUtf8("\uFF11"),
                                    QString::fromUtf8("1\u0662"),
                                    QString::fromUtf8("\u2212"
                                                      "5"),
                                    QString::fromUtf8("\u00B2"),
                                    QString::fromUtf8("\uFEFF"
                                                      "5"),
                                    QString::fromUtf8("\U0001D7CE"),
                                    QString("1") + QChar(0) + "2",
                                    QString(QChar(0)),
                                    QString(400, '9'),
                                    QString(400, '0') + "7",
                                    "0." + QString(400, '0') + "1" };
        for (int i = 0; i < texts.size(); ++i)
            QTest::addRow("%d: %s", i, texts[i].left(40).toUtf8().toPercentEncoding().constData()) << texts[i];
    }
    void textConvertsAsQtConvertsIt()
    {
        QFETCH(QString, text);
        QVERIFY(convertsAsQt(text));
    }

    void randomTextsConvertAsQtConvertsThem_data()
    {
        QTest::addColumn<QString>("alphabet");
        QTest::addColumn<int>("longest");
        QTest::newRow("digits") << "0123456789" << 13;
        QTest::newRow("digits, signs and blanks") << "0123456789+- " << 6;
        QTest::newRow("all that numbers are made of") << "0123456789+-.eE \t" << 8;
        QTest::newRow("words") << "nainfNAINFty+-0" << 5;
        QTest::newRow("neighbours of digits and other scripts")
            << QString::fromUtf8("0189/:;,'_xX\u0660\u0661\u0967\uFF11\u00A0\u2212") << 4;
    }
    void randomTextsConvertAsQtConvertsThem()
    {
        QFETCH(QString, alphabet);
        QFETCH(int, longest);
        QRandomGenerator random(20240607);
        for (int time = 0; time < 20000; ++time) {
            QString text;
            for (int rest = random.bounded(longest + 1); rest > 0; --rest)
                text += alphabet[random.bounded(alphabet.size())];
            QVERIFY(convertsAsQt(text));
        }
    }

    void partOfATextConvertsWithoutItsNeighbours_data()
    {
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("expected");
        QTest::addColumn<bool>("isInteger");
        QTest::newRow("few digits") << 2 << 3 << 345 << true;
        QTest::newRow("ten digits") << 0 << 10 << 1234567890 << true;
        QTest::newRow("with blanks") << 11 << 4 << 12 << true;
        QTest::newRow("empty") << 3 << 0 << 0 << false;
    }
    void partOfATextConvertsWithoutItsNeighbours()
    {
        QFETCH(int, position);
        QFETCH(int, length);
        QFETCH(int, expected);
        QFETCH(bool, isInteger);
        const QString text = "12345678901 12 3456";
        bool ok = !isInteger;
        QCOMPARE(numbers::toInt(QStringView(text).mid(position, length), &ok), expected);
        QCOMPARE(ok, isInteger);
    }

    void numberReadsInFormatGWithPrecisionSix_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("expected");
        // clang-format off
        QTest::newRow("zero")                 << 0.0         << "0";
        QTest::newRow("minus zero has no sign") << -0.0      << "0";
        QTest::newRow("one")                  << 1.0         << "1";
        QTest::newRow("negative")             << -17.0       << "-17";
        QTest::newRow("six digits")           << 999999.0    << "999999";
        QTest::newRow("six negative digits")  << -999999.0   << "-999999";
        QTest::newRow("a million")            << 1000000.0   << "1e+06";
        QTest::newRow("minus a million")      << -1000000.0  << "-1e+06";
        QTest::newRow("rounded up to a million") << 999999.5 << "1e+06";
        QTest::newRow("rounded down")         << 999999.25   << "999999";
        QTest::newRow("seven digits")         << 1234567.0   << "1.23457e+06";
        QTest::newRow("half")                 << 0.5         << "0.5";
        QTest::newRow("fraction")             << 3.14159265  << "3.14159";
        QTest::newRow("fraction of six digits") << 12345.678 << "12345.7";
        QTest::newRow("ten thousandth")       << 0.0001      << "0.0001";
        QTest::newRow("hundred thousandth")   << 0.00001     << "1e-05";
        QTest::newRow("large")                << 1e300       << "1e+300";
        QTest::newRow("infinite")             << infinity    << "inf";
        QTest::newRow("negative infinite")    << -infinity   << "-inf";
        QTest::newRow("not a number")         << std::numeric_limits<double>::quiet_NaN() << "nan";
        QTest::newRow("subnormal")            << 2.22507e-308 << "2.22507e-308";
        // clang-format on
    }
    void numberReadsInFormatGWithPrecisionSix()
    {
        QFETCH(double, value);
        QFETCH(QString, expected);
        QCOMPARE(numbers::toText(value), expected);
        QVERIFY(readsAsQt(value));
    }

    void numbersReadAsQtWritesThem()
    {
        for (int number = -2000; number <= 2000; ++number) {
            QVERIFY(readsAsQt(number));
            QVERIFY(readsAsQt(number / 8.0));
            QVERIFY(readsAsQt(number * 999.0));
            QVERIFY(readsAsQt(1e6 + number));
            QVERIFY(readsAsQt(-1e6 + number));
        }
        QRandomGenerator random(20240607);
        for (int time = 0; time < 20000; ++time) {
            const double power = std::pow(10.0, random.bounded(30) - 15);
            QVERIFY(readsAsQt((random.generateDouble() - 0.5) * power));
        }
    }

    void fractionIsCutTowardZero_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("expected");
        // clang-format off
        QTest::newRow("whole")               << 5.0           << 5;
        QTest::newRow("up to the next")      << 5.999999      << 5;
        QTest::newRow("negative")            << -5.999999     << -5;
        QTest::newRow("below one")           << 0.9           << 0;
        QTest::newRow("above minus one")     << -0.9          << 0;
        QTest::newRow("largest")             << 2147483647.0  << highestInt;
        QTest::newRow("largest and a bit")   << 2147483647.9  << highestInt;
        QTest::newRow("above the largest")   << 2147483648.0  << lowestInt;
        QTest::newRow("smallest")            << -2147483648.0 << lowestInt;
        QTest::newRow("smallest and a bit")  << -2147483648.9 << lowestInt;
        QTest::newRow("next to the smallest") << -2147483647.5 << -2147483647;
        QTest::newRow("below the smallest")  << -2147483649.0 << lowestInt;
        QTest::newRow("far above")           << 1e300         << lowestInt;
        QTest::newRow("infinite")            << infinity      << lowestInt;
        QTest::newRow("negative infinite")   << -infinity     << lowestInt;
        QTest::newRow("not a number")        << std::numeric_limits<double>::quiet_NaN() << lowestInt;
        // clang-format on
    }
    void fractionIsCutTowardZero()
    {
        QFETCH(double, value);
        QFETCH(int, expected);
        QCOMPARE(numbers::truncated(value), expected);
    }

    void wideNumberBecomesTheNearestThatFits_data()
    {
        QTest::addColumn<qint64>("value");
        QTest::addColumn<int>("expected");
        QTest::newRow("zero") << Q_INT64_C(0) << 0;
        QTest::newRow("negative") << Q_INT64_C(-5) << -5;
        QTest::newRow("largest") << qint64(highestInt) << highestInt;
        QTest::newRow("above the largest") << qint64(highestInt) + 1 << highestInt;
        QTest::newRow("smallest") << qint64(lowestInt) << lowestInt;
        QTest::newRow("below the smallest") << qint64(lowestInt) - 1 << lowestInt;
        QTest::newRow("far above") << highestInt64 << highestInt;
        QTest::newRow("far below") << lowestInt64 << lowestInt;
    }
    void wideNumberBecomesTheNearestThatFits()
    {
        QFETCH(qint64, value);
        QFETCH(int, expected);
        QCOMPARE(numbers::clamped(value), expected);
    }
};

QTEST_GUILESS_MAIN(NumbersTest)
#include "NumbersTest.moc"
