#ifndef FUZZ_SAMEWITHREPORT_H
#define FUZZ_SAMEWITHREPORT_H

#include "import/ReadReport.h"
#include "support/ImportedText.h"

/// Reads a file without a report and with one: both results must be equal.
template <typename Importer> void requireSameWithReport(Importer &&alone, Importer &&toldOf)
{
    ReadReport report;
    toldOf.setReadReport(&report);
    if (importedText(alone) != importedText(toldOf))
        qFatal("a report changes what is read");
    for (const ReadNote &note : report.notes()) {
        if (note.id().isEmpty() || note.message().isEmpty() || note.line < 0)
            qFatal("a note that tells nothing");
    }
}

#endif
