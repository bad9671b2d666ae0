#include "read/StatFileClock_p.h"

#include "StatLayout.h"

#include <QDateTime>
#include <QtTest>

using namespace vanlayout;

Q_DECLARE_METATYPE(Format)

namespace
{

QByteArray spss(const QByteArray &clock)
{
    return QByteArray(92, '@') + clock + QByteArray(64, ' ');
}

QByteArray portable(const QByteArray &clock)
{
    return QByteArray(456, '0') + "SPSSPORTA8/" + clock + "1/1/";
}

QByteArray xport(const QByteArray &clock)
{
    return QByteArray(160, ' ') + clock + QByteArray(64, ' ');
}

// The date and time are after a label of 32 or 81 bytes.
QByteArray oldStata(int version, const QByteArray &clock)
{
    return QByteArray(1, char(version)) + "\2\1" + QByteArray(7 + (version < 108 ? 32 : 81), '\0') + clock + '\0';
}

QByteArray newStata(const QByteArray &clock)
{
    return "<stata_dta><header><release>118</release><label></label><timestamp>\x11" + clock + "</timestamp>";
}

time_t momentOf(const QString &clock)
{
    return time_t(QDateTime::fromString(clock + 'Z', Qt::ISODate).toSecsSinceEpoch());
}

} // namespace

/// Tests the date and time that a statistical file states.
class StatFileClockTest : public QObject
{
    Q_OBJECT

private slots:
    void clockOfTheFileCountsNearTheMoment_data();
    void clockOfTheFileCountsNearTheMoment();
    void momentCountsFarFromTheClockOfTheFile_data();
    void momentCountsFarFromTheClockOfTheFile();
    void momentOfASasDataSetIsItsClock();
};

void StatFileClockTest::clockOfTheFileCountsNearTheMoment_data()
{
    QTest::addColumn<Format>("format");
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QString>("clock");
    const auto add = [](const char *name, Format format, const QByteArray &head, const char *clock) {
        QTest::newRow(name) << format << head << QString(clock);
    };
    struct Month {
        const char *word;
        const char *clock;
    };
    const Month months[] = {
        { "Jan", "2018-01-16T02:30:15" }, { "ENE", "2018-01-16T02:30:15" }, { "feb", "2018-02-16T02:30:15" },
        { "Mar", "2018-03-16T02:30:15" }, { "apr", "2018-04-16T02:30:15" }, { "abr", "2018-04-16T02:30:15" },
        { "may", "2018-05-16T02:30:15" }, { "mai", "2018-05-16T02:30:15" }, { "jun", "2018-06-16T02:30:15" },
        { "jul", "2018-07-16T02:30:15" }, { "aug", "2018-08-16T02:30:15" }, { "ago", "2018-08-16T02:30:15" },
        { "sep", "2018-09-16T02:30:15" }, { "oct", "2018-10-16T02:30:15" }, { "okt", "2018-10-16T02:30:15" },
        { "nov", "2018-11-16T02:30:15" }, { "dec", "2018-12-16T02:30:15" }, { "dez", "2018-12-16T02:30:15" },
        { "dic", "2018-12-16T02:30:15" },
    };
    for (const Month &month : months)
        add(month.word, Format::Spss, spss(QByteArray("16 ") + month.word + " 1802:30:15"), month.clock);
    add("SPSS, blanks for zeros", Format::Spss, spss(" 6 Mar 18 2: 3: 5"), "2018-03-06T02:03:05");
    add("SPSS, hyphens", Format::Spss, spss("06-Mar-1802:30:15"), "2018-03-06T02:30:15");
    add("SPSS, year 69", Format::Spss, spss("06 Mar 6902:30:15"), "2069-03-06T02:30:15");
    add("SPSS, year 70", Format::Spss, spss("06 Mar 7002:30:15"), "1970-03-06T02:30:15");
    add("portable", Format::SpssPortable, portable("8/201803066/023015"), "2018-03-06T02:30:15");
    add("portable, a line ends within it", Format::SpssPortable, portable("8/201803\r\n066/023015"),
        "2018-03-06T02:30:15");
    add("XPORT, year 59", Format::SasXport, xport("06MAR59:02:30:15"), "2059-03-06T02:30:15");
    add("XPORT, year 60", Format::SasXport, xport("06MAR60:02:30:15"), "1960-03-06T02:30:15");
    for (const int version : { 104, 105, 108, 110, 115 })
        QTest::addRow("Stata %d", version)
            << Format::Stata << oldStata(version, "06 Mar 2018 02:30") << "2018-03-06T02:30:00";
    add("Stata, one byte early", Format::Stata, oldStata(115, "06 Mar 2018 02:30").remove(20, 1),
        "2018-03-06T02:30:00");
    add("Stata 118", Format::Stata, newStata(" 6 Mar 2018 02:30"), "2018-03-06T02:30:00");
}

void StatFileClockTest::clockOfTheFileCountsNearTheMoment()
{
    QFETCH(Format, format);
    QFETCH(QByteArray, head);
    QFETCH(QString, clock);
    constexpr time_t hour = 60 * 60;
    const TimeZone zone("UTC");
    for (const time_t difference : { -24 * hour, -hour, time_t(0), hour, 24 * hour })
        QCOMPARE(stat::clockOf(format, momentOf(clock) + difference, head).value_or("none"), clock);
}

void StatFileClockTest::momentCountsFarFromTheClockOfTheFile_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::newRow("clock of another day") << spss("16 Mar 1802:30:15");
    QTest::newRow("no clock") << spss("                 ");
    QTest::newRow("month in no language") << spss("16 Xxx 1802:30:15");
    QTest::newRow("no head") << QByteArray("$FL2");
}

void StatFileClockTest::momentCountsFarFromTheClockOfTheFile()
{
    QFETCH(QByteArray, head);
    const TimeZone zone("Asia/Kolkata");
    const time_t moment = momentOf("2018-03-17T02:30:16");
    QCOMPARE(stat::clockOf(Format::Spss, moment, head).value_or("none"), QString("2018-03-17T08:00:16"));
}

void StatFileClockTest::momentOfASasDataSetIsItsClock()
{
    const TimeZone zone("Asia/Kolkata");
    QCOMPARE(stat::clockOf(Format::Sas, momentOf("2018-03-17T02:30:16"), QByteArray()).value_or("none"),
             QString("2018-03-17T02:30:16"));
}

QTEST_APPLESS_MAIN(StatFileClockTest)
#include "StatFileClockTest.moc"
