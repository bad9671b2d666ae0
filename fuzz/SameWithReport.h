#ifndef FUZZ_SAMEWITHREPORT_H
#define FUZZ_SAMEWITHREPORT_H

#include "import/ReadReport.h"
#include "support/ImportedText.h"

/// Reads a file without a report and with one: both results must be equal.
template <typename Importer> void requireSameWithReport(Importer &&unreported, Importer &&reported)
{
    ReadReport report;
    reported.setReadReport(&report);
    if (importedText(unreported) != importedText(reported))
        qFatal("a report changes what is read");
    for (const ReadNote &note : report.notes()) {
        if (note.id().isEmpty() || note.message().isEmpty() || note.line < 0)
            qFatal("a note without content");
    }
}

#endif
