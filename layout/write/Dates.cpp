#include "Dates_p.h"

#include <algorithm>
#include <array>

namespace vanlayout
{

namespace
{

// The name of a format in upper case: "DATETIME" for "datetime20.3", "E8601DA" for "E8601DA10".
QString nameOfFormat(const QString &format)
{
    int end = format.size();
    while (end > 0 && (format.at(end - 1).isDigit() || format.at(end - 1) == QLatin1Char('.')))
        --end;
    return format.left(end).toUpper();
}

template <size_t Count> bool isAnyOf(const QString &name, const std::array<const char *, Count> &names)
{
    return std::any_of(names.begin(), names.end(), [&](const char *entry) { return name == QLatin1String(entry); });
}

// The letter after `%t`, `d` for the `%d` of old versions; none for other formats.
char stataLetter(const QString &format)
{
    int index = 1;
    if (format.size() > index && format.at(index) == QLatin1Char('-'))
        ++index;
    if (format.size() > index && format.at(index) == QLatin1Char('d'))
        return 'd';
    if (format.size() > index + 1 && format.at(index) == QLatin1Char('t'))
        return format.at(index + 1).toLatin1();
    return '\0';
}

Calendar calendarOfStata(const QString &format)
{
    const char letter = stataLetter(format);
    if (letter == 'd')
        return Calendar::Date;
    return letter == 'c' || letter == 'C' ? Calendar::DateTime : Calendar::None;
}

// The dates of the formats of SPSS and SAS.
Calendar calendarOfName(const QString &name)
{
    static const std::array<const char *, 35> dates
        = { "DATE",     "ADATE",    "EDATE",    "SDATE",    "JDATE",   "JULIAN",  "DDMMYY",   "DDMMYYB", "DDMMYYC",
            "DDMMYYD",  "DDMMYYN",  "DDMMYYP",  "DDMMYYS",  "MMDDYY",  "MMDDYYB", "MMDDYYC",  "MMDDYYD", "MMDDYYN",
            "MMDDYYP",  "MMDDYYS",  "YYMMDD",   "YYMMDDB",  "YYMMDDC", "YYMMDDD", "YYMMDDN",  "YYMMDDP", "YYMMDDS",
            "WEEKDATE", "WEEKDATX", "WORDDATE", "WORDDATX", "E8601DA", "B8601DA", "IS8601DA", "NLDATE" };
    static const std::array<const char *, 9> dateTimes
        = { "DATETIME", "YMDHMS", "DATEAMPM", "MDYAMPM", "E8601DT", "B8601DT", "IS8601DT", "NLDATM", "E8601DZ" };
    if (isAnyOf(name, dates))
        return Calendar::Date;
    return isAnyOf(name, dateTimes) ? Calendar::DateTime : Calendar::None;
}

// "yyyyMMdd" for "YYYYMMDD"; empty if a part is absent, occurs twice or is not known.
QString patternOf(const QString &dateFormat)
{
    struct Part {
        const char *written;
        const char *letters;
    };
    static const std::array<Part, 3> parts = { { { "YYYY", "yyyy" }, { "MM", "MM" }, { "DD", "dd" } } };
    QString pattern = dateFormat;
    for (const Part &part : parts) {
        if (pattern.count(QLatin1String(part.written)) != 1)
            return QString();
        pattern.replace(QLatin1String(part.written), QLatin1String(part.letters));
    }
    const auto isOfPattern = [](QChar character) { return QStringLiteral("yMd-/. ").contains(character); };
    const bool isWhole = std::all_of(pattern.begin(), pattern.end(), isOfPattern);
    return isWhole ? pattern : QString();
}

DateForm dateFormOfCapture(const Item &item)
{
    if (!item.capture || item.capture->type != QLatin1String("date"))
        return {};
    const QString &format = item.capture->dateFormat;
    const bool keepsZeros = item.isAlpha() || item.zeroFill || format.startsWith(QLatin1String("YYYY"));
    const QString pattern = patternOf(format);
    if (pattern.isEmpty() || item.length != format.size() || !keepsZeros)
        return {};
    return { Calendar::Date, pattern };
}

} // namespace

DateForm dateFormOf(const Item &item)
{
    if (item.storage == Storage::None)
        return dateFormOfCapture(item);
    if (!item.isNumeric())
        return {};
    const bool isStata = item.format.startsWith(QLatin1Char('%'));
    return { isStata ? calendarOfStata(item.format) : calendarOfName(nameOfFormat(item.format)), QString() };
}

bool isOtherTime(const Item &item)
{
    static const std::array<const char *, 27> names
        = { "TIME", "DTIME", "MTIME",   "MOYR",     "QYR",     "WKYR",    "MONTH",   "WKDAY", "HHMM",
            "HOUR", "MMSS",  "TOD",     "TIMEAMPM", "MMYY",    "YYMM",    "YYMON",   "MONYY", "YYQ",
            "YEAR", "QTR",   "MONNAME", "DOWNAME",  "WEEKDAY", "E8601TM", "B8601TM", "DAY",   "DTDATE" };
    if (item.storage == Storage::None || !item.isNumeric() || dateFormOf(item).calendar != Calendar::None)
        return false;
    if (item.format.startsWith(QLatin1Char('%')))
        return stataLetter(item.format) != '\0';
    return isAnyOf(nameOfFormat(item.format), names);
}

} // namespace vanlayout
