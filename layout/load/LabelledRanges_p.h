#ifndef LAYOUT_LOAD_LABELLEDRANGES_P_H
#define LAYOUT_LOAD_LABELLEDRANGES_P_H

#include <QString>
#include <QVector>

#include <map>

namespace vanlayout
{

/// The end of a range: a number in plain decimal digits, and whether the range holds it.
struct RangeEnd {
    RangeEnd(const QString &plainNumber, bool isHeld)
        : number(plainNumber)
        , value(plainNumber.toDouble())
        , isIncluded(isHeld)
    {
    }

    QString number;
    double value;
    bool isIncluded;
};

struct CodeRange {
    RangeEnd low;
    RangeEnd high;

    bool isEmpty() const
    {
        return low.value > high.value || (low.value == high.value && !(low.isIncluded && high.isIncluded));
    }
};

/// The ranges that have a label already. They do not overlap.
class LabelledRanges
{
public:
    /// Adds what the earlier ranges leave of a new one, and returns it.
    QVector<CodeRange> add(CodeRange range);

private:
    std::multimap<double, CodeRange> taken; ///< by the lower end
};

} // namespace vanlayout

#endif
