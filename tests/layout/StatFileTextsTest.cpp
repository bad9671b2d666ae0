#include "read/StatFileTexts_p.h"

#include <QTest>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

using namespace vanlayout;

Q_DECLARE_METATYPE(readstat_value_t)

namespace
{

double fromBits(quint64 bits)
{
    double number = 0;
    std::memcpy(&number, &bits, sizeof(number));
    return number;
}

} // namespace

/// Tests the texts of numbers, codes and formats.
class StatFileTextsTest : public QObject
{
    Q_OBJECT

private slots:
    void numberHasTheFewestDigitsThatReadBack_data();
    void numberHasTheFewestDigitsThatReadBack();
    void anyNumberReadsBack();
    void codeIsANumberATextOrAMissingMark_data();
    void codeIsANumberATextOrAMissingMark();
    void missingTextHasNoBlanksAtItsEnd();
    void openEndOfAMissingRangeIsInfinite_data();
    void openEndOfAMissingRangeIsInfinite();
    void widthIsTheFirstDigitsOfTheFormat_data();
    void widthIsTheFirstDigitsOfTheFormat();
    void bytesThatAreNoTextAreReplacedPartByPart();
    void textOfOldStataIsWindows1252();
    void aNullTextIsEmpty();
};

void StatFileTextsTest::numberHasTheFewestDigitsThatReadBack_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<QString>("text");
    const auto add = [](double number, const char *text) { QTest::newRow(text) << number << QString(text); };
    add(0, "0");
    QTest::newRow("minus zero") << -0.0 << "0";
    add(1, "1");
    add(-1, "-1");
    add(0.1, "0.1");
    add(2.5, "2.5");
    add(-99.95, "-99.95");
    add(100000, "100000");
    add(1234567.5, "1234567.5");
    add(0.0001, "0.0001");
    add(0.00012345, "0.00012345");
    add(0.00001, "1e-05");
    add(0.000012345, "1.2345e-05");
    add(99999.999, "99999.999");
    add(2147483647, "2147483647");
    add(-2147483648.0, "-2147483648");
    add(999999999999999, "999999999999999");
    add(1e15, "1000000000000000");
    add(9007199254740992, "9007199254740992");
    add(9999999999999998, "9999999999999998");
    add(1e16, "1e+16");
    add(1.5e16, "1.5e+16");
    add(-1.5e300, "-1.5e+300");
    add(1e100, "1e+100");
    add(5e-324, "5e-324");
    add(1.7976931348623157e308, "1.7976931348623157e+308");
    add(1.0 / 3, "0.3333333333333333");
    add(HUGE_VAL, "inf");
    add(-HUGE_VAL, "-inf");
    QTest::newRow("no number") << std::nan("") << ".";
}

void StatFileTextsTest::numberHasTheFewestDigitsThatReadBack()
{
    QFETCH(double, number);
    QTEST(stat::spelled(number), "text");
}

void StatFileTextsTest::anyNumberReadsBack()
{
    std::mt19937_64 random(1);
    for (int i = 0; i < 20000; ++i) {
        const double number = i % 2 ? fromBits(random()) : double(qint64(random() >> (i % 64))) / 100;
        if (!std::isfinite(number))
            continue;
        const QString text = stat::spelled(number);
        QVERIFY2(text.toDouble() == number, qPrintable(text));
        const bool isPlain = !text.contains('e');
        const double size = std::abs(number);
        QVERIFY2(isPlain == (number == 0 || (size >= 1e-4 && size < 1e16)), qPrintable(text));
    }
}

void StatFileTextsTest::codeIsANumberATextOrAMissingMark_data()
{
    QTest::addColumn<readstat_value_t>("value");
    QTest::addColumn<QString>("code");
    const auto add = [](const char *name, readstat_type_t type, auto fill, const char *code) {
        readstat_value_t value = {};
        value.type = type;
        fill(value);
        QTest::newRow(name) << value << QString(code);
    };
    using Value = readstat_value_t;
    add(
        "int8", READSTAT_TYPE_INT8, [](Value &value) { value.v.i8_value = -5; }, "-5");
    add(
        "int16", READSTAT_TYPE_INT16, [](Value &value) { value.v.i16_value = 30000; }, "30000");
    add(
        "int32", READSTAT_TYPE_INT32, [](Value &value) { value.v.i32_value = -2147483647; }, "-2147483647");
    add(
        "float", READSTAT_TYPE_FLOAT, [](Value &value) { value.v.float_value = 0.5F; }, "0.5");
    add(
        "double", READSTAT_TYPE_DOUBLE, [](Value &value) { value.v.double_value = 7.25; }, "7.25");
    add(
        "text", READSTAT_TYPE_STRING, [](Value &value) { value.v.string_value = " M "; }, " M ");
    add(
        "null text", READSTAT_TYPE_STRING, [](Value &value) { value.v.string_value = nullptr; }, "");
    const auto tag = [](char letter) {
        return [letter](Value &value) {
            value.is_tagged_missing = 1;
            value.tag = letter;
            value.v.double_value = std::nan("");
        };
    };
    add("tag of Stata", READSTAT_TYPE_INT32, tag('a'), ".a");
    add("tag of SAS", READSTAT_TYPE_DOUBLE, tag('Z'), ".z");
    add("underscore of SAS", READSTAT_TYPE_DOUBLE, tag('_'), "._");
    add(
        "system missing", READSTAT_TYPE_INT32,
        [](Value &value) {
            value.is_system_missing = 1;
            value.v.i32_value = 2147483621;
        },
        ".");
    add(
        "no number", READSTAT_TYPE_DOUBLE, [](Value &value) { value.v.double_value = std::nan(""); }, ".");
}

