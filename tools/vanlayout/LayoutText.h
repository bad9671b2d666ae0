#ifndef VANLAYOUT_LAYOUTTEXT_H
#define VANLAYOUT_LAYOUTTEXT_H

#include "model/Layout.h"

#include <QString>

#include <functional>

/// Short texts for people about the parts of an exact layout.

/// The kind of file, such as "CSPro dictionary, text form 7.7" or "Stata file, version 118".
QString describeFormat(const vanlayout::Layout &layout);

/// The type of an item: `9(3)`, `9(5).2` (a written decimal mark), `9(5)v2` (an implied one), `A(20)`; the format of a
/// statistical file, or the word for any other type.
QString describeType(const vanlayout::Item &item);

/// The codes of a value or the missing values of an item: single codes and `from to to`, separated by commas.
QString describeRanges(const QVector<vanlayout::Range> &ranges);

/// "1 variable" or "3 variables".
QString countOf(qint64 count, const QString &noun);

/// Calls \a visit for each item with its level and record; the record is null for an id item.
void forEachItem(
    const vanlayout::Layout &layout,
    const std::function<void(const vanlayout::Level &, const vanlayout::Record *, const vanlayout::Item &)> &visit);

#endif
