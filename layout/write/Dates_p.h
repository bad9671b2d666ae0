#ifndef LAYOUT_WRITE_DATES_P_H
#define LAYOUT_WRITE_DATES_P_H

#include "model/Layout.h"

namespace vanlayout
{

/// The kind of dates in the values of an item.
enum class Calendar { None, Date, DateTime };

/// The form of the dates of an item in a table of its data.
struct DateForm {
    Calendar calendar = Calendar::None;
    QString pattern; ///< in the syntax of Unicode's UTS 35, such as "yyyyMMdd"; empty for ISO 8601
};

/// The form of the dates of an item; Calendar::None if it has none.
///
/// CSPro stores dates as digits: an item captured as a date is one if its format has a four-digit year, month and day,
/// is as long as the item, and loses no leading zero: it begins with the year, or the item is a text or padded with
/// zeros. Other formats are not dates.
///
/// Statistical files count days or seconds; tables of their data have ISO 8601 texts. Dates are the formats DATE,
/// ADATE, EDATE, SDATE, JDATE, DATETIME and YMDHMS of SPSS, those of SAS for dates and datetimes, and %td, %d, %tc and
/// %tC of Stata. Times of day, weeks, months, quarters and years are not dates: they remain numbers.
DateForm dateFormOf(const Item &item);

/// True if an item has a format of weeks, months, times or similar, whose numbers count them: neither dates nor plain
/// numbers.
bool isOtherTime(const Item &item);

} // namespace vanlayout

#endif
