#ifndef LAYOUT_WRITE_DATES_P_H
#define LAYOUT_WRITE_DATES_P_H

#include "model/Layout.h"

namespace vanlayout
{

/// Whether the values of an item are dates.
enum class Calendar { None, Date, DateTime };

/// The dates of an item in a table of its data.
struct DateForm {
    Calendar calendar = Calendar::None;
    QString pattern; ///< letters of Unicode's UTS 35, such as "yyyyMMdd"; empty for ISO 8601
};

/// The dates that an item holds.
///
/// CSPro keeps dates as digits: an item that is captured as a date is one where its format has the year in four digits,
/// month and day, is as long as the item, and loses no zero in front: it begins with the year, or the item is a text or
/// filled with zeros. Other formats are no dates.
///
/// Statistical files count days or seconds; tables of their data hold ISO 8601. Dates are the formats DATE, ADATE,
/// EDATE, SDATE, JDATE, DATETIME and YMDHMS of SPSS, those of SAS for dates and datetimes, and %td, %d, %tc and %tC of
/// Stata. Times of day, weeks, months, quarters and years are none: they stay numbers.
DateForm dateFormOf(const Item &item);

/// Whether an item has a format of weeks, months, times or the like, whose numbers are counts of them: no date, and no
/// plain number either.
bool isOtherTime(const Item &item);

} // namespace vanlayout

#endif