void StatFileTextsTest::codeIsANumberATextOrAMissingMark()
{
    QFETCH(readstat_value_t, value);
    QTEST(stat::codeOf(value), "code");
}

void StatFileTextsTest::missingTextHasNoBlanksAtItsEnd()
{
    readstat_value_t value = {};
    value.type = READSTAT_TYPE_STRING;
    value.v.string_value = " N A  ";
    QCOMPARE(stat::missingCodeOf(value), QString(" N A"));
    QCOMPARE(stat::codeOf(value), QString(" N A  "));
}

void StatFileTextsTest::openEndOfAMissingRangeIsInfinite_data()
{
    QTest::addColumn<double>("end");
    QTest::addColumn<QString>("text");
    constexpr double most = std::numeric_limits<double>::max();
    QTest::newRow("lowest of ReadStat") << -HUGE_VAL << "-inf";
    QTest::newRow("highest of ReadStat") << HUGE_VAL << "inf";
    QTest::newRow("lowest of the format") << -std::nextafter(most, 0) << "-inf";
    QTest::newRow("lowest of other programs") << -most << "-inf";
    QTest::newRow("highest of the format") << most << "inf";
    QTest::newRow("a large number") << 1e300 << "1e+300";
}

void StatFileTextsTest::openEndOfAMissingRangeIsInfinite()
{
    QFETCH(double, end);
    readstat_value_t value = {};
    value.type = READSTAT_TYPE_DOUBLE;
    value.v.double_value = end;
    QTEST(stat::missingCodeOf(value), "text");
}

void StatFileTextsTest::widthIsTheFirstDigitsOfTheFormat_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("decimals");
    const auto add = [](const char *format, int width, int decimals) { QTest::newRow(format) << width << decimals; };
    QTest::newRow("") << 0 << 0;
    add("F8.2", 8, 2);
    add("F8.0", 8, 0);
    add("F40.16", 40, 16);
    add("A5", 5, 0);
    add("DATE11", 11, 0);
    add("DATETIME20", 20, 0);
    add("DATETIME23.2", 23, 2);
    add("COMMA10.2", 10, 2);
    add("DOLLAR", 0, 0);
    add("%9.0g", 9, 0);
    add("%9.2f", 9, 2);
    add("%9,2f", 9, 2);
    add("%9.2fc", 9, 2);
    add("%-12.3f", 12, 3);
    add("%012.3f", 12, 3);
    add("%td", 0, 0);
    add("%tcHH:MM:SS.ss", 0, 0);
    add("%tdDD.NN.CCYY", 0, 0);
    add("%td.5-", 5, 0);
    add("BEST12", 12, 0);
    add("YESNO8.2", 8, 2);
    add("F99999999999999999999.99999999999999999999", 2147483647, 2147483647);
}

void StatFileTextsTest::widthIsTheFirstDigitsOfTheFormat()
{
    const QString format = QString::fromLatin1(QTest::currentDataTag());
    QTEST(stat::widthInFormat(format), "width");
    QTEST(stat::decimalsInFormat(format), "decimals");
}

void StatFileTextsTest::bytesThatAreNoTextAreReplacedPartByPart()
{
    QCOMPARE(stat::textOf("a\xE2\x82g\xFF\xFE"), QString("a\uFFFDg\uFFFD\uFFFD"));
    QCOMPARE(stat::textOf("\xC3\xA9t\xC3\xA9"), QString("été"));
    QCOMPARE(stat::textOf("abcdef", 3), QString("abc"));
}

void StatFileTextsTest::textOfOldStataIsWindows1252()
{
    QCOMPARE(stat::textOfOldStata("\xE9\x80\x81"), QString("é€\uFFFD"));
    QCOMPARE(stat::textOfOldStata("abcdef", 3), QString("abc"));
}

void StatFileTextsTest::aNullTextIsEmpty()
{
    QVERIFY(stat::textOf(nullptr).isEmpty());
    QVERIFY(stat::textOfOldStata(nullptr).isEmpty());
}

QTEST_APPLESS_MAIN(StatFileTextsTest)
#include "StatFileTextsTest.moc"
