#ifndef STATISTICAL_STATISTICALNOTES_P_H
#define STATISTICAL_STATISTICALNOTES_P_H

#include "import/GenericField.h"
#include "import/ReadReport.h"
#include "statistical/ValueLabels_p.h"

#include <QString>

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace statistical
{

/// Results of the two passes over a file.
struct PassResults {
    readstat_error_t labels;
    readstat_error_t variables;
    bool hasVariables;
};

/// Diagnostics of the importers of statistical files. Without a report every operation returns at once.
///
/// Notes on the labels of a set wait for the first variable that uses the set, and get its name.
class StatisticalNotes
{
public:
    explicit StatisticalNotes(const Format &fileFormat);

    /// Sets the report, which is not owned; null turns reporting off.
    void setReport(ReadReport *newReport) { report = newReport; }

    /// A label with its text. \a held is its value in the form in which it is kept; \a setName is the name of its set.
    void noteLabel(const LabelSet *set, const std::string &setName, const readstat_value_t &value,
                   const TStatValueLabel &held)
    {
        if (report)
            addLabel(set, setName, value, held);
    }
    /// A label without text, which is dropped.
    void noteLabelWithoutText(const LabelSet *set, const std::string &setName, const readstat_value_t &value)
    {
        if (report)
            addLabelWithoutText(set, setName, value);
    }
    void noteVariable(const readstat_variable_t &variable, const TGenericField &field) const
    {
        if (report)
            addVariable(variable, field);
    }
    /// A variable that names a set which the file does not have.
    void noteMissingSet(const std::string &setName, const QString &variable) const
    {
        if (report && !setName.empty())
            report->add(NoteKind::labelSetMissing, QString::fromStdString(setName), 0, variable);
    }
    /// A variable that uses a set. The notes that wait for a variable of this set are reported.
    void noteUse(const LabelSet *set, const QString &variable)
    {
        if (report)
            addUse(set, variable);
    }
    /// Values that lose their decimals when they are turned to integers.
    void noteCutValues(const LabelSet &set, const QString &variable) const
    {
        if (report)
            addCutValues(set, variable);
    }
    /// Codes of a set that its text rounds or repeats.
    void noteCodes(const LabelSet &set, const QString &variable) const
    {
        if (report)
            addCodes(set, variable);
    }
    /// Bounds that the layout rounds; each bound is reported once.
    void noteBounds(const Span &span, const QString &variable) const
    {
        if (report)
            addBounds(span, variable);
    }
    /// The end of the file: reports the sets that no variable has used, and the failure of a pass, if one failed.
    void noteEnd(const LabelSets &sets, const PassResults &results, const ReadProblem &problem)
    {
        if (report)
            addEnd(sets, results, problem);
    }

private:
    void addLabel(const LabelSet *set, const std::string &setName, const readstat_value_t &value,
                  const TStatValueLabel &held);
    void addLabelWithoutText(const LabelSet *set, const std::string &setName, const readstat_value_t &value);
    void addVariable(const readstat_variable_t &variable, const TGenericField &field) const;
    void addUse(const LabelSet *set, const QString &variable);
    void addCutValues(const LabelSet &set, const QString &variable) const;
    void addCodes(const LabelSet &set, const QString &variable) const;
    void addBounds(const Span &span, const QString &variable) const;
    void addEnd(const LabelSets &sets, const PassResults &results, const ReadProblem &problem);

    void addWaiting(const LabelSet *set, const QString &variable);
    void addFailure(const PassResults &results, const ReadProblem &problem) const;

    const Format &format;
    ReadReport *report = nullptr;
    std::unordered_map<const LabelSet *, std::vector<ReadNote>> waiting;
    std::unordered_set<const LabelSet *> usedSets;
};

} // namespace statistical

#endif
