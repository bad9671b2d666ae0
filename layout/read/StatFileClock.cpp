#include "read/StatFileClock_p.h"

#include <QRegularExpression>

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace vanlayout::stat
{

namespace
{

// The location of the date and time in a file. The parts of the pattern are named; seconds may be absent.
struct ClockPlace {
    const char *pattern;
    int century; ///< years of two digits below this number are years from 2000 on
    int begin;   ///< index of the first byte that is searched
    int size;    ///< number of bytes that are searched; -1 for all
};

// clang-format off
ClockPlace placeOf(Format format, const QByteArray &head)
{
    switch (format) {
    case Format::Spss:
        return {R"(^(?<day>[ \d]\d)[ -](?<month>[A-Za-z]{3})[ -](?<year>[ \d]\d))"
                R"((?<hour>[ \d]\d):(?<minute>[ \d]\d):(?<second>[ \d]\d)$)", 70, 92, 17};
    case Format::SpssPortable:
        return {R"(/(?<year>\d{4})(?<month>\d\d)(?<day>\d\d)6/(?<hour>\d\d)(?<minute>\d\d)(?<second>\d\d))", 0, 464, -1};
    case Format::SasXport:
        return {R"(^(?<day>\d\d)(?<month>[A-Za-z]{3})(?<year>\d\d):(?<hour>\d\d):(?<minute>\d\d):(?<second>\d\d))",
                60, 160, 16};
    default: // Stata, whose older versions have a header of fixed size
        break;
    }
    constexpr const char *pattern = R"((?<day>\d+) (?<month>[A-Za-z]{3}) (?<year>\d+) +(?<hour>\d+):(?<minute>\d+))";
    if (head.startsWith('<'))
        return {pattern, 0, int(head.indexOf("</label><timestamp>")), -1};
    const bool hasShortLabel = static_cast<uchar>(head.at(0)) < 108;
    // In some files the date and time begin one byte early, in the last byte of the label.
    return {pattern, 0, hasShortLabel ? 41 : 90, 19};
}
// clang-format on

// The 0-based month; -1 for a word that ReadStat does not recognise. Stata writes months in its user's language.
int monthOf(const QString &word)
{
    struct Month {
        const char *word;
        int number;
    };
    static const Month months[] = {
        { "jan", 0 }, { "ene", 0 },  { "feb", 1 },  { "mar", 2 },  { "apr", 3 },  { "abr", 3 }, { "may", 4 },
        { "mai", 4 }, { "jun", 5 },  { "jul", 6 },  { "aug", 7 },  { "ago", 7 },  { "sep", 8 }, { "oct", 9 },
        { "okt", 9 }, { "nov", 10 }, { "dec", 11 }, { "dez", 11 }, { "dic", 11 },
    };
    bool isNumber = false;
    const int number = word.toInt(&isNumber);
    if (isNumber)
        return number - 1;
    const QString lower = word.toLower();
    const auto *found = std::find_if(std::begin(months), std::end(months),
                                     [&](const Month &month) { return lower == QLatin1String(month.word); });
    return found != std::end(months) ? found->number : -1;
}

// The date and time that the file states, as seconds since 1970 as if in UTC.
std::optional<time_t> statedClock(Format format, const QByteArray &head)
{
    const ClockPlace place = placeOf(format, head);
    if (place.begin < 0)
        return std::nullopt;
    QByteArray bytes = head.mid(place.begin, place.size);
    if (format == Format::SpssPortable)
        bytes.replace("\r", "").replace("\n", "");
    const QString text = QString::fromLatin1(bytes.constData(), bytes.size()); // with zeros in it
    const QRegularExpressionMatch match = QRegularExpression(QLatin1String(place.pattern)).match(text);
    const auto number = [&](const char *part) { return match.captured(QLatin1String(part)).trimmed().toInt(); };
    std::tm clock = {};
    clock.tm_mon = monthOf(match.captured(QStringLiteral("month")));
    if (!match.hasMatch() || clock.tm_mon < 0)
        return std::nullopt;
    constexpr int firstYear = 1900; // year 0 of `tm_year`
    const int year = number("year");
    clock.tm_year = year >= firstYear ? year - firstYear : year < place.century ? year + 100 : year;
    clock.tm_mday = number("day");
    clock.tm_hour = number("hour");
    clock.tm_min = number("minute");
    clock.tm_sec = number("second");
    return timegm(&clock);
}

time_t wallClock(Format format, time_t moment, const QByteArray &head)
{
    if (format == Format::Sas)
        return moment;
    constexpr time_t day = 86400; // seconds
    std::tm parts = {};
    const time_t local = localtime_r(&moment, &parts) ? timegm(&parts) : 0;
    const std::optional<time_t> stated = statedClock(format, head);
    if (stated && std::abs(*stated - local) <= day)
        return *stated;
    return moment == 0 ? 0 : local;
}

} // namespace

std::optional<QString> clockOf(Format format, time_t moment, const QByteArray &head)
{
    constexpr int firstYear = 1000 - 1900; // first year of four digits, in `tm_year`
    constexpr int afterLastYear = 10000 - 1900;
    const time_t clock = wallClock(format, moment, head);
    std::tm parts = {};
    if (clock == 0 || !gmtime_r(&clock, &parts) || parts.tm_year < firstYear || parts.tm_year >= afterLastYear)
        return std::nullopt;
    char text[32];
    return QString::fromLatin1(text, int(std::strftime(text, sizeof(text), "%Y-%m-%dT%H:%M:%S", &parts)));
}

} // namespace vanlayout::stat
