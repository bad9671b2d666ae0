#ifndef STATISTICAL_STATISTICALIMPORT_P_H
#define STATISTICAL_STATISTICALIMPORT_P_H

#include "import/KeptObjects_p.h"
#include "import/LayoutNotes_p.h"
#include "statistical/StatisticalReading_p.h"

#include <QScopeGuard>

#include <cstring>
#include <functional>
#include <memory>

/// The operations that are common to the importers of the two statistical formats.
namespace statistical
{

/// Adds a label to its set. If there is no such set, makes one and keeps it. A label without text is dropped. The type
/// of \a value must be supported.
void addValueLabel(LabelSets &sets, const char *labelSet, const readstat_value_t &value, const char *label,
                   Reading &reading, KeptObjects &kept);
/// Fills the description of \a field from \a variable and the labels of its set.
void describe(const readstat_variable_t &variable, const char *labelSet, const LabelSets &sets, Reading &reading,
              TGenericField &field);
/// Returns whether the field is a text whose current value is white space.
bool isBlank(const TGenericField &field);

/// The operations on the members of an importer of class \a Importer.
template <typename Importer> struct CommonImport {
    static int handleValueLabel(Importer *importer, const char *labelSet, const readstat_value_t &value,
                                const char *label)
    {
        if (!importer || !labelSet)
            return READSTAT_HANDLER_OK;
        if (label && !importer->handlers->hasRoomFor(qint64(std::strlen(label))))
            return READSTAT_HANDLER_ABORT;
        return inHandler(importer, [&](Reading &reading) {
            addValueLabel(importer->labelSets, labelSet, value, label, reading, *importer->kept);
        });
    }

    static int handleVariable(Importer *importer, const readstat_variable_t *variable, const char *labelSet)
    {
        if (!importer || !variable)
            return READSTAT_HANDLER_OK;
        return inHandler(importer, [&](Reading &reading) {
            auto field = std::make_unique<typename Importer::Variable>(importer);
            describe(*variable, labelSet, importer->labelSets, reading, *field);
            importer->kept->addField(field.get());
            auto *made = field.release(); // kept, so an exception from here on loses nothing
            importer->variables.push_back(made);
            importer->variablesByName[variable->name] = made;
        });
    }

    /// Makes both passes over the file. The first one reads the labels, since the labels of a variable are attached
    /// when it arrives. Returns the result of the second pass.
    static readstat_error_t read(Importer *importer, Reading &reading)
    {
        importer->labelSets.clear();
        importer->handlers = &reading;
        const auto atEnd = qScopeGuard([importer] { importer->handlers = Importer::outsideParse(); });
        ReadReport *report = importer->getReadReport();
        if (report && reportMissingFile(*report, importer->getSourceName()))
            report = nullptr;
        if (report && !importer->variables.empty())
            report->add(NoteKind::openedTwice, importer->getSourceName());
        reading.notes.setReport(report);
        const readstat_error_t labelResult = reading.pass(Importer::handleValueLabel, nullptr, importer);
        const readstat_error_t result = reading.pass(nullptr, Importer::handleVariable, importer);
        importer->readProblem = reading.problem().line;
        for (auto *variable : importer->variables)
            importer->addField(variable);
        reading.notes.noteEnd(importer->labelSets, { labelResult, result, !importer->variables.empty() },
                              reading.problem());
        if (report)
            reportRepeatedNames(*report, importer->fields, importer->fieldsByName.size());
        return result;
    }

    /// Forgets the pointers to objects that are about to be freed.
    static void forget(Importer *importer)
    {
        importer->variables.clear();
        importer->variablesByName.clear();
        importer->labelSets.clear();
    }

private:
    template <typename Work> static int inHandler(Importer *importer, const Work &work)
    {
        return importer->handlers->runWithReading(std::cref(work));
    }
};

} // namespace statistical

#endif
