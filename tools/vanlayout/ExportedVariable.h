#ifndef VANLAYOUT_EXPORTEDVARIABLE_H
#define VANLAYOUT_EXPORTEDVARIABLE_H

#include "Layout.h"
#include "import/SourceField.h"

#include <QStringList>
#include <QVector>

#include <optional>

/// What is common to every form that a layout is exported to.

/// Whether the source lays out columns of text, as a CSPro dictionary does. Positions, lengths and bounds are then
/// those of the data. In a Stata or SPSS file they follow from how a number is stored, and say nothing of its values.
bool hasColumns(const Layout &layout);

/// The name of the file without its folder and suffix.
QString titleOf(const Layout &layout);

/// The text with U+FFFD in place of each half of a surrogate pair, which UTF-8 cannot hold.
QString wholeCharacters(const QString &text);

/// One code of a variable and what it means.
struct Category {
    QString code;
    QString label;
    bool isMissing; ///< the missing or the not-applicable code
};

/// The value labels, and behind them the missing and the not-applicable code where no value label tells of them.
QVector<Category> categoriesOf(const TVpSourceField &field);

/// The missing and the not-applicable code, as far as the variable has them.
QStringList missingCodesOf(const TVpSourceField &field);

enum class ValueKind { unknown, whole, real, text };

ValueKind kindOf(const TVpSourceField &field);

bool isNumber(ValueKind kind);

/// The number that a code states exactly: none for a text, and none in exponent form, which was rounded to six digits.
std::optional<qint64> wholeNumberOf(const QString &code);
std::optional<double> realNumberOf(const QString &code);

/// Lowest and highest value; empty where the source states none that holds for the data.
struct Bounds {
    QString minimum;
    QString maximum;
};

/// The bounds of a number laid out in columns. A real number without value labels has none: its bounds are the nines of
/// its whole digits, which a value with decimals goes beyond. \a kind is that of the field.
Bounds boundsOf(const TVpSourceField &field, ValueKind kind);

/// One name for each variable, as \a spelling writes it, no two the same. A name that several variables bear gets its
/// group and a point in front; where that does not tell them apart, the second gets `_2` behind it, the next `_3`. A
/// variable without a name is `V` and its position from 1.
QStringList uniqueNames(const QList<TVpSourceField *> &fields, QString (*spelling)(const QString &name));

#endif
