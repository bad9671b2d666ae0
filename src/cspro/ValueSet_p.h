#ifndef CSPRO_VALUESET_P_H
#define CSPRO_VALUESET_P_H

#include "util/EmptyText_p.h"

#include <QList>
#include <QObject>
#include <QString>

#include <memory>

/// One code of a value set and its label. Made by a reader; freed with its set.
class TValueSetItem : public QObject
{
public:
    TValueSetItem();
    ~TValueSetItem() override;

    QString name = emptyText(); ///< the value's label; null in a range before the first label of its set
    QString code;               ///< the value as text; U+0003 in a new one
    int type = 0;               ///< 0 plain, 1 missing, 2 not applicable
    bool special = false;       ///< the value is a missing or not-applicable mark
};

/// The codes that an item may take, each with a label. A range is stored as its two end points.
///
/// A reader makes it, and the occurrences of an item share it. Its destructor frees none of the values; DropValueSet
/// and freeContents() of the dictionary free them.
class TCSProValueSet : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int Count READ Count) // clazy:exclude=qproperty-without-notify

public:
    TCSProValueSet();
    ~TCSProValueSet() override;

    void addItem(TValueSetItem *item);
    /// Returns the number of values. Throws a `VpErrorManager *` with code 101 if there is no list.
    int Count() const;
    /// Returns the value at a 0-based index; null outside of the list. Throws a `VpErrorManager *` with code 211 if
    /// there is no list.
    TValueSetItem *getItem(int index) const;
    /// Returns the values, null ones included; an empty list if there is no list.
    const QList<TValueSetItem *> &values() const;
    // modes of checkCodes()
    static constexpr int modeNoDecimal = 0;
    static constexpr int modeAllIntegers = 1;
    /// Returns in mode 0 whether no code is decimal, in mode 1 whether all codes are integers. Always true for a set
    /// that is not numeric. A null value has no code.
    bool checkCodes(int mode) const;
    /// Replaces every code of a numeric set that is not an integer by "0": 2.5 becomes 0. Codes are not rounded.
    void convertToInteger();
    /// Orders a numeric set by number with CompareNumericCodes(), any other set by character code with CompareCodes(),
    /// which throws for a null value. Equal codes keep their order.
    void sortItems();

    QString label = emptyText();
    QString name = emptyText();
    QString extra = emptyText();   ///< no reader fills it
    bool isNumeric = true;         ///< false for the set of an alphanumeric item
    QList<TValueSetItem *> *items; ///< the values

private:
    void sortByNumber();
};

/// Frees a set that no item owns, with its values.
struct DropValueSet {
    void operator()(TCSProValueSet *set) const;
};
using OwnedValueSet = std::unique_ptr<TCSProValueSet, DropValueSet>;

/// Returns whether a comes before b by character code: "10" comes before "9". Throws `std::invalid_argument` for a null
/// pointer.
bool CompareCodes(const TValueSetItem *a, const TValueSetItem *b);
/// Returns whether a comes before b by number; true if either is null or not an integer.
bool CompareNumericCodes(const TValueSetItem *a, const TValueSetItem *b);
/// Returns whether the code is digits, a point and digits, and nothing else. Either run of digits may be empty. Digits
/// of every script count; a sign does not.
bool IsDecimalCode(QString code);
/// Returns whether the code converts to an int in base 10. Blanks around it are allowed.
bool IsIntegerCode(QString code);

#endif
