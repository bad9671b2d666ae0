#ifndef STATISTICAL_VALUELABELS_P_H
#define STATISTICAL_VALUELABELS_P_H

#include "statistical/StatValueLabel.h"
#include "statistical/StatisticalFormat_p.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

class KeptObjects;

namespace statistical
{

using LabelSet = std::vector<TStatValueLabel *>;
using LabelSets = std::map<std::string, LabelSet *>;

/// Frees a label and its texts.
struct FreeLabel {
    void operator()(TStatValueLabel *label) const
    {
        delete[] label->stringValue;
        delete[] label->label;
        delete label;
    }
};
using OwnedLabel = std::unique_ptr<TStatValueLabel, FreeLabel>;

/// Returns whether a value label can hold a value of this type.
bool isSupported(const readstat_value_t &value);
/// Writes the line about an unsupported type to standard error and ends the process with status 1.
[[noreturn]] void endAtUnsupportedType(const char *sourceFile, int line);

/// Makes a label that holds \a value and has no text yet. The type of \a value must be supported.
OwnedLabel makeValueLabel(const readstat_value_t &value);
void setLabelText(TStatValueLabel &label, const char *text);
/// Makes an empty set, which \a kept frees with its labels.
LabelSet *makeLabelSet(KeptObjects &kept);

/// The kind of value that a label holds. A label of the value -1 holds none.
enum class HeldValue { none, integer, real, text };
HeldValue heldBy(const TStatValueLabel &label);

/// Changes the values of a set itself from real to integer: a variable with decimals that comes later sees integers.
void turnToIntegers(const LabelSet &set);

/// Appends an integer as "%d" writes it, in every locale.
void appendInteger(QString &text, qint32 number);
/// Appends a real number as "%f" writes it, in every locale.
void appendReal(QString &text, double number);

/// Lowest and highest of the labelled values.
class Span
{
public:
    void add(double value);

    bool hasLower() const { return hasLowerValue; }
    bool hasUpper() const { return hasUpperValue; }
    double lower() const { return lowest; }
    double upper() const { return highest; }

private:
    // The search starts at these values. A value that is not beyond one of them is not a bound.
    double lowest = 999999999.0;
    double highest = -999999999.0;
    bool hasLowerValue = false;
    bool hasUpperValue = false;
};

/// The labels of one set as they are written to a variable: one text for all variables that share the set.
struct LabelText {
    bool isMade = false;
    bool isOfIntegers = false; ///< whether the values of the set were turned to integers
    QString text;              ///< entries of code, " ", label and a tab
    Span span;
    QString minimum; ///< null if the span has no lower value
    QString maximum; ///< null if the span has no upper value
};

/// Writes the text and the span of \a set into \a made. Labels without a value are omitted.
void makeLabelText(const Format &format, const LabelSet &set, LabelText &made);

} // namespace statistical

#endif
