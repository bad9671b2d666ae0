#include "statistical/StatisticalImport_p.h"

namespace statistical
{

namespace
{

LabelSet &setNamed(LabelSets &sets, const char *labelSet, Reading &reading, KeptObjects &kept)
{
    const size_t length = qstrnlen(labelSet, reading.bounds.withLabel);
    // The labels of a set follow each other in the file.
    if (reading.lastSet && reading.lastSetName.compare(0, std::string::npos, labelSet, length) == 0)
        return *reading.lastSet;
    std::string name(labelSet, length);
    LabelSet *&set = sets[name];
    if (!set)
        set = makeLabelSet(kept);
    reading.lastSet = set;
    reading.lastSetName = std::move(name);
    return *set;
}

// The set that a variable names, or null.
const LabelSet *setOf(const TGenericField &field, const char *labelSet, const LabelSets &sets, const Reading &reading)
{
    if (!labelSet)
        return nullptr;
    const std::string name(labelSet, qstrnlen(labelSet, reading.bounds.withVariable));
    const auto found = sets.find(name);
    const LabelSet *set = found != sets.end() ? found->second : nullptr;
    if (!set)
        reading.notes.noteMissingSet(name, field.name);
    return set;
}

enum class ValuesOf { file, integers };

// Turns the values of a set to integers, once. Its text has to be made again then.
void applyValues(ValuesOf values, const LabelSet &set, LabelText &labels, const Reading &reading,
                 const QString &variable)
{
    if (values == ValuesOf::file || labels.isOfIntegers)
        return;
    reading.notes.noteCutValues(set, variable);
    turnToIntegers(set);
    labels.isOfIntegers = true;
    labels.isMade = false;
}

void makeTextOnce(const LabelSet &set, LabelText &labels, const Reading &reading, const QString &variable)
{
    if (labels.isMade)
        return;
    makeLabelText(reading.format, set, labels);
    reading.notes.noteCodes(set, variable);
}

// The labelled values replace the range of a number.
void setRange(TGenericField &field, const LabelText &labels, const Reading &reading)
{
    if (field.type != vtInteger && field.type != vtReal)
        return;
    if (!labels.minimum.isNull())
        field.minimum = labels.minimum;
    if (!labels.maximum.isNull())
        field.maximum = labels.maximum;
    reading.notes.noteBounds(labels.span, field.name);
}

void setLabels(TGenericField &field, const LabelSet &set, ValuesOf values, Reading &reading)
{
    LabelText &labels = reading.labelTexts[&set];
    reading.notes.noteUse(&set, field.name);
    applyValues(values, set, labels, reading, field.name);
    makeTextOnce(set, labels, reading, field.name);
    field.valueLabels = labels.text;
    setRange(field, labels, reading);
}

} // namespace

void addValueLabel(LabelSets &sets, const char *labelSet, const readstat_value_t &value, const char *label,
                   Reading &reading, KeptObjects &kept)
{
    LabelSet &set = setNamed(sets, labelSet, reading, kept);
    if (!label) // ReadStat passes a text with each label of a file
        return reading.notes.noteLabelWithoutText(&set, reading.lastSetName, value); // LCOV_EXCL_LINE
    OwnedLabel made = makeValueLabel(value);
    setLabelText(*made, label);
    reading.notes.noteLabel(&set, reading.lastSetName, value, *made);
    set.push_back(nullptr); // may raise an exception, so it comes first
    set.back() = made.release();
}

void describe(const readstat_variable_t &variable, const char *labelSet, const LabelSets &sets, Reading &reading,
              TGenericField &field)
{
    const Format &format = reading.format;
    field.optional = true;
    field.type = typeOf(format, variable);
    field.name = QString::fromUtf8(variable.name, int(lengthOf(variable.name)));
    appendText(format, field.label, variable.label, lengthOf(variable.label));
    field.length = format.widthOf(variable);
    reading.notes.noteVariable(variable, field);
    if (field.type != vtString || format.textsHaveRange) {
        field.minimum = QStringLiteral("0");
        field.maximum = reading.nines(field.length);
    }
    const bool isWhole = format.decimalsDecide && !hasDecimals(variable);
    if (const LabelSet *set = setOf(field, labelSet, sets, reading))
        setLabels(field, *set, isWhole ? ValuesOf::integers : ValuesOf::file, reading);
}

bool isBlank(const TGenericField &field)
{
    return field.type == vtString && field.currentText().trimmed().isEmpty();
}

} // namespace statistical
